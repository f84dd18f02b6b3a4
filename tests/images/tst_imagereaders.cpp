#include "FrameFiles.h"
#include "LogCapture.h"

#include "images/TiffData.h"
#include "images/TiffWriter.h"

#include <QRandomGenerator>
#include <QtTest>

#include <tiffio.h>

using namespace FrameFiles;

// Reading the three image forms, choosing the form by the first bytes, and
// refusing bad files without pixels, leaks or large allocations.
class TestImageReaders : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void tiff_data();
    void tiff();
    void tiffTags_data();
    void tiffTags();
    void img_data();
    void img();
    void textImage_data();
    void textImage();
    void detection_data();
    void detection();
    void badFiles_data();
    void badFiles();
    void failedReadKeepsPixels();
    void tiffEightBit();
    void corruptedFiles_data();
    void corruptedFiles();

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
}

// The writer's tags, read back by hand from the file's first directory.
void TestImageReaders::tiffTags_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::addColumn<bool>("exif");
    QTest::newRow("wide") << 6 << 2 << false;
    QTest::newRow("tall with exif") << 3 << 8 << true;
}

void TestImageReaders::tiffTags()
{
    QFETCH(int, width);
    QFETCH(int, height);
    QFETCH(bool, exif);
    const QVector<quint16> src = pattern16(width, height);
    const QString file = path("tags.tif");
    QVERIFY(writeTiff16(file, width, height, src.constData(), exif ? 0.5 : -1.0));
    QFile f(file);
    QVERIFY(f.open(QIODevice::ReadOnly));
    const QVector<TiffTag> tags = firstDirectory(f.readAll());

    QMap<int, quint32> values;
    for (const TiffTag &t : tags)
        values.insert(t.tag, t.value);
    const QMap<int, quint32> expected{{256, quint32(width)}, {257, quint32(height)}, {258, 16}, {259, 1},
                                      {262, 1},           {274, 1},                  {277, 1},  {278, quint32(width)},
                                      {284, 1}};
    for (auto it = expected.cbegin(); it != expected.cend(); ++it) {
        QVERIFY2(values.contains(it.key()), qPrintable(QString::number(it.key())));
        QCOMPARE(values.value(it.key()), it.value());
    }
    QCOMPARE(values.contains(34665), exif);
    if (exif)
        QVERIFY(values.value(34665) > 8);
}

void TestImageReaders::img_data()
{
    QTest::addColumn<QByteArray>("comment");
    QTest::addColumn<int>("bytes"); // bytes per pixel actually stored
    QTest::addColumn<int>("bytesPerPixel");
    QTest::addColumn<int>("pixelType");
    QTest::addColumn<double>("exposureMs");
    QTest::newRow("no keys: 2 bytes, 0.1 s") << QByteArray("Camera=X") << 2 << 2 << 1 << 100.0;
    QTest::newRow("ms") << QByteArray("ExposureTime=100 ms") << 2 << 2 << 1 << 100.0;
    QTest::newRow("us") << QByteArray("ExposureTime=100 us") << 2 << 2 << 1 << 0.1;
    QTest::newRow("no unit is s") << QByteArray("ExposureTime=0.5") << 2 << 2 << 1 << 500.0;
    QTest::newRow("s") << QByteArray("ExposureTime=2 s,Gain=1") << 2 << 2 << 1 << 2000.0;
    // unknown units keep the number as it stands
    QTest::newRow("min") << QByteArray("ExposureTime=1 min") << 2 << 2 << 1 << 1.0;
    // an empty value scales the previous exposure (100 ms) by 1000
    QTest::newRow("empty value") << QByteArray("ExposureTime=,BytesPerPixel=2") << 2 << 2 << 1 << 100000.0;
    QTest::newRow("32 bit") << QByteArray("ExposureTime=3 ms,BytesPerPixel=4") << 4 << 4 << 2 << 3.0;
    QTest::newRow("32 bit first") << QByteArray("BytesPerPixel=4,ExposureTime=0.25") << 4 << 4 << 2 << 250.0;
    // any count other than 4 reads 16-bit pixels
    QTest::newRow("3 bytes read as 2") << QByteArray("BytesPerPixel=3") << 2 << 3 << 1 << 100.0;
}

void TestImageReaders::img()
{
    QFETCH(QByteArray, comment);
    QFETCH(int, bytes);
    QFETCH(int, bytesPerPixel);
    QFETCH(int, pixelType);
    QFETCH(double, exposureMs);
    const int w = 3, h = 2;
    // 0x12345 only fits 32 bits; in 16-bit files the values stay small
    const QVector<quint32> src = bytes == 4 ? QVector<quint32>{0x12345, 1, 0xfffffff0u, 0x0102, 77, 5}
                                            : QVector<quint32>{0x1234, 1, 0xfff0, 0x0102, 77, 5};
    const QString file = path("a.img");
    QVERIFY(writeFile(file, imgFile(w, h, 100, 200, comment, src, bytes)));

    TiffData frame;
    ErrPoints mask;
    QVERIFY(frame.read(file, &mask));
    QCOMPARE(frame.errPoints, &mask);
    QCOMPARE(frame.pixelType, pixelType);
    QCOMPARE(frame.bytesPerPixel, bytesPerPixel);
    QCOMPARE(frame.width, quint32(w));
    QCOMPARE(frame.height, quint32(h));
    QCOMPARE(frame.xOffset, 100u);
    QCOMPARE(frame.yOffset, 200u);
    QVERIFY(qAbs(frame.exposureMs - exposureMs) < 1e-9 * qMax(1.0, exposureMs));
    for (int i = 0; i < src.size(); ++i)
        QCOMPARE(frame.pixel(i % w, i / w), double(src.at(i)));
    QCOMPARE(frame.min, 1.0);
    QCOMPARE(frame.max, double(bytes == 4 ? 0xfffffff0u : 0xfff0));
}

void TestImageReaders::textImage_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::addColumn<QVector<double>>("pixels");
    // third word times 500; fewer than three words give 0
    QTest::newRow("2x2") << textImageFile("0", "2", "0", "2", {"0 0 0.002", "1 0 1", "0 1", "1 1 0.5 extra"}) << 2
                         << 2 << QVector<double>{1.0, 500.0, 0.0, 250.0};
    // negative values become 0
    QTest::newRow("negative") << textImageFile("10", "13", "5", "6", {"a b -1", "a b 0.004", "a b -0.002"}) << 3 << 1
                              << QVector<double>{0.0, 2.0, 0.0};
    // ranges are truncated doubles; keys compare without case
    QTest::newRow("fractions, lower case")
        << QByteArray("#MQRS-CTImg\n# range_x0 : 1.9\n# Range_X1 : 3.2\n# RANGE_Y0 = 0\n# RANGE_Y1 = 1.99\nx y 1\n"
                      "x y 2\n")
        << 2 << 1 << QVector<double>{500.0, 1000.0};
    // the header ends at the first line without '#', which is the first pixel
    QTest::newRow("later hash lines are pixels")
        << QByteArray("#MQRS-CTImg\n# RANGE_X1 = 2\n# RANGE_Y1 = 1\n1 2 3\n# RANGE_X1 = 9\n") << 2 << 1
        << QVector<double>{1500.0, 0.0};
}

void TestImageReaders::textImage()
{
    QFETCH(QByteArray, content);
    QFETCH(int, width);
    QFETCH(int, height);
    QFETCH(QVector<double>, pixels);
    const QString file = path("t.txt");
    QVERIFY(writeFile(file, content));
    TiffData frame;
    QVERIFY(frame.read(file));
    QCOMPARE(frame.pixelType, int(PixelF32));
    QCOMPARE(frame.width, quint32(width));
    QCOMPARE(frame.height, quint32(height));
    for (int i = 0; i < pixels.size(); ++i)
        QCOMPARE(frame.pixel(i % width, i / width), double(float(pixels.at(i))));
    QCOMPARE(frame.min, double(float(*std::min_element(pixels.begin(), pixels.end()))));
    QCOMPARE(frame.max, double(float(*std::max_element(pixels.begin(), pixels.end()))));
}

// Which reader a file goes to is told by the messages it leaves; "%1"
// stands for the file name.
void TestImageReaders::detection_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QStringList>("messages");
    QTest::newRow("14 bytes of II") << QByteArray("II*\0abcdefghij", 14) << QStringList{"Error on reading file (1) %1"};
    QTest::newRow("empty") << QByteArray() << QStringList{"Error on reading file (1) %1"};
    // read as .img: width "E " = 0x2045 = 8261, height "te" = 0x6574 = 25972,
    // far beyond the file
    QTest::newRow("text starting IM") << QByteArray("IMAGE text that is no image at all\n")
                                      << QStringList{"invalid file size. expected (h,w) =  25972 8261",
                                                     "Error on reading (3) %1"};
    QTest::newRow("unknown magic") << QByteArray("PK\3\4 zipped stuff here") << QStringList();
    QTest::newRow("almost the text magic") << QByteArray("#MQRS-CTIm\nmore lines") << QStringList();
    // the text magic with no ranges: a size of 0 fails without a message
    QTest::newRow("text magic, no ranges") << QByteArray("#MQRS-CTImg\n1 2 3\n") << QStringList();
    QTest::newRow("missing file") << QByteArray("-") << QStringList{"Can not open (1) %1"};
}

void TestImageReaders::detection()
{
    QFETCH(QByteArray, content);
    QFETCH(QStringList, messages);
    // "-" stands for a file that is not there.
    const QString file = path(content == "-" ? "does-not-exist.tif" : "d.bin");
    if (content != "-")
        QVERIFY(writeFile(file, content));
    for (QString &m : messages)
        m.replace(QLatin1String("%1"), file);
    TiffData frame;
    {
        LogCapture log;
        QVERIFY(!frame.read(file));
        QCOMPARE(LogCapture::lines(), messages);
    }
    QCOMPARE(frame.pixelType, int(PixelNone));
    QVERIFY(frame.rows.isEmpty());
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

void TestImageReaders::badFiles_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("lastMessage"); // "%1": the file; empty: not checked (libtiff's texts)
    const QVector<quint32> six{1, 2, 3, 4, 5, 6};
    const QByteArray good16 = imgFile(3, 2, 0, 0, "x", six, 2);
    const QByteArray good32 = imgFile(3, 2, 0, 0, "BytesPerPixel=4", six, 4);
    QTest::newRow("img head only") << good16.left(20) << "Error on reading (3) %1";
    QTest::newRow("img 16 short by a byte") << good16.chopped(1) << "Error on reading (3) %1";
    QTest::newRow("img 32 short by a byte") << good32.chopped(1) << "Error on reading (2) %1";
    QTest::newRow("img comment beyond file") << imgFile(1, 1, 0, 0, QByteArray(10, 'c'), {1}, 2).left(70)
                                             << "Error on reading (3) %1";
    QTest::newRow("img absurd size") << imgFile(65535, 65535, 0, 0, "BytesPerPixel=4", six, 4)
                                     << "Too large image. (h,w) =  65535 65535 %1";
    QTest::newRow("img zero width") << imgFile(0, 5, 0, 0, "", six, 2) << "invalid image size. (h,w) =  5 0 %1";
    QTest::newRow("img zero height") << imgFile(5, 0, 0, 0, "", six, 2) << "invalid image size. (h,w) =  0 5 %1";
    const QByteArray tiff = validTiff(16, 16);
    QVERIFY(!tiff.isEmpty());
    QTest::newRow("tiff cut in half") << tiff.left(tiff.size() / 2) << "";
    QTest::newRow("tiff magic then garbage") << QByteArray("II*\0", 4) + QByteArray(200, '\x5a') << "";
    QTest::newRow("big-endian magic then garbage") << QByteArray("MM\0*", 4) + QByteArray(40, '\xff') << "";
    // 800 MB of pixels in a file of a few hundred bytes
    QTest::newRow("tiff claiming 20000x20000") << tiffClaimingSize(20000)
                                               << "TIFF image larger than its file 20000 20000 %1";
    // 7.2 GB: beyond any frame
    QTest::newRow("tiff claiming 60000x60000") << tiffClaimingSize(60000) << "Too large TIFF image 60000 60000 %1";
    QTest::newRow("text missing lines") << textImageFile("0", "2", "0", "2", {"0 0 1", "0 0 1", "0 0 1"})
                                        << "Text image ends before its last pixel %1";
    QTest::newRow("text X1 equals X0") << textImageFile("4", "4", "0", "2", {"0 0 1", "0 0 1"}) << "";
    QTest::newRow("text reversed Y") << textImageFile("0", "1", "3", "1", {"0 0 1", "0 0 1"}) << "";
    QTest::newRow("text absurd range") << textImageFile("0", "1e9", "0", "1e9", {"0 0 1"})
                                       << "Text image larger than its file 1000000000 1000000000 %1";
    // pinned to the int range: X1 - X0 is 2^32 - 1 and does not wrap to a small width
    QTest::newRow("text huge numbers") << textImageFile("-1e300", "1e300", "0", "1", {"0 0 1"})
                                       << "Text image larger than its file 4294967295 1 %1";
}

void TestImageReaders::badFiles()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, lastMessage);
    const QString file = path("bad.bin");
    QVERIFY(writeFile(file, content));
    TiffData frame;
    {
        LogCapture log;
        QVERIFY(!frame.read(file));
        if (!lastMessage.isEmpty()) {
            QVERIFY(!LogCapture::lines().isEmpty());
            QCOMPARE(LogCapture::lines().constLast(), lastMessage.arg(file));
        }
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

// Every cut and many random byte changes of valid files: a read either
// succeeds with consistent pixels or fails with none. Run under the
// sanitizers this also shows that no read leaves its buffers.
void TestImageReaders::corruptedFiles_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("tiff") << validTiff(9, 7);
    QTest::newRow("img 16") << imgFile(5, 4, 1, 2, "ExposureTime=1 ms", QVector<quint32>(20, 300), 2);
    QTest::newRow("img 32") << imgFile(5, 4, 1, 2, "BytesPerPixel=4", QVector<quint32>(20, 70000), 4);
    QTest::newRow("text") << textImageFile("0", "3", "0", "2", {"0 0 1", "1 0 2", "2 0 3", "0 1 4", "1 1 5", "2 1 6"});
}

void TestImageReaders::corruptedFiles()
{
    QFETCH(QByteArray, content);
    QVERIFY(!content.isEmpty());
    const QString file = path("corrupt.bin");
    QRandomGenerator rng(77);
    QVector<QByteArray> variants;
    for (qsizetype n = 0; n < content.size(); n += 1 + content.size() / 64)
        variants << content.left(n);
    for (int i = 0; i < 150; ++i) {
        QByteArray b = content;
        for (int k = 0; k < 3; ++k)
            b[rng.bounded(int(b.size()))] = char(rng.bounded(256));
        variants << b;
    }
    LogCapture log;
    for (const QByteArray &v : variants) {
        QVERIFY(writeFile(file, v));
        TiffData frame;
        if (frame.read(file)) {
            QVERIFY(frame.pixelType != PixelNone);
            QCOMPARE(quint32(frame.rows.size()), frame.height);
            QVERIFY(frame.width > 0);
            QVERIFY(qint64(frame.width) * frame.height <= kMaxFrameBytes);
            QVERIFY(frame.min <= frame.max);
        } else {
            QCOMPARE(frame.pixelType, int(PixelNone));
            QVERIFY(frame.rows.isEmpty());
        }
    }
}

QTEST_GUILESS_MAIN(TestImageReaders)
#include "tst_imagereaders.moc"
