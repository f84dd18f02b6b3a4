#include "spectrum/InnerProducts.h"

#include <QRandomGenerator>
#include <QTest>

#include <cmath>
#include <cstring>
#include <limits>

// Candidate shifts carried together, four or eight to a pass as the
// processor allows, must give each the product the one-candidate walk gives,
// to the bit: energies landing exactly on the
// standard's points, bins crowded with close points, energies past both
// ends of the standard, odd values among the curve's.
class TestInnerProducts : public QObject
{
    Q_OBJECT
private slots:
    void manyAsOne_data();
    void manyAsOne();
};

namespace {

enum Grid { Even, Uneven, ClosePairs, Few };

Spectrum curve(QRandomGenerator &g, Grid grid, double from, double to, double step, bool odd)
{
    Spectrum s;
    double e = from;
    int n = 0;
    while (e <= to && n < (grid == Few ? 2 : 4000)) {
        // Small values of either sign, so that a last bit changed in one
        // reading still shows in the sums.
        double y = 0.02 / (1 + std::exp(-(e - 8979) / 2)) + 0.04 * (g.generateDouble() - 0.5);
        if (odd && g.bounded(40) == 0)
            y = g.bounded(2) ? std::numeric_limits<double>::quiet_NaN() : std::numeric_limits<double>::infinity();
        s.addPoint(e, y);
        ++n;
        double next = step;
        if (grid == Uneven)
            next = step * (0.2 + 1.6 * g.generateDouble());
        if (grid == ClosePairs && g.bounded(15) == 0)
            next = 1e-3 * (1 + g.generateDouble());
        e += next;
    }
    return s;
}

quint64 bitsOf(double d)
{
    quint64 u;
    std::memcpy(&u, &d, sizeof u);
    return u;
}

} // namespace

void TestInnerProducts::manyAsOne_data()
{
    QTest::addColumn<int>("grid");
    QTest::addColumn<double>("stdStep");
    QTest::addColumn<double>("shift");
    QTest::addColumn<bool>("odd");
    QTest::newRow("even grids, energies on the standard's points") << int(Even) << 0.5 << 0.0 << false;
    QTest::newRow("uneven steps, shifted standard") << int(Uneven) << 0.7 << 1.25 << false;
    QTest::newRow("close pairs among wide steps") << int(ClosePairs) << 2.0 << -0.5 << false;
    QTest::newRow("NaN and infinite values") << int(Uneven) << 0.5 << 0.0 << true;
    QTest::newRow("a standard of two points") << int(Few) << 50.0 << 0.0 << false;
}

void TestInnerProducts::manyAsOne()
{
    QFETCH(int, grid);
    QFETCH(double, stdStep);
    QFETCH(double, shift);
    QFETCH(bool, odd);
    QRandomGenerator g(quint32(grid * 31 + int(stdStep * 10)));
    // The standard narrower than the curve, so that lanes leave its range.
    const Spectrum standard = curve(g, Grid(grid), 8900, 9060, stdStep, odd);
    const InnerProductStandard reading(standard, 8890, 9070, shift);
    for (int c = 0; c < 6; ++c) {
        const Spectrum data = curve(g, c % 2 ? Uneven : Even, 8860 + c, 9100, 1.0, odd);
        const QPointF *x = data.points.constData();
        const int n = int(data.points.size());
        // The normalised curve may be shorter than the energies.
        const int nNorm = c == 5 ? n / 2 : n;
        for (int round = 0; round < 100; ++round) {
            // Eleven: a batch that fills neither four nor eight lanes evenly.
            constexpr int Count = 11;
            double dE[Count];
            for (double &d : dE)
                d = round % 3 == 0 ? -20 + 0.5 * g.bounded(81) : 60 * (g.generateDouble() - 0.5);
            for (int lanes : {4, 8}) {
                double many[Count];
                innerProducts(x, n, x, nNorm, reading, dE, many, Count, lanes);
                for (int k = 0; k < Count; ++k) {
                    const double one = innerProductAlong(x, n, x, nNorm, standard, 8890, 9070, shift, dE[k]);
                    if (bitsOf(many[k]) != bitsOf(one))
                        QFAIL(qPrintable(QStringLiteral("%1 lanes, curve %2, dE %3: %4 against %5")
                                             .arg(lanes)
                                             .arg(c)
                                             .arg(dE[k], 0, 'g', 17)
                                             .arg(many[k], 0, 'g', 17)
                                             .arg(one, 0, 'g', 17)));
                }
            }
        }
    }
}

QTEST_APPLESS_MAIN(TestInnerProducts)
#include "tst_innerproducts.moc"
