#include "analysis/Analyzed2DRes.h"

#include <QTemporaryDir>
#include <QtTest>

#include <cmath>

// The walk over an area and the result map: block fills, extremes, both
// deglitch passes, the 16-bit and text forms, copying.
class TestAnalyzed2DRes : public QObject
{
    Q_OBJECT
private slots:
    void walk_data();
    void walk();
    void setData();
    void deglitch_data();
    void deglitch();
    void tiffData_data();
    void tiffData();
    void textAndCopy();
};

namespace {

// "x,y x,y ..." of every point the walk visits, rows separated by " | ".
QString visited(AnalyzeCond c)
{
    QStringList rows, row;
    c.restart();
    int guard = 0;
    do {
        if (c.newLine && !row.isEmpty())
            rows << row.join(' '), row.clear();
        row << QStringLiteral("%1,%2").arg(c.ix).arg(c.iy);
    } while (c.next() && ++guard < 1000);
    rows << row.join(' ');
    return rows.join(" | ");
}

// A map of w x h whose walk steps one pixel, filled from a list row by row.
void fill(Analyzed2DRes &m, int w, int h, const QVector<double> &v)
{
    AnalyzeCond c;
    c.setUp(w, h, 0, 0, QRectF(0, 0, w, h), -1, -1);
    m.setUp(c);
    for (int i = 0; i < v.size(); ++i)
        m.setData(i % w, i / w, 0, 0, v[i]);
}

QVector<double> procOf(const Analyzed2DRes &m)
{
    return QVector<double>(m.procData.begin(), m.procData.end());
}

} // namespace

void TestAnalyzed2DRes::walk_data()
{
    QTest::addColumn<QRectF>("rect");
    QTest::addColumn<int>("bin");
    QTest::addColumn<int>("step");
    QTest::addColumn<QString>("points");
    // Blocks of 21 tile a width of 100 from 10 inward; 115 ends the row.
    QTest::newRow("width 100, bin 10") << QRectF(0, 0, 100, 1) << 10 << -1 << "10,10 31,10 52,10 73,10 94,10";
    QTest::newRow("dragged backwards") << QRectF(6, 5, -6, -5) << 1 << -1 << "1,1 4,1 | 1,4 4,4";
    // The first point lies outside an area narrower than the bin: still visited.
    QTest::newRow("narrower than the bin") << QRectF(2, 3, 1, 1) << 4 << -1 << "6,7";
    QTest::newRow("own step") << QRectF(0, 0, 5, 3) << 0 << 2 << "0,0 2,0 4,0 | 0,2 2,2 4,2";
    // A negative half width must not make the walk endless.
    QTest::newRow("negative bin") << QRectF(0, 0, 3, 1) << -2 << -1
                                  << "-2,-2 -1,-2 0,-2 1,-2 2,-2 | -2,-1 -1,-1 0,-1 1,-1 2,-1 | -2,0 -1,0 0,0 1,0 2,0";
    QTest::newRow("step 0 ends") << QRectF(0, 0, 3, 3) << 0 << 0 << "0,0";
}

void TestAnalyzed2DRes::walk()
{
    QFETCH(QRectF, rect);
    QFETCH(int, bin);
    QFETCH(int, step);
    QFETCH(QString, points);
    AnalyzeCond c;
    c.setUp(200, 200, bin, bin, rect, step, step);
    QCOMPARE(visited(c), points);
}

void TestAnalyzed2DRes::setData()
{
    Analyzed2DRes m;
    AnalyzeCond c;
    c.setUp(4, 3, 1, 1, QRectF(0, 0, 4, 3), -1, -1);
    QCOMPARE(c.text(), QStringLiteral("Area(4,3), Bin(1,1), x(0,4,3), y(0,3,3), idx(1,1)"));
    m.setUp(c);
    // A block over the corner writes its inner part only.
    m.setData(3, 2, 1, -1, 5.0);
    m.setData(0, 0, 0, 0, -2.0);
    m.setData(1, 0, 0, 0, std::nan(""));
    QCOMPARE(procOf(m), QVector<double>(12, 0.0));
    const QVector<double> want{-2, NAN, 0, 0, 0, 0, 5, 5, 0, 0, 5, 5};
    for (int i = 0; i < 12; ++i)
        QVERIFY(m.data[i] == want[i] || (std::isnan(m.data[i]) && i == 1));
    QCOMPARE(m.dataMin, -2.0);
    QCOMPARE(m.dataMax, 5.0);
    QCOMPARE(QPoint(m.maxPosX, m.maxPosY), QPoint(3, 2));
    QCOMPARE(m.sumInBlock(3, 2, 1, 1), 20.0);
    QCOMPARE(m.surface.n, 3.0);
    // The image: grey, full scale: u = (v + 2) / 7, entry trunc(u * 256).
    m.genImg();
    QVERIFY(m.imgValid);
    QCOMPARE(m.img()->pixelColor(1, 1).red(), int(2.0 / 7 * 256));
    QCOMPARE(m.img()->pixelColor(3, 2).red(), 255);
}

void TestAnalyzed2DRes::deglitch_data()
{
    QTest::addColumn<int>("w");
    QTest::addColumn<int>("h");
    QTest::addColumn<QVector<double>>("values");
    QTest::addColumn<bool>("byMean"); // deglitch2(limit) rather than deglitch()
    QTest::addColumn<double>("limit");
    QTest::addColumn<QVector<double>>("result");
    // One value, no neighbour: r = 0, T = 0, nothing exceeds T.
    QTest::newRow("1 x 1") << 1 << 1 << QVector<double>{4} << false << 0.0 << QVector<double>{4};
    // A row only: r of the middle is |2*9 - 1 - 1| / 1 = 16; the ends have no
    // pair (0). T = 2 * 16 / 3: the middle is replaced by its neighbours' mean.
    QTest::newRow("one row") << 3 << 1 << QVector<double>{1, 9, 1} << false << 0.0 << QVector<double>{1, 1, 1};
    QTest::newRow("one column") << 1 << 3 << QVector<double>{2, 2, 8} << false << 0.0 << QVector<double>{2, 5, 8};
    // Mean of |v| < 10 is 1; 50 is 49 away: replaced by its neighbours
    // within 10 of the mean (all eight here).
    QTest::newRow("by mean") << 3 << 3 << QVector<double>{1, 1, 1, 1, 50, 1, 1, 1, 1} << true << 10.0
                             << QVector<double>{1, 1, 1, 1, 1, 1, 1, 1, 1};
    // No value under the limit: m = 0 and everything is replaced, by 0.
    QTest::newRow("limit below all") << 2 << 1 << QVector<double>{5, 7} << true << 1.0 << QVector<double>{0, 0};
}

void TestAnalyzed2DRes::deglitch()
{
    QFETCH(int, w);
    QFETCH(int, h);
    QFETCH(QVector<double>, values);
    QFETCH(bool, byMean);
    QFETCH(double, limit);
    QFETCH(QVector<double>, result);
    Analyzed2DRes m;
    fill(m, w, h, values);
    if (byMean)
        m.deglitch2(limit);
    else
        m.deglitch();
    QCOMPARE(procOf(m), result);
    QCOMPARE(m.procMin, *std::min_element(result.begin(), result.end()));
    m.copyProc2Data();
    QCOMPARE(QVector<double>(m.data.begin(), m.data.end()), result);

    // Blocks of the deglitch run on into the next row and never past the
    // array: a walk of wide blocks over a small map (checked by the
    // sanitizer build).
    AnalyzeCond c;
    c.setUp(w, h, 3, 2, QRectF(0, 0, w, h), 1, 1);
    m.setUp(c);
    m.setData(0, 0, 0, 0, 1);
    m.deglitch();
    m.deglitch2(0.5);
}

void TestAnalyzed2DRes::tiffData_data()
{
    QTest::addColumn<bool>("asAnalyzed");
    QTest::addColumn<QVector<int>>("expected");
    // Range 0..2: 0 -> 0, 1 -> 32767, 2 -> 65535; 2.5 -> 81918 wraps to 16382,
    // -1 -> -32767 wraps to 32769.
    QTest::newRow("whole map") << false << QVector<int>{0, 32767, 65535, 16382, 32769, 0};
    // One value per point of a walk with step 2 over 3 x 2: (0,0) and (2,0).
    QTest::newRow("as analysed") << true << QVector<int>{0, 65535};
}

void TestAnalyzed2DRes::tiffData()
{
    QFETCH(bool, asAnalyzed);
    QFETCH(QVector<int>, expected);
    Analyzed2DRes m;
    fill(m, 3, 2, {0, 1, 2, 2.5, -1, 0});
    m.cond.xStep = m.cond.yStep = 2;
    const std::vector<quint16> t = m.tiffDataForSave(true, 0, 2, asAnalyzed);
    QCOMPARE(int(t.size()), 6);
    QCOMPARE(m.tiffCount, expected.size());
    for (int i = 0; i < expected.size(); ++i)
        QCOMPARE(int(t[i]), expected[i]);
    QVERIFY(Analyzed2DRes().tiffDataForSave(false, 0, 1, false).empty());
}

void TestAnalyzed2DRes::textAndCopy()
{
    QTemporaryDir dir;
    Analyzed2DRes m(QStringLiteral("m"));
    fill(m, 2, 2, {1.5, 2, 1e-20, -4});
    const QString name = dir.filePath("t.txt");
    QCOMPARE(m.writeText(name, false, false), name);
    QFile f(name);
    QVERIFY(f.open(QIODevice::ReadOnly | QIODevice::Text));
    const QStringList lines = QString::fromLatin1(f.readAll()).split('\n');
    QCOMPARE(lines.size(), 13); // nine of header, an empty one, two rows, the end
    // (the counts come from the area over the step, not from the points)
    QVERIFY(lines.at(2).startsWith("# Date    : "));
    QCOMPARE(lines.mid(3, 6), (QStringList{"## Energy : ", "# Format1 : VVV", "# Format2 : SPACE-Separated",
                                            "# X-NUM 3", "# Y-NUM 3", "## End of Header ##"}));
    QCOMPARE(lines.mid(9), (QStringList{"", "1.5 2", "1e-20 -4", ""}));
    QCOMPARE(m.writeText(dir.filePath("no/such/t.txt"), true, true), QString());

    // A map never drawn copies as an empty one of the same size.
    Analyzed2DRes copy;
    copy.assignFrom(&m);
    QCOMPARE(copy.name, QStringLiteral("m"));
    QCOMPARE(copy.width(), 2);
    QVERIFY(!copy.hasData() && !copy.img());
    m.genImg();
    copy.assignFrom(&m);
    QVERIFY(copy.hasData() && copy.img() && copy.img() != m.img());
    QCOMPARE(copy.valueAt(1, 1), -4.0);
    QCOMPARE(copy.img()->pixelColor(1, 0), m.img()->pixelColor(1, 0));
}

QTEST_GUILESS_MAIN(TestAnalyzed2DRes)
#include "tst_analyzed2dres.moc"
