#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

// The key file of the message server: a shared list of secrets, one a line,
// from the server's administrator. The server's challenge number picks the
// key that the login must carry.
namespace StarsKeys {

// One key a line, white space simplified. A blank line is a key too (the
// empty key); the empty text behind the last line feed is not.
QStringList fromText(const QByteArray &text);

// Reads the file anew, with a log line; a file that can't be opened gives
// no keys.
QStringList read(const QString &fileName);

// The index that the challenge selects among count keys: the challenge as
// a decimal number (text that isn't one counts as 0) modulo count, taken
// non-negative. -1 when there are no keys.
int indexFor(const QString &challenge, int count);

} // namespace StarsKeys
