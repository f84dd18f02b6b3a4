#include "app/LogTime.h"

#include <QDateTime>
#include <QDebug>

void logTime(const QString &label)
{
    qDebug().noquote() << label
                       << QDateTime::currentDateTime().toString(QStringLiteral("yyMMdd hh:mm:ss.zzz"));
}
