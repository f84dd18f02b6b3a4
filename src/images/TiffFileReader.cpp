#include "images/FrameLoad.h"
#include "images/FrameReaders.h"
#include "images/TiffHandle.h"

#include <QDebug>
#include <QFileInfo>

#include <tiffio.h>

#include <algorithm>

// The exposure time in ms from the EXIF directory, 100 ms when the file has
// none. Called after the pixels are read, because reading the EXIF directory
// leaves libtiff in that directory, and the image sizes must come from the
// image directory.
static double exifExposureMs(TIFF *tif)
{
    double seconds = 0.1;
    toff_t exifOffset = 0;
    if (TIFFGetField(tif, TIFFTAG_EXIFIFD, &exifOffset) && TIFFReadEXIFDirectory(tif, exifOffset)) {
        // libtiff keeps this rational as a float or a double depending on
        // its version; the field tells which.
        const TIFFField *field = TIFFFieldWithTag(tif, EXIFTAG_EXPOSURETIME);
        if (field && TIFFFieldSetGetSize(field) == int(sizeof(float))) {
            float value = 0.0f;
            if (TIFFGetField(tif, EXIFTAG_EXPOSURETIME, &value))
                seconds = value;
        } else if (field && TIFFFieldSetGetSize(field) == int(sizeof(double))) {
            double value = 0.0;
            if (TIFFGetField(tif, EXIFTAG_EXPOSURETIME, &value))
                seconds = value;
        }
    }
    return seconds * 1000.0;
}

bool readTiffFile(const QString &fileName, FrameLoad &load)
{
    TiffHandle handle(fileName, "r");
    if (!handle)
        return false;
    TIFF *tif = handle.get();

    uint32_t width = 0;
    uint32_t height = 0;
    TIFFGetField(tif, TIFFTAG_IMAGEWIDTH, &width);
    TIFFGetField(tif, TIFFTAG_IMAGELENGTH, &height);
    if (width == 0 || height == 0) {
        qDebug().noquote() << "Empty TIFF image" << fileName;
        return false;
    }
    const tmsize_t scanline = TIFFScanlineSize(tif);
    if (scanline <= 0)
        return false;

    // Pixels are always taken as 16-bit whatever the bits per sample say;
    // a row holds at least `width` of them so that no access runs past it.
    const qint64 rowBytes = std::max<qint64>(scanline, qint64(width) * 2);
    if (rowBytes * height > kMaxFrameBytes) {
        qDebug().noquote() << "Too large TIFF image" << width << height << fileName;
        return false;
    }
    uint16_t compression = COMPRESSION_NONE;
    TIFFGetFieldDefaulted(tif, TIFFTAG_COMPRESSION, &compression);
    if (compression == COMPRESSION_NONE && qint64(scanline) * height > QFileInfo(fileName).size()) {
        qDebug().noquote() << "TIFF image larger than its file" << width << height << fileName;
        return false;
    }

    load.begin(PixelTiffU16, height);
    quint16 lo = 0xffff;
    quint16 hi = 0;
    for (uint32_t y = 0; y < height; ++y) {
        void *row = load.appendRow(std::size_t(rowBytes));
        if (!row || TIFFReadScanline(tif, row, y, 0) < 0)
            return false;
        const quint16 *p = static_cast<const quint16 *>(row);
        for (uint32_t x = 0; x < width; ++x) {
            lo = std::min(lo, p[x]);
            hi = std::max(hi, p[x]);
        }
    }
    load.width = width;
    load.height = height;
    load.scanlineBytes = quint32(scanline);
    load.min = lo;
    load.max = hi;
    load.exposureMs = exifExposureMs(tif);
    return true;
}
