#pragma once

#include <QString>
#include <QVector>

class ErrPoints;
class TiffData;

// The dark check: a stack taken with the beam off, read as a series of dark
// exposures, gives a histogram of all its pixel values and the hot pixels,
// those above a threshold in every frame. The hot-pixel file has the form of
// a bad-pixel mask, so that it can serve as one.
class DarkCheck
{
public:
    struct Point {
        int x = 0;
        int y = 0;
        double sum = 0; // the pixel's values summed over the frames
    };

    // bins + 1 counts over 0..histMax: value v goes to trunc(bins * v /
    // histMax), pinned to the last bin from above. Values whose bin is not
    // a number or below 0 (negative values, histMax 0) are not counted. A
    // negative bins, or one too large to hold, gives an empty table.
    static QVector<qint64> histogram(const QVector<TiffData *> &frames, double histMax, int bins);

    // The points of the first frame strictly above th, in row order, kept
    // while each further frame is above th there too; each kept point sums
    // the values. sizes gets the number left after each frame. A point
    // outside a smaller later frame reads 0 there and drops out.
    static QVector<Point> hotPixels(const QVector<TiffData *> &frames, double th, QVector<int> *sizes);

    // Writes dark-hg-all.dat into dir. False, logged, when it can't be opened.
    static bool writeHistogram(const QString &dir, const QVector<qint64> &counts, double histMax, int bins);
    // Writes the hot points (with the mask header "# Size w h"), the counts
    // per frame, the points the mask lacks and, for a non-empty mask, the
    // mask's points that are not hot. Nothing for an empty list. False,
    // logged, when a file can't be opened.
    static bool writeHotPixels(const QString &dir, const QVector<Point> &points, const QVector<int> &sizes, int w,
                               int h, const ErrPoints &mask);

    // Largest histogram held; a bin count above it is refused.
    static constexpr int MaxBins = 1 << 24;
};
