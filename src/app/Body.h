#pragma once

#include "batch/CmdLine.h"
#include "batch/ExCmdId.h"

#include <QButtonGroup>
#include <QMainWindow>
#include <QStringList>

#include <memory>

class BatchCtrl;
class BatchDispatcher;
class QThread;

namespace Ui {
class Body;
}

// The main window and the hub of the program: it owns the image stacks, the
// windows and the workers, and every other part is reached through its
// signals and slots. Its slots are many; each subsystem declares its own in
// a block of this class and defines them in its own folder (for instance
// src/batch/BodyBatch.cpp), so that this file stays a table of contents.
class Body : public QMainWindow
{
    Q_OBJECT
public:
    explicit Body(QWidget *parent = nullptr);
    ~Body() override;

    // Batch (src/batch/BodyBatch.cpp): the -b file goes into the batch
    // editor (false, and the editor unchanged, when it can't be read); -x
    // runs the editor's text as its execute button does.
    bool loadBatchFile(const QString &fname);
    void execBatch();

signals:
    // Ends the program: main() connects it to QApplication::closeAllWindows.
    void finishing();
    // A batch command that takes time answers with its id when it is done.
    void finishBatchExec(int id);
    void currentPosition(int ix, int iy, int hw, int vw);

public slots:
    // Batch (src/batch/BodyBatch.cpp): carries out one external batch
    // command and answers with finishBatchExec, at once or when the job ends.
    void execCmdSlot(CmdLine cmd, bool inRem);

private:
    // Construction, in the order the constructor calls them. The order
    // matters: the form must exist before any step connects to it, and the
    // configured batch runs only once every receiver of its commands is
    // there. A new subsystem adds its setupXxx() at its place in the list.
    static void registerMetaTypes();
    void setupForm();
    void setupSelectionGroup();
    void setupBatch();
    void setupFilePanels();
    void setupAnalyzer2();
    void feedConfiguredBatch(const QStringList &cmdLines);

    std::unique_ptr<Ui::Body> ui;
    // What the image area shows: ShowData 0, ShowI0 1, ShowShiftMap 2,
    // ShowResAnalysis 3.
    QButtonGroup selGroup;

    // Batch: the dispatcher lives on its own thread, which is quit and
    // waited for when the window goes.
    void teardownBatch();
    QThread *batchThread = nullptr;
    BatchDispatcher *batchDispatcher = nullptr;
    BatchCtrl *batchCtrl = nullptr;

    // File panels (src/images/BodySelect.cpp): the batch commands that only
    // set a field of the I1 or the I0 panel, and finish at once.
    void execFilePanelCmd(EX_CMD_ID id, const QStringList &args);
};
