#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

#include <memory>

class TiffData;

// Builders of image files for the tests, written from the file layouts by
// hand (bytes put one by one), independently of the readers under test.
namespace FrameFiles {

// An ".img" file: "IM", comment length, width, height, x and y offset as
// little-endian words, zeros up to byte 64, the comment, then the pixels
// little-endian in `bytesPerPixel` (2 or 4) bytes each.
QByteArray imgFile(quint16 width, quint16 height, quint16 xOffset, quint16 yOffset, const QByteArray &comment,
               const QVector<quint32> &pixels, int bytesPerPixel);

// A "#MQRS-CTImg" text image with the given RANGE lines and pixel lines.
QByteArray textImageFile(const QString &x0, const QString &x1, const QString &y0, const QString &y1,
                     const QStringList &pixelLines);

bool writeFile(const QString &path, const QByteArray &bytes);

// A frame read from an ".img" file holding `values` row after row: 16-bit
// for bytesPerPixel 2, 32-bit for 4. Null when writing or reading fails.
std::unique_ptr<TiffData> frameFromImg(const QString &path, int width, int height, const QVector<quint32> &values,
                                       int bytesPerPixel = 2, quint16 xOffset = 0, quint16 yOffset = 0);

// A 32-bit float frame read from a text image; each value is v/500 in the
// file, so the frame holds v.
std::unique_ptr<TiffData> frameFromText(const QString &path, int width, int height, const QVector<double> &values);

// One entry of a TIFF image directory, read by hand from a little-endian file.
struct TiffTag {
    quint16 tag = 0;
    quint16 type = 0;
    quint32 count = 0;
    quint32 value = 0;     // the value field read as SHORT or LONG by type
    qint64 entryPos = 0;   // file offset of the 12-byte entry
};
// The entries of the first directory of a classic little-endian TIFF.
QVector<TiffTag> firstDirectory(const QByteArray &file);

} // namespace FrameFiles
