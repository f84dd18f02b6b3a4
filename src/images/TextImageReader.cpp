#include "images/FrameLoad.h"
#include "images/FrameReaders.h"

#include "app/LineItems.h"
#include "app/TruncatedInt.h"

#include <QDebug>
#include <QFile>
#include <QStringView>
#include <QTextStream>

#include <cfloat>

namespace {

// The third blank-separated word of a pixel line times 500, clipped at 0
// from below (a NaN stays NaN); 0 for a line of fewer words. Works on a view
// so that no pixel costs an allocation.
float pixelValue(QStringView line)
{
    const qsizetype n = line.size();
    qsizetype i = 0;
    int word = 0;
    while (i < n) {
        while (i < n && line.at(i).isSpace())
            ++i;
        if (i >= n)
            break;
        const qsizetype start = i;
        while (i < n && !line.at(i).isSpace())
            ++i;
        if (++word == 3) {
            const double v = line.mid(start, i - start).toDouble() * 500.0;
            if (v < 0.0)
                return 0.0f;
            // beyond the float range the conversion would be undefined
            return v > double(FLT_MAX) ? FLT_MAX : float(v);
        }
    }
    return 0.0f;
}

} // namespace

bool readTextImageFile(const QString &fileName, FrameLoad &load)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        qDebug().noquote() << "Can not open" << fileName << "[" << file.errorString() << "]";
        return false;
    }
    QTextStream in(&file);

    // Header lines: "#", key, separator, value. The first line whose first
    // item does not begin with '#' ends the header and is the first pixel.
    int x0 = 0, x1 = 0, y0 = 0, y1 = 0;
    QString line;
    QString item, key, sep, value;
    bool havePixelLine = false;
    while (in.readLineInto(&line)) {
        QString rest = splitFirstItem(line, &item);
        if (!item.startsWith(QLatin1Char('#'))) {
            havePixelLine = true;
            break;
        }
        rest = splitFirstItem(rest, &key);
        rest = splitFirstItem(rest, &sep);
        splitFirstItem(rest, &value);
        const int v = truncatedInt(value.toDouble());
        if (key.compare(QLatin1String("RANGE_X0"), Qt::CaseInsensitive) == 0)
            x0 = v;
        else if (key.compare(QLatin1String("RANGE_X1"), Qt::CaseInsensitive) == 0)
            x1 = v;
        else if (key.compare(QLatin1String("RANGE_Y0"), Qt::CaseInsensitive) == 0)
            y0 = v;
        else if (key.compare(QLatin1String("RANGE_Y1"), Qt::CaseInsensitive) == 0)
            y1 = v;
    }

    const qint64 width = qint64(x1) - x0;
    const qint64 height = qint64(y1) - y0;
    if (width < 1 || height < 1)
        return false;
    // Each pixel takes a line of at least one byte: a header that claims
    // more pixels than that is refused before anything is allocated.
    if (width * height > file.size() || width * height * qint64(sizeof(float)) > kMaxFrameBytes) {
        qDebug().noquote() << "Text image larger than its file" << width << height << fileName;
        return false;
    }

    load.begin(PixelF32, quint32(height));
    double lo = DBL_MAX;
    double hi = -DBL_MAX;
    bool bodyEnded = false;
    for (qint64 y = 0; y < height; ++y) {
        // Rows come zeroed: the pixels of a body that ends early stay 0.
        float *row = static_cast<float *>(load.appendRow(std::size_t(width) * sizeof(float)));
        if (!row)
            return false;
        for (qint64 x = 0; x < width && !bodyEnded; ++x) {
            if (!havePixelLine && !in.readLineInto(&line)) {
                qDebug().noquote() << "Text image ends before its last pixel, the rest reads 0" << fileName;
                bodyEnded = true;
                break;
            }
            havePixelLine = false;
            row[x] = pixelValue(line);
        }
        // Comparisons pass a NaN over, so it does not spoil the extremes.
        for (qint64 x = 0; x < width; ++x) {
            const double v = row[x];
            if (v < lo)
                lo = v;
            if (v > hi)
                hi = v;
        }
    }
    load.width = quint32(width);
    load.height = quint32(height);
    load.min = lo;
    load.max = hi;
    return true;
}
