#include "FrameFiles.h"

#include "images/TiffData.h"

#include <QFile>

namespace FrameFiles {

static void putLe(QByteArray &out, quint32 v, int bytes)
{
    for (int i = 0; i < bytes; ++i)
        out.append(char((v >> (8 * i)) & 0xff));
}

static quint32 getLe(const QByteArray &in, qint64 at, int bytes)
{
    quint32 v = 0;
    for (int i = 0; i < bytes; ++i)
        v |= quint32(quint8(in.at(at + i))) << (8 * i);
    return v;
}

QByteArray imgFile(quint16 width, quint16 height, quint16 xOffset, quint16 yOffset, const QByteArray &comment,
               const QVector<quint32> &pixels, int bytesPerPixel)
{
    QByteArray out("IM");
    putLe(out, quint32(comment.size()), 2);
    putLe(out, width, 2);
    putLe(out, height, 2);
    putLe(out, xOffset, 2);
    putLe(out, yOffset, 2);
    out.append(QByteArray(64 - out.size(), '\0'));
    out.append(comment);
    for (quint32 v : pixels)
        putLe(out, v, bytesPerPixel);
    return out;
}

QByteArray textImageFile(const QString &x0, const QString &x1, const QString &y0, const QString &y1,
                     const QStringList &pixelLines)
{
    QString text = QStringLiteral("#MQRS-CTImg version 1\n");
    text += QStringLiteral("# RANGE_X0 = %1\n# RANGE_X1 = %2\n").arg(x0, x1);
    text += QStringLiteral("# RANGE_Y0 = %1\n# RANGE_Y1 = %2\n").arg(y0, y1);
    for (const QString &line : pixelLines)
        text += line + QLatin1Char('\n');
    return text.toLatin1();
}

bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile f(path);
    return f.open(QIODevice::WriteOnly | QIODevice::Truncate) && f.write(bytes) == bytes.size();
}

std::unique_ptr<TiffData> frameFromImg(const QString &path, int width, int height, const QVector<quint32> &values,
                                       int bytesPerPixel, quint16 xOffset, quint16 yOffset)
{
    const QByteArray comment = QByteArray("BytesPerPixel=") + QByteArray::number(bytesPerPixel);
    if (!writeFile(path, imgFile(quint16(width), quint16(height), xOffset, yOffset, comment, values, bytesPerPixel)))
        return nullptr;
    auto frame = std::make_unique<TiffData>();
    ErrPoints none;
    if (!frame->read(path, &none))
        return nullptr;
    frame->errPoints = nullptr; // `none` goes out of scope
    return frame;
}

std::unique_ptr<TiffData> frameFromText(const QString &path, int width, int height, const QVector<double> &values)
{
    QStringList lines;
    for (int i = 0; i < values.size(); ++i)
        lines << QStringLiteral("%1 %2 %3").arg(i % width).arg(i / width).arg(values.at(i) / 500.0, 0, 'g', 17);
    if (!writeFile(path, textImageFile("0", QString::number(width), "0", QString::number(height), lines)))
        return nullptr;
    auto frame = std::make_unique<TiffData>();
    if (!frame->read(path))
        return nullptr;
    return frame;
}

QVector<TiffTag> firstDirectory(const QByteArray &file)
{
    QVector<TiffTag> tags;
    if (file.size() < 8 || !file.startsWith("II"))
        return tags;
    const qint64 ifd = getLe(file, 4, 4);
    if (ifd + 2 > file.size())
        return tags;
    const quint32 n = getLe(file, ifd, 2);
    for (quint32 i = 0; i < n && ifd + 2 + 12 * (i + 1) <= file.size(); ++i) {
        const qint64 at = ifd + 2 + 12 * i;
        TiffTag t;
        t.tag = quint16(getLe(file, at, 2));
        t.type = quint16(getLe(file, at + 2, 2));
        t.count = getLe(file, at + 4, 4);
        t.value = getLe(file, at + 8, t.type == 3 ? 2 : 4); // 3: SHORT
        t.entryPos = at;
        tags << t;
    }
    return tags;
}

} // namespace FrameFiles
