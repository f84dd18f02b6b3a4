#include "network/StarsKeys.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>

namespace {
// A key file is a few lines; more than this is not one (or a device that
// never ends).
const qint64 MaxKeyFile = 1 << 20;
} // namespace

namespace StarsKeys {

QStringList fromText(const QByteArray &text)
{
    QStringList keys;
    qsizetype start = 0;
    while (start < text.size()) {
        qsizetype nl = text.indexOf('\n', start);
        if (nl < 0)
            nl = text.size();
        keys.append(QString::fromUtf8(text.constData() + start, nl - start).simplified());
        start = nl + 1;
    }
    return keys;
}

QStringList read(const QString &fileName)
{
    const QString path = QFileInfo(fileName).absoluteFilePath();
    qDebug().noquote() << QStringLiteral("opening key file [%1]").arg(path);
    QFile f(fileName);
    if (fileName.isEmpty() || !f.open(QIODevice::ReadOnly)) {
        qDebug().noquote() << QStringLiteral("Can't open key file [%1]").arg(path);
        return {};
    }
    const QByteArray text = f.read(MaxKeyFile + 1);
    if (text.size() > MaxKeyFile) {
        qDebug().noquote() << QStringLiteral("Key file [%1] is too large").arg(path);
        return {};
    }
    return fromText(text);
}

int indexFor(const QString &challenge, int count)
{
    if (count <= 0)
        return -1;
    const qlonglong n = challenge.trimmed().toLongLong(); // 0 when it isn't a number
    const qlonglong i = n % count;
    return int(i < 0 ? i + count : i);
}

} // namespace StarsKeys
