#pragma once

#include <QString>

// The commands the batch interpreter runs itself. Ids as the interpreter
// has always numbered them; MetaNone for any other word.
enum MetaCmdId {
    MetaFor = 0,
    MetaNext = 1,
    MetaEcho = 2,
    MetaRemStart = 3,
    MetaRemEnd = 4,
    MetaEnd = 5,
    MetaLet = 6,
    MetaNone = 7,
};

// Case-insensitive look-up (":FOR" is ":for").
MetaCmdId metaCmdId(const QString &word);
