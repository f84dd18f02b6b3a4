#include "support/E2eRun.h"

#include <QtTest>

// The colour-bar commands of the batch language, run by the built program:
// the debug stream shows what reached the bar and the main window.
class TestCBarBatch : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void commands_data();
    void commands();
};

void TestCBarBatch::initTestCase()
{
    E2E_REQUIRE_EXECUTABLE();
}

void TestCBarBatch::commands_data()
{
    QTest::addColumn<QStringList>("batch");
    QTest::addColumn<QStringList>("expected"); // in this order

    QTest::newRow("range") << QStringList{"cbar_set_range 100 2500.5", ":echo after", "quit"}
                           << QStringList{"setting cbar 100 2500.5", "echo after"};
    // Text that is not a number, and missing arguments, read as 0.
    QTest::newRow("bad and missing numbers") << QStringList{"cbar_set_range abc", ":echo after", "quit"}
                                             << QStringList{"setting cbar 0 0", "echo after"};
    QTest::newRow("exponent and sign") << QStringList{"CBAR_SET_RANGE -1.5e3 2E-2", "quit"}
                                       << QStringList{"setting cbar -1500 0.02"};
    // Set All reports the bar's ends, untouched by a value range.
    QTest::newRow("set all") << QStringList{"cbar_set_range 5 6", "cbar_set_all", ":echo after", "quit"}
                             << QStringList{"setting cbar 5 6", "cbar set all", "cBarUpdated 0 1", "echo after"};
}

void TestCBarBatch::commands()
{
    QFETCH(QStringList, batch);
    QFETCH(QStringList, expected);

    E2eRun run;
    QVERIFY(run.isValid());
    const E2eResult r = run.runBatch({":end"}, batch, 30000);
    E2E_VERIFY_RUN(r, true);
    // A command with an action is not reported as one without.
    E2E_VERIFY_LINES(r.debug, expected, QStringList{"Err: cbar"});
}

QTEST_GUILESS_MAIN(TestCBarBatch)
#include "tst_cbarbatch.moc"
