#pragma once

#include <QString>

// Writes a 16-bit grey TIFF, uncompressed: `pixels` holds width*height values
// row after row. Map exports, the neutral flat and dark frames and any other
// 16-bit frame output go through here.
//
// Rows per strip is set to the width, not the height: files have always been
// written so, and readers follow the tag whatever it says.
//
// With exposureSeconds >= 0 an EXIF directory with ExposureTime is added, as
// the detector software writes it.
//
// Returns false, without a message of its own, when the file cannot be
// opened or a tag or strip cannot be written.
bool writeTiff16(const QString &fileName, quint32 width, quint32 height, const quint16 *pixels,
                 double exposureSeconds = -1.0);
