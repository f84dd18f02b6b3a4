#include "support/E2eRun.h"

#include <QtTest>

// The element panel driven by a script: each suggestion that reaches the
// edge table logs the energy it wrote into the edge field.
class TestSuggestRun : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void suggestions_data();
    void suggestions();
};

void TestSuggestRun::initTestCase()
{
    E2E_REQUIRE_EXECUTABLE();
}

void TestSuggestRun::suggestions_data()
{
    QTest::addColumn<QStringList>("batch");
    QTest::addColumn<QStringList>("expected");
    QTest::addColumn<QStringList>("absent");

    // Energies are the table's keV values times 1000 in 6 significant digits:
    // Cu K 8.98436029 -> 8984.36, Cu LIII 0.935 -> 935, Pr LI 6.838 -> 6838,
    // H K "=" -> 0.
    QTest::newRow("copper K")
        << QStringList{"Suggesting_Elm Cu", "quit"} << QStringList{"suggested edge Cu K : 8984.36 eV"}
        << QStringList();
    QTest::newRow("edge by index")
        << QStringList{"Suggesting_Edge 3", ":echo done", "quit"}
        << QStringList{"suggested edge Cu L3 : 935 eV", "echo done"} << QStringList{"suggested edge Cu K"};
    QTest::newRow("element then edge")
        << QStringList{"Suggesting_Elm Pr", "Suggesting_Edge 1", "quit"}
        << QStringList{"suggested edge Pr K : 41999 eV", "suggested edge Pr L1 : 6838 eV"} << QStringList();
    QTest::newRow("missing value reads 0")
        << QStringList{"Suggesting_Elm H", "quit"} << QStringList{"suggested edge H K : 0 eV"} << QStringList();
    // Symbols are case-sensitive; unknown ones leave the field alone.
    QTest::newRow("unknown symbols")
        << QStringList{"Suggesting_Elm cu", "Suggesting_Elm Xx", ":echo after", "quit"}
        << QStringList{"echo after"} << QStringList{"suggested edge"};
    QTest::newRow("switching on suggests")
        << QStringList{"suggest_elm 1", "quit"} << QStringList{"suggested edge Cu K : 8984.36 eV"}
        << QStringList();
}

void TestSuggestRun::suggestions()
{
    QFETCH(QStringList, batch);
    QFETCH(QStringList, expected);
    QFETCH(QStringList, absent);

    E2eRun run;
    QVERIFY(run.isValid());
    const E2eResult r = run.runBatch({":end"}, batch, 30000);
    E2E_VERIFY_RUN(r, true);
    E2E_VERIFY_LINES(r.debug, expected, absent);
}

QTEST_GUILESS_MAIN(TestSuggestRun)
#include "tst_suggestrun.moc"
