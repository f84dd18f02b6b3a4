#include "app/Body.h"
#include "app/Globals.h"
#include "batch/CmdLine.h"
#include "images/SelectDataFiles.h"
#include "images/TiffData.h"
#include "images/TiffWriter.h"
#include "images/XafsFileSelect.h"
#include "images/_FileDialog.h"
#include "view/XafsView.h"

#include <QLabel>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>
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
// The 9809 file of the total-I0 rows: I0 column 5000 and 6000, two rows,
// so shorter than the I1 stack.
const double TotalI0[] = {5000, 6000};

enum Stack { I1, I0, Dark };

double pixel(Stack s, int k, int x, int y)
{
    switch (s) {
    case I1: return 100 + 10 * k + x + 4 * y;
    case I0: return 1000 + 200 * k + 2 * x + y;
    default: return 5 + x;
    }
}

// Sum over x 0..x1, y 0..y1: the box is 0..2 both ways, a dark area the image.
double sumOf(Stack s, int k, int x1, int y1)
{
    double sum = 0;
    for (int y = 0; y <= y1; ++y)
        for (int x = 0; x <= x1; ++x)
            sum += pixel(s, k, x, y);
    return sum;
}
double boxOf(Stack s, int k) { return sumOf(s, k, 2, 2); }
double meanOf(Stack s, int k) { return sumOf(s, k, W - 1, H - 1) / (W * H); }

// mu of the three I1 frames for the state a row's actions leave, named by
// words: noI0, fluo, dark (DarkExpTime 200 as read), dark0 (the field
// emptied), i1Area, i0Area, total.
QVector<double> expectedMu(const QString &state)
{
    const QStringList w = state.split(' ');
    const bool dark = w.contains("dark") || w.contains("dark0");
    const double n = 9;
    const double d = dark ? boxOf(Dark, 0) / (w.contains("dark0") ? 0 : 200) : 0;
    const double darkMean = dark ? meanOf(Dark, 0) : 0;
    QVector<double> mu;
    for (int k = 0; k < 3; ++k) {
        const double d1 = d * 300 + (w.contains("i1Area") ? (meanOf(I1, k) - darkMean) * n : 0);
        // The I0 list has one value per I0 frame, read at the I1 index.
        const double d0 = d * 100 + (w.contains("i0Area") && k < 2 ? (meanOf(I0, k) - darkMean) * n : 0);
        double a = n;
        if (!w.contains("noI0"))
            a = boxOf(I0, 0) + (boxOf(I0, 1) - boxOf(I0, 0)) * (I1Energy[k] - 8000) / 20 - d0;
        if (w.contains("total"))
            a = k < 2 ? TotalI0[k] : 0;
        const double b = boxOf(I1, k) - d1;
        mu << (w.contains("fluo") ? b / a : (b * a > 0 ? std::log(a / b) : 1.0));
    }
    return mu;
}

QString framePath(const QTemporaryDir &dir, Stack s, int k)
{
    // Names carry the energy as the panels read it from a name, "8010_0000".
    if (s == Dark)
        return dir.filePath("dark.tif");
    return dir.filePath(QString("%1_%2_0000.tif").arg(s == I1 ? "i1" : "i0").arg(s == I1 ? I1Energy[k] : I0Energy[k]));
}

bool writeFrame(const QTemporaryDir &dir, Stack s, int k, double seconds)
{
    std::vector<quint16> px;
    for (int y = 0; y < H; ++y)
        for (int x = 0; x < W; ++x)
            px.push_back(quint16(pixel(s, k, x, y)));
    return writeTiff16(framePath(dir, s, k), W, H, px.data(), seconds);
}

} // namespace

class TestBodyAbsorption : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void boxAbsorption_data();
    void boxAbsorption();
    void darkImage();
    void bgSpectrum_data();
    void bgSpectrum();

private:
    void loadStacks(Body &b);
    void act(Body &b, const QString &action);
    QTemporaryDir tmp;
};

void TestBodyAbsorption::initTestCase()
{
    QVERIFY(tmp.isValid());
    for (int k = 0; k < 3; ++k)
        QVERIFY(writeFrame(tmp, I1, k, 0.3));
    for (int k = 0; k < 2; ++k)
        QVERIFY(writeFrame(tmp, I0, k, 0.1));
    QVERIFY(writeFrame(tmp, Dark, 0, 0.2));
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
        QVERIFY(f->read(framePath(tmp, I1, k)));
        f->energy = I1Energy[k];
        b.loadedI1(f, k, 3);
    }
    b.finishedLoadI1Files();
    for (int k = 0; k < 2; ++k) {
        auto *f = new TiffData;
        QVERIFY(f->read(framePath(tmp, I0, k)));
        f->energy = I0Energy[k];
        b.loadedI0(f, k, 2);
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
    QTest::addColumn<QString>("state");

    QTest::newRow("transmission over the I0 stack") << QStringList{} << "";
    QTest::newRow("without I0: against N") << QStringList{"Use_I0 0"} << "noI0";
    QTest::newRow("fluorescence") << QStringList{"set_fluo_type 1"} << "fluo";
    // D = 54 / 200 per ms, 81 counts off I1 (300 ms) and 27 off I0 (100 ms).
    QTest::newRow("dark scaled to each stack's exposure") << QStringList{"@dark"} << "dark";
    // An empty field reads 0: the dark is infinite and b * a < 0 everywhere.
    QTest::newRow("empty dark exposure") << QStringList{"@dark", "@darkExp ", "Use_I0 0"} << "dark0 noI0";
    QTest::newRow("I1 dark area") << QStringList{"set_i1_dark_area"} << "i1Area";
    QTest::newRow("I1 dark area less the dark image")
        << QStringList{"@dark", "set_i1_dark_area", "set_fluo_type 1"} << "dark i1Area fluo";
    QTest::newRow("I1 dark area cleared by the panel") << QStringList{"set_i1_dark_area", "@i1ClearDA"} << "";
    QTest::newRow("I0 dark area from the panel, shorter than I1")
        << QStringList{"@i0SetDA", "set_fluo_type 1"} << "i0Area fluo";
    QTest::newRow("I0 dark area cleared") << QStringList{"set_i0_dark_area", "clear_i0_dark_area"} << "";
    QTest::newRow("total I0 wins and takes no dark")
        << QStringList{"@dark", "set_i0_dark_area", "@total"} << "dark i0Area total";
}

void TestBodyAbsorption::boxAbsorption()
{
    QFETCH(QStringList, actions);
    QFETCH(QString, state);

    Body b;
    loadStacks(b);
    // Dark areas take the selected area: the whole image, ends included.
    act(b, QString("select_region 0 0 %1 %2").arg(W - 1).arg(H - 1));
    for (const QString &a : actions)
        act(b, a);

    const QVector<double> mu = expectedMu(state);
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

// A background file that reads is plotted in the BG view; one that does not
// leaves the view alone.
void TestBodyAbsorption::bgSpectrum_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("points");
    QTest::newRow("three points") << "8900 0.1\n8950 0.2\n9000 1.1\n" << 3;
    QTest::newRow("no data") << "# nothing\n" << 0;
}

void TestBodyAbsorption::bgSpectrum()
{
    QFETCH(QString, text);
    QFETCH(int, points);
    QFile f(tmp.filePath("bg.dat"));
    QVERIFY(f.open(QIODevice::WriteOnly | QIODevice::Text));
    f.write(text.toUtf8());
    f.close();

    Body b;
    XafsView *view = nullptr;
    for (XafsView *v : b.findChildren<XafsView *>())
        if (v->windowTitle() == "BG Specturm")
            view = v;
    QVERIFY(view);
    emit b.findChild<XafsFileSelect *>("SelectBG")->newFile(f.fileName());
    QCOMPARE(view->isVisible(), points > 0);
    QCOMPARE(view->currentTarget().points.size(), points);
}

QTEST_MAIN(TestBodyAbsorption)
#include "tst_bodyabsorption.moc"
