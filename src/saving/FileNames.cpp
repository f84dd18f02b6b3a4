#include "saving/FileNames.h"

#include <QFileInfo>

namespace {

// A name cut into the directory part as written (with its final slash, or
// empty), the complete base name and the suffix (without its dot).
struct NameParts {
    QString dir;
    QString base;
    QString suffix;
};

NameParts partsOf(const QString &name)
{
    NameParts p;
    const int slash = int(name.lastIndexOf(QLatin1Char('/')));
    p.dir = name.left(slash + 1);
    const QString file = name.mid(slash + 1);
    const int dot = int(file.lastIndexOf(QLatin1Char('.')));
    if (dot < 0) {
        p.base = file;
    } else {
        p.base = file.left(dot);
        p.suffix = file.mid(dot + 1);
    }
    return p;
}

QString joined(const QString &dir, const QString &base, const QString &suffix)
{
    if (suffix.isEmpty())
        return dir + base;
    return dir + base + QLatin1Char('.') + suffix;
}

QString absoluteDir(const QString &name)
{
    return QFileInfo(name).absolutePath() + QLatin1Char('/');
}

} // namespace

QString insertBeforeSuffix(const QString &name, const QString &text)
{
    const NameParts p = partsOf(name);
    return joined(p.dir, p.base + text, p.suffix);
}

QString setSuffix(const QString &name, const QString &suffix, bool force, bool absolute)
{
    NameParts p = partsOf(name);
    if (absolute)
        p.dir = absoluteDir(name);
    if (p.suffix.isEmpty() || force)
        p.suffix = suffix.startsWith(QLatin1Char('.')) ? suffix.mid(1) : suffix;
    return joined(p.dir, p.base, p.suffix);
}

QString withExtension(const QString &fname, const QString &ext, bool keep)
{
    const NameParts p = partsOf(fname);
    const QString e = keep && !p.suffix.isEmpty() ? p.suffix : ext;
    return joined(absoluteDir(fname), p.base, e);
}

QString withSuffix(const QString &fname, const QString &s)
{
    const NameParts p = partsOf(fname);
    return joined(absoluteDir(fname), p.base + QLatin1Char('-') + s, p.suffix);
}
