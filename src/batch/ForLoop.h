#pragma once

#include <QString>

// One :for record. The numbers stay text, because the written form of start
// decides how later values are padded.
struct ForLoop {
    QString name;    // label by which :next finds the loop
    int line = -1;   // index of the :for line; -1 in an unfilled record
    QString var;     // text that is replaced in later lines
    QString start;
    QString end;
    QString current; // value in force; starts as a copy of start
    QString step;    // as written; empty when none was given

    // Fills a record from the words of a :for line (name var start end [step]).
    static ForLoop fromWords(const QStringList &words, int line);

    // Steps the loop once. Returns false when the loop is over; current then
    // keeps its last value. A step of 0 (or unreadable) counts as 1; the sign
    // of a written step is not interpreted.
    bool advance();

    // The value written as the loop writes it: when start has at least two
    // characters and begins with '0', the number is left-padded with start's
    // own leading characters.
    static QString padded(const QString &start, qint64 value);
};
