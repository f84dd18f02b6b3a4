#include "batch/MetaCmd.h"

#include <QLatin1String>

MetaCmdId metaCmdId(const QString &word)
{
    struct Row {
        MetaCmdId id;
        QLatin1String text;
    };
    static const Row rows[] = {
        {MetaFor, QLatin1String(":for")},
        {MetaNext, QLatin1String(":next")},
        {MetaEcho, QLatin1String(":echo")},
        {MetaRemStart, QLatin1String(":rem_start")},
        {MetaRemEnd, QLatin1String(":rem_end")},
        {MetaEnd, QLatin1String(":end")},
        {MetaLet, QLatin1String(":let")},
    };
    for (const Row &r : rows) {
        if (word.compare(r.text, Qt::CaseInsensitive) == 0)
            return r.id;
    }
    return MetaNone;
}
