#pragma once

#include "images/H5Handle.h"
#include "images/H5Stack.h"

#include <vector>

class FrameLoad;

// Reads the frames of one H5Stack, slice by slice, with the file kept open
// between slices. Lives on the loader's thread for as long as its job.
//
// Each slice is one hyperslab read into a buffer of one frame, from which
// the rows are copied: nothing larger than a frame is ever allocated, so a
// stack larger than memory fails frame by frame, never all at once. For a
// chunked dataset the chunk cache holds one layer of chunks, so that chunks
// deeper than one slice are decompressed once, not once a slice.
class H5StackReader
{
public:
    H5StackReader() = default;
    ~H5StackReader();
    H5StackReader(const H5StackReader &) = delete;
    H5StackReader &operator=(const H5StackReader &) = delete;

    // Opens the stack's file and dataset; false, with a log line, when they
    // are gone or have changed since the stack was found. A second call
    // after a failure fails at once and says nothing more.
    bool open(const H5Stack &stack);
    bool isOpen() const { return bool(dataset); }
    const H5Stack &stack() const { return stack_; }

    // Reads slice i into load (rows, sizes, min and max); false, with a log
    // line, when the read fails or memory is short.
    bool readFrame(int i, FrameLoad &load);

    // The pixel type a frame of this HDF5 type gets; PixelNone for types it
    // can't hold (64-bit integers, strings, compounds, ...).
    static int pixelTypeOf(hid_t type);

private:
    template <typename T>
    bool copyRows(FrameLoad &load) const;
    void close();

    H5Stack stack_;
    bool failed = false;
    H5Handle file;
    H5Handle dataset;
    H5Handle fileSpace;
    H5Handle memSpace;
    std::vector<unsigned char> buffer;
};
