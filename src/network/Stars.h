#pragma once

#include "network/AMsg.h"
#include "network/StarsCmdTable.h"
#include "network/StarsLineBuffer.h"

#include <QColor>
#include <QFrame>
#include <QString>

#include <memory>

class ConnectStat;
class QTcpSocket;

namespace Ui {
class Stars;
}

// The client of the beamline's STARS message server, and the frame of its
// settings. The server speaks first: a challenge number, to which the
// client answers with its name and the key the number picks from the key
// file; "System>NAME Ok:" then opens the connection. From there on every
// line is a command for this program (answered from StarsCmdTable) or is
// handed on through anyAsk, anyEvent and anyAns.
//
// Saved files are announced with sendEvent(QString(), "SavedImage " + path)
// and the like. Every send returns the line it wrote, or "Stars is not
// ready (<line>)" when there is no connection; the line is then lost.
class Stars : public QFrame
{
    Q_OBJECT
public:
    explicit Stars(QWidget *parent = nullptr);
    ~Stars() override;

    // The configured server, name and key file go into the fields; the
    // connection reads them when it starts.
    void setSettings(const QString &host, const QString &port, const QString &name, const QString &keyFile);
    QString name() const;
    int state() const;
    const StarsCmdTable &commands() const { return cmdTable; }

signals:
    void starsIsReady();
    void starsIsNotReady();
    void anyAns(AMsg amsg);
    void anyEvent(AMsg amsg);
    void anyAsk(AMsg amsg);
    void anyMsg(AMsg amsg); // for a user of the class; never emitted here
    void notice(QString msg, int timeout = 0, bool warn = false);
    void log(QString msg, QColor c = QColor(Qt::black));
    void vlog(QString msg, QColor c = QColor(Qt::black));
    void sendingAnsToStars(QString ans);
    void sendingEventToStars(QString msg);
    void sendingAskToStars(QString msg);

public slots:
    void connectedToStars();
    void disconnectedFromStars();
    void closeConnection();
    void receive();
    // Editing of the host / port field finished: a change is appended to
    // SSVHistory.dat.
    void newHost();
    void newPort();
    // Connects in the Disconnected and Connecting states, disconnects in
    // the Connected state: the button's two signals both come here.
    void connectToStars();
    void setBusy(bool f);
    bool busy() const;
    void setLogSendingMsg(bool f);
    QString sendOk(AMsg aMsg);
    QString sendAns(AMsg aMsg, QString ans);
    QString sendEvent(QString fromCh, QString event);
    QString sendCmd(QString fromCh, QString to, QString cmd);
    QString sendCmdV(QString fromCh, QString to, QString cmd, QString val);
    bool isConnected() const;

private:
    void socketError();
    void actOn(const QString &line);
    void answerChallenge(const QString &challenge);
    void dispatch(const QString &line);
    QString send(const QString &name, const QString &ch, const QString &to, const QString &cmd);

    std::unique_ptr<Ui::Stars> ui;
    QTcpSocket *socket = nullptr;
    ConnectStat *stat = nullptr;
    StarsLineBuffer lines;
    StarsCmdTable cmdTable;
    bool busyF = false;
    bool logSendingMsg = false;
    QColor sentColor = QColor(0, 200, 120);
};
