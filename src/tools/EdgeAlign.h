#pragma once

#include "tools/ProcImage.h"

#include <QImage>

class ColorScale;
class TiffData;

// The numerics of frame alignment: an edge picture of a frame, its binary
// form, and the shift at which a binary picture best covers a reference one,
// judged by their normalised scalar product.
namespace EdgeAlign {

// Prewitt-like edges of w x h pixels of the frame as pixel() reads them
// (shift included, 0 outside), the larger of the two directions. False, with
// out unchanged, for an empty size or one too large to hold.
bool edgeDetect(const TiffData &frame, int w, int h, ProcImage &out);

// 1 where threshold < edge (strictly), else 0.
void binarize(const ProcImage &edge, double threshold, ProcImage &out);

// sum(r b) / sqrt(sum(r r) sum(b b)) over the pixels (x, y) of ref whose
// partner (x - sx, y - sy) lies in bin; 0 when the product under the root is
// not positive. The two pictures must be of one size.
double normScalarProduct(const ProcImage &ref, const ProcImage &bin, int sx, int sy);

// Hill climb from (sx, sy): the eight neighbours are tried in a fixed order
// and the best that beats `best` strictly is taken, until none does. sx, sy
// end at the maximum reached and best holds its product. Returns the number
// of products computed.
int climb(const ProcImage &ref, const ProcImage &bin, int &sx, int &sy, double &best);

// A picture through a colour scale, t = (v - min) / (max - min).
QImage render(const ProcImage &img, const ColorScale &scale);

// The overlay of ref (red) and bin shifted by (sx, sy) (cyan): white where
// both are set, blue where the shifted picture has no pixel.
QImage compare(const ProcImage &ref, const ProcImage &bin, int sx, int sy);

} // namespace EdgeAlign
