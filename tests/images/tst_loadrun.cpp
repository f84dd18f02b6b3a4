#include "images/TiffWriter.h"
#include "support/E2eRun.h"

#include <QtTest>

#include <vector>

// Loads driven by batch scripts through the whole program. The run folder
// ("@" in the tables) holds a few small TIFFs of distinct sizes; each frame
// the main window receives is logged as "loaded I1 frame n of N: file (w x h)",
// and the end of each load as "I1 load finished: k frames". An ":echo" after
// a load proves that the batch waited for the loader's finish.
class TestLoadRun : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void scripts_data();
    void scripts();
};

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
        << QStringList{"loaded I0 frame 0 of 1: @/other.tif (7 x 1)"};
    // Any mode but "new" (in any case) appends to the stack.
    QTest::newRow("append and renew")
        << QStringList{"load_I1_files new @/a.tif @/b.tif", "load_I1_files add @/c.tif", ":echo appended",
                       "load_I1_files New @/c.tif", ":echo renewed", "quit"}
        << true
        << QStringList{"I1 load finished: 2 frames", "loaded I1 frame 0 of 1: " + c, "I1 load finished: 3 frames",
                       "echo appended", "loaded I1 frame 0 of 1: " + c, "I1 load finished: 1 frames", "echo renewed"}
        << QStringList();
    QTest::newRow("clear then append")
        << QStringList{"load_I0_files new @/a.tif @/b.tif", "clear_I0_files", "load_I0_files add @/c.tif",
                       ":echo done", "quit"}
        << true << QStringList{"I0 load finished: 2 frames", "I0 load finished: 1 frames", "echo done"}
        << QStringList();
    QTest::newRow("unreadable file leaves a gap")
        << QStringList{"load_I1_files new @/a.tif @/bad.tif @/b.tif", ":echo done", "quit"} << true
        << QStringList{"loaded I1 frame 0 of 3: " + a, "loaded I1 frame 2 of 3: " + b, "I1 load finished: 2 frames",
                       "echo done"}
        << QStringList();
    QTest::newRow("pattern without a match still finishes")
        << QStringList{"load_I1_files_of_pattern new @/ none*.tif", ":echo done", "quit"} << true
        << QStringList{"I1 load finished: 0 frames", "echo done"} << QStringList();
    // The folder and the name are joined as they stand.
    QTest::newRow("folder without separator")
        << QStringList{"load_I0_files_of_pattern new @ i0_*.tif", ":echo done", "quit"} << true
        << QStringList{"Can not open (1) @i0_1.tif", "I0 load finished: 0 frames", "echo done"} << QStringList();
    // A mode without files does nothing and never answers.
    QTest::newRow("mode alone waits for ever")
        << QStringList{"load_I1_files new", ":echo never", "quit"} << false << QStringList()
        << QStringList{"echo never", "I1 load finished: 0 frames"};
    // A stride far past the list, after a cut, on both loaders: one frame each.
    QTest::newRow("huge skip after a cut")
        << QStringList{"cut_f_i1 1", "skip_i1 2147483647", "load_I1_files NEW @/a.tif @/b.tif @/c.tif",
                       "cut_f_i0 1", "cut_l_i0 1", "skip_i0 2147483647", "load_I0_files NEW @/c.tif @/b.tif @/a.tif",
                       ":echo done", "quit"}
        << true
        << QStringList{"loaded I1 frame 1 of 3: " + b, "I1 load finished: 1 frames", "loaded I0 frame 1 of 3: " + b,
                       "I0 load finished: 1 frames", "echo done"}
        << QStringList();
    // A file that is not there is passed over; the load still ends.
    QTest::newRow("missing file") << QStringList{"load_I0_files add @/nothere.tif", ":echo done", "quit"} << true
                                  << QStringList{"I0 load finished: 0 frames", "echo done"} << QStringList();
}

void TestLoadRun::scripts()
{
    QFETCH(QStringList, batch);
    QFETCH(bool, ends);
    QFETCH(QStringList, expected);
    QFETCH(QStringList, absent);

    E2eRun run;
    QVERIFY(run.isValid());
    const QString dir = run.dir();
    const struct {
        const char *name;
        quint32 w, h;
    } files[] = {{"a.tif", 3, 2}, {"b.tif", 4, 2}, {"c.tif", 5, 3}, {"i0_1.tif", 6, 1}, {"other.tif", 7, 1}};
    for (const auto &f : files) {
        const std::vector<quint16> px(std::size_t(f.w) * f.h, 1000);
        QVERIFY(writeTiff16(dir + "/" + f.name, f.w, f.h, px.data()));
    }
    run.writeFile("bad.tif", "II*\nthis is no image");

    for (QStringList *list : {&batch, &expected, &absent})
        list->replaceInStrings("@", dir);

    const E2eResult r = run.runBatch({":end"}, batch, ends ? 30000 : 3000);
    E2E_VERIFY_RUN(r, ends);
    E2E_VERIFY_LINES(r.debug, expected, absent);
}

QTEST_GUILESS_MAIN(TestLoadRun)
#include "tst_loadrun.moc"
