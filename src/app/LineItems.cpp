#include "app/LineItems.h"

#include <QDebug>

QString stripComment(const QString &line, QString *comment)
{
    bool inQuotes = false;
    for (qsizetype i = 0; i < line.size(); ++i) {
        const QChar c = line.at(i);
        if (c == QLatin1Char('\'') || c == QLatin1Char('"')) {
            inQuotes = !inQuotes;
        } else if (c == QLatin1Char('#') && !inQuotes) {
            if (comment)
                *comment = line.mid(i + 1);
            return line.left(i);
        }
    }
    if (comment)
        comment->clear();
    return line;
}

bool isBlankLine(const QString &line)
{
    return stripComment(line).simplified().isEmpty();
}

QString splitFirstItem(const QString &line, QString *item)
{
    QString dummy;
    QString &out = item ? *item : dummy;
    out.clear();

    const qsizetype n = line.size();
    qsizetype start = 0;
    while (start < n && isLineSpace(line.at(start)))
        ++start;
    if (start >= n)
        return QString();

    if (line.at(start) != QLatin1Char('"')) {
        qsizetype end = start;
        while (end < n && !isLineSpace(line.at(end)))
            ++end;
        if (end >= n) {
            if (line.at(n - 1) == QLatin1Char('"'))
                qDebug().noquote() << QString("In a line [%1] item is started from not quote but ended by quote").arg(line);
            out = line.mid(start);
            return QString();
        }
        if (line.at(end - 1) == QLatin1Char('"'))
            qDebug().noquote() << QString("In a line [%1] item is started from not quote but ended by quote").arg(line);
        out = line.mid(start, end - start);
        return line.mid(end);
    }

    const qsizetype close = line.indexOf(QLatin1Char('"'), start + 1);
    if (close < 0) {
        qDebug().noquote() << QString("In a line [%1] item is started from quote but not ended by quote").arg(line);
        out = line.mid(start + 1);
        return QString();
    }
    out = line.mid(start + 1, close - start - 1);
    return line.mid(close + 1);
}
