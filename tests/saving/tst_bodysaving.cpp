#include "analysis/Analyzer.h"
#include "analysis/LCFReference.h"
#include "app/Body.h"
#include "app/Globals.h"
#include "images/LogCapture.h"
#include "images/TiffData.h"
#include "support/RefXafs.h"
#include "view/ImgDispA.h"

#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

#include <tiffio.h>

#include <cmath>

// The saves that no batch word reaches, inside the main window: the spectra
// of every point of the analysis area in their three kinds, the maps of the
// reference rows, and the neutral flat and dark frames.
class TestBodySaving : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { InitGlobals(); }
    void eachSpectrum_data();
    void eachSpectrum();
    void allImagesAndFlatDark();
};

namespace {
const int W = 9, H = 7, NF = 60;

double i1Pixel(int x, int y, int k)
{
    const double e = 8945.0 + k, e0 = 8975 + 0.5 * x - 0.5 * y;
    return std::round(30000 * std::exp(-0.3 - (0.8 + 0.03 * y) * (0.5 + std::atan((e - e0) / 1.5) / M_PI)))
           + (x * 7 + y * 13 + k * 5) % 7;
}

// I1 frames at 8945 eV and up, and two I0 frames flat in energy around them.
void loadStacks(Body &b)
{
    for (int k = 0; k < NF + 2; ++k) {
        auto *f = new TiffData;
        f->allocate(W, H, PixelU16);
        for (int p = 0; p < W * H; ++p)
            f->setPixel(p % W, p / W, k < NF ? i1Pixel(p % W, p / W, k) : 20000 + 50 * (p % W) + 30 * (p / W));
        k < NF ? b.loadedI1(f, k, NF) : b.loadedI0(f, k - NF, 2);
        f->energy = k < NF ? 8945.0 + k : k == NF ? 8940 : 9010;
    }
    b.finishedLoadI1Files();
    b.finishedLoadI0Files();
}

QLineEdit *field(Body &b, const char *name)
{
    return b.findChild<QLineEdit *>(name);
}
} // namespace

void TestBodySaving::eachSpectrum_data()
{
    QTest::addColumn<QString>("kind");      // the radio button
    QTest::addColumn<QList<int>>("region"); // x0, y0, x1, y1; none for the whole image
    QTest::addColumn<QList<int>>("bins");   // view half width, height; analysis half width, height
    QTest::newRow("normalised, whole image") << "SaveAsNormalizedXAFS" << QList<int>() << QList<int>{1, 1, 1, 1};
    // Boxes reach past the image; the last block of a row past the region.
    QTest::newRow("xafs, region backwards") << "SaveAsRawXAFS" << QList<int>{8, 6, 2, 1} << QList<int>{2, 1, 2, 0};
    QTest::newRow("raw, narrow region") << "SaveAsRaw" << QList<int>{3, 0, 4, 7} << QList<int>{0, 3, 1, 1};
    QTest::newRow("missing folder") << "SaveAsRaw" << QList<int>() << QList<int>{0, 0, 0, 0};
}

void TestBodySaving::eachSpectrum()
{
    QFETCH(QString, kind);
    QFETCH(QList<int>, region);
    QFETCH(QList<int>, bins);
    QTemporaryDir dir;
    const bool missing = QTest::currentDataTag() == QLatin1String("missing folder");
    const QString name = dir.filePath(missing ? "no/spec" : "spec");
    Body b;
    loadStacks(b);
    b.findChild<QAbstractButton *>(kind.toLatin1())->setChecked(true);
    if (!region.isEmpty())
        b.findChild<ImgDispA *>()->setSelectedArea(region[0], region[1], region[2], region[3]);
    const char *names[] = {"vHWidth_", "vVWidth_", "aHWidth_", "aVWidth_"};
    for (int i = 0; i < 4; ++i)
        field(b, names[i])->setText(QString::number(bins[i]));
    field(b, "SuggestingEeV")->setText("8977");
    LogCapture log;
    b.saveEachSpectrum(name + ".txt");
    QFile f(name + ".dat");
    if (missing) {
        QVERIFY(LogCapture::lines().contains("Can't open " + f.fileName()) && !f.exists());
        return;
    }
    QVERIFY(f.open(QIODevice::ReadOnly | QIODevice::Text));
    const QStringList lines = QString::fromLatin1(f.readAll()).split('\n');

    // The walk, worked out on its own.
    const int x0 = region.isEmpty() ? 0 : qMin(region[0], region[2]), x1 = region.isEmpty() ? W : qMax(region[0], region[2]);
    const int y0 = region.isEmpty() ? 0 : qMin(region[1], region[3]), y1 = region.isEmpty() ? H : qMax(region[1], region[3]);
    const int bx = bins[2], by = bins[3], dx = 2 * bx + 1, dy = 2 * by + 1;
    QList<QPoint> walk;
    for (int y = y0 + by; y < y1 || y == y0 + by; y += dy)
        for (int x = x0 + bx; x < x1 || x == x0 + bx; x += dx)
            walk << QPoint(x, y);
    const int nx = (x1 - x0 - bx - 1) / dx + 1, ny = (y1 - y0 - by - 1) / dy + 1;
    QCOMPARE(walk.size(), nx * ny);
    const QString first = kind == "SaveAsRaw" ? "Raw" : kind == "SaveAsRawXAFS" ? "Raw Xafs" : "Normalized Xafs";
    QCOMPARE(lines.mid(0, 7), (QStringList{"# Tessarelle Save " + first + " Spectra 1.0",
                                           QString("# X-Range (x0, x1), steps : %1 %2 %3").arg(x0).arg(x1).arg(nx),
                                           QString("# Y-Range (y0, y1), steps : %1 %2 %3").arg(y0).arg(y1).arg(ny),
                                           QString("# Full Width, Height      : %1 %2").arg(W).arg(H),
                                           QString("# Bin Half Width, Height  : %1 %2").arg(by).arg(bx),
                                           QString("# Step dX, dY             : %1 %2").arg(dx).arg(dy),
                                           "# End of Header"}));
    QCOMPARE(lines.size(), 7 + walk.size() + 1);
    QVERIFY(LogCapture::lines().contains(QString("Save Xafs Spectra : Progress %1").arg(double(by + (ny - 1) * dy) / (y1 - y0) * 100)));

    const int head = kind == "SaveAsRaw" ? 2 : 3;
    RefElm elm;
    elm.edgeEV = 8977;
    for (int n = 0; n < walk.size(); ++n) {
        const QStringList v = lines[7 + n].split(' ');
        QCOMPARE(v.mid(0, head), (QStringList{QString::number(walk[n].x()), QString::number(walk[n].y()), "0"}.mid(0, head)));
        QCOMPARE(v.size(), head + 2 * NF);
        std::vector<double> es, ys;
        for (int k = 0; k < NF; ++k) {
            double a = 0, s = 0;
            for (int y = qMax(0, walk[n].y() - bins[1]); y <= qMin(H - 1, walk[n].y() + bins[1]); ++y)
                for (int x = qMax(0, walk[n].x() - bins[0]); x <= qMin(W - 1, walk[n].x() + bins[0]); ++x)
                    a += 20000 + 50 * x + 30 * y, s += i1Pixel(x, y, k);
            es.push_back(8945.0 + k);
            ys.push_back(head == 2 ? s : std::log(a / s));
        }
        const RefXafs ref(es, ys, elm);
        for (int k = 0; k < NF; ++k) {
            const double want = kind == "SaveAsNormalizedXAFS" ? ref.norm(k) : ys[k];
            QCOMPARE(v[head + 2 * k].toDouble(), es[k]);
            QVERIFY2(std::fabs(v[head + 2 * k + 1].toDouble() - want) <= 1e-5 * std::fabs(want) + 1e-7,
                     qPrintable(QString("point %1, frame %2: %3, expected %4").arg(n).arg(k).arg(v[head + 2 * k + 1]).arg(want)));
        }
    }
}

void TestBodySaving::allImagesAndFlatDark()
{
    QTemporaryDir dir;
    QVERIFY(QDir::setCurrent(dir.path()));
    Body b;
    auto *a = b.findChild<Analyzer *>();
    // Maps with images in rows 1 and 2, but not map 1 of row 2.
    AnalyzeCond c;
    c.setUp(W, H, 0, 0, QRectF(0, 0, W, H), 1, 1);
    for (int i = 1; i < 3; ++i)
        for (int j = 0; j < 3 - i; ++j) {
            Analyzed2DRes *m = a->lcfrs[i]->maps[j];
            m->setUp(c);
            for (int p = 0; p < W * H; ++p)
                m->setData(p % W, p / W, 0, 0, p * (i + j));
            m->genImg();
        }
    b.saveAllImages(dir.filePath("all.png")); // no row shown
    a->selectImage(2);
    b.saveAllImages(dir.filePath("all.png"));
    a->lcfrs[2]->showButton()->setEnabled(false);
    b.saveAllImages(dir.filePath("none.png"));
    a->selectImage(1);
    b.saveAllImages(dir.filePath("one.png"));
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files),
             (QStringList{"all-2-0.png", "one-1-0.png", "one-1-1.png"}));
    QCOMPARE(QImage("one-1-1.png").convertToFormat(QImage::Format_Grayscale8), *a->lcfrs[1]->maps[1]->img());

    // Flat and dark: nothing without an image, then frames of its size.
    b.findChild<QPushButton *>("SaveFlatDark")->click();
    QVERIFY(!QFileInfo::exists("flat.dat"));
    loadStacks(b);
    b.findChild<QPushButton *>("SaveFlatDark")->click();
    for (const char *name : {"flat.dat", "dark.dat"}) {
        TIFF *t = TIFFOpen(name, "r");
        QVERIFY(t);
        quint32 w = 0, h = 0;
        TIFFGetField(t, TIFFTAG_IMAGEWIDTH, &w);
        TIFFGetField(t, TIFFTAG_IMAGELENGTH, &h);
        QCOMPARE(QSize(w, h), QSize(W, H));
        std::vector<quint16> row(W);
        for (quint32 y = 0; y < h; ++y) {
            QCOMPARE(TIFFReadScanline(t, row.data(), y), 1);
            QCOMPARE(std::vector<quint16>(W, name[0] == 'f'), row);
        }
        TIFFClose(t);
    }
}

QTEST_MAIN(TestBodySaving)
#include "tst_bodysaving.moc"
