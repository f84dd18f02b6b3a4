#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QTcpSocket>

// A one-way sender of spectra to a program that listens on a plain TCP
// port. The connection is made by the first send and made again by the
// first send after the peer has closed it. Nothing that comes back is read.
class Client : public QObject
{
    Q_OBJECT
public:
    // How long a send waits for the connection. The wait blocks the GUI
    // thread on purpose: the spectrum is sent in the order it was asked.
    static constexpr int ConnectWaitMs = 5000;

    explicit Client(QObject *parent = nullptr);

    bool useTcp = true;
    QString host = QStringLiteral("localhost");
    int port = 6077;

    // Writes data, connecting first when there is no connection. When the
    // target doesn't answer within ConnectWaitMs the data is lost and false
    // comes back; all failures are silent but for a log line.
    bool send(const QByteArray &data);
    QAbstractSocket::SocketState state() const { return socket.state(); }

public slots:
    void readData();
    void disconnected();

private:
    QTcpSocket socket;
};
