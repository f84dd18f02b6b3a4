// TIFF frames, big- and little-endian, through libtiff and the frame code.
#include "FuzzSupport.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    return fuzzFrameStartingWith(data, size, {"II", "MM"});
}
