#pragma once

#include <QString>
#include <QVector>

#include <cfloat>
#include <cstddef>

// Kinds of pixel storage of a frame. Pixels stay in the file's own type so
// that a stack of hundreds of frames takes no more memory than its files.
enum PixelType {
    PixelTiffU16 = 0, // 16-bit unsigned, rows from _TIFFmalloc
    PixelU16 = 1,     // 16-bit unsigned, rows from new[]
    PixelU32 = 2,     // 32-bit unsigned, rows from new[]
    PixelF32 = 3,     // 32-bit float, rows from new[]
    PixelNone = 4     // nothing loaded
};

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
