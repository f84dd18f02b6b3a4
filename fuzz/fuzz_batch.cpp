// Whole batches through the interpreter, without windows: every external
// command is answered by a queued finish, as the main window's answer
// arrives from another thread. The batch is stopped after a fixed number of
// event-loop rounds (one command or one slice of lines each), so that a long
// loop in the input is no hang.
#include "FuzzSupport.h"

#include "batch/BatchDispatcher.h"

#include <QCoreApplication>

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    fuzzInit(argc, argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QStringList lines = QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size))
                                  .split(QLatin1Char(QChar::LineFeed));
    BatchDispatcher d(QStringLiteral("/data/root"));
    QObject::connect(&d, &BatchDispatcher::execCmdSig, &d, [&](const CmdLine &, bool) {
        QMetaObject::invokeMethod(&d, [&d] { d.finishBatchExec(0); }, Qt::QueuedConnection);
    });
    d.doDispatchCmds(lines);
    for (int slice = 0; slice < 16; ++slice)
        QCoreApplication::processEvents();
    d.batchStopSlot();
    QCoreApplication::processEvents();
    return 0;
}
