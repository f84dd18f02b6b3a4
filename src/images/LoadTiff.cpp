#include "images/LoadTiff.h"

#include "images/H5StackReader.h"

#include <QDebug>

#include <algorithm>
#include <memory>

LoadTiff::LoadTiff(QObject *parent)
    : QObject(parent)
{
    // Queued on purpose: each step returns to the event loop, where stop()
    // and new jobs are seen, and the stack stays flat however long the list.
    connect(this, &LoadTiff::loadStart, this, &LoadTiff::treatQues, Qt::QueuedConnection);
    connect(this, &LoadTiff::loadNext, this, &LoadTiff::treatQues, Qt::QueuedConnection);
}

void LoadTiff::loadTiffs(QStringList files, bool ignoreLive, int skip, int cutFirst, int cutLast, ErrPoints *errPs,
                         EX_CMD_ID loadCmdId)
{
    takeStop();
    cutFirst = std::max(cutFirst, 0);
    if (files.size() < cutFirst)
        return;

    LoadJob job;
    job.files = std::move(files);
    job.ignoreLive = ignoreLive;
    job.skip = std::max(skip, 1);
    job.cutFirst = cutFirst;
    job.cutLast = std::max(cutLast, 0);
    job.errPs = errPs;
    job.id = loadCmdId;
    enqueue(std::move(job));
}

void LoadTiff::loadStack(H5Stack stack, int skip, int cutFirst, int cutLast, ErrPoints *errPs, EX_CMD_ID loadCmdId)
{
    takeStop();
    cutFirst = std::max(cutFirst, 0);
    if (stack.frames < cutFirst)
        return;

    LoadJob job;
    job.files = stack.sliceNames();
    job.skip = std::max(skip, 1);
    job.cutFirst = cutFirst;
    job.cutLast = std::max(cutLast, 0);
    job.errPs = errPs;
    job.id = loadCmdId;
    job.stack = std::move(stack);
    job.stackReader = std::make_shared<H5StackReader>();
    enqueue(std::move(job));
}

void LoadTiff::enqueue(LoadJob job)
{
    // Idle is judged from the queue, which only this thread touches: busy
    // may have been cleared by a stop() that this thread has not seen yet.
    const bool idle = ques.isEmpty();
    ques.append(std::move(job));

    if (idle) {
        busy.store(true);
        curIdx = ques.front().cutFirst;
        scheduleStep(true);
    }
}

void LoadTiff::treatQues()
{
    stepPending = false;
    if (takeStop() || ques.isEmpty())
        return;

    // A copy: the front job may be removed below.
    const LoadJob job = ques.front();
    bool more = false;
    // curIdx reaches the end of the list at once when cutFirst equals the
    // number of files: a job with nothing to read, which ends right away.
    if (curIdx < job.files.size()) {
        const QString &file = job.files.at(curIdx);
        if (job.ignoreLive && file.contains(QLatin1String("Live"))) {
            qDebug().noquote() << "ignoe" << file;
        } else if (TiffData *frame = job.stackReader ? readSlice(job, curIdx) : readFrame(file, job.errPs)) {
            emit loaded(frame, curIdx, int(job.files.size()));
        }
        // A stop that came while the frame was read drops the rest, this
        // job's end included.
        if (takeStop())
            return;
        // In 64 bits: an index near INT_MAX plus a skip near INT_MAX must
        // not wrap to a negative index that passes the end test. The file at
        // cutFirst is read before this test: a job whose cuts add up to the
        // whole list still reads that one file.
        const qint64 next = qint64(curIdx) + job.skip;
        more = next < qint64(job.files.size()) - job.cutLast;
        if (more)
            curIdx = int(next);
    }
    if (more) {
        scheduleStep(false);
        return;
    }

    ques.removeFirst();
    if (!ques.isEmpty()) {
        curIdx = ques.front().cutFirst;
        scheduleStep(false);
        return;
    }
    busy.store(false);
    emit finishLoadFiles(job.id);
}

void LoadTiff::stop()
{
    // Only flags: the queue belongs to the loader's thread, which empties it
    // at its next look (takeStop).
    stopRequested.store(true);
    busy.store(false);
}

TiffData *LoadTiff::readFrame(const QString &file, ErrPoints *errPs)
{
    auto frame = std::make_unique<TiffData>();
    if (!frame->read(file, errPs))
        return nullptr;
    return frame.release();
}

TiffData *LoadTiff::readSlice(const LoadJob &job, int i)
{
    if (!job.stackReader->isOpen() && !job.stackReader->open(job.stack))
        return nullptr;
    auto frame = std::make_unique<TiffData>();
    if (!frame->readSlice(*job.stackReader, i, job.errPs))
        return nullptr;
    return frame.release();
}

bool LoadTiff::takeStop()
{
    if (!stopRequested.exchange(false))
        return false;
    ques.clear();
    busy.store(false);
    return true;
}

void LoadTiff::scheduleStep(bool start)
{
    if (stepPending)
        return;
    stepPending = true;
    if (start)
        emit loadStart();
    else
        emit loadNext();
}
