#include "images/EngByName.h"

#include <QRegularExpression>

const QStringList &EngByName::knownPatterns()
{
    static const QStringList list{
        QStringLiteral("(\\d|)\\d\\d\\d\\d_\\d\\d\\d\\d"),
        QStringLiteral("\\d\\d\\d\\d_\\d\\d\\d\\d"),
        QStringLiteral("\\d\\d\\d\\d_\\d\\d"),
        QStringLiteral("\\d\\d\\d\\d_\\d\\deV"),
        QStringLiteral("\\d\\d\\d\\d\\.\\d\\d\\d\\d"),
        QStringLiteral("\\d\\d\\d\\d\\.\\d\\d"),
        QStringLiteral("\\d\\d\\d\\d\\.\\d\\deV"),
        QStringLiteral("\\d\\d\\d\\d\\.\\d"),
        QStringLiteral("\\d\\d_\\d\\d\\d\\d\\d\\dKeV"),
        QStringLiteral("\\d_\\d\\d\\d\\d\\d\\dKeV"),
    };
    return list;
}

double EngByName::factorFor(const QString &pattern)
{
    return pattern.toUpper().contains(QLatin1String("KEV")) ? 1000.0 : 1.0;
}

double EngByName::numberIn(const QString &fileName, const QString &pattern, double fallback,
                           bool *matched)
{
    if (matched)
        *matched = false;
    const QRegularExpression re(pattern);
    // An invalid expression is treated as one that never matches; asking it
    // to match would only add a warning per frame.
    if (!re.isValid())
        return fallback;
    const QRegularExpressionMatch m = re.match(fileName);
    if (!m.hasMatch())
        return fallback;
    if (matched)
        *matched = true;

    // The unit letters the patterns may catch are removed, keV first so that
    // its "EV" is not left behind as "K". "D" goes too, as it always has.
    QString text = m.captured(0).toUpper();
    text.replace(QLatin1Char('_'), QLatin1Char('.'));
    text.remove(QLatin1String("KEV"));
    text.remove(QLatin1String("EV"));
    text.remove(QLatin1Char('D'));
    return text.toDouble(); // what does not parse is 0
}

double EngByName::energy(const QString &fileName, int fNo) const
{
    const double value = numberIn(fileName, pattern, fNo);
    return factor > 0 ? value * factor : value;
}
