#pragma once

#include "batch/ExCmdId.h"
#include "images/H5Stack.h"

#include <QStringList>

#include <memory>

class ErrPoints;
class H5StackReader;

// One request to the stack loader, held by value in its queue.
struct LoadJob {
    QStringList files;     // in the order given; fNo of a frame is its index here
    bool ignoreLive = false; // pass over files whose path holds "Live"
    int skip = 1;          // step from one file to the next; 1 reads every file
    int cutFirst = 0;      // files left out at the beginning
    int cutLast = 0;       // files left out at the end
    ErrPoints *errPs = nullptr; // mask handed to each frame; not owned, only read
    EX_CMD_ID id = NOT_EX_CMD;  // reported back by finishLoadFiles
    // An HDF5 stack job: files are the names of its slices, so that skip,
    // cuts, progress and stop treat slices exactly as files, and the reader
    // keeps the file open while the job lasts (it goes with the job).
    H5Stack stack;
    std::shared_ptr<H5StackReader> stackReader;
};
