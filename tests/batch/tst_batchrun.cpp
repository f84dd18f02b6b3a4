#include "support/E2eRun.h"

#include <QtTest>

// Whole-program runs: a configuration and a batch file, started with
// "-e -c config.cfg -b script.bat -x" offscreen; the interpreter is watched
// through the debug stream ("echo ..." lines, "cmd ..." for commands that
// have no action yet).
class TestBatchRun : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void scripts_data();
    void scripts();
    void badBatchFile();
};

void TestBatchRun::initTestCase()
{
    E2E_REQUIRE_EXECUTABLE();
}

// Expected lines must appear in the debug stream in this order; absent ones
// must not begin any line. ends false: the program must still be running at
// the time limit.
void TestBatchRun::scripts_data()
{
    QTest::addColumn<QStringList>("configBatch");
    QTest::addColumn<QStringList>("extraConfig");
    QTest::addColumn<QStringList>("batch");
    QTest::addColumn<bool>("ends");
    QTest::addColumn<QStringList>("expected");
    QTest::addColumn<QStringList>("absent");

    const QStringList end{":end"};
    // Loops and variables, a rem block, unknown words, a word kept without
    // an action, a variable of the configuration, and command words in any
    // case, the last of which ends the program.
    QTest::newRow("interpreter")
        << end << QStringList{"DataRoot /beam/data"}
        << QStringList{":let a A", ":for i $i$ 1 3", ":echo $a$$i$", ":next i", ":rem_start", ":echo hidden",
                       "set_band_w 1", "quit", ":rem_end", "frobnicate 1", ":bogus",
                       "analyzer_select_main_mode_sumUp 1 2", ":echo $DataRoot$/run1", ":ECHO up", "QUIT",
                       ":echo never"}
        << true
        << QStringList{"echo A1", "echo A2", "echo A3", "cmd analyzer_select_main_mode_sumUp", "echo /beam/data/run1",
                       "echo up"}
        << QStringList{"echo A4", "echo hidden", "cmd set_band_w", "cmd frobnicate", "cmd :bogus", "echo never"};
    // The configured lines run first; their variables are seen by the script.
    QTest::newRow("configured lines first")
        << QStringList{":let c C", ":echo cfg", ":end"} << QStringList() << QStringList{":echo $c$", "quit"} << true
        << QStringList{"echo cfg", "echo C"} << QStringList();
    // Without ":end" the configured batch stays running: the script is only
    // appended and waits for a finish that never comes.
    QTest::newRow("configured lines without end")
        << QStringList{":echo cfg"} << QStringList() << QStringList{":echo script", "quit"} << false
        << QStringList{"echo cfg", "dispacher :: do dispach cmds 4 true"} << QStringList{"echo script"};
}

void TestBatchRun::scripts()
{
    QFETCH(QStringList, configBatch);
    QFETCH(QStringList, extraConfig);
    QFETCH(QStringList, batch);
    QFETCH(bool, ends);
    QFETCH(QStringList, expected);
    QFETCH(QStringList, absent);

    E2eRun run;
    QVERIFY(run.isValid());
    const E2eResult r = run.runBatch(configBatch, batch, ends ? 30000 : 3000, extraConfig);
    E2E_VERIFY_RUN(r, ends);
    E2E_VERIFY_LINES(r.debug, expected, absent);
}

// A -b file that can't be read leaves the editor empty; -x then runs the
// empty text, which is one empty line and ":end". The program starts,
// dispatches that and keeps running.
void TestBatchRun::badBatchFile()
{
    E2eRun run;
    QVERIFY(run.isValid());
    run.writeFile("config.cfg", "batch :end\n");
    const E2eResult r = run.run({"-e", "-c", "config.cfg", "-b", "no/such/file.bat", "-x"}, 3000);
    QVERIFY(r.started);
    QVERIFY(!r.finished);
    QVERIFY2(r.debug.contains("dispacher :: do dispach cmds 2 false"), qPrintable(r.debug));
}

QTEST_GUILESS_MAIN(TestBatchRun)
#include "tst_batchrun.moc"
