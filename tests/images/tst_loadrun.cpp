#include "images/TiffWriter.h"
#include "support/E2eRun.h"

#include <QtTest>

#include <cmath>
#include <vector>

// Loads, the file panels and the absorption words, driven by batch scripts
// through the whole program. The run folder ("@" in the tables) holds a few
// small TIFFs of distinct sizes, a reference table of angles (ref.dat: 14.0,
// 14.5, 15.0), a scan file (scan.dat: 12.0, 12.5 after its "Offset" line) and
// a bad-pixel mask of two points. Each frame the main window receives is
// logged as "loaded I1 frame n of N: file (w x h)", the end of each load as
// "I1 load finished: k frames"; the panels log a change of their energy
// source and how many energies a reference file gave. An ":echo" after a
// word proves that the batch waited for its finish; a word without an action
// would leave "cmd <line>".
class TestLoadRun : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void scripts_data();
    void scripts();
};

namespace {
double angleToEV(double deg)
{
    return 12398.424360387684 / (2 * std::sin(deg * 3.1415926535 / 180) * 3.13553);
}

QString refLine(const QString &panel, int n, const QString &path, double first, double last)
{
    return QStringLiteral("%1: %2 energies from ref file %3, %4 - %5 eV")
        .arg(panel)
        .arg(n)
        .arg(path)
        .arg(first, 0, 'f', 3)
        .arg(last, 0, 'f', 3);
}
} // namespace

void TestLoadRun::initTestCase()
{
    E2E_REQUIRE_EXECUTABLE();
}

void TestLoadRun::scripts_data()
{
    QTest::addColumn<QStringList>("batch");
    QTest::addColumn<bool>("ends");
    QTest::addColumn<QStringList>("expected");
    QTest::addColumn<QStringList>("absent");
    QTest::addColumn<QStringList>("config"); // more configuration lines

    // Sizes as written in scripts(): a 3 x 2, b 4 x 2, c 5 x 3, i0_1 6 x 1.
    const QString a = "@/a.tif (3 x 2)";
    const QString b = "@/b.tif (4 x 2)";
    const QString c = "@/c.tif (5 x 3)";

    QTest::newRow("files in the given order, then a pattern")
        << QStringList{"load_I1_files new @/c.tif @/a.tif @/b.tif", ":echo i1done",
                       "load_I0_files_of_pattern new @/ i0_*.tif", ":echo i0done", "quit"}
        << true
        << QStringList{"loaded I1 frame 0 of 3: " + c, "loaded I1 frame 1 of 3: " + a, "loaded I1 frame 2 of 3: " + b,
                       "I1 load finished: 3 frames", "echo i1done", "loaded I0 frame 0 of 1: @/i0_1.tif (6 x 1)",
                       "I0 load finished: 1 frames", "echo i0done"}
        << QStringList{"loaded I0 frame 0 of 1: @/other.tif (7 x 1)"} << QStringList();
    // Any mode but "new" (in any case) appends to the stack.
    QTest::newRow("append and renew")
        << QStringList{"load_I1_files new @/a.tif @/b.tif", "load_I1_files add @/c.tif", ":echo appended",
                       "load_I1_files New @/c.tif", ":echo renewed", "quit"}
        << true
        << QStringList{"I1 load finished: 2 frames", "loaded I1 frame 0 of 1: " + c, "I1 load finished: 3 frames",
                       "echo appended", "loaded I1 frame 0 of 1: " + c, "I1 load finished: 1 frames", "echo renewed"}
        << QStringList() << QStringList();
    QTest::newRow("clear then append")
        << QStringList{"load_I0_files new @/a.tif @/b.tif", "clear_I0_files", "load_I0_files add @/c.tif",
                       ":echo done", "quit"}
        << true << QStringList{"I0 load finished: 2 frames", "I0 load finished: 1 frames", "echo done"}
        << QStringList() << QStringList();
    QTest::newRow("unreadable file leaves a gap")
        << QStringList{"load_I1_files new @/a.tif @/bad.tif @/b.tif", ":echo done", "quit"} << true
        << QStringList{"loaded I1 frame 0 of 3: " + a, "loaded I1 frame 2 of 3: " + b, "I1 load finished: 2 frames",
                       "echo done"}
        << QStringList() << QStringList();
    QTest::newRow("pattern without a match still finishes")
        << QStringList{"load_I1_files_of_pattern new @/ none*.tif", ":echo done", "quit"} << true
        << QStringList{"I1 load finished: 0 frames", "echo done"} << QStringList() << QStringList();
    // The folder and the name are joined as they stand.
    QTest::newRow("folder without separator")
        << QStringList{"load_I0_files_of_pattern new @ i0_*.tif", ":echo done", "quit"} << true
        << QStringList{"Can not open (1) @i0_1.tif", "I0 load finished: 0 frames", "echo done"} << QStringList() << QStringList();
    // A mode without files does nothing and never answers.
    QTest::newRow("mode alone waits for ever")
        << QStringList{"load_I1_files new", ":echo never", "quit"} << false << QStringList()
        << QStringList{"echo never", "I1 load finished: 0 frames"} << QStringList();
    // A stride far past the list, after a cut, on both loaders: one frame each.
    QTest::newRow("huge skip after a cut")
        << QStringList{"cut_f_i1 1", "skip_i1 2147483647", "load_I1_files NEW @/a.tif @/b.tif @/c.tif",
                       "cut_f_i0 1", "cut_l_i0 1", "skip_i0 2147483647", "load_I0_files NEW @/c.tif @/b.tif @/a.tif",
                       ":echo done", "quit"}
        << true
        << QStringList{"loaded I1 frame 1 of 3: " + b, "I1 load finished: 1 frames", "loaded I0 frame 1 of 3: " + b,
                       "I0 load finished: 1 frames", "echo done"}
        << QStringList() << QStringList();
    // A file that is not there is passed over; the load still ends.
    QTest::newRow("missing file") << QStringList{"load_I0_files add @/nothere.tif", ":echo done", "quit"} << true
                                  << QStringList{"I0 load finished: 0 frames", "echo done"} << QStringList() << QStringList();

    // The I1 and I0 panel words differ only in the suffix, and their ids
    // alternate: each must reach its own panel.
    QTest::newRow("reference file for I1")
        << QStringList{"eng_by_ref_i1 @/ref.dat", ":echo after", "quit"} << true
        << QStringList{"I1 Data: energy from reference file", "reading simple",
                       refLine("I1 Data", 3, "@/ref.dat", angleToEV(14.0), angleToEV(15.0)), "echo after"}
        << QStringList{"I0 Data: energy from reference file"} << QStringList();
    QTest::newRow("scan file for I0")
        << QStringList{"eng_by_ref_i0 @/scan.dat", ":echo after", "quit"} << true
        << QStringList{"I0 Data: energy from reference file", "reading simple",
                       refLine("I0 Data", 2, "@/scan.dat", angleToEV(12.0), angleToEV(12.5)), "echo after"}
        << QStringList{"I1 Data: energy from reference file"} << QStringList();
    // A reference file that is not there: the source changes all the same;
    // the empty name selects nothing.
    QTest::newRow("missing reference file")
        << QStringList{"eng_by_ref_i1", "eng_by_ref_i0 none.dat", ":echo after", "quit"} << true
        << QStringList{"I0 Data: energy from reference file", "Can't open ref file none.dat", "echo after"}
        << QStringList{"reading simple", "I1 Data: energy from reference file"} << QStringList();
    // On and off by "1" only; the name command needs no argument.
    QTest::newRow("calc and back to name")
        << QStringList{"eng_by_calc_i0 1", "eng_by_calc_i1 yes", "eng_by_name_i0", ":echo after", "quit"} << true
        << QStringList{"I0 Data: energy from file number", "I0 Data: energy from file name", "echo after"}
        << QStringList{"I1 Data: energy from file number"} << QStringList();
    // Every panel word has an action and finishes at once.
    QStringList all{"set_i1_energy_pattern \\d\\d\\d\\d_\\d\\d", "set_i0_energy_pattern \\d\\d\\d\\d_\\d\\d"};
    const char *const words[] = {"cut_f 2", "cut_l 3", "skip 2", "show_latest 0", "eng_by_name",
                                 "eng_by_name_reg_exp \\d\\d\\d\\d\\.\\d", "eng_by_name_factor 1000",
                                 "eng_by_calc 0", "eng_calc_base 7000", "eng_calc_delta 0.5", "eng_calc_end 9000",
                                 "eng_calc_num 200", "eng_calc_even_in_eng 1", "eng_calc_even_in_deg 1",
                                 "eng_calc_disp_unit 7", "eng_by_ref"};
    for (const char *w : words) {
        const QString word = QString::fromLatin1(w).section(' ', 0, 0);
        const QString arg = QString::fromLatin1(w).section(' ', 1);
        all << QString(word + "_i0 " + arg).trimmed() << QString(word + "_i1 " + arg).trimmed();
    }
    QCOMPARE(all.size(), 34);
    QTest::newRow("every panel word") << (all << ":echo after" << "quit") << true << QStringList{"echo after"}
                                      << QStringList{"cmd "} << QStringList();
    // The mask named in the configuration is read at start; then a stack is
    // loaded and every absorption word used.
    const QStringList absorption{"load_I1_files new @/a.tif", "Use_I0 0", "set_fluo_type 1", "set_i0_dark_area",
                                 "set_i1_dark_area", "clear_i0_dark_area", "clear_i1_dark_area", ":echo done", "quit"};
    QTest::newRow("mask read at start, absorption words")
        << absorption << true << QStringList{"Err Points mask in use: @/mask.txt (2 points)", "echo done"}
        << QStringList{"cmd "} << QStringList{"ErrPoints @/mask.txt"};
    QTest::newRow("missing mask") << absorption << true
                                  << QStringList{"Err Points mask not in use: @/nomask.txt", "echo done"}
                                  << QStringList{"cmd "} << QStringList{"ErrPoints @/nomask.txt"};
}

void TestLoadRun::scripts()
{
    QFETCH(QStringList, batch);
    QFETCH(bool, ends);
    QFETCH(QStringList, expected);
    QFETCH(QStringList, absent);

    QFETCH(QStringList, config);

    E2eRun run;
    QVERIFY(run.isValid());
    // The mask's name is canonical once read, so the folder is too.
    const QString dir = QFileInfo(run.dir()).canonicalFilePath();
    const struct {
        const char *name;
        quint32 w, h;
    } files[] = {{"a.tif", 3, 2}, {"b.tif", 4, 2}, {"c.tif", 5, 3}, {"i0_1.tif", 6, 1}, {"other.tif", 7, 1}};
    for (const auto &f : files) {
        const std::vector<quint16> px(std::size_t(f.w) * f.h, 1000);
        QVERIFY(writeTiff16(dir + "/" + f.name, f.w, f.h, px.data()));
    }
    run.writeFile("bad.tif", "II*\nthis is no image");
    run.writeFile("ref.dat", "angle I0\n14.0 1\n14.5 1\n# gap\n15.0 1\n");
    run.writeFile("scan.dat", "9809 scan\nD= 3.1\nOffset 0 0\n1 12.0 3 4\n2 12.5 3 4\n");
    run.writeFile("mask.txt", "# bad pixels\n1 1\n2 0\n");

    for (QStringList *list : {&batch, &expected, &absent, &config})
        list->replaceInStrings("@", dir);

    const E2eResult r = run.runBatch({":end"}, batch, ends ? 30000 : 3000, config);
    E2E_VERIFY_RUN(r, ends);
    E2E_VERIFY_LINES(r.debug, expected, absent);
}

QTEST_GUILESS_MAIN(TestLoadRun)
#include "tst_loadrun.moc"
