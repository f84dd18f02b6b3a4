#pragma once

#include <QPolygonF>
#include <QVector>

class ChCoord;

// Screen polylines of a curve given in real units, for the graphs.
//
// A new polyline starts where two neighbouring points lie more than maxGap
// apart in x (maxGap <= 0: never), so that a scan with a hole in its energies
// is not bridged by a straight line across the hole. A point whose screen
// place is not finite (a NaN value, an empty range) is left out and cuts the
// line there as well. Polylines of a single point are dropped: they would draw
// nothing.
//
// out is cleared and refilled; its polygons keep their capacity, so a caller
// that holds it between paints allocates only when a curve grows.
void curvePolylines(const QPolygonF &real, const ChCoord &cc, double maxGap, QVector<QPolygonF> &out);
