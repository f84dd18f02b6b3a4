// Body's image-stack slots: the two loaders and the frames they deliver.
#include "app/Body.h"

#include "images/LoadTiff.h"
#include "images/SelectDataFiles.h"
#include "tools/ImgProc.h"
#include "ui_Body.h"
#include "view/ColorBar.h"
#include "view/ImgDispA.h"
#include "view/XafsView.h"

#include <QDebug>
#include <QSignalBlocker>
#include <QTimer>
#include <QThread>

namespace {

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

    loadSpectrumTimer = new QTimer(this);
    loadSpectrumTimer->setSingleShot(true);
    connect(loadSpectrumTimer, &QTimer::timeout, this, &Body::spectrumOnNewFrame);

    connect(this, &Body::loadI1Files, i1Loader, &LoadTiff::loadTiffs);
    connect(this, &Body::loadI0Files, i0Loader, &LoadTiff::loadTiffs);
    connect(this, &Body::loadI1Stack, i1Loader, &LoadTiff::loadStack);
    connect(this, &Body::loadI0Stack, i0Loader, &LoadTiff::loadStack);
    connect(i1Loader, &LoadTiff::loaded, this, &Body::loadedI1);
    connect(i0Loader, &LoadTiff::loaded, this, &Body::loadedI0);
    // The stack is complete before a waiting batch goes on.
    connect(i1Loader, &LoadTiff::finishLoadFiles, this, &Body::finishedLoadI1Files);
    connect(i0Loader, &LoadTiff::finishLoadFiles, this, &Body::finishedLoadI0Files);
    // The loader's finish is the batch's finish, signal to signal: the id
    // passes as it came.
    connect(i1Loader, &LoadTiff::finishLoadFiles, this, &Body::finishBatchExec);
    connect(i0Loader, &LoadTiff::finishLoadFiles, this, &Body::finishBatchExec);

    // The panels' own file choosers and Clear buttons.
    connect(ui->SelectI1Files, &SelectDataFiles::filesSelected, this, &Body::readI1Files);
    connect(ui->SelectI0Files, &SelectDataFiles::filesSelected, this, &Body::readI0Files);
    connect(ui->SelectI1Files, &SelectDataFiles::clear, this, &Body::clearI1Files);
    connect(ui->SelectI0Files, &SelectDataFiles::clear, this, &Body::clearI0Files);
}

void Body::teardownLoading()
{
    stopLoaderThread(i1LoadThread, i1Loader);
    stopLoaderThread(i0LoadThread, i0Loader);
    i1LoadThread = i0LoadThread = nullptr;
    i1Loader = i0Loader = nullptr;
    ui->dispA->setData(nullptr);
    // Frames still queued for loadedI1/loadedI0 at this moment are lost with
    // the process; the stacks themselves are freed.
    deleteFrames(i1Frames);
    deleteFrames(i0Frames);
}

void Body::readI1Files(QStringList files, bool newFile)
{
    const SelectDataFiles *p = ui->SelectI1Files;
    if (files.size() == 1 && H5Stack::isH5File(files.first())) {
        readI1H5(files.first(), p->h5ImagePath(), p->h5EnergyPath(), newFile, LOAD_I1_FILES);
        return;
    }
    if (newFile)
        clearI1Files();
    emit loadI1Files(files, p->ignoreLive(), p->skip(), p->cutFirst(), p->cutLast(), p->errPs(), LOAD_I1_FILES);
}

void Body::readI0Files(QStringList files, bool newFile)
{
    const SelectDataFiles *p = ui->SelectI0Files;
    if (files.size() == 1 && H5Stack::isH5File(files.first())) {
        readI0H5(files.first(), p->h5ImagePath(), p->h5EnergyPath(), newFile, LOAD_I0_FILES);
        return;
    }
    if (newFile)
        clearI0Files();
    emit loadI0Files(files, p->ignoreLive(), p->skip(), p->cutFirst(), p->cutLast(), p->errPs(), LOAD_I0_FILES);
}

bool Body::findH5Stack(const QString &file, const QString &imagePath, const QString &energyPath,
                       const SelectDataFiles *panel, const QVector<TiffData *> &kept, bool newFile, H5Stack &stack)
{
    if (!H5Stack::find(file, imagePath, energyPath, stack))
        return false;
    // A new load frees the frames there: their memory counts as available.
    qint64 freed = 0;
    for (const TiffData *f : kept) {
        if (newFile)
            freed += qint64(f->height) * f->width * pixelBytes(f->pixelType) + f->imageBytes.size();
    }
    return stack.fitsInMemory(panel->skip(), panel->cutFirst(), panel->cutLast(), freed);
}

void Body::readI1H5(const QString &file, const QString &imagePath, const QString &energyPath, bool newFile,
                    EX_CMD_ID id)
{
    const SelectDataFiles *p = ui->SelectI1Files;
    H5Stack stack;
    if (!findH5Stack(file, imagePath, energyPath, p, i1Frames, newFile, stack)) {
        // Nothing is cleared; a job without files only ends, so the end
        // takes the road of every load's end, to a waiting batch too.
        emit loadI1Files({}, false, 1, 0, 0, p->errPs(), id);
        return;
    }
    if (newFile)
        clearI1Files();
    emit loadI1Stack(stack, p->skip(), p->cutFirst(), p->cutLast(), p->errPs(), id);
}

void Body::readI0H5(const QString &file, const QString &imagePath, const QString &energyPath, bool newFile,
                    EX_CMD_ID id)
{
    const SelectDataFiles *p = ui->SelectI0Files;
    H5Stack stack;
    if (!findH5Stack(file, imagePath, energyPath, p, i0Frames, newFile, stack)) {
        emit loadI0Files({}, false, 1, 0, 0, p->errPs(), id);
        return;
    }
    if (newFile)
        clearI0Files();
    emit loadI0Stack(stack, p->skip(), p->cutFirst(), p->cutLast(), p->errPs(), id);
}

namespace {
// The image area lets go of a frame that is about to be deleted; a frame of
// the other stack stays on show.
void detachIfShown(ImgDispA *area, const QVector<TiffData *> &frames)
{
    if (area->data && frames.contains(area->data))
        area->setData(nullptr);
}
} // namespace

void Body::clearI1Files()
{
    stopRunBeforeFramesGo();
    detachIfShown(ui->dispA, i1Frames);
    ui->SelectI1Files->clearFiles();
    // The stop comes before the frames go, so that a new load is not mixed
    // with the rest of the old one. A frame the loader is reading at this
    // moment still arrives, and joins the new stack.
    i1Loader->stop();
    if (imgProc)
        imgProc->forgetFrames(i1Frames);
    deleteFrames(i1Frames);
    spectrumOnNewI1Stack();
}

void Body::clearI0Files()
{
    stopRunBeforeFramesGo();
    detachIfShown(ui->dispA, i0Frames);
    ui->SelectI0Files->clearFiles();
    i0Loader->stop();
    // The image processor may hold an I0 frame that was on display.
    if (imgProc)
        imgProc->forgetFrames(i0Frames);
    deleteFrames(i0Frames);
}

void Body::loadedI1(TiffData *data, int fNo, int totalFiles)
{
    if (!data)
        return;
    SelectDataFiles *panel = ui->SelectI1Files;
    data->colorBar = ui->CBar;
    data->energy = panel->registerFrame(data->fileName, fNo, totalFiles,
                                        data->energyFromFile ? std::optional(data->energy) : std::nullopt);
    i1Frames.append(data);
    qDebug().noquote() << QStringLiteral("loaded I1 frame %1 of %2: %3 (%4 x %5)")
                              .arg(fNo)
                              .arg(totalFiles)
                              .arg(data->fileName)
                              .arg(data->width)
                              .arg(data->height);
    // Without "Show Latest" a stack that is still loading is left alone on
    // screen; the frames that arrive after the loader has finished are shown.
    if (i1Loader->isBusy() && !panel->showLatest())
        return;
    spectrumOnNewFrame();

    const TiffData *first = i1Frames.first();
    imgW = int(first->width);
    imgH = int(first->height);
    imgX0 = int(first->xOffset);
    imgY0 = int(first->yOffset);
    const int last = int(i1Frames.size()) - 1;
    {
        // A range that shrinks below the bar's value (a new, shorter stack)
        // moves the value: that is no choice of a frame.
        const QSignalBlocker seek(ui->SeekBar);
        const QSignalBlocker number(ui->ImgNo);
        ui->SeekBar->setMaximum(last);
        ui->ImgNo->setMaximum(last);
    }
    if (panel->showLatest()) {
        showData(last);
        panel->select(last);
    }
}

void Body::loadedI0(TiffData *data, int fNo, int totalFiles)
{
    if (!data)
        return;
    SelectDataFiles *panel = ui->SelectI0Files;
    data->colorBar = ui->CBar;
    data->energy = panel->registerFrame(data->fileName, fNo, totalFiles,
                                        data->energyFromFile ? std::optional(data->energy) : std::nullopt);
    i0Frames.append(data);
    qDebug().noquote() << QStringLiteral("loaded I0 frame %1 of %2: %3 (%4 x %5)")
                              .arg(fNo)
                              .arg(totalFiles)
                              .arg(data->fileName)
                              .arg(data->width)
                              .arg(data->height);
    if (i0Loader->isBusy() && !panel->showLatest())
        return;
    spectrumOnNewFrame();
}

void Body::checkExposures(const QVector<TiffData *> &frames, SelectDataFiles *panel)
{
    if (frames.isEmpty())
        return;
    const double first = frames.first()->exposureMs;
    bool allEqual = true;
    for (const TiffData *f : frames) {
        if (f->exposureMs != first) {
            allEqual = false;
            break;
        }
    }
    // A frame without a recorded time holds 100 ms, which thus replaces the
    // field's default after such a load; the user may then edit it.
    panel->setExpTimeMS(first, allEqual);
}

void Body::finishedLoadI1Files()
{
    qDebug().noquote() << QStringLiteral("I1 load finished: %1 frames").arg(i1Frames.size());
    spectrumOnLoadFinished(true);
    checkExposures(i1Frames, ui->SelectI1Files);
    clearUpdateI1DarkArea();
}

void Body::finishedLoadI0Files()
{
    qDebug().noquote() << QStringLiteral("I0 load finished: %1 frames").arg(i0Frames.size());
    spectrumOnLoadFinished(false);
    checkExposures(i0Frames, ui->SelectI0Files);
    clearUpdateI0DarkArea();
}

// The spectrum under the pointer follows the loading.
void Body::spectrumOnNewI1Stack()
{
    // Both plots take the range of the next spectrum they get, whatever the
    // user had zoomed to on the old stack; they keep following until the
    // next zoom, which is how the mark ends.
    xafsView->resetXScale();
    bgView->resetXScale();
}

void Body::spectrumOnNewFrame()
{
    // The spectrum spans every frame so far: formed on each arriving frame it
    // made a load cost the square of its length (minutes for thousands of
    // frames). It is formed at most five times a second while frames arrive;
    // the last of them is always formed, late at most by the interval, and
    // the end of a load forms it once more.
    constexpr int kIntervalMs = 200;
    if (loadSpectrumClock.isValid() && loadSpectrumClock.elapsed() < kIntervalMs) {
        if (!loadSpectrumTimer->isActive())
            loadSpectrumTimer->start(kIntervalMs - int(loadSpectrumClock.elapsed()));
        return;
    }
    loadSpectrumTimer->stop();
    showXafsSpectrum();
    loadSpectrumClock.start();
}

void Body::spectrumOnLoadFinished(bool)
{
    // The spectrum is formed here; a paced one still due would come late,
    // in the middle of whatever a batch does next.
    loadSpectrumTimer->stop();
    curX = 0;
    curY = 0;
    showXafsSpectrum();
}

void Body::spectrumOnFrameSelected(double energy)
{
    xafsView->setMarkE(energy);
}
