#include "support/E2eRun.h"

#include <QtTest>

#include <cmath>

// Whole-program runs that set the I1 and I0 file panels by batch commands.
// Each command must reach the panel it names (the I1 and I0 words differ
// only in the suffix, and their ids alternate), and must finish at once so
// that the script goes on. The panels tell in the debug stream when their
// energy source changes and how many energies a reference file gave.
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
}

class TestSelectRun : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void scripts_data();
    void scripts();
};

void TestSelectRun::initTestCase()
{
    E2E_REQUIRE_EXECUTABLE();
}

// In the script, REF stands for the plain reference file (angles 14.0, 14.5,
// 15.0) and SCAN for the scan file (12.0, 12.5 after its "Offset" line).
void TestSelectRun::scripts_data()
{
    QTest::addColumn<QStringList>("batch");
    QTest::addColumn<QStringList>("expected");
    QTest::addColumn<QStringList>("absent");

    QTest::newRow("reference file for I1")
        << QStringList{ "eng_by_ref_i1 REF", ":echo after", "quit" }
        << QStringList{ "I1 Data: energy from reference file", "reading simple",
                        refLine("I1 Data", 3, "REF", angleToEV(14.0), angleToEV(15.0)), "echo after" }
        << QStringList{ "I0 Data: energy from reference file" };
    QTest::newRow("scan file for I0")
        << QStringList{ "eng_by_ref_i0 SCAN", ":echo after", "quit" }
        << QStringList{ "I0 Data: energy from reference file", "reading simple",
                        refLine("I0 Data", 2, "SCAN", angleToEV(12.0), angleToEV(12.5)), "echo after" }
        << QStringList{ "I1 Data: energy from reference file" };
    // A file that is not there: the source changes all the same, and the
    // batch goes on.
    QTest::newRow("missing reference file")
        << QStringList{ "eng_by_ref_i0 none.dat", ":echo after", "quit" }
        << QStringList{ "I0 Data: energy from reference file", "Can't open ref file none.dat", "echo after" }
        << QStringList{ "reading simple" };
    // The empty name selects nothing.
    QTest::newRow("empty reference name") << QStringList{ "eng_by_ref_i1", ":echo after", "quit" }
                                          << QStringList{ "echo after" }
                                          << QStringList{ "I1 Data: energy from reference file" };
    // On and off by "1" only; the name command needs no argument.
    QTest::newRow("calc and back to name")
        << QStringList{ "eng_by_calc_i0 1", "eng_by_calc_i1 yes", "eng_by_name_i0", ":echo after", "quit" }
        << QStringList{ "I0 Data: energy from file number", "I0 Data: energy from file name", "echo after" }
        << QStringList{ "I1 Data: energy from file number" };
    // Every panel word has an action (a word without one is logged as
    // "cmd <line>") and finishes at once, so the script reaches its end.
    QStringList all{ "set_i1_energy_pattern \\d\\d\\d\\d_\\d\\d", "set_i0_energy_pattern \\d\\d\\d\\d_\\d\\d" };
    const char *const words[] = { "cut_f 2", "cut_l 3", "skip 2", "show_latest 0", "eng_by_name",
                                  "eng_by_name_reg_exp \\d\\d\\d\\d\\.\\d", "eng_by_name_factor 1000",
                                  "eng_by_calc 0", "eng_calc_base 7000", "eng_calc_delta 0.5", "eng_calc_end 9000",
                                  "eng_calc_num 200", "eng_calc_even_in_eng 1", "eng_calc_even_in_deg 1",
                                  "eng_calc_disp_unit 7", "eng_by_ref" };
    for (const char *w : words) {
        const QString word = QString::fromLatin1(w).section(' ', 0, 0);
        const QString arg = QString::fromLatin1(w).section(' ', 1);
        all << QString(word + "_i0 " + arg).trimmed() << QString(word + "_i1 " + arg).trimmed();
    }
    QCOMPARE(all.size(), 34);
    QTest::newRow("every panel word") << (all << ":echo after" << "quit") << QStringList{ "echo after" }
                                      << QStringList{ "cmd " };
}

void TestSelectRun::scripts()
{
    QFETCH(QStringList, batch);
    QFETCH(QStringList, expected);
    QFETCH(QStringList, absent);

    E2eRun run;
    QVERIFY(run.isValid());
    const QString ref = run.writeFile("ref.dat", "angle I0\n14.0 1\n14.5 1\n# gap\n15.0 1\n");
    const QString scan = run.writeFile("scan.dat", "9809 scan\nD= 3.1\nOffset 0 0\n1 12.0 3 4\n2 12.5 3 4\n");
    batch.replaceInStrings("REF", ref);
    batch.replaceInStrings("SCAN", scan);
    expected.replaceInStrings("REF", ref);
    expected.replaceInStrings("SCAN", scan);

    const E2eResult r = run.runBatch({ ":end" }, batch, 30000);
    E2E_VERIFY_RUN(r, true);
    E2E_VERIFY_LINES(r.debug, expected, absent);
}

QTEST_GUILESS_MAIN(TestSelectRun)
#include "tst_selectrun.moc"
