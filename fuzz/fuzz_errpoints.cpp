// Bad-pixel mask files, loaded on their own and added to a kept mask.
#include "FuzzSupport.h"

#include "images/ErrPoints.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString path = fuzzFile(data, size);
    ErrPoints fresh;
    fresh.load(path, false);
    ErrPoints kept;
    kept.points = {QPoint(1, 1)};
    if (kept.load(path, true))
        (void)kept.contains(1, 1);
    return 0;
}
