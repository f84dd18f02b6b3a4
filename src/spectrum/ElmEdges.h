#pragma once

#include <QString>

// Absorption edges of one element: energies in keV for K, LI, LII, LIII and
// a fifth (M) column, with the Victoreen C and D coefficients of each range.
// Only `edge` is used; the coefficients are kept as read. A missing value is 0.
struct ElmEdge
{
    int z;
    double edge[5];
    double c[5];
    double d[5];
};

constexpr int ElmEdgesMax = 100;

// Filled once by loadElmEdges() before any window exists, read-only after
// that, so any thread may read it. The row index is the row's position in the
// file (the heading is row 0), which equals z as long as the file's element
// rows are complete and in order; lookups rely on that and index by z.
extern ElmEdge elmEdges[ElmEdgesMax];
extern int elmEdgeRows;

// Reads the edge table from `path` (the resource by default). Every row of the
// table is cleared first, so a failed read leaves all edges at 0 and a later
// read never keeps rows of an earlier one. Rows past ElmEdgesMax are dropped.
// Returns false, with "Cannot open [Victoreen1.txt]" in the log, when the file
// cannot be opened.
bool loadElmEdges(const QString &path = QStringLiteral(":Victoreen1.txt"));
