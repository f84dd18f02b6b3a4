// Body's network slots: the settings of the message-server client, its
// start, the announcement of saved files and the spectrum sent to the
// server and the TCP target.
#include "app/Body.h"

#include "app/Globals.h"
#include "network/Stars.h"
#include "network/XafsSendBuffer.h"
#include "ui_Body.h"

#include <QDebug>

void Body::setupNetwork()
{
    Stars *s = ui->StarsSettings;
    s->setSettings(gConfig.value(QStringLiteral("STARS_IP"), QStringLiteral("localhost")),
                   gConfig.value(QStringLiteral("STARS_PORT"), QStringLiteral("6057")),
                   gConfig.value(QStringLiteral("NAME_ON_STARS"), QStringLiteral("Tessarelle")),
                   gConfig.value(QStringLiteral("KEY_ON_STARS"), QStringLiteral("Tessarelle.key")));
    // The client's log is the debug stream, as every other diagnostic.
    auto toDebug = [](const QString &msg) { qDebug().noquote() << msg; };
    connect(s, &Stars::log, this, toDebug);
    connect(s, &Stars::vlog, this, toDebug);

    // These four are read from the table that no file fills, so they keep
    // their defaults whatever config.cfg says; scripts at the beamline have
    // always relied on it.
    useStars = gAuxConfig.value(QStringLiteral("USE_STARS"), QStringLiteral("1")).toInt() == 1;
    client.useTcp = gAuxConfig.value(QStringLiteral("USE_TCP"), QStringLiteral("1")).toInt() == 1;
    client.host = gAuxConfig.value(QStringLiteral("TcpTarget_IP"), QStringLiteral("localhost"));
    client.port = gAuxConfig.value(QStringLiteral("TcpTarget_PORT"), QStringLiteral("6077")).toInt();
}

void Body::startStars()
{
    ui->StarsSettings->connectToStars();
}

Stars *Body::stars() const
{
    return ui->StarsSettings;
}

QString Body::announceSaved(const QString &eventWord, const QString &fileName)
{
    return ui->StarsSettings->sendEvent(QString(), QStringLiteral("%1 %2").arg(eventWord, fileName));
}

void Body::sendXafsDataToStars(QByteArray data)
{
    XafsSendBuffer head;
    if (!i1Frames.isEmpty())
        head.i1File = i1Frames.first()->fileName;
    if (!i0Frames.isEmpty())
        head.i0File = i0Frames.first()->fileName;
    head.x = curX;
    head.y = curY;
    head.viewBinW = viewHalfWidth();
    head.viewBinH = viewHalfHeight();
    head.analyzeBinW = ui->aHWidth_->text().toInt();
    head.analyzeBinH = ui->aVWidth_->text().toInt();
    const QByteArray buffer = head.build(data);

    if (useStars)
        announceSaved(QStringLiteral("SendXafsData"), QString::fromUtf8(XafsSendBuffer::asOneLine(buffer)));
    if (client.useTcp)
        client.send(buffer);
}
