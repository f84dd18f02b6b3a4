#pragma once

#include <QStringList>
#include <QtGlobal>

// Collects the texts of the debug stream while it lives, instead of printing
// them, so a test can compare the exact log lines a call leaves.
class LogCapture
{
public:
    LogCapture() { m_previous = qInstallMessageHandler(&LogCapture::handler); lines().clear(); }
    ~LogCapture() { qInstallMessageHandler(m_previous); }
    LogCapture(const LogCapture &) = delete;
    LogCapture &operator=(const LogCapture &) = delete;

    static QStringList &lines()
    {
        static QStringList captured;
        return captured;
    }

private:
    static void handler(QtMsgType, const QMessageLogContext &, const QString &text) { lines() << text; }
    QtMessageHandler m_previous = nullptr;
};
