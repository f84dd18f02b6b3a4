#include "view/ColorMaps.h"
#include "view/ColorScale.h"
#include "view/GraphColors.h"

#include <QColor>
#include <QtTest>

#include <limits>

using namespace ColorMaps;

// The colour maps, the value-to-entry mapping, the scale between the bar's
// ends, and the graph colour table. Row padding is checked with rendering.
class TestColorMaps : public QObject
{
    Q_OBJECT
private slots:
    void rgbMap();
    void scale_data();
    void scale();
    void graphColors_data();
    void graphColors();
};

// Black to red over 0..255, then green rises to yellow at 510, then blue to
// white at 765, and 766 is white once more.
static QColor rgbOf(int k)
{
    return QColor(std::min(k, 255), std::clamp(k - 255, 0, 255), std::clamp(k - 510, 0, 255));
}

void TestColorMaps::rgbMap()
{
    QCOMPARE(int(ColorMaps::rgbMap.size()), 767);
    for (int k = 0; k <= 766; ++k) {
        const Rgb e = ColorMaps::rgbMap[std::size_t(k)];
        QVERIFY2(QColor(e.r, e.g, e.b) == rgbOf(k), qPrintable(QString::number(k)));
    }
}

void TestColorMaps::scale_data()
{
    QTest::addColumn<QPointF>("ends");
    QTest::addColumn<double>("t");
    QTest::addColumn<int>("grey"); // trunc(u x 256) in 0..255, u = (t - lo) / (hi - lo)
    QTest::addColumn<int>("rgb");  // trunc(u x 766) in 0..766

    const double inf = std::numeric_limits<double>::infinity();
    const QPointF full(0, 1), quarter(0.25, 0.75), equal(0.5, 0.5);
    QTest::newRow("below") << full << -0.5 << 0 << 0;
    QTest::newRow("0") << full << 0.0 << 0 << 0;
    QTest::newRow("first step") << full << 1.0 / 256 << 1 << 2; // 766/256 = 2.99
    QTest::newRow("half") << full << 0.5 << 128 << 383;
    QTest::newRow("255/256") << full << 255.0 / 256 << 255 << 763; // 763.008
    QTest::newRow("1") << full << 1.0 << 255 << 766;
    QTest::newRow("+inf") << full << inf << 255 << 766;
    QTest::newRow("-inf") << full << -inf << 0 << 0;
    QTest::newRow("NaN") << full << qQNaN() << 0 << 0;
    // u = 0.25: 64 / 191.
    QTest::newRow("squeezed quarter") << quarter << 0.375 << 64 << 191;
    QTest::newRow("above hi") << quarter << 0.9 << 255 << 766;
    // Crossed ends invert: (0.25 - 0.75) / (0.25 - 0.75) = 1.
    QTest::newRow("crossed") << QPointF(0.75, 0.25) << 0.25 << 255 << 766;
    // Equal ends: +inf above, -inf below, NaN at the end itself.
    QTest::newRow("equal ends above") << equal << 0.6 << 255 << 766;
    QTest::newRow("equal ends below") << equal << 0.4 << 0 << 0;
    QTest::newRow("equal ends at") << equal << 0.5 << 0 << 0;
}

void TestColorMaps::scale()
{
    QFETCH(QPointF, ends);
    QFETCH(double, t);
    QFETCH(int, grey);
    QFETCH(int, rgb);
    if (ends == QPointF(0, 1)) {
        QCOMPARE(colorIndexGray(t), grey);
        QCOMPARE(colorIndexRGB(t), rgb);
    }
    for (const int format : {int(FormatGray), int(FormatRgb)}) {
        const bool isRgb = format == FormatRgb;
        const QColor c = isRgb ? rgbOf(rgb) : QColor(grey, grey, grey);
        ColorScale s;
        s.format = format;
        s.setEnds(ends.x(), ends.y());
        QCOMPARE(s.colorOfValue(t), c);
        uchar buf[4] = {7, 7, 7, 7};
        uchar *at = buf;
        s.bytesOfValue(t, at);
        QCOMPARE(at - buf, isRgb ? 3 : 1);
        QCOMPARE(QColor(buf[0], buf[isRgb], buf[2 * isRgb]), c);
        QCOMPARE(int(buf[3]), 7); // nothing written past the pixel
    }
}

void TestColorMaps::graphColors_data()
{
    QTest::addColumn<int>("i");
    QTest::addColumn<QColor>("c");
    QTest::newRow("0") << 0 << QColor(255, 255, 255);
    QTest::newRow("8") << 8 << QColor(0, 200, 255);
    QTest::newRow("9 wraps") << 9 << QColor(255, 255, 255);
    QTest::newRow("-1") << -1 << QColor(0, 200, 255);
}

void TestColorMaps::graphColors()
{
    QFETCH(int, i);
    QFETCH(QColor, c);
    if (QTest::currentDataTag() == QLatin1String("0"))
        QCOMPARE(colorOfIndex(i), QColor(0, 0, 0)); // no table yet
    initGraphColors();
    QCOMPARE(colorOfIndex(i), c);
}

QTEST_GUILESS_MAIN(TestColorMaps)
#include "tst_colormaps.moc"
