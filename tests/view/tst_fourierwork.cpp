#include "spectrum/FourierWork.h"
#include "spectrum/Spectrum.h"

#include <QtTest>

#include <cmath>
#include <complex>

// Fourier magnitudes against a plain O(n^2) DFT worked out here: the y values
// of the curve, zero-padded or cut to the transform's size.
class TestFourierWork : public QObject
{
    Q_OBJECT
private slots:
    void magnitudes_data();
    void magnitudes();
    void empty();
};

namespace {

QVector<double> naiveMagnitudes(const QVector<double> &y, int n)
{
    QVector<double> mags(n);
    for (int k = 0; k < n; ++k) {
        std::complex<double> sum = 0;
        for (int j = 0; j < n && j < y.size(); ++j)
            sum += y[j] * std::polar(1.0, -2.0 * M_PI * double(j) * double(k) / double(n));
        mags[k] = std::abs(sum);
    }
    return mags;
}

QVector<double> wave(int count)
{
    QVector<double> y;
    for (int i = 0; i < count; ++i)
        y << 1.5 + std::sin(0.7 * i) + 0.25 * std::cos(2.1 * i) + (i % 3);
    return y;
}

} // namespace

void TestFourierWork::magnitudes_data()
{
    QTest::addColumn<int>("firstSize"); // a size set before, to test the resize; 0: none
    QTest::addColumn<int>("n");
    QTest::addColumn<QVector<double>>("y");

    QTest::newRow("one point") << 0 << 1 << QVector<double>{3.25};
    QTest::newRow("prime size") << 0 << 7 << wave(7);
    QTest::newRow("power of two") << 0 << 64 << wave(64);
    // Fewer points than the size: the rest of the input is zero.
    QTest::newRow("zero padded") << 0 << 16 << wave(5);
    // More points than the size: only the first n take part.
    QTest::newRow("cut") << 0 << 7 << wave(20);
    QTest::newRow("shrunk 64 to 7") << 64 << 7 << wave(7);
    QTest::newRow("grown 7 to 64") << 7 << 64 << wave(64);
}

void TestFourierWork::magnitudes()
{
    QFETCH(int, firstSize);
    QFETCH(int, n);
    QFETCH(QVector<double>, y);

    Spectrum s;
    for (int i = 0; i < y.size(); ++i)
        s.addPoint(1000 + i, y[i]);

    FourierWork fw;
    if (firstSize > 0) {
        fw.setSize(firstSize);
        fw.forwardOf(s);
        fw.magnitudes();
    }
    fw.setSize(n);
    QCOMPARE(fw.size(), n);
    fw.forwardOf(s);
    const double *mag = fw.magnitudes();
    QVERIFY(mag);

    const QVector<double> expected = naiveMagnitudes(y, n);
    for (int k = 0; k < n; ++k)
        QVERIFY2(std::fabs(mag[k] - expected[k]) <= 1e-9 * (1 + expected[k]),
                 qPrintable(QStringLiteral("k %1: %2 vs %3").arg(k).arg(mag[k]).arg(expected[k])));
}

void TestFourierWork::empty()
{
    Spectrum s;
    s.addPoint(1, 2);
    FourierWork fw;
    fw.setSize(8);
    fw.setSize(-3); // frees, as 0 does
    QCOMPARE(fw.size(), 0);
    fw.forwardOf(s); // nothing allocated: nothing happens
    QVERIFY(fw.magnitudes() == nullptr);
}

QTEST_GUILESS_MAIN(TestFourierWork)
#include "tst_fourierwork.moc"
