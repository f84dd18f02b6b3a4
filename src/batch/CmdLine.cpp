#include "batch/CmdLine.h"

#include "app/LineItems.h"

CmdLine CmdLine::parse(const QString &text)
{
    CmdLine c;
    c.raw = text;
    c.line = text.simplified();
    const qsizetype hash = c.line.indexOf(QLatin1Char('#'));
    if (hash >= 0)
        c.line.truncate(hash);

    // Blank is judged on the text before the comment; everything else reads
    // the raw text.
    if (isBlankLine(text))
        return c;

    QStringList t = tokens(text);
    if (t.isEmpty())
        return c;
    c.valid = true;
    c.cmd = t.takeFirst();
    c.args = std::move(t);
    c.isMeta = c.cmd.startsWith(QLatin1Char(':'));
    return c;
}

QStringList CmdLine::tokens(const QString &text)
{
    QStringList out;
    QString rest = text;
    QString item;
    while (!rest.isEmpty()) {
        rest = splitFirstItem(rest, &item);
        if (!item.isEmpty())
            out.append(item);
    }
    return out;
}

qsizetype CmdLine::continuationAt(const QString &text)
{
    qsizetype i = text.size() - 1;
    while (i >= 0 && isLineSpace(text.at(i)))
        --i;
    if (i >= 0 && text.at(i) == QLatin1Char('\\'))
        return i;
    return -1;
}

QString CmdLine::gather(const QStringList &lines, int *index)
{
    int i = *index;
    if (i < 0 || i >= lines.size())
        return QString();
    QString text = lines.at(i);
    qsizetype cut;
    while ((cut = continuationAt(text)) >= 0 && i + 1 < lines.size()) {
        text.truncate(cut);
        text += lines.at(++i);
    }
    *index = i;
    return text;
}
