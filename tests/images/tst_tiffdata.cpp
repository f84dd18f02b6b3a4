#include "FrameFiles.h"
#include "LogCapture.h"

#include "images/TiffData.h"
#include "images/TiffWriter.h"

#include <QRandomGenerator>
#include <QtTest>

#include <climits>
#include <cmath>

using namespace FrameFiles;

Q_DECLARE_METATYPE(QVector<QPoint>)

// Pixel access, sums, shifts, mask mending and interpolation over a stack.
class TestTiffData : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void access_data();
    void access();
    void boxSumMatchesPixelSum_data();
    void boxSumMatchesPixelSum();
    void mask_data();
    void mask();
    void interpolatedBoxSum_data();
    void interpolatedBoxSum();

private:
    std::unique_ptr<TiffData> frame(const QString &type, int w, int h, const QVector<quint32> &values);
    QTemporaryDir m_dir;
    int m_files = 0;
};

void TestTiffData::initTestCase()
{
    QVERIFY(m_dir.isValid());
    gErrPoints = ErrPoints();
}

// A frame of the given pixel kind: "u16" and "u32" from .img files, "f32"
// from a text image; the kinds only HDF5 stacks bring are made in code, and
// take a value as the signed number of its low bits.
std::unique_ptr<TiffData> TestTiffData::frame(const QString &type, int w, int h, const QVector<quint32> &values)
{
    static const QHash<QString, int> made{
        {"u8", PixelU8}, {"i8", PixelI8}, {"i16", PixelI16}, {"i32", PixelI32}, {"f64", PixelF64}};
    if (made.contains(type)) {
        auto f = std::make_unique<TiffData>();
        if (!f->allocate(quint32(w), quint32(h), made.value(type)))
            return nullptr;
        for (int i = 0; i < w * h; ++i)
            f->setPixel(i % w, i / w, type.startsWith('i') ? double(qint32(values[i])) : double(values[i]));
        return f;
    }
    const QString file = m_dir.filePath(QStringLiteral("f%1").arg(++m_files));
    if (type == QLatin1String("f32")) {
        QVector<double> d;
        for (quint32 v : values)
            d << double(v);
        return frameFromText(file, w, h, d);
    }
    return frameFromImg(file, w, h, values, type == QLatin1String("u32") ? 4 : 2);
}

// The 4 x 3 frame most tests use: value 10*y + x + 1, 150 in all.
//    1  2  3  4
//   11 12 13 14
//   21 22 23 24
static const QVector<quint32> kGrid{1, 2, 3, 4, 11, 12, 13, 14, 21, 22, 23, 24};

void TestTiffData::access_data()
{
    QTest::addColumn<QString>("type"); // "all" for each kind of pixel
    QTest::addColumn<QPoint>("shift");
    QTest::addColumn<QString>("op");   // pixel x y | set x y v (then pixel x y) | box x y hw vw | mean x y w h
    QTest::addColumn<QVector<double>>("args");
    QTest::addColumn<double>("expected");
    const auto row = [](const char *name, const char *type, QPoint shift, const char *op, QVector<double> args,
                        double expected) {
        QTest::newRow(name) << QString(type) << shift << QString(op) << args << expected;
    };
    const double iMin = INT_MIN, iMax = INT_MAX;
    row("first", "all", {}, "pixel", {0, 0}, 1);
    row("last", "all", {}, "pixel", {3, 2}, 24);
    row("right of last column", "all", {}, "pixel", {4, 0}, 0);
    row("left of first", "all", {}, "pixel", {-1, 0}, 0);
    row("below last row", "all", {}, "pixel", {0, 3}, 0);
    row("above first row", "all", {}, "pixel", {0, -1}, 0);
    // Shift (1,2): image (x,y) is frame (x-1, y-2); shift (-2,-1): image (0,0) is frame (2,1).
    row("shifted first", "all", {1, 2}, "pixel", {1, 2}, 1);
    row("shifted last", "all", {1, 2}, "pixel", {4, 4}, 24);
    row("shifted, frame x -1", "all", {1, 2}, "pixel", {0, 2}, 0);
    row("shifted, frame y -1", "all", {1, 2}, "pixel", {1, 1}, 0);
    row("negative shift", "all", {-2, -1}, "pixel", {0, 0}, 13);
    row("negative shift, out", "all", {-2, -1}, "pixel", {2, 0}, 0);
    // Image x INT_MIN with shift 1 would wrap to INT_MAX in int arithmetic.
    row("no wrap at INT_MIN", "all", {1, 0}, "pixel", {iMin, 0}, 0);
    row("INT_MAX", "all", {-1, 0}, "pixel", {iMax, 0}, 0);

    row("u16 truncates", "u16", {}, "set", {1, 1, 3.9}, 3);
    row("u16 negative pinned to 0", "u16", {}, "set", {1, 1, -5}, 0);
    row("u16 too large pinned", "u16", {}, "set", {0, 0, 70000}, 65535);
    row("u16 NaN is 0", "u16", {}, "set", {0, 0, qQNaN()}, 0);
    row("u32 above 16 bits", "u32", {}, "set", {3, 2, 4e9}, 4e9);
    row("u32 too large pinned", "u32", {}, "set", {3, 2, 5e9}, 4294967295.0);
    row("f32 keeps fractions", "f32", {}, "set", {2, 0, 2.5}, 2.5);
    row("f32 negative", "f32", {}, "set", {2, 0, -3.25}, -3.25);
    row("u8 too large pinned", "u8", {}, "set", {0, 0, 300}, 255);
    row("i8 truncates toward zero", "i8", {}, "set", {0, 0, -3.9}, -3);
    row("i8 too small pinned", "i8", {}, "set", {0, 0, -200}, -128);
    row("i16 negative", "i16", {}, "set", {1, 2, -30000}, -30000);
    row("i16 too large pinned", "i16", {}, "set", {1, 2, 40000}, 32767);
    row("i32 below 16 bits", "i32", {}, "set", {3, 0, -2e9}, -2e9);
    row("f64 keeps a double", "f64", {}, "set", {3, 1, 0.1}, 0.1); // a float would not
    row("set outside: nothing", "u16", {}, "set", {4, 0, 99}, 0);
    row("set outside above: nothing", "u16", {}, "set", {0, -1, 99}, 0);
    row("set shifted", "u16", {1, 0}, "set", {1, 0, 99}, 99);
    row("set shifted, outside", "u16", {1, 0}, "set", {0, 0, 99}, 0);

    // Box sums against pixel sums at random are in boxSumMatchesPixelSum; here the extremes.
    row("3x3 inside", "all", {}, "box", {1, 1, 1, 1}, 108); // 6 + 36 + 66
    row("top-left corner, rest outside", "all", {}, "box", {0, 0, -1, -1}, 26); // 1 + 2 + 11 + 12
    row("hw -1 at right edge", "all", {}, "box", {3, 2, -1, 0}, 47); // 23 + 24
    row("INT_MAX half widths", "all", {}, "box", {0, 0, iMax, iMax}, 150);
    row("INT_MIN half widths", "all", {}, "box", {2, 1, iMin, iMin}, 150);
    row("box outside", "all", {}, "box", {10, 10, 1, 1}, 0);
    // x - hw would wrap to a positive number in int arithmetic.
    row("far left, no wrap", "all", {}, "box", {iMin, 1, iMax, 0}, 0);
    // Shift (-1,0): image (2,0) is frame (3,0): 3 + 4 + 13 + 14.
    row("shifted to the right edge", "all", {-1, 0}, "box", {2, 0, 1, 1}, 34);

    row("mean 2x2", "u16", {}, "mean", {0, 0, 1, 1}, 6.5); // (1 + 2 + 11 + 12) / 4
    // Each of x, y, w, h is truncated on its own: 0.9 + 1.9 would give 2.
    row("mean fractions truncated", "u16", {}, "mean", {0.9, 0.9, 1.9, 1.9}, 6.5);
    row("mean one pixel", "u16", {}, "mean", {1, 1, 0, 0}, 12);
    // Inside: 13 + 14 + 23 + 24 = 74, divided by all 6 * 6 places.
    row("mean partly outside", "u16", {}, "mean", {2, 1, 5, 5}, 74.0 / 36.0);
    row("mean negative x truncates to zero", "u16", {}, "mean", {-1.5, 0, 1, 0}, 0.5); // (0 + 1) / 2
    row("mean shifted", "u16", {1, 0}, "mean", {1, 0, 1, 0}, 1.5);
    // A width of -1 leaves no term and a divisor of 0.
    row("mean of nothing", "u16", {}, "mean", {0, 0, -1, 0}, qQNaN());
}

void TestTiffData::access()
{
    QFETCH(QString, type);
    QFETCH(QPoint, shift);
    QFETCH(QString, op);
    QFETCH(QVector<double>, args);
    QFETCH(double, expected);

    const int x = int(args[0]), y = int(args[1]);
    const QStringList all{"u8", "i8", "u16", "i16", "u32", "i32", "f32", "f64"};
    for (const QString &t : type == "all" ? all : QStringList{type}) {
        auto f = frame(t, 4, 3, kGrid);
        QVERIFY(f);
        f->shiftX = shift.x();
        f->shiftY = shift.y();
        double got = 0;
        if (op == "pixel" || op == "set") {
            if (op == "set")
                f->setPixel(x, y, args[2]);
            got = f->pixel(x, y);
        } else if (op == "box") {
            got = f->boxSum(x, y, int(args[2]), int(args[3]));
        } else {
            got = f->rectMean(QRectF(args[0], args[1], args[2], args[3]));
        }
        QVERIFY2(got == expected || (std::isnan(got) && std::isnan(expected)),
                 qPrintable(QStringLiteral("%1: %2").arg(t).arg(got, 0, 'g', 17)));
        if (op != "set")
            continue;
        // Only the pixel set has changed: 150 less its old value plus the new.
        const int fx = x - shift.x(), fy = y - shift.y();
        const bool inside = fx >= 0 && fy >= 0 && fx < 4 && fy < 3;
        double sum = 0.0;
        for (int py = 0; py < 3; ++py)
            for (int px = 0; px < 4; ++px)
                sum += f->pixel(px + shift.x(), py + shift.y());
        QCOMPARE(sum, 150.0 - (inside ? 10 * fy + fx + 1 : 0) + got);
    }
}

// boxSum sums rows directly; it must equal adding pixel() up over the box.
void TestTiffData::boxSumMatchesPixelSum_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<int>("shiftX");
    QTest::addColumn<int>("shiftY");
    QTest::newRow("u16") << "u16" << 0 << 0;
    QTest::newRow("u32") << "u32" << 0 << 0;
    QTest::newRow("f32 shifted") << "f32" << -4 << 7;
    QTest::newRow("u16 shifted") << "u16" << 5 << -3;
    QTest::newRow("u8") << "u8" << 0 << 0;
    QTest::newRow("i8 shifted") << "i8" << 2 << 1;
    QTest::newRow("i16") << "i16" << 0 << 0;
    QTest::newRow("i32 shifted") << "i32" << -1 << -6;
    QTest::newRow("f64") << "f64" << 0 << 0;
}

void TestTiffData::boxSumMatchesPixelSum()
{
    QFETCH(QString, type);
    QFETCH(int, shiftX);
    QFETCH(int, shiftY);
    const int w = 37, h = 23;
    QRandomGenerator rng(20240611);
    QVector<quint32> values;
    for (int i = 0; i < w * h; ++i) {
        const quint32 r = rng.generate();
        // Each kind takes the bits it holds, the signed ones with their sign;
        // text images keep floats to 24 bits.
        values << (type == "u16" ? (r & 0xffff) : type == "f32" ? (r & 0xffffff) : type == "u8" ? (r & 0xff)
                   : type == "i8"  ? quint32(qint32(qint8(r)))
                   : type == "i16" ? quint32(qint32(qint16(r)))
                                   : r);
    }
    auto f = frame(type, w, h, values);
    QVERIFY(f);
    f->shiftX = shiftX;
    f->shiftY = shiftY;
    for (int i = 0; i < 300; ++i) {
        const int x = rng.bounded(-15, w + 15);
        const int y = rng.bounded(-15, h + 15);
        const int hw = rng.bounded(-12, 13);
        const int vw = rng.bounded(-12, 13);
        double naive = 0.0;
        for (int yy = y - qAbs(vw); yy <= y + qAbs(vw); ++yy)
            for (int xx = x - qAbs(hw); xx <= x + qAbs(hw); ++xx)
                naive += f->pixel(xx, yy);
        QCOMPARE(f->boxSum(x, y, hw, vw), naive);
    }
}

// The 4 x 4 frame of the mask tests, at detector offset (100, 50):
//    5  9  2  7
//    4 80  6  1
//    3  8 10 12
//   20 15 11 30
static const QVector<quint32> kMaskGrid{5, 9, 2, 7, 4, 80, 6, 1, 3, 8, 10, 12, 20, 15, 11, 30};

static QVector<quint32> withValues(QVector<quint32> grid, const QVector<QPair<int, quint32>> &changes)
{
    for (const auto &c : changes)
        grid[c.first] = c.second;
    return grid;
}

void TestTiffData::mask_data()
{
    QTest::addColumn<QString>("kind"); // "img16" and "img32" at detector offset (100, 50), "tif" at 0
    QTest::addColumn<bool>("globalInUse");
    QTest::addColumn<bool>("ownInUse");
    QTest::addColumn<QVector<QPoint>>("points"); // the frame's own, detector coordinates
    QTest::addColumn<QVector<quint32>>("expected");
    const auto row = [](const char *name, const char *kind, bool global, bool own, QVector<QPoint> points,
                        QVector<quint32> expected) {
        QTest::newRow(name) << QString(kind) << global << own << points << expected;
    };
    // Frame (1,1): (5+9+2+4+6+3+8+10) / 8 = 5.875.
    const QVector<quint32> mended = withValues(kMaskGrid, {{5, 5}});
    row("interior", "img16", false, true, {{101, 51}}, mended);
    row("interior, 32-bit", "img32", false, true, {{101, 51}}, mended);
    // (1,1) without its masked neighbour: 40 / 7; (2,1): (9+2+7+1+8+10+12) / 7 = 7.
    row("masked neighbours left out", "img16", false, true, {{101, 51}, {102, 51}}, withValues(kMaskGrid, {{5, 5}, {6, 7}}));
    // Bottom row (1,3): the neighbour below is tested on row 2, so it counts
    // as 0: (3+8+10+20+11+0) / 6 = 8.67 (a plain test would give 52/5).
    row("bottom row takes 0 from below", "img16", false, true, {{101, 53}}, withValues(kMaskGrid, {{13, 8}}));
    // Top row (2,0): the neighbour below is tested on row -1 and left out:
    // (9+7+80+1) / 4 = 24.25 (a plain test would give 103/5).
    row("top row loses its neighbour below", "img16", false, true, {{102, 50}}, withValues(kMaskGrid, {{2, 24}}));
    row("corner", "img16", false, true, {{100, 50}}, withValues(kMaskGrid, {{0, 44}})); // (9 + 80) / 2
    row("points outside the frame skipped", "img16", false, true, {{99, 51}, {104, 50}, {101, 54}, {101, 49}, {-5, -5}},
        kMaskGrid);
    QVector<QPoint> all;
    for (int i = 0; i < 16; ++i)
        all << QPoint(100 + i % 4, 50 + i / 4);
    row("no good neighbours gives 0", "img16", false, true, all, QVector<quint32>(16, 0));
    // A TIFF is mended when the program's mask is in use, an .img when its
    // own is; either way with the frame's own points.
    row("tiff, global on", "tif", true, false, {{1, 1}}, mended);
    row("tiff, own on", "tif", false, true, {{1, 1}}, kMaskGrid);
    row("img, global on", "img16", true, false, {{101, 51}}, kMaskGrid);
}

void TestTiffData::mask()
{
    QFETCH(QString, kind);
    QFETCH(bool, globalInUse);
    QFETCH(bool, ownInUse);
    QFETCH(QVector<QPoint>, points);
    QFETCH(QVector<quint32>, expected);

    const int bytes = kind == "img32" ? 4 : 2;
    const QString file = m_dir.filePath(kind == "tif" ? "mask.tif" : "mask.img");
    const QVector<quint16> px(kMaskGrid.cbegin(), kMaskGrid.cend());
    QVERIFY(kind == "tif" ? writeTiff16(file, 4, 4, px.constData())
                          : writeFile(file, imgFile(4, 4, 100, 50, "BytesPerPixel=" + QByteArray::number(bytes),
                                                    kMaskGrid, bytes)));
    ErrPoints own;
    own.points = points;
    own.inUse = ownInUse;
    gErrPoints.inUse = globalInUse;
    gErrPoints.points = {{2, 2}, {102, 52}}; // never used: the frame's own points are
    TiffData f;
    const bool ok = f.read(file, &own);
    gErrPoints = ErrPoints();
    QVERIFY(ok);
    QVector<quint32> got;
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 4; ++x)
            got << quint32(f.pixel(x, y));
    QCOMPARE(got, expected);
}

void TestTiffData::interpolatedBoxSum_data()
{
    QTest::addColumn<QVector<double>>("energies");
    QTest::addColumn<QVector<quint32>>("sums");
    QTest::addColumn<double>("e");
    QTest::addColumn<double>("expected");
    const QVector<double> E{100, 200, 300, 400};
    const QVector<quint32> S{1, 2, 4, 8};
    QTest::newRow("empty list") << QVector<double>{} << QVector<quint32>{} << 123.0 << 1.0;
    QTest::newRow("one frame, any energy") << QVector<double>{100} << QVector<quint32>{7} << 5000.0 << 7.0;
    // 1 + (50-100) * (2-1) / 100: extrapolated, not clamped
    QTest::newRow("below") << E << S << 50.0 << 0.5;
    QTest::newRow("at first") << E << S << 100.0 << 1.0;
    // bisection settles on frames 300 and 400
    QTest::newRow("on an inner frame") << E << S << 300.0 << 4.0;
    QTest::newRow("between last two") << E << S << 350.0 << 6.0;
    QTest::newRow("at last") << E << S << 400.0 << 8.0;
    // 4 + (500-300) * 4 / 100
    QTest::newRow("above") << E << S << 500.0 << 12.0;
    // equal energies give the mean of the two sums, wherever e lies
    QTest::newRow("equal energies, below") << QVector<double>{100, 100} << QVector<quint32>{1, 3} << 50.0 << 2.0;
    QTest::newRow("equal energies, above") << QVector<double>{100, 100} << QVector<quint32>{1, 3} << 150.0 << 2.0;
    // with a repeated energy the bisection takes the later frame: (200,4),(300,8)
    QTest::newRow("repeated energy") << QVector<double>{100, 200, 200, 300} << S << 200.0 << 4.0;
    // just below it: frames (100,1) and (200,2)
    QTest::newRow("below repeated energy") << QVector<double>{100, 200, 200, 300} << S << 199.0 << 1.99;
    const QVector<double> E5{1, 2, 3, 4, 5};
    const QVector<quint32> S5{1, 4, 9, 16, 25};
    QTest::newRow("five frames, 3.5") << E5 << S5 << 3.5 << 12.5;
}

void TestTiffData::interpolatedBoxSum()
{
    QFETCH(QVector<double>, energies);
    QFETCH(QVector<quint32>, sums);
    QFETCH(double, e);
    QFETCH(double, expected);
    // 2x1 frames holding the sum in their left pixel and 0 on the right;
    // the box (0,0) +- 3 covers both and much outside.
    std::vector<std::unique_ptr<TiffData>> owned;
    QVector<TiffData *> frames;
    for (int i = 0; i < energies.size(); ++i) {
        owned.push_back(frame("u16", 2, 1, {sums.at(i), 0}));
        QVERIFY(owned.back());
        owned.back()->energy = energies.at(i);
        frames << owned.back().get();
    }
    const double got = TiffData::interpolatedBoxSum(frames, e, 0, 0, 3, -3);
    QVERIFY2(qAbs(got - expected) < 1e-12, qPrintable(QString::number(got, 'g', 17)));
}

QTEST_GUILESS_MAIN(TestTiffData)
#include "tst_tiffdata.moc"
