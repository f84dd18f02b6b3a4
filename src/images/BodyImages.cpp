// Body's image-stack slots: the two loaders and the frames they deliver.
#include "app/Body.h"

#include "images/LoadTiff.h"

#include <QDebug>
#include <QThread>

namespace {

// Until the file-selection panels exist, a load takes the values their
// fields start with (every file, no cuts) and passes every file, Live ones
// included; the panels' own mask is not there yet either, so frames keep the
// program's mask.
constexpr int PanelSkip = 1;
constexpr int PanelCutFirst = 0;
constexpr int PanelCutLast = 0;
constexpr bool PanelIgnoreLive = false;

QThread *startLoaderThread(LoadTiff *loader, const QString &name, QObject *parent)
{
    auto *thread = new QThread(parent);
    thread->setObjectName(name);
    loader->moveToThread(thread);
    thread->start(QThread::InheritPriority);
    return thread;
}

void stopLoaderThread(QThread *thread, LoadTiff *loader)
{
    if (!thread)
        return;
    // quit() takes effect between two frames, since every frame is a queued
    // step; the loader is deleted here once its thread has ended.
    loader->stop();
    thread->quit();
    thread->wait();
    delete loader;
}

void deleteFrames(QVector<TiffData *> &frames)
{
    qDeleteAll(frames);
    frames.clear();
}

} // namespace

void Body::setupLoading()
{
    i1Loader = new LoadTiff;
    i0Loader = new LoadTiff;
    i1LoadThread = startLoaderThread(i1Loader, QStringLiteral("I1 loader"), this);
    i0LoadThread = startLoaderThread(i0Loader, QStringLiteral("I0 loader"), this);

    connect(this, &Body::loadI1Files, i1Loader, &LoadTiff::loadTiffs);
    connect(this, &Body::loadI0Files, i0Loader, &LoadTiff::loadTiffs);
    connect(i1Loader, &LoadTiff::loaded, this, &Body::loadedI1);
    connect(i0Loader, &LoadTiff::loaded, this, &Body::loadedI0);
    // The stack is complete before a waiting batch goes on.
    connect(i1Loader, &LoadTiff::finishLoadFiles, this, &Body::finishedLoadI1Files);
    connect(i0Loader, &LoadTiff::finishLoadFiles, this, &Body::finishedLoadI0Files);
    // The loader's finish is the batch's finish, signal to signal: the id
    // passes as it came.
    connect(i1Loader, &LoadTiff::finishLoadFiles, this, &Body::finishBatchExec);
    connect(i0Loader, &LoadTiff::finishLoadFiles, this, &Body::finishBatchExec);
}

void Body::teardownLoading()
{
    stopLoaderThread(i1LoadThread, i1Loader);
    stopLoaderThread(i0LoadThread, i0Loader);
    i1LoadThread = i0LoadThread = nullptr;
    i1Loader = i0Loader = nullptr;
    // Frames still queued for loadedI1/loadedI0 at this moment are lost with
    // the process; the stacks themselves are freed.
    deleteFrames(i1Frames);
    deleteFrames(i0Frames);
}

void Body::readI1Files(QStringList files, bool newFile)
{
    if (newFile)
        clearI1Files();
    emit loadI1Files(files, PanelIgnoreLive, PanelSkip, PanelCutFirst, PanelCutLast, nullptr, LOAD_I1_FILES);
}

void Body::readI0Files(QStringList files, bool newFile)
{
    if (newFile)
        clearI0Files();
    emit loadI0Files(files, PanelIgnoreLive, PanelSkip, PanelCutFirst, PanelCutLast, nullptr, LOAD_I0_FILES);
}

void Body::clearI1Files()
{
    // The stop comes before the frames go, so that a new load is not mixed
    // with the rest of the old one. A frame the loader is reading at this
    // moment still arrives, and joins the new stack.
    i1Loader->stop();
    deleteFrames(i1Frames);
}

void Body::clearI0Files()
{
    i0Loader->stop();
    deleteFrames(i0Frames);
}

void Body::loadedI1(TiffData *data, int fNo, int totalFiles)
{
    if (!data)
        return;
    i1Frames.append(data);
    qDebug().noquote() << QStringLiteral("loaded I1 frame %1 of %2: %3 (%4 x %5)")
                              .arg(fNo)
                              .arg(totalFiles)
                              .arg(data->fileName)
                              .arg(data->width)
                              .arg(data->height);
}

void Body::loadedI0(TiffData *data, int fNo, int totalFiles)
{
    if (!data)
        return;
    i0Frames.append(data);
    qDebug().noquote() << QStringLiteral("loaded I0 frame %1 of %2: %3 (%4 x %5)")
                              .arg(fNo)
                              .arg(totalFiles)
                              .arg(data->fileName)
                              .arg(data->width)
                              .arg(data->height);
}

void Body::finishedLoadI1Files()
{
    qDebug().noquote() << QStringLiteral("I1 load finished: %1 frames").arg(i1Frames.size());
    stackLoadedForAbsorption(true);
}

void Body::finishedLoadI0Files()
{
    qDebug().noquote() << QStringLiteral("I0 load finished: %1 frames").arg(i0Frames.size());
    stackLoadedForAbsorption(false);
}
