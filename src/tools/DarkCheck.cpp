#include "tools/DarkCheck.h"

#include "images/ErrPoints.h"
#include "images/TiffData.h"

#include <QDebug>
#include <QFile>
#include <QSet>
#include <QTextStream>

#include <cmath>

namespace {

quint64 key(int x, int y)
{
    return (quint64(quint32(x)) << 32) | quint32(y);
}

bool openText(QFile &f, const QString &dir, const char *name)
{
    f.setFileName(dir + QLatin1Char('/') + QLatin1String(name));
    if (f.open(QIODevice::WriteOnly | QIODevice::Text | QIODevice::Truncate))
        return true;
    qDebug().noquote() << "Dark Check: can't open" << f.fileName();
    return false;
}

} // namespace

QVector<qint64> DarkCheck::histogram(const QVector<TiffData *> &frames, double histMax, int bins)
{
    QVector<qint64> counts;
    if (bins < 0 || bins > MaxBins)
        return counts;
    counts.fill(0, bins + 1);
    for (const TiffData *f : frames) {
        for (quint32 y = 0; y < f->height; ++y) {
            for (quint32 x = 0; x < f->width; ++x) {
                const double b = std::trunc(bins * f->pixel(int(x), int(y)) / histMax);
                // NaN fails both tests; infinity lands in the last bin.
                if (!(b >= 0))
                    continue;
                ++counts[b > bins ? bins : int(b)];
            }
        }
    }
    return counts;
}

QVector<DarkCheck::Point> DarkCheck::hotPixels(const QVector<TiffData *> &frames, double th, QVector<int> *sizes)
{
    QVector<Point> points;
    if (sizes)
        sizes->clear();
    if (frames.isEmpty())
        return points;
    const TiffData *first = frames.first();
    for (quint32 y = 0; y < first->height; ++y) {
        for (quint32 x = 0; x < first->width; ++x) {
            const double v = first->pixel(int(x), int(y));
            if (v > th)
                points.append({int(x), int(y), v});
        }
    }
    if (sizes)
        sizes->append(int(points.size()));
    for (qsizetype i = 1; i < frames.size(); ++i) {
        const TiffData *f = frames.at(i);
        qsizetype kept = 0;
        for (const Point &p : std::as_const(points)) {
            const double v = f->pixel(p.x, p.y);
            if (v > th)
                points[kept++] = {p.x, p.y, p.sum + v};
        }
        points.resize(kept);
        if (sizes)
            sizes->append(int(kept));
    }
    return points;
}

bool DarkCheck::writeHistogram(const QString &dir, const QVector<qint64> &counts, double histMax, int bins)
{
    QFile f;
    if (!openText(f, dir, "dark-hg-all.dat"))
        return false;
    QTextStream out(&f);
    out << QStringLiteral("# min, max = (%1, %2)  bins = %3\n").arg(0).arg(histMax).arg(qint64(bins) + 1);
    for (qsizetype i = 0; i < counts.size(); ++i)
        out << i << '\t' << double(i) * histMax / bins << '\t' << counts.at(i) << '\n';
    return true;
}

bool DarkCheck::writeHotPixels(const QString &dir, const QVector<Point> &points, const QVector<int> &sizes, int w,
                               int h, const ErrPoints &mask)
{
    if (points.isEmpty())
        return true;
    QFile all, nums, onlyPs, onlyMask;
    if (!openText(all, dir, "dark-allDarkPoints.dat") || !openText(nums, dir, "dark-allDarkPointNums.dat")
        || !openText(onlyPs, dir, "dark-allDarkPoints-onlyInPs1.dat"))
        return false;
    // Hashes, not the mask's linear search: a low threshold makes every
    // pixel hot.
    QSet<quint64> inMask;
    inMask.reserve(mask.points.size());
    for (const QPoint &p : mask.points)
        inMask.insert(key(p.x(), p.y()));
    QSet<quint64> hot;
    hot.reserve(points.size());

    QTextStream a(&all), o(&onlyPs);
    a << "# Size " << w << '\t' << h << '\n';
    for (const Point &p : points) {
        a << p.x << '\t' << p.y << '\t' << p.sum << '\n';
        hot.insert(key(p.x, p.y));
        if (!inMask.contains(key(p.x, p.y)))
            o << p.x << '\t' << p.y << '\n';
    }
    QTextStream n(&nums);
    for (qsizetype i = 0; i < sizes.size(); ++i)
        n << i << '\t' << sizes.at(i) << '\n';

    if (mask.points.isEmpty())
        return true;
    if (!openText(onlyMask, dir, "dark-allDarkPoints-onlyInErrPs.dat"))
        return false;
    QTextStream m(&onlyMask);
    for (const QPoint &p : mask.points)
        if (!hot.contains(key(p.x(), p.y())))
            m << p.x() << '\t' << p.y() << '\n';
    return true;
}
