// Whole batches through the interpreter, without windows: every external
// command is answered by a queued finish, as the main window's answer
// arrives from another thread. A loop may legitimately never end (a padded
// counter can climb back past its end), so after a few thousand log lines a
// stop is queued, as the stop button of the main window would send it.
#include "FuzzSupport.h"

#include "batch/BatchDispatcher.h"

#include <QCoreApplication>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QStringList lines = QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size))
                                  .split(QLatin1Char(QChar::LineFeed));
    BatchDispatcher d(QStringLiteral("/data/root"));
    QObject::connect(&d, &BatchDispatcher::execCmdSig, &d, [&](const CmdLine &, bool) {
        QMetaObject::invokeMethod(&d, [&d] { d.finishBatchExec(0); }, Qt::QueuedConnection);
    });
    int logs = 0;
    QObject::connect(&d, &BatchDispatcher::Log, &d, [&](const QString &) {
        if (++logs == 5000)
            QMetaObject::invokeMethod(&d, &BatchDispatcher::batchStopSlot, Qt::QueuedConnection);
    });
    d.doDispatchCmds(lines);
    for (int round = 0; round < 16; ++round)
        QCoreApplication::processEvents();
    d.batchStopSlot();
    QCoreApplication::processEvents();
    return 0;
}
