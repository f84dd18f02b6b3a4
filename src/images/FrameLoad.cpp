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
    if (pixelType == PixelTiffU16) {
        row = _TIFFmalloc(tmsize_t(bytes));
    } else {
        row = withPixelType(pixelType, static_cast<void *>(nullptr), [bytes](auto tag) -> void * {
            using T = typename decltype(tag)::type;
            return new (std::nothrow) T[bytes / sizeof(T)];
        });
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
        if (pixelType == PixelTiffU16) {
            _TIFFfree(row);
            continue;
        }
        // Rows never exist without a pixel type.
        withPixelType(pixelType, 0, [row](auto tag) {
            using T = typename decltype(tag)::type;
            delete[] static_cast<T *>(row);
            return 0;
        });
    }
    rows.clear();
}
