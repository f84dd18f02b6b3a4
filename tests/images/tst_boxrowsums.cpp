#include "images/BoxRowSums.h"
#include "images/TiffData.h"

#include <QtTest>

#include <limits>
#include <memory>
#include <vector>

// The row walk's box sums against TiffData::boxSum, bit for bit, for every
// pixel type at its extremes (where 32-bit column sums wrap), boxes clipped
// by the frame's edges and by its shift, boxes too large for 32 bits, and
// walks that step down, jump and leave the frame.
class TestBoxRowSums : public QObject
{
    Q_OBJECT
private slots:
    void sameAsBoxSum_data();
    void sameAsBoxSum();
};

namespace {

// Pixels from a fixed hash, most of them at the type's top, some at its bottom.
TiffData *makeFrame(int type, int w, int h, int seed)
{
    auto *f = new TiffData;
    f->allocate(quint32(w), quint32(h), type);
    const double top = withPixelType(type, 0.0, [](auto tag) {
        using T = typename decltype(tag)::type;
        return std::is_integral_v<T> ? double(std::numeric_limits<T>::max()) : 1e5;
    });
    const double bottom = withPixelType(type, 0.0, [](auto tag) {
        using T = typename decltype(tag)::type;
        return std::is_integral_v<T> ? double(std::numeric_limits<T>::min()) : -1e5;
    });
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            const quint32 r = quint32(x * 73856093u) ^ quint32(y * 19349663u) ^ quint32(seed * 83492791u);
            const double v = r % 8 == 0 ? bottom + r % 3 : r % 8 == 1 ? double(r % 1000) : top - r % 5;
            f->setPixel(x, y, type == PixelF32 || type == PixelF64 ? v + 0.25 : v);
        }
    return f;
}

} // namespace

void TestBoxRowSums::sameAsBoxSum_data()
{
    QTest::addColumn<QVector<int>>("types");
    QTest::addColumn<int>("hw");
    QTest::addColumn<int>("vw");
    QTest::addColumn<int>("shift"); // of every other frame, in x and -y
    QTest::addColumn<QVector<int>>("rows");
    QTest::addColumn<QSize>("size");
    const QVector<int> all{PixelU16, PixelTiffU16, PixelU8, PixelI8, PixelI16, PixelU32, PixelI32, PixelF32, PixelF64};
    const QVector<int> down{-3, -2, -1, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18};
    const QSize small(29, 17);
    QTest::newRow("every type, 5 x 3 box, down and out") << all << 2 << 1 << 0 << down << small;
    QTest::newRow("every type shifted, jumps")
        << all << 3 << 4 << 3 << QVector<int>{5, 6, 8, 7, 2, 14, 15, 40, 16, 0} << small;
    QTest::newRow("negative half widths") << all << -1 << -2 << 1 << down << small;
    // Running sums along a row past 2^32; boxes just inside 2^31.
    QTest::newRow("32-bit running sums wrap")
        << QVector<int>{PixelU16, PixelI16} << 90 << 90 << 0 << QVector<int>{90, 91, 92, 109} << QSize(600, 200);
    QTest::newRow("16-bit box too large for 32 bits")
        << QVector<int>{PixelU16, PixelI16, PixelU8} << 115 << 115 << 0 << QVector<int>{-90, 114, 115, 116}
        << QSize(230, 230);
}

void TestBoxRowSums::sameAsBoxSum()
{
    QFETCH(QVector<int>, types);
    QFETCH(int, hw);
    QFETCH(int, vw);
    QFETCH(int, shift);
    QFETCH(QVector<int>, rows);
    QFETCH(QSize, size);
    const int w = size.width();
    const int h = size.height();
    std::vector<std::unique_ptr<TiffData>> owned;
    QVector<TiffData *> frames;
    for (int k = 0; k < types.size(); ++k) {
        owned.emplace_back(makeFrame(types[k], w, h, k));
        owned.back()->shiftX = k % 2 ? shift : 0;
        owned.back()->shiftY = k % 2 ? -shift : 0;
        frames << owned.back().get();
    }
    for (const auto &[xFirst, xLast] : {std::pair{0, w - 1}, std::pair{-4, 9}, std::pair{w - 17, w + 4}}) {
        BoxRowSums sums;
        sums.setUp(frames, hw, vw, xFirst, xLast);
        for (int y : rows) {
            sums.moveTo(y);
            for (int x = xFirst; x <= xLast; ++x)
                for (int k = 0; k < frames.size(); ++k) {
                    const double want = frames[k]->boxSum(x, y, hw, vw);
                    if (sums.sum(k, x) != want || sums.sums(x)[k] != want)
                        QFAIL(qPrintable(QStringLiteral("frame %1 at (%2, %3), centres %4..%5: %6, boxSum %7")
                                             .arg(k).arg(x).arg(y).arg(xFirst).arg(xLast)
                                             .arg(sums.sum(k, x), 0, 'g', 17).arg(want, 0, 'g', 17)));
                }
        }
    }
}

QTEST_APPLESS_MAIN(TestBoxRowSums)
#include "tst_boxrowsums.moc"
