#pragma once

#include <QString>

// Line helpers shared by every text format of the program: the configuration
// file, bad-pixel masks, text images, spectrum files and batch lines.

// Returns the text before the first '#' that stands outside quotes and puts
// what follows it into *comment (when given). A ' and a " toggle one shared
// "in quotes" state, so a lone apostrophe keeps a later '#' from starting a
// comment; that is how existing files have always been read.
QString stripComment(const QString &line, QString *comment = nullptr);

// True when the line holds nothing but white space and a comment.
bool isBlankLine(const QString &line);

// Cuts the first item off the line: a run of non-blanks, or a double-quoted
// text whose quotes are removed. Returns the rest of the line behind the item
// (starting with its separator). Malformed quoting is logged and the item is
// taken as cut; reading goes on.
QString splitFirstItem(const QString &line, QString *item);

// White space as the regular-expression class \s understands it.
inline bool isLineSpace(QChar c)
{
    const char16_t u = c.unicode();
    return u == ' ' || u == '\t' || u == '\n' || u == '\r' || u == '\v' || u == '\f';
}
