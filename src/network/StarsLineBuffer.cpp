#include "network/StarsLineBuffer.h"

StarsLineBuffer::StarsLineBuffer(qsizetype maxLine)
    : maxLine(maxLine)
{
}

QList<QByteArray> StarsLineBuffer::feed(const QByteArray &bytes)
{
    QList<QByteArray> lines;
    qsizetype start = 0;
    qsizetype nl;
    while ((nl = bytes.indexOf('\n', start)) >= 0) {
        if (!skipping) {
            buf.append(bytes.constData() + start, nl - start);
            if (buf.size() <= maxLine)
                lines.append(buf);
            else
                ++droppedLines;
        }
        skipping = false;
        buf.clear();
        start = nl + 1;
    }
    if (!skipping && start < bytes.size()) {
        buf.append(bytes.constData() + start, bytes.size() - start);
        if (buf.size() > maxLine) {
            ++droppedLines;
            buf.clear();
            skipping = true;
        }
    }
    return lines;
}

void StarsLineBuffer::clear()
{
    buf.clear();
    skipping = false;
}
