#include "network/StarsTestServer.h"

#include <QFile>
#include <QRandomGenerator>
#include <QRegularExpression>

namespace {
QList<QByteArray> keyLines(const QString &file) // only LF and one CR go
{
    QFile f(file);
    QList<QByteArray> keys = f.open(QIODevice::ReadOnly) ? f.readAll().split('\n') : QList<QByteArray>{};
    if (!keys.isEmpty())
        keys.removeLast(); // behind the last line feed
    for (QByteArray &k : keys)
        if (k.endsWith('\r'))
            k.chop(1);
    return keys;
}
} // namespace

StarsTestServer::StarsTestServer(const QString &keyDir)
    : keyDir(keyDir)
{
    connect(&server, &QTcpServer::newConnection, this, &StarsTestServer::accept);
}

bool StarsTestServer::sendRaw(const QString &node, const QByteArray &bytes)
{
    QTcpSocket *s = names.key(node);
    return s && s->write(bytes) == bytes.size();
}

int StarsTestServer::dropAll()
{
    const QList<QTcpSocket *> nodes = names.keys();
    for (QTcpSocket *s : nodes)
        s->disconnectFromHost();
    return int(nodes.size());
}

void StarsTestServer::accept()
{
    while (QTcpSocket *s = server.nextPendingConnection()) {
        const QByteArray greeting = greetings.isEmpty()
            ? QByteArray::number(QRandomGenerator::global()->bounded(10000)) + '\n' : greetings.takeFirst();
        bool isNumber = false;
        const int n = greeting.trimmed().toInt(&isNumber);
        challenges[s] = isNumber ? n : -1;
        connect(s, &QTcpSocket::readyRead, this, [this, s]() { read(s); });
        connect(s, &QTcpSocket::disconnected, this, [this, s]() {
            names.remove(s);
            challenges.remove(s);
            s->deleteLater();
        }, Qt::QueuedConnection);
        s->write(greeting);
        if (closeAfterGreeting)
            s->disconnectFromHost();
    }
}

void StarsTestServer::read(QTcpSocket *s)
{
    while (s->state() == QAbstractSocket::ConnectedState && s->canReadLine()) {
        QByteArray bytes = s->readLine().chopped(1);
        if (bytes.endsWith('\r'))
            bytes.chop(1);
        const QString line = QString::fromLatin1(bytes);
        if (names.contains(s))
            route(s, line);
        else
            login(s, line);
    }
}

void StarsTestServer::login(QTcpSocket *s, const QString &line)
{
    static const QRegularExpression blanks("\\s+");
    const QStringList f = line.split(blanks, Qt::SkipEmptyParts);
    const QString name = f.value(0);
    const QList<QByteArray> keys = keyLines(keyDir + '/' + name + ".key");
    const int c = challenges.value(s, -1);
    QString answer = QStringLiteral("System>%1 Ok:").arg(name);
    if (names.key(name))
        answer = QStringLiteral("System> Er: %1 already exists.").arg(name);
    else if (keys.isEmpty() || c < 0 || keys.at(c % keys.size()) != f.value(1).toLatin1())
        answer = QStringLiteral("System> Er: Bad node name or key");
    s->write(answer.toLatin1() + '\n');
    if (!answer.endsWith(" Ok:"))
        return s->disconnectFromHost();
    names[s] = name;
    loggedIn << name;
}

void StarsTestServer::route(QTcpSocket *s, const QString &line)
{
    const QString head = line.section(' ', 0, 0);
    const QString command = line.section(' ', 1);
    const QString from = head.contains('>') ? head.section('>', 0, 0) : names.value(s);
    const QString to = head.section('>', -1);
    const QString toNode = to.section('.', 0, 0);
    auto deliver = [this](const QString &node, const QString &text) {
        if (QTcpSocket *d = names.key(node))
            d->write(text.toLatin1() + '\n');
    };
    if (toNode == "System" && command.startsWith('_')) {
        // Matched on the sender as written: "NAME.ch" is not NAME.
        for (const QString &l : listeners.value(from))
            deliver(l, from + '>' + l + ' ' + command);
    } else if (toNode == "System" && command.startsWith("flgon ")) {
        listeners[command.section(' ', 1, 1)] << names.value(s);
        deliver(names.value(s), "System>" + from + " @flgon Ok:");
    } else if (names.key(toNode)) {
        deliver(toNode, from + '>' + to + ' ' + command);
    } else if (!command.startsWith('@') && !command.startsWith('_')) {
        deliver(names.value(s), "System>" + from + " @" + command.section(' ', 0, 0) + " Er: " + toNode + " is down.");
    }
}

StarsTestPeer::StarsTestPeer(const QString &name, const QString &keyFile, quint16 port)
{
    connect(this, &QTcpSocket::readyRead, this, [this, name, keyFile]() {
        while (canReadLine()) {
            const QString line = QString::fromLatin1(readLine().chopped(1));
            if (ready)
                lines << line;
            else if (line == QStringLiteral("System>%1 Ok:").arg(name))
                ready = true;
            else if (const QList<QByteArray> keys = keyLines(keyFile); !keys.isEmpty())
                write(name.toLatin1() + ' ' + keys.at(line.toInt() % keys.size()) + '\n');
        }
    });
    connectToHost(QHostAddress::LocalHost, port);
}
