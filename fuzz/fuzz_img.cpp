// ".img" frames: "IM", a binary head, a comment, 16- or 32-bit pixels.
#include "FuzzSupport.h"

#include <cstring>

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    fuzzInit(argc, argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size < 2 || std::memcmp(data, "IM", 2) != 0)
        return -1;
    fuzzFrame(data, size);
    return 0;
}
