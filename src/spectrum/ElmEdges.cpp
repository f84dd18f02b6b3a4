#include "spectrum/ElmEdges.h"

#include <QDebug>
#include <QFile>
#include <QStringList>
#include <QTextStream>

#include <algorithm>
#include <cmath>

ElmEdge elmEdges[ElmEdgesMax];
int elmEdgeRows = 0;

namespace {

// Field numbers (0-based) of a row: symbol, z, then per edge its energy, its
// wavelength (not read), C and D; the fifth edge has no wavelength column.
constexpr int ZField = 1;
constexpr int EdgeField[5] = {2, 6, 10, 14, 18};
constexpr int CField[5] = {4, 8, 12, 16, 19};
constexpr int DField[5] = {5, 9, 13, 17, 20};

// "=" marks a missing value; it and anything else that is not a number, or
// not a finite one, reads as 0, and so do negative values.
double fieldValue(const QStringList &fields, int i)
{
    bool ok = false;
    const double v = fields.value(i).toDouble(&ok);
    return ok && std::isfinite(v) && v > 0 ? v : 0.0;
}

} // namespace

bool loadElmEdges(const QString &path)
{
    elmEdgeRows = 0;
    std::fill(std::begin(elmEdges), std::end(elmEdges), ElmEdge{});

    QFile f(path);
    if (!f.open(QIODevice::ReadOnly | QIODevice::Text)) {
        qDebug().noquote() << "Cannot open [Victoreen1.txt]\n";
        return false;
    }
    QTextStream in(&f);
    while (!in.atEnd()) {
        const QStringList fields = in.readLine().simplified().split(QLatin1Char(' '));
        if (fields.first().startsWith(QLatin1Char('#')))
            continue;
        // Every other line takes the next row, the heading and blank lines
        // included: the row number, not the z read, is what lookups index by.
        if (elmEdgeRows >= ElmEdgesMax) {
            qDebug().noquote() << QStringLiteral("%1: more than %2 rows, the rest is ignored")
                                          .arg(path)
                                          .arg(ElmEdgesMax);
            break;
        }
        ElmEdge &row = elmEdges[elmEdgeRows];
        row.z = fields.value(ZField).toInt(); // 0 when it does not parse
        for (int e = 0; e < 5; ++e) {
            row.edge[e] = fieldValue(fields, EdgeField[e]);
            row.c[e] = fieldValue(fields, CField[e]);
            row.d[e] = fieldValue(fields, DField[e]);
        }
        ++elmEdgeRows;
    }
    return true;
}
