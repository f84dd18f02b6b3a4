#include "images/TiffData.h"

#include "app/Globals.h"
#include "images/FrameReaders.h"
#include "images/H5StackReader.h"
#include "view/ColorMaps.h"
#include "view/ColorScale.h"
#include "view/PixelMapper.h"

#include <QDebug>
#include <QFile>
#include <QHash>
#include <QImage>
#include <QSet>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <limits>
#include <type_traits>

TiffData::~TiffData()
{
    delete image;
    FrameLoad::freeRows(rows, pixelType);
}

bool TiffData::read(const QString &name, ErrPoints *errPs)
{
    if (errPs)
        errPoints = errPs;

    QFile file(name);
    if (!file.open(QIODevice::ReadOnly)) {
        qDebug().noquote() << "Can not open (1)" << name;
        return false;
    }
    const QByteArray head = file.read(15);
    if (head.size() < 15) {
        qDebug().noquote() << "Error on reading file (1)" << name;
        return false;
    }
    file.close();

    enum class Form { Tiff, Img, Text };
    Form form;
    if (head.startsWith("II") || head.startsWith("MM")) {
        form = Form::Tiff;
    } else if (head.startsWith("IM")) {
        form = Form::Img;
    } else if (head.startsWith("#MQRS-CTImg")) {
        form = Form::Text;
    } else if (head.startsWith("\x89HDF\r\n\x1a\n")) {
        // A stack, not a frame: it loads as the only file of a selection.
        qDebug().noquote() << "HDF5 stack among image files, load it on its own" << name;
        return false;
    } else {
        return false;
    }

    FrameLoad load;
    load.width = width;
    load.height = height;
    load.xOffset = xOffset;
    load.yOffset = yOffset;
    load.scanlineBytes = scanlineBytes;
    load.bytesPerPixel = bytesPerPixel;
    load.exposureMs = exposureMs;
    const bool ok = form == Form::Tiff ? readTiffFile(name, load)
                  : form == Form::Img  ? readImgFile(name, load)
                                       : readTextImageFile(name, load);
    if (!ok)
        return false;
    takePixels(load);
    fileName = name;

    // Which flag decides differs by form, as it always has: a TIFF follows
    // the program's mask, an .img its own; text images are never mended.
    if (form == Form::Tiff && gErrPoints.inUse)
        applyErrPoints();
    else if (form == Form::Img && errPoints && errPoints->inUse)
        applyErrPoints();
    render();
    return true;
}

bool TiffData::readSlice(H5StackReader &reader, int i, ErrPoints *errPs)
{
    if (errPs)
        errPoints = errPs;
    FrameLoad load;
    load.exposureMs = exposureMs;
    load.bytesPerPixel = bytesPerPixel;
    if (!reader.readFrame(i, load))
        return false;
    takePixels(load);
    const H5Stack &stack = reader.stack();
    fileName = stack.sliceName(i);
    energyFromFile = !stack.energies.isEmpty();
    if (energyFromFile)
        energy = stack.energies.value(i);
    // Slices follow their panel's mask, as .img frames do.
    if (errPoints && errPoints->inUse)
        applyErrPoints();
    render();
    return true;
}

bool TiffData::allocate(quint32 w, quint32 h, int type)
{
    // PixelTiffU16 rows belong to libtiff's allocator.
    const std::size_t pixelBytes = type == PixelTiffU16 ? 0 : std::size_t(::pixelBytes(type));
    if (pixelBytes == 0)
        return false;
    if (w == 0 || h == 0 || qint64(w) * qint64(h) * qint64(pixelBytes) > kMaxFrameBytes)
        return false;
    FrameLoad load;
    load.begin(type, h);
    for (quint32 y = 0; y < h; ++y) {
        if (!load.appendRow(std::size_t(w) * pixelBytes))
            return false; // load frees the rows made so far
    }
    load.width = w;
    load.height = h;
    load.xOffset = xOffset;
    load.yOffset = yOffset;
    load.scanlineBytes = 0;
    load.bytesPerPixel = bytesPerPixel;
    load.exposureMs = exposureMs;
    load.min = 0.0;
    load.max = 0.0;
    takePixels(load);
    return true;
}

quint64 TiffData::nextVersion()
{
    static std::atomic<quint64> last{0};
    return ++last;
}

void TiffData::takePixels(FrameLoad &load)
{
    m_version = nextVersion();
    FrameLoad::freeRows(rows, pixelType);
    rows.swap(load.rows);
    pixelType = load.pixelType;
    load.pixelType = PixelNone;
    width = load.width;
    height = load.height;
    xOffset = load.xOffset;
    yOffset = load.yOffset;
    scanlineBytes = load.scanlineBytes;
    bytesPerPixel = load.bytesPerPixel;
    exposureMs = load.exposureMs;
    min = load.min;
    max = load.max;
}

// One display row: the frame's own row fy (or none) under the shift, pixels
// that fall outside the frame showing the colour of 0.
template <typename T>
static void renderRow(const T *row, qint64 width, qint64 shiftX, const PixelMapper &map, uchar *dst)
{
    const int bpp = map.bytesPerPixel();
    if (!row) {
        map.fill(0.0, width, dst);
        return;
    }
    // Image columns x with 0 <= x - shiftX < width.
    const qint64 x0 = std::clamp<qint64>(shiftX, 0, width);
    const qint64 x1 = std::clamp<qint64>(width + shiftX, 0, width);
    map.fill(0.0, x0, dst);
    if (x1 > x0)
        map.mapRow(row + (x0 - shiftX), x1 - x0, dst + x0 * bpp);
    map.fill(0.0, width - std::max(x0, x1), dst + std::max(x0, x1) * bpp);
}

template <typename T>
static void renderRows(const TiffData &f, const PixelMapper &map, uchar *out, qsizetype stride)
{
    const qint64 w = f.width;
    const qint64 h = f.height;
    for (qint64 y = 0; y < h; ++y) {
        const qint64 fy = y - f.shiftY;
        const T *row = (fy >= 0 && fy < h) ? static_cast<const T *>(f.rows[fy]) : nullptr;
        renderRow(row, w, f.shiftX, map, out + y * stride);
    }
}

void TiffData::render()
{
    delete image;
    image = nullptr;
    imageBytes = QByteArray();
    if (width == 0 || height == 0 || !ColorMaps::hasMap(imgFormat))
        return;

    const qsizetype stride = ColorMaps::rowBytes(width, imgFormat);
    imageBytes = QByteArray(stride * qsizetype(height), '\0'); // padding stays 0
    uchar *out = reinterpret_cast<uchar *>(imageBytes.data());

    const ColorScale::Ends ends = gColorBar ? gColorBar->ends() : ColorScale::Ends{};
    PixelMapper map(min, max, ends, imgFormat);
    const qint64 pixels = qint64(width) * qint64(height);
    // A table pays when the frame has more pixels than the table has values.
    const auto tableFor = [&](double lo, double hi) {
        if (lo <= hi && hi - lo < double(pixels))
            map.buildTable(qint64(lo), qint64(hi));
    };

    const bool rendered = withPixelType(pixelType, false, [&](auto tag) {
        using T = typename decltype(tag)::type;
        if constexpr (std::is_integral_v<T>)
            tableFor(std::max(min, double(std::numeric_limits<T>::lowest())),
                     std::min(max, double(std::numeric_limits<T>::max())));
        renderRows<T>(*this, map, out, stride);
        return true;
    });
    if (!rendered) {
        // No pixels: every pixel reads 0.
        for (quint32 y = 0; y < height; ++y)
            map.fill(0.0, width, out + y * stride);
    }

    image = new QImage(out, int(width), int(height), stride, QImage::Format(imgFormat));
}

// Truncation toward zero into T's range; NaN becomes 0. Out-of-range values
// are pinned rather than wrapped so that the conversion is always defined.
template <typename T>
static T truncatedTo(double v)
{
    if (std::isnan(v))
        return T(0);
    const double lo = double(std::numeric_limits<T>::lowest());
    const double hi = double(std::numeric_limits<T>::max());
    return T(std::clamp(std::trunc(v), lo, hi));
}

void TiffData::setFramePixel(qint64 fx, qint64 fy, double v)
{
    if (!insideFrame(fx, fy))
        return;
    m_version = nextVersion();
    withPixelType(pixelType, 0, [&](auto tag) {
        using T = typename decltype(tag)::type;
        T *row = static_cast<T *>(rows[fy]);
        if constexpr (std::is_same_v<T, double>)
            row[fx] = v;
        else if constexpr (std::is_same_v<T, float>)
            row[fx] = std::isnan(v) ? float(v) : float(std::clamp(v, -double(FLT_MAX), double(FLT_MAX)));
        else
            row[fx] = truncatedTo<T>(v);
        return 0;
    });
}

void TiffData::setPixel(int x, int y, double v)
{
    setFramePixel(qint64(x) - shiftX, qint64(y) - shiftY, v);
}

template <typename T>
static double sumRows(const QVector<void *> &rows, qint64 x0, qint64 y0, qint64 x1, qint64 y1)
{
    // Integers add up exactly, in 64 bits: even a whole frame of 32-bit
    // extremes stays far inside them. Floats add up in double and in row
    // order, so the result equals adding pixel() up.
    using Sum = std::conditional_t<std::is_floating_point_v<T>, double,
                                   std::conditional_t<std::is_signed_v<T>, qint64, quint64>>;
    Sum sum = 0;
    for (qint64 y = y0; y <= y1; ++y) {
        const T *row = static_cast<const T *>(rows[y]);
        for (qint64 x = x0; x <= x1; ++x)
            sum += row[x];
    }
    return double(sum);
}

double TiffData::frameRectSum(qint64 fx0, qint64 fy0, qint64 fx1, qint64 fy1) const
{
    if (pixelType == PixelNone || width == 0 || height == 0)
        return 0.0;
    fx0 = std::max<qint64>(fx0, 0);
    fy0 = std::max<qint64>(fy0, 0);
    fx1 = std::min<qint64>(fx1, qint64(width) - 1);
    fy1 = std::min<qint64>(fy1, qint64(height) - 1);
    if (fx0 > fx1 || fy0 > fy1)
        return 0.0;
    return withPixelType(pixelType, 0.0, [&](auto tag) {
        return sumRows<typename decltype(tag)::type>(rows, fx0, fy0, fx1, fy1);
    });
}

bool TiffData::exactRectSum(qint64 x0, qint64 y0, qint64 x1, qint64 y1, qint64 &sum) const
{
    sum = 0;
    if (pixelType == PixelF32 || pixelType == PixelF64)
        return false;
    if (pixelType == PixelNone || width == 0 || height == 0)
        return true;
    const qint64 fx0 = std::max<qint64>(x0 - shiftX, 0);
    const qint64 fy0 = std::max<qint64>(y0 - shiftY, 0);
    const qint64 fx1 = std::min<qint64>(x1 - shiftX, qint64(width) - 1);
    const qint64 fy1 = std::min<qint64>(y1 - shiftY, qint64(height) - 1);
    if (fx0 > fx1 || fy0 > fy1)
        return true;
    withPixelType(pixelType, 0, [&](auto tag) {
        using T = typename decltype(tag)::type;
        if constexpr (std::is_integral_v<T>) {
            for (qint64 y = fy0; y <= fy1; ++y) {
                const T *row = static_cast<const T *>(rows[y]);
                for (qint64 x = fx0; x <= fx1; ++x)
                    sum += qint64(row[x]);
            }
        }
        return 0;
    });
    return true;
}

double TiffData::boxSum(int x, int y, int hw, int vw) const
{
    const qint64 h = std::abs(qint64(hw));
    const qint64 v = std::abs(qint64(vw));
    const qint64 fx = qint64(x) - shiftX;
    const qint64 fy = qint64(y) - shiftY;
    return frameRectSum(fx - h, fy - v, fx + h, fy + v);
}

static qint64 truncatedCoordinate(double v)
{
    if (std::isnan(v))
        return 0;
    return qint64(std::clamp(v, double(INT_MIN), double(INT_MAX)));
}

double TiffData::rectMean(const QRectF &r) const
{
    const qint64 x = truncatedCoordinate(r.x());
    const qint64 y = truncatedCoordinate(r.y());
    const qint64 w = truncatedCoordinate(r.width());
    const qint64 h = truncatedCoordinate(r.height());
    const double sum = frameRectSum(x - shiftX, y - shiftY, x + w - shiftX, y + h - shiftY);
    // An empty rectangle (w or h of -1) divides by zero, as it always has.
    return sum / (double(w + 1) * double(h + 1));
}

double TiffData::interpolatedBoxSum(const QVector<TiffData *> &frames, double e, int x, int y, int hw, int vw)
{
    const qsizetype n = frames.size();
    if (n == 0)
        return 1.0;
    if (n == 1)
        return frames.at(0)->boxSum(x, y, hw, vw);
    qsizetype a;
    qsizetype b;
    interpolationPair(frames, e, a, b);
    return interpolateSums(frames.at(a)->energy, frames.at(a)->boxSum(x, y, hw, vw), frames.at(b)->energy,
                           frames.at(b)->boxSum(x, y, hw, vw), e);
}

void TiffData::interpolationPair(const QVector<TiffData *> &frames, double e, qsizetype &a, qsizetype &b)
{
    const qsizetype n = frames.size();
    if (e <= frames.at(0)->energy) {
        a = 0;
        b = 1;
    } else if (e >= frames.at(n - 1)->energy) {
        a = n - 2;
        b = n - 1;
    } else {
        qsizetype lo = 0;
        qsizetype hi = n - 1;
        while (hi > lo + 1) {
            const qsizetype mid = (lo + hi) / 2;
            if (e >= frames.at(mid)->energy)
                lo = mid;
            else
                hi = mid;
        }
        a = lo;
        b = hi;
    }
}

double TiffData::interpolateSums(double ea, double sa, double eb, double sb, double e)
{
    if (ea == eb)
        return (sa + sb) / 2.0;
    return sa + (e - ea) * (sb - sa) / (eb - ea);
}

void TiffData::applyErrPoints()
{
    if (!errPoints || pixelType == PixelNone)
        return;
    const QVector<QPoint> &points = errPoints->points;
    // contains() is a linear search; a set keeps this linear in the points.
    const QSet<QPoint> masked(points.cbegin(), points.cend());
    const qint64 ox = xOffset;
    const qint64 oy = yOffset;
    for (const QPoint &p : points) {
        const qint64 x = p.x() - ox;
        const qint64 y = p.y() - oy;
        if (!insideFrame(x, y))
            continue; // the point lies on another part of the detector
        double sum = 0.0;
        int count = 0;
        for (int dy = -1; dy <= 1; ++dy) {
            for (int dx = -1; dx <= 1; ++dx) {
                if (dx == 0 && dy == 0)
                    continue;
                // Intended: the neighbour below, (x, y+1), is tested for lying
                // inside on row y-1. Frames have always been mended this way,
                // so the bottom row takes a 0 from below, and the top row does
                // not take its neighbour below.
                const qint64 testY = (dx == 0 && dy == 1) ? y - 1 : y + dy;
                if (!insideFrame(x + dx, testY))
                    continue;
                if (masked.contains(QPoint(int(p.x() + qint64(dx)), int(p.y() + qint64(dy)))))
                    continue;
                sum += framePixel(x + dx, y + dy); // 0 when truly outside
                ++count;
            }
        }
        setFramePixel(x, y, count > 0 ? sum / count : 0.0);
    }
}
