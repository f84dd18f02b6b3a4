#include "support/E2eRun.h"

#include <QtTest>

// Runs the real program offscreen for a few seconds and checks that the
// expected lines came, in order, and that it was still up at the end.
// "%D" in the texts stands for the run folder.
class TestStartup : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { E2E_REQUIRE_EXECUTABLE(); }
    void startsAndReadsConfig_data();
    void startsAndReadsConfig();
};

static const QString Banner = " =========== Batchs in Config ==============";

void TestStartup::startsAndReadsConfig_data()
{
    QTest::addColumn<QString>("configText");
    QTest::addColumn<QString>("incText");
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("batch lines") << "DataRoot %D/data # root\nbatch :for i 1 3\nOther x\nBATCH echo \"a b\"\n"
                                 << "" << QStringList{ "-e", "-c", "%D/some.cfg" }
                                 << QStringList{ "Config file : %D/some.cfg",
                                                 "Data root : %D/data, batch root : C:/Data", Banner,
                                                 ":for i 1 3", "echo \"a b\"", Banner };
    QTest::newRow("-config wins") << "batch from-config\n" << ""
                                  << QStringList{ "-e", "-c", "%D/none.cfg", "-config", "%D/some.cfg", "-br", "%D/b" }
                                  << QStringList{ "Config file : %D/some.cfg",
                                                  "Data root : C:/Data, batch root : %D/b", Banner,
                                                  "from-config", Banner };
    QTest::newRow("include in place") << "batch one\nINCLUDE %D/inc.cfg\nbatch three\n" << "batch two\n"
                                      << QStringList{ "-e", "-c", "%D/some.cfg" }
                                      << QStringList{ Banner, "one", "two", "three", Banner };
    // a missing configuration is only logged, and the program comes up
    QTest::newRow("missing config") << "" << "" << QStringList{ "-e", "-c", "%D/nowhere.cfg" }
                                    << QStringList{ "Can't open config file : %D/nowhere.cfg",
                                                    "Data root : C:/Data, batch root : C:/Data", Banner, Banner };
}

void TestStartup::startsAndReadsConfig()
{
    QFETCH(QString, configText);
    QFETCH(QString, incText);
    QFETCH(QStringList, args);
    QFETCH(QStringList, expected);

    E2eRun run;
    QVERIFY(run.isValid());
    const QString d = QFileInfo(run.dir()).canonicalFilePath();
    if (!configText.isEmpty())
        run.writeFile("some.cfg", configText.replace("%D", d));
    if (!incText.isEmpty())
        run.writeFile("inc.cfg", incText.replace("%D", d));
    args.replaceInStrings("%D", d);
    expected.replaceInStrings("%D", d);

    // Without -x nothing ends the program: it must still be running.
    const E2eResult r = run.run(args, 4000);
    E2E_VERIFY_RUN(r, false);
    E2E_VERIFY_LINES(r.debug, expected, QStringList());
}

QTEST_GUILESS_MAIN(TestStartup)
#include "tst_startup.moc"
