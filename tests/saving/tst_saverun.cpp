#include "images/TiffWriter.h"
#include "network/StarsTestServer.h"
#include "support/E2eRun.h"
#include "support/RefXafs.h"

#include <QImage>
#include <QProcess>
#include <QtTest>

#include <tiffio.h>
#include <unistd.h>

#include <cmath>

// Saving through the whole program, logged in to a test STARS server: a
// batch makes an edge map of generated stacks and saves everything first into
// a folder that takes no files, then into the run folder. The TIFF values are
// checked against edges worked out here, and a second client of the server
// sees the announcements.
class TestSaveRun : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { E2E_REQUIRE_EXECUTABLE(); }
    void saves_data();
    void saves();
};

namespace {
const int W = 14, H = 10, NE = 72;

double i1Pixel(int x, int y, int k)
{
    const double e = 8940.0 + k, e0 = 8975 + 0.6 * x - 0.4 * y;
    const double mu = 0.3 + 0.0004 * (9000 - e) + (0.8 + 0.03 * y) * (0.5 + std::atan((e - e0) / 1.5) / M_PI);
    return std::round(30000 * std::exp(-mu)) + ((x * 7 + y * 13 + k * 5) % 7) - 3;
}

// The edge of the 3 x 3 box at (cx, cy) against 8977 eV; I0 is flat in
// energy, so its two frames need no interpolation.
double edgeAt(int cx, int cy)
{
    std::vector<double> es, mus;
    for (int k = 0; k < NE; ++k) {
        double a = 0, b = 0;
        for (int y = qMax(0, cy - 1); y <= qMin(H - 1, cy + 1); ++y)
            for (int x = qMax(0, cx - 1); x <= qMin(W - 1, cx + 1); ++x)
                a += 20000 + 50 * x + 30 * y, b += i1Pixel(x, y, k);
        es.push_back(8940.0 + k), mus.push_back(std::log(a / b));
    }
    RefElm elm;
    elm.edgeEV = 8977;
    return RefXafs(es, mus, elm).midx - 8977;
}

// The pixels of a 16-bit TIFF as the map savers write it; empty when a tag is off.
std::vector<quint16> readTiff(const QString &path, quint32 &w, quint32 &h)
{
    std::vector<quint16> px;
    TIFF *t = TIFFOpen(QFile::encodeName(path).constData(), "r");
    quint16 tags[6] = {};
    const quint16 want[6] = {1, 1, 1, 1, 1, 16};
    quint32 rows = 0;
    if (!t)
        return px;
    const bool ok = TIFFGetField(t, TIFFTAG_IMAGEWIDTH, &w) && TIFFGetField(t, TIFFTAG_IMAGELENGTH, &h)
                    && TIFFGetField(t, TIFFTAG_ROWSPERSTRIP, &rows) && rows == w;
    const int ids[] = {TIFFTAG_COMPRESSION, TIFFTAG_PHOTOMETRIC, TIFFTAG_SAMPLESPERPIXEL, TIFFTAG_PLANARCONFIG,
                       TIFFTAG_ORIENTATION, TIFFTAG_BITSPERSAMPLE};
    for (int i = 0; i < 6; ++i)
        TIFFGetFieldDefaulted(t, ids[i], &tags[i]);
    if (ok && std::equal(tags, tags + 6, want)) {
        px.resize(std::size_t(w) * h);
        for (quint32 y = 0; y < h; ++y)
            TIFFReadScanline(t, px.data() + y * w, y);
    }
    TIFFClose(t);
    return px;
}
} // namespace

void TestSaveRun::saves_data()
{
    QTest::addColumn<QString>("bad");
    QTest::newRow("missing folder") << "no/such";
    QTest::newRow("read-only folder") << "ro";
}

void TestSaveRun::saves()
{
    QFETCH(QString, bad);
    E2eRun run;
    const QString dir = run.dir();
    QVERIFY(QDir(dir).mkdir("srv") && QDir(dir).mkdir("ro"));
    // Permissions do not bind root, for whom /sys is a folder that takes no files.
    const QString no = bad == "ro" && geteuid() == 0 ? QString("/sys") : dir + '/' + bad;
    QFile::setPermissions(dir + "/ro", QFile::ReadOwner | QFile::ExeOwner);
    run.writeFile("srv/Tessarelle.key", "k0\nk1\n");
    run.writeFile("srv/Dev.key", "k0\nk1\n");
    StarsTestServer server(dir + "/srv");
    QVERIFY(server.listen());
    StarsTestPeer dev("Dev", dir + "/srv/Dev.key", server.port());
    QTRY_VERIFY(dev.ready);
    dev.send("System flgon Tessarelle");
    QTRY_COMPARE(dev.lines.size(), 1);

    std::vector<quint16> px(W * H);
    QStringList i1;
    for (int k = 0; k < NE; ++k) {
        for (int p = 0; p < W * H; ++p)
            px[p] = quint16(i1Pixel(p % W, p / W, k));
        i1 << QString("%1/i1_%2.tif").arg(dir).arg(8940 + k);
        QVERIFY(writeTiff16(i1.last(), W, H, px.data()));
    }
    for (int p = 0; p < W * H; ++p)
        px[p] = quint16(20000 + 50 * (p % W) + 30 * (p / W));
    QVERIFY(writeTiff16(dir + "/i0_8930.tif", W, H, px.data()) && writeTiff16(dir + "/i0_9020.tif", W, H, px.data()));
    const QStringList saves{"save_data_as_tiff %1/m.tif", "save_image %1/p", "save_spectra %1/s.dat",
                            "saveDataCfg_save_as_text", "save_data %1/m.dat", "saveDataCfg_save_as_tiff"};
    QStringList batch{"set_i1_energy_pattern \\d\\d\\d\\d", "set_i0_energy_pattern \\d\\d\\d\\d",
                      "load_I1_files new " + i1.join(' '), "load_I0_files new " + dir + "/i0_8930.tif " + dir
                          + "/i0_9020.tif", "set_band_w 1", "set_band_h 1", "set_analyze_w 2",
                      "Suggesting_Edge_eV 8977", "analyzer_exec_2da", "select_disp_image_analyzed",
                      "move_position 5 4", "saveDataCfg_tiff_scale_min -10"};
    batch << saves.join('\n').arg(no).split('\n') << "save_data_as_tiff " + dir + "/a.tif"
          << "saveDataCfg_tiff_fix_scale 0" << "saveDataCfg_tiff_as_analyzed 0" << "save_data " + dir + "/f.tif"
          << "saveDataCfg_save_as_text" << "save_data " + dir + "/t.xyz" << "save_image " + dir + "/pic.jpg"
          << "save_image_w_num " + dir + "/pic 3" << "save_spectra " + dir + "/sp.dat"
          << "save_all_images " + dir + "/all.png" << "quit";
    run.writeFile("script.bat", batch.join('\n') + '\n');
    run.writeFile("config.cfg", QString("batch :end\nNAME_ON_STARS Tessarelle\nKEY_ON_STARS srv/Tessarelle.key\n"
                                        "STARS_IP 127.0.0.1\nSTARS_PORT %1\n").arg(server.port()));
    QProcess p;
    p.setWorkingDirectory(dir);
    p.start(E2eRun::executable(), {"-e", "-c", "config.cfg", "-b", "script.bat", "-x"});
    QTRY_VERIFY_WITH_TIMEOUT(p.state() == QProcess::NotRunning, 60000);
    const QString log = QString::fromUtf8(p.readAllStandardError());
    QVERIFY2(p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0, qPrintable(log));
    QVERIFY2(log.indexOf("Connected To Stars") < log.indexOf("saveDataAsTiff"), "logged in too late for the test");

    // Into the bad folder: logged, announced where a picture is, and the map stays.
    const QString cant("Can't write " + no);
    E2E_VERIFY_LINES(log, (QStringList{cant + "/m-0.tif", cant + "/p.png", cant + "/p-cBar.png",
                                       cant + "/s5-4-1x1.png", "Can't open " + no + "/m-0.dat"}), QStringList());
    QCOMPARE(log.count("Can't "), 5);
    const QString from("Tessarelle>Dev _");
    QTRY_COMPARE(dev.lines.mid(1), (QStringList{from + "SavedImage " + no + "/p.png",
                                                from + "SavedXafsData " + no + "/s5-4-1x1T.dat",
                                                from + "SavedScreen " + no + "/s5-4-1x1.png",
                                                from + "SavedDataAsText " + dir + "/t-0.dat",
                                                from + "SavedImage " + dir + "/pic.jpg",
                                                from + "SavedImage " + dir + "/pic-3.png",
                                                from + "SavedXafsData " + dir + "/sp5-4-1x1T.dat",
                                                from + "SavedScreen " + dir + "/sp5-4-1x1.png"}));

    // The map: each point's edge fills its 5 x 3 block; row 9 lies outside every block.
    double m[H][W] = {}, lo = 1e300, hi = -1e300;
    for (int y = 1; y < H; y += 3)
        for (int x = 2; x < W; x += 5) {
            const double e = edgeAt(x, y);
            lo = qMin(lo, e), hi = qMax(hi, e);
            for (int yy = y - 1; yy <= y + 1; ++yy)
                for (int xx = x - 2; xx <= qMin(W - 1, x + 2); ++xx)
                    m[yy][xx] = e;
        }
    quint32 w = 0, h = 0;
    const std::vector<quint16> a = readTiff(dir + "/a-0.tif", w, h); // one pixel a point, fixed -10 .. 10
    QVERIFY2(a.size() == 9 && w == 3, qPrintable(log));
    for (int i = 0; i < 9; ++i)
        QVERIFY(std::abs(a[i] - (m[1 + i / 3 * 3][2 + i % 3 * 5] + 10) / 20 * 65535) <= 1);
    const std::vector<quint16> f = readTiff(dir + "/f-0.tif", w, h); // every pixel, the map's range
    QVERIFY(w == W && h == H && lo < 0 && hi > 0);
    for (int i = 0; i < W * H; ++i)
        QVERIFY(std::abs(f[i] - (m[i / W][i % W] - lo) / (hi - lo) * 65535) <= 1);
    QVERIFY(!QImage(dir + "/f-0--cBar.tif").isNull() && QFileInfo::exists(dir + "/t-0.dat"));
    QVERIFY(!QImage(dir + "/sp5-4-1x1.png").isNull() && QDir(dir).entryList({"all*"}).isEmpty());

    // The pictures: the shown part of the map, where the .info says it lies.
    for (const char *name : {"pic.jpg", "pic-cBar.jpg", "pic.info", "pic-3-cBar.png"})
        QVERIFY2(QFileInfo::exists(dir + '/' + name), name);
    QFile info(dir + "/pic-3.info");
    QVERIFY(info.open(QIODevice::ReadOnly));
    const QStringList lines = QString::fromLatin1(info.readAll()).split('\n');
    QCOMPARE(lines.size(), 6);
    QCOMPARE(lines[0], "###Tessarelle::ImgInfo");
    double v[4];
    for (int i = 0; i < 4; ++i) {
        QVERIFY(lines[i + 1].startsWith(QString("VIEWING %1%2          : \t").arg("XYXY"[i]).arg(i < 2 ? 's' : 'e')));
        v[i] = lines[i + 1].section('\t', 1).toDouble();
    }
    const QImage pic(dir + "/pic-3.png");
    QCOMPARE(pic.size(), QSize(int(v[2]) - int(v[0]), int(v[3]) - int(v[1])));
    QHash<int, QRgb> grey; // one grey per block of the map
    for (int j = 0; j < pic.height(); ++j)
        for (int i = 0; i < pic.width(); ++i) {
            const int x = i + int(v[0]), y = j + int(v[1]);
            if (x >= 0 && y >= 0 && x < W && y < H) {
                const int block = y < 9 ? y / 3 * 3 + x / 5 : -1;
                QCOMPARE(grey.value(block, pic.pixel(i, j)), pic.pixel(i, j));
                grey.insert(block, pic.pixel(i, j));
            }
        }
    QVERIFY(QSet<QRgb>(grey.cbegin(), grey.cend()).size() > 2);
}

QTEST_GUILESS_MAIN(TestSaveRun)
#include "tst_saverun.moc"
