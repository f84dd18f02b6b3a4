#include "support/E2eRun.h"
#include "support/SynthStack.h"

#include <QtTest>

#include <cmath>
#include <functional>
#include <vector>

// The energy-shift calibration through the whole program. Stacks whose edge
// is moved per pixel by a known amount are calibrated against a standard
// file with both methods and the maps saved; a fresh program loads them and
// runs edge maps without a map, with each map, with the fitted surface and
// with a small map of its own. Every file is checked against the spectra,
// angles and surface worked out here.
class TestCalibRun : public QObject
{
    Q_OBJECT
private slots:
    void calibrateSaveLoadAndUse();
};

namespace {
const int W = 15, H = 12, NE = 81;
const double HCv = 12398.424360387684, PIv = 3.1415926535;

double mu(double e, double e0)
{
    return 0.3 + 0.0004 * (9000 - e) + 0.8 * (0.5 + std::atan((e - e0) / 1.5) / M_PI);
}

// The edge of pixel (x, y) lies 0.3 x - 0.25 y + 0.02 x y eV above 8975.
SynthStack stack()
{
    SynthStack s;
    s.w = W, s.h = H, s.i0E = {8930, 8960, 8990, 9030};
    for (int k = 0; k < NE; ++k)
        s.i1E.push_back(8940 + k);
    s.i1 = [](int x, int y, int k) {
        return std::round(30000 * std::exp(-mu(8940 + k, 8975 + 0.3 * x - 0.25 * y + 0.02 * x * y)))
            + (x * 7 + y * 13 + k * 5) % 5;
    };
    s.i0 = [](int x, int y, int j) { return 20000 + 50 * x + 30 * y + 700 * j; };
    return s;
}

// ln(I0 / I1) of the 3 x 3 box at (cx, cy), I0 interpolated in energy.
RefXafs pointSpectrum(int cx, int cy)
{
    return stack().spectrum(cx, cy, 1, 1);
}

// Angle of energy e on a crystal of spacing d; the shift a stored angle
// difference v means against edge e (read with the six digits of the
// spacing that a file's header holds).
double angle(double e, double d = 3.1355316)
{
    const double x = HCv / e / (2 * d);
    return std::fabs(x) > 1 ? -1.0 : std::asin(x) / PIv * 180.0;
}

double shiftOf(double v, double e, double d = 3.13553)
{
    return e - HCv / (2 * d * std::sin((v + angle(e, d)) / 180.0 * PIv));
}

// The least-squares quadratic surface through z over the image, by
// Gram-Schmidt on its six columns x^2, y^2, xy, x, y, 1.
std::vector<double> quadFit(const std::vector<double> &z)
{
    std::vector<std::vector<double>> q(6, std::vector<double>(W * H));
    std::vector<double> fit(W * H, 0.0);
    for (int c = 0; c < 6; ++c) {
        for (int i = 0; i < W * H; ++i) {
            const double x = i % W, y = i / W, col[] = {x * x, y * y, x * y, x, y, 1};
            q[c][i] = col[c];
        }
        for (int p = 0; p < c; ++p) {
            double dot = 0;
            for (int i = 0; i < W * H; ++i)
                dot += q[p][i] * q[c][i];
            for (int i = 0; i < W * H; ++i)
                q[c][i] -= dot * q[p][i];
        }
        double norm = 0, proj = 0;
        for (int i = 0; i < W * H; ++i)
            norm += q[c][i] * q[c][i];
        for (int i = 0; i < W * H; ++i)
            q[c][i] /= std::sqrt(norm), proj += q[c][i] * z[i];
        for (int i = 0; i < W * H; ++i)
            fit[i] += proj * q[c][i];
    }
    return fit;
}

QStringList fileLines(const QString &path)
{
    QFile f(path);
    f.open(QIODevice::ReadOnly | QIODevice::Text);
    return QString::fromUtf8(f.readAll()).split('\n', Qt::SkipEmptyParts);
}

// The standard: the unshifted edge, finer in energy and wider than the stacks.
RefXafs writeStandard(const QString &path)
{
    std::vector<double> es, ys;
    QFile f(path);
    f.open(QIODevice::WriteOnly);
    for (double e = 8920; e <= 9040; e += 0.5) {
        es.push_back(e), ys.push_back(mu(e, 8975));
        f.write(QStringLiteral("%1 %2\n").arg(e).arg(ys.back(), 0, 'g', 17).toUtf8());
    }
    return RefXafs(es, ys);
}

// A calibration runs by queued points while the batch goes on; each batch
// line lets at least one point through, so 60 lines outlast a walk of 20.
const QStringList WaitForCalib{":for w $w$ 1 60", "scale_reset", ":next w"};
} // namespace

void TestCalibRun::calibrateSaveLoadAndUse()
{
    E2E_REQUIRE_EXECUTABLE();
    E2eRun run;
    const QString dir = run.dir();
    const QStringList stacks = stack().write(dir) << "set_view_w 1" << "set_view_h 1" << "select_region 0 0 15 12";
    const RefXafs standard = writeStandard(dir + "/std.dat");

    // 1. Calibration in cells of 3 x 3 with both methods; the names' suffix
    // is forced to emp.
    const E2eResult r1 = run.runBatch(
        {":end"}, QStringList(stacks) << "set_analyze_w 1" << "set_analyze_h 1" << "calib_load_std " + dir + "/std.dat"
                                      << "calib_exec" << WaitForCalib << "calib_save_map " + dir + "/midx.txt"
                                      << "calib_type 1" << "calib_exec" << WaitForCalib
                                      << "calib_save_map " + dir + "/innerp" << "quit",
        120000);
    E2E_VERIFY_RUN(r1, true);
    E2E_VERIFY_LINES(r1.debug,
                     (QStringList{"Start Calibration", "End Calibration", "EMap Write Start :", "EMap Write End   :",
                                  "Start Calibration", "End Calibration", "EMap Write Start :"}),
                     QStringList{"Can not open"});

    // Per pixel, the shifts that the two files give when read back: the
    // first against its header's edge, the second against one set by hand.
    std::vector<double> stored[2] = {std::vector<double>(W * H), std::vector<double>(W * H)};
    double methodsDiffer = 0;
    for (int m = 0; m < 2; ++m) {
        const QStringList lines = fileLines(dir + (m ? "/innerp.emp" : "/midx.emp"));
        QVERIFY2(lines.size() == 16 + H + 1 + H, qPrintable(r1.debug));
        QStringList got = lines.mid(0, 17 + H);
        QVERIFY(QRegularExpression("^Record Date {13}: \\d\\d/\\d\\d/\\d\\d \\d\\d:\\d\\d:\\d\\d\\.\\d{3}$")
                    .match(got.takeAt(1)).hasMatch());
        const double stdE = got.takeAt(1).mid(26).toDouble();
        QVERIFY(std::fabs(stdE - standard.midx) < 0.006); // six digits of it
        QStringList want{"###Tessarelle::TSRL"};
        for (const QString &kv : QStringList{"Spacing [nm]|3.13553", "X Offset [pix]|0", "Y Offset [pix]|0", "Width [pix]|15",
                                  "Height [pix]|12", "Bin Half Width [pix]|1", "Bin Half Height [pix]|1", "Area X0|0",
                                  "Area X1|15", "Area Y0|0", "Area Y1|12", "Std File Name|" + dir + "/std.dat",
                                  "Map Height|12"})
            want << kv.section('|', 0, 0).leftJustified(24) + ": " + kv.section('|', 1);
        for (int y = 0; y < H; ++y)
            want << QStringLiteral("Map Width               : %1 15").arg(y);
        QCOMPARE(got, want << "##-----------------");
        for (int cy = 1; cy < H; cy += 3) {
            for (int cx = 1; cx < W; cx += 3) {
                const RefXafs s = pointSpectrum(cx, cy);
                const double dE = m == 0 ? s.midx - standard.midx : s.searchDE(standard, 20, 1, 0.1);
                methodsDiffer = std::max(methodsDiffer, std::fabs(dE - (s.midx - standard.midx)));
                // The cell's shift fills its 3 x 3 pixels as an angle difference.
                for (int i = 0; i < 9; ++i) {
                    const int x = cx - 1 + i % 3, y = cy - 1 + i / 3;
                    const QStringList row = lines.at(17 + H + y).split(' ', Qt::SkipEmptyParts);
                    QCOMPARE(row.size(), W);
                    const double v = row[x].toDouble();
                    QVERIFY2(std::fabs(v - (angle(standard.midx - dE) - angle(standard.midx))) < 1e-9,
                             qPrintable(QStringLiteral("%1 (%2, %3): %4, dE %5").arg(m).arg(x).arg(y).arg(v).arg(dE)));
                    stored[m][y * W + x] = shiftOf(v, m == 0 ? stdE : 8990);
                }
            }
        }
    }
    QVERIFY(methodsDiffer > 0.05); // the data tell the two methods apart

    // A map of 10 x 8 pixels for frames at detector offset (2, 1), written
    // with the short magic and a body of 75 values; and an absurd header.
    run.writeFile("small.emp", "###TSRL\nStd Edge Energy [eV]    : 8980\nSpacing [nm]            : 3.13553\n"
                               "X Offset [pix]          : 2\nY Offset [pix]          : 1\nWidth [pix]             : 10\n"
                               "Height [pix]            : 8\n##-----------------\n"
                                   + QString("0.01 ").repeated(75));
    run.writeFile("absurd.emp", "###Tessarelle::TSRL\nStd Edge Energy [eV]    : 8980\nSpacing [nm]            : 3.1\n"
                                "Width [pix]             : 1000000\nHeight [pix]            : 1000000\n"
                                "##-----------------\n0 0 0\n");

    // 2. A fresh program: edge maps of every pixel, each point's spectrum
    // read with the shift at its pixel; a refused file keeps the map loaded.
    auto edgeMap = [&](const QString &name) {
        return QStringList{"analyzer_exec_2da", "save_data " + dir + "/" + name + ".dat"};
    };
    const E2eResult r2 = run.runBatch(
        {":end"}, QStringList(stacks) << "set_analyze_w 0" << "set_analyze_h 0" << "Suggesting_Edge_eV 8977"
                                      << "saveDataCfg_save_as_text" << "saveDataCfg_text_as_xyz"
                                      << "saveDataCfg_text_as_csv" << edgeMap("none")
                                      << "calib_load_map " + dir + "/no-such.emp" << "calib_load_map " + dir + "/midx.emp"
                                      << "move_position 13 1" << "save_spectra " + dir + "/sp.dat"
                                      << "calib_load_map " + dir + "/absurd.emp" << edgeMap("map")
                                      << "select_qs_fitted_eShift 1" << edgeMap("qs") << "select_qs_fitted_eShift 0"
                                      << "calib_set_edge_eV 8990" << "calib_load_map " + dir + "/innerp.emp"
                                      << "select_disp_image_eShift" << "cbar_set_all" << edgeMap("inner")
                                      << "calib_set_edge_eV 0" << "calib_load_map " + dir + "/small.emp"
                                      << edgeMap("small") << "quit",
        120000);
    E2E_VERIFY_RUN(r2, true);
    E2E_VERIFY_LINES(r2.debug,
                     (QStringList{"Can not open " + dir + "/no-such.emp", "Start Reading EMP file ",
                                  "End Reading EMP file   ",
                                  "Energy map of 1000000 x 1000000 refused: a body of 6 bytes can not hold it",
                                  "Invalid Energy Map Data File : " + dir + "/absurd.emp", "QS Eshift", "QS Eshift",
                                  "cbar set all", "run out!"}),
                     QStringList());
    QCOMPARE(r2.debug.count("\nrun out!"), 5);

    // The spectrum under the pointer is saved at E - its pixel's shift.
    const QStringList sp = fileLines(dir + "/sp13-1-1x1T.dat").filter(QRegularExpression("^\\d"));
    QCOMPARE(sp.size(), NE);
    for (int k = 0; k < NE; k += 20)
        QVERIFY(std::fabs(sp[k].section('\t', 0, 0).toDouble() - (8940 + k - stored[0][W + 13])) < 0.006);

    const std::vector<double> surface = quadFit(stored[0]);
    const struct {
        const char *name;
        std::function<double(int, int)> shiftAt;
    } runs[] = {
        {"none", [](int, int) { return 0.0; }},
        {"map", [&](int x, int y) { return stored[0][y * W + x]; }},
        {"qs", [&](int x, int y) { return surface[y * W + x]; }},
        {"inner", [&](int x, int y) { return stored[1][y * W + x]; }},
        // Map pixel (x - 2, y - 1); its last five values read as 0.
        {"small", [](int x, int y) {
             const int i = (y - 1) * 10 + x - 2;
             return x >= 2 && x < 12 && y >= 1 && y < 9 ? shiftOf(i < 75 ? 0.01 : 0.0, 8980) : 0.0;
         }},
    };
    for (const auto &rn : runs) {
        const QStringList lines = fileLines(dir + "/" + rn.name + "-0.dat");
        QVERIFY2(lines.size() == 9 + W * H, qPrintable(rn.name + r2.debug));
        for (int i = 0; i < W * H; ++i) {
            const int x = i % W, y = i / W;
            const double want = pointSpectrum(x, y).midx - rn.shiftAt(x, y) - 8977;
            const QStringList v = lines.at(9 + i).split(',');
            QCOMPARE(v.mid(0, 2), (QStringList{QString::number(x), QString::number(y)}));
            // Six significant digits in the file.
            QVERIFY2(std::fabs(v[2].toDouble() - want) <= 5.01e-6 * std::pow(10.0, std::floor(std::log10(std::fabs(want)))),
                     qPrintable(QStringLiteral("%1 (%2, %3): %4, expected %5").arg(rn.name).arg(x).arg(y).arg(v[2]).arg(want)));
        }
    }
}

QTEST_GUILESS_MAIN(TestCalibRun)
#include "tst_calibrun.moc"
