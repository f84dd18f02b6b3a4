// Batch lines: continuation, tokens and the parsed line.
#include "FuzzSupport.h"

#include "batch/CmdLine.h"

#include <QStringList>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QStringList lines = QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size))
                                  .split(QLatin1Char(QChar::LineFeed));
    for (int i = 0; i < lines.size(); ++i) {
        const int from = i;
        const CmdLine c = CmdLine::parse(CmdLine::gather(lines, &i));
        if (i < from || i >= lines.size() || (c.valid && c.cmd.isEmpty()))
            __builtin_trap();
    }
    return 0;
}
