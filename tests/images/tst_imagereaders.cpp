#include "FrameFiles.h"
#include "LogCapture.h"

#include "images/TiffData.h"
#include "images/TiffWriter.h"

#include <QtTest>

#include <tiffio.h>

using namespace FrameFiles;

// Reading the three image forms, choosing the form by the first bytes, and
// refusing bad files without pixels (cut and scrambled files are the
// bad-input test's).
class TestImageReaders : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void tiff_data();
    void tiff();
    void img_data();
    void img();
    void badFiles_data();
    void badFiles();
    void failedReadKeepsPixels();
    void tiffEightBit();

private:
    QString path(const QString &name) const { return m_dir.filePath(name); }
    QTemporaryDir m_dir;
};

void TestImageReaders::initTestCase()
{
    QVERIFY(m_dir.isValid());
    gErrPoints = ErrPoints();
}

// Pixel values that differ in both bytes, so a swapped byte order shows.
static QVector<quint16> pattern16(int width, int height)
{
    QVector<quint16> v;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            v << quint16(0x0101 * (x + 1) + 0x1000 * y + 7);
    return v;
}

void TestImageReaders::tiff_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::addColumn<double>("exposureSeconds"); // < 0: no EXIF directory
    QTest::addColumn<double>("exposureMs");
    QTest::newRow("1x1 no exif") << 1 << 1 << -1.0 << 100.0;
    // rows per strip is the width: 3 rows in one strip
    QTest::newRow("3x2 one strip") << 3 << 2 << -1.0 << 100.0;
    // rows per strip 2: strips of 2, 2 and 1 rows
    QTest::newRow("2x5 partial strip") << 2 << 5 << -1.0 << 100.0;
    QTest::newRow("exif 0.25 s") << 4 << 3 << 0.25 << 250.0;
    QTest::newRow("exif 0 s") << 5 << 5 << 0.0 << 0.0;
}

void TestImageReaders::tiff()
{
    QFETCH(int, width);
    QFETCH(int, height);
    QFETCH(double, exposureSeconds);
    QFETCH(double, exposureMs);
    const QVector<quint16> src = pattern16(width, height);
    const QString file = path("t.tif");
    QVERIFY(writeTiff16(file, width, height, src.constData(), exposureSeconds));

    TiffData frame;
    QVERIFY(frame.read(file));
    QCOMPARE(frame.pixelType, int(PixelTiffU16));
    QCOMPARE(frame.width, quint32(width));
    QCOMPARE(frame.height, quint32(height));
    QCOMPARE(frame.scanlineBytes, quint32(2 * width));
    QCOMPARE(frame.rows.size(), height);
    QCOMPARE(frame.fileName, file);
    // float precision: libtiff may keep the rational as a float
    QVERIFY(qAbs(frame.exposureMs - exposureMs) <= 1e-6 * qMax(1.0, exposureMs));
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            QCOMPARE(frame.pixel(x, y), double(src.at(y * width + x)));
    QCOMPARE(frame.min, double(*std::min_element(src.begin(), src.end())));
    QCOMPARE(frame.max, double(*std::max_element(src.begin(), src.end())));

    // The writer's tags, read back by hand from the file's first directory.
    QFile f(file);
    QVERIFY(f.open(QIODevice::ReadOnly));
    QMap<int, quint32> tags;
    for (const TiffTag &t : firstDirectory(f.readAll()))
        tags.insert(t.tag, t.value);
    const QMap<int, quint32> expected{{256, quint32(width)}, {257, quint32(height)}, {258, 16}, {259, 1}, {262, 1},
                                      {274, 1}, {277, 1}, {278, quint32(width)}, {284, 1}};
    for (auto it = expected.cbegin(); it != expected.cend(); ++it)
        QCOMPARE(tags.value(it.key(), 9999), it.value());
    QCOMPARE(tags.contains(34665), exposureSeconds >= 0);
    if (exposureSeconds >= 0)
        QVERIFY(tags.value(34665) > 8);
}

void TestImageReaders::img_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("pixelType");
    QTest::addColumn<int>("bytesPerPixel"); // of an .img: as its comment says
    QTest::addColumn<double>("exposureMs"); // of an .img
    QTest::addColumn<int>("width");
    QTest::addColumn<QVector<double>>("pixels");

    // 3 x 2 at offset (100, 200); 0x12345 only fits 32 bits.
    const QVector<quint32> small{0x1234, 1, 0xfff0, 0x0102, 77, 5};
    const QVector<quint32> wide{0x12345, 1, 0xfffffff0u, 0x0102, 77, 5};
    const auto img = [&](const char *name, const char *comment, int bytesPerPixel, double ms) {
        const int bytes = bytesPerPixel == 4 ? 4 : 2; // any count other than 4 reads 16-bit pixels
        const QVector<quint32> &src = bytes == 4 ? wide : small;
        QTest::newRow(name) << imgFile(3, 2, 100, 200, comment, src, bytes) << int(bytes == 4 ? PixelU32 : PixelU16)
                            << bytesPerPixel << ms << 3 << QVector<double>(src.cbegin(), src.cend());
    };
    img("no keys: 2 bytes, 0.1 s", "Camera=X", 2, 100);
    img("ms", "ExposureTime=100 ms", 2, 100);
    img("us", "ExposureTime=100 us", 2, 0.1);
    img("no unit is s", "ExposureTime=0.5", 2, 500);
    img("s", "ExposureTime=2 s,Gain=1", 2, 2000);
    img("unknown unit: number as it stands", "ExposureTime=1 min", 2, 1);
    // An empty value scales the previous exposure (100 ms) by 1000.
    img("empty value", "ExposureTime=,BytesPerPixel=2", 2, 100000);
    img("32 bit", "ExposureTime=3 ms,BytesPerPixel=4", 4, 3);
    img("32 bit first", "BytesPerPixel=4,ExposureTime=0.25", 4, 250);
    img("3 bytes read as 2", "BytesPerPixel=3", 3, 100);

    // Text images: third word times 500; fewer than three words, or negative, give 0.
    const auto text = [](const char *name, const QByteArray &content, int width, QVector<double> pixels) {
        QTest::newRow(name) << content << int(PixelF32) << -1 << -1.0 << width << pixels;
    };
    text("text 2x2", textImageFile("0", "2", "0", "2", {"0 0 0.002", "1 0 1", "0 1", "1 1 0.5 extra"}), 2,
         {1.0, 500.0, 0.0, 250.0});
    text("text negative", textImageFile("10", "13", "5", "6", {"a b -1", "a b 0.004", "a b -0.002"}), 3, {0, 2, 0});
    // Only negatives become 0: a NaN stays, and takes no part in min and max.
    text("text NaN", textImageFile("0", "3", "0", "1", {"a b 2", "a b nan", "a b -1"}), 3, {1000, qQNaN(), 0});
    // Lines the body lacks read as 0.
    text("text short body", textImageFile("0", "2", "0", "2", {"0 0 1", "0 0 2", "0 0 3"}), 2, {500, 1000, 1500, 0});
    // Ranges are truncated doubles; keys compare without case.
    text("text fractions, lower case",
         "#MQRS-CTImg\n# range_x0 : 1.9\n# Range_X1 : 3.2\n# RANGE_Y0 = 0\n# RANGE_Y1 = 1.99\nx y 1\nx y 2\n", 2,
         {500, 1000});
    // The header ends at the first line without '#', which is the first pixel.
    text("text: later hash lines are pixels", "#MQRS-CTImg\n# RANGE_X1 = 2\n# RANGE_Y1 = 1\n1 2 3\n# RANGE_X1 = 9\n", 2,
         {1500, 0});
}

void TestImageReaders::img()
{
    QFETCH(QByteArray, content);
    QFETCH(int, pixelType);
    QFETCH(int, bytesPerPixel);
    QFETCH(double, exposureMs);
    QFETCH(int, width);
    QFETCH(QVector<double>, pixels);

    const QString file = path("a.img");
    QVERIFY(writeFile(file, content));
    TiffData frame;
    ErrPoints mask;
    QVERIFY(frame.read(file, &mask));
    QCOMPARE(frame.pixelType, pixelType);
    QCOMPARE(frame.width, quint32(width));
    QCOMPARE(frame.height, quint32(pixels.size() / width));
    const auto want = [pixelType](double v) { return pixelType == PixelF32 ? double(float(v)) : v; };
    for (int i = 0; i < pixels.size(); ++i)
        QCOMPARE(frame.pixel(i % width, i / width), want(pixels.at(i)));
    QCOMPARE(frame.min, want(*std::min_element(pixels.begin(), pixels.end())));
    QCOMPARE(frame.max, want(*std::max_element(pixels.begin(), pixels.end())));
    if (bytesPerPixel < 0)
        return;
    QCOMPARE(frame.errPoints, &mask);
    QCOMPARE(frame.bytesPerPixel, bytesPerPixel);
    QCOMPARE(frame.xOffset, 100u);
    QCOMPARE(frame.yOffset, 200u);
    QVERIFY(qAbs(frame.exposureMs - exposureMs) < 1e-9 * qMax(1.0, exposureMs));
}

static QByteArray validTiff(int width, int height)
{
    QTemporaryDir dir;
    const QString file = dir.filePath("v.tif");
    const QVector<quint16> src = pattern16(width, height);
    if (!writeTiff16(file, width, height, src.constData()))
        return QByteArray();
    QFile f(file);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

// A 4x4 TIFF whose ImageWidth and ImageLength (SHORT values) claim n x n.
static QByteArray tiffClaimingSize(quint16 n)
{
    QByteArray file = validTiff(4, 4);
    for (const TiffTag &t : firstDirectory(file)) {
        if (t.tag != 256 && t.tag != 257)
            continue;
        const qint64 at = t.entryPos + 8;
        file[at] = char(n & 0xff);
        file[at + 1] = char(n >> 8);
    }
    return file;
}

// Which reader a file goes to is told by the messages it leaves; bad files
// of each form fail without pixels.
void TestImageReaders::badFiles_data()
{
    QTest::addColumn<QByteArray>("content");
    // The log, "%1" standing for the file; led by "...": its last lines; {"*"}: not checked (libtiff's texts).
    QTest::addColumn<QStringList>("messages");
    const auto last = [](const char *text) { return QStringList{"...", text}; };
    const QStringList any{"*"};
    QTest::newRow("14 bytes of II") << QByteArray("II*\0abcdefghij", 14) << QStringList{"Error on reading file (1) %1"};
    QTest::newRow("empty") << QByteArray() << QStringList{"Error on reading file (1) %1"};
    // Read as .img: width "E " = 0x2045 = 8261, height "te" = 0x6574 = 25972, far beyond the file.
    QTest::newRow("text starting IM") << QByteArray("IMAGE text that is no image at all\n")
                                      << QStringList{"invalid file size. expected (h,w) =  25972 8261",
                                                     "Error on reading (3) %1"};
    QTest::newRow("unknown magic") << QByteArray("PK\3\4 zipped stuff here") << QStringList();
    QTest::newRow("almost the text magic") << QByteArray("#MQRS-CTIm\nmore lines") << QStringList();
    // The text magic with no ranges: a size of 0 fails without a message.
    QTest::newRow("text magic, no ranges") << QByteArray("#MQRS-CTImg\n1 2 3\n") << QStringList();
    QTest::newRow("missing file") << QByteArray("-") << QStringList{"Can not open (1) %1"};
    const QVector<quint32> six{1, 2, 3, 4, 5, 6};
    const QByteArray good16 = imgFile(3, 2, 0, 0, "x", six, 2);
    const QByteArray good32 = imgFile(3, 2, 0, 0, "BytesPerPixel=4", six, 4);
    QTest::newRow("img head only") << good16.left(20) << last("Error on reading (3) %1");
    QTest::newRow("img 16 short by a byte") << good16.chopped(1) << last("Error on reading (3) %1");
    QTest::newRow("img 32 short by a byte") << good32.chopped(1) << last("Error on reading (2) %1");
    QTest::newRow("img comment beyond file") << imgFile(1, 1, 0, 0, QByteArray(10, 'c'), {1}, 2).left(70)
                                             << last("Error on reading (3) %1");
    QTest::newRow("img absurd size") << imgFile(65535, 65535, 0, 0, "BytesPerPixel=4", six, 4)
                                     << last("Too large image. (h,w) =  65535 65535 %1");
    QTest::newRow("img zero width") << imgFile(0, 5, 0, 0, "", six, 2) << last("invalid image size. (h,w) =  5 0 %1");
    QTest::newRow("img zero height") << imgFile(5, 0, 0, 0, "", six, 2) << last("invalid image size. (h,w) =  0 5 %1");
    const QByteArray tiff = validTiff(16, 16);
    QVERIFY(!tiff.isEmpty());
    QTest::newRow("tiff cut in half") << tiff.left(tiff.size() / 2) << any;
    QTest::newRow("tiff magic then garbage") << QByteArray("II*\0", 4) + QByteArray(200, '\x5a') << any;
    QTest::newRow("big-endian magic then garbage") << QByteArray("MM\0*", 4) + QByteArray(40, '\xff') << any;
    // 800 MB of pixels in a file of a few hundred bytes
    QTest::newRow("tiff claiming 20000x20000") << tiffClaimingSize(20000)
                                               << last("TIFF image larger than its file 20000 20000 %1");
    // 7.2 GB: beyond any frame
    QTest::newRow("tiff claiming 60000x60000") << tiffClaimingSize(60000) << last("Too large TIFF image 60000 60000 %1");
    QTest::newRow("text X1 equals X0") << textImageFile("4", "4", "0", "2", {"0 0 1", "0 0 1"}) << any;
    QTest::newRow("text reversed Y") << textImageFile("0", "1", "3", "1", {"0 0 1", "0 0 1"}) << any;
    // 1600 pixels claimed by a file of some 80 bytes: refused before any line is read.
    QTest::newRow("text larger than its file") << textImageFile("0", "40", "0", "40", {"0 0 1"})
                                               << last("Text image larger than its file 40 40 %1");
    QTest::newRow("text absurd range") << textImageFile("0", "1e9", "0", "1e9", {"0 0 1"})
                                       << last("Text image larger than its file 1000000000 1000000000 %1");
    // pinned to the int range: X1 - X0 is 2^32 - 1 and does not wrap to a small width
    QTest::newRow("text huge numbers") << textImageFile("-1e300", "1e300", "0", "1", {"0 0 1"})
                                       << last("Text image larger than its file 4294967295 1 %1");
}

void TestImageReaders::badFiles()
{
    QFETCH(QByteArray, content);
    QFETCH(QStringList, messages);
    // "-" stands for a file that is not there.
    const QString file = path(content == "-" ? "does-not-exist.tif" : "bad.bin");
    if (content != "-")
        QVERIFY(writeFile(file, content));
    messages.replaceInStrings(QLatin1String("%1"), file);
    TiffData frame;
    {
        LogCapture log;
        QVERIFY(!frame.read(file));
        const QStringList &lines = LogCapture::lines();
        if (messages.value(0) == "...")
            QCOMPARE(lines.mid(lines.size() - messages.size() + 1), messages.mid(1));
        else if (messages != QStringList{"*"})
            QCOMPARE(lines, messages);
    }
    QCOMPARE(frame.pixelType, int(PixelNone));
    QVERIFY(frame.rows.isEmpty());
    QCOMPARE(frame.width, 0u);
    QCOMPARE(frame.pixel(0, 0), 0.0);
    QCOMPARE(frame.boxSum(0, 0, 5, 5), 0.0);
}

void TestImageReaders::failedReadKeepsPixels()
{
    const QString good = path("good.img");
    const QString bad = path("bad.img");
    QVERIFY(writeFile(good, imgFile(2, 1, 0, 0, "", {40, 41}, 2)));
    QVERIFY(writeFile(bad, imgFile(2, 1, 0, 0, "", {40, 41}, 2).chopped(1)));
    TiffData frame;
    QVERIFY(frame.read(good));
    {
        LogCapture log;
        QVERIFY(!frame.read(bad));
    }
    QCOMPARE(frame.pixelType, int(PixelU16));
    QCOMPARE(frame.fileName, good);
    QCOMPARE(frame.pixel(1, 0), 41.0);
}

// An 8-bit TIFF still reads as 16-bit pixels: the 4 bytes of a row make two
// little-endian words, and the rest of the row, which the file does not
// hold, reads 0 instead of memory past the row.
void TestImageReaders::tiffEightBit()
{
    const QString file = path("eight.tif");
    {
        TIFF *tif = TIFFOpen(QFile::encodeName(file).constData(), "w");
        QVERIFY(tif);
        TIFFSetField(tif, TIFFTAG_IMAGEWIDTH, 4);
        TIFFSetField(tif, TIFFTAG_IMAGELENGTH, 1);
        TIFFSetField(tif, TIFFTAG_BITSPERSAMPLE, 8);
        TIFFSetField(tif, TIFFTAG_SAMPLESPERPIXEL, 1);
        TIFFSetField(tif, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
        TIFFSetField(tif, TIFFTAG_ROWSPERSTRIP, 1);
        quint8 row[4] = {1, 2, 3, 4};
        QVERIFY(TIFFWriteScanline(tif, row, 0, 0) == 1);
        TIFFClose(tif);
    }
    TiffData frame;
    QVERIFY(frame.read(file));
    QCOMPARE(frame.scanlineBytes, 4u);
    QCOMPARE(frame.pixel(0, 0), double(0x0201));
    QCOMPARE(frame.pixel(1, 0), double(0x0403));
    QCOMPARE(frame.pixel(2, 0), 0.0);
    QCOMPARE(frame.pixel(3, 0), 0.0);
}

QTEST_GUILESS_MAIN(TestImageReaders)
#include "tst_imagereaders.moc"
