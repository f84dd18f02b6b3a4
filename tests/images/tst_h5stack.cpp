#include "H5Files.h"
#include "LogCapture.h"

#include "images/H5Stack.h"
#include "images/H5StackReader.h"
#include "images/TiffData.h"

#include <QtTest>

#include <cmath>

using H5Files::Dataset;
Q_DECLARE_METATYPE(QVector<Dataset>)

// HDF5 stacks: finding the datasets, refusing bad input with a log line, and
// reading every slice into a frame of its own type. The values are a formula
// of (slice, y, x) worked out again here for each kind of pixel.
class TestH5Stack : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void stacks_data();
    void stacks();

private:
    QTemporaryDir m_dir;
};

namespace {

// The file type of each kind of pixel (identifiers are only valid once the
// library runs, so not a static table).
hid_t fileType(int type)
{
    const QHash<int, hid_t> types{{PixelU8, H5T_STD_U8LE},   {PixelI8, H5T_STD_I8LE},   {PixelU16, H5T_STD_U16LE},
                                  {PixelI16, H5T_STD_I16LE}, {PixelU32, H5T_STD_U32LE}, {PixelI32, H5T_STD_I32LE},
                                  {PixelF32, H5T_IEEE_F32LE}, {PixelF64, H5T_IEEE_F64LE}};
    return types.value(type);
}

// Fits every type: 0..96, moved below 0 for signed ones, with a fraction a
// float holds exactly (f32) or only a double does (f64).
double value(int type, int i, int y, int x)
{
    const double base = (i * 37 + y * 11 + x * 3) % 97;
    switch (type) {
    case PixelI8:
    case PixelI16:
    case PixelI32:
        return base - 48;
    case PixelF32:
        return base + 0.25;
    case PixelF64:
        return base + 0.1;
    default:
        return base;
    }
}

QVector<double> values(int type, int frames, int h, int w)
{
    QVector<double> v;
    for (int i = 0; i < frames; ++i)
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x)
                v << value(type, i, y, x);
    return v;
}

// A stack of `frames` x 5 x 6 in the given pixel kind and file type.
Dataset stack(const QString &path, int type, int frames = 4, QVector<hsize_t> chunk = {}, int gzip = 0)
{
    return Dataset(path, fileType(type), {hsize_t(frames), 5, 6}, values(type, frames, 5, 6), chunk, gzip);
}

Dataset line(const QString &path, QVector<double> v, const QString &units = QString())
{
    Dataset d(path, H5T_IEEE_F64LE, {hsize_t(v.size())}, v);
    d.units = units;
    return d;
}

} // namespace

void TestH5Stack::initTestCase()
{
    QVERIFY(m_dir.isValid());
    gErrPoints = ErrPoints();
}

void TestH5Stack::stacks_data()
{
    QTest::addColumn<QVector<Dataset>>("sets");
    QTest::addColumn<QString>("image");  // as the user names it; empty lets the file choose
    QTest::addColumn<QString>("energy");
    QTest::addColumn<QString>("damage"); // "", "garbage" after the signature, "truncate", "corrupt" a chunk, "tiff"
    QTest::addColumn<QString>("result"); // "stack", "refused", "no memory", "bad slice"
    QTest::addColumn<QString>("chosen"); // the image dataset of the stack
    QTest::addColumn<int>("pixelType");
    QTest::addColumn<QVector<double>>("energies");
    QTest::addColumn<QString>("log");    // a fragment of a line that must be logged (none asked for "")

    const QVector<double> e4{8970, 8980.5, 8990, 9000};
    const auto good = [&](const char *name, QVector<Dataset> sets, const char *image, const char *energy,
                          const char *chosen, int type, QVector<double> energies, const char *log = "") {
        QTest::newRow(name) << sets << QString(image) << QString(energy) << QString() << QString("stack")
                            << QString(chosen) << type << energies << QString(log);
    };
    const auto bad = [](const char *name, QVector<Dataset> sets, const char *image, const char *energy,
                        const char *damage, const char *result, const char *log) {
        QTest::newRow(name) << sets << QString(image) << QString(energy) << QString(damage) << QString(result)
                            << QString() << int(PixelNone) << QVector<double>() << QString(log);
    };

    const QVector<hsize_t> slab{1, 5, 6}, deep{3, 2, 4};
    good("u16 named", {stack("/d", PixelU16), line("/e", e4)}, "/d", "/e", "/d", PixelU16, e4);
    good("u8 chunked", {stack("/d", PixelU8, 4, slab)}, "/d", "", "/d", PixelU8, {}, "No energies in HDF5 file");
    good("i8 deep chunks", {stack("/d", PixelI8, 4, deep)}, "/d", "", "/d", PixelI8, {});
    good("i16 gzip", {stack("/d", PixelI16, 4, deep, 6), line("/e", e4)}, "/d", "/e", "/d", PixelI16, e4);
    good("u32", {stack("/d", PixelU32)}, "/d", "", "/d", PixelU32, {});
    good("i32 gzip slabs", {stack("/d", PixelI32, 4, slab, 1)}, "/d", "", "/d", PixelI32, {});
    good("f32", {stack("/d", PixelF32)}, "/d", "", "/d", PixelF32, {});
    good("f64 deep chunks", {stack("/d", PixelF64, 4, deep, 3)}, "/d", "", "/d", PixelF64, {});
    Dataset bigEndian = stack("/d", PixelU16);
    bigEndian.type = H5T_STD_U16BE;
    good("big-endian u16", {bigEndian}, "/d", "", "/d", PixelU16, {});
    // Name order: /a/flat (2-D), /a/n (1-D of 3) and /b/data (3-D of 64-bit
    // integers) come first, but the first 3-D dataset a frame can hold wins,
    // and only a line as long as the stack gives energies.
    good("chosen by the file",
         {line("/a/n", {1, 2, 3}), Dataset("/b/data", H5T_STD_I64LE, {4, 5, 6}), stack("/c/data", PixelI16),
          Dataset("/a/flat", H5T_STD_U16LE, {5, 6}, values(PixelU16, 1, 5, 6)), line("/z/e", e4)},
         "", "", "/c/data", PixelI16, e4, "HDF5 energy dataset /z/e");
    good("keV turned into eV", {stack("/d", PixelU16), line("/e", {8.97, 8.9805, 8.99, 9.0}, "keV")}, "/d", "/e",
         "/d", PixelU16, {8970, 8980.5, 8990, 9000});
    good("two-dimensional: one frame",
         {Dataset("/g/flat", H5T_STD_U16LE, {5, 6}, values(PixelU16, 1, 5, 6)), line("/g/e", {9000})}, "/g/flat", "",
         "/g/flat", PixelU16, {9000}, "HDF5 energy dataset /g/e");
    // Nothing but one 64-bit integer stack: the file offers nothing a frame holds.
    const Dataset i64("/d", H5T_STD_I64LE, {2, 5, 6}, values(PixelU16, 2, 5, 6));

    bad("a TIFF", {}, "/d", "", "tiff", "refused", "Not an HDF5 file");
    bad("garbage after the signature", {stack("/d", PixelU16)}, "/d", "", "garbage", "refused",
        "Can not open HDF5 file");
    bad("truncated mid-chunk", {stack("/d", PixelU16, 40, slab)}, "/d", "", "truncate", "refused",
        "Can not open HDF5 file");
    bad("no such dataset", {stack("/d", PixelU16)}, "/x/d", "", "", "refused", "HDF5 dataset not found /x/d");
    bad("a group", {stack("/g/d", PixelU16)}, "/g", "", "", "refused", "HDF5 dataset not found /g");
    bad("rank 1", {line("/e", e4)}, "/e", "", "", "refused", "HDF5 dataset is no image stack, rank 1");
    bad("rank 4", {Dataset("/d", H5T_STD_U16LE, {2, 2, 5, 6}, values(PixelU16, 4, 5, 6))}, "/d", "", "", "refused",
        "HDF5 dataset is no image stack, rank 4");
    bad("strings", {Dataset::strings("/s", {2, 2, 2})}, "/s", "", "", "refused",
        "HDF5 dataset of a type a frame can't hold: string");
    bad("64-bit integers", {i64}, "/d", "", "", "refused", "HDF5 dataset of a type a frame can't hold: integer");
    bad("nothing to choose", {i64, line("/e", e4)}, "", "", "", "refused", "No image dataset in HDF5 file");
    bad("energies too short", {stack("/d", PixelU16), line("/e", {1, 2, 3})}, "/d", "/e", "", "refused",
        "HDF5 energies do not fit the frames: 3 float for 4 frames");
    bad("energies as text", {stack("/d", PixelU16), Dataset::strings("/e", {4})}, "/d", "/e", "",
        "refused", "HDF5 energies do not fit the frames: 4 string");
    bad("no such energies", {stack("/d", PixelU16)}, "/d", "/e", "", "refused", "HDF5 dataset not found /e");
    Dataset lz4 = stack("/d", PixelU16, 4, slab);
    lz4.missingFilter = true;
    bad("filter not available", {lz4}, "/d", "", "", "refused", "HDF5 filter not available:");
    // Sizes the header claims, with no chunk ever written: a small file.
    bad("frame too large", {Dataset("/d", H5T_STD_U16LE, {1, 40000, 40000}, {}, {1, 1000, 1000})}, "/d", "", "",
        "refused", "HDF5 dataset too large: 1 x 40000 x 40000");
    bad("stack larger than memory", {Dataset("/d", H5T_STD_U16LE, {100000, 2048, 2048}, {}, {1, 2048, 2048})}, "/d",
        "", "", "no memory", "HDF5 stack too large for memory");
    bad("corrupt chunk", {stack("/d", PixelU16, 4, slab, 9)}, "/d", "", "corrupt", "bad slice",
        "Error on reading HDF5 frame 1 /d");
}

void TestH5Stack::stacks()
{
    QFETCH(QVector<Dataset>, sets);
    QFETCH(QString, image);
    QFETCH(QString, energy);
    QFETCH(QString, damage);
    QFETCH(QString, result);
    QFETCH(QString, chosen);
    QFETCH(int, pixelType);
    QFETCH(QVector<double>, energies);
    QFETCH(QString, log);

    const QString file = m_dir.filePath(QTest::currentDataTag() + QStringLiteral(".h5"));
    QFile raw(file);
    if (damage == "tiff") {
        QVERIFY(raw.open(QIODevice::WriteOnly));
        raw.write(QByteArray("II*\0", 4) + QByteArray(60, '\0'));
        raw.close();
    } else {
        QVERIFY(H5Files::write(file, sets));
    }
    if (damage == "garbage" || damage == "truncate") {
        const qint64 size = raw.size();
        QVERIFY(raw.open(QIODevice::ReadWrite));
        if (damage == "garbage") {
            raw.seek(8);
            raw.write(QByteArray(size - 8, '\x5a'));
        } else {
            QVERIFY(raw.resize(size / 2)); // the slices' chunks fill most of the file
        }
        raw.close();
    } else if (damage == "corrupt") {
        qint64 bytes = 0;
        const qint64 at = H5Files::chunkOffset(file, "/d", {1, 0, 0}, &bytes);
        QVERIFY(at > 0 && bytes > 4);
        QVERIFY(raw.open(QIODevice::ReadWrite));
        raw.seek(at);
        raw.write(QByteArray(bytes, '\xff'));
        raw.close();
    }

    LogCapture capture;
    H5Stack s;
    s.frames = -7; // must stay as it is on failure
    const bool found = H5Stack::find(file, image, energy, s);
    QCOMPARE(found, result != "refused");
    if (!found) {
        QCOMPARE(s.frames, -7);
    } else {
        QCOMPARE(s.fitsInMemory(1, 0, 0), result != "no memory");
    }
    const auto checkLog = [&] {
        const QStringList &lines = capture.lines();
        const bool logged =
            log.isEmpty() || std::any_of(lines.cbegin(), lines.cend(), [&](const QString &l) { return l.contains(log); });
        QVERIFY2(logged, qPrintable(lines.join('\n')));
    };
    if (result == "bad slice") {
        H5StackReader reader;
        QVERIFY(reader.open(s));
        TiffData frame;
        QVERIFY(frame.readSlice(reader, 0));
        QVERIFY(!frame.readSlice(reader, 1));
        QCOMPARE(frame.fileName, file + ":/d[0]"); // the frame keeps what it had
    }
    checkLog();
    if (result != "stack")
        return;

    QCOMPARE(s.imagePath, chosen);
    QCOMPARE(s.pixelType, pixelType);
    QCOMPARE(s.energies, energies);
    QCOMPARE(int(s.width), 6);
    QCOMPARE(int(s.height), 5);
    H5StackReader reader;
    QVERIFY(reader.open(s));
    // A mask in use mends the slices; its pixel (2, 1) takes its neighbours' mean.
    ErrPoints mask;
    mask.inUse = true;
    mask.points = {QPoint(2, 1)};
    for (int i = 0; i < s.frames; ++i) {
        TiffData f;
        QVERIFY(f.readSlice(reader, i, &mask));
        QCOMPARE(f.pixelType, pixelType);
        QCOMPARE(f.fileName, QStringLiteral("%1:%2[%3]").arg(file, chosen).arg(i));
        QCOMPARE(f.energyFromFile, !energies.isEmpty());
        QCOMPARE(f.energy, energies.value(i));
        double lo = 1e9, hi = -1e9, around = 0;
        for (int y = 0; y < 5; ++y) {
            for (int x = 0; x < 6; ++x) {
                double v = value(pixelType, i, y, x);
                v = pixelType == PixelF32 ? double(float(v)) : v;
                lo = std::min(lo, v);
                hi = std::max(hi, v);
                if (std::abs(x - 2) <= 1 && std::abs(y - 1) <= 1 && !(x == 2 && y == 1))
                    around += v / 8;
                if (x != 2 || y != 1)
                    QCOMPARE(f.pixel(x, y), v);
            }
        }
        QCOMPARE(f.min, lo);
        QCOMPARE(f.max, hi);
        const double mended = pixelType == PixelF64 ? around
                            : pixelType == PixelF32 ? double(float(around))
                                                    : std::trunc(around);
        QCOMPARE(f.pixel(2, 1), mended);
    }
    TiffData beyond;
    QVERIFY(!beyond.readSlice(reader, s.frames));
}

QTEST_GUILESS_MAIN(TestH5Stack)
#include "tst_h5stack.moc"
