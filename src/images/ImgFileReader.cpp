#include "images/FrameLoad.h"
#include "images/FrameReaders.h"

#include <QDebug>
#include <QFile>
#include <QStringList>
#include <QtEndian>

#include <algorithm>
#include <limits>

namespace {

constexpr qint64 kHeadBytes = 64;

// The text after `key` up to the next ',' (or the end), `fallback` when the
// comment lacks the key.
QString commentValue(const QString &comment, const QString &key, const QString &fallback)
{
    const qsizetype at = comment.indexOf(key);
    if (at < 0)
        return fallback;
    const qsizetype start = at + key.size();
    const qsizetype comma = comment.indexOf(QLatin1Char(','), start);
    return comment.mid(start, comma < 0 ? -1 : comma - start);
}

// The exposure in ms from the comment's "ExposureTime=" text. A value without
// any word scales the previous exposure, as files without a value always did.
double exposureFromComment(const QString &comment, double previousMs)
{
    const QStringList words = commentValue(comment, QStringLiteral("ExposureTime="), QStringLiteral("0.1"))
                                  .simplified()
                                  .split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (words.isEmpty())
        return previousMs * 1000.0;
    const double value = words.at(0).toDouble();
    if (words.size() < 2 || words.at(1) == QLatin1String("s"))
        return value * 1000.0;
    if (words.at(1) == QLatin1String("us"))
        return value * 0.001;
    return value; // "ms", and any unit not known, are taken as ms
}

template <typename T>
bool readRows(QFile &file, FrameLoad &load, quint32 width, quint32 height)
{
    T lo = std::numeric_limits<T>::max();
    T hi = 0;
    const qint64 rowBytes = qint64(width) * qint64(sizeof(T));
    for (quint32 y = 0; y < height; ++y) {
        T *row = static_cast<T *>(load.appendRow(std::size_t(rowBytes)));
        if (!row || file.read(reinterpret_cast<char *>(row), rowBytes) != rowBytes)
            return false;
        qFromLittleEndian<T>(row, width, row);
        for (quint32 x = 0; x < width; ++x) {
            lo = std::min(lo, row[x]);
            hi = std::max(hi, row[x]);
        }
    }
    load.min = lo;
    load.max = hi;
    return true;
}

} // namespace

bool readImgFile(const QString &fileName, FrameLoad &load)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        qDebug().noquote() << "Can not open" << fileName << "[" << file.error() << "]";
        return false;
    }
    const QByteArray head = file.read(40);
    if (head.size() < 10) {
        qDebug().noquote() << "Error on reading (4)" << fileName;
        return false;
    }
    // A word the head is too short for reads as 0.
    auto word = [&head](int offset) -> quint32 {
        if (head.size() < offset + 2)
            return 0;
        return qFromLittleEndian<quint16>(head.constData() + offset);
    };
    const quint32 commentBytes = word(2);
    const quint32 width = word(4);
    const quint32 height = word(6);
    const quint32 xOffset = word(8);
    const quint32 yOffset = word(10);

    const qint64 fileSize = file.size();
    QString comment;
    if (file.seek(kHeadBytes))
        comment = QString::fromLatin1(file.read(commentBytes));
    const int bytesPerPixel =
        commentValue(comment, QStringLiteral("BytesPerPixel="), QStringLiteral("2")).trimmed().toInt();
    const double exposureMs = exposureFromComment(comment, load.exposureMs);

    const bool wide = bytesPerPixel == 4;
    const qint64 pixelStart = kHeadBytes + commentBytes;
    const qint64 pixelBytes = qint64(width) * height * (wide ? 4 : 2);
    if (width == 0 || height == 0) {
        qDebug().noquote() << "invalid image size. (h,w) = " << height << width << fileName;
        return false;
    }
    if (pixelBytes > kMaxFrameBytes) {
        qDebug().noquote() << "Too large image. (h,w) = " << height << width << fileName;
        return false;
    }
    // The size is checked before any row is allocated; a short file fails
    // with the messages of a short read.
    if (pixelStart + pixelBytes > fileSize || !file.seek(pixelStart)) {
        qDebug().noquote() << "invalid file size. expected (h,w) = " << height << width;
        qDebug().noquote() << (wide ? "Error on reading (2)" : "Error on reading (3)") << fileName;
        return false;
    }

    load.begin(wide ? PixelU32 : PixelU16, height);
    const bool ok = wide ? readRows<quint32>(file, load, width, height)
                         : readRows<quint16>(file, load, width, height);
    if (!ok) {
        qDebug().noquote() << "invalid file size. expected (h,w) = " << height << width;
        qDebug().noquote() << (wide ? "Error on reading (2)" : "Error on reading (3)") << fileName;
        return false;
    }
    load.width = width;
    load.height = height;
    load.xOffset = xOffset;
    load.yOffset = yOffset;
    load.bytesPerPixel = bytesPerPixel;
    load.exposureMs = exposureMs;
    return true;
}
