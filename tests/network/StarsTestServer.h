#pragma once

#include <QHash>
#include <QStringList>
#include <QTcpServer>
#include <QTcpSocket>

// A STARS message server on a free port of 127.0.0.1 that behaves as the
// beamline's does: a challenge number on accept; a login "<name> <key>"
// checked byte for byte against the key that the number picks from
// <keyDir>/<name>.key; "System>NAME Ok:", or a refusal and the close;
// "[from>]to command" routed between nodes; events forwarded to the nodes
// that sent "System flgon NAME".
class StarsTestServer : public QObject
{
    Q_OBJECT
public:
    explicit StarsTestServer(const QString &keyDir);
    bool listen() { return server.listen(QHostAddress::LocalHost, 0); }
    quint16 port() const { return server.serverPort(); }
    // Writes bytes to a logged-in node as they stand.
    bool sendRaw(const QString &node, const QByteArray &bytes);
    // Closes every logged-in connection from the server's side; returns how
    // many there were.
    int dropAll();

    // What the next connections get first instead of a challenge number and
    // its line feed; with closeAfterGreeting the server then closes.
    QList<QByteArray> greetings;
    bool closeAfterGreeting = false;
    QStringList loggedIn;

private:
    void accept();
    void read(QTcpSocket *s);
    void login(QTcpSocket *s, const QString &line);
    void route(QTcpSocket *s, const QString &line);

    QTcpServer server;
    QString keyDir;
    QHash<QTcpSocket *, int> challenges; // -1 when the greeting held no number
    QHash<QTcpSocket *, QString> names;  // the logged-in nodes
    QHash<QString, QStringList> listeners;
};

// A second client of the server: it logs in with the key that its
// challenge picks from keyFile and gathers the lines routed to it.
class StarsTestPeer : public QTcpSocket
{
public:
    StarsTestPeer(const QString &name, const QString &keyFile, quint16 port);
    void send(const QString &line) { write(line.toLatin1() + '\n'); }
    bool ready = false;
    QStringList lines;
};
