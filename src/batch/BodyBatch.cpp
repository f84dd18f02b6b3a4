// Body's batch slots: the batch engine's setup and the execution of the
// external batch commands.
#include "app/Body.h"

#include "app/Globals.h"
#include "batch/BatchCtrl.h"
#include "batch/BatchDispatcher.h"
#include "batch/ExCmdId.h"
#include "ui_Body.h"

#include <QThread>

void Body::setupBatch()
{
    // $DataRoot$ takes the configuration's DataRoot as it stands now.
    batchDispatcher = new BatchDispatcher(gConfig.valueExact(QStringLiteral("DataRoot"), gDataRoot));
    batchThread = new QThread(this);
    batchThread->setObjectName(QStringLiteral("batch"));
    batchDispatcher->moveToThread(batchThread);
    connect(batchThread, &QThread::finished, batchDispatcher, &QObject::deleteLater);
    batchThread->start(QThread::InheritPriority);

    batchCtrl = new BatchCtrl(gBatchRoot, this);
    batchCtrl->setDispatcher(batchDispatcher);
    connect(ui->BatchCtrlB, &QPushButton::clicked, batchCtrl, &QWidget::show);
    connect(batchDispatcher, &BatchDispatcher::execCmdSig, this, &Body::execCmdSlot);
    connect(this, &Body::finishBatchExec, batchDispatcher, &BatchDispatcher::finishBatchExec);
}

void Body::teardownBatch()
{
    if (!batchThread)
        return;
    // The dispatcher is deleted on its own thread as the thread finishes.
    batchThread->quit();
    batchThread->wait();
    batchDispatcher = nullptr;
}

bool Body::loadBatchFile(const QString &fname)
{
    return batchCtrl->setBatchFile(fname);
}

void Body::execBatch()
{
    batchCtrl->execBatchSlot();
}

void Body::execCmdSlot(CmdLine cmd, bool inRem)
{
    // Inside a comment block nothing is done; the answer lets the batch go on.
    if (inRem) {
        emit finishBatchExec(NOT_EX_CMD);
        return;
    }

    const EX_CMD_ID id = exCmdId(cmd.cmd);
    switch (id) {
    // Each subsystem adds its commands here as its controls arrive. A
    // command that finishes at once ends with `break`, so that the finish
    // below is sent; a long job returns, and the code that ends the job sends
    // finishBatchExec with the command's id.

    // The file panels: each of these only sets a field.
    case SET_I1_ENERGY_PATTERN:
    case SET_I0_ENERGY_PATTERN:
    case CUT_F_I0:
    case CUT_F_I1:
    case CUT_L_I0:
    case CUT_L_I1:
    case SKIP_I0:
    case SKIP_I1:
    case SHOW_LATEST_I0:
    case SHOW_LATEST_I1:
    case ENG_BY_NAME_I0:
    case ENG_BY_NAME_I1:
    case ENG_BY_NAME_REG_EXP_I0:
    case ENG_BY_NAME_REG_EXP_I1:
    case ENG_BY_NAME_FACTOR_I0:
    case ENG_BY_NAME_FACTOR_I1:
    case ENG_BY_CALC_I0:
    case ENG_BY_CALC_I1:
    case ENG_CALC_BASE_I0:
    case ENG_CALC_BASE_I1:
    case ENG_CALC_DELTA_I0:
    case ENG_CALC_DELTA_I1:
    case ENG_CALC_END_I0:
    case ENG_CALC_END_I1:
    case ENG_CALC_NUM_I0:
    case ENG_CALC_NUM_I1:
    case ENG_CALC_EVEN_IN_ENG_I0:
    case ENG_CALC_EVEN_IN_ENG_I1:
    case ENG_CALC_EVEN_IN_DEG_I0:
    case ENG_CALC_EVEN_IN_DEG_I1:
    case ENG_CALC_DISP_UNIT_I0:
    case ENG_CALC_DISP_UNIT_I1:
    case ENG_BY_REF_I0:
    case ENG_BY_REF_I1:
        execFilePanelCmd(id, cmd.args);
        break;

    case QUIT:
        // No finish: the windows close and the application ends.
        emit finishing();
        return;

    default: {
        // A word that is in the table but has no action here (among them
        // analyzer_select_main_mode_sumUp, which has never had one): the
        // error goes to the batch log and the batch goes on.
        const CmdLine bare = CmdLine::parse(cmd.cmd);
        if (!bare.isMeta)
            batchCtrl->showCmdErr(bare);
        emit finishBatchExec(NOT_EX_CMD);
        return;
    }
    }

    emit finishBatchExec(id);
}
