#include "network/XafsSendBuffer.h"

QByteArray XafsSendBuffer::build(const QByteArray &spectrum) const
{
    QString head;
    head += QStringLiteral("# I1      : ") + i1File + QLatin1Char('\n');
    head += QStringLiteral("# I0      : ") + i0File + QLatin1Char('\n');
    head += QStringLiteral("# Point x : %1\n").arg(x);
    head += QStringLiteral("# Point y : %1\n").arg(y);
    // The bin appears twice under two names; readers of the text expect both.
    head += QStringLiteral("# Bin W   : %1\n").arg(viewBinW);
    head += QStringLiteral("# Bin H   : %1\n").arg(viewBinH);
    head += QStringLiteral("# View Bin W      : %1\n").arg(viewBinW);
    head += QStringLiteral("# View Bin H      : %1\n").arg(viewBinH);
    head += QStringLiteral("# Analyze Bin W   : %1\n").arg(analyzeBinW);
    head += QStringLiteral("# Analyze Bin H   : %1\n").arg(analyzeBinH);
    return head.toUtf8() + spectrum + QByteArrayLiteral("---\n");
}

QByteArray XafsSendBuffer::asOneLine(QByteArray buffer)
{
    return buffer.replace('\n', '|');
}
