#include "spectrum/XafsSpectrum.h"
#include "view/DispA.h"
#include "view/XafsView.h"

#include <QApplication>
#include <QFont>
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
};

namespace {

// A step at edge over a sloping background, one point every 2 eV over each
// span of energies; bump adds a peak of that height at 7240 eV and a dip as
// deep at 7060 eV, which then are the curve's highest and lowest points.
XafsSpectrum edgeSpectrum(double edge, double eOffset, const QVector<QPointF> &spans = {{7000, 7300}},
                          double bump = 0)
{
    Spectrum s;
    const auto bell = [](double e, double at) { return std::exp(-(e - at) * (e - at) / 900); };
    for (const QPointF &span : spans)
        for (double e = span.x(); e <= span.y(); e += 2)
            s.addPoint(e, 0.6 + 1e-4 * (e - 7000) + std::atan((e - edge) / 3) / M_PI
                              + bump * (bell(e, 7240) - bell(e, 7060)));
    return XafsSpectrum(s, QStringLiteral("test"), 1, eOffset, SuggestElm());
}

// The energies written to fname against those of s less an offset.
void compareEnergies(const QString &fname, const XafsSpectrum &s, double less)
{
    XafsSpectrum r;
    QVERIFY(r.read(fname));
    QCOMPARE(r.points.size(), s.size());
    for (int i = 0; i < s.size(); ++i)
        QCOMPARE(r.points[i].x(), s.energyAt(i) - less);
}

} // namespace

void TestXafsView::saveData_data()
{
    QTest::addColumn<QString>("fname"); // in the test's folder
    QTest::addColumn<QString>("screen"); // the name for the picture

    // Position (10, 20), box 3 x 4: "10-20-3x4" right after the base name.
    // The data files are .dat whatever was chosen; the picture keeps it.
    QTest::newRow("dat") << "sp.dat" << "sp10-20-3x4.dat";
    QTest::newRow("no suffix") << "sp" << "sp10-20-3x4";
    QTest::newRow("png") << "sp.png" << "sp10-20-3x4.png";
}

void TestXafsView::saveData()
{
    QFETCH(QString, fname);
    QFETCH(QString, screen);

    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString d = dir.path() + QLatin1Char('/');

    XafsView v;
    const XafsSpectrum target = edgeSpectrum(7112, 5);
    const XafsSpectrum standard = edgeSpectrum(7110, 3, {{7050, 7200}});
    XafsSpectrum other0 = edgeSpectrum(7120, 4, {{7000, 7100}});
    XafsSpectrum other1 = edgeSpectrum(7130, 6, {{7100, 7150}});
    other1.kind = 0; // not shown, but saved all the same
    v.setTarget(target);
    v.setStd(standard);
    v.setOthers({&other0, &other1}, {});
    v.currentPosition(10, 20, 3, 4);

    QSignalSpy saved(&v, &XafsView::savedXafsData);
    QSignalSpy screenSpy(&v, &XafsView::saveScreenAs);
    v.saveData(d + fname);

    const QString stem = d + "sp10-20-3x4", tName = stem + "T.dat";
    QCOMPARE(QList<QVariantList>(saved), QList<QVariantList>({{QVariant(tName)}}));
    QCOMPARE(QList<QVariantList>(screenSpy), QList<QVariantList>({{QVariant(d + screen)}}));

    // Only the target is written less its energy offset.
    compareEnergies(tName, target, 5);
    compareEnergies(stem + "std.dat", standard, 0);
    compareEnergies(stem + "other0.dat", other0, 0);
    compareEnergies(stem + "other1.dat", other1, 0);
    QCOMPARE(QDir(d).entryList(QDir::Files).size(), 4);
}

void TestXafsView::setTarget_data()
{
    // std: with a standard; range, noisy: midx flags; offset: an energy offset
    // of 20 eV, shown with ecorr; zoomed: a wheel zoom on an earlier target;
    // big: a 60 pt font on the plot
    QTest::addColumn<QString>("flags");
    QTest::addColumn<double>("returned"); // the edge, or less the standard's: midx 7112.5 and 7110.25
    QTest::addColumn<QString>("status");

    // dMut 0.0123 in "% 6.3e" is " 1.230e-02" (a blank for the sign).
    const QString head = QStringLiteral("dMut =  1.230e-02, Edge 7112.5 [eV] :");
    QTest::newRow("neither") << "" << 7112.5 << head + "  ";
    QTest::newRow("standard") << "std" << 2.25 << head + "  ";
    QTest::newRow("out of range") << "range" << 7112.5 << head + " Out of Range midx ";
    QTest::newRow("noisy") << "noisy" << 7112.5 << head + "  Noizy to decide midx";
    QTest::newRow("both") << "range noisy" << 7112.5 << head + " Out of Range midx Noizy to decide midx";
    QTest::newRow("offset, not corrected") << "offset" << 7112.5 << head + "  ";
    QTest::newRow("offset corrected") << "offset ecorr" << 7112.5 << head + "  ";
    // A zoom does not hold: the next spectrum brings its own range.
    QTest::newRow("zoomed before") << "zoomed" << 7112.5 << head + "  ";
    // The ends of the axes are written in the plain font too, but never over
    // their fitted labels.
    QTest::newRow("large plain font") << "big" << 7112.5 << head + "  ";
}

void TestXafsView::setTarget()
{
    QFETCH(QString, flags);
    QFETCH(double, returned);
    QFETCH(QString, status);

    XafsView v;
    v.resize(500, 400);
    auto *plot = v.findChild<DispA *>("Xafs");
    QVERIFY(plot);
    if (flags.contains("zoomed")) {
        v.setTarget(edgeSpectrum(7500, 0, {{6000, 9000}}));
        const QPointF at(100, 100);
        QWheelEvent wheel(at, plot->mapToGlobal(at), QPoint(), QPoint(0, 120), Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(plot, &wheel);
    }
    const double e = flags.contains("offset") ? 20 : 0;
    v.setEnergyCorrection(flags.contains("ecorr"));
    if (flags.contains("big")) {
        QFont f = plot->font();
        f.setPointSize(60);
        plot->setFont(f);
    }
    // Points over 7000..7100 and 7200..7300: a hole of 100 eV.
    XafsSpectrum t = edgeSpectrum(7112, e, {{7000, 7100}, {7200, 7300}}, 0.5);
    t.dMut = 0.0123;
    t.midx = 7112.5;
    t.midxOutOfRange = flags.contains("range");
    t.midxNoisy = flags.contains("noisy");
    if (flags.contains("std")) {
        XafsSpectrum s = edgeSpectrum(7110, 0);
        s.midx = 7110.25;
        v.setStd(s);
    }
    QSignalSpy updated(&v, &XafsView::updated);
    QCOMPARE(v.setTarget(t), returned);
    QCOMPARE(updated.size(), 1);
    const QImage img = plot->grab().toImage(); // the status line is written as the plot is drawn
    QCOMPARE(v.findChild<QLabel *>("ExtMsg")->text(), status);

    // Margins 10 % left, 5 % right, 10 % top, 5 % bottom (y runs up: "top"
    // is at the bottom), in whole pixels, over 7000..7300 eV. The frame and
    // the grid are grey and the labels lie outside, so black is the target.
    const int w = img.width(), h = img.height();
    const int left = w / 10, right = w - w / 20, top = h / 10, bottom = h - h / 20;
    auto blackIn = [&](double e, int y0, int y1) {
        const int x = int(left + (right - left) * (e - 7000) / 300.0);
        for (int y = y0; y <= y1; ++y)
            if (img.pixelColor(x, y) == QColor(Qt::black))
                return true;
        return false;
    };
    auto blackAt = [&](double e) { return blackIn(e, top - 1, bottom + 1); };
    // Off the ticks (every 50 eV), whose grid lines are drawn over the curve.
    // "E. Correct" moves the curve by the offset to lower energies: its hole
    // (7100..7200 eV) then lies at 7080..7180.
    const double shift = flags.contains("ecorr") ? e : 0;
    QVERIFY(blackAt(7085 - shift));
    QVERIFY(blackAt(7215 - shift));
    QVERIFY(!blackAt(7165 - shift));
    QCOMPARE(blackAt(7190), shift > 0); // in the hole unless corrected
    QCOMPARE(blackAt(7090), shift == 0); // in the corrected hole only
    // The peak and the dip are drawn inside the frame (its 2-pixel lines
    // cover top - 1 .. top and bottom - 1 .. bottom), not hidden under it.
    QVERIFY(blackIn(7240 - shift, top + 1, top + 4));
    QVERIFY(blackIn(7060 - shift, bottom - 4, bottom - 2));
    // Labels are fitted to their boxes, and the plain-font copies of the ends
    // never find room beside them: the plot's own font changes nothing.
    if (flags.contains("big")) {
        XafsView plain;
        plain.resize(500, 400);
        plain.setTarget(t);
        QCOMPARE(plain.findChild<DispA *>("Xafs")->grab().toImage(), img);
    }
}

QTEST_MAIN(TestXafsView)
#include "tst_xafsview.moc"
