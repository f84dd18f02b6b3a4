#include "network/ConnectStat.h"

#include <QLabel>
#include <QPushButton>

namespace {
struct Look {
    const char *status;
    const char *statusStyle;
    const char *button;
    const char *buttonStyle;
};
const Look Looks[] = {
    {QT_TRANSLATE_NOOP("ConnectStat", "Disconnected"), "background-color: rgb(176, 192, 192);",
     QT_TRANSLATE_NOOP("ConnectStat", "Connect"), "background-color: rgb(96, 255, 181);"},
    {QT_TRANSLATE_NOOP("ConnectStat", "Connecting"), "background-color: rgb(255, 243, 162);",
     QT_TRANSLATE_NOOP("ConnectStat", "Connecting"), "background-color: rgb(240, 240, 240);"},
    {QT_TRANSLATE_NOOP("ConnectStat", "Connected"), "background-color: rgb(211, 255, 241);",
     QT_TRANSLATE_NOOP("ConnectStat", "Disconnect"), "background-color: rgb(255, 255, 128);"},
};
} // namespace

ConnectStat::ConnectStat(QLabel *status, QPushButton *button, QObject *parent)
    : QObject(parent)
    , statusL(status)
    , connectB(button)
{
    connect(connectB, &QPushButton::clicked, this, &ConnectStat::connectBClicked);
    setState(Disconnected);
}

void ConnectStat::setState(int s)
{
    st = s;
    if (s < Disconnected || s > Connected)
        return;
    const Look &l = Looks[s];
    statusL->setText(tr(l.status));
    statusL->setStyleSheet(QLatin1String(l.statusStyle));
    connectB->setText(tr(l.button));
    connectB->setStyleSheet(QLatin1String(l.buttonStyle));
}

void ConnectStat::connectBClicked()
{
    if (st == Disconnected)
        emit askConnect();
    else
        emit askDisconnect();
}
