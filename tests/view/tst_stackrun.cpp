#include "images/TiffWriter.h"
#include "support/E2eRun.h"

#include <QtTest>

#include <cmath>
#include <vector>

// Stacks on screen, driven by batch scripts through the whole program. Every
// frame the image area takes is logged as "show I1 frame n: E eV", so the
// lines tell which frame of which stack is on display and which energy its
// panel gave it. "@" stands for the run folder, which holds 2 x 2 TIFFs whose
// names carry energies.
class TestStackRun : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void scripts_data();
    void scripts();
};

void TestStackRun::initTestCase()
{
    const QString exe = E2eRun::executable();
    if (exe.isEmpty() || !QFileInfo(exe).isExecutable())
        QSKIP("TESSARELLE_EXE does not name the built program");
}

static double angleToEV(double deg)
{
    return 12398.424360387684 / (2 * std::sin(deg / 180 * 3.1415926535) * 3.13553);
}

void TestStackRun::scripts_data()
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
    // batch before the echo); a seek beyond the stack shows nothing.
    QTest::newRow("view commands finish")
        << QStringList{QStringLiteral("load_I1_files new %1").arg(a), "set_band_w 5", "set_band_h 6",
                       "set_view_w 2", "set_analyze_h 3", "select_region 0 0 2 2", "zoom_in", "scale_reset",
                       "select_disp_image 2", "select_disp_image_i1", "seek_image 9", ":echo done", "quit"}
        << QStringList{"show I1 frame 0: 0.00 eV", "echo done"} << QStringList{"show I1 frame 9: 0.00 eV"};
}

void TestStackRun::scripts()
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
    QVERIFY(r.started);
    QVERIFY2(!r.crashed, qPrintable(r.debug));
    QVERIFY2(r.finished, qPrintable(r.debug));
    QCOMPARE(r.exitCode, 0);

    const QStringList lines = r.debug.split('\n');
    qsizetype at = 0;
    for (const QString &e : expected) {
        while (at < lines.size() && lines.at(at).trimmed() != e)
            ++at;
        QVERIFY2(at < lines.size(), qPrintable(QStringLiteral("missing or out of order: %1\n%2").arg(e, r.debug)));
        ++at;
    }
    for (const QString &x : absent)
        QVERIFY2(!lines.contains(x), qPrintable(QStringLiteral("unexpected: %1\n%2").arg(x, r.debug)));
}

QTEST_GUILESS_MAIN(TestStackRun)
#include "tst_stackrun.moc"
