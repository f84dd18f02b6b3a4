#include "app/StartupOptions.h"

#include "app/ConfigTable.h"
#include "app/Globals.h"

namespace StartupOptions {

bool hasOption(const ConfigTable &t, const char *option)
{
    return t.keys.contains(QLatin1String(option));
}

QString configFileName(const ConfigTable &t, const QString &defaultFile)
{
    QString name = defaultFile;
    if (hasOption(t, ConfigOption))
        name = t.valueExact(ConfigOption, name);
    if (hasOption(t, ConfigOption2))
        name = t.valueExact(ConfigOption2, name);
    return name;
}

void applyRootsAndButton(ConfigTable &t)
{
    gDataRoot = t.valueExact(QStringLiteral("DataRoot"), gDataRoot);
    if (hasOption(t, "-d"))
        gDataRoot = t.valueExact(QStringLiteral("-d"), gDataRoot);

    gBatchRoot = t.valueExact(QStringLiteral("BatchRoot"), gBatchRoot);
    if (hasOption(t, "-br"))
        gBatchRoot = t.valueExact(QStringLiteral("-br"), gBatchRoot);

    // Only the integer 1 shows the button; anything else, text included, is
    // read as a number other than 1.
    const auto flagText = [] { return QString(gShowAnalyzer2Button ? "1" : "0"); };
    gShowAnalyzer2Button =
        t.valueExact(QStringLiteral("ShowAnalyzer2Button"), flagText()).toInt(nullptr, 10) == 1;
    if (hasOption(t, "-showA2B"))
        gShowAnalyzer2Button = t.valueExact(QStringLiteral("-showA2B"), flagText()).toInt(nullptr, 10) == 1;
}

Flags readFlags(const ConfigTable &t)
{
    Flags f;
    f.japanese = hasOption(t, "-j");
    f.english = hasOption(t, "-e");
    // The default "batchFile.bat" is only looked at once -b is known to be
    // there, where the row always has a value (empty when another option
    // follows), so it never takes effect.
    if (hasOption(t, "-b"))
        f.batchFile = t.valueExact(QStringLiteral("-b"), QStringLiteral("batchFile.bat"));
    f.execBatch = hasOption(t, "-x");
    f.debug = hasOption(t, "-dbg");
    return f;
}

} // namespace StartupOptions
