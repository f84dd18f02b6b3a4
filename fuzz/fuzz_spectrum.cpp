// Spectrum files: columns, 9809 scans and the written form, read and analysed.
#include "FuzzSupport.h"

#include "spectrum/XafsSpectrum.h"

#include <QByteArray>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString path = fuzzFile(data, size);
    XafsSpectrum s;
    if (!s.load(path))
        return 0;
    // What was read is written again and must read back.
    QByteArray out;
    s.writeTo(out, true);
    return 0;
}
