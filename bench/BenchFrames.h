#pragma once

#include "images/TiffData.h"
#include "images/TiffWriter.h"

#include <QStringList>
#include <QTemporaryDir>

#include <vector>

// `count` detector-sized 16-bit TIFFs of side x side pixels with scrambled
// values, written once per process into a temporary folder and read once, so
// that timed rounds read them from the page cache. Empty when they can't be
// written.
inline QStringList benchFrameFiles(quint32 side, int count)
{
    static QTemporaryDir dir;
    QStringList names;
    std::vector<quint16> px(std::size_t(side) * side);
    for (int f = 0; f < count; ++f) {
        for (std::size_t i = 0; i < px.size(); ++i)
            px[i] = quint16(((i + f) * 2654435761u) >> 16);
        const QString name = dir.filePath(QStringLiteral("frame%1-%2.tif").arg(side).arg(f, 3, 10, QLatin1Char('0')));
        if (!writeTiff16(name, side, side, px.data()))
            return QStringList();
        names << name;
    }
    for (const QString &n : names) {
        TiffData warm;
        warm.read(n);
    }
    return names;
}
