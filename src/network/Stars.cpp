#include "network/Stars.h"

#include "network/ConnectStat.h"
#include "network/SSVHistory.h"
#include "network/StarsKeys.h"
#include "ui_Stars.h"

#include <QFileInfo>
#include <QTcpSocket>

Stars::Stars(QWidget *parent)
    : QFrame(parent)
    , ui(new Ui::Stars)
    , cmdTable(StarsCmdTable::standard())
{
    ui->setupUi(this);
    socket = new QTcpSocket(this);
    stat = new ConnectStat(ui->statusL, ui->connectB, this);

    connect(stat, &ConnectStat::askConnect, this, &Stars::connectToStars);
    connect(stat, &ConnectStat::askDisconnect, this, &Stars::connectToStars);
    connect(socket, &QTcpSocket::connected, this, &Stars::connectedToStars);
    connect(socket, &QTcpSocket::disconnected, this, &Stars::disconnectedFromStars);
    connect(socket, &QTcpSocket::readyRead, this, &Stars::receive);
    connect(socket, &QTcpSocket::errorOccurred, this, &Stars::socketError);
    connect(ui->hostLE, &QLineEdit::editingFinished, this, &Stars::newHost);
    connect(ui->portLE, &QLineEdit::editingFinished, this, &Stars::newPort);
    setBusy(false);
}

Stars::~Stars()
{
    // Nothing may reach this object while it goes: the socket's last
    // signals would land on a half-destroyed frame.
    socket->disconnect(this);
    socket->abort();
}

void Stars::setSettings(const QString &host, const QString &port, const QString &name, const QString &keyFile)
{
    ui->hostLE->setText(host);
    ui->portLE->setText(port);
    ui->nameOnStarsLE->setText(name);
    ui->keyFileLE->setText(keyFile);
}

QString Stars::name() const
{
    return ui->nameOnStarsLE->text();
}

int Stars::state() const
{
    return stat->state();
}

void Stars::connectedToStars()
{
    // The state stays Disconnected until the server's first line.
}

void Stars::disconnectedFromStars()
{
    lines.clear();
    stat->setState(ConnectStat::Disconnected);
    emit log(QStringLiteral("Disconnected from Stars"));
    emit starsIsNotReady();
}

void Stars::closeConnection()
{
    socket->close();
}

void Stars::connectToStars()
{
    if (stat->state() == ConnectStat::Connected) {
        socket->close();
        return;
    }
    // A connection still waiting for its challenge or for the server's Ok
    // is given up for the new one.
    if (socket->state() != QAbstractSocket::UnconnectedState)
        socket->abort();
    lines.clear();
    const QString host = ui->hostLE->text();
    bool ok = false;
    const int port = ui->portLE->text().toInt(&ok, 10);
    if (!ok || port <= 0 || port > 65535) {
        emit log(QStringLiteral("Bad port for Stars [%1]").arg(ui->portLE->text()));
        return;
    }
    emit log(QStringLiteral("connecting to Stars [%1:%2]").arg(host).arg(port));
    socket->connectToHost(host, quint16(port), QIODevice::ReadWrite, QAbstractSocket::AnyIPProtocol);
}

void Stars::socketError()
{
    // A server that closes the connection is a disconnection, not a fault.
    if (socket->error() == QAbstractSocket::RemoteHostClosedError)
        return;
    emit log(QStringLiteral("Stars [%1:%2] : %3").arg(ui->hostLE->text(), ui->portLE->text(), socket->errorString()));
}

void Stars::receive()
{
    const qsizetype dropped = lines.dropped();
    const QList<QByteArray> got = lines.feed(socket->readAll());
    if (lines.dropped() != dropped)
        emit log(QStringLiteral("dropped a line longer than %1 bytes from stars").arg(StarsLineBuffer::DefaultMaxLine));
    for (const QByteArray &bytes : got) {
        // A line may close the connection (a refused key); what came
        // behind it belongs to no connection.
        if (socket->state() != QAbstractSocket::ConnectedState)
            break;
        const QString line = QString::fromUtf8(bytes);
        emit vlog(QStringLiteral("msg from stars[%1]").arg(line.simplified()));
        actOn(line);
    }
}

void Stars::actOn(const QString &line)
{
    switch (stat->state()) {
    case ConnectStat::Disconnected:
        answerChallenge(line);
        stat->setState(ConnectStat::Connecting);
        break;
    case ConnectStat::Connecting:
        if (line.startsWith(QStringLiteral("System>%1 Ok:").arg(name()))) {
            stat->setState(ConnectStat::Connected);
            emit starsIsReady();
            emit log(QStringLiteral("Connected To Stars"));
        } else {
            socket->disconnectFromHost();
        }
        break;
    case ConnectStat::Connected:
        dispatch(line);
        break;
    default:
        break;
    }
}

void Stars::answerChallenge(const QString &challenge)
{
    const QStringList keys = StarsKeys::read(ui->keyFileLE->text());
    const int i = StarsKeys::indexFor(challenge, int(keys.size()));
    if (i < 0) {
        emit log(QStringLiteral("I have no key to exchange with Stars."));
        return;
    }
    emit log(QStringLiteral("sending key [%1][%2]").arg(name(), keys.at(i)));
    socket->write(QStringLiteral("%1 %2\n").arg(name(), keys.at(i)).toLatin1());
}

void Stars::dispatch(const QString &line)
{
    const AMsg m = AMsg::parse(line);
    if (!m.ok)
        return;
    const StarsCmdTable::Reply r = cmdTable.reply(m, name(), busyF);
    switch (r.kind) {
    case StarsCmdTable::Reply::SendAnswer:
        sendAns(m, r.text);
        break;
    case StarsCmdTable::Reply::PassAsk:
        emit anyAsk(m);
        break;
    case StarsCmdTable::Reply::PassEvent:
        emit anyEvent(m);
        break;
    case StarsCmdTable::Reply::PassAnswer:
        emit anyAns(m);
        break;
    }
}

QString Stars::send(const QString &name, const QString &ch, const QString &to, const QString &cmd)
{
    const QString from = ch.isEmpty() ? name : name + QLatin1Char('.') + ch;
    const QString text = QStringLiteral("%1>%2 %3").arg(from, to, cmd);
    if (stat->state() != ConnectStat::Connected)
        return QStringLiteral("Stars is not ready (") + text + QLatin1Char(')');
    socket->write(text.toLatin1() + '\n');
    if (logSendingMsg)
        emit log(QStringLiteral("---- Snd %1").arg(text), sentColor);
    return text;
}

QString Stars::sendAns(AMsg aMsg, QString ans)
{
    const QString text = send(aMsg.toName, aMsg.toCh, aMsg.from, QStringLiteral("@%1 %2").arg(aMsg.cmd, ans));
    emit sendingAnsToStars(text);
    return text;
}

QString Stars::sendOk(AMsg aMsg)
{
    return sendAns(aMsg, QStringLiteral("Ok:"));
}

QString Stars::sendEvent(QString fromCh, QString event)
{
    const QString text = send(name(), fromCh, QStringLiteral("System"), QLatin1Char('_') + event);
    emit sendingEventToStars(text);
    return text;
}

QString Stars::sendCmd(QString fromCh, QString to, QString cmd)
{
    return sendCmdV(fromCh, to, cmd, QString());
}

QString Stars::sendCmdV(QString fromCh, QString to, QString cmd, QString val)
{
    const QString text = send(name(), fromCh, to, val.isEmpty() ? cmd : cmd + QLatin1Char(' ') + val);
    emit sendingAskToStars(text);
    return text;
}

void Stars::setBusy(bool f)
{
    if (f != busyF)
        sendEvent(QString(), QStringLiteral("ChangedIsBusy %1").arg(f ? 1 : 0));
    busyF = f;
}

bool Stars::busy() const
{
    return busyF;
}

void Stars::setLogSendingMsg(bool f)
{
    logSendingMsg = f;
}

bool Stars::isConnected() const
{
    return stat->state() == ConnectStat::Connected;
}

void Stars::newHost()
{
    const QString file = QString::fromLatin1(SSVHistory::FileName);
    if (ui->hostLE->text() != SSVHistory::read(file).host)
        SSVHistory::append(file, QStringLiteral("A:"), ui->hostLE->text());
}

void Stars::newPort()
{
    const QString file = QString::fromLatin1(SSVHistory::FileName);
    if (ui->portLE->text() != SSVHistory::read(file).port)
        SSVHistory::append(file, QStringLiteral("P:"), ui->portLE->text());
}
