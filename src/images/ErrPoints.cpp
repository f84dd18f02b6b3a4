#include "images/ErrPoints.h"

#include "app/LineItems.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>

ErrPoints gErrPoints;

bool ErrPoints::contains(int x, int y) const
{
    for (const QPoint &p : points) {
        if (p.x() == x && p.y() == y)
            return true;
    }
    return false;
}

// Cuts the first two items of `text`; the second is empty when there is only one.
static void firstTwoItems(const QString &text, QString *a, QString *b)
{
    const QString rest = splitFirstItem(text, a);
    splitFirstItem(rest, b);
}

bool ErrPoints::load(const QString &path, bool keep)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        qDebug().noquote() << "Can't Open" << path;
        fileName.clear();
        points.clear();
        inUse = false;
        return false;
    }
    inUse = true;
    fileName = QFileInfo(path).canonicalFilePath();
    if (!keep) {
        points.clear();
        inUse = false;
    }

    static const QString sizeTag = QStringLiteral("# Size");
    QTextStream in(&file);
    QString line;
    QString a;
    QString b;
    while (in.readLineInto(&line)) {
        // The size line looks like a comment, so it is recognised before
        // comments are cut off.
        if (line.startsWith(sizeTag)) {
            firstTwoItems(line.mid(sizeTag.size()).simplified(), &a, &b);
            width = a.toInt();
            height = b.toInt();
            points.clear();
            inUse = false;
            continue;
        }
        firstTwoItems(stripComment(line).simplified(), &a, &b);
        if (b.isEmpty())
            continue;
        points.append(QPoint(a.toInt(), b.toInt()));
    }
    return true;
}
