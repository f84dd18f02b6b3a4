#pragma once

#include "network/AMsg.h"

#include <QString>
#include <QVector>

// The commands that other clients of the message server may ask of this
// program, and what it does with each line that reaches it.
class StarsCmdTable
{
public:
    enum Id { Hello = 0, Help = 1, IsBusy = 2, Unknown = 4 };

    struct Record {
        int id;
        QString msg;
        QString description;
    };

    // What to do with a line: send text back as the answer, or hand the
    // message on as an ask, an event or an answer of someone else's.
    struct Reply {
        enum Kind { SendAnswer, PassAsk, PassEvent, PassAnswer };
        Kind kind;
        QString text; // the answer, for SendAnswer
    };

    // Hello, Help and IsBusy.
    static StarsCmdTable standard();

    // Adds a record unless its id or its message stands in the table
    // already; a double is logged ("Duplicated id" / "Duplicated msg").
    bool add(int id, const QString &msg, const QString &description);
    // Exact and case-sensitive; Unknown when the message isn't there.
    int idOf(const QString &msg) const;
    const QVector<Record> &records() const { return table; }

    // "Commands : " and the messages a client can ask, in table order.
    QString helpText() const;
    // The dispatch of a parsed line (ok set). The type is not looked at
    // before the table: an answer "@Hello" from a peer is answered like the
    // command, as clients of this server have always done.
    Reply reply(const AMsg &m, const QString &selfName, bool busy) const;

    // For handlers that want exactly wanted parameters: the error answer, or
    // an empty text when the count is right.
    static QString paramCountError(const AMsg &m, int wanted);

private:
    QVector<Record> table;
};
