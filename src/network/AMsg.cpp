#include "network/AMsg.h"

#include "app/LineItems.h"

namespace {
// Cuts the item that starts at or behind *pos and moves *pos behind it.
// A quote without its closing quote takes the rest of the text. Returns
// false when nothing but white space is left.
bool nextItem(const QString &t, qsizetype *pos, QString *item)
{
    const qsizetype n = t.size();
    qsizetype i = *pos;
    while (i < n && isLineSpace(t.at(i)))
        ++i;
    item->clear();
    if (i >= n) {
        *pos = n;
        return false;
    }
    if (t.at(i) == QLatin1Char('"')) {
        const qsizetype close = t.indexOf(QLatin1Char('"'), i + 1);
        *item = close < 0 ? t.mid(i + 1) : t.mid(i + 1, close - i - 1);
        *pos = close < 0 ? n : close + 1;
        return true;
    }
    qsizetype e = i;
    while (e < n && !isLineSpace(t.at(e)))
        ++e;
    *item = t.mid(i, e - i);
    *pos = e;
    return true;
}

void splitNode(const QString &node, QString *name, QString *ch)
{
    const qsizetype dot = node.indexOf(QLatin1Char('.'));
    *name = dot < 0 ? node : node.left(dot);
    *ch = dot < 0 ? QString() : node.mid(dot + 1);
}

QString fullName(const QString &name, const QString &ch)
{
    return ch.isEmpty() ? name : name + QLatin1Char('.') + ch;
}
} // namespace

AMsg AMsg::parse(const QString &line)
{
    AMsg m;
    m.raw = line;
    m.raw.remove(QLatin1Char('\n'));
    m.raw.remove(QLatin1Char('\r'));

    qsizetype pos = 0;
    nextItem(m.raw, &pos, &m.fromTo);
    m.body = m.raw.mid(pos).trimmed();
    const qsizetype gt = m.fromTo.indexOf(QLatin1Char('>'));
    if (!m.body.isEmpty() && gt >= 0) {
        m.from = m.fromTo.left(gt);
        m.to = m.fromTo.mid(gt + 1);
        splitNode(m.from, &m.fromName, &m.fromCh);
        splitNode(m.to, &m.toName, &m.toCh);

        qsizetype p = 0;
        nextItem(m.body, &p, &m.cmd);
        m.rest = m.body.mid(p).trimmed();
        QString item;
        while (nextItem(m.body, &p, &item)) {
            if (!item.isEmpty())
                m.params.append(item);
        }
        m.param1 = m.params.value(0);

        if (m.cmd.startsWith(QLatin1Char('@'))) {
            m.cmd.remove(0, 1);
            m.type = Answer;
        } else if (m.cmd.startsWith(QLatin1Char('_'))) {
            m.cmd.remove(0, 1);
            m.type = Event;
        } else {
            m.type = Ask;
        }
        m.ok = 1;
    }
    m.fromFull = fullName(m.fromName, m.fromCh);
    m.toFull = fullName(m.toName, m.toCh);
    return m;
}
