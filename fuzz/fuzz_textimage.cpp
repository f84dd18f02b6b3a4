// "#MQRS-CTImg" text images: header lines, then one line per pixel.
#include "FuzzSupport.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    return fuzzFrameStartingWith(data, size, {"#MQRS-CTImg"});
}
