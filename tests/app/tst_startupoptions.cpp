#include "app/ConfigTable.h"
#include "app/Globals.h"
#include "app/StartupOptions.h"

#include <QTemporaryDir>
#include <QtTest>

// The command line and config.cfg as main() reads them: each row is a command
// line and a configuration text, and what the program should make of them.
class TestStartupOptions : public QObject
{
    Q_OBJECT
private slots:
    void options_data();
    void options();
};

void TestStartupOptions::options_data()
{
    QTest::addColumn<QStringList>("argv");
    QTest::addColumn<QString>("config");        // text of the file named by -c / -config
    QTest::addColumn<QString>("configFile");    // file chosen, relative to the temp dir
    QTest::addColumn<QString>("dataRoot");
    QTest::addColumn<QString>("batchRoot");
    QTest::addColumn<bool>("showA2B");
    QTest::addColumn<bool>("english");
    QTest::addColumn<QString>("batchFile");
    QTest::addColumn<bool>("execBatch");
    QTest::addColumn<bool>("debug");

    QTest::newRow("nothing") << QStringList{} << "" << "default.cfg" << "C:/Data" << "C:/Data"
                             << false << false << "" << false << false;
    QTest::newRow("-config wins over -c") << QStringList{ "-c", "a.cfg", "-config", "b.cfg" } << ""
                                          << "b.cfg" << "C:/Data" << "C:/Data" << false << false << ""
                                          << false << false;
    QTest::newRow("-config wins in any order") << QStringList{ "-config", "b.cfg", "-c", "a.cfg" } << ""
                                               << "b.cfg" << "C:/Data" << "C:/Data" << false << false
                                               << "" << false << false;
    QTest::newRow("roots from the file") << QStringList{ "-c", "a.cfg" }
                                         << "DataRoot /d/data\nBatchRoot /d/bat\n" << "a.cfg" << "/d/data"
                                         << "/d/bat" << false << false << "" << false << false;
    QTest::newRow("command line beats the file")
        << QStringList{ "-c", "a.cfg", "-d", "/cl/data", "-br", "/cl/bat" }
        << "DataRoot /d/data\nBatchRoot /d/bat\n" << "a.cfg" << "/cl/data" << "/cl/bat" << false << false
        << "" << false << false;
    // DataRoot is read case-sensitively
    QTest::newRow("root key case") << QStringList{ "-c", "a.cfg" } << "dataroot /d/data\n" << "a.cfg"
                                   << "C:/Data" << "C:/Data" << false << false << "" << false << false;
    QTest::newRow("button from the file") << QStringList{ "-c", "a.cfg" } << "ShowAnalyzer2Button 1\n"
                                          << "a.cfg" << "C:/Data" << "C:/Data" << true << false << ""
                                          << false << false;
    QTest::newRow("-showA2B 1") << QStringList{ "-showA2B", "1" } << "" << "default.cfg" << "C:/Data"
                                << "C:/Data" << true << false << "" << false << false;
    // only the integer 1 shows the button
    QTest::newRow("-showA2B 2") << QStringList{ "-showA2B", "2" } << "" << "default.cfg" << "C:/Data"
                                << "C:/Data" << false << false << "" << false << false;
    QTest::newRow("-showA2B 0 hides the file's 1")
        << QStringList{ "-c", "a.cfg", "-showA2B", "0" } << "ShowAnalyzer2Button 1\n" << "a.cfg"
        << "C:/Data" << "C:/Data" << false << false << "" << false << false;
    QTest::newRow("button text is 0") << QStringList{ "-c", "a.cfg" } << "ShowAnalyzer2Button yes\n"
                                      << "a.cfg" << "C:/Data" << "C:/Data" << false << false << ""
                                      << false << false;
    QTest::newRow("-e -j is English") << QStringList{ "-e", "-j" } << "" << "default.cfg" << "C:/Data"
                                      << "C:/Data" << false << true << "" << false << false;
    QTest::newRow("-b file -x") << QStringList{ "-b", "job.bat", "-x", "-dbg" } << "" << "default.cfg"
                                << "C:/Data" << "C:/Data" << false << false << "job.bat" << true << true;
    // -b followed by an option has an empty value: the editor stays as it is
    QTest::newRow("-b then option") << QStringList{ "-b", "-x" } << "" << "default.cfg" << "C:/Data"
                                    << "C:/Data" << false << false << "" << true << false;
}

void TestStartupOptions::options()
{
    QFETCH(QStringList, argv);
    QFETCH(QString, config);
    QFETCH(QString, configFile);
    QFETCH(QString, dataRoot);
    QFETCH(QString, batchRoot);
    QFETCH(bool, showA2B);
    QFETCH(bool, english);
    QFETCH(QString, batchFile);
    QFETCH(bool, execBatch);
    QFETCH(bool, debug);

    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    // the file names on the command line are made absolute in the temp dir
    QStringList args{ "prog" };
    for (qsizetype i = 0; i < argv.size(); ++i) {
        const bool isFile = i > 0 && (argv[i - 1] == "-c" || argv[i - 1] == "-config");
        args << (isFile ? dir.filePath(argv[i]) : argv[i]);
        if (isFile && argv[i] == configFile) {
            QFile f(dir.filePath(argv[i]));
            QVERIFY(f.open(QIODevice::WriteOnly));
            f.write(config.toUtf8());
        }
    }

    InitGlobals();
    ConfigTable t;
    t.parseArgs(args, false, QString(), { "-c", "-config" });
    const QString chosen = StartupOptions::configFileName(t, dir.filePath("default.cfg"));
    QCOMPARE(chosen, dir.filePath(configFile));
    if (!QFile::exists(chosen))
        QTest::ignoreMessage(QtDebugMsg, qPrintable("Can't open config file : " + chosen));
    t.load(chosen);
    StartupOptions::applyRootsAndButton(t);
    const StartupOptions::Flags f = StartupOptions::readFlags(t);

    QCOMPARE(gDataRoot, dataRoot);
    QCOMPARE(gBatchRoot, batchRoot);
    QCOMPARE(gShowAnalyzer2Button, showA2B);
    QCOMPARE(f.english, english);
    QCOMPARE(f.batchFile, batchFile);
    QCOMPARE(f.execBatch, execBatch);
    QCOMPARE(f.debug, debug);
}

QTEST_GUILESS_MAIN(TestStartupOptions)
#include "tst_startupoptions.moc"
