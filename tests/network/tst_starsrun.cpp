#include "network/StarsTestServer.h"
#include "support/E2eRun.h"

#include <QProcess>
#include <QtTest>

// The built program against a test STARS server: logins with several key
// files and challenges, refusals, servers that misbehave before and after
// the login, and the remote commands of a second client. The program runs
// no batch and stays up until the test kills it: still running by then
// means that nothing crashed or ended it.
class TestStarsRun : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { E2E_REQUIRE_EXECUTABLE(); }
    void login_data();
    void login();
    void remoteCommands();
};

namespace {
struct Program {
    Program(const E2eRun &run, const QString &host, quint16 port, const QString &keyFile)
    {
        run.writeFile("config.cfg", QString("NAME_ON_STARS Tessarelle\nKEY_ON_STARS %1\nSTARS_IP %2\nSTARS_PORT %3\n")
                                        .arg(keyFile, host)
                                        .arg(port));
        p.setWorkingDirectory(run.dir());
        p.setStandardOutputFile(QProcess::nullDevice());
        p.start(E2eRun::executable(), {"-e", "-c", "config.cfg", "-platform", "offscreen"});
    }
    ~Program()
    {
        p.kill();
        p.waitForFinished(5000);
    }
    // True when each of expected begins a line of the debug stream, in order.
    bool logged(const QStringList &expected)
    {
        debug += QString::fromUtf8(p.readAllStandardError());
        qsizetype at = 0;
        for (const QString &e : expected)
            if ((at = debug.indexOf('\n' + e, at)) < 0)
                return false;
        return true;
    }
    QProcess p;
    QString debug;
};
} // namespace

void TestStarsRun::login_data()
{
    QTest::addColumn<QByteArray>("keys");       // the program's key file: none when "missing"
    QTest::addColumn<QByteArray>("serverKeys"); // the server's copy
    QTest::addColumn<QByteArray>("greeting");   // the server's first bytes
    QTest::addColumn<int>("mode");              // 1 the server closes after them, 2 the name is taken
    QTest::addColumn<QString>("host");
    QTest::addColumn<QStringList>("expected"); // beginnings of debug lines in order; PORT for the port

    const QByteArray k4("k0\nk1\nk2\nk3\n");
    const QString key("sending key [Tessarelle]"), ok("Connected To Stars"), ip("127.0.0.1");
    const QString refusal("msg from stars[System> Er: Bad node name or key]"), gone("Disconnected from Stars");
    QTest::newRow("4 keys, challenge 10") << k4 << k4 << QByteArray("10\n") << 0 << ip << QStringList{key + "[k2]", ok};
    QTest::newRow("blank line picked") << QByteArray("a\n\nc\n") << QByteArray("a\n\nc\n") << QByteArray("4\n") << 0
                                       << ip << QStringList{key + "[]", ok};
    QTest::newRow("CRLF key file") << QByteArray("a\r\nb\r\n") << QByteArray("a\r\nb\r\n")
                                   << QByteArray("9999\r\n") << 0 << ip << QStringList{key + "[b]", ok};
    // The program simplifies blanks in a key; the server compares exactly.
    QTest::newRow("key with two blanks") << QByteArray("x  y\n") << QByteArray("x  y\n") << QByteArray("0\n") << 0
                                         << ip << QStringList{key + "[x y]", refusal, gone};
    QTest::newRow("name taken") << k4 << k4 << QByteArray("1\n") << 2 << ip
                                << QStringList{key + "[k1]", "msg from stars[System> Er: Tessarelle already exists.]",
                                               gone};
    QTest::newRow("key file missing") << QByteArray("missing") << k4 << QByteArray("1\n") << 0 << ip
                                      << QStringList{"Can't open key file [", "I have no key to exchange with Stars."};
    QTest::newRow("garbage challenge") << k4 << k4 << QByteArray("\xff\x01 zz\n") << 0 << ip
                                       << QStringList{key + "[k0]", refusal, gone};
    QTest::newRow("never answers") << k4 << k4 << QByteArray() << 0 << ip << QStringList{"connecting to Stars [" + ip};
    QTest::newRow("closes mid-line") << k4 << k4 << QByteArray("12") << 1 << ip << QStringList{gone};
    QTest::newRow("bad host") << k4 << k4 << QByteArray("Bad host. 127.0.0.1\n") << 1 << ip
                              << QStringList{"msg from stars[Bad host. 127.0.0.1]", key + "[k0]", gone};
    QTest::newRow("host unknown") << k4 << k4 << QByteArray() << 0 << "no-such-host.invalid"
                                  << QStringList{"Stars [no-such-host.invalid:PORT] : "};
}

void TestStarsRun::login()
{
    QFETCH(QByteArray, keys);
    QFETCH(QByteArray, serverKeys);
    QFETCH(QByteArray, greeting);
    QFETCH(int, mode);
    QFETCH(QString, host);
    QFETCH(QStringList, expected);

    E2eRun run;
    QVERIFY(run.isValid() && QDir(run.dir()).mkdir("srv"));
    QFile sk(run.dir() + "/srv/Tessarelle.key");
    QVERIFY(sk.open(QIODevice::WriteOnly) && sk.write(serverKeys) == serverKeys.size());
    sk.close();
    if (keys != "missing")
        run.writeFile("my.key", QString::fromLatin1(keys));
    StarsTestServer server(run.dir() + "/srv");
    QVERIFY(server.listen());
    server.greetings << greeting << greeting;
    server.closeAfterGreeting = mode == 1;
    std::unique_ptr<StarsTestPeer> taken;
    if (mode == 2) {
        taken.reset(new StarsTestPeer("Tessarelle", sk.fileName(), server.port()));
        QTRY_VERIFY(taken->ready);
    }
    Program prog(run, host, server.port(), "my.key");
    QTRY_VERIFY2_WITH_TIMEOUT(prog.logged(expected.replaceInStrings("PORT", QString::number(server.port()))),
                              qPrintable(prog.debug), 10000);
    QTest::qWait(300);
    QVERIFY2(prog.p.state() == QProcess::Running, qPrintable(prog.debug));
    const bool in = expected.last() == "Connected To Stars";
    QCOMPARE(server.loggedIn.count("Tessarelle"), int(in) + int(mode == 2));
}

void TestStarsRun::remoteCommands()
{
    E2eRun run;
    QVERIFY(run.isValid() && QDir(run.dir()).mkdir("srv"));
    run.writeFile("srv/Tessarelle.key", "k0\nk1\nk2\n");
    QVERIFY(QFile::copy(run.dir() + "/srv/Tessarelle.key", run.dir() + "/srv/Dev.key"));
    StarsTestServer server(run.dir() + "/srv");
    QVERIFY(server.listen());
    Program prog(run, "127.0.0.1", server.port(), "srv/Tessarelle.key");
    StarsTestPeer dev("Dev", run.dir() + "/srv/Dev.key", server.port());
    QTRY_VERIFY_WITH_TIMEOUT(dev.ready && prog.logged({"Connected To Stars"}), 10000);

    const QString hello("Tessarelle>Dev @Hello Hello! I am Tessarelle. Nice to meet you!");
    for (const char *ask : {"Hello", "Help", "Help IsBusy", "Help Nope", "Other", "_Hello"})
        dev.send(QString("Dev>Tessarelle ") + ask);
    dev.send("Dev.c>Tessarelle.x IsBusy");
    QStringList answers{hello, "Tessarelle>Dev @Help Commands : Hello Help IsBusy",
                        "Tessarelle>Dev @Help : Answer if kVerno is busy",
                        "Tessarelle>Dev @Help Er: Command [Nope] not found.", hello, "Tessarelle.x>Dev.c @IsBusy 0"};
    QTRY_COMPARE(dev.lines, answers);

    // From the server itself: garbage, a megabyte without a line feed (its
    // end comes later) and a flood of asks; a greeting behind them is still
    // answered, after all of the flood.
    const int flood = 3000;
    QVERIFY(server.sendRaw("Tessarelle", QByteArrayLiteral("\x00\xff\xfe garbage\nhello\n>\n\nDev>Tessarelle\n\"\n")));
    QVERIFY(server.sendRaw("Tessarelle", QByteArray(1 << 20, '#')));
    QVERIFY(server.sendRaw("Tessarelle", "#\n" + QByteArray("Dev>Tessarelle IsBusy\n").repeated(flood)));
    dev.send("Dev>Tessarelle Hello");
    for (int i = 0; i < flood; ++i)
        answers << "Tessarelle>Dev @IsBusy 0";
    answers << hello;
    QTRY_COMPARE_WITH_TIMEOUT(dev.lines.size(), answers.size(), 20000);
    QCOMPARE(dev.lines, answers);
    QVERIFY2(prog.logged({"dropped a line longer than 262144 bytes from stars"}), qPrintable(prog.debug.right(2000)));
    QCOMPARE(prog.p.state(), QProcess::Running);
}

QTEST_GUILESS_MAIN(TestStarsRun)
#include "tst_starsrun.moc"
