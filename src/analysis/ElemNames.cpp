#include "analysis/ElemNames.h"

#include "spectrum/ElementTable.h"

#include <QStringList>

#include <utility>

QVector<ElemName> parseElemNames(const QString &text, bool sortByZ)
{
    QVector<ElemName> names;
    QString t = text;
    const QStringList parts = t.replace(QLatin1Char(','), QLatin1Char(' '))
                                      .simplified()
                                      .split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (const QString &part : parts) {
        QString symbol = part;
        QString edge = QStringLiteral("K");
        // A "-" at the very start is no separator: the part is then an
        // unknown symbol and dropped.
        const int dash = part.indexOf(QLatin1Char('-'));
        if (dash > 0) {
            symbol = part.left(dash);
            edge = part.mid(dash + 1);
        }
        const int z = elementNumber(symbol);
        if (z > 0)
            names.append({z, edgeNumber(edge), QStringLiteral("%1-%2").arg(symbol, edge)});
    }
    if (sortByZ && names.size() >= 2) {
        for (int i = 0; i + 1 < names.size(); ++i) {
            int m = i;
            for (int j = i + 1; j < names.size(); ++j) {
                if (names[j].z < names[m].z)
                    m = j;
            }
            if (m != i)
                std::swap(names[i], names[m]);
        }
    }
    return names;
}
