#pragma once

#include <QString>

class ConfigTable;

// What main() takes from the command line and the configuration, step by
// step. Kept apart from main() so that the rules can be checked without
// starting a window.
namespace StartupOptions {

// Option names given to ConfigTable::parseArgs as the configuration file keys.
inline constexpr const char *ConfigOption = "-c";
inline constexpr const char *ConfigOption2 = "-config";

// The configuration file: the default, then -c, then -config, so -config wins
// when both are given.
QString configFileName(const ConfigTable &t, const QString &defaultFile);

// Data root, batch root and the ShowAnalyzer2 button: the configuration keys
// first, each with the current global as default, then the command line.
void applyRootsAndButton(ConfigTable &t);

// True when the option is on the command line.
bool hasOption(const ConfigTable &t, const char *option);

struct Flags
{
    bool japanese = false;  // -j: tested and without effect, Japanese is the default
    bool english = false;   // -e: no translator
    QString batchFile;      // -b: file for the batch editor; empty leaves it alone
    bool execBatch = false; // -x: run the batch editor's text at once
    bool debug = false;     // -dbg
};
Flags readFlags(const ConfigTable &t);

} // namespace StartupOptions
