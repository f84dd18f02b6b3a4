#pragma once

#include <QByteArray>
#include <QList>

// Cuts the bytes of a connection into lines ended by a line feed. A line
// that grows past the limit is dropped up to its line feed: a peer that
// sends without ever ending a line can't make the buffer grow without
// bound, and the lines after it are read as usual.
class StarsLineBuffer
{
public:
    static constexpr qsizetype DefaultMaxLine = 256 * 1024;

    explicit StarsLineBuffer(qsizetype maxLine = DefaultMaxLine);

    // Appends bytes and returns the lines they complete, in order, without
    // their line feeds (a carriage return stays for the reader to drop).
    QList<QByteArray> feed(const QByteArray &bytes);
    // Forgets a part line, e.g. when the connection is made anew.
    void clear();

    qsizetype pending() const { return buf.size(); }
    // Lines dropped for their length since construction.
    qsizetype dropped() const { return droppedLines; }

private:
    QByteArray buf;
    qsizetype maxLine;
    qsizetype droppedLines = 0;
    bool skipping = false; // inside an over-long line, until its line feed
};
