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
    void pixel_data();
    void pixel();
    void setPixel_data();
    void setPixel();
    void boxSum_data();
    void boxSum();
    void boxSumMatchesPixelSum_data();
    void boxSumMatchesPixelSum();
    void rectMean_data();
    void rectMean();
    void mask_data();
    void mask();
    void maskFlag_data();
    void maskFlag();
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
// from a text image.
std::unique_ptr<TiffData> TestTiffData::frame(const QString &type, int w, int h, const QVector<quint32> &values)
{
    const QString file = m_dir.filePath(QStringLiteral("f%1").arg(++m_files));
    if (type == QLatin1String("f32")) {
        QVector<double> d;
        for (quint32 v : values)
            d << double(v);
        return frameFromText(file, w, h, d);
    }
    return frameFromImg(file, w, h, values, type == QLatin1String("u32") ? 4 : 2);
}

// The 4 x 3 frame most tests use: value 10*y + x + 1.
//    1  2  3  4
//   11 12 13 14
//   21 22 23 24
static const QVector<quint32> kGrid{1, 2, 3, 4, 11, 12, 13, 14, 21, 22, 23, 24};

void TestTiffData::pixel_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<int>("shiftX");
    QTest::addColumn<int>("shiftY");
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("y");
    QTest::addColumn<double>("expected");
    for (const QString type : {"u16", "u32", "f32"}) {
        auto row = [&type](const char *name) -> QTestData & {
            return QTest::newRow(qPrintable(type + ' ' + name)) << type;
        };
        row("first") << 0 << 0 << 0 << 0 << 1.0;
        row("last") << 0 << 0 << 3 << 2 << 24.0;
        row("right of last column") << 0 << 0 << 4 << 0 << 0.0;
        row("left of first") << 0 << 0 << -1 << 0 << 0.0;
        row("below last row") << 0 << 0 << 0 << 3 << 0.0;
        row("above first row") << 0 << 0 << 0 << -1 << 0.0;
        // shift (1,2): image (x,y) is frame (x-1, y-2)
        row("shifted first") << 1 << 2 << 1 << 2 << 1.0;
        row("shifted last") << 1 << 2 << 4 << 4 << 24.0;
        row("shifted, frame x -1") << 1 << 2 << 0 << 2 << 0.0;
        row("shifted, frame y -1") << 1 << 2 << 1 << 1 << 0.0;
        // shift (-2,-1): image (0,0) is frame (2,1)
        row("negative shift") << -2 << -1 << 0 << 0 << 13.0;
        row("negative shift, out") << -2 << -1 << 2 << 0 << 0.0;
        // image x INT_MIN with shift 1 would wrap to INT_MAX in int arithmetic
        row("no wrap at INT_MIN") << 1 << 0 << INT_MIN << 0 << 0.0;
        row("INT_MAX") << -1 << 0 << INT_MAX << 0 << 0.0;
    }
}

void TestTiffData::pixel()
{
    QFETCH(QString, type);
    QFETCH(int, shiftX);
    QFETCH(int, shiftY);
    QFETCH(int, x);
    QFETCH(int, y);
    QFETCH(double, expected);
    auto f = frame(type, 4, 3, kGrid);
    QVERIFY(f);
    f->shiftX = shiftX;
    f->shiftY = shiftY;
    QCOMPARE(f->pixel(x, y), expected);
}

void TestTiffData::setPixel_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<int>("shiftX");
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("y");
    QTest::addColumn<double>("value");
    QTest::addColumn<double>("stored"); // what pixel(x, y) gives afterwards
    QTest::addColumn<double>("total");  // sum of the whole frame afterwards (150 before)
    QTest::newRow("u16 truncates") << "u16" << 0 << 1 << 1 << 3.9 << 3.0 << 150.0 - 12 + 3;
    QTest::newRow("u16 negative pinned to 0") << "u16" << 0 << 1 << 1 << -5.0 << 0.0 << 150.0 - 12;
    QTest::newRow("u16 too large pinned") << "u16" << 0 << 0 << 0 << 70000.0 << 65535.0 << 150.0 - 1 + 65535;
    QTest::newRow("u16 NaN is 0") << "u16" << 0 << 0 << 0 << qQNaN() << 0.0 << 149.0;
    QTest::newRow("u32 above 16 bits") << "u32" << 0 << 3 << 2 << 4e9 << 4e9 << 150.0 - 24 + 4e9;
    QTest::newRow("u32 too large pinned") << "u32" << 0 << 3 << 2 << 5e9 << 4294967295.0 << 150.0 - 24 + 4294967295.0;
    QTest::newRow("f32 keeps fractions") << "f32" << 0 << 2 << 0 << 2.5 << 2.5 << 150.0 - 3 + 2.5;
    QTest::newRow("f32 negative") << "f32" << 0 << 2 << 0 << -3.25 << -3.25 << 150.0 - 3 - 3.25;
    QTest::newRow("outside: nothing") << "u16" << 0 << 4 << 0 << 99.0 << 0.0 << 150.0;
    QTest::newRow("outside above: nothing") << "u16" << 0 << 0 << -1 << 99.0 << 0.0 << 150.0;
    // with shift 1 image (1,0) is frame (0,0), and image (0,0) is outside
    QTest::newRow("shifted") << "u16" << 1 << 1 << 0 << 99.0 << 99.0 << 150.0 - 1 + 99;
    QTest::newRow("shifted, outside") << "u16" << 1 << 0 << 0 << 99.0 << 0.0 << 150.0;
}

void TestTiffData::setPixel()
{
    QFETCH(QString, type);
    QFETCH(int, shiftX);
    QFETCH(int, x);
    QFETCH(int, y);
    QFETCH(double, value);
    QFETCH(double, stored);
    QFETCH(double, total);
    auto f = frame(type, 4, 3, kGrid);
    QVERIFY(f);
    f->shiftX = shiftX;
    f->setPixel(x, y, value);
    QCOMPARE(f->pixel(x, y), stored);
    double sum = 0.0;
    for (int fy = 0; fy < 3; ++fy)
        for (int fx = 0; fx < 4; ++fx)
            sum += f->pixel(fx + shiftX, fy);
    QCOMPARE(sum, total);
}

void TestTiffData::boxSum_data()
{
    QTest::addColumn<int>("shiftX");
    QTest::addColumn<int>("shiftY");
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("y");
    QTest::addColumn<int>("hw");
    QTest::addColumn<int>("vw");
    QTest::addColumn<double>("expected");
    // (1+2+3) + (11+12+13) + (21+22+23)
    QTest::newRow("3x3 inside") << 0 << 0 << 1 << 1 << 1 << 1 << 108.0;
    QTest::newRow("single pixel") << 0 << 0 << 2 << 1 << 0 << 0 << 13.0;
    // 1 + 2 + 11 + 12: the rest of the box lies outside
    QTest::newRow("top-left corner") << 0 << 0 << 0 << 0 << 1 << 1 << 26.0;
    QTest::newRow("negative half widths") << 0 << 0 << 0 << 0 << -1 << -1 << 26.0;
    // 23 + 24, column 4 is outside
    QTest::newRow("hw -1 at right edge") << 0 << 0 << 3 << 2 << -1 << 0 << 47.0;
    // 4 + 14 + 24
    QTest::newRow("column strip") << 0 << 0 << 3 << 0 << 0 << 5 << 42.0;
    QTest::newRow("covers the frame") << 0 << 0 << 0 << 0 << 1000 << 1000 << 150.0;
    QTest::newRow("INT_MAX half widths") << 0 << 0 << 0 << 0 << INT_MAX << INT_MAX << 150.0;
    QTest::newRow("INT_MIN half widths") << 0 << 0 << 2 << 1 << INT_MIN << INT_MIN << 150.0;
    QTest::newRow("outside") << 0 << 0 << 10 << 10 << 1 << 1 << 0.0;
    // x - hw would wrap to a positive number in int arithmetic
    QTest::newRow("far left, no wrap") << 0 << 0 << INT_MIN << 1 << INT_MAX << 0 << 0.0;
    // shift (1,2): image (2,3) is frame (1,1)
    QTest::newRow("shifted 3x3") << 1 << 2 << 2 << 3 << 1 << 1 << 108.0;
    // shift (-1,0): image (2,0) is frame (3,0): 3 + 4 + 13 + 14
    QTest::newRow("shifted to the right edge") << -1 << 0 << 2 << 0 << 1 << 1 << 34.0;
}

void TestTiffData::boxSum()
{
    QFETCH(int, shiftX);
    QFETCH(int, shiftY);
    QFETCH(int, x);
    QFETCH(int, y);
    QFETCH(int, hw);
    QFETCH(int, vw);
    QFETCH(double, expected);
    for (const QString type : {"u16", "u32", "f32"}) {
        auto f = frame(type, 4, 3, kGrid);
        QVERIFY(f);
        f->shiftX = shiftX;
        f->shiftY = shiftY;
        QCOMPARE(f->boxSum(x, y, hw, vw), expected);
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
    QTest::newRow("f32") << "f32" << 0 << 0;
    QTest::newRow("u16 shifted") << "u16" << 5 << -3;
    QTest::newRow("f32 shifted") << "f32" << -4 << 7;
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
        // u16 takes the low 16 bits; text images keep floats to 24 bits
        values << (type == "u16" ? (r & 0xffff) : type == "f32" ? (r & 0xffffff) : r);
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

void TestTiffData::rectMean_data()
{
    QTest::addColumn<int>("shiftX");
    QTest::addColumn<QRectF>("rect");
    QTest::addColumn<double>("expected");
    // (1 + 2 + 11 + 12) / 4
    QTest::newRow("2x2") << 0 << QRectF(0, 0, 1, 1) << 6.5;
    // each of x, y, w, h is truncated on its own: 0.9 + 1.9 would give 2
    QTest::newRow("fractions truncated") << 0 << QRectF(0.9, 0.9, 1.9, 1.9) << 6.5;
    QTest::newRow("one pixel") << 0 << QRectF(1, 1, 0, 0) << 12.0;
    // inside: 13 + 14 + 23 + 24 = 74, divided by all 6 * 6 places
    QTest::newRow("partly outside") << 0 << QRectF(2, 1, 5, 5) << 74.0 / 36.0;
    // x -1.5 truncates toward zero to -1: (0 + 1) / 2
    QTest::newRow("negative x truncates to zero") << 0 << QRectF(-1.5, 0, 1, 0) << 0.5;
    // shift 1: image (1,0)..(2,0) is frame (0,0)..(1,0)
    QTest::newRow("shifted") << 1 << QRectF(1, 0, 1, 0) << 1.5;
}

void TestTiffData::rectMean()
{
    QFETCH(int, shiftX);
    QFETCH(QRectF, rect);
    QFETCH(double, expected);
    auto f = frame("u16", 4, 3, kGrid);
    QVERIFY(f);
    f->shiftX = shiftX;
    QCOMPARE(f->rectMean(rect), expected);
    // a width of -1 leaves no term and a divisor of 0
    QVERIFY(std::isnan(f->rectMean(QRectF(0, 0, -1, 0))));
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
    QTest::addColumn<QString>("type");
    QTest::addColumn<QVector<QPoint>>("points"); // detector coordinates
    QTest::addColumn<QVector<quint32>>("expected");
    // frame (1,1): (5+9+2+4+6+3+8+10) / 8 = 5.875
    QTest::newRow("interior") << "u16" << QVector<QPoint>{{101, 51}} << withValues(kMaskGrid, {{5, 5}});
    QTest::newRow("interior, 32-bit") << "u32" << QVector<QPoint>{{101, 51}} << withValues(kMaskGrid, {{5, 5}});
    // (1,1) without its masked neighbour: (5+9+2+4+3+8+10) / 7 = 5.857;
    // (2,1): (9+2+7+1+8+10+12) / 7 = 7
    QTest::newRow("masked neighbours left out") << "u16" << QVector<QPoint>{{101, 51}, {102, 51}}
                                                << withValues(kMaskGrid, {{5, 5}, {6, 7}});
    // bottom row (1,3): the neighbour below is tested on row 2, so it counts
    // as 0: (3+8+10+20+11+0) / 6 = 8.67 (a plain test would give 52/5)
    QTest::newRow("bottom row takes 0 from below") << "u16" << QVector<QPoint>{{101, 53}}
                                                   << withValues(kMaskGrid, {{13, 8}});
    // top row (2,0): the neighbour below is tested on row -1 and left out:
    // (9+7+80+1) / 4 = 24.25 (a plain test would give 103/5)
    QTest::newRow("top row loses its neighbour below") << "u16" << QVector<QPoint>{{102, 50}}
                                                       << withValues(kMaskGrid, {{2, 24}});
    // corner (0,0): 9 and 80 only: 44.5
    QTest::newRow("corner") << "u16" << QVector<QPoint>{{100, 50}} << withValues(kMaskGrid, {{0, 44}});
    // on other parts of the detector: left of, right of and below the frame
    QTest::newRow("points outside the frame skipped")
        << "u16" << QVector<QPoint>{{99, 51}, {104, 50}, {101, 54}, {101, 49}, {-5, -5}} << kMaskGrid;
    // nothing good around: every pixel becomes 0
    QVector<QPoint> all;
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 4; ++x)
            all << QPoint(100 + x, 50 + y);
    QTest::newRow("no good neighbours gives 0") << "u16" << all << QVector<quint32>(16, 0);
}

void TestTiffData::mask()
{
    QFETCH(QString, type);
    QFETCH(QVector<QPoint>, points);
    QFETCH(QVector<quint32>, expected);
    const int bytes = type == "u32" ? 4 : 2;
    const QString file = m_dir.filePath("mask.img");
    QVERIFY(writeFile(file, imgFile(4, 4, 100, 50, "BytesPerPixel=" + QByteArray::number(bytes), kMaskGrid, bytes)));
    ErrPoints mask;
    mask.points = points;
    mask.inUse = true;
    TiffData f;
    QVERIFY(f.read(file, &mask));
    QVector<quint32> got;
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 4; ++x)
            got << quint32(f.pixel(x, y));
    QCOMPARE(got, expected);
}

// A TIFF is mended when the program's mask is in use, an .img when its own
// is; either way with the frame's own points.
void TestTiffData::maskFlag_data()
{
    QTest::addColumn<bool>("tiff");
    QTest::addColumn<bool>("globalInUse");
    QTest::addColumn<bool>("ownInUse");
    QTest::addColumn<double>("value"); // at (1,1): 80, or 5 when mended
    QTest::newRow("tiff, global on") << true << true << false << 5.0;
    QTest::newRow("tiff, own on") << true << false << true << 80.0;
    QTest::newRow("img, global on") << false << true << false << 80.0;
    QTest::newRow("img, own on") << false << false << true << 5.0;
}

void TestTiffData::maskFlag()
{
    QFETCH(bool, tiff);
    QFETCH(bool, globalInUse);
    QFETCH(bool, ownInUse);
    QFETCH(double, value);
    const QString file = m_dir.filePath(tiff ? "flag.tif" : "flag.img");
    if (tiff) {
        QVector<quint16> px(kMaskGrid.cbegin(), kMaskGrid.cend());
        QVERIFY(writeTiff16(file, 4, 4, px.constData()));
    } else {
        QVERIFY(writeFile(file, imgFile(4, 4, 0, 0, "", kMaskGrid, 2)));
    }
    ErrPoints own;
    own.points = {{1, 1}};
    own.inUse = ownInUse;
    gErrPoints.inUse = globalInUse;
    gErrPoints.points = {{2, 2}}; // never used: the frame's own points are
    TiffData f;
    const bool ok = f.read(file, &own);
    gErrPoints = ErrPoints();
    QVERIFY(ok);
    QCOMPARE(f.pixel(1, 1), value);
    QCOMPARE(f.pixel(2, 2), 10.0);
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
    QTest::newRow("between first two") << E << S << 150.0 << 1.5;
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
    QTest::newRow("five frames, 4.5") << E5 << S5 << 4.5 << 20.5;
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
