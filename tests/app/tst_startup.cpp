#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

// Runs the real program offscreen and reads its debug output until the
// expected lines have come, in order; then ends it, since it has no command
// to quit yet. "%D" in the texts stands for the temporary directory.
class TestStartup : public QObject
{
    Q_OBJECT
private slots:
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

    const QString exe = qEnvironmentVariable("TESSARELLE_EXE");
    if (exe.isEmpty() || !QFileInfo::exists(exe))
        QSKIP("TESSARELLE_EXE does not name the built program");

    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString d = QFileInfo(dir.path()).canonicalFilePath();
    const auto writeFile = [&](const QString &name, QString text) {
        QFile f(d + "/" + name);
        return f.open(QIODevice::WriteOnly) && f.write(text.replace("%D", d).toUtf8()) >= 0;
    };
    if (!configText.isEmpty())
        QVERIFY(writeFile("some.cfg", configText));
    if (!incText.isEmpty())
        QVERIFY(writeFile("inc.cfg", incText));
    args.replaceInStrings("%D", d);
    expected.replaceInStrings("%D", d);

    QProcess p;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("QT_QPA_PLATFORM", "offscreen");
    p.setProcessEnvironment(env);
    p.setWorkingDirectory(d);
    p.start(exe, args);
    QVERIFY2(p.waitForStarted(10000), qPrintable(p.errorString()));

    QStringList seen;
    qsizetype next = 0;
    QByteArray pending;
    QElapsedTimer timer;
    timer.start();
    while (next < expected.size() && timer.elapsed() < 20000 && p.state() == QProcess::Running) {
        p.waitForReadyRead(200);
        pending += p.readAllStandardError();
        qsizetype nl;
        while ((nl = pending.indexOf('\n')) >= 0) {
            const QString line = QString::fromUtf8(pending.left(nl));
            pending.remove(0, nl + 1);
            seen << line;
            if (next < expected.size() && line == expected.at(next))
                ++next;
        }
    }
    const bool stillRunning = p.state() == QProcess::Running;
    p.kill();
    p.waitForFinished(10000);

    QVERIFY2(next == expected.size(),
             qPrintable(QString("waiting for [%1]; output was:\n%2")
                            .arg(next < expected.size() ? expected.at(next) : QString(), seen.join('\n'))));
    // the program must still be up once it has read the configuration
    QVERIFY(stillRunning);
}

QTEST_GUILESS_MAIN(TestStartup)
#include "tst_startup.moc"
