#include "analysis/Analyzed2DRes.h"
#include "images/TiffData.h"
#include "tools/ImgProc.h"
#include "tools/Stats.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <QtTest>

// The tool windows driven through their controls, as a user would: the
// image processor from "Edge Detect" to the shift it asks Body to record,
// and the statistics window filled from a map.
class TestToolWindows : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void imgProc_data();
    void imgProc();
    void stats();
};

namespace {
// A bright rectangle and a smaller one on a dark frame of w x h, displaced.
void makeFrame(TiffData &f, int w, int h, int dx, int dy)
{
    QVERIFY(f.allocate(w, h, PixelU16));
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            const int u = x - dx, v = y - dy;
            f.setPixel(x, y, (u >= 6 && u < 18 && v >= 5 && v < 14 ? 900 : 0) + (u >= 22 && u < 27 && v >= 16 && v < 24 ? 500 : 0));
        }
}

template <typename T>
T *child(QWidget &w, const char *name)
{
    T *c = w.findChild<T *>(QLatin1String(name));
    if (!c)
        qFatal("no %s", name);
    return c;
}
} // namespace

void TestToolWindows::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true); // window places go to a test store
}

void TestToolWindows::imgProc_data()
{
    QTest::addColumn<int>("dx");
    QTest::addColumn<int>("dy");
    QTest::addColumn<int>("w2"); // size of the second frame
    QTest::addColumn<QString>("log"); // expected complaint, else the shift is recorded
    QTest::newRow("displaced right and up") << 2 << -1 << 36 << "";
    QTest::newRow("one-frame stack: the reference itself") << 0 << 0 << 36 << "";
    QTest::newRow("frames of different sizes") << 1 << 1 << 35 << "size mis-match";
}

void TestToolWindows::imgProc()
{
    QFETCH(int, dx);
    QFETCH(int, dy);
    QFETCH(int, w2);
    QFETCH(QString, log);
    TiffData a, b;
    makeFrame(a, 36, 30, 0, 0);
    makeFrame(b, w2, 30, dx, dy);

    ImgProc ip;
    QSignalSpy give(&ip, &ImgProc::askGiveData), shift(&ip, &ImgProc::imgShift);
    ip.setImage(&a); // ignored while "Edge Detect" is off
    QVERIFY(!ip.edgeImage());
    child<QCheckBox>(ip, "EdgeDetect")->setChecked(true);
    QCOMPARE(give.size(), 1);
    ip.setImage(&a);
    const double mx = ip.edgeImage()->max;
    QCOMPARE(child<QLineEdit>(ip, "MaxEdgeV")->text(), QString::number(mx, 'g', 6));
    child<QCheckBox>(ip, "BinaryImage")->setChecked(true);
    child<QSlider>(ip, "BinThVSlider")->setValue(300);
    QCOMPARE(child<QLineEdit>(ip, "BinThV")->text(), QString::number(mx * 0.3, 'g', 6));
    child<QPushButton>(ip, "SetRef")->click();
    ip.setImage(&b);
    child<QCheckBox>(ip, "ASetShift")->setChecked(true);
    if (!log.isEmpty()) {
        QTest::ignoreMessage(QtDebugMsg, qPrintable(log));
        child<QCheckBox>(ip, "Compare")->setChecked(true);
        QTest::ignoreMessage(QtDebugMsg, qPrintable(log)); // the climb, then the picture
        QTest::ignoreMessage(QtDebugMsg, qPrintable(log));
        child<QPushButton>(ip, "ShiftAuto")->click();
        QCOMPARE(shift.size(), 0);
        return;
    }
    child<QCheckBox>(ip, "Compare")->setChecked(true);
    QCOMPARE(ip.screenImage().size(), QSize(36, 30));
    child<QPushButton>(ip, "ShiftAuto")->click();
    QCOMPARE(shift.size(), 1);
    QCOMPARE(shift.at(0), (QList<QVariant>{-dx, -dy}));
    QCOMPARE(child<QLineEdit>(ip, "NormScolarP")->text(), QStringLiteral("1"));
    // The overlap shows white, the reference alone red; blue only where the
    // shifted picture has no pixel.
    const QImage &s = ip.screenImage();
    QCOMPARE(s.pixel(6, 6), qRgb(255, 255, 255));
    QCOMPARE(s.pixel(0, 0), dx > 0 ? qRgb(0, 0, 255) : qRgb(0, 0, 0));
    // The frames going away leave nothing behind to read.
    ip.forgetFrames({&b});
    child<QPushButton>(ip, "SetRef")->click();
    child<QCheckBox>(ip, "EdgeDetect")->setChecked(false);
}

void TestToolWindows::stats()
{
    AnalyzeCond c;
    c.setUp(4, 3, 0, 0, QRectF(0, 0, 4, 3), 1, 1);
    auto map = std::make_unique<Analyzed2DRes>(QStringLiteral("m"));
    map->setUp(c);
    for (int i = 0; i < 12; ++i)
        map->setData(i % 4, i / 4, 0, 0, i + 1);
    Stats st;
    QSignalSpy range(&st, &Stats::rangeSelected);
    st.setMap(map.get(), c);
    st.setBins(4);
    st.grab(); // the fields are filled as the histogram is painted
    QCOMPARE(child<QLineEdit>(st, "Num")->text(), QStringLiteral("12"));
    QCOMPARE(child<QLineEdit>(st, "SelMean")->text(), QStringLiteral("5.125")); // lower edges 1, 3.75, 6.5, 9.25
    st.setBins(0);
    st.grab();
    st.setOverImage(true);
    QCOMPARE(range.size(), 4); // three computations and the box
    // A map that goes is let go.
    map.reset();
    st.setBins(5);
    st.pointedAt(1, 1);
    QVERIFY(!st.currentMap());
}

QTEST_MAIN(TestToolWindows)
#include "tst_toolwindows.moc"
