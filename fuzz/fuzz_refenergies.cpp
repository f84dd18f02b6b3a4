// Energy reference files: 9809 scans and plain tables.
#include "FuzzSupport.h"

#include "images/RefEnergies.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString path = fuzzFile(data, size);
    RefEnergies r;
    if (!r.read(path, 3.13551))
        return 0;
    for (int f : {-1, 0, 7, 100000})
        (void)r.energy(f, 10, f & 1);
    return 0;
}
