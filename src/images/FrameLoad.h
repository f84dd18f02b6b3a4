#pragma once

#include <QString>
#include <QVector>

#include <cfloat>
#include <cstddef>

// Kinds of pixel storage of a frame. Pixels stay in the file's own type so
// that a stack of hundreds of frames takes no more memory than its files.
// The first five values are those frames have always had; the types of
// HDF5 stacks follow them.
enum PixelType {
    PixelTiffU16 = 0, // 16-bit unsigned, rows from _TIFFmalloc
    PixelU16 = 1,     // 16-bit unsigned, rows from new[]
    PixelU32 = 2,     // 32-bit unsigned, rows from new[]
    PixelF32 = 3,     // 32-bit float, rows from new[]
    PixelNone = 4,    // nothing loaded
    PixelU8 = 5,      // the rest from new[] as well
    PixelI8 = 6,
    PixelI16 = 7,
    PixelI32 = 8,
    PixelF64 = 9
};

template <typename T>
struct PixelTag {
    using type = T;
};

// Calls f(PixelTag<T>()) with T the C++ type of the values of `type`, and
// returns what it returns; `none` for PixelNone or a value out of the list.
// The one place that maps a pixel type to its values: the loops that work on
// rows switch here once per row or per box, never per pixel.
template <typename R, typename F>
R withPixelType(int type, R none, F &&f)
{
    switch (type) {
    case PixelTiffU16:
    case PixelU16:
        return f(PixelTag<quint16>());
    case PixelU32:
        return f(PixelTag<quint32>());
    case PixelF32:
        return f(PixelTag<float>());
    case PixelU8:
        return f(PixelTag<quint8>());
    case PixelI8:
        return f(PixelTag<qint8>());
    case PixelI16:
        return f(PixelTag<qint16>());
    case PixelI32:
        return f(PixelTag<qint32>());
    case PixelF64:
        return f(PixelTag<double>());
    default:
        return none;
    }
}

// Bytes of one pixel of `type`; 0 for PixelNone or a value out of the list.
inline int pixelBytes(int type)
{
    return withPixelType(type, 0, [](auto tag) { return int(sizeof(typename decltype(tag)::type)); });
}

// Frames larger than this are refused whatever their header says: detector
// frames are a few tens of megabytes, and a garbage header must not make a
// reader allocate gigabytes.
constexpr qint64 kMaxFrameBytes = qint64(1) << 30;

// What a reader produces: the rows of one frame and the header values that go
// with them. It owns its rows until TiffData takes them, so a reader that
// fails half-way leaks nothing: each row is registered here as soon as it is
// allocated and freed by the allocator that matches pixelType.
//
// A reader starts from a copy of the frame's current header values and
// overwrites only what its file form provides.
class FrameLoad
{
public:
    FrameLoad() = default;
    ~FrameLoad();
    FrameLoad(const FrameLoad &) = delete;
    FrameLoad &operator=(const FrameLoad &) = delete;

    int pixelType = PixelNone;
    quint32 width = 0;
    quint32 height = 0;
    quint32 xOffset = 0;
    quint32 yOffset = 0;
    quint32 scanlineBytes = 0;
    int bytesPerPixel = 2;
    double exposureMs = 100.0;
    double min = DBL_MAX;
    double max = -DBL_MAX;
    QVector<void *> rows;

    // Sets the pixel type (frees rows of another type first) and reserves
    // the row list.
    void begin(int type, quint32 rowCount);
    // Allocates one row of `bytes` bytes (zeroed) by the allocator of the
    // pixel type and appends it to rows. Null when memory is short.
    void *appendRow(std::size_t bytes);

    // Frees every row by the allocator that made it and empties the list.
    static void freeRows(QVector<void *> &rows, int pixelType);
};
