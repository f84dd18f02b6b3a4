#pragma once

#include <QMetaType>
#include <QString>
#include <QStringList>

// One line of the message-server protocol, taken apart:
//     <from>[.<ch>]><to>[.<ch>] [@|_]<cmd> <params>...
// A plain value: it goes by value through signals.
struct AMsg {
    enum Type { Answer = 0, Event = 1, Ask = 2, Unparsed = 3 };

    int ok = 0;       // 1 when the line had a "from>to" token and something behind it
    QString raw;      // the line without CR and LF characters
    QString fromTo;   // the first token, e.g. "Dev.ch>Me.sub"
    QString body;     // everything behind the first token
    QString from;     // before the first '>' of fromTo
    QString to;       // behind it
    QString fromName; // from up to its first '.'
    QString fromCh;   // from behind its first '.', or empty
    QString fromFull; // fromName, and ".fromCh" when there is a channel
    QString toName;
    QString toCh;
    QString toFull;
    QString cmd;       // the second token without a leading '@' or '_'
    QString param1;    // params' first, or empty
    QStringList params; // the tokens behind cmd; empty tokens are left out
    QString rest;      // the text behind cmd
    int type = Unparsed;

    // Tokens are cut as batch lines are: runs of non-blanks, or a
    // double-quoted text (quotes removed) that may hold blanks. The scan is
    // linear, so that a very long line costs no more than its length.
    static AMsg parse(const QString &line);
};
Q_DECLARE_METATYPE(AMsg)
