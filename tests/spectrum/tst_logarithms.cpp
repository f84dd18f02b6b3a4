#include "spectrum/Logarithms.h"

#include <QRandomGenerator>
#include <QTest>

#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

// The run of logarithms must be std::log to the bit, whatever the numbers
// and however many (the last few of a run that is not a multiple of four
// take the other path).
class TestLogarithms : public QObject
{
    Q_OBJECT
private slots:
    void sameBitsAsLibrary_data();
    void sameBitsAsLibrary();
    void runsFourAtATime();
};

void TestLogarithms::sameBitsAsLibrary_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("count");
    QTest::newRow("quotients of box sums") << 0 << 300001;
    QTest::newRow("any bit pattern") << 1 << 100003;
    QTest::newRow("near one") << 2 << 100002;
    QTest::newRow("wide exponents") << 3 << 100000;
    QTest::newRow("special values mixed in") << 4 << 1001;
}

void TestLogarithms::sameBitsAsLibrary()
{
    QFETCH(int, kind);
    QFETCH(int, count);
    QRandomGenerator g(quint32(kind + 7));
    const double special[] = {0.0, -0.0, -1.0, 1.0, std::numeric_limits<double>::infinity(),
                              -std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN(),
                              std::numeric_limits<double>::denorm_min(), std::numeric_limits<double>::min(),
                              std::numeric_limits<double>::max()};
    std::vector<double> x(static_cast<size_t>(count)), y(x.size());
    for (double &v : x) {
        switch (kind) {
        case 0:
            v = double(g.bounded(1, 600000)) / double(g.bounded(1, 600000));
            break;
        case 1: {
            const quint64 bits = g.generate64();
            std::memcpy(&v, &bits, sizeof v);
            break;
        }
        case 2:
            v = 0.92 + 0.16 * g.generateDouble();
            break;
        case 3:
            v = std::ldexp(0.5 + g.generateDouble(), g.bounded(-1070, 1020));
            break;
        default:
            v = g.bounded(3) == 0 ? special[g.bounded(int(std::size(special)))] : 0.2 + 4 * g.generateDouble();
        }
    }
    logarithms(x.data(), y.data(), count);
    for (int i = 0; i < count; ++i) {
        const double l = std::log(x[size_t(i)]);
        if (std::memcmp(&l, &y[size_t(i)], sizeof l) != 0)
            QFAIL(qPrintable(QStringLiteral("log(%1) gave %2, the library %3")
                                 .arg(x[size_t(i)], 0, 'g', 17)
                                 .arg(y[size_t(i)], 0, 'g', 17)
                                 .arg(l, 0, 'g', 17)));
    }
}

void TestLogarithms::runsFourAtATime()
{
#if defined(__x86_64__) && defined(__GNUC__)
    if (!__builtin_cpu_supports("avx2") || !__builtin_cpu_supports("fma"))
        QSKIP("no AVX2 and FMA here");
    // The library in use must be the one whose table the fast path carries;
    // if it is not, the maps stay right but lose the speed.
    QVERIFY(logarithmsVectorised());
#else
    QSKIP("not an x86-64 build");
#endif
}

QTEST_APPLESS_MAIN(TestLogarithms)
#include "tst_logarithms.moc"
