#pragma once

#include <QMetaType>
#include <QString>
#include <QStringList>

// One parsed batch line. A plain value: it crosses from the batch thread to
// the main thread by queued signal.
struct CmdLine {
    bool valid = false;  // the line held a command word (not blank, not comment-only)
    QString raw;         // the text as given
    QString line;        // simplified and cut at the first '#'; what error messages show
    bool isMeta = false; // cmd begins with ':'
    QString cmd;         // first token
    QStringList args;    // further tokens; empty tokens are not stored

    // Parses one (already joined) line. A comment-only line is blank, but the
    // token scanner itself does not know '#': behind a command word a '#' and
    // everything after it are arguments. Scripts rely on that.
    static CmdLine parse(const QString &text);

    // Splits text into tokens: runs of non-blanks, or double-quoted texts
    // whose quotes are removed. Empty tokens are left out.
    static QStringList tokens(const QString &text);

    // Joins lines[*index] with the following lines while the text ends in a
    // backslash (only blanks may follow it). The backslash and what follows
    // it are cut and the next line is appended without a separator. *index
    // ends on the last line used. When the last line of the list continues,
    // its text is returned as it stands, backslash included.
    static QString gather(const QStringList &lines, int *index);

    // Position of the continuation backslash, or -1 when the text does not
    // continue. A line without any non-blank character never continues.
    static qsizetype continuationAt(const QString &text);
};
Q_DECLARE_METATYPE(CmdLine)
