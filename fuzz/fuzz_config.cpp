// Configuration files with INCLUDE: the input includes itself and a second file.
#include "FuzzSupport.h"

#include "app/ConfigTable.h"

#include <QDir>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    // Names in the input are relative to the working folder, where the
    // input is written under two names it may include: "a" and "b".
    static const bool inDir = QDir::setCurrent(fuzzDir());
    (void)inDir;
    fuzzFile(data, size, QStringLiteral("a"));
    fuzzFile(data, size / 2, QStringLiteral("b"));
    ConfigTable t;
    t.load(QStringLiteral("a"));
    (void)t.value(QStringLiteral("batch"));
    (void)t.allRestsOf(QStringLiteral("BATCH"));
    return 0;
}
