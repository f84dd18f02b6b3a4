#include "spectrum/XafsSpectrum.h"
#include "view/DispA.h"
#include "view/XafsView.h"

#include <QImage>
#include <QLabel>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>

// The spectrum plot: the files it saves, the edge difference it reports, the
// status line and the cut of the curve at a hole in the energies.
class TestXafsView : public QObject
{
    Q_OBJECT
private slots:
    void saveData_data();
    void saveData();
    void setTarget_data();
    void setTarget();
    void status_data();
    void status();
    void gap();
};

namespace {

// A step at edge over a sloping background, one point every step eV over
// [from, to] and, when given, again over [from2, to2].
XafsSpectrum edgeSpectrum(double edge, double eOffset, double from = 7000, double to = 7300, double from2 = 0,
                          double to2 = -1, double step = 2)
{
    Spectrum s;
    auto add = [&s, edge](double e) { s.addPoint(e, 0.1 + 1e-4 * (e - 7000) + 0.5 + std::atan((e - edge) / 3) / M_PI); };
    for (double e = from; e <= to; e += step)
        add(e);
    for (double e = from2; e <= to2; e += step)
        add(e);
    return XafsSpectrum(s, QStringLiteral("test"), 1, eOffset, SuggestElm());
}

QVector<double> xsOf(const QString &fname)
{
    XafsSpectrum r;
    QVector<double> xs;
    if (!r.read(fname))
        return xs;
    for (const QPointF &p : std::as_const(r.points))
        xs << p.x();
    return xs;
}

QVector<double> energies(const XafsSpectrum &s, double less)
{
    QVector<double> xs;
    for (int i = 0; i < s.size(); ++i)
        xs << s.energyAt(i) - less;
    return xs;
}

} // namespace

void TestXafsView::saveData_data()
{
    QTest::addColumn<QString>("fname");    // in the test's folder
    QTest::addColumn<QString>("stem");     // data files: stem + what + ".dat"
    QTest::addColumn<QString>("screen");   // the name for the picture

    // Position (10, 20), box 3 x 4: "10-20-3x4" right after the base name.
    QTest::newRow("dat") << "sp.dat" << "sp10-20-3x4" << "sp10-20-3x4.dat";
    QTest::newRow("no suffix") << "sp" << "sp10-20-3x4" << "sp10-20-3x4";
    // The data files are .dat whatever was chosen; the picture keeps it.
    QTest::newRow("png") << "sp.png" << "sp10-20-3x4" << "sp10-20-3x4.png";
}

void TestXafsView::saveData()
{
    QFETCH(QString, fname);
    QFETCH(QString, stem);
    QFETCH(QString, screen);

    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString d = dir.path() + QLatin1Char('/');

    XafsView v;
    const XafsSpectrum target = edgeSpectrum(7112, 5);
    const XafsSpectrum standard = edgeSpectrum(7110, 3, 7050, 7200);
    XafsSpectrum other0 = edgeSpectrum(7120, 4, 7000, 7100);
    XafsSpectrum other1 = edgeSpectrum(7130, 6, 7100, 7150);
    other1.kind = 0; // not shown, but saved all the same
    v.setTarget(target);
    v.setStd(standard);
    v.setOthers({&other0, &other1}, {});
    v.currentPosition(10, 20, 3, 4);

    QSignalSpy saved(&v, &XafsView::savedXafsData);
    QSignalSpy screenSpy(&v, &XafsView::saveScreenAs);
    v.saveData(d + fname);

    const QString tName = d + stem + "T.dat";
    QCOMPARE(saved.size(), 1);
    QCOMPARE(saved.at(0).at(0).toString(), tName);
    QCOMPARE(screenSpy.size(), 1);
    QCOMPARE(screenSpy.at(0).at(0).toString(), d + screen);

    // Only the target is written less its energy offset.
    QCOMPARE(xsOf(tName), energies(target, 5));
    QCOMPARE(xsOf(d + stem + "std.dat"), energies(standard, 0));
    QCOMPARE(xsOf(d + stem + "other0.dat"), energies(other0, 0));
    QCOMPARE(xsOf(d + stem + "other1.dat"), energies(other1, 0));
    QCOMPARE(QDir(d).entryList(QDir::Files).size(), 4);
}

void TestXafsView::setTarget_data()
{
    QTest::addColumn<bool>("withStd");
    QTest::addColumn<double>("expected");

    // midx 7112.5 and 7110.25 are set by hand below.
    QTest::newRow("no standard") << false << 7112.5;
    QTest::newRow("standard") << true << 2.25;
}

void TestXafsView::setTarget()
{
    QFETCH(bool, withStd);
    QFETCH(double, expected);

    XafsView v;
    XafsSpectrum t = edgeSpectrum(7112, 0);
    t.midx = 7112.5;
    if (withStd) {
        XafsSpectrum s = edgeSpectrum(7110, 0);
        s.midx = 7110.25;
        v.setStd(s);
    }
    QSignalSpy updated(&v, &XafsView::updated);
    QCOMPARE(v.setTarget(t), expected);
    QCOMPARE(updated.size(), 1);
}

void TestXafsView::status_data()
{
    QTest::addColumn<bool>("outOfRange");
    QTest::addColumn<bool>("noisy");
    QTest::addColumn<QString>("expected");

    // dMut 0.0123 in "% 6.3e" is " 1.230e-02" (a blank for the sign).
    const QString head = QStringLiteral("dMut =  1.230e-02, Edge 7112.5 [eV] :");
    QTest::newRow("neither") << false << false << head + "  ";
    QTest::newRow("out of range") << true << false << head + " Out of Range midx ";
    QTest::newRow("noisy") << false << true << head + "  Noizy to decide midx";
    QTest::newRow("both") << true << true << head + " Out of Range midx Noizy to decide midx";
}

void TestXafsView::status()
{
    QFETCH(bool, outOfRange);
    QFETCH(bool, noisy);
    QFETCH(QString, expected);

    XafsView v;
    v.resize(400, 300);
    XafsSpectrum t = edgeSpectrum(7112, 0);
    t.dMut = 0.0123;
    t.midx = 7112.5;
    t.midxOutOfRange = outOfRange;
    t.midxNoisy = noisy;
    v.setTarget(t);
    v.grab(); // the status line is written as the plot is drawn
    QCOMPARE(v.findChild<QLabel *>("ExtMsg")->text(), expected);
}

void TestXafsView::gap()
{
    XafsView v;
    v.resize(500, 400);
    // Points over 7000..7100 and 7200..7300: a hole of 100 eV.
    v.setTarget(edgeSpectrum(7112, 0, 7000, 7100, 7200, 7300));
    auto *plot = v.findChild<DispA *>("Xafs");
    QVERIFY(plot);
    const QImage img = plot->grab().toImage();
    const int w = img.width();
    const int h = img.height();

    // The plot region: 10 % left, 5 % right, 10 % top and 5 % bottom
    // margins (y runs up, so the "top" margin lies at the bottom), each
    // truncated to whole pixels; the x range is 7000..7300. The frame and
    // the grid are grey and the labels lie outside, so black is the curve.
    const int left = w / 10;
    const int right = w - w / 20;
    const int top = h / 10;
    const int bottom = h - h / 20;
    auto column = [&](double e) { return int(left + (right - left) * (e - 7000) / 300.0); };
    auto blackIn = [&](int x) {
        for (int y = top - 1; y <= bottom + 1; ++y)
            if (img.pixelColor(x, y) == QColor(Qt::black))
                return true;
        return false;
    };
    // Off the ticks (every 50 eV), whose grid lines are drawn over the curve.
    QVERIFY(blackIn(column(7085)));
    QVERIFY(blackIn(column(7215)));
    QVERIFY(!blackIn(column(7165)));
}

QTEST_MAIN(TestXafsView)
#include "tst_xafsview.moc"
