#include "images/TiffWriter.h"
#include "support/E2eRun.h"

#include <QtTest>

#include <cmath>
#include <vector>

// The view's batch words through the whole program. Every frame the image
// area takes is logged as "show I1 frame n: E eV", so the lines tell which
// frame of which stack is on display and which energy its panel gave it; the
// colour bar and the plot log what reached them. "@" stands for the run
// folder, which holds 2 x 2 TIFFs whose names carry energies.
class TestViewRun : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void scripts_data();
    void scripts();
};

void TestViewRun::initTestCase()
{
    E2E_REQUIRE_EXECUTABLE();
}

static double angleToEV(double deg)
{
    return 12398.424360387684 / (2 * std::sin(deg / 180 * 3.1415926535) * 3.13553);
}

void TestViewRun::scripts_data()
{
    QTest::addColumn<QStringList>("batch");
    QTest::addColumn<QStringList>("expected"); // in this order
    QTest::addColumn<QStringList>("absent");

    const QString pattern1 = "set_i1_energy_pattern \\d\\d\\d\\d\\.\\d\\d";
    const QString pattern0 = "set_i0_energy_pattern \\d\\d\\d\\d\\.\\d\\d";
    const QString a = "@/i1_08990.25.tif", b = "@/i1_08970.00.tif", c = "@/i1_09010.75.tif";

    // The newest frame is shown as it arrives, with the energy of its name.
    QTest::newRow("energies from the names, in load order")
        << QStringList{pattern1, QStringLiteral("load_I1_files new %1 %2 %3").arg(a, b, c), "seek_image 1",
                       ":echo done", "quit"}
        << QStringList{"show I1 frame 0: 8990.25 eV", "show I1 frame 1: 8970.00 eV", "show I1 frame 2: 9010.75 eV",
                       "show I1 frame 1: 8970.00 eV", "echo done"}
        << QStringList();
    // The default pattern wants "_" for the point: no match, so a frame's
    // energy is its number in the file list.
    QTest::newRow("no match: numbered") << QStringList{QStringLiteral("load_I1_files new %1 %2").arg(a, b), "quit"}
                                        << QStringList{"show I1 frame 0: 0.00 eV", "show I1 frame 1: 1.00 eV"}
                                        << QStringList();
    // The panel's stride reaches the loader: files 0 and 2 of three.
    QTest::newRow("panel's skip") << QStringList{pattern1, "skip_i1 2",
                                                 QStringLiteral("load_I1_files new %1 %2 %3").arg(a, b, c), "quit"}
                                  << QStringList{"show I1 frame 0: 8990.25 eV", "show I1 frame 1: 9010.75 eV"}
                                  << QStringList{"show I1 frame 1: 8970.00 eV", "show I1 frame 2: 9010.75 eV"};
    // "Ignore 'Live' file" is on by default.
    QTest::newRow("Live file passed over")
        << QStringList{pattern1, QStringLiteral("load_I1_files new @/i1_Live_08995.00.tif %1").arg(b), "quit"}
        << QStringList{"show I1 frame 0: 8970.00 eV"} << QStringList{"show I1 frame 0: 8995.00 eV"};
    // By recipe, even in energy: start + i * delta.
    QTest::newRow("energies by recipe")
        << QStringList{"eng_by_calc_i1 1", "eng_calc_even_in_eng_i1 1", "eng_calc_disp_unit_i1 0",
                       "eng_calc_base_i1 8900", "eng_calc_delta_i1 2.5",
                       QStringLiteral("load_I1_files new %1 %2").arg(a, b), "quit"}
        << QStringList{"show I1 frame 0: 8900.00 eV", "show I1 frame 1: 8902.50 eV"} << QStringList();
    // From a reference table of monochromator angles (crystal spacing
    // 3.13553): E = 12398.424360387684 / (2 sin(a) d), one row a frame.
    QTest::newRow("energies from a reference file")
        << QStringList{"eng_by_ref_i1 @/ref.txt", QStringLiteral("load_I1_files new %1 %2").arg(a, b), "quit"}
        << QStringList{QStringLiteral("show I1 frame 0: %1 eV").arg(angleToEV(14.0), 0, 'f', 2),
                       QStringLiteral("show I1 frame 1: %1 eV").arg(angleToEV(13.5), 0, 'f', 2)}
        << QStringList();
    // I0 frames are not followed while loading; the display buttons switch
    // the stack and seek_image moves within the one shown.
    QTest::newRow("I0 on display")
        << QStringList{pattern1, pattern0, QStringLiteral("load_I1_files new %1 %2").arg(a, b),
                       "load_I0_files new @/i0_08950.00.tif @/i0_09050.00.tif", "select_disp_image_i0",
                       "seek_image 1", "select_disp_image_i1", ":echo done", "quit"}
        << QStringList{"show I1 frame 1: 8970.00 eV", "I0 load finished: 2 frames", "show I0 frame 0: 8950.00 eV",
                       "show I0 frame 1: 9050.00 eV", "show I1 frame 1: 8970.00 eV", "echo done"}
        << QStringList();
    // The view commands answer (a command that never did would hold the
    // batch before the echo); a seek beyond the stack shows nothing. Spectra
    // saved before any load hold a header only.
    QTest::newRow("view commands finish")
        << QStringList{"save_spectra @/sp.dat", QStringLiteral("load_I1_files new %1").arg(a), "set_band_w 5",
                       "set_band_h 6", "set_view_w 2", "set_analyze_h 3", "select_region 0 0 2 2", "zoom_in",
                       "scale_reset", "select_disp_image 2", "select_disp_image_i1", "seek_image 9", ":echo done",
                       "quit"}
        << QStringList{"xafs view : save data @/sp.dat @/sp0-0-0x0T.dat", "show I1 frame 0: 0.00 eV", "echo done"}
        << QStringList{"show I1 frame 9: 0.00 eV", "cmd "};
    // The colour bar: text that is not a number, and missing arguments, read
    // as 0; Set All reports the bar's ends, untouched by a value range.
    QTest::newRow("colour bar range")
        << QStringList{"cbar_set_range 100 2500.5", "cbar_set_range abc", "CBAR_SET_RANGE -1.5e3 2E-2",
                       "cbar_set_range 5 6", "cbar_set_all", ":echo after", "quit"}
        << QStringList{"setting cbar 100 2500.5", "setting cbar 0 0", "setting cbar -1500 0.02", "setting cbar 5 6",
                       "cbar set all", "cBarUpdated 0 1", "echo after"}
        << QStringList{"Err: cbar"};
}

void TestViewRun::scripts()
{
    QFETCH(QStringList, batch);
    QFETCH(QStringList, expected);
    QFETCH(QStringList, absent);

    E2eRun run;
    QVERIFY(run.isValid());
    const QString dir = run.dir();
    const std::vector<quint16> px{100, 200, 300, 400};
    for (const char *name : {"i1_08990.25.tif", "i1_08970.00.tif", "i1_09010.75.tif", "i1_Live_08995.00.tif",
                             "i0_08950.00.tif", "i0_09050.00.tif"})
        QVERIFY(writeTiff16(dir + "/" + name, 2, 2, px.data()));
    run.writeFile("ref.txt", "angle\n14.0\n13.5\n");
    for (QStringList *l : {&batch, &expected, &absent})
        l->replaceInStrings("@", dir);

    const E2eResult r = run.runBatch({":end"}, batch, 30000);
    E2E_VERIFY_RUN(r, true);
    E2E_VERIFY_LINES(r.debug, expected, absent);
    if (QByteArray(QTest::currentDataTag()) == "view commands finish") {
        QFile f(dir + "/sp0-0-0x0T.dat");
        QVERIFY(f.open(QIODevice::ReadOnly | QIODevice::Text));
        const QStringList lines = QString::fromUtf8(f.readAll()).split('\n', Qt::SkipEmptyParts);
        QCOMPARE(lines.value(0), QStringLiteral("###Tessarelle::XafsSpectrum"));
        QVERIFY(lines.filter(QRegularExpression("^[^#]")).isEmpty());
    }
}

QTEST_GUILESS_MAIN(TestViewRun)
#include "tst_viewrun.moc"
