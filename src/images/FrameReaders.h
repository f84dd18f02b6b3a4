#pragma once

#include <QString>

class FrameLoad;

// The three image file forms. Each fills `load` and returns true, or returns
// false having logged what went wrong (the load then still owns whatever rows
// it got and frees them). They never throw and never allocate more than the
// file can hold.

// A 16-bit grey TIFF through libtiff, with the EXIF exposure time if present.
bool readTiffFile(const QString &fileName, FrameLoad &load);

// The ".img" form: "IM", a 64-byte head, a text comment, then little-endian
// pixels of 16 or 32 bits.
bool readImgFile(const QString &fileName, FrameLoad &load);

// The "#MQRS-CTImg" text image: header lines, then one line per pixel.
bool readTextImageFile(const QString &fileName, FrameLoad &load);
