#pragma once

#include "batch/ExCmdId.h"
#include "images/ErrPoints.h"
#include "images/LoadJob.h"
#include "images/TiffData.h"

#include <QList>
#include <QObject>
#include <QStringList>

#include <atomic>

// Reads lists of image files one frame at a time on the thread it lives on,
// and hands each frame over as soon as it is read, so a stack builds up on
// the screen while it loads.
//
// Jobs queue: a job that arrives while another is in work waits behind it.
// Every frame is a step of its own, queued on the event loop, so that a list
// of thousands of files uses no stack depth and a stop() or a new job is
// seen between two frames.
//
// All members but the two atomics are touched by the loader's own thread
// only; stop() and isBusy() may be called from any thread.
class LoadTiff : public QObject
{
    Q_OBJECT
public:
    explicit LoadTiff(QObject *parent = nullptr);

    // A job is in work. Cleared by stop() at once, before the loader has
    // noticed the stop.
    bool isBusy() const { return busy.load(); }

public slots:
    // Queues a job. A job whose cutFirst exceeds the number of files is
    // dropped without a word and without finishLoadFiles: a batch that waits
    // on it stays waiting, as scripts have always seen it. skip below 1 is
    // read as 1 and negative cuts as 0, so that no input makes the loader
    // spin or index out of the list.
    void loadTiffs(QStringList files, bool ignoreLive, int skip, int cutFirst, int cutLast, ErrPoints *errPs,
                   EX_CMD_ID loadCmdId);
    // Queues the slices of an HDF5 stack as a job, as loadTiffs does a list
    // of files: fNo is the slice's index and totalFiles the number of
    // slices. "Live" names are not looked for: slices have none.
    void loadStack(H5Stack stack, int skip, int cutFirst, int cutLast, ErrPoints *errPs, EX_CMD_ID loadCmdId);
    // One step: reads at most one frame, then queues the next step or ends
    // the job.
    void treatQues();
    // Drops every queued job, the one in work included. Safe to call from
    // another thread: a frame being read when it comes is still finished and
    // delivered, then nothing more of the dropped jobs follows, and no
    // finishLoadFiles is sent for them. Jobs that are still on their way as
    // queued loadTiffs calls are not queued yet and are not dropped.
    void stop();

signals:
    // The loader's own pacing; both are connected to treatQues, queued.
    void loadStart();
    void loadNext();
    // One frame is ready. Ownership of data passes to the receiver: the
    // loader never touches it again. fNo is the index in the job's whole file
    // list, totalFiles that list's size. Files that can't be read send
    // nothing, so fNo then has a gap.
    void loaded(TiffData *data, int fNo, int totalFiles);
    // The queue has run empty: only the last of several queued jobs reports,
    // with its own id.
    void finishLoadFiles(EX_CMD_ID id);

protected:
    // Reads one file into a new frame, or gives null (the frame deleted)
    // when the file can't be read. Tests override it to hold the loader in
    // the middle of a frame.
    virtual TiffData *readFrame(const QString &file, ErrPoints *errPs);

private:
    void enqueue(LoadJob job);
    // Reads slice i of a stack job, opening its file at the first slice.
    TiffData *readSlice(const LoadJob &job, int i);
    // Consumes a pending stop: empties the queue. True when there was one.
    bool takeStop();
    void scheduleStep(bool start);

    QList<LoadJob> ques; // the job in work at the front
    int curIdx = 0;      // index of the next file of the front job
    bool stepPending = false; // a treatQues is queued; keeps one chain only
    std::atomic<bool> busy{false};
    std::atomic<bool> stopRequested{false};
};
