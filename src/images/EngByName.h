#pragma once

#include <QString>
#include <QStringList>

// Energy of a frame read from its file name. Acquisition programs write the
// energy into the name ("sample_7112_50.tif"), often with "_" for the decimal
// point and sometimes in keV, so a regular expression picks the number and a
// factor scales it to eV.
struct EngByName
{
    QString pattern;
    double factor = 1;

    // The known patterns, in the order the pattern list offers them; the
    // first is the default of the pattern field.
    static const QStringList &knownPatterns();

    // The factor that goes with a pattern: 1000 when it reads keV (the
    // upper-cased pattern holds "KEV"), 1 otherwise.
    static double factorFor(const QString &pattern);

    // The number in `fileName` as the pattern finds it, before the factor.
    // The whole path is searched, so a directory such as "2024_0112" can
    // match before the file's own name does. Without a match (or with a
    // pattern that is not a valid expression) `*matched` is false and the
    // result is `fallback`.
    static double numberIn(const QString &fileName, const QString &pattern, double fallback,
                           bool *matched = nullptr);

    // numberIn(fileName, pattern, fNo) times the factor; a factor that is
    // not positive is not applied.
    double energy(const QString &fileName, int fNo) const;
};
