#include "network/StarsCmdTable.h"

#include <QDebug>

StarsCmdTable StarsCmdTable::standard()
{
    StarsCmdTable t;
    t.add(Hello, QStringLiteral("Hello"), QStringLiteral("Answer greeting message"));
    t.add(Help, QStringLiteral("Help"), QStringLiteral("Show help message"));
    t.add(IsBusy, QStringLiteral("IsBusy"), QStringLiteral("Answer if kVerno is busy"));
    return t;
}

bool StarsCmdTable::add(int id, const QString &msg, const QString &description)
{
    for (const Record &r : std::as_const(table)) {
        if (r.id == id || r.msg == msg) {
            qDebug().noquote() << (r.id == id ? "Duplicated id" : "Duplicated msg") << id << msg << description;
            return false;
        }
    }
    table.append({id, msg, description});
    return true;
}

int StarsCmdTable::idOf(const QString &msg) const
{
    for (const Record &r : table) {
        if (r.msg == msg)
            return r.id;
    }
    return Unknown;
}

QString StarsCmdTable::helpText() const
{
    QStringList asks;
    for (const Record &r : table) {
        if (!r.msg.isEmpty() && !r.msg.startsWith(QLatin1Char('@')) && !r.msg.startsWith(QLatin1Char('_')))
            asks.append(r.msg);
    }
    return QStringLiteral("Commands : ") + asks.join(QLatin1Char(' '));
}

StarsCmdTable::Reply StarsCmdTable::reply(const AMsg &m, const QString &selfName, bool busy) const
{
    switch (idOf(m.cmd)) {
    case Hello:
        return {Reply::SendAnswer, QStringLiteral("Hello! I am %1. Nice to meet you!").arg(selfName)};
    case Help: {
        if (m.params.isEmpty())
            return {Reply::SendAnswer, helpText()};
        for (const Record &r : table) {
            if (r.msg == m.param1)
                return {Reply::SendAnswer, QStringLiteral(": ") + r.description};
        }
        return {Reply::SendAnswer, QStringLiteral("Er: Command [%1] not found.").arg(m.param1)};
    }
    case IsBusy:
        return {Reply::SendAnswer, QString::number(busy ? 1 : 0)};
    default:
        break;
    }
    switch (m.type) {
    case AMsg::Ask:
        return {Reply::PassAsk, QString()};
    case AMsg::Event:
        return {Reply::PassEvent, QString()};
    case AMsg::Answer:
        return {Reply::PassAnswer, QString()};
    default:
        return {Reply::SendAnswer, QStringLiteral("Er: Unknown Command")};
    }
}

QString StarsCmdTable::paramCountError(const AMsg &m, int wanted)
{
    if (m.params.size() == wanted)
        return QString();
    // "shuld" is the message as clients have always received it.
    return QStringLiteral("Er: Number of Params shuld be %1").arg(wanted);
}
