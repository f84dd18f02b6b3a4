#pragma once

#include "images/ErrPoints.h"
#include "images/FrameLoad.h"

#include <QByteArray>
#include <QMetaType>
#include <QRectF>
#include <QString>
#include <QVector>

#include <cfloat>

class ColorScale;
class H5StackReader;
class QImage;

// One image of a stack: one detector exposure at one energy, read from one
// file, in the file's own pixel type (see PixelType).
//
// Coordinates: callers address pixels in image coordinates (x, y); the
// frame's own pixel is (x - shiftX, y - shiftY), so that alignment moves a
// frame without touching its pixels. Outside the frame a pixel reads 0.
//
// A frame owns its rows, imageBytes and image, and is not copied: frames go
// from the loader thread to the main thread by pointer.
class TiffData
{
public:
    TiffData() = default;
    ~TiffData();
    TiffData(const TiffData &) = delete;
    TiffData &operator=(const TiffData &) = delete;

    // Reads a TIFF, ".img" or "#MQRS-CTImg" text image; the form comes from
    // the first 15 bytes, not from the extension. A non-null errPs replaces
    // errPoints. On failure the pixels the frame had (none for a new frame)
    // stay as they were.
    bool read(const QString &fileName, ErrPoints *errPs = nullptr);

    // Reads slice i of an HDF5 stack through an open reader: the frame takes
    // the slice's pixels in their own type, the name "file:dataset[i]", and
    // the slice's energy when the file has energies (energyFromFile). A
    // non-null errPs replaces errPoints, whose mask, when in use, mends the
    // frame. On failure the frame stays as it was.
    bool readSlice(H5StackReader &reader, int i, ErrPoints *errPs = nullptr);

    // Value at image coordinates; 0.0 outside the frame or without pixels.
    // The inner loop of everything: bounds test and a switch only.
    double pixel(int x, int y) const { return framePixel(qint64(x) - shiftX, qint64(y) - shiftY); }

    // Gives the frame zeroed pixels of w x h in `type` (any type but
    // PixelTiffU16 and PixelNone), replacing those it held, for frames made
    // in code rather than read. False, with the frame unchanged, for an
    // empty size, another type, more than kMaxFrameBytes or short memory.
    bool allocate(quint32 w, quint32 h, int type);

    // Writes a value at image coordinates, truncated toward zero to the pixel
    // type (and pinned to its range); nothing happens outside the frame.
    void setPixel(int x, int y, double v);

    // Sum of pixel() over x-|hw|..x+|hw| and y-|vw|..y+|vw|, ends included;
    // pixels outside the frame count 0.
    double boxSum(int x, int y, int hw, int vw) const;

    // The sum of pixel() over x0..x1, y0..y1 (image coordinates, ends
    // included, pixels outside counting 0) as an exact integer: boxSum is
    // double(sum) of such a rectangle. False for float pixels, whose sums
    // round and are not kept as integers.
    bool exactRectSum(qint64 x0, qint64 y0, qint64 x1, qint64 y1, qint64 &sum) const;

    // Changes whenever the pixels do (read, allocated, set, mended), and is
    // never the same for two frames: sums kept of a frame are valid while
    // the frame's version and shift are those they were taken with.
    quint64 version() const { return m_version; }

    // Mean of pixel() over x from r.x to r.x+r.width and y from r.y to
    // r.y+r.height, ends included, each of the four truncated to int first;
    // the divisor is (w+1)*(h+1) even where the rectangle leaves the frame.
    double rectMean(const QRectF &r) const;

    // (Re)makes imageBytes and image: every pixel(x, y) of the frame's size,
    // shift included, is normalised to t = (v - min) / (max - min) and
    // coloured through gColorBar's ends, in imgFormat (24 grey, 13 RGB; rows
    // padded to four bytes). image is a QImage over imageBytes. Without a
    // colour bar (before the main window exists, or in a tool without one)
    // the full scale is used, ends 0 and 1. An empty frame, or a format
    // other than 24 and 13, leaves both null. A flat frame (max = min) makes
    // t NaN or infinite: the scale gives it its first or last colour.
    void render();

    // The box sum of a stack at energy e, interpolated linearly between the
    // two frames around e, or extrapolated from the first or last two (never
    // clamped). `frames` must be in energy order and hold no null pointer.
    // An empty list gives 1.0; a single frame gives its own boxSum.
    static double interpolatedBoxSum(const QVector<TiffData *> &frames, double e, int x, int y, int hw,
                                     int vw);
    // The two frames that interpolatedBoxSum reads at e, for two frames or
    // more: the first two at or below the first energy, the last two at or
    // above the last, else the bracket found by bisection.
    static void interpolationPair(const QVector<TiffData *> &frames, double e, qsizetype &a, qsizetype &b);
    // The line through (ea, sa) and (eb, sb) at e; the mean where ea == eb.
    static double interpolateSums(double ea, double sa, double eb, double sb, double e);

    // Replaces each masked pixel that lies in the frame by the mean of its
    // good neighbours (see the .cpp for one intended irregularity). The
    // readers call it; it is public for the tools that mend frames later.
    void applyErrPoints();

    int imgFormat = 24; // QImage::Format of the rendering: 24 Grayscale8, 13 RGB888
    QString fileName;
    int bytesPerPixel = 2; // set by the .img reader only; 4 selects 32-bit pixels
    quint32 width = 0;
    quint32 height = 0;
    quint32 xOffset = 0; // detector position of the frame's first pixel
    quint32 yOffset = 0;
    ErrPoints *errPoints = &gErrPoints;
    quint32 scanlineBytes = 0; // TIFF only
    double min = DBL_MAX;      // smallest and largest value in the file
    double max = -DBL_MAX;
    QVector<void *> rows; // one allocation per row, by the allocator of pixelType
    double energy = 0.0;  // eV, given after loading
    bool energyFromFile = false; // the file gave energy; the panel is not asked
    ColorScale *colorBar = nullptr; // set after loading; render uses gColorBar
    QByteArray imageBytes; // the rendered pixels
    QImage *image = nullptr;
    double exposureMs = 100.0;
    int shiftX = 0;
    int shiftY = 0;
    int pixelType = PixelNone;

private:
    static quint64 nextVersion();
    quint64 m_version = nextVersion();

    // Sum over the frame's own pixels fx0..fx1, fy0..fy1 (ends included),
    // clipped to the frame once; row by row in the pixel type.
    double frameRectSum(qint64 fx0, qint64 fy0, qint64 fx1, qint64 fy1) const;
    bool insideFrame(qint64 fx, qint64 fy) const
    {
        return fx >= 0 && fy >= 0 && fx < qint64(width) && fy < qint64(height);
    }
    double framePixel(qint64 fx, qint64 fy) const
    {
        if (!insideFrame(fx, fy))
            return 0.0;
        switch (pixelType) {
        case PixelTiffU16:
        case PixelU16:
            return static_cast<const quint16 *>(rows[fy])[fx];
        case PixelU32:
            return static_cast<const quint32 *>(rows[fy])[fx];
        case PixelF32:
            return static_cast<const float *>(rows[fy])[fx];
        case PixelU8:
            return static_cast<const quint8 *>(rows[fy])[fx];
        case PixelI8:
            return static_cast<const qint8 *>(rows[fy])[fx];
        case PixelI16:
            return static_cast<const qint16 *>(rows[fy])[fx];
        case PixelI32:
            return static_cast<const qint32 *>(rows[fy])[fx];
        case PixelF64:
            return static_cast<const double *>(rows[fy])[fx];
        default:
            return 0.0;
        }
    }
    void setFramePixel(qint64 fx, qint64 fy, double v);
    void takePixels(FrameLoad &load);
};

// Frames travel from a loader thread to the main thread by queued signal.
Q_DECLARE_METATYPE(TiffData *)
