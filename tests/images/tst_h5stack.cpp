#include "H5Files.h"
#include "LogCapture.h"

#include "images/H5StackReader.h"
#include "images/TiffData.h"

#include <QtTest>

#include <cmath>

using H5Files::Dataset;
Q_DECLARE_METATYPE(QVector<Dataset>)

// HDF5 stacks: finding the datasets, refusing bad input with a log line, and
// reading every slice into a frame of its own type, mended by a mask. The
// values are a formula of (slice, y, x), worked out again here for each type.
class TestH5Stack : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { QVERIFY(m_dir.isValid()); }
    void stacks_data();
    void stacks();

private:
    QTemporaryDir m_dir;
};

namespace {

// 0..96, moved below 0 for signed types, with a fraction that a float holds
// exactly (f32) or only a double does (f64).
double value(int type, int i, int y, int x)
{
    const bool isSigned = type == PixelI8 || type == PixelI16 || type == PixelI32;
    const double fraction = type == PixelF32 ? 0.25 : type == PixelF64 ? 0.1 : 0;
    return (i * 37 + y * 11 + x * 3) % 97 - (isSigned ? 48 : 0) + fraction;
}

// A stack of `frames` x 5 x 6 of the pixel type, in the file type given.
Dataset stack(int type, hid_t fileType, int frames = 4, QVector<hsize_t> chunk = {}, int gzip = 0)
{
    QVector<double> v;
    for (int i = 0; i < frames * 30; ++i)
        v << value(type, i / 30, i % 30 / 6, i % 6);
    return Dataset(frames == 1 ? "/g/flat" : "/d", fileType, frames == 1 ? QVector<hsize_t>{5, 6}
                                                                        : QVector<hsize_t>{hsize_t(frames), 5, 6},
                   v, chunk, gzip);
}

Dataset line(const QString &path, QVector<double> v, const QString &units = QString())
{
    Dataset d(path, H5T_IEEE_F64LE, {hsize_t(v.size())}, v);
    d.units = units;
    return d;
}

} // namespace

void TestH5Stack::stacks_data()
{
    QTest::addColumn<QVector<Dataset>>("sets");
    QTest::addColumn<QString>("image");  // as the user names it; empty lets the file choose
    QTest::addColumn<QString>("energy");
    QTest::addColumn<QString>("damage"); // "garbage" after the signature, "truncate", "corrupt" a chunk, "tiff"
    QTest::addColumn<QString>("result"); // "stack" (then the chosen dataset), "refused", "no memory", "bad slice"
    QTest::addColumn<int>("pixelType");
    QTest::addColumn<QVector<double>>("energies");
    QTest::addColumn<QString>("log");    // a fragment of a line that must be logged (none asked for "")
    const auto row = [](const char *name, QVector<Dataset> sets, const char *image, const char *energy,
                        const char *damage, const char *result, int type, QVector<double> e, const char *log) {
        QTest::newRow(name) << sets << QString(image) << QString(energy) << QString(damage) << QString(result)
                            << type << e << QString(log);
    };

    const QVector<double> e4{8970, 8980.5, 8990, 9000};
    const QVector<hsize_t> slab{1, 5, 6}, deep{3, 2, 4};
    const Dataset u16 = stack(PixelU16, H5T_STD_U16LE), i64("/d", H5T_STD_I64LE, {4, 5, 6});
    row("u16 big-endian, named", {stack(PixelU16, H5T_STD_U16BE), line("/e", e4)}, "/d", "/e", "", "/d", PixelU16,
        e4, "");
    row("u8 slab chunks", {stack(PixelU8, H5T_STD_U8LE, 4, slab)}, "/d", "", "", "/d", PixelU8, {},
        "No energies in HDF5 file");
    row("i8 deep chunks", {stack(PixelI8, H5T_STD_I8LE, 4, deep)}, "/d", "", "", "/d", PixelI8, {}, "");
    row("i16 gzip", {stack(PixelI16, H5T_STD_I16LE, 4, deep, 6)}, "/d", "", "", "/d", PixelI16, {}, "");
    row("u32", {stack(PixelU32, H5T_STD_U32LE)}, "/d", "", "", "/d", PixelU32, {}, "");
    row("i32 gzip slabs", {stack(PixelI32, H5T_STD_I32LE, 4, slab, 1)}, "/d", "", "", "/d", PixelI32, {}, "");
    row("f32", {stack(PixelF32, H5T_IEEE_F32LE)}, "/d", "", "", "/d", PixelF32, {}, "");
    row("f64 deep gzip", {stack(PixelF64, H5T_IEEE_F64LE, 4, deep, 3)}, "/d", "", "", "/d", PixelF64, {}, "");
    // Name order puts /a/n (1-D of 3), /d (3-D of 64-bit integers) and /g/flat
    // (2-D) first, but the first 3-D dataset a frame holds wins, and only a
    // line as long as the stack gives energies.
    Dataset chosen = stack(PixelI16, H5T_STD_I16LE);
    chosen.path = "/h/data";
    row("chosen by the file",
        {line("/a/n", {1, 2, 3}), i64, stack(PixelU16, H5T_STD_U16LE, 1), chosen, line("/z/e", e4)}, "", "", "",
        "/h/data", PixelI16, e4, "HDF5 energy dataset /z/e");
    row("keV turned into eV", {u16, line("/e", {8.97, 8.9805, 8.99, 9.0}, "keV")}, "/d", "/e", "", "/d", PixelU16,
        e4, "");
    row("two-dimensional: one frame", {stack(PixelU16, H5T_STD_U16LE, 1), line("/g/e", {9000})}, "/g/flat", "", "",
        "/g/flat", PixelU16, {9000}, "HDF5 energy dataset /g/e");

    Dataset lz4 = stack(PixelU16, H5T_STD_U16LE, 4, slab);
    lz4.missingFilter = true;
    const auto bad = [&](const char *name, QVector<Dataset> sets, const char *image, const char *energy,
                         const char *damage, const char *result, const char *log) {
        row(name, sets, image, energy, damage, result, PixelNone, {}, log);
    };
    bad("a TIFF", {}, "/d", "", "tiff", "refused", "Not an HDF5 file");
    bad("garbage after the signature", {u16}, "/d", "", "garbage", "refused", "Can not open HDF5 file");
    bad("truncated mid-chunk", {stack(PixelU16, H5T_STD_U16LE, 40, slab)}, "/d", "", "truncate", "refused",
        "Can not open HDF5 file");
    bad("no such dataset", {u16}, "/x/d", "", "", "refused", "HDF5 dataset not found /x/d");
    bad("rank 1", {line("/e", e4)}, "/e", "", "", "refused", "HDF5 dataset is no image stack, rank 1");
    bad("rank 4", {Dataset("/d", H5T_STD_U16LE, {2, 2, 5, 6})}, "/d", "", "", "refused", "no image stack, rank 4");
    bad("strings", {Dataset::strings("/s", {2, 2, 2})}, "/s", "", "", "refused", "frame can't hold: string");
    bad("64-bit integers", {i64}, "/d", "", "", "refused", "HDF5 dataset of a type a frame can't hold: integer");
    bad("nothing to choose", {i64, line("/e", e4)}, "", "", "", "refused", "No image dataset in HDF5 file");
    bad("energies too short", {u16, line("/e", {1, 2, 3})}, "/d", "/e", "", "refused",
        "HDF5 energies do not fit the frames: 3 float for 4 frames");
    bad("filter not available", {lz4}, "/d", "", "", "refused", "HDF5 filter not available:");
    // Sizes the header claims, with no chunk ever written: small files.
    bad("frame too large", {Dataset("/d", H5T_STD_U16LE, {1, 40000, 40000}, {}, {1, 1000, 1000})}, "/d", "", "",
        "refused", "HDF5 dataset too large: 1 x 40000 x 40000");
    bad("stack larger than memory", {Dataset("/d", H5T_STD_U16LE, {100000, 2048, 2048}, {}, {1, 2048, 2048})},
        "/d", "", "", "no memory", "HDF5 stack too large for memory");
    bad("corrupt chunk", {stack(PixelU16, H5T_STD_U16LE, 4, slab, 9)}, "/d", "", "corrupt", "bad slice",
        "Error on reading HDF5 frame 1 /d");
}

void TestH5Stack::stacks()
{
    QFETCH(QVector<Dataset>, sets);
    QFETCH(QString, image);
    QFETCH(QString, energy);
    QFETCH(QString, damage);
    QFETCH(QString, result);
    QFETCH(int, pixelType);
    QFETCH(QVector<double>, energies);
    QFETCH(QString, log);

    const QString file = m_dir.filePath(QTest::currentDataTag() + QStringLiteral(".h5"));
    QVERIFY(H5Files::write(file, sets));
    QFile raw(file);
    const qint64 size = raw.size();
    qint64 at = 8, bytes = size - 8; // what "garbage" overwrites
    if (damage == "corrupt")
        at = H5Files::chunkOffset(file, "/d", {1, 0, 0}, &bytes);
    QVERIFY(raw.open(QIODevice::ReadWrite) && at > 0);
    if (damage == "tiff")
        raw.write(QByteArray("II*\0", 4) + QByteArray(60, '\0'));
    else if (damage == "truncate")
        QVERIFY(raw.resize(size / 2)); // the slices' chunks fill most of the file
    else if (!damage.isEmpty())
        QVERIFY(raw.seek(at) && raw.write(QByteArray(bytes, '\xff')) == bytes);
    raw.close();

    LogCapture capture;
    H5Stack s;
    s.frames = -7; // stays as it is on failure
    QCOMPARE(H5Stack::find(file, image, energy, s), result != "refused");
    QCOMPARE(s.frames == -7, result == "refused");
    if (result == "no memory")
        QVERIFY(!s.fitsInMemory(1, 0, 0));
    H5StackReader reader;
    if (result == "bad slice") {
        TiffData frame;
        QVERIFY(reader.open(s) && frame.readSlice(reader, 0));
        QVERIFY(!frame.readSlice(reader, 1));
        QCOMPARE(frame.fileName, file + ":/d[0]"); // the frame keeps what it had
    }
    const QStringList &lines = capture.lines();
    const bool logged = std::any_of(lines.cbegin(), lines.cend(), [&](const QString &l) { return l.contains(log); });
    QVERIFY2(log.isEmpty() || logged, qPrintable(lines.join('\n')));
    if (!result.startsWith('/'))
        return;

    QCOMPARE(s.imagePath, result);
    QCOMPARE(s.pixelType, pixelType);
    QCOMPARE(s.energies, energies);
    QCOMPARE(s.width * 10 + s.height, 65u);
    QVERIFY(s.fitsInMemory(1, 0, 0));
    QVERIFY(reader.open(s));
    // A mask in use mends the slices: pixel (2, 1) takes its neighbours' mean.
    ErrPoints mask;
    mask.inUse = true;
    mask.points = {QPoint(2, 1)};
    for (int i = 0; i <= s.frames; ++i) {
        TiffData f;
        QCOMPARE(f.readSlice(reader, i, &mask), i < s.frames); // none beyond the last
        if (i == s.frames)
            break;
        QCOMPARE(f.pixelType, pixelType);
        QCOMPARE(f.fileName, QStringLiteral("%1:%2[%3]").arg(file, result).arg(i));
        QCOMPARE(f.energyFromFile, !energies.isEmpty());
        QCOMPARE(f.energy, energies.value(i));
        double lo = 1e9, hi = -1e9, around = 0;
        for (int p = 0; p < 30; ++p) {
            const int x = p % 6, y = p / 6;
            const double v = pixelType == PixelF32 ? float(value(pixelType, i, y, x)) : value(pixelType, i, y, x);
            lo = std::min(lo, v);
            hi = std::max(hi, v);
            around += std::abs(x - 2) <= 1 && std::abs(y - 1) <= 1 && p != 8 ? v / 8 : 0;
            if (p != 8)
                QCOMPARE(f.pixel(x, y), v);
        }
        QCOMPARE(f.min, lo);
        QCOMPARE(f.max, hi);
        const double mended = pixelType == PixelF32 ? float(around) : std::trunc(around);
        QCOMPARE(f.pixel(2, 1), pixelType == PixelF64 ? around : mended);
    }
}

QTEST_GUILESS_MAIN(TestH5Stack)
#include "tst_h5stack.moc"
