#pragma once

#include <QColor>

// The pens of the curves of every graph: nine colours, the first white, used
// in turn. Built once by InitGlobals() before any other thread exists.
void initGraphColors();

// Entry i modulo nine (negative i counted back from the end); black before
// the table is built.
QColor colorOfIndex(int i);
