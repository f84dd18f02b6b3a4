#pragma once

#include <QString>

// Writes the label and the current time ("yyMMdd hh:mm:ss.zzz") to the debug
// stream, to mark the stages of long runs.
void logTime(const QString &label);
