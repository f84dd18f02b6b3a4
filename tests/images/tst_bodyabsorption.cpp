#include "app/Body.h"
#include "app/Globals.h"
#include "batch/CmdLine.h"
#include "images/SelectDataFiles.h"
#include "images/TiffData.h"
#include "images/TiffWriter.h"
#include "images/XafsFileSelect.h"
#include "images/_FileDialog.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>
#include <functional>
#include <vector>

// The main window's box absorption, driven through its controls, batch
// commands, panels and selectors, and compared with the formula worked out
// here by plain loops over the same pixel values.
//
// Stacks of 4 x 3 pixels: I1 frames k = 0, 1, 2 at 8000, 8010, 8020 eV with
// 100 + 10k + x + 4y, exposed 300 ms; I0 frames j = 0, 1 at 8000 and 8020 eV
// with 1000 + 200j + 2x + y, exposed 100 ms; a dark image of 5 + x, exposed
// 200 ms. The box is centred at (1, 1) with half widths 1, 1: the nine pixels
// x, y in 0..2, so N = 9.
namespace {

constexpr int W = 4;
constexpr int H = 3;
const double I1Energy[] = {8000, 8010, 8020};
const double I0Energy[] = {8000, 8020};

using PixelFn = std::function<double(int x, int y)>;

double i1Pixel(int k, int x, int y) { return 100 + 10 * k + x + 4 * y; }
double i0Pixel(int j, int x, int y) { return 1000 + 200 * j + 2 * x + y; }
double darkPixel(int x, int) { return 5 + x; }

double sumOver(const PixelFn &p, int x0, int y0, int x1, int y1)
{
    double s = 0;
    for (int y = y0; y <= y1; ++y)
        for (int x = x0; x <= x1; ++x)
            s += p(x, y);
    return s;
}

double boxOf(const PixelFn &p) { return sumOver(p, 0, 0, 2, 2); }
double imageMean(const PixelFn &p) { return sumOver(p, 0, 0, W - 1, H - 1) / (W * H); }

// The state the actions of a row leave behind.
struct Setup
{
    bool useI0 = true;
    bool fluo = false;
    bool dark = false;
    double darkExp = 200; // what DarkExpTime holds once the dark is read
    bool i1Area = false;
    bool i0Area = false;
    bool totalI0 = false;
};

// The 9809 file the total-I0 rows load: two rows, I0 column 5000 and 6000,
// so shorter than the I1 stack.
const double TotalI0[] = {5000, 6000};

QVector<double> expectedMu(const Setup &s)
{
    const double n = 9;
    const double d = s.dark ? boxOf(darkPixel) / s.darkExp : 0;
    const double d1Base = d * 300;
    const double d0Base = d * 100;
    const double darkMean = s.dark ? imageMean(darkPixel) : 0;
    QVector<double> mu;
    for (int k = 0; k < 3; ++k) {
        const PixelFn f1 = [k](int x, int y) { return i1Pixel(k, x, y); };
        double d1 = d1Base;
        if (s.i1Area)
            d1 += (imageMean(f1) - darkMean) * n;
        double d0 = d0Base;
        // The I0 list has one value per I0 frame, read at the I1 index.
        if (s.i0Area && k < 2) {
            const PixelFn f0 = [k](int x, int y) { return i0Pixel(k, x, y); };
            d0 += (imageMean(f0) - darkMean) * n;
        }
        double a = n;
        if (s.useI0) {
            const double s0 = boxOf([](int x, int y) { return i0Pixel(0, x, y); });
            const double s1 = boxOf([](int x, int y) { return i0Pixel(1, x, y); });
            a = s0 + (s1 - s0) * (I1Energy[k] - 8000) / 20 - d0;
        }
        if (s.totalI0)
            a = k < 2 ? TotalI0[k] : 0;
        const double b = boxOf(f1) - d1;
        mu << (s.fluo ? b / a : (b * a > 0 ? std::log(a / b) : 1.0));
    }
    return mu;
}

bool writeFrame(const QString &path, const PixelFn &p, double seconds)
{
    std::vector<quint16> px;
    for (int y = 0; y < H; ++y)
        for (int x = 0; x < W; ++x)
            px.push_back(quint16(p(x, y)));
    return writeTiff16(path, W, H, px.data(), seconds);
}

} // namespace

Q_DECLARE_METATYPE(Setup)

class TestBodyAbsorption : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void boxAbsorption_data();
    void boxAbsorption();
    void darkImage();

private:
    void loadStacks(Body &b);
    void act(Body &b, const QString &action);
    QTemporaryDir tmp;
};

void TestBodyAbsorption::initTestCase()
{
    QVERIFY(tmp.isValid());
    // Names carry the energy as the panels read it from a name, "8010_0000".
    for (int k = 0; k < 3; ++k)
        QVERIFY(writeFrame(tmp.filePath(QString("i1_%1_0000.tif").arg(I1Energy[k])),
                           [k](int x, int y) { return i1Pixel(k, x, y); }, 0.3));
    for (int j = 0; j < 2; ++j)
        QVERIFY(writeFrame(tmp.filePath(QString("i0_%1_0000.tif").arg(I0Energy[j])),
                           [j](int x, int y) { return i0Pixel(j, x, y); }, 0.1));
    QVERIFY(writeFrame(tmp.filePath("dark.tif"), darkPixel, 0.2));
    QFile total(tmp.filePath("total.dat"));
    QVERIFY(total.open(QIODevice::WriteOnly | QIODevice::Text));
    total.write("9809  total I0\nOffset 0 0 0\n1 10.0 0 5000 2500\n2 10.1 0 6000 3000\n");
}

void TestBodyAbsorption::init()
{
    InitGlobals();
    gConfig = ConfigTable();
}

// Frames are handed over as the loaders hand them: read, then one by one to
// the loaded slots, then the finish.
void TestBodyAbsorption::loadStacks(Body &b)
{
    for (int k = 0; k < 3; ++k) {
        auto *f = new TiffData;
        QVERIFY(f->read(tmp.filePath(QString("i1_%1_0000.tif").arg(I1Energy[k]))));
        f->energy = I1Energy[k];
        b.loadedI1(f, k, 3);
    }
    b.finishedLoadI1Files();
    for (int j = 0; j < 2; ++j) {
        auto *f = new TiffData;
        QVERIFY(f->read(tmp.filePath(QString("i0_%1_0000.tif").arg(I0Energy[j]))));
        f->energy = I0Energy[j];
        b.loadedI0(f, j, 2);
    }
    b.finishedLoadI0Files();
}

// "@..." are actions on the window's widgets; anything else is a batch line.
void TestBodyAbsorption::act(Body &b, const QString &action)
{
    if (action == "@dark") {
        auto *dialog = b.findChild<_FileDialog *>("darkDialog");
        QVERIFY(dialog);
        emit dialog->fileSelected(tmp.filePath("dark.tif"));
    } else if (action.startsWith("@darkExp")) {
        b.findChild<QLineEdit *>("DarkExpTime")->setText(action.section(' ', 1));
    } else if (action == "@total") {
        auto *sel = b.findChild<XafsFileSelect *>("TotalI0ofI1XAFS");
        QVERIFY(sel);
        sel->load(tmp.filePath("total.dat"));
    } else if (action == "@i0SetDA") {
        emit b.findChild<SelectDataFiles *>("SelectI0Files")->setDarkArea();
    } else if (action == "@i1ClearDA") {
        emit b.findChild<SelectDataFiles *>("SelectI1Files")->clearDarkArea();
    } else {
        b.execCmdSlot(CmdLine::parse(action), false);
    }
}

void TestBodyAbsorption::boxAbsorption_data()
{
    QTest::addColumn<QStringList>("actions");
    QTest::addColumn<Setup>("setup");

    Setup s;
    QTest::newRow("transmission over the I0 stack") << QStringList{} << s;
    Setup noI0;
    noI0.useI0 = false;
    QTest::newRow("without I0: against N") << QStringList{"Use_I0 0"} << noI0;
    Setup fluo;
    fluo.fluo = true;
    QTest::newRow("fluorescence") << QStringList{"set_fluo_type 1"} << fluo;
    Setup dark;
    dark.dark = true;
    // D = 54 / 200 per ms, 81 counts off I1 (300 ms) and 27 off I0 (100 ms).
    QTest::newRow("dark scaled to each stack's exposure") << QStringList{"@dark"} << dark;
    Setup darkEdited = dark;
    darkEdited.darkExp = 50;
    QTest::newRow("dark exposure as edited") << QStringList{"@dark", "@darkExp 50"} << darkEdited;
    // An empty field reads 0: the dark is infinite and b * a < 0 everywhere.
    Setup darkZero = dark;
    darkZero.darkExp = 0;
    darkZero.useI0 = false;
    QTest::newRow("empty dark exposure") << QStringList{"@dark", "@darkExp ", "Use_I0 0"} << darkZero;
    Setup i1Area;
    i1Area.i1Area = true;
    QTest::newRow("I1 dark area") << QStringList{"set_i1_dark_area"} << i1Area;
    Setup i1AreaDark = i1Area;
    i1AreaDark.dark = true;
    i1AreaDark.fluo = true;
    QTest::newRow("I1 dark area less the dark image") << QStringList{"@dark", "set_i1_dark_area", "set_fluo_type 1"}
                                                      << i1AreaDark;
    QTest::newRow("I1 dark area cleared by command") << QStringList{"set_i1_dark_area", "clear_i1_dark_area"} << s;
    QTest::newRow("I1 dark area cleared by the panel") << QStringList{"set_i1_dark_area", "@i1ClearDA"} << s;
    Setup i0Area;
    i0Area.i0Area = true;
    i0Area.fluo = true;
    QTest::newRow("I0 dark area from the panel, shorter than I1")
        << QStringList{"@i0SetDA", "set_fluo_type 1"} << i0Area;
    QTest::newRow("I0 dark area cleared") << QStringList{"set_i0_dark_area", "clear_i0_dark_area"} << s;
    Setup total;
    total.totalI0 = true;
    total.dark = true;
    total.i0Area = true;
    QTest::newRow("total I0 wins and takes no dark") << QStringList{"@dark", "set_i0_dark_area", "@total"} << total;
}

void TestBodyAbsorption::boxAbsorption()
{
    QFETCH(QStringList, actions);
    QFETCH(Setup, setup);

    Body b;
    loadStacks(b);
    for (const QString &a : actions)
        act(b, a);

    const QVector<double> mu = expectedMu(setup);
    // Twice: the dark lists are grown by the first call and read by the second.
    for (int pass = 0; pass < 2; ++pass) {
        const Spectrum &sp = b.absorptionSpectrum(1, 1, 1, 1);
        QCOMPARE(sp.size(), 3);
        for (int k = 0; k < 3; ++k) {
            QCOMPARE(sp.points[k].x(), I1Energy[k]);
            QVERIFY2(qAbs(sp.points[k].y() - mu[k]) <= 1e-12 * qMax(1.0, qAbs(mu[k])),
                     qPrintable(QString("frame %1: %2, expected %3").arg(k).arg(sp.points[k].y()).arg(mu[k])));
        }
    }
}

void TestBodyAbsorption::darkImage()
{
    Body b;
    auto *name = b.findChild<QLabel *>("DarkFileName");
    auto *exp = b.findChild<QLineEdit *>("DarkExpTime");
    b.selectedDark(tmp.filePath("dark.tif"));
    QCOMPARE(name->text(), QString("dark.tif"));
    QCOMPARE(exp->text(), QString("200"));
    // A file that can't be read: the old dark is gone, and the field stays.
    b.selectedDark(tmp.filePath("missing.tif"));
    QCOMPARE(name->text(), QString());
    QCOMPARE(exp->text(), QString("200"));
    loadStacks(b);
    b.execCmdSlot(CmdLine::parse("Use_I0 0"), false);
    // Without the dark: ln(9 / box) of frame 0, box = 9 * 100 + 9 + 36.
    QCOMPARE(b.absorptionSpectrum(1, 1, 1, 1).points[0].y(), std::log(9.0 / 945.0));
}

QTEST_MAIN(TestBodyAbsorption)
#include "tst_bodyabsorption.moc"
