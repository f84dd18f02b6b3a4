#include "images/FrameLoad.h"

#include <tiffio.h>

#include <cstring>
#include <new>

FrameLoad::~FrameLoad()
{
    freeRows(rows, pixelType);
}

void FrameLoad::begin(int type, quint32 rowCount)
{
    freeRows(rows, pixelType);
    pixelType = type;
    rows.reserve(qsizetype(rowCount));
}

void *FrameLoad::appendRow(std::size_t bytes)
{
    void *row = nullptr;
    switch (pixelType) {
    case PixelTiffU16:
        row = _TIFFmalloc(tmsize_t(bytes));
        break;
    case PixelU16:
        row = new (std::nothrow) quint16[bytes / sizeof(quint16)];
        break;
    case PixelU32:
        row = new (std::nothrow) quint32[bytes / sizeof(quint32)];
        break;
    case PixelF32:
        row = new (std::nothrow) float[bytes / sizeof(float)];
        break;
    default:
        return nullptr;
    }
    if (!row)
        return nullptr;
    std::memset(row, 0, bytes);
    rows.append(row);
    return row;
}

void FrameLoad::freeRows(QVector<void *> &rows, int pixelType)
{
    for (void *row : rows) {
        switch (pixelType) {
        case PixelTiffU16:
            _TIFFfree(row);
            break;
        case PixelU16:
            delete[] static_cast<quint16 *>(row);
            break;
        case PixelU32:
            delete[] static_cast<quint32 *>(row);
            break;
        case PixelF32:
            delete[] static_cast<float *>(row);
            break;
        default:
            break; // rows never exist without a pixel type
        }
    }
    rows.clear();
}
