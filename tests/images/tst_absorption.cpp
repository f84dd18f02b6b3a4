#include "FrameFiles.h"

#include "images/Absorption.h"
#include "images/AbsorptionInput.h"
#include "images/TiffData.h"
#include "spectrum/XafsSpectrum.h"

#include <QtTest>

#include <algorithm>
#include <climits>
#include <cmath>
#include <functional>
#include <memory>
#include <vector>

// The pixels of a test frame as plain numbers, from which every expected
// value is summed again by direct loops, without the frame's own sums.
struct Model
{
    int w = 5;
    int h = 4;
    double e = 0.0;
    std::function<double(int, int)> f;

    double at(int x, int y) const { return x >= 0 && y >= 0 && x < w && y < h ? f(x, y) : 0.0; }
};

// Box of centre (x, y), half widths |hw| and |vw|: every pixel of the frame
// is asked whether it lies in the box, so huge widths cost nothing extra.
static double refBox(const Model &m, int x, int y, int hw, int vw)
{
    const qint64 ah = qAbs(qint64(hw));
    const qint64 av = qAbs(qint64(vw));
    double s = 0.0;
    for (int py = 0; py < m.h; ++py)
        for (int px = 0; px < m.w; ++px)
            if (qAbs(qint64(px) - x) <= ah && qAbs(qint64(py) - y) <= av)
                s += m.f(px, py);
    return s;
}

// The stack at energy e: the pair found by a linear walk, then the line
// through their sums (no fixture has two frames at one energy).
static double refStack(const QVector<Model> &ms, double e, int x, int y, int hw, int vw)
{
    if (ms.isEmpty())
        return 1.0;
    if (ms.size() == 1)
        return refBox(ms[0], x, y, hw, vw);
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

static double ln(double v)
{
    return std::log(v);
}

// Transmission as the program defines it, guard included.
static double trans(double a, double b)
{
    return b * a > 0 ? std::log(a / b) : 1.0;
}

// 5 x 4 frames. I1 frame k at 100 + 10k eV: 50 + 10k + x + 2y.
static const QVector<Model> kI1 = {
    {5, 4, 100, [](int x, int y) { return 50.0 + x + 2 * y; }},
    {5, 4, 110, [](int x, int y) { return 60.0 + x + 2 * y; }},
    {5, 4, 120, [](int x, int y) { return 70.0 + x + 2 * y; }},
};
// I0 stacks: the three I1 energies lie between (95, 105, 125); one frame far
// away; two frames (104, 106) that the I1 energies leave on both sides.
static const QVector<Model> kI0Full = {
    {5, 4, 95, [](int x, int y) { return 200.0 + 3 * x + y; }},
    {5, 4, 105, [](int x, int y) { return 240.0 + 3 * x + y; }},
    {5, 4, 125, [](int x, int y) { return 280.0 + 3 * x + y; }},
};
static const QVector<Model> kI0One = {{5, 4, 300, [](int x, int) { return 500.0 + x; }}};
static const QVector<Model> kI0Narrow = {
    {5, 4, 104, [](int x, int y) { return 300.0 + x * y; }},
    {5, 4, 106, [](int x, int y) { return 320.0 + x * y; }},
};
static const Model kDark{5, 4, 0, [](int x, int) { return 4.0 + x; }};

enum I0Kind { I0Empty, I0Full, I0One, I0Narrow };
enum TotalKind { TotalNone, Total9809, TotalColumns };

struct Setup
{
    I0Kind i0 = I0Empty;
    bool useI0 = true;
    bool fluo = false;
    bool dark = false;
    double darkExp = 0.0;
    double i1Exp = 0.0;
    double i0Exp = 0.0;
    bool i1Area = false;
    bool i0Area = false;
    TotalKind total = TotalNone;
};
Q_DECLARE_METATYPE(Setup)
Q_DECLARE_METATYPE(I0Kind)

// The absorption formula, the other box curves and the dark lists, against
// sums worked out again from the pixel models.
class TestAbsorption : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void absorption_data();
    void absorption();
    void framesInAnyOrder_data();
    void framesInAnyOrder();
    void byCorners_data();
    void byCorners();
    void rawSpectrum_data();
    void rawSpectrum();
    void sections_data();
    void sections();
    void darkListsGrowLazily();
    void updateDarkList_data();
    void updateDarkList();
    void outputKeepsItsBuffer();
    void frameAllocation_data();
    void frameAllocation();

private:
    static std::unique_ptr<TiffData> frameOf(const Model &m);
    QVector<TiffData *> stack(I0Kind k) const;
    AbsorptionInput inputFor(const Setup &s, QVector<TiffData *> &i0, QVector<double> &i1List,
                             QVector<double> &i0List) const;

    QTemporaryDir m_dir;
    std::vector<std::unique_ptr<TiffData>> m_owned;
    QVector<TiffData *> m_i1;
    QVector<TiffData *> m_i0Full;
    QVector<TiffData *> m_i0One;
    QVector<TiffData *> m_i0Narrow;
    TiffData *m_dark = nullptr;
    XafsSpectrum m_total9809;
    XafsSpectrum m_totalColumns;
};

// Dark areas used by the setups: I1 over x 0..1, y 0..1; I0 over a rectangle
// whose corners truncate to x 3..5, y 2..7, mostly outside the frame.
static const QRectF kI1Rect(0, 0, 1, 1);
static const QRectF kI0Rect(3.7, 2.2, 2.9, 5.0);

std::unique_ptr<TiffData> TestAbsorption::frameOf(const Model &m)
{
    auto f = std::make_unique<TiffData>();
    if (!f->allocate(quint32(m.w), quint32(m.h), PixelU16))
        return nullptr;
    for (int y = 0; y < m.h; ++y)
        for (int x = 0; x < m.w; ++x)
            f->setPixel(x, y, m.f(x, y));
    f->energy = m.e;
    return f;
}

void TestAbsorption::initTestCase()
{
    QVERIFY(m_dir.isValid());
    const auto build = [this](const QVector<Model> &ms, QVector<TiffData *> &into) {
        for (const Model &m : ms) {
            m_owned.push_back(frameOf(m));
            QVERIFY(m_owned.back());
            into << m_owned.back().get();
        }
    };
    build(kI1, m_i1);
    build(kI0Full, m_i0Full);
    build(kI0One, m_i0One);
    build(kI0Narrow, m_i0Narrow);
    m_owned.push_back(frameOf(kDark));
    m_dark = m_owned.back().get();
    QVERIFY(m_dark);

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

QVector<TiffData *> TestAbsorption::stack(I0Kind k) const
{
    return k == I0Full ? m_i0Full : k == I0One ? m_i0One : k == I0Narrow ? m_i0Narrow : QVector<TiffData *>();
}

AbsorptionInput TestAbsorption::inputFor(const Setup &s, QVector<TiffData *> &i0, QVector<double> &i1List,
                                         QVector<double> &i0List) const
{
    i0 = stack(s.i0);
    AbsorptionInput in;
    in.i1Frames = &m_i1;
    in.i0Frames = &i0;
    in.dark = s.dark ? m_dark : nullptr;
    in.darkExpTime = s.darkExp;
    in.i1ExpTime = s.i1Exp;
    in.i0ExpTime = s.i0Exp;
    in.useI0 = s.useI0;
    in.fluoType = s.fluo;
    in.useI1DarkArea = s.i1Area;
    in.i1DarkRect = kI1Rect;
    in.i1DarkList = &i1List;
    in.useI0DarkArea = s.i0Area;
    in.i0DarkRect = kI0Rect;
    in.i0DarkList = &i0List;
    in.totalI0ofI1 = s.total == Total9809 ? &m_total9809 : s.total == TotalColumns ? &m_totalColumns : nullptr;
    return in;
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

static QVector<double> perFrame(const std::function<double(int)> &mu)
{
    QVector<double> v;
    for (int k = 0; k < kI1.size(); ++k)
        v << mu(k);
    return v;
}

void TestAbsorption::absorption_data()
{
    QTest::addColumn<Setup>("setup");
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("y");
    QTest::addColumn<int>("hw");
    QTest::addColumn<int>("vw");
    QTest::addColumn<QVector<double>>("mu"); // one per I1 frame, empty for none

    const auto E = [](int k) { return kI1[k].e; };
    const auto b = [](int k, int x, int y, int hw, int vw) { return refBox(kI1[k], x, y, hw, vw); };
    Setup s;

    // Box x 1..3, y 0..2 inside: I1 sums 9 (50 + 10k) + 3 * 6 + 3 * 6 = 486 + 90k.
    s = Setup();
    s.useI0 = false;
    QTest::newRow("no I0: a = N") << s << 2 << 1 << 1 << 1
                                  << perFrame([&](int k) { return ln(9.0 / (486 + 90 * k)); });

    // I0 sums over the same box: 9 * 200 + 54 + 9 = 1863 at 95 eV, +360 a frame
    // of the stack: 2043 at 100, 2313 at 110, 2493 at 120 eV.
    s = Setup();
    s.i0 = I0Full;
    QTest::newRow("I0 stack, hand") << s << 2 << 1 << 1 << 1
                                    << QVector<double>{ln(2043.0 / 486), ln(2313.0 / 576), ln(2493.0 / 666)};
    s.fluo = true;
    QTest::newRow("I0 stack, fluorescence") << s << 1 << 2 << 1 << 0 << perFrame([&](int k) {
        return b(k, 1, 2, 1, 0) / refStack(kI0Full, E(k), 1, 2, 1, 0);
    });
    s = Setup();
    s.i0 = I0One;
    QTest::newRow("one-frame I0 serves every energy") << s << 2 << 1 << 1 << 1 << perFrame([&](int k) {
        return ln(refBox(kI0One[0], 2, 1, 1, 1) / b(k, 2, 1, 1, 1));
    });
    s.i0 = I0Narrow;
    QTest::newRow("I0 energies inside the I1 range extrapolate") << s << 2 << 1 << 1 << 1 << perFrame([&](int k) {
        return ln(refStack(kI0Narrow, E(k), 2, 1, 1, 1) / b(k, 2, 1, 1, 1));
    });
    s = Setup();
    s.useI0 = false;
    s.i0 = I0Full;
    QTest::newRow("I0 stack present but unused") << s << 2 << 1 << 1 << 1
                                                 << perFrame([&](int k) { return ln(9.0 / (486 + 90 * k)); });

    // An empty stack with UseI0 gives a = 1.0 - d0.
    s = Setup();
    QTest::newRow("empty I0 stack: a = 1") << s << 2 << 1 << 1 << 1
                                           << perFrame([&](int k) { return ln(1.0 / (486 + 90 * k)); });
    // Dark box x 1..3, y 0..2: 3 * (5 + 6 + 7) = 54; 54 / 100 ms * 1 ms = 0.54,
    // so a = 0.46 for I0 and d1 = 0.54 * 2 = 1.08 for I1.
    s.dark = true;
    s.darkExp = 100;
    s.i1Exp = 2;
    s.i0Exp = 1;
    QTest::newRow("empty I0 stack with dark: a = 1 - d0") << s << 2 << 1 << 1 << 1 << perFrame([&](int k) {
        return ln(0.46 / (486 + 90 * k - 1.08));
    });
    s.i0Exp = 5; // a = 1 - 2.7 < 0
    QTest::newRow("empty I0 stack, dark above 1: guard") << s << 2 << 1 << 1 << 1
                                                          << QVector<double>{1.0, 1.0, 1.0};

    // Dark rate 54 / 200 ms = 0.27 per ms: I1 at 100 ms takes 27, I0 at 400 ms 108.
    s = Setup();
    s.i0 = I0Full;
    s.dark = true;
    s.darkExp = 200;
    s.i1Exp = 100;
    s.i0Exp = 400;
    QTest::newRow("dark scaled to each exposure") << s << 2 << 1 << 1 << 1
                                                  << QVector<double>{ln((2043.0 - 108) / (486 - 27)),
                                                                     ln((2313.0 - 108) / (576 - 27)),
                                                                     ln((2493.0 - 108) / (666 - 27))};
    s.fluo = true;
    QTest::newRow("dark scaled, fluorescence") << s << 2 << 1 << 1 << 1
                                               << QVector<double>{(486 - 27) / (2043.0 - 108),
                                                                  (576 - 27) / (2313.0 - 108),
                                                                  (666 - 27) / (2493.0 - 108)};
    // A dark exposure of 0 is not guarded: 54 / 0 = inf, so b = -inf and the
    // transmission guard answers; with an I1 exposure of 0 too, inf * 0 = NaN.
    s = Setup();
    s.useI0 = false;
    s.dark = true;
    s.darkExp = 0;
    s.i1Exp = 100;
    QTest::newRow("dark exposure 0, transmission") << s << 2 << 1 << 1 << 1 << QVector<double>{1.0, 1.0, 1.0};
    s.fluo = true;
    QTest::newRow("dark exposure 0, fluorescence") << s << 2 << 1 << 1 << 1
                                                   << QVector<double>(3, -qInf());
    s.i1Exp = 0;
    QTest::newRow("dark and I1 exposure 0: NaN") << s << 2 << 1 << 1 << 1 << QVector<double>(3, qQNaN());

    // Dark areas, N = 9. I1 area x 0..1, y 0..1: mean 51.5 + 10k. The I0
    // area keeps only x 3..4, y 2..3 of its 18 places.
    s = Setup();
    s.i0 = I0Full;
    s.i1Area = true;
    QTest::newRow("I1 dark area") << s << 2 << 1 << 1 << 1 << perFrame([&](int k) {
        return ln(refStack(kI0Full, E(k), 2, 1, 1, 1) / (486 + 90 * k - 9 * (51.5 + 10 * k)));
    });
    s.i0Area = true;
    s.dark = true;
    s.darkExp = 10;
    s.i1Exp = 1;
    s.i0Exp = 2;
    QTest::newRow("both dark areas with dark frame") << s << 2 << 1 << 1 << 1 << perFrame([&](int k) {
        const double d = 54.0 / 10;
        const double d1 = (refMean(kI1[k], 0, 0, 1, 1) - refMean(kDark, 0, 0, 1, 1)) * 9 + d * 1;
        // The I0 list is indexed by the I1 frame: I0 frame k, whatever its energy.
        const double d0 = (refMean(kI0Full[k], 3, 2, 2, 5) - refMean(kDark, 3, 2, 2, 5)) * 9 + d * 2;
        return ln((refStack(kI0Full, E(k), 2, 1, 1, 1) - d0) / (b(k, 2, 1, 1, 1) - d1));
    });
    // Two I0 frames for three I1 frames: the last frame has no I0 dark value.
    s = Setup();
    s.i0 = I0Narrow;
    s.i0Area = true;
    QTest::newRow("I0 dark list shorter than the I1 stack") << s << 2 << 1 << 1 << 1 << perFrame([&](int k) {
        const double d0 = k < 2 ? refMean(kI0Narrow[k], 3, 2, 2, 5) * 9 : 0.0;
        return ln((refStack(kI0Narrow, E(k), 2, 1, 1, 1) - d0) / b(k, 2, 1, 1, 1));
    });
    // An I1 dark area larger than the signal drives b negative: 1.0.
    s = Setup();
    s.useI0 = false;
    s.i1Area = true;
    QTest::newRow("dark area above the signal: guard") << s << 0 << 0 << 0 << 0 << QVector<double>{1.0, 1.0, 1.0};

    // Total I0 of I1: rows 5000, 7000, then nothing (a = 0), no dark on a.
    s = Setup();
    s.i0 = I0Full;
    s.total = Total9809;
    QTest::newRow("total I0 shorter than the stack")
        << s << 2 << 1 << 1 << 1 << QVector<double>{ln(5000.0 / 486), ln(7000.0 / 576), 1.0};
    s.useI0 = false;
    s.dark = true;
    s.darkExp = 200;
    s.i1Exp = 100;
    s.i0Exp = 400;
    QTest::newRow("total I0 wins, takes no dark")
        << s << 2 << 1 << 1 << 1 << QVector<double>{ln(5000.0 / 459), ln(7000.0 / 549), 1.0};
    s = Setup();
    s.fluo = true;
    s.total = Total9809;
    QTest::newRow("total I0, fluorescence divides by 0")
        << s << 2 << 1 << 1 << 1 << QVector<double>{486 / 5000.0, 576 / 7000.0, qInf()};
    s = Setup();
    s.i0 = I0Full;
    s.total = TotalColumns;
    QTest::newRow("total I0 from a column file: a = 0") << s << 2 << 1 << 1 << 1 << QVector<double>{1.0, 1.0, 1.0};

    // Box partly outside: x -2..2, y -1..1 keeps 6 pixels, N stays 15.
    s = Setup();
    s.useI0 = false;
    QTest::newRow("box partly outside, N stays full") << s << 0 << 0 << 2 << 1 << perFrame([&](int k) {
        // Pixels x 0..2, y 0..1: 6 (50 + 10k) + 2 * 3 + 3 * 2 = 312 + 60k.
        return ln(15.0 / (312 + 60 * k));
    });
    s.i0 = I0Full;
    s.useI0 = true;
    QTest::newRow("box partly outside, I0 falls too") << s << 0 << 0 << 2 << 1 << perFrame([&](int k) {
        return ln(refStack(kI0Full, E(k), 0, 0, 2, 1) / (312 + 60 * k));
    });

    // Negative widths: the sums take the magnitude, N the signs.
    s = Setup();
    s.useI0 = false;
    QTest::newRow("negative width: N = -1 * 3") << s << 2 << 1 << -1 << 1 << QVector<double>{1.0, 1.0, 1.0};
    QTest::newRow("both widths negative: N = -1 * -1") << s << 2 << 1 << -1 << -1
                                                       << perFrame([&](int k) { return ln(1.0 / (486 + 90 * k)); });
    s = Setup();
    s.i0 = I0Full;
    QTest::newRow("negative widths with I0 stack") << s << 2 << 1 << -1 << -1
                                                   << QVector<double>{ln(2043.0 / 486), ln(2313.0 / 576),
                                                                      ln(2493.0 / 666)};

    // Huge widths: the whole frame in every sum; N overflows no int.
    QTest::newRow("huge widths with I0") << s << 2 << 1 << INT_MAX << INT_MAX << perFrame([&](int k) {
        return ln(refStack(kI0Full, E(k), 2, 1, INT_MAX, INT_MAX) / b(k, 2, 1, INT_MAX, INT_MAX));
    });
    s.useI0 = false;
    QTest::newRow("huge negative widths without I0") << s << 2 << 1 << INT_MIN << INT_MIN << perFrame([&](int k) {
        const double n = (2.0 * INT_MIN + 1) * (2.0 * INT_MIN + 1); // about 1.8e19
        return ln(n / b(k, 2, 1, INT_MIN, INT_MIN));
    });

    // Bounds of the centre: the first I1 frame is 5 x 4.
    s = Setup();
    s.i0 = I0Full;
    QTest::newRow("x = imgW") << s << 5 << 1 << 1 << 1 << QVector<double>();
    QTest::newRow("y = imgH") << s << 2 << 4 << 1 << 1 << QVector<double>();
    QTest::newRow("x negative") << s << -1 << 1 << 1 << 1 << QVector<double>();
    QTest::newRow("y negative") << s << 2 << -1 << 1 << 1 << QVector<double>();
    QTest::newRow("last pixel") << s << 4 << 3 << 0 << 0 << perFrame([&](int k) {
        return ln(refStack(kI0Full, E(k), 4, 3, 0, 0) / (60.0 + 10 * k));
    });
}

void TestAbsorption::absorption()
{
    QFETCH(Setup, setup);
    QFETCH(int, x);
    QFETCH(int, y);
    QFETCH(int, hw);
    QFETCH(int, vw);
    QFETCH(QVector<double>, mu);

    QVector<TiffData *> i0;
    QVector<double> i1List;
    QVector<double> i0List;
    const AbsorptionInput in = inputFor(setup, i0, i1List, i0List);
    Spectrum out;
    out.addPoint(-5, -5); // stale content must go
    Absorption::absorptionSpectrum(in, x, y, hw, vw, out);

    QCOMPARE(out.size(), mu.size());
    for (int k = 0; k < mu.size(); ++k) {
        QCOMPARE(out.points[k].x(), kI1[k].e);
        if (!same(out.points[k].y(), mu[k]))
            QFAIL(qPrintable(QStringLiteral("frame %1: mu %2, expected %3")
                                 .arg(k)
                                 .arg(out.points[k].y(), 0, 'g', 17)
                                 .arg(mu[k], 0, 'g', 17)));
    }
    // Extremes as the curve tracks them, where every mu is finite (the
    // curve's start values are +-1e300, which an infinity never passes).
    if (!mu.isEmpty() && std::all_of(mu.cbegin(), mu.cend(), [](double v) { return std::isfinite(v); })) {
        const int lo = int(std::min_element(mu.cbegin(), mu.cend()) - mu.cbegin());
        const int hi = int(std::max_element(mu.cbegin(), mu.cend()) - mu.cbegin());
        QVERIFY(same(out.yMin, mu[lo]));
        QVERIFY(same(out.yMax, mu[hi]));
        QCOMPARE(out.iYMin, lo);
        QCOMPARE(out.iYMax, hi);
        QCOMPARE(out.xMin, 100.0);
        QCOMPARE(out.xMax, 100.0 + 10 * (mu.size() - 1));
    }
}

void TestAbsorption::framesInAnyOrder_data()
{
    QTest::addColumn<QVector<int>>("order"); // I1 frames by index into the fixture
    QTest::addColumn<int>("i0");

    QTest::newRow("descending") << QVector<int>{2, 1, 0} << int(I0Full);
    QTest::newRow("back and forth") << QVector<int>{1, 0, 2, 0, 2, 2, 1} << int(I0Full);
    QTest::newRow("one-frame I0") << QVector<int>{2, 0, 1} << int(I0One);
    QTest::newRow("extrapolated both ways") << QVector<int>{0, 2, 0, 1} << int(I0Narrow);
}

// Frames come in file order, not energy order: each frame still meets the I0
// stack at its own energy, however the pairs of I0 frames alternate.
void TestAbsorption::framesInAnyOrder()
{
    QFETCH(QVector<int>, order);
    QFETCH(int, i0);

    QVector<TiffData *> i1;
    for (int k : order)
        i1 << m_i1[k];
    const QVector<TiffData *> i0Frames = stack(I0Kind(i0));
    const QVector<Model> &models = i0 == I0Full ? kI0Full : i0 == I0One ? kI0One : kI0Narrow;
    AbsorptionInput in;
    in.i1Frames = &i1;
    in.i0Frames = &i0Frames;
    Spectrum out;
    Absorption::absorptionSpectrum(in, 3, 2, 1, 0, out);
    QCOMPARE(out.size(), order.size());
    for (int i = 0; i < order.size(); ++i) {
        const Model &m = kI1[order[i]];
        QCOMPARE(out.points[i].x(), m.e);
        QVERIFY2(same(out.points[i].y(), ln(refStack(models, m.e, 3, 2, 1, 0) / refBox(m, 3, 2, 1, 0))),
                 qPrintable(QString::number(i)));
    }
}

void TestAbsorption::byCorners_data()
{
    QTest::addColumn<int>("x0");
    QTest::addColumn<int>("y0");
    QTest::addColumn<int>("x1");
    QTest::addColumn<int>("y1");
    QTest::addColumn<QVector<double>>("mu");

    // Without I0 mu = ln(N / b), so both the centre and the widths show.
    const auto mu = [](int x, int y, int hw, int vw) {
        return perFrame([=](int k) {
            return trans((2.0 * hw + 1) * (2.0 * vw + 1), refBox(kI1[k], x, y, hw, vw));
        });
    };
    // (0,0)-(3,2): centre (1, 1), half widths 3/2 and 2/2 rounded up: 2, 1.
    QTest::newRow("even and odd spans") << 0 << 0 << 3 << 2 << mu(1, 1, 2, 1);
    QTest::newRow("one pixel") << 3 << 2 << 3 << 2 << mu(3, 2, 0, 0);
    // (1,0)-(4,3): centre (2, 1), both halves 3/2 rounded up: 2.
    QTest::newRow("odd spans") << 1 << 0 << 4 << 3 << mu(2, 1, 2, 2);
    // Reversed (3,2)-(0,0): halves -3/2 and -2/2 rounded up: -1, -1; N = 1.
    QTest::newRow("reversed corners") << 3 << 2 << 0 << 0 << mu(1, 1, -1, -1);
    // Centre (5, 1) lies outside the 5-wide image.
    QTest::newRow("centre outside") << 4 << 0 << 6 << 2 << QVector<double>();
}

void TestAbsorption::byCorners()
{
    QFETCH(int, x0);
    QFETCH(int, y0);
    QFETCH(int, x1);
    QFETCH(int, y1);
    QFETCH(QVector<double>, mu);

    Setup s;
    s.useI0 = false;
    QVector<TiffData *> i0;
    QVector<double> l1;
    QVector<double> l0;
    Spectrum out;
    Absorption::absorptionSpectrumByCorners(inputFor(s, i0, l1, l0), x0, y0, x1, y1, out);
    QCOMPARE(out.size(), mu.size());
    for (int k = 0; k < mu.size(); ++k)
        QVERIFY2(same(out.points[k].y(), mu[k]), qPrintable(QString::number(k)));
}

void TestAbsorption::rawSpectrum_data()
{
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("y");
    QTest::addColumn<int>("hw");
    QTest::addColumn<int>("vw");
    QTest::addColumn<QVector<double>>("sums");

    QTest::newRow("inside") << 2 << 1 << 1 << 1 << QVector<double>{486, 576, 666};
    // x 3..5, y 2..3 keeps x 3..4: 4 (50 + 10k) + 2 * 7 + 2 * 10 = 234 + 40k.
    QTest::newRow("partly outside") << 4 << 3 << 1 << 1 << QVector<double>{234, 274, 314};
    QTest::newRow("negative widths") << 2 << 1 << -1 << -1 << QVector<double>{486, 576, 666};
    QTest::newRow("x = imgW") << 5 << 0 << 1 << 1 << QVector<double>();
    QTest::newRow("y negative") << 0 << -1 << 1 << 1 << QVector<double>();
}

void TestAbsorption::rawSpectrum()
{
    QFETCH(int, x);
    QFETCH(int, y);
    QFETCH(int, hw);
    QFETCH(int, vw);
    QFETCH(QVector<double>, sums);

    // Dark, dark areas and I0 are all set and must all be ignored.
    Setup s;
    s.i0 = I0Full;
    s.dark = true;
    s.darkExp = 1;
    s.i1Exp = 100;
    s.i0Exp = 100;
    s.i1Area = true;
    QVector<TiffData *> i0;
    QVector<double> l1;
    QVector<double> l0;
    Spectrum out;
    Absorption::rawSpectrum(inputFor(s, i0, l1, l0), x, y, hw, vw, out);
    QCOMPARE(out.size(), sums.size());
    for (int k = 0; k < sums.size(); ++k) {
        QCOMPARE(out.points[k].x(), kI1[k].e);
        QCOMPARE(out.points[k].y(), sums[k]);
    }
}

void TestAbsorption::sections_data()
{
    QTest::addColumn<bool>("horizontal");
    QTest::addColumn<I0Kind>("i0");
    QTest::addColumn<bool>("fluo");
    QTest::addColumn<int>("index");
    QTest::addColumn<bool>("inI0Stack");
    QTest::addColumn<int>("at");
    QTest::addColumn<int>("hw");
    QTest::addColumn<int>("vw");
    QTest::addColumn<bool>("asAbsorption");
    QTest::addColumn<QVector<QPointF>>("points");

    // Abscissa and value along the line: x for a row, imgH - y for a column.
    const auto row = [](const std::function<double(int x)> &v) {
        QVector<QPointF> p;
        for (int x = 0; x < 5; ++x)
            p << QPointF(x, v(x));
        return p;
    };
    const auto column = [](const std::function<double(int y)> &v) {
        QVector<QPointF> p;
        for (int y = 0; y < 4; ++y)
            p << QPointF(4 - y, v(y));
        return p;
    };

    QTest::newRow("row of I1 frame 1") << true << I0Full << false << 1 << false << 1 << 1 << 0 << false
                                       << row([](int x) { return refBox(kI1[1], x, 1, 1, 0); });
    QTest::newRow("row of I0 frame 2") << true << I0Full << false << 2 << true << 3 << 0 << 1 << false
                                       << row([](int x) { return refBox(kI0Full[2], x, 3, 0, 1); });
    // As absorption always in I1, even with the I0 stack shown.
    QTest::newRow("row as absorption") << true << I0Full << false << 1 << true << 1 << 1 << 1 << true
                                       << row([](int x) {
                                              return trans(refStack(kI0Full, 110, x, 1, 1, 1), refBox(kI1[1], x, 1, 1, 1));
                                          });
    QTest::newRow("row as fluorescence") << true << I0Narrow << true << 0 << false << 0 << 2 << 0 << true
                                         << row([](int x) {
                                                return refBox(kI1[0], x, 0, 2, 0) / refStack(kI0Narrow, 100, x, 0, 2, 0);
                                            });
    QTest::newRow("row with empty I0 stack: i0 = 1") << true << I0Empty << false << 2 << false << 2 << 0 << 0 << true
                                                     << row([](int x) { return ln(1.0 / (74.0 + x)); });
    QTest::newRow("column of I1 frame 0") << false << I0Full << false << 0 << false << 4 << 1 << 1 << false
                                          << column([](int y) { return refBox(kI1[0], 4, y, 1, 1); });
    QTest::newRow("column as absorption") << false << I0One << false << 2 << false << 0 << 0 << 2 << true
                                          << column([](int y) {
                                                 return trans(refBox(kI0One[0], 0, y, 0, 2), refBox(kI1[2], 0, y, 0, 2));
                                             });
    QTest::newRow("column, huge widths") << false << I0Full << false << 1 << false << 2 << INT_MAX << INT_MIN << false
                                         << column([](int) { return refBox(kI1[1], 0, 0, 10, 10); });
    QTest::newRow("row y = imgH") << true << I0Full << false << 0 << false << 4 << 0 << 0 << false << QVector<QPointF>();
    QTest::newRow("row y negative") << true << I0Full << false << 0 << false << -1 << 0 << 0 << false
                                    << QVector<QPointF>();
    QTest::newRow("column x = imgW") << false << I0Full << false << 0 << false << 5 << 0 << 0 << false
                                     << QVector<QPointF>();
    QTest::newRow("index past the stack") << true << I0Full << false << 3 << false << 1 << 0 << 0 << false
                                          << QVector<QPointF>();
    QTest::newRow("index past the I0 stack") << true << I0One << false << 1 << true << 1 << 0 << 0 << false
                                             << QVector<QPointF>();
}

void TestAbsorption::sections()
{
    QFETCH(bool, horizontal);
    QFETCH(I0Kind, i0);
    QFETCH(bool, fluo);
    QFETCH(int, index);
    QFETCH(bool, inI0Stack);
    QFETCH(int, at);
    QFETCH(int, hw);
    QFETCH(int, vw);
    QFETCH(bool, asAbsorption);
    QFETCH(QVector<QPointF>, points);

    // A dark frame and UseI0 off change nothing in a section.
    Setup s;
    s.i0 = i0;
    s.fluo = fluo;
    s.useI0 = false;
    s.dark = true;
    s.darkExp = 1;
    s.i1Exp = 100;
    s.i0Exp = 100;
    QVector<TiffData *> frames;
    QVector<double> l1;
    QVector<double> l0;
    const AbsorptionInput in = inputFor(s, frames, l1, l0);
    Spectrum out;
    if (horizontal)
        Absorption::horizontalSection(in, index, inI0Stack, at, hw, vw, asAbsorption, out);
    else
        Absorption::verticalSection(in, index, inI0Stack, at, hw, vw, asAbsorption, out);
    QCOMPARE(out.size(), points.size());
    for (int i = 0; i < points.size(); ++i) {
        QCOMPARE(out.points[i].x(), points[i].x());
        QVERIFY2(same(out.points[i].y(), points[i].y()),
                 qPrintable(QStringLiteral("%1: %2 vs %3").arg(i).arg(out.points[i].y()).arg(points[i].y())));
    }
}

// The lists follow the stack as it grows and keep the values they have:
// only frames past the list's end are measured.
void TestAbsorption::darkListsGrowLazily()
{
    QVector<TiffData *> i1{m_i1[0], m_i1[1]};
    QVector<TiffData *> i0;
    QVector<double> list;
    AbsorptionInput in;
    in.i1Frames = &i1;
    in.i0Frames = &i0;
    in.useI0 = false;
    in.useI1DarkArea = true;
    in.i1DarkRect = kI1Rect;
    in.i1DarkList = &list;

    Spectrum out;
    Absorption::absorptionSpectrum(in, 2, 1, 1, 1, out);
    QCOMPARE(list, (QVector<double>{51.5, 61.5})); // means of 50,51,52,53 and 60..63

    // A value already in the list is used as it stands (times N = 9).
    list[0] = 40.0;
    i1 << m_i1[2];
    Absorption::absorptionSpectrum(in, 2, 1, 1, 1, out);
    QCOMPARE(list, (QVector<double>{40.0, 61.5, 71.5}));
    QCOMPARE(out.size(), 3);
    QVERIFY(same(out.points[0].y(), ln(9.0 / (486 - 360))));
    QVERIFY(same(out.points[2].y(), ln(9.0 / (666 - 9 * 71.5))));

    // Unused, the area neither grows its list nor counts.
    in.useI1DarkArea = false;
    list.clear();
    Absorption::absorptionSpectrum(in, 2, 1, 1, 1, out);
    QVERIFY(list.isEmpty());
    QVERIFY(same(out.points[0].y(), ln(9.0 / 486)));
}

void TestAbsorption::updateDarkList_data()
{
    QTest::addColumn<int>("frames");
    QTest::addColumn<bool>("dark");
    QTest::addColumn<QRectF>("rect");
    QTest::addColumn<QVector<double>>("before");
    QTest::addColumn<QVector<double>>("after");

    // I1 means over x 0..1, y 0..1: 51.5 + 10k; dark 4.5.
    QTest::newRow("from empty") << 3 << false << kI1Rect << QVector<double>() << QVector<double>{51.5, 61.5, 71.5};
    QTest::newRow("less the dark") << 2 << true << kI1Rect << QVector<double>() << QVector<double>{47.0, 57.0};
    QTest::newRow("appends past the end only") << 3 << true << kI1Rect << QVector<double>{-1.0}
                                               << QVector<double>{-1.0, 57.0, 67.0};
    QTest::newRow("longer list stays") << 1 << false << kI1Rect << QVector<double>{7.0, 8.0}
                                       << QVector<double>{7.0, 8.0};
    // x 4..6, y 3..4 of a 5 x 4 frame: one pixel (4, 3) of six places.
    QTest::newRow("rectangle mostly outside") << 1 << true << QRectF(4, 3, 2, 1) << QVector<double>()
                                              << QVector<double>{(60.0 - 8.0) / 6};
    QTest::newRow("no frames") << 0 << true << kI1Rect << QVector<double>() << QVector<double>();
}

void TestAbsorption::updateDarkList()
{
    QFETCH(int, frames);
    QFETCH(bool, dark);
    QFETCH(QRectF, rect);
    QFETCH(QVector<double>, before);
    QFETCH(QVector<double>, after);

    Absorption::updateDarkList(m_i1.mid(0, frames), dark ? m_dark : nullptr, rect, before);
    QCOMPARE(before.size(), after.size());
    for (int i = 0; i < after.size(); ++i)
        QVERIFY2(same(before[i], after[i]), qPrintable(QString::number(i)));
}

// A Spectrum kept by the caller is refilled in place: once warm, neither a
// new spectrum nor a copy that has since gone makes it allocate again.
void TestAbsorption::outputKeepsItsBuffer()
{
    QVector<TiffData *> i0 = m_i0Full;
    AbsorptionInput in;
    in.i1Frames = &m_i1;
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

    // reserve() makes the room up front, and reset() keeps it.
    Spectrum s;
    s.reserve(100);
    const QPointF *first = s.points.constData();
    for (int i = 0; i < 100; ++i)
        s.addPoint(i, i);
    s.reset();
    for (int i = 0; i < 100; ++i)
        s.addPoint(i, -i);
    QCOMPARE(s.points.constData(), first);
    QCOMPARE(s.iYMin, 99);
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
    if (!ok) {
        QCOMPARE(f.width, 2u);
        QCOMPARE(f.pixelType, int(PixelU32));
        QCOMPARE(f.pixel(1, 0), 77.0);
        return;
    }
    QCOMPARE(f.width, w);
    QCOMPARE(f.height, h);
    QCOMPARE(f.pixelType, type);
    QCOMPARE(f.rows.size(), qsizetype(h));
    // Zeroed, and every pixel of every row writable and readable.
    for (quint32 y = 0; y < h; ++y)
        for (quint32 x = 0; x < w; ++x)
            QCOMPARE(f.pixel(int(x), int(y)), 0.0);
    for (quint32 y = 0; y < h; ++y)
        for (quint32 x = 0; x < w; ++x)
            f.setPixel(int(x), int(y), 10.0 * y + x + 1);
    for (quint32 y = 0; y < h; ++y)
        for (quint32 x = 0; x < w; ++x)
            QCOMPARE(f.pixel(int(x), int(y)), 10.0 * y + x + 1);
}

QTEST_GUILESS_MAIN(TestAbsorption)
#include "tst_absorption.moc"
