#include "app/Globals.h"
#include "images/TiffData.h"
#include "view/ColorScale.h"

#include <QImage>
#include <QtTest>

#include <cmath>
#include <memory>

// A frame's display image: every pixel through the frame's range, the colour
// bar's ends and the map of the frame's format, rows padded to four bytes.
// Large frames take the renderer's table path, small ones its direct path.
class TestRender : public QObject
{
    Q_OBJECT
private slots:
    void render_data();
    void render();
};

namespace {

const double NaN = qQNaN();

struct Frame {
    QString type; // u8, i8, u16, i16, u32, i32, f32, f64
    int w = 0, h = 0;
    QVector<double> values; // row by row
};

std::unique_ptr<TiffData> makeFrame(const Frame &f)
{
    static const QHash<QString, int> types{{"u8", PixelU8},   {"i8", PixelI8},   {"u16", PixelU16},
                                           {"i16", PixelI16}, {"u32", PixelU32}, {"i32", PixelI32},
                                           {"f32", PixelF32}, {"f64", PixelF64}};
    auto d = std::make_unique<TiffData>();
    std::tie(d->width, d->height) = std::make_pair(quint32(f.w), quint32(f.h));
    if (f.values.isEmpty() || !d->allocate(quint32(f.w), quint32(f.h), types.value(f.type)))
        return d; // no pixels
    for (int i = 0; i < f.w * f.h; ++i)
        d->setPixel(i % f.w, i / f.w, f.values[i]);
    d->min = *std::min_element(f.values.cbegin(), f.values.cend());
    d->max = *std::max_element(f.values.cbegin(), f.values.cend());
    return d;
}

// Values over lo..lo+span by a multiplicative hash: the whole range turns up.
Frame hashed(const QString &type, int w, int h, double lo, double span)
{
    Frame f{type, w, h, {}};
    f.values.reserve(qsizetype(w) * h);
    for (quint32 i = 0; i < quint32(w * h); ++i)
        f.values << lo + std::floor(double((i * 2654435761u) >> 8) / double(1u << 24) * (span + 1));
    return f;
}

// The whole buffer as it should be; empty where no image can be made.
QByteArray expected(const Frame &f, double min, double max, QPoint s, double lo, double hi, int format)
{
    if (f.w == 0 || (format != 13 && format != 24))
        return {};
    const int bpp = format == 13 ? 3 : 1, stride = (f.w * bpp + 3) / 4 * 4;
    QByteArray out(qsizetype(stride) * f.h, '\0');
    for (int y = 0; y < f.h; ++y) {
        for (int x = 0; x < f.w; ++x) {
            const int fx = x - s.x(), fy = y - s.y();
            double v = 0.0;
            if (fx >= 0 && fy >= 0 && fx < f.w && fy < f.h)
                v = f.values[fy * f.w + fx];
            if (f.type == "f32")
                v = double(float(v));
            double u = ((v - min) / (max - min) - lo) / (hi - lo);
            u = std::isnan(u) || u < 0 ? 0 : std::min(u, 1.0);
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
    QTest::addColumn<QPointF>("range"); // NaN: the frame's own extremes
    QTest::addColumn<QPoint>("shift");
    QTest::addColumn<QPointF>("ends"); // NaN: no gColorBar, the full scale
    QTest::addColumn<int>("format");
    QTest::addColumn<QByteArray>("hand"); // worked out by hand; empty: computed

    const QPointF own(NaN, NaN), full(0, 1);
    const Frame three{"u16", 3, 1, {0, 500, 1000}};
    // t = 0, 0.5, 1: grey 0, 128, 255 and one byte of padding.
    QTest::newRow("grey by hand") << three << own << QPoint() << full << 24 << QByteArray::fromHex("0080ff00");
    // RGB 0, 383 = (255, 128, 0), 766 = white; 9 bytes padded to 12.
    QTest::newRow("rgb by hand") << three << own << QPoint() << full << 13
                                 << QByteArray::fromHex("000000 ff8000 ffffff 000000");
    // Column 0 reads 0, the frame's last pixel leaves the image.
    QTest::newRow("shift by hand") << three << own << QPoint(1, 0) << full << 24 << QByteArray::fromHex("00008000");
    // Ends 0.25..0.75: t 0.5 stays 128, t 0 and 1 are clamped.
    QTest::newRow("ends by hand") << Frame{"u16", 4, 1, {0, 250, 500, 1000}} << own << QPoint() << QPointF(0.25, 0.75)
                                  << 24 << QByteArray::fromHex("000080ff");

    const Frame small16 = hashed("u16", 5, 3, 100, 900);
    QTest::newRow("u32 rgb") << hashed("u32", 7, 2, 70000, 5000) << own << QPoint() << full << 13 << QByteArray();
    QTest::newRow("f32 rgb ends shifted") << hashed("f32", 6, 3, 0, 3) << own << QPoint(3, 2) << QPointF(0.1, 0.6)
                                          << 13 << QByteArray();
    QTest::newRow("no colour bar") << small16 << own << QPoint() << own << 13 << QByteArray();
    // Ends given high..low are used as they stand.
    QTest::newRow("shift up left") << small16 << own << QPoint(-2, -1) << QPointF(0.8, 0.3) << 24 << QByteArray();
    QTest::newRow("shifted out") << small16 << own << QPoint(9, 0) << full << 13 << QByteArray();
    // max = min: t is NaN in the frame and -inf where 0 shows.
    QTest::newRow("flat") << hashed("u16", 3, 2, 300, 0) << own << QPoint(1, 0) << full << 13 << QByteArray();

    // A range narrower than the pixels (as after mending): outliers skip the table.
    const Frame big16 = hashed("u16", 301, 300, 0, 65535);
    QTest::newRow("u16 table grey") << big16 << own << QPoint() << QPointF(0.1, 0.9) << 24 << QByteArray();
    QTest::newRow("u16 table rgb narrow") << big16 << QPointF(20000, 30000) << QPoint() << full << 13 << QByteArray();
    QTest::newRow("u32 table rgb") << hashed("u32", 259, 260, 1000000, 50000) << own << QPoint() << QPointF(0.3, 0.8)
                                   << 13 << QByteArray();

    // Each kind of an HDF5 stack; signed ones over a range through 0.
    QTest::newRow("u8 grey") << hashed("u8", 40, 9, 0, 255) << own << QPoint() << full << 24 << QByteArray();
    QTest::newRow("i8 rgb shifted") << hashed("i8", 9, 5, -128, 255) << own << QPoint(1, 1) << QPointF(0.2, 0.7)
                                    << 13 << QByteArray();
    QTest::newRow("i16 table grey") << hashed("i16", 301, 300, -30000, 60000) << own << QPoint() << full << 24
                                    << QByteArray();
    QTest::newRow("i32 table rgb") << hashed("i32", 259, 260, -20000, 50000) << own << QPoint() << full << 13
                                   << QByteArray();
    QTest::newRow("f64 rgb") << hashed("f64", 6, 3, -2, 5) << own << QPoint() << QPointF(0.1, 0.6) << 13
                             << QByteArray();

    QTest::newRow("empty") << Frame{"u16", 0, 3, {}} << own << QPoint() << full << 24 << QByteArray();
    // RGB32: 4 bytes a pixel would run past a buffer made for one or three.
    QTest::newRow("format without a map") << three << own << QPoint() << full << 4 << QByteArray();
}

void TestRender::render()
{
    QFETCH(Frame, frame);
    QFETCH(QPointF, range);
    QFETCH(QPoint, shift);
    QFETCH(QPointF, ends);
    QFETCH(int, format);
    QFETCH(QByteArray, hand);

    auto f = makeFrame(frame);
    if (!std::isnan(range.x()))
        std::tie(f->min, f->max) = std::make_pair(range.x(), range.y());
    std::tie(f->shiftX, f->shiftY) = std::make_pair(shift.x(), shift.y());
    f->render(); // a grey image first: each render drops what the one before made
    f->imgFormat = format;
    const bool bar = !std::isnan(ends.x());
    const QPointF used = bar ? ends : QPointF(0, 1);
    ColorScale scale;
    scale.setEnds(used.x(), used.y());
    gColorBar = bar ? &scale : nullptr;
    f->render();
    gColorBar = nullptr;

    const QByteArray want = hand.isEmpty() ? expected(frame, f->min, f->max, shift, used.x(), used.y(), format) : hand;
    QCOMPARE(bool(f->image), !want.isEmpty());
    QCOMPARE(f->imageBytes.isNull(), want.isEmpty());
    if (want.isEmpty())
        return;
    QCOMPARE(f->imageBytes, want);
    QCOMPARE(f->image->format(), QImage::Format(format));
    QCOMPARE(f->image->size(), QSize(frame.w, frame.h));
    QCOMPARE(f->image->bytesPerLine(), want.size() / frame.h);
    QCOMPARE(static_cast<const void *>(f->image->constBits()), static_cast<const void *>(f->imageBytes.constData()));
}

QTEST_GUILESS_MAIN(TestRender)
#include "tst_render.moc"
