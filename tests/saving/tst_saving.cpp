#include "analysis/Analyzer.h"
#include "analysis/LCFReference.h"
#include "app/Body.h"
#include "app/Globals.h"
#include "images/LogCapture.h"
#include "images/TiffData.h"
#include "network/StarsTestServer.h"
#include "support/E2eRun.h"
#include "support/SynthStack.h"
#include "view/ImgDispA.h"

#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QtTest>

#include <tiffio.h>
#include <unistd.h>

#include <cmath>

// Saving. Through the whole program, logged in to a test STARS server: a
// batch makes an edge map of generated stacks and saves it every way, first
// into a folder that takes no files, then into the run folder. Inside the
// main window, what no batch word reaches: the spectra of every point, the
// maps of the reference rows, the flat and dark frames. Values are checked
// against box sums and edges worked out here.
class TestSaving : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { InitGlobals(); }
    void run_data();
    void run();
    void eachSpectrum_data();
    void eachSpectrum();
    void allImagesAndFlatDark();
};

namespace {
const int W = 14, H = 10, NE = 72;

// I1 frames at 8940 eV and up, an edge moving across the image; I0 flat in
// energy, two frames at 8930 and 9012 eV.
SynthStack stack()
{
    SynthStack s;
    s.w = W, s.h = H, s.i0E = {8930, 9012};
    for (int k = 0; k < NE; ++k)
        s.i1E.push_back(8940.0 + k);
    s.i1 = [](int x, int y, int k) {
        const double e = 8940.0 + k, e0 = 8975 + 0.6 * x - 0.4 * y;
        const double mu = 0.3 + 0.0004 * (9000 - e) + (0.8 + 0.03 * y) * (0.5 + std::atan((e - e0) / 1.5) / M_PI);
        return std::round(30000 * std::exp(-mu)) + ((x * 7 + y * 13 + k * 5) % 7) - 3;
    };
    s.i0 = [](int x, int y, int) { return 20000 + 50 * x + 30 * y; };
    return s;
}

RefXafs refAt(int cx, int cy, int hw, int vw)
{
    RefElm elm;
    elm.edgeEV = 8977;
    return stack().spectrum(cx, cy, hw, vw, elm);
}

// The pixels of a 16-bit TIFF with the tags of the program's writer; empty
// when a tag differs.
std::vector<quint16> readTiff(const QString &path, quint32 &w, quint32 &h)
{
    std::vector<quint16> px;
    TIFF *t = TIFFOpen(QFile::encodeName(path).constData(), "r");
    if (!t)
        return px;
    quint32 rows = 0;
    quint16 tags[6] = {};
    const quint16 want[6] = {1, 1, 1, 1, 1, 16};
    const int ids[] = {TIFFTAG_COMPRESSION, TIFFTAG_PHOTOMETRIC, TIFFTAG_SAMPLESPERPIXEL, TIFFTAG_PLANARCONFIG,
                       TIFFTAG_ORIENTATION, TIFFTAG_BITSPERSAMPLE};
    for (int i = 0; i < 6; ++i)
        TIFFGetFieldDefaulted(t, ids[i], &tags[i]);
    if (TIFFGetField(t, TIFFTAG_IMAGEWIDTH, &w) && TIFFGetField(t, TIFFTAG_IMAGELENGTH, &h)
        && TIFFGetField(t, TIFFTAG_ROWSPERSTRIP, &rows) && rows == w && std::equal(tags, tags + 6, want)) {
        px.resize(std::size_t(w) * h);
        for (quint32 y = 0; y < h; ++y)
            TIFFReadScanline(t, px.data() + y * w, y);
    }
    TIFFClose(t);
    return px;
}
} // namespace

void TestSaving::run_data()
{
    QTest::addColumn<QString>("bad");
    QTest::newRow("missing folder") << "no/such";
    QTest::newRow("read-only folder") << "ro";
}

void TestSaving::run()
{
    E2E_REQUIRE_EXECUTABLE();
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

    QStringList batch = stack().write(dir);
    batch << "set_band_w 1" << "set_band_h 1" << "set_analyze_w 2" << "Suggesting_Edge_eV 8977" << "analyzer_exec_2da"
          << "select_disp_image_analyzed" << "move_position 5 4" << "saveDataCfg_tiff_scale_min -10";
    batch << QString("save_data_as_tiff %1/m.tif\nsave_image %1/p\nsave_spectra %1/s.dat\nsaveDataCfg_save_as_text\n"
                     "save_data %1/m.dat\nsaveDataCfg_save_as_tiff").arg(no).split('\n')
          << QString("save_data_as_tiff %1/a.tif\nsaveDataCfg_tiff_fix_scale 0\nsaveDataCfg_tiff_as_analyzed 0\n"
                     "save_data %1/f.tif\nsaveDataCfg_save_as_text\nsave_data %1/t.xyz\nsave_image %1/pic.jpg\n"
                     "save_image_w_num %1/pic 3\nsave_spectra %1/sp.dat\nsave_all_images %1/all.png\nquit")
                 .arg(dir).split('\n');
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

    // Into the bad folder: logged, announced where a picture is; the map
    // stays. No "cmd " line: every word of the batch has its action.
    const QString cant("Can't write " + no);
    E2E_VERIFY_LINES(log, (QStringList{cant + "/m-0.tif", cant + "/p.png", cant + "/p-cBar.png",
                                       cant + "/s5-4-1x1.png", "Can't open " + no + "/m-0.dat"}), QStringList{"cmd "});
    QCOMPARE(log.count("Can't "), 5);
    const QString s("Tessarelle>Dev _Saved");
    QTRY_COMPARE(dev.lines.mid(1), (QStringList{s + "Image " + no + "/p.png",
                                                s + "XafsData " + no + "/s5-4-1x1T.dat",
                                                s + "Screen " + no + "/s5-4-1x1.png",
                                                s + "DataAsText " + dir + "/t-0.dat",
                                                s + "Image " + dir + "/pic.jpg", s + "Image " + dir + "/pic-3.png",
                                                s + "XafsData " + dir + "/sp5-4-1x1T.dat",
                                                s + "Screen " + dir + "/sp5-4-1x1.png"}));

    // The map: each point's edge fills its 5 x 3 block; row 9 lies outside every block.
    double m[H][W] = {}, lo = 1e300, hi = -1e300;
    for (int y = 1; y < H - 1; y += 3)
        for (int x = 2; x < W; x += 5) {
            const double e = refAt(x, y, 1, 1).midx - 8977;
            lo = qMin(lo, e), hi = qMax(hi, e);
            for (int i = 0; i < 15; ++i)
                m[y - 1 + i / 5][qMin(W - 1, x - 2 + i % 5)] = e;
        }
    quint32 w = 0, h = 0;
    const std::vector<quint16> a = readTiff(dir + "/a-0.tif", w, h); // one pixel a point, fixed -10 .. 10
    QVERIFY2(a.size() == 9 && w == 3, qPrintable(log));
    for (int i = 0; i < 9; ++i)
        QVERIFY(std::abs(a[i] - (m[1 + i / 3 * 3][2 + i % 3 * 5] + 10) / 20 * 65535) <= 1);
    const std::vector<quint16> f = readTiff(dir + "/f-0.tif", w, h); // every pixel, the map's range
    QVERIFY(f.size() == W * H && w == W && lo < 0 && hi > 0);
    for (int i = 0; i < W * H; ++i)
        QVERIFY(std::abs(f[i] - (m[i / W][i % W] - lo) / (hi - lo) * 65535) <= 1);
    QVERIFY(!QImage(dir + "/f-0--cBar.tif").isNull() && !QImage(dir + "/sp5-4-1x1.png").isNull());
    QVERIFY(QDir(dir).entryList({"all*"}).isEmpty()); // no reference row has a map
    for (const char *name : {"pic.jpg", "pic-cBar.jpg", "pic.info", "pic-3-cBar.png"})
        QVERIFY2(QFileInfo::exists(dir + '/' + name), name);

    // The picture: the shown part of the map, where the .info says, one grey a block.
    QFile info(dir + "/pic-3.info");
    QVERIFY(info.open(QIODevice::ReadOnly));
    const QRegularExpression form("^###Tessarelle::ImgInfo\nVIEWING Xs {10}: \t(\\S+)\nVIEWING Ys {10}: \t(\\S+)\n"
                                  "VIEWING Xe {10}: \t(\\S+)\nVIEWING Ye {10}: \t(\\S+)\n$");
    const QRegularExpressionMatch im = form.match(QString::fromLatin1(info.readAll()));
    QVERIFY(im.hasMatch());
    const int v[4] = {int(im.captured(1).toDouble()), int(im.captured(2).toDouble()), int(im.captured(3).toDouble()),
                      int(im.captured(4).toDouble())};
    const QImage pic(dir + "/pic-3.png");
    QCOMPARE(pic.size(), QSize(v[2] - v[0], v[3] - v[1]));
    QHash<int, QRgb> grey; // the first grey met in each block, which every other pixel there repeats
    for (int j = 0; j < pic.height(); ++j)
        for (int i = 0, x = v[0], y = j + v[1]; i < pic.width(); ++i, ++x)
            if (x >= 0 && y >= 0 && x < W && y < H) {
                const int block = y < 9 ? y / 3 * 3 + x / 5 : -1;
                QCOMPARE(grey.value(block, pic.pixel(i, j)), pic.pixel(i, j));
                grey.insert(block, pic.pixel(i, j));
            }
    QVERIFY(QSet<QRgb>(grey.cbegin(), grey.cend()).size() > 2);
}

namespace {
// The stacks of the run above, handed to the window as a loader would.
void loadStacks(Body &b)
{
    const SynthStack s = stack();
    for (int k = 0; k < NE + 2; ++k) {
        auto *f = new TiffData;
        f->allocate(W, H, PixelU16);
        for (int p = 0; p < W * H; ++p)
            f->setPixel(p % W, p / W, k < NE ? s.i1(p % W, p / W, k) : s.i0(p % W, p / W, 0));
        k < NE ? b.loadedI1(f, k, NE) : b.loadedI0(f, k - NE, 2);
        f->energy = k < NE ? s.i1E[size_t(k)] : s.i0E[size_t(k - NE)];
    }
    b.finishedLoadI1Files();
    b.finishedLoadI0Files();
}
} // namespace

void TestSaving::eachSpectrum_data()
{
    QTest::addColumn<QString>("kind");      // the radio button
    QTest::addColumn<QList<int>>("region"); // x0, y0, x1, y1; none for the whole image
    QTest::addColumn<QList<int>>("bins");   // view half width, height; analysis half width, height
    QTest::newRow("normalised, whole image") << "SaveAsNormalizedXAFS" << QList<int>() << QList<int>{1, 1, 2, 1};
    // Boxes reach past the image; the last block of a row past the region.
    QTest::newRow("xafs, region backwards") << "SaveAsRawXAFS" << QList<int>{12, 9, 3, 2} << QList<int>{2, 1, 2, 0};
    QTest::newRow("raw, narrow region") << "SaveAsRaw" << QList<int>{5, 0, 6, 10} << QList<int>{0, 3, 1, 1};
    QTest::newRow("missing folder") << "SaveAsRaw" << QList<int>() << QList<int>{0, 0, 0, 0};
}

void TestSaving::eachSpectrum()
{
    QFETCH(QString, kind);
    QFETCH(QList<int>, region);
    QFETCH(QList<int>, bins);
    QTemporaryDir tmp;
    const bool missing = QByteArray(QTest::currentDataTag()).startsWith("missing");
    const QString name = tmp.filePath(missing ? "no/spectra" : "spectra");
    Body b;
    loadStacks(b);
    b.findChild<QAbstractButton *>(kind.toLatin1())->setChecked(true);
    if (!region.isEmpty())
        b.findChild<ImgDispA *>()->setSelectedArea(region[0], region[1], region[2], region[3]);
    const char *names[] = {"vHWidth_", "vVWidth_", "aHWidth_", "aVWidth_"};
    for (int i = 0; i < 4; ++i)
        b.findChild<QLineEdit *>(names[i])->setText(QString::number(bins[i]));
    b.findChild<QLineEdit *>("SuggestingEeV")->setText("8977");
    LogCapture log;
    b.saveEachSpectrum(name + ".txt");
    QFile f(name + ".dat");
    QCOMPARE(f.open(QIODevice::ReadOnly), LogCapture::lines().count("Can't open " + f.fileName()) == 0);
    if (!f.isOpen())
        return;
    const QStringList lines = QString::fromLatin1(f.readAll()).split('\n');

    const QList<int> r = region.isEmpty() ? QList<int>{0, 0, W, H} : region;
    const int x0 = qMin(r[0], r[2]), x1 = qMax(r[0], r[2]), y0 = qMin(r[1], r[3]), y1 = qMax(r[1], r[3]);
    const int bx = bins[2], by = bins[3], dx = 2 * bx + 1, dy = 2 * by + 1;
    const int nx = (x1 - x0 - bx - 1) / dx + 1, ny = (y1 - y0 - by - 1) / dy + 1;
    const QString first = kind == "SaveAsRaw" ? "Raw" : kind == "SaveAsRawXAFS" ? "Raw Xafs" : "Normalized Xafs";
    QCOMPARE(lines.mid(0, 7), (QStringList{"# Tessarelle Save " + first + " Spectra 1.0",
                                           QString("# X-Range (x0, x1), steps : %1 %2 %3").arg(x0).arg(x1).arg(nx),
                                           QString("# Y-Range (y0, y1), steps : %1 %2 %3").arg(y0).arg(y1).arg(ny),
                                           QString("# Full Width, Height      : %1 %2").arg(W).arg(H),
                                           QString("# Bin Half Width, Height  : %1 %2").arg(by).arg(bx),
                                           QString("# Step dX, dY             : %1 %2").arg(dx).arg(dy),
                                           "# End of Header"}));
    const double lastRow = double(by + (ny - 1) * dy) / (y1 - y0) * 100;
    QVERIFY(LogCapture::lines().contains(QString("Save Xafs Spectra : Progress %1").arg(lastRow)));

    // The walk, row by row; every point one line.
    const int head = kind == "SaveAsRaw" ? 2 : 3;
    int n = 7;
    for (int y = y0 + by; y < y1 || y == y0 + by; y += dy)
        for (int x = x0 + bx; x < x1 || x == x0 + bx; x += dx) {
            const QStringList v = lines.value(n++).split(' ');
            QCOMPARE(v.mid(0, head), (QStringList{QString::number(x), QString::number(y), "0"}.mid(0, head)));
            QCOMPARE(v.size(), head + 2 * NE);
            const SynthStack st = stack();
            const RefXafs ref = refAt(x, y, bins[0], bins[1]);
            for (int k = 0; k < NE; ++k) {
                const double want = head == 2 ? st.box(st.i1, k, x, y, bins[0], bins[1])
                                    : kind == "SaveAsRawXAFS" ? ref.ys[size_t(k)] : ref.norm(k);
                const QString &got = v[head + 2 * k + 1];
                QCOMPARE(v[head + 2 * k].toDouble(), 8940.0 + k);
                QVERIFY2(std::fabs(got.toDouble() - want) <= 1e-5 * std::fabs(want) + 1e-7,
                         qPrintable(QString("(%1, %2) frame %3: %4, not %5").arg(x).arg(y).arg(k).arg(got).arg(want)));
            }
        }
    QCOMPARE(n, 7 + nx * ny);
    QCOMPARE(lines.size(), n + 1);
}

void TestSaving::allImagesAndFlatDark()
{
    QTemporaryDir tmp;
    QVERIFY(QDir::setCurrent(tmp.path()));
    Body b;
    auto *a = b.findChild<Analyzer *>();
    AnalyzeCond c; // maps with images in rows 1 and 2, but not map 1 of row 2
    c.setUp(W, H, 0, 0, QRectF(0, 0, W, H), 1, 1);
    for (int i = 1; i < 3; ++i)
        for (int j = 0; j < 3 - i; ++j) {
            Analyzed2DRes *m = a->lcfrs[i]->maps[j];
            m->setUp(c);
            for (int p = 0; p < W * H; ++p)
                m->setData(p % W, p / W, 0, 0, p * (i + j));
            m->genImg();
        }
    b.saveAllImages("all.png"); // no row shown
    a->selectImage(2);
    b.saveAllImages("all.png");
    a->lcfrs[2]->showButton()->setEnabled(false);
    b.saveAllImages("none.png");
    a->selectImage(1);
    b.saveAllImages("one.png");
    QCOMPARE(QDir().entryList(QDir::Files), (QStringList{"all-2-0.png", "one-1-0.png", "one-1-1.png"}));
    QCOMPARE(QImage("one-1-1.png").convertToFormat(QImage::Format_Grayscale8), *a->lcfrs[1]->maps[1]->img());

    // Flat and dark: nothing without an image, then frames of its size.
    auto *button = b.findChild<QPushButton *>("SaveFlatDark");
    button->click();
    QVERIFY(!QFileInfo::exists("flat.dat"));
    loadStacks(b);
    button->click();
    quint32 w = 0, h = 0;
    QCOMPARE(readTiff("flat.dat", w, h), std::vector<quint16>(W * H, 1));
    QCOMPARE(readTiff("dark.dat", w, h), std::vector<quint16>(W * H, 0));
    QCOMPARE(QSize(w, h), QSize(W, H));
}

QTEST_MAIN(TestSaving)
#include "tst_saving.moc"
