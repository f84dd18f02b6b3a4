#include "FrameFiles.h"
#include "LogCapture.h"

#include "analysis/Analyzed2DRes.h"
#include "app/ConfigTable.h"
#include "calibration/EmpFile.h"
#include "images/ErrPoints.h"
#include "images/RefEnergies.h"
#include "images/TiffData.h"
#include "images/TiffWriter.h"
#include "network/StarsKeys.h"
#include "spectrum/ElmEdges.h"
#include "spectrum/XafsSpectrum.h"

#include <QRandomGenerator>
#include <QtTest>

#include <cmath>

using namespace FrameFiles;

// Every reader against what half-written files, other programs and careless
// hands give it: each file kind cut at every length of its first 256 bytes,
// sizes claimed past 2^31 or past the file, NaN and infinities in numbers,
// a folder in place of the file, and names with blanks and non-ASCII
// letters. None may crash or hang; what a reader accepts must be whole.
class TestBadInput : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { QVERIFY(dir.isValid()); }
    void readers_data();
    void readers();

private:
    QTemporaryDir dir;
};

namespace {

enum Mode { Cuts, Folder, Once };

// Reads path as a file of `kind`: 1 accepted and whole, 0 refused, -1
// accepted but not whole (rows missing, extremes wrong, a value out of range).
int readAs(const QString &kind, const QString &path)
{
    if (kind == "frame") {
        TiffData f;
        if (!f.read(path))
            return f.rows.isEmpty() && f.pixelType == PixelNone ? 0 : -1;
        const bool whole = quint32(f.rows.size()) == f.height && f.width > 0 && !std::isnan(f.min)
            && !std::isnan(f.max) && f.min <= f.max && qint64(f.width) * f.height <= kMaxFrameBytes;
        return whole ? 1 : -1;
    }
    if (kind == "mask") {
        ErrPoints m;
        return m.load(path, false) ? 1 : (m.points.isEmpty() && !m.inUse ? 0 : -1);
    }
    if (kind == "spectrum") {
        XafsSpectrum s;
        if (!s.load(path))
            return s.points.isEmpty() ? 0 : -1;
        // A scan file counts as read even without data rows.
        const bool whole = s.isMuteFormat ? !s.points.isEmpty()
                                          : s.i0Curve.points.size() == s.points.size()
                                                && s.i1Curve.points.size() == s.points.size();
        return whole ? 1 : -1;
    }
    if (kind == "ref") {
        RefEnergies r;
        r.energies = {1.0};
        if (!r.read(path, 3.13551))
            return r.energies == QVector<double>{1.0} ? 0 : -1;
        return 1;
    }
    if (kind == "emp") {
        QFile f(path);
        if (!f.open(QIODevice::ReadOnly | QIODevice::Text))
            return 0;
        const EMPHeader h = EmpFile::readHeader(f);
        if (!h.valid || !EmpFile::bodyFits(h, f.size() - f.pos()))
            return 0;
        Analyzed2DRes map;
        EmpFile::readBody(f, h, h.stdEdgeE, map);
        map.genImg();
        return 1;
    }
    if (kind == "config") {
        ConfigTable t;
        return t.load(path) ? 1 : (t.keys.isEmpty() ? 0 : -1);
    }
    if (kind == "edges") {
        const bool ok = loadElmEdges(path);
        if (elmEdgeRows < 0 || elmEdgeRows > ElmEdgesMax)
            return -1;
        return ok ? 1 : (elmEdgeRows == 0 ? 0 : -1);
    }
    if (kind == "keys")
        return StarsKeys::read(path).isEmpty() ? 0 : 1;
    return -1;
}

QByteArray tiffBytes(quint32 w, quint32 h)
{
    const QString name = QDir::temp().filePath("tst_badinput_seed.tif");
    const QVector<quint16> px(w * h, 1234);
    QFile f(name);
    const bool ok = writeTiff16(name, w, h, px.constData(), 0.5) && f.open(QIODevice::ReadOnly);
    const QByteArray b = ok ? f.readAll() : QByteArray();
    f.remove();
    return b;
}

QByteArray empBytes(const QByteArray &w, const QByteArray &h, const QByteArray &body)
{
    auto key = [](const char *k) -> QByteArray { return QByteArray(k).leftJustified(24, ' ') + ": "; };
    return "###TSRL\n" + key("Std Edge Energy [eV]") + "8979\n" + key("Spacing [nm]") + "3.13551\n"
        + key("Width [pix]") + w + "\n" + key("Height [pix]") + h + "\n" + key("Map Height") + h + "\n"
        + "##-----------------\n" + body;
}

} // namespace

// expect: 1 the reader accepts the file, 0 it refuses it, -1 either (only
// whole results count then). For Cuts the whole file must be accepted, and
// every cut, and every copy with a few bytes changed at random, must be
// either refused or accepted whole.
void TestBadInput::readers_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<int>("mode");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("expect");

    const QByteArray tiff = tiffBytes(9, 7);
    const QByteArray img = imgFile(5, 4, 1, 2, "ExposureTime=1 ms", QVector<quint32>(20, 300), 2);
    const QByteArray text = textImageFile("0", "3", "0", "2", {"0 0 1", "1 0 2", "2 0 3", "0 1 4", "1 1 5", "2 1 6"});
    QByteArray spectrum, scan = "9809 PF\n D= 3.13551 A\nOffset 0 0 0 0\n";
    for (int i = 0; i < 40; ++i) {
        spectrum += QByteArray::number(8900 + 2.5 * i) + " " + QByteArray::number(i > 20 ? 1.1 : 0.1) + "\n";
        scan += "0 " + QByteArray::number(14.3 - 0.01 * i) + " 1 100000 " + QByteArray::number(40000 - 200 * i) + "\n";
    }
    QFile edgeRes(":Victoreen1.txt");
    QVERIFY(edgeRes.open(QIODevice::ReadOnly));
    const QByteArray edges = edgeRes.readAll();
    const QByteArray emp = empBytes("3", "2", "0.001 0 -0.002 \n0 0 1e-4 \n");
    const QByteArray config = "DataRoot /data\nbatch :for a i 1 3\nbatch :next a\nWidth\t512 # px\n";

    const QList<std::pair<const char *, std::pair<QString, QByteArray>>> files = {
        {"tiff", {"frame", tiff}},     {"img", {"frame", img}},          {"text image", {"frame", text}},
        {"mask", {"mask", "# Size 8 8\n1 2\n3 4\n"}}, {"columns", {"spectrum", spectrum}},
        {"9809", {"spectrum", scan}},  {"ref 9809", {"ref", scan}},      {"ref table", {"ref", "a\n14.3\n14.2\n"}},
        {"emp", {"emp", emp}},         {"config", {"config", config}}, {"edges", {"edges", edges}},
        {"keys", {"keys", "k0\nk1\n"}}};
    const QByteArray img32 = imgFile(5, 4, 1, 2, "BytesPerPixel=4", QVector<quint32>(20, 70000), 4);
    QTest::addRow("img 32 cut") << "frame" << int(Cuts) << img32 << 1;
    for (const auto &[name, f] : files) {
        QTest::addRow("%s cut", name) << f.first << int(Cuts) << f.second << 1;
        QTest::addRow("%s folder", name) << f.first << int(Folder) << QByteArray() << 0;
    }

    // Sizes past 2^31 and past the file.
    QTest::newRow("img 65535 x 65535 x 4") << "frame" << int(Once)
                                           << imgFile(65535, 65535, 0, 0, "BytesPerPixel=4", {1, 2}, 4) << 0;
    QTest::newRow("img past its file") << "frame" << int(Once) << img.left(img.size() - 1) << 0;
    QTest::newRow("img comment past file") << "frame" << int(Once)
                                           << QByteArray(img).replace(2, 2, QByteArray("\xff\xff", 2)) << 0;
    QTest::newRow("text 2^31 wide") << "frame" << int(Once) << textImageFile("0", "2147483648", "0", "2", {"1"}) << 0;
    QTest::newRow("text 3e9 x 3e9") << "frame" << int(Once) << textImageFile("-3e9", "3e9", "0", "3e9", {"1"}) << 0;
    QByteArray tiffHuge = tiff;
    for (const TiffTag &t : firstDirectory(tiff))
        if (t.tag == 256 || t.tag == 257) // width and length as LONG 0xffffffff
            tiffHuge.replace(int(t.entryPos) + 2, 10, QByteArray("\x04\0\x01\0\0\0\xff\xff\xff\xff", 10));
    QTest::newRow("tiff 2^32-1 square") << "frame" << int(Once) << tiffHuge << 0;
    QTest::newRow("emp 2^31-1 wide") << "emp" << int(Once) << empBytes("2147483647", "2147483647", "0 0\n") << 0;
    QTest::newRow("emp past file") << "emp" << int(Once) << empBytes("300", "300", "0 0\n") << 0;
    QTest::newRow("emp negative") << "emp" << int(Once) << empBytes("-5", "2", "0 0\n") << 0;
    QTest::newRow("mask size 2^31") << "mask" << int(Once) << QByteArray("# Size 2147483648 99999999999\n1 1\n") << 1;

    // NaN and infinities in every numeric field.
    QTest::newRow("text nan pixels") << "frame" << int(Once)
                                     << textImageFile("0", "2", "0", "2", {"0 0 nan", "1 0 inf", "0 1 -inf", "1 1 2"})
                                     << 1;
    QTest::newRow("text nan ranges") << "frame" << int(Once) << textImageFile("nan", "inf", "-inf", "nan", {"1"}) << 0;
    QTest::newRow("img nan exposure") << "frame" << int(Once)
                                      << imgFile(2, 1, 0, 0, "ExposureTime=nan s", {1, 2}, 2) << 1;
    QTest::newRow("columns nan inf") << "spectrum" << int(Once)
                                     << QByteArray("nan 1\ninf nan\n8990 inf\n-inf -inf\n8995 2\n9000 nan\n") << 1;
    QTest::newRow("9809 nan") << "spectrum" << int(Once)
                              << QByteArray("9809\n D= nan\nOffset\n0 nan 1 inf 5\n0 14 1 nan nan\n0 inf 1 1 1\n")
                              << 1;
    QTest::newRow("ref nan") << "ref" << int(Once) << QByteArray("a\nnan\ninf\n-inf\n") << 1;
    QTest::newRow("emp nan") << "emp" << int(Once)
                             << empBytes("2", "2", "nan inf \n-inf 1e400 \n").replace("8979", "nan") << 1;
    QTest::newRow("mask nan") << "mask" << int(Once) << QByteArray("# Size nan inf\nnan inf\n1e400 -1e400\n") << 1;
    QTest::newRow("edges nan") << "edges" << int(Once) << edges.left(400) + "\nXx 3 nan inf -inf 1e400\n" << 1;
    QTest::newRow("config empty") << "config" << int(Once) << QByteArray() << 1;
}

void TestBadInput::readers()
{
    QFETCH(QString, kind);
    QFETCH(int, mode);
    QFETCH(QByteArray, content);
    QFETCH(int, expect);
    LogCapture log;

    // The files live in a folder whose name has a blank and non-ASCII letters.
    QDir d(dir.path());
    const QString sub = QStringLiteral("mes donn\u00e9es \u6e2c\u5b9a");
    QVERIFY(d.mkpath(sub));
    const QString path = d.filePath(sub + QStringLiteral("/fichier \u00e0 lire.dat"));
    QFile::remove(path);
    if (mode == Folder) {
        QVERIFY(d.mkpath(path));
        QCOMPARE(readAs(kind, path), expect);
        QVERIFY(QDir(path).removeRecursively());
        return;
    }
    if (mode == Once) {
        QVERIFY(writeFile(path, content));
        const int r = readAs(kind, path);
        QVERIFY2(r >= 0, "accepted but not whole");
        if (expect >= 0)
            QVERIFY2(r == expect, qPrintable(LogCapture::lines().join('\n')));
        return;
    }
    QVERIFY(writeFile(path, content));
    QVERIFY2(readAs(kind, path) == 1, qPrintable(LogCapture::lines().join('\n')));
    for (qsizetype n = 0; n < qMin<qsizetype>(256, content.size()); ++n) {
        QVERIFY(writeFile(path, content.left(n)));
        QVERIFY2(readAs(kind, path) >= 0, qPrintable(QString("cut at %1").arg(n)));
    }
    QRandomGenerator rng(77);
    for (int i = 0; i < 100; ++i) {
        QByteArray b = content;
        for (int k = 0; k < 3; ++k)
            b[rng.bounded(int(b.size()))] = char(rng.bounded(256));
        QVERIFY(writeFile(path, b));
        QVERIFY2(readAs(kind, path) >= 0, qPrintable(QString("scrambled copy %1").arg(i)));
    }
}

QTEST_GUILESS_MAIN(TestBadInput)
#include "tst_badinput.moc"
