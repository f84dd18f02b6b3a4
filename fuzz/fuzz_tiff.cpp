// TIFF frames, big- and little-endian, through libtiff and the frame code.
#include "FuzzSupport.h"

#include <cstring>

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    fuzzInit(argc, argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size < 2 || (std::memcmp(data, "II", 2) != 0 && std::memcmp(data, "MM", 2) != 0))
        return -1;
    fuzzFrame(data, size);
    return 0;
}
