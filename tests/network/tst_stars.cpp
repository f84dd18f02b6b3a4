#include "app/Body.h"
#include "app/Globals.h"
#include "network/Client.h"
#include "network/Stars.h"
#include "network/StarsTestServer.h"

#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QtTest>

// The TCP target's lazy connection and bounded wait; the main window as a
// client of a test STARS server: announcements, the spectrum view's "To
// Network", the history file and the connect button.
class TestStars : public QObject
{
    Q_OBJECT
private slots:
    void client();
    void body();
};

void TestStars::client()
{
    QTcpServer target;
    QVERIFY(target.listen(QHostAddress::LocalHost, 0));
    Client c;
    c.host = "127.0.0.1";
    c.port = target.serverPort();
    QTest::qWait(50);
    QVERIFY(!target.hasPendingConnections()); // nothing before the first send
    QVERIFY(c.send("one\n") && c.send("two\n---\n"));
    QTRY_VERIFY(target.hasPendingConnections());
    QTcpSocket *peer = target.nextPendingConnection();
    QTRY_COMPARE(peer->bytesAvailable(), 12);
    QCOMPARE(peer->readAll(), QByteArray("one\ntwo\n---\n"));
    QVERIFY(!target.hasPendingConnections()); // one connection for both

    // What the target says is thrown away; its close makes the next send
    // connect anew.
    peer->write(QByteArray(200000, 'z'));
    peer->disconnectFromHost();
    QTRY_COMPARE(c.state(), QAbstractSocket::UnconnectedState);
    QVERIFY(c.send("three\n"));
    QTRY_VERIFY(target.hasPendingConnections());
    peer = target.nextPendingConnection();
    QTRY_COMPARE(peer->bytesAvailable(), 6);

    // A target that is down loses the data within the bounded wait.
    target.close();
    for (const char *host : {"127.0.0.1", "192.0.2.1", "no-such-host.invalid"}) {
        Client down;
        down.host = host;
        down.port = target.serverPort();
        QElapsedTimer t;
        t.start();
        QVERIFY(!down.send("lost\n"));
        QVERIFY2(t.elapsed() < Client::ConnectWaitMs + 1500, host);
    }
    c.useTcp = false;
    QVERIFY(!c.send("four\n"));
}

void TestStars::body()
{
    QTemporaryDir dir;
    QVERIFY(QDir::setCurrent(dir.path()));
    QDir().mkdir("keys");
    for (const char *node : {"Tess", "Dev"}) {
        QFile k(QStringLiteral("keys/%1.key").arg(node));
        QVERIFY(k.open(QIODevice::WriteOnly) && k.write("alpha\nbeta\ngamma\n") > 0);
    }
    StarsTestServer server(dir.filePath("keys"));
    QVERIFY(server.listen());
    InitGlobals();
    gConfig = ConfigTable();
    const QString port = QString::number(server.port());
    for (const auto &[key, value] : {std::pair{"STARS_IP", QString("127.0.0.1")}, {"STARS_PORT", port},
                                     {"NAME_ON_STARS", QString("Tess")}, {"KEY_ON_STARS", QString("keys/Tess.key")}})
        gConfig.add(key, value, value, QString());

    Body b;
    Stars *s = b.stars();
    QCOMPARE(b.announceSaved("SavedImage", "/d/p.png"),
             QString("Stars is not ready (Tess>System _SavedImage /d/p.png)"));
    QTRY_VERIFY(s->isConnected());
    QCOMPARE(server.loggedIn, QStringList{"Tess"});
    auto *connectB = s->findChild<QPushButton *>("connectB");
    QCOMPARE(connectB->text(), QString("Disconnect"));

    StarsTestPeer dev("Dev", "keys/Dev.key", server.port());
    QTRY_VERIFY(dev.ready);
    dev.send("System flgon Tess");
    QTRY_COMPARE(dev.lines.size(), 1);

    // Events reach the listener: an announcement, and "To Network" with the
    // bins as the fields hold them and no stack loaded.
    QCOMPARE(b.announceSaved("SavedImage", "/d/p.png"), QString("Tess>System _SavedImage /d/p.png"));
    auto field = [&b](const char *name) { return b.findChild<QLineEdit *>(name); };
    field("vHWidth_")->setText("3");
    field("aVWidth_")->setText("7");
    b.findChild<QPushButton *>("toStars_")->click();
    QTRY_COMPARE(dev.lines.size(), 3);
    QCOMPARE(dev.lines.at(1), QString("Tess>Dev _SavedImage /d/p.png"));
    const QString vh = field("vVWidth_")->text(), ah = field("aHWidth_")->text();
    const QString head = "Tess>Dev _SendXafsData # I1      : --|# I0      : --|# Point x : 0|# Point y : 0|"
                         "# Bin W   : 3|# Bin H   : " + vh + "|# View Bin W      : 3|# View Bin H      : " + vh
        + "|# Analyze Bin W   : " + ah + "|# Analyze Bin H   : 7|";
    QVERIFY2(dev.lines.at(2).startsWith(head) && dev.lines.at(2).endsWith("|---|"), qPrintable(dev.lines.at(2)));

    // A host typed in goes to the history once per change.
    auto *host = s->findChild<QLineEdit *>("hostLE");
    for (const char *h : {"h1", "h1", "h2"}) {
        host->setText(h);
        emit host->editingFinished();
    }
    QFile hist("SSVHistory.dat");
    QVERIFY(hist.open(QIODevice::ReadOnly));
    QCOMPARE(hist.readAll(), QByteArray("A: h1\nA: h2\n"));

    if (qEnvironmentVariableIsSet("TESSARELLE_SHOT")) { // a picture of the window, to look at
        b.show();
        b.findChild<QScrollArea *>("sideScroll")->ensureWidgetVisible(s);
        b.grab().save(qEnvironmentVariable("TESSARELLE_SHOT"));
    }
    // The button disconnects; what is sent then is lost.
    connectB->click();
    QTRY_COMPARE(s->state(), 0);
    QVERIFY(b.announceSaved("SavedImage", "x").startsWith("Stars is not ready ("));
}

QTEST_MAIN(TestStars)
#include "tst_stars.moc"
