#pragma once

#include "images/TiffData.h"

// What sums kept of a frame depend on: the frame, the version of its pixels
// and its shift. Sums taken under one stamp are valid while the frame still
// shows the same stamp.
struct FrameStamp
{
    const TiffData *frame = nullptr;
    quint64 version = 0;
    int shiftX = 0;
    int shiftY = 0;

    static FrameStamp of(const TiffData *f) { return {f, f->version(), f->shiftX, f->shiftY}; }
    bool operator==(const FrameStamp &o) const
    {
        return frame == o.frame && version == o.version && shiftX == o.shiftX && shiftY == o.shiftY;
    }
};
