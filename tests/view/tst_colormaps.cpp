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
    void rgbMap_data();
    void rgbMap();
    void colorIndex_data();
    void colorIndex();
    void scale_data();
    void scale();
    void graphColors_data();
    void graphColors();
};

void TestColorMaps::rgbMap_data()
{
    QTest::addColumn<int>("i");
    QTest::addColumn<QColor>("c");
    // Black to red over 0..255, then green rises to yellow at 510, then blue
    // to white at 765, and 766 is white once more.
    QTest::newRow("0") << 0 << QColor(0, 0, 0);
    QTest::newRow("255") << 255 << QColor(255, 0, 0);
    QTest::newRow("256") << 256 << QColor(255, 1, 0);
    QTest::newRow("510") << 510 << QColor(255, 255, 0);
    QTest::newRow("511") << 511 << QColor(255, 255, 1);
    QTest::newRow("765") << 765 << QColor(255, 255, 255);
    QTest::newRow("766") << 766 << QColor(255, 255, 255);
}

void TestColorMaps::rgbMap()
{
    QFETCH(int, i);
    QFETCH(QColor, c);
    QCOMPARE(int(ColorMaps::rgbMap.size()), 767);
    const Rgb e = ColorMaps::rgbMap[std::size_t(i)];
    QCOMPARE(QColor(e.r, e.g, e.b), c);
}

void TestColorMaps::colorIndex_data()
{
    QTest::addColumn<double>("v");
    QTest::addColumn<int>("gray"); // trunc(v x 256) in 0..255
    QTest::addColumn<int>("rgb");  // trunc(v x 766) in 0..766

    const double inf = std::numeric_limits<double>::infinity();
    QTest::newRow("below") << -0.5 << 0 << 0;
    QTest::newRow("0") << 0.0 << 0 << 0;
    QTest::newRow("first step") << 1.0 / 256 << 1 << 2;  // 766/256 = 2.99
    QTest::newRow("half") << 0.5 << 128 << 383;
    QTest::newRow("255/256") << 255.0 / 256 << 255 << 763; // 763.008
    QTest::newRow("0.999") << 0.999 << 255 << 765;        // 255.74, 765.23
    QTest::newRow("1") << 1.0 << 255 << 766;
    QTest::newRow("+inf") << inf << 255 << 766;
    QTest::newRow("-inf") << -inf << 0 << 0;
    QTest::newRow("NaN") << std::numeric_limits<double>::quiet_NaN() << 0 << 0;
}

void TestColorMaps::colorIndex()
{
    QFETCH(double, v);
    QFETCH(int, gray);
    QFETCH(int, rgb);
    QCOMPARE(colorIndexGray(v), gray);
    QCOMPARE(colorIndexRGB(v), rgb);
}

void TestColorMaps::scale_data()
{
    QTest::addColumn<double>("lo");
    QTest::addColumn<double>("hi");
    QTest::addColumn<int>("format");
    QTest::addColumn<double>("t");
    QTest::addColumn<QColor>("c");

    const double nan = std::numeric_limits<double>::quiet_NaN();
    // Full scale: t 0.5 -> entry 128 / 383 = (255, 128, 0).
    QTest::newRow("grey full") << 0.0 << 1.0 << FormatGray << 0.5 << QColor(128, 128, 128);
    QTest::newRow("rgb full") << 0.0 << 1.0 << FormatRgb << 0.5 << QColor(255, 128, 0);
    // Ends 0.25..0.75: t 0.5 is the middle again; 0.375 -> 0.25 -> 64 / 191.
    QTest::newRow("grey squeezed quarter") << 0.25 << 0.75 << FormatGray << 0.375 << QColor(64, 64, 64);
    QTest::newRow("rgb squeezed quarter") << 0.25 << 0.75 << FormatRgb << 0.375 << QColor(191, 0, 0);
    QTest::newRow("above hi") << 0.25 << 0.75 << FormatRgb << 0.9 << QColor(255, 255, 255);
    // Crossed ends invert: (0.25 - 0.75) / (0.25 - 0.75) = 1 -> white.
    QTest::newRow("crossed") << 0.75 << 0.25 << FormatGray << 0.25 << QColor(255, 255, 255);
    // Equal ends: +inf above, -inf below, NaN at the end itself.
    QTest::newRow("equal ends above") << 0.5 << 0.5 << FormatRgb << 0.6 << QColor(255, 255, 255);
    QTest::newRow("equal ends below") << 0.5 << 0.5 << FormatRgb << 0.4 << QColor(0, 0, 0);
    QTest::newRow("equal ends at") << 0.5 << 0.5 << FormatGray << 0.5 << QColor(0, 0, 0);
    QTest::newRow("NaN") << 0.0 << 1.0 << FormatRgb << nan << QColor(0, 0, 0);
}

void TestColorMaps::scale()
{
    QFETCH(double, lo);
    QFETCH(double, hi);
    QFETCH(int, format);
    QFETCH(double, t);
    QFETCH(QColor, c);
    ColorScale s;
    s.format = format;
    s.setEnds(lo, hi);
    QCOMPARE(s.colorOfValue(t), c);

    uchar buf[4] = {7, 7, 7, 7};
    uchar *at = buf;
    s.bytesOfValue(t, at);
    if (format == FormatRgb) {
        QCOMPARE(at - buf, 3);
        QCOMPARE(QColor(buf[0], buf[1], buf[2]), c);
    } else {
        QCOMPARE(at - buf, 1);
        QCOMPARE(int(buf[0]), c.red());
    }
    QCOMPARE(int(buf[3]), 7); // nothing written past the pixel
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
