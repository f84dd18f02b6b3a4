#pragma once

#include <QObject>

class QLabel;
class QPushButton;

// The state of the message-server connection and its display: the status
// label and the connect button change text and colour together.
class ConnectStat : public QObject
{
    Q_OBJECT
public:
    enum State { Disconnected = 0, Connecting = 1, Connected = 2 };

    ConnectStat(QLabel *status, QPushButton *button, QObject *parent = nullptr);

    int state() const { return st; }
    // Any other number is stored and changes nothing on screen.
    void setState(int s);

signals:
    void askConnect();
    void askDisconnect();

public slots:
    void connectBClicked();

private:
    int st = Disconnected;
    QLabel *statusL;
    QPushButton *connectB;
};
