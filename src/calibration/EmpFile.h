#pragma once

#include "calibration/EMPHeader.h"

#include <QString>

class Analyzed2DRes;
class QIODevice;

// The energy map file (.emp): a text header of "key : value" lines, a
// separator, and a body of one value per pixel, row by row.
//
// The body does not hold energies: each value is the difference of
// monochromator angle, in degrees, that the pixel's energy shift makes at the
// standard's edge, a(E - dE) - a(E). An angle difference stays meaningful
// when the map is read against a slightly different edge energy, which is
// why the edge energy is stored beside it and may be overridden on reading.
//
// Reading and writing are plain functions on a device, so that they can be
// checked without windows; Body opens the files and owns the map.
namespace EmpFile {

// What the header records besides the map's own walk.
struct Source
{
    QString recordDate; // "yy/MM/dd hh:mm:ss.zzz"
    double stdEdgeE = 0;
    double spacing = 0;
    int xOffset = 0;
    int yOffset = 0;
    QString stdFileName;
};

// The shift that a stored value v means against edgeE, whose angle a0 the
// caller computes once: edgeE - E(v + a0). The value stored for a shift dE
// is a(stdEdgeE - dE) - a(stdEdgeE), a being the angle of an energy (-1.0
// for one the crystal cannot reach).
double shiftOf(double v, double edgeE, double a0, double spacing);

// Writes the whole file: the header with the map's walk, then rows 0 ..
// imgH - 1 of the current image, imgW values each, taken from the map where
// it has a pixel and written as a shift of 0 elsewhere. False when the
// device refuses the writing.
bool write(QIODevice &out, const Source &src, const Analyzed2DRes &map, int imgW, int imgH);

// Reads the header, up to and including the separator line, and leaves the
// device at the first byte of the body. Keys are matched by their padded
// prefix and may come in any order; a repeated key takes its last value.
EMPHeader readHeader(QIODevice &in);

// Whether a body of bodyBytes can belong to a map of the header's size. A
// written value takes at least two bytes, so a body that falls short of the
// claimed count by more than a little is no truncated map but a wrong header,
// and reading it would only allocate for nothing. Sizes below 0 and maps too
// large to hold are refused as well. Logs the reason of a refusal.
bool bodyFits(const EMPHeader &h, qint64 bodyBytes);

// Sets the map up for the header's walk and fills it pixel by pixel with
// the shifts read against edgeE (each also a sample of its surface). A body
// that runs out reads the missing values as 0.0, logging "run out!" for each;
// a value that is not a number ends the reading of numbers, and it and all
// after it read as 0.0 as well. The caller checks bodyFits first.
void readBody(QIODevice &in, const EMPHeader &h, double edgeE, Analyzed2DRes &map);

} // namespace EmpFile
