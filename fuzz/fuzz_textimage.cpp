// "#MQRS-CTImg" text images: header lines, then one line per pixel.
#include "FuzzSupport.h"

#include <cstring>

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    fuzzInit(argc, argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size < 11 || std::memcmp(data, "#MQRS-CTImg", 11) != 0)
        return -1;
    fuzzFrame(data, size);
    return 0;
}
