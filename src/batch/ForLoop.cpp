#include "batch/ForLoop.h"

#include <QStringList>

namespace {

// Text that does not read as a 32-bit decimal integer counts as 0.
qint64 readInt(const QString &text)
{
    bool ok = false;
    const int v = text.toInt(&ok, 10);
    return ok ? v : 0;
}

} // namespace

ForLoop ForLoop::fromWords(const QStringList &words, int line)
{
    ForLoop f;
    f.name = words.value(0);
    f.var = words.value(1);
    f.start = words.value(2);
    f.end = words.value(3);
    f.step = words.value(4);
    f.current = f.start;
    f.line = line;
    return f;
}

bool ForLoop::advance()
{
    const qint64 s = readInt(start);
    const qint64 e = readInt(end);
    const qint64 c = readInt(current);
    qint64 d = step.isEmpty() ? 1 : readInt(step);
    if (d == 0)
        d = 1;

    // 64-bit arithmetic: 32-bit values plus a 32-bit step cannot overflow.
    qint64 next;
    bool over;
    if (s >= e) {
        next = c - d;
        over = next < e;
    } else {
        next = c + d;
        over = next > e;
    }
    if (over)
        return false;
    current = padded(start, next);
    return true;
}

QString ForLoop::padded(const QString &start, qint64 value)
{
    const QString number = QString::number(value);
    if (start.size() < 2 || !start.startsWith(QLatin1Char('0')))
        return number;
    // Intended: when the number is longer than start, the whole of start is
    // kept in front of it ("08" and 100 give "08100"). Scripts written for
    // the program expect exactly this output.
    const qsizetype keep = start.size() - number.size();
    return (keep >= 0 ? start.left(keep) : start) + number;
}
