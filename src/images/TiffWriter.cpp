#include "images/TiffWriter.h"

#include "images/TiffHandle.h"

#include <tiffio.h>

#include <algorithm>

// Main-directory tags and pixels. Strips are written in turn, each sized
// for the rows that remain.
static bool writeImage(TIFF *tif, quint32 width, quint32 height, const quint16 *pixels)
{
    const quint32 rowsPerStrip = width;
    if (!TIFFSetField(tif, TIFFTAG_IMAGEWIDTH, width) || !TIFFSetField(tif, TIFFTAG_IMAGELENGTH, height)
        || !TIFFSetField(tif, TIFFTAG_COMPRESSION, COMPRESSION_NONE)
        || !TIFFSetField(tif, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK)
        || !TIFFSetField(tif, TIFFTAG_ROWSPERSTRIP, rowsPerStrip)
        || !TIFFSetField(tif, TIFFTAG_SAMPLESPERPIXEL, 1) || !TIFFSetField(tif, TIFFTAG_BITSPERSAMPLE, 16)
        || !TIFFSetField(tif, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG)
        || !TIFFSetField(tif, TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT))
        return false;

    const quint16 *p = pixels;
    tstrip_t strip = 0;
    for (quint32 row = 0; row < height; row += rowsPerStrip, ++strip) {
        const quint32 n = std::min(rowsPerStrip, height - row);
        const tmsize_t bytes = TIFFVStripSize(tif, n);
        // libtiff takes a non-const buffer but does not change it for
        // uncompressed data.
        if (TIFFWriteEncodedStrip(tif, strip, const_cast<quint16 *>(p), bytes) < 0)
            return false;
        p += std::size_t(n) * width;
    }
    return true;
}

// The EXIF directory goes behind the image directory, whose EXIFIFD entry
// then gets its offset: the image directory is written first with a
// placeholder, and rewritten once the offset is known.
static bool writeExif(TIFF *tif, double exposureSeconds)
{
    if (!TIFFWriteDirectory(tif))
        return false;
    if (TIFFCreateEXIFDirectory(tif) != 0 || !TIFFSetField(tif, EXIFTAG_EXPOSURETIME, exposureSeconds))
        return false;
    uint64_t exifOffset = 0;
    if (!TIFFWriteCustomDirectory(tif, &exifOffset))
        return false;
    if (!TIFFSetDirectory(tif, 0) || !TIFFSetField(tif, TIFFTAG_EXIFIFD, exifOffset))
        return false;
    return TIFFRewriteDirectory(tif) != 0;
}

bool writeTiff16(const QString &fileName, quint32 width, quint32 height, const quint16 *pixels,
                 double exposureSeconds)
{
    if (width == 0 || height == 0 || !pixels)
        return false;
    const bool withExif = exposureSeconds >= 0.0;
    TiffHandle handle(fileName, "w");
    if (!handle)
        return false;
    TIFF *tif = handle.get();
    if (withExif && !TIFFSetField(tif, TIFFTAG_EXIFIFD, uint64_t(0)))
        return false;
    if (!writeImage(tif, width, height, pixels))
        return false;
    return withExif ? writeExif(tif, exposureSeconds) : TIFFWriteDirectory(tif) != 0;
}
