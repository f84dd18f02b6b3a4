// ".img" frames: "IM", a binary head, a comment, 16- or 32-bit pixels.
#include "FuzzSupport.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    return fuzzFrameStartingWith(data, size, {"IM"});
}
