#include "app/ConfigTable.h"
#include "app/Globals.h"
#include "app/StartupOptions.h"

#include <QTemporaryDir>
#include <QtTest>

// The command line and config.cfg as main() reads them. Each row: the command
// line, the text of the file it names, the file that should be chosen, and
// "dataRoot|batchRoot|flags|batchFile" with flags A(button) E(English) X(exec) D(debug).
class TestStartupOptions : public QObject
{
    Q_OBJECT
private slots:
    void options_data();
    void options();
};

void TestStartupOptions::options_data()
{
    QTest::addColumn<QString>("argv");
    QTest::addColumn<QString>("config");
    QTest::addColumn<QString>("configFile");
    QTest::addColumn<QString>("expected");

    const QString d = "C:/Data|C:/Data|";
    QTest::newRow("nothing") << "" << "" << "default.cfg" << d + "|";
    QTest::newRow("-config wins over -c") << "-c a.cfg -config b.cfg" << "" << "b.cfg" << d + "|";
    QTest::newRow("-config wins in any order") << "-config b.cfg -c a.cfg" << "" << "b.cfg" << d + "|";
    QTest::newRow("roots from the file") << "-c a.cfg" << "DataRoot /d/data\nBatchRoot /d/bat\n" << "a.cfg"
                                         << "/d/data|/d/bat||";
    QTest::newRow("command line beats the file") << "-c a.cfg -d /cl/data -br /cl/bat"
                                                 << "DataRoot /d/data\nBatchRoot /d/bat\n" << "a.cfg"
                                                 << "/cl/data|/cl/bat||";
    QTest::newRow("root key is case-sensitive") << "-c a.cfg" << "dataroot /d/data\n" << "a.cfg" << d + "|";
    QTest::newRow("button from the file") << "-c a.cfg" << "ShowAnalyzer2Button 1\n" << "a.cfg" << d + "A|";
    QTest::newRow("-showA2B 1") << "-showA2B 1" << "" << "default.cfg" << d + "A|";
    QTest::newRow("-showA2B 2 is not 1") << "-showA2B 2" << "" << "default.cfg" << d + "|";
    QTest::newRow("-showA2B 0 hides the file's 1") << "-c a.cfg -showA2B 0" << "ShowAnalyzer2Button 1\n"
                                                   << "a.cfg" << d + "|";
    QTest::newRow("button text is 0") << "-c a.cfg" << "ShowAnalyzer2Button yes\n" << "a.cfg" << d + "|";
    QTest::newRow("-e -j is English") << "-e -j" << "" << "default.cfg" << d + "E|";
    QTest::newRow("-b file -x") << "-b job.bat -x -dbg" << "" << "default.cfg" << d + "XD|job.bat";
    // -b followed by an option has an empty value: the editor stays as it is
    QTest::newRow("-b then option") << "-b -x" << "" << "default.cfg" << d + "X|";
}

void TestStartupOptions::options()
{
    QFETCH(QString, argv);
    QFETCH(QString, config);
    QFETCH(QString, configFile);
    QFETCH(QString, expected);

    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    // configuration file names on the command line are made absolute in the temp dir
    const QStringList words = argv.split(' ', Qt::SkipEmptyParts);
    QStringList args{ "prog" };
    for (qsizetype i = 0; i < words.size(); ++i) {
        const bool isFile = i > 0 && (words[i - 1] == "-c" || words[i - 1] == "-config");
        args << (isFile ? dir.filePath(words[i]) : words[i]);
        QFile f(dir.filePath(words[i]));
        if (isFile && words[i] == configFile)
            QVERIFY(f.open(QIODevice::WriteOnly) && f.write(config.toUtf8()) >= 0);
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
    const QString flags = QString(gShowAnalyzer2Button ? "A" : "") + (f.english ? "E" : "")
        + (f.execBatch ? "X" : "") + (f.debug ? "D" : "");
    QCOMPARE(QStringList({ gDataRoot, gBatchRoot, flags, f.batchFile }).join('|'), expected);
}

QTEST_GUILESS_MAIN(TestStartupOptions)
#include "tst_startupoptions.moc"
