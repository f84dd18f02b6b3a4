#pragma once

#include <QByteArray>
#include <QString>

// The text in which a displayed spectrum leaves the program, to the message
// server as an event and to the TCP target: a header naming the stacks, the
// point and the bins, the spectrum as written by the plot, and "---".
struct XafsSendBuffer {
    QString i1File = QStringLiteral("--"); // first file of each stack, "--" without one
    QString i0File = QStringLiteral("--");
    int x = 0;
    int y = 0;
    int viewBinW = 0;
    int viewBinH = 0;
    int analyzeBinW = 0;
    int analyzeBinH = 0;

    QByteArray build(const QByteArray &spectrum) const;
    // The same text on one line of the wire protocol: each line feed becomes
    // a '|'.
    static QByteArray asOneLine(QByteArray buffer);
};
