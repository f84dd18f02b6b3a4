#pragma once

#include <QString>

// File names of the save code. The suffix of a name is what follows the last
// dot of its file part, and the complete base name what precedes it (as
// QFileInfo has them); a dot in a directory name never counts.

// The name with text put between its complete base name and its suffix:
// "d/sp.dat" and "T" give "d/spT.dat". The directory is
// kept as it was written, relative or absolute.
QString insertBeforeSuffix(const QString &name, const QString &text);

// The name with the given suffix (with or without its dot). A suffix already
// there is kept unless force. With absolute the directory is made absolute,
// otherwise it stays as written.
QString setSuffix(const QString &name, const QString &suffix, bool force, bool absolute);

// <absolute dir>/<base>.<e>: e is the name's own suffix when keep is true and
// it has one, else ext. So with keep false the suffix is always replaced.
QString withExtension(const QString &fname, const QString &ext, bool keep);

// <absolute dir>/<base>-<s>.<suffix>, a dash joining base and s; a name
// without a suffix gets none (and no trailing dot).
QString withSuffix(const QString &fname, const QString &s);
