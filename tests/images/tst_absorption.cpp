#include "FrameFiles.h"

#include "images/Absorption.h"
#include "images/AbsorptionInput.h"
#include "images/TiffData.h"
#include "spectrum/XafsSpectrum.h"

#include <QtTest>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>
#include <functional>
#include <memory>
#include <vector>

// The pixels of a test frame as plain numbers, from which every expected
// value is summed again by direct loops, without the frame's own sums.
struct Model
{
    double e = 0.0;
    std::function<double(int, int)> f;
    double at(int x, int y) const { return x >= 0 && y >= 0 && x < 5 && y < 4 ? f(x, y) : 0.0; }
};

// Every frame is 5 x 4. I1 frame k at 100 + 10k eV: 50 + 10k + x + 2y.
static const QVector<Model> kI1 = {
    {100, [](int x, int y) { return 50.0 + x + 2 * y; }},
    {110, [](int x, int y) { return 60.0 + x + 2 * y; }},
    {120, [](int x, int y) { return 70.0 + x + 2 * y; }},
};
// I0 stacks: around the I1 energies; one frame far away; two frames (104,
// 106) that the I1 energies leave on both sides.
static const QVector<Model> kI0Full = {
    {95, [](int x, int y) { return 200.0 + 3 * x + y; }},
    {105, [](int x, int y) { return 240.0 + 3 * x + y; }},
    {125, [](int x, int y) { return 280.0 + 3 * x + y; }},
};
static const QVector<Model> kI0One = {{300, [](int x, int) { return 500.0 + x; }}};
static const QVector<Model> kI0Narrow = {
    {104, [](int x, int y) { return 300.0 + x * y; }},
    {106, [](int x, int y) { return 320.0 + x * y; }},
};
static const QVector<Model> kDarks = {{0, [](int x, int) { return 4.0 + x; }}};
static const Model &kDark = kDarks[0];
static const QVector<Model> kNone;

// Dark areas: I1 over x 0..1, y 0..1; I0 over a rectangle whose corners
// truncate to x 3..5, y 2..7, mostly outside the frame.
static const QRectF kI1Rect(0, 0, 1, 1);
static const QRectF kI0Rect(3.7, 2.2, 2.9, 5.0);

// Box of centre (x, y), half widths |hw| and |vw|: every pixel is asked
// whether it lies in the box, so huge widths cost nothing extra.
static double refBox(const Model &m, int x, int y, int hw, int vw)
{
    double s = 0.0;
    for (int py = 0; py < 4; ++py)
        for (int px = 0; px < 5; ++px)
            if (qAbs(qint64(px) - x) <= qAbs(qint64(hw)) && qAbs(qint64(py) - y) <= qAbs(qint64(vw)))
                s += m.f(px, py);
    return s;
}

// The stack at energy e: the pair found by a linear walk, then the line
// through their sums.
static double refStack(const QVector<Model> &ms, double e, int x, int y, int hw, int vw)
{
    if (ms.size() < 2)
        return ms.isEmpty() ? 1.0 : refBox(ms[0], x, y, hw, vw);
    int a = 0;
    if (e >= ms.last().e)
        a = ms.size() - 2;
    else if (e > ms[0].e)
        while (!(ms[a].e <= e && e < ms[a + 1].e))
            ++a;
    const double sa = refBox(ms[a], x, y, hw, vw);
    const double sb = refBox(ms[a + 1], x, y, hw, vw);
    return sa + (e - ms[a].e) * (sb - sa) / (ms[a + 1].e - ms[a].e);
}

// Mean over x0..x0+w, y0..y0+h, ends included, outside pixels as 0.
static double refMean(const Model &m, int x0, int y0, int w, int h)
{
    double s = 0.0;
    for (int y = y0; y <= y0 + h; ++y)
        for (int x = x0; x <= x0 + w; ++x)
            s += m.at(x, y);
    return s / ((w + 1) * (h + 1));
}

static double muOf(double a, double b, bool fluo)
{
    return fluo ? b / a : b * a > 0 ? std::log(a / b) : 1.0;
}

// A setup read from words: "noI0", "fluo", "i0=full|one|narrow",
// "dark=<dark ms>/<I1 ms>/<I0 ms>", "a1", "a0" (dark areas), "total=9809|cols",
// "order=2,1,0" (I1 frames by index), "list1=40" (I1 dark list beforehand),
// "inI0" (a section of the I0 stack).
struct Setup
{
    const QVector<Model> *i0 = &kNone;
    bool useI0 = true, fluo = false, dark = false, a1 = false, a0 = false, inI0 = false;
    double darkExp = 0, i1Exp = 0, i0Exp = 0;
    int total = 0; // 0 none, 1 the 9809 scan, 2 the column file
    QVector<int> order{0, 1, 2};
    QVector<double> list1;

    explicit Setup(const QString &words)
    {
        for (const QString &w : words.split(' ', Qt::SkipEmptyParts)) {
            const QString v = w.section('=', 1);
            QVector<double> n;
            for (const QString &part : v.split(QRegularExpression("[/,]")))
                n << part.toDouble();
            if (w.startsWith("i0=")) {
                i0 = v == "full" ? &kI0Full : v == "one" ? &kI0One : &kI0Narrow;
            } else if (w.startsWith("dark=")) {
                dark = true;
                darkExp = n[0], i1Exp = n[1], i0Exp = n[2];
            } else if (w.startsWith("total=")) {
                total = v == "9809" ? 1 : 2;
            } else if (w.startsWith("order=")) {
                order = QVector<int>(n.cbegin(), n.cend());
            } else if (w.startsWith("list1=")) {
                list1 = n;
            } else {
                useI0 &= w != "noI0";
                fluo |= w == "fluo";
                a1 |= w == "a1";
                a0 |= w == "a0";
                inI0 |= w == "inI0";
            }
        }
    }
};

// The points one call should give, worked out again from the models. Ops:
// "mu" and "raw" on box x, y, hw, vw; "corners" with x0, y0, x1, y1 followed
// by the box worked out by hand; "row"/"col" (and "rowMu"/"colMu" as
// absorption) with frame index, row or column, hw, vw. list1 receives the I1
// dark list as it should stand afterwards.
static QVector<QPointF> expected(const Setup &s, const QString &op, const QVector<int> &args, QVector<double> &list1)
{
    QVector<QPointF> p;
    const QVector<Model> &i0 = *s.i0;
    list1 = s.list1;
    if (op.startsWith("row") || op.startsWith("col")) {
        const bool row = op.startsWith("row");
        const bool mu = op.endsWith("Mu");
        const QVector<Model> &stack = s.inI0 && !mu ? i0 : kI1;
        const int index = args[0], at = args[1], hw = args[2], vw = args[3];
        if (index < 0 || index >= stack.size() || at < 0 || at >= (row ? 4 : 5))
            return p;
        for (int i = 0; i < (row ? 5 : 4); ++i) {
            const int x = row ? i : at, y = row ? at : i;
            double v = refBox(stack[index], x, y, hw, vw);
            if (mu)
                v = muOf(refStack(i0, stack[index].e, x, y, hw, vw), v, s.fluo);
            p << QPointF(row ? x : 4 - y, v);
        }
        return p;
    }
    const int o = op == "corners" ? 4 : 0;
    const int x = args[o], y = args[o + 1], hw = args[o + 2], vw = args[o + 3];
    if (x < 0 || y < 0 || x >= 5 || y >= 4)
        return p;
    const double n = (2.0 * hw + 1) * (2.0 * vw + 1);
    const double rate = s.dark ? refBox(kDark, x, y, hw, vw) / s.darkExp : 0.0;
    const double dark1 = s.dark ? refMean(kDark, 0, 0, 1, 1) : 0.0;
    const double dark0 = s.dark ? refMean(kDark, 3, 2, 2, 5) : 0.0;
    const QVector<double> totals = s.total == 1 ? QVector<double>{5000, 7000} : QVector<double>();
    for (int k = 0; k < s.order.size(); ++k) {
        const Model &m = kI1[s.order[k]];
        const double sum = refBox(m, x, y, hw, vw);
        if (op == "raw") {
            p << QPointF(m.e, sum);
            continue;
        }
        if (s.a1 && k >= list1.size())
            list1 << refMean(m, 0, 0, 1, 1) - dark1;
        const double d1 = rate * s.i1Exp + (s.a1 ? list1[k] * n : 0.0);
        // The I0 dark list is indexed by the I1 frame: I0 frame k, whatever its energy.
        const double d0 = rate * s.i0Exp + (s.a0 && k < i0.size() ? (refMean(i0[k], 3, 2, 2, 5) - dark0) * n : 0.0);
        double a = n;
        if (s.total)
            a = k < totals.size() ? totals[k] : 0.0;
        else if (s.useI0)
            a = refStack(i0, m.e, x, y, hw, vw) - d0;
        p << QPointF(m.e, muOf(a, sum - d1, s.fluo));
    }
    return p;
}

// Equal as doubles, NaN matching NaN and infinities matching exactly.
static bool same(double got, double want)
{
    if (std::isnan(want))
        return std::isnan(got);
    if (std::isinf(want))
        return got == want;
    return std::fabs(got - want) <= 1e-12 * qMax(1.0, std::fabs(want));
}

// The absorption formula, the other box curves and the dark lists, against
// sums worked out again from the pixel models.
class TestAbsorption : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void curves_data();
    void curves();
    void outputKeepsItsBuffer();
    void frameAllocation_data();
    void frameAllocation();

private:
    QVector<TiffData *> frames(const QVector<Model> &ms) const;

    QTemporaryDir m_dir;
    std::vector<std::unique_ptr<TiffData>> m_owned;
    QHash<const Model *, TiffData *> m_frame;
    XafsSpectrum m_total9809;
    XafsSpectrum m_totalColumns;
};

QVector<TiffData *> TestAbsorption::frames(const QVector<Model> &ms) const
{
    QVector<TiffData *> v;
    for (const Model &m : ms)
        v << m_frame.value(&m);
    return v;
}

void TestAbsorption::initTestCase()
{
    QVERIFY(m_dir.isValid());
    for (const QVector<Model> *ms : {&kI1, &kI0Full, &kI0One, &kI0Narrow, &kDarks})
        for (const Model &m : *ms) {
            auto f = std::make_unique<TiffData>();
            QVERIFY(f->allocate(5, 4, PixelU16));
            for (int y = 0; y < 4; ++y)
                for (int x = 0; x < 5; ++x)
                    f->setPixel(x, y, m.f(x, y));
            f->energy = m.e;
            m_frame.insert(&m, f.get());
            m_owned.push_back(std::move(f));
        }
    // A 9809 scan with two rows, I0 of 5000 and 7000: shorter than the stack.
    const QString scan = m_dir.filePath("total.9809");
    QVERIFY(FrameFiles::writeFile(scan, "9809     test scan\n D= 3.13553\nOffset 0 0 0 0\n"
                                        "1 20.0 0 5000 2500\n2 19.9 0 7000 3000\n"));
    QVERIFY(m_total9809.load(scan));
    QCOMPARE(m_total9809.i0Curve.size(), 2);
    // A plain column file has points but no I0 column at all.
    const QString columns = m_dir.filePath("total.dat");
    QVERIFY(FrameFiles::writeFile(columns, "100 5000\n110 6000\n120 7000\n"));
    QVERIFY(m_totalColumns.load(columns));
    QCOMPARE(m_totalColumns.size(), 3);
}

void TestAbsorption::curves_data()
{
    QTest::addColumn<QString>("setup");
    QTest::addColumn<QString>("op");
    QTest::addColumn<QVector<int>>("args");
    QTest::addColumn<QVector<double>>("hand"); // values worked out by hand, checked as well

    const auto row = [](const char *name, const char *setup, const char *op, QVector<int> args,
                        QVector<double> hand = {}) {
        QTest::newRow(name) << QString(setup) << QString(op) << args << hand;
    };
    const auto ln = [](double v) { return std::log(v); };
    // Box x 1..3, y 0..2: I1 sums 9 (50 + 10k) + 3 * 6 + 3 * 6 = 486 + 90k;
    // I0 sums 9 * 200 + 54 + 9 = 1863 at 95 eV, +360 a frame: 2043, 2313, 2493.
    row("no I0: a = N", "noI0", "mu", {2, 1, 1, 1}, {ln(9.0 / 486), ln(9.0 / 576), ln(9.0 / 666)});
    row("I0 stack", "i0=full", "mu", {2, 1, 1, 1}, {ln(2043.0 / 486), ln(2313.0 / 576), ln(2493.0 / 666)});
    row("I0 stack, fluorescence", "i0=full fluo", "mu", {1, 2, 1, 0});
    row("one-frame I0 serves every energy", "i0=one", "mu", {2, 1, 1, 1});
    row("I0 energies inside the I1 range extrapolate", "i0=narrow", "mu", {2, 1, 1, 1});
    row("I0 stack present but unused", "noI0 i0=full", "mu", {2, 1, 1, 1});
    row("empty I0 stack: a = 1", "", "mu", {2, 1, 1, 1});
    // Dark box 3 * (5 + 6 + 7) = 54; 54 / 100 ms: a = 1 - 0.54, d1 = 1.08.
    row("empty I0 stack with dark: a = 1 - d0", "dark=100/2/1", "mu", {2, 1, 1, 1},
        {ln(0.46 / (486 - 1.08)), ln(0.46 / (576 - 1.08)), ln(0.46 / (666 - 1.08))});
    row("empty I0 stack, dark above 1: guard", "dark=100/2/5", "mu", {2, 1, 1, 1}, {1, 1, 1});
    // Rate 54 / 200 ms: I1 at 100 ms takes 27, I0 at 400 ms 108.
    row("dark scaled to each exposure", "i0=full dark=200/100/400", "mu", {2, 1, 1, 1},
        {ln(1935.0 / 459), ln(2205.0 / 549), ln(2385.0 / 639)});
    // A dark exposure of 0 is not guarded: inf dark, then inf * 0 = NaN.
    row("dark exposure 0, transmission", "noI0 dark=0/100/0", "mu", {2, 1, 1, 1}, {1, 1, 1});
    row("dark exposure 0, fluorescence", "noI0 fluo dark=0/100/0", "mu", {2, 1, 1, 1}, {-qInf(), -qInf(), -qInf()});
    row("dark and I1 exposure 0: NaN", "noI0 fluo dark=0/0/0", "mu", {2, 1, 1, 1});
    row("I1 dark area", "i0=full a1", "mu", {2, 1, 1, 1});
    row("both dark areas with dark frame", "i0=full a1 a0 dark=10/1/2", "mu", {2, 1, 1, 1});
    row("I0 dark list shorter than the I1 stack", "i0=narrow a0", "mu", {2, 1, 1, 1});
    row("dark area above the signal: guard", "noI0 a1", "mu", {0, 0, 0, 0}, {1, 1, 1});
    // A value already in the dark list is used as it stands (times N).
    row("dark list kept, only grown", "noI0 a1 list1=40", "mu", {2, 1, 1, 1});
    row("unused dark list stays", "noI0 list1=40", "mu", {2, 1, 1, 1});
    row("dark list longer than the stack", "noI0 a1 list1=1,2,3,4", "mu", {2, 1, 1, 1});
    row("total I0 shorter than the stack", "i0=full total=9809", "mu", {2, 1, 1, 1},
        {ln(5000.0 / 486), ln(7000.0 / 576), 1.0});
    row("total I0 wins, takes no dark", "noI0 total=9809 dark=200/100/400", "mu", {2, 1, 1, 1});
    row("total I0, fluorescence divides by 0", "fluo total=9809", "mu", {2, 1, 1, 1});
    row("total I0 from a column file: a = 0", "i0=full total=cols", "mu", {2, 1, 1, 1}, {1, 1, 1});
    // x -2..2, y -1..1 keeps 6 pixels: 312 + 60k, N stays 15.
    row("box partly outside, N stays full", "noI0", "mu", {0, 0, 2, 1}, {ln(15.0 / 312), ln(15.0 / 372), ln(15.0 / 432)});
    row("negative width: N = -1 * 3", "noI0", "mu", {2, 1, -1, 1}, {1, 1, 1});
    row("both widths negative: N = 1", "noI0", "mu", {2, 1, -1, -1});
    row("huge widths with I0", "i0=full", "mu", {2, 1, INT_MAX, INT_MAX});
    row("huge negative widths without I0", "noI0", "mu", {2, 1, INT_MIN, INT_MIN});
    row("x = imgW", "i0=full", "mu", {5, 1, 1, 1});
    row("y = imgH", "i0=full", "mu", {2, 4, 1, 1});
    row("x negative", "i0=full", "mu", {-1, 1, 1, 1});
    row("y negative", "i0=full", "mu", {2, -1, 1, 1});
    row("last pixel", "i0=full", "mu", {4, 3, 0, 0});
    // File order, not energy order: each frame meets the I0 stack at its own energy.
    row("descending", "i0=full order=2,1,0", "mu", {3, 2, 1, 0});
    row("back and forth", "i0=full order=1,0,2,0,2,2,1", "mu", {3, 2, 1, 0});
    row("extrapolated both ways", "i0=narrow order=0,2,0,1", "mu", {3, 2, 1, 0});

    // Dark, dark areas and I0 are all set and must all be ignored.
    const char *all = "i0=full dark=1/100/100 a1";
    row("raw inside", all, "raw", {2, 1, 1, 1}, {486, 576, 666});
    row("raw x = imgW", all, "raw", {5, 0, 1, 1});

    // Corners, then centre and half widths: half differences rounded up.
    row("even and odd spans", "noI0", "corners", {0, 0, 3, 2, 1, 1, 2, 1});
    row("one pixel", "noI0", "corners", {3, 2, 3, 2, 3, 2, 0, 0});
    row("odd spans", "noI0", "corners", {1, 0, 4, 3, 2, 1, 2, 2});
    row("reversed corners: N = 1", "noI0", "corners", {3, 2, 0, 0, 1, 1, -1, -1});
    row("corners, centre outside", "noI0", "corners", {4, 0, 6, 2, 5, 1, 1, 1});

    // A dark frame and UseI0 off change nothing in a section.
    row("row of I1 frame 1", "i0=full noI0 dark=1/100/100", "row", {1, 1, 1, 0});
    row("row of I0 frame 2", "i0=full inI0", "row", {2, 3, 0, 1});
    row("row as absorption, always of I1", "i0=full inI0 noI0", "rowMu", {1, 1, 1, 1});
    row("row as fluorescence", "i0=narrow fluo", "rowMu", {0, 0, 2, 0});
    // Frame 2, y 2: 70 + x + 4, against i0 = 1.
    row("row with empty I0 stack: i0 = 1", "", "rowMu", {2, 2, 0, 0},
        {ln(1.0 / 74), ln(1.0 / 75), ln(1.0 / 76), ln(1.0 / 77), ln(1.0 / 78)});
    row("column of I1 frame 0", "i0=full", "col", {0, 4, 1, 1});
    row("column as absorption", "i0=one", "colMu", {2, 0, 0, 2});
    row("column, huge widths", "i0=full", "col", {1, 2, INT_MAX, INT_MIN});
    row("row y = imgH", "i0=full", "row", {0, 4, 0, 0});
    row("row y negative", "i0=full", "row", {0, -1, 0, 0});
    row("column x = imgW", "i0=full", "col", {0, 5, 0, 0});
    row("index past the stack", "i0=full", "row", {3, 1, 0, 0});
    row("index past the I0 stack", "i0=one inI0", "row", {1, 1, 0, 0});
}

void TestAbsorption::curves()
{
    QFETCH(QString, setup);
    QFETCH(QString, op);
    QFETCH(QVector<int>, args);
    QFETCH(QVector<double>, hand);

    const Setup s(setup);
    QVector<TiffData *> i1;
    for (int k : s.order)
        i1 << m_frame.value(&kI1[k]);
    const QVector<TiffData *> i0 = frames(*s.i0);
    QVector<double> list1 = s.list1;
    QVector<double> list0;
    AbsorptionInput in;
    in.i1Frames = &i1;
    in.i0Frames = &i0;
    in.dark = s.dark ? m_frame.value(&kDark) : nullptr;
    in.darkExpTime = s.darkExp;
    in.i1ExpTime = s.i1Exp;
    in.i0ExpTime = s.i0Exp;
    in.useI0 = s.useI0;
    in.fluoType = s.fluo;
    in.useI1DarkArea = s.a1;
    in.i1DarkRect = kI1Rect;
    in.i1DarkList = &list1;
    in.useI0DarkArea = s.a0;
    in.i0DarkRect = kI0Rect;
    in.i0DarkList = &list0;
    in.totalI0ofI1 = s.total == 1 ? &m_total9809 : s.total == 2 ? &m_totalColumns : nullptr;

    Spectrum out;
    out.addPoint(-5, -5); // stale content must go
    if (op == "mu") {
        Absorption::absorptionSpectrum(in, args[0], args[1], args[2], args[3], out);
        // The pointer's form hands out the raw curve from the same sums.
        Spectrum mu;
        Spectrum raw;
        Spectrum rawAlone;
        raw.addPoint(-5, -5);
        Absorption::absorptionSpectrum(in, args[0], args[1], args[2], args[3], mu, &raw);
        Absorption::rawSpectrum(in, args[0], args[1], args[2], args[3], rawAlone);
        // Bit for bit, infinities and NaNs included.
        const auto same = [](const Spectrum &a, const Spectrum &b) {
            return a.points.size() == b.points.size()
                   && (a.points.isEmpty()
                       || std::memcmp(a.points.constData(), b.points.constData(), sizeof(QPointF) * a.points.size()) == 0);
        };
        QVERIFY(same(mu, out));
        QVERIFY(same(raw, rawAlone));
    }
    else if (op == "raw")
        Absorption::rawSpectrum(in, args[0], args[1], args[2], args[3], out);
    else if (op == "corners")
        Absorption::absorptionSpectrumByCorners(in, args[0], args[1], args[2], args[3], out);
    else if (op.startsWith("row"))
        Absorption::horizontalSection(in, args[0], s.inI0, args[1], args[2], args[3], op.endsWith("Mu"), out);
    else
        Absorption::verticalSection(in, args[0], s.inI0, args[1], args[2], args[3], op.endsWith("Mu"), out);

    QVector<double> wantList;
    const QVector<QPointF> want = expected(s, op, args, wantList);
    QCOMPARE(out.size(), want.size());
    for (int i = 0; i < want.size(); ++i) {
        QCOMPARE(out.points[i].x(), want[i].x());
        QVERIFY2(same(out.points[i].y(), want[i].y()) && (hand.isEmpty() || same(want[i].y(), hand[i])),
                 qPrintable(QStringLiteral("point %1: %2, expected %3")
                                .arg(i)
                                .arg(out.points[i].y(), 0, 'g', 17)
                                .arg(want[i].y(), 0, 'g', 17)));
    }
    if (op == "mu")
        QCOMPARE(list1, wantList);
    // Extremes as the curve tracks them, where every value is finite (the
    // curve's start values are +-1e300, which an infinity never passes).
    if (want.isEmpty() || !std::all_of(want.cbegin(), want.cend(), [](QPointF p) { return std::isfinite(p.y()); }))
        return;
    const auto byY = [](QPointF a, QPointF b) { return a.y() < b.y(); };
    const auto byX = [](QPointF a, QPointF b) { return a.x() < b.x(); };
    const int lo = int(std::min_element(want.cbegin(), want.cend(), byY) - want.cbegin());
    const int hi = int(std::max_element(want.cbegin(), want.cend(), byY) - want.cbegin());
    QVERIFY(same(out.yMin, want[lo].y()));
    QVERIFY(same(out.yMax, want[hi].y()));
    QCOMPARE(out.iYMin, lo);
    QCOMPARE(out.iYMax, hi);
    QCOMPARE(out.xMin, std::min_element(want.cbegin(), want.cend(), byX)->x());
    QCOMPARE(out.xMax, std::max_element(want.cbegin(), want.cend(), byX)->x());
}

// A Spectrum kept by the caller is refilled in place: once warm, neither a
// new spectrum nor a copy that has since gone makes it allocate again.
void TestAbsorption::outputKeepsItsBuffer()
{
    const QVector<TiffData *> i1 = frames(kI1);
    const QVector<TiffData *> i0 = frames(kI0Full);
    AbsorptionInput in;
    in.i1Frames = &i1;
    in.i0Frames = &i0;
    Spectrum out;
    Absorption::absorptionSpectrum(in, 2, 1, 1, 1, out);
    QCOMPARE(out.size(), 3);
    const QPointF *buffer = out.points.constData();
    const qsizetype room = out.points.capacity();
    {
        const XafsSpectrum shown(out, "box", 1, 0, SuggestElm());
        QCOMPARE(shown.size(), 3);
    }
    Absorption::absorptionSpectrum(in, 1, 2, 0, 0, out);
    Absorption::rawSpectrum(in, 3, 1, 1, 1, out);
    Absorption::absorptionSpectrum(in, 4, 3, 2, 2, out);
    QCOMPARE(out.size(), 3);
    QCOMPARE(out.points.constData(), buffer);
    QCOMPARE(out.points.capacity(), room);
}

void TestAbsorption::frameAllocation_data()
{
    QTest::addColumn<quint32>("w");
    QTest::addColumn<quint32>("h");
    QTest::addColumn<int>("type");
    QTest::addColumn<bool>("ok");

    QTest::newRow("16-bit") << 3u << 2u << int(PixelU16) << true;
    QTest::newRow("32-bit") << 1u << 1u << int(PixelU32) << true;
    QTest::newRow("float") << 2u << 5u << int(PixelF32) << true;
    QTest::newRow("libtiff rows refused") << 3u << 2u << int(PixelTiffU16) << false;
    QTest::newRow("no type") << 3u << 2u << int(PixelNone) << false;
    QTest::newRow("zero width") << 0u << 2u << int(PixelU16) << false;
    QTest::newRow("zero height") << 2u << 0u << int(PixelU16) << false;
    // 65536 x 65536 x 4 bytes = 16 GiB, far past the frame limit.
    QTest::newRow("beyond the limit") << 65536u << 65536u << int(PixelU32) << false;
}

void TestAbsorption::frameAllocation()
{
    QFETCH(quint32, w);
    QFETCH(quint32, h);
    QFETCH(int, type);
    QFETCH(bool, ok);

    // An existing 2 x 1 frame: a refused size must leave it as it was.
    TiffData f;
    QVERIFY(f.allocate(2, 1, PixelU32));
    f.setPixel(1, 0, 77);
    QCOMPARE(f.allocate(w, h, type), ok);
    QCOMPARE(f.width, ok ? w : 2u);
    QCOMPARE(f.pixelType, ok ? type : int(PixelU32));
    if (!ok) {
        QCOMPARE(f.pixel(1, 0), 77.0);
        return;
    }
    QCOMPARE(f.rows.size(), qsizetype(h));
    // Zeroed, and every pixel of every row writable and readable.
    for (quint32 y = 0; y < h; ++y)
        for (quint32 x = 0; x < w; ++x) {
            QCOMPARE(f.pixel(int(x), int(y)), 0.0);
            f.setPixel(int(x), int(y), 10.0 * y + x + 1);
        }
    for (quint32 y = 0; y < h; ++y)
        for (quint32 x = 0; x < w; ++x)
            QCOMPARE(f.pixel(int(x), int(y)), 10.0 * y + x + 1);
}

QTEST_GUILESS_MAIN(TestAbsorption)
#include "tst_absorption.moc"
