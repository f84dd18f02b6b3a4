#include "network/Client.h"

#include <QDebug>

Client::Client(QObject *parent)
    : QObject(parent)
{
    connect(&socket, &QTcpSocket::readyRead, this, &Client::readData);
    connect(&socket, &QTcpSocket::disconnected, this, &Client::disconnected);
}

bool Client::send(const QByteArray &data)
{
    if (!useTcp)
        return false;
    if (socket.state() == QAbstractSocket::UnconnectedState) {
        socket.connectToHost(host, quint16(port), QIODevice::ReadWrite, QAbstractSocket::AnyIPProtocol);
        if (!socket.waitForConnected(ConnectWaitMs)) {
            qDebug().noquote()
                << QStringLiteral("TCP target [%1:%2] : %3").arg(host).arg(port).arg(socket.errorString());
            socket.abort();
            return false;
        }
    }
    const bool written = socket.write(data) == data.size();
    socket.flush();
    return written;
}

void Client::readData()
{
    // Whatever the target says is of no interest; it is thrown away so that
    // a talkative target can't fill the memory.
    socket.skip(socket.bytesAvailable());
}

void Client::disconnected()
{
    socket.close();
}
