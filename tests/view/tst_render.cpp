#include "app/Globals.h"
#include "images/TiffData.h"
#include "view/ColorScale.h"

#include <QImage>
#include <QtTest>

#include <cmath>
#include <limits>
#include <memory>

// A frame's display image: every pixel through the frame's range, the colour
// bar's ends and the map of the frame's format, rows padded to four bytes.
// Expected buffers are worked out here pixel by pixel with the plain
// formulas; the large frames take the renderer's table path, the small ones
// its direct path.
class TestRender : public QObject
{
    Q_OBJECT
private slots:
    void render_data();
    void render();
    void noImage_data();
    void noImage();
};

namespace {

const double NaN = std::numeric_limits<double>::quiet_NaN();

struct Frame {
    QString type; // u16, u32, f32
    int w = 0;
    int h = 0;
    QVector<double> values; // row by row
};

template <typename T>
void addRows(TiffData &d, const Frame &f)
{
    for (int y = 0; y < f.h; ++y) {
        auto *row = new T[std::size_t(f.w)];
        for (int x = 0; x < f.w; ++x)
            row[x] = T(f.values[y * f.w + x]);
        d.rows.append(row);
    }
}

std::unique_ptr<TiffData> makeFrame(const Frame &f)
{
    auto d = std::make_unique<TiffData>();
    d->width = quint32(f.w);
    d->height = quint32(f.h);
    d->pixelType = f.type == "u16" ? PixelU16 : f.type == "u32" ? PixelU32 : PixelF32;
    if (d->pixelType == PixelU16)
        addRows<quint16>(*d, f);
    else if (d->pixelType == PixelU32)
        addRows<quint32>(*d, f);
    else
        addRows<float>(*d, f);
    d->min = *std::min_element(f.values.cbegin(), f.values.cend());
    d->max = *std::max_element(f.values.cbegin(), f.values.cend());
    return d;
}

// Values spread over lo..lo+span by a multiplicative hash: every part of the
// range and its ends turn up.
Frame hashed(const QString &type, int w, int h, double lo, double span)
{
    Frame f{type, w, h, {}};
    f.values.reserve(qsizetype(w) * h);
    for (quint32 i = 0; i < quint32(w * h); ++i)
        f.values << lo + std::floor(double((i * 2654435761u) >> 8) / double(1u << 24) * (span + 1));
    return f;
}

QByteArray bytes(std::initializer_list<int> v)
{
    QByteArray b;
    for (int x : v)
        b.append(char(x));
    return b;
}

// The whole buffer as it should be.
QByteArray expected(const Frame &f, double min, double max, int sx, int sy, double lo, double hi, int format)
{
    const int bpp = format == 13 ? 3 : 1;
    const int stride = (f.w * bpp + 3) / 4 * 4;
    QByteArray out(qsizetype(stride) * f.h, '\0');
    for (int y = 0; y < f.h; ++y) {
        for (int x = 0; x < f.w; ++x) {
            const int fx = x - sx;
            const int fy = y - sy;
            double v = 0.0;
            if (fx >= 0 && fy >= 0 && fx < f.w && fy < f.h)
                v = f.values[fy * f.w + fx];
            if (f.type == "f32")
                v = double(float(v));
            const double t = (v - min) / (max - min);
            double u = (t - lo) / (hi - lo);
            if (std::isnan(u) || u < 0)
                u = 0;
            if (u > 1)
                u = 1;
            char *px = out.data() + y * stride + x * bpp;
            if (bpp == 1) {
                px[0] = char(std::min(255, int(u * 256)));
            } else {
                const int k = std::min(766, int(u * 766));
                px[0] = char(std::min(k, 255));
                px[1] = char(k <= 255 ? 0 : std::min(k - 255, 255));
                px[2] = char(k <= 510 ? 0 : std::min(k - 510, 255));
            }
        }
    }
    return out;
}

} // namespace

Q_DECLARE_METATYPE(Frame)

void TestRender::render_data()
{
    QTest::addColumn<Frame>("frame");
    QTest::addColumn<double>("min"); // NaN: the frame's own extremes
    QTest::addColumn<double>("max");
    QTest::addColumn<int>("shiftX");
    QTest::addColumn<int>("shiftY");
    QTest::addColumn<bool>("bar"); // false: no gColorBar, the full scale
    QTest::addColumn<double>("lo");
    QTest::addColumn<double>("hi");
    QTest::addColumn<int>("format");
    QTest::addColumn<QByteArray>("hand"); // worked out by hand; empty: computed

    const Frame three{"u16", 3, 1, {0, 500, 1000}};
    // t = 0, 0.5, 1: grey 0, 128, 255 and one byte of padding.
    QTest::newRow("grey by hand") << three << NaN << NaN << 0 << 0 << true << 0.0 << 1.0 << 24
                                  << bytes({0, 128, 255, 0});
    // RGB 0, 383 = (255, 128, 0), 766 = white; 9 bytes padded to 12.
    QTest::newRow("rgb by hand") << three << NaN << NaN << 0 << 0 << true << 0.0 << 1.0 << 13
                                 << bytes({0, 0, 0, 255, 128, 0, 255, 255, 255, 0, 0, 0});
    // Shifted one right: image column 0 reads 0, the frame's last pixel
    // leaves the image.
    QTest::newRow("shift by hand") << three << NaN << NaN << 1 << 0 << true << 0.0 << 1.0 << 24
                                   << bytes({0, 0, 128, 0});
    // Ends 0.25..0.75: t 0.5 stays 128, t 0 and 1 are clamped.
    QTest::newRow("ends by hand") << Frame{"u16", 4, 1, {0, 250, 500, 1000}} << NaN << NaN << 0 << 0 << true << 0.25
                                  << 0.75 << 24 << bytes({0, 0, 128, 255});

    const Frame small16 = hashed("u16", 5, 3, 100, 900);
    const Frame small32 = hashed("u32", 7, 2, 70000, 5000);
    const Frame smallF = hashed("f32", 6, 3, 0, 3);
    QTest::newRow("u16 grey ends") << small16 << NaN << NaN << 0 << 0 << true << 0.2 << 0.7 << 24 << QByteArray();
    QTest::newRow("u32 rgb") << small32 << NaN << NaN << 0 << 0 << true << 0.0 << 1.0 << 13 << QByteArray();
    QTest::newRow("f32 rgb ends") << smallF << NaN << NaN << 0 << 0 << true << 0.1 << 0.6 << 13 << QByteArray();
    QTest::newRow("no colour bar") << small16 << NaN << NaN << 0 << 0 << false << 0.4 << 0.5 << 13 << QByteArray();
    QTest::newRow("shift up left") << small16 << NaN << NaN << -2 << -1 << true << 0.8 << 0.3 << 24 << QByteArray();
    QTest::newRow("shift down right") << smallF << NaN << NaN << 3 << 2 << true << 0.0 << 1.0 << 13 << QByteArray();
    QTest::newRow("shifted out") << small16 << NaN << NaN << 9 << 0 << true << 0.0 << 1.0 << 13 << QByteArray();
    // max = min: t is NaN in the frame and -inf where 0 shows.
    QTest::newRow("flat") << Frame{"u16", 3, 2, {300, 300, 300, 300, 300, 300}} << NaN << NaN << 1 << 0 << true
                          << 0.0 << 1.0 << 13 << QByteArray();

    // Large enough for the table; the second declares a narrower range than
    // its pixels have (as after mending), so that values outside the table
    // take the direct road.
    const Frame big16 = hashed("u16", 301, 300, 0, 65535);
    QTest::newRow("u16 table grey") << big16 << NaN << NaN << 0 << 0 << true << 0.1 << 0.9 << 24 << QByteArray();
    QTest::newRow("u16 table rgb narrow") << big16 << 20000.0 << 30000.0 << 0 << 0 << true << 0.0 << 1.0 << 13
                                          << QByteArray();
    QTest::newRow("u16 table shifted") << big16 << NaN << NaN << -7 << 5 << true << 0.0 << 1.0 << 13 << QByteArray();
    const Frame big32 = hashed("u32", 259, 260, 1000000, 50000);
    QTest::newRow("u32 table rgb") << big32 << NaN << NaN << 0 << 0 << true << 0.3 << 0.8 << 13 << QByteArray();
}

void TestRender::render()
{
    QFETCH(Frame, frame);
    QFETCH(double, min);
    QFETCH(double, max);
    QFETCH(int, shiftX);
    QFETCH(int, shiftY);
    QFETCH(bool, bar);
    QFETCH(double, lo);
    QFETCH(double, hi);
    QFETCH(int, format);
    QFETCH(QByteArray, hand);

    auto f = makeFrame(frame);
    if (!std::isnan(min)) {
        f->min = min;
        f->max = max;
    }
    f->shiftX = shiftX;
    f->shiftY = shiftY;
    f->imgFormat = format;
    ColorScale scale;
    scale.setEnds(lo, hi);
    gColorBar = bar ? &scale : nullptr;
    f->render();
    gColorBar = nullptr;

    const QByteArray want = hand.isEmpty()
        ? expected(frame, f->min, f->max, shiftX, shiftY, bar ? lo : 0.0, bar ? hi : 1.0, format)
        : hand;
    QCOMPARE(f->imageBytes.size(), want.size());
    for (qsizetype i = 0; i < want.size(); ++i) {
        if (f->imageBytes[i] != want[i])
            QFAIL(qPrintable(QStringLiteral("byte %1: %2, expected %3")
                                 .arg(i)
                                 .arg(quint8(f->imageBytes[i]))
                                 .arg(quint8(want[i]))));
    }

    QVERIFY(f->image);
    QCOMPARE(f->image->format(), QImage::Format(format));
    QCOMPARE(f->image->width(), frame.w);
    QCOMPARE(f->image->height(), frame.h);
    QCOMPARE(f->image->bytesPerLine(), want.size() / frame.h);
    QCOMPARE(static_cast<const void *>(f->image->constBits()), static_cast<const void *>(f->imageBytes.constData()));
}

void TestRender::noImage_data()
{
    QTest::addColumn<int>("w");
    QTest::addColumn<int>("h");
    QTest::addColumn<int>("format");
    QTest::newRow("empty") << 0 << 3 << 24;
    // 4 bytes a pixel would run past a buffer made for one or three.
    QTest::newRow("format without a map") << 3 << 3 << int(QImage::Format_RGB32);
}

// Whatever the frame had before is dropped, and nothing new is made.
void TestRender::noImage()
{
    QFETCH(int, w);
    QFETCH(int, h);
    QFETCH(int, format);
    auto f = makeFrame(hashed("u16", 3, 3, 0, 10));
    f->render();
    QVERIFY(f->image);
    f->imgFormat = format;
    if (w == 0 || h == 0) {
        // Keep the rows for the destructor; only the size says "empty".
        f->width = quint32(w);
        f->height = quint32(h);
        f->render();
        f->width = 3;
        f->height = 3;
    } else {
        f->render();
    }
    QVERIFY(!f->image);
    QVERIFY(f->imageBytes.isNull());
}

QTEST_GUILESS_MAIN(TestRender)
#include "tst_render.moc"
