#pragma once

#include <QString>
#include <QVector>

// One element named in the element list text.
struct ElemName
{
    int z = 0;     // atomic number
    int edge = 0;  // 0 K, 1 LI, 2 LII, 3 LIII
    QString title; // "Fe-K", "Pb-LIII": symbol and edge as they were typed
};

// Splits the text at commas and blanks ("Fe, Cu-K,Zn"); each part is a symbol
// with an optional "-edge" (K when absent). Parts whose symbol the element
// list does not know are dropped. With sortByZ, a selection sort by ascending
// atomic number: the smallest of the rest goes first, the earliest of equals.
QVector<ElemName> parseElemNames(const QString &text, bool sortByZ);
