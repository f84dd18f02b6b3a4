#include "network/SSVHistory.h"

#include <QFile>
#include <QRegularExpression>
#include <QTextStream>

SSVHistory SSVHistory::read(const QString &fileName)
{
    QFile f(fileName);
    if (!f.open(QIODevice::ReadOnly | QIODevice::Text))
        return {};
    return fromText(QTextStream(&f).readAll());
}

SSVHistory SSVHistory::fromText(const QString &text)
{
    static const QRegularExpression blanks(QStringLiteral("\\s+"));
    SSVHistory h;
    for (const QString &line : text.split(QLatin1Char('\n'))) {
        const QStringList parts = line.simplified().split(blanks);
        if (parts.size() < 2)
            continue;
        const QString kind = parts.at(0).toUpper();
        if (kind == QLatin1String("A:"))
            h.host = parts.at(1);
        else if (kind == QLatin1String("P:"))
            h.port = parts.at(1);
    }
    return h;
}

bool SSVHistory::append(const QString &fileName, const QString &kind, const QString &value)
{
    QFile f(fileName);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Text))
        return false;
    const QByteArray line = QStringLiteral("%1 %2\n").arg(kind, value).toUtf8();
    return f.write(line) == line.size();
}
