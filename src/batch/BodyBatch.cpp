// Body's batch slots: the batch engine's setup and the execution of the
// external batch commands.
#include "app/Body.h"

#include "app/Globals.h"
#include "batch/BatchCtrl.h"
#include "batch/BatchDispatcher.h"
#include "batch/CmdArgs.h"
#include "batch/ExCmdId.h"
#include "ui_Body.h"
#include "view/ColorBar.h"

#include <QDebug>
#include <QDir>
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

    case SUGGEST_ELM:
        ui->UseSuggestElm->setChecked(CmdArgs::toBool(cmd, 0));
        newEdgeSuggested(ui->SuggestingEdge->currentIndex());
        break;
    case SUGGESTING_ELM:
        ui->SuggestingElm->setText(CmdArgs::str(cmd, 0));
        newEdgeSuggested(ui->SuggestingEdge->currentIndex());
        break;
    case SUGGESTING_EDGE:
        ui->SuggestingEdge->setCurrentIndex(CmdArgs::toInt(cmd, 0));
        newEdgeSuggested(ui->SuggestingEdge->currentIndex());
        break;
    case SUGGESTING_EDGE_EV:
        ui->SuggestingEeV->setText(CmdArgs::str(cmd, 0));
        break;
    case SUGGESTING_PRE_END_EV:
        ui->DPreE->setText(CmdArgs::str(cmd, 0));
        break;
    case SUGGESTING_POST_START_EV:
        ui->DPostS->setText(CmdArgs::str(cmd, 0));
        break;

    case CBAR_SET_RANGE: {
        const double vMin = CmdArgs::toDouble(cmd, 0);
        const double vMax = CmdArgs::toDouble(cmd, 1);
        qDebug().noquote() << "setting cbar" << vMin << vMax;
        ui->CBar->setValueRange(vMin, vMax);
        ui->CBar->paintCBar();
        break;
    }

    case CBAR_SET_ALL:
        qDebug().noquote() << "cbar set all";
        cBarUpdated();
        break;

    case CLEAR_I1_FILES:
        clearI1Files();
        break;
    case CLEAR_I0_FILES:
        clearI0Files();
        break;

    // The loads answer through the loader's finish (id 4 or 5).
    case LOAD_I1_FILES:
    case LOAD_I0_FILES: {
        // A mode without files does nothing and never answers: the batch
        // stands until Stop, as scripts have always seen it.
        if (cmd.args.size() < 2)
            return;
        const bool newFile = cmd.args.at(0).toUpper() == QLatin1String("NEW");
        const QStringList files = cmd.args.mid(1);
        if (id == LOAD_I1_FILES)
            readI1Files(files, newFile);
        else
            readI0Files(files, newFile);
        return;
    }
    case LOAD_I1_FILES_OF_PATTERN:
    case LOAD_I0_FILES_OF_PATTERN: {
        const QString mode = cmd.args.value(0);
        const QString dir = cmd.args.value(1);
        const QStringList patterns = cmd.args.mid(2);
        // Files only, with no sort flags of our own, so the order is the one
        // QDir gives by default. The directory is joined by plain
        // concatenation, so it must end in a separator.
        QStringList files;
        const QStringList names = QDir(dir).entryList(patterns, QDir::Files);
        files.reserve(names.size());
        for (const QString &name : names)
            files << dir + name;
        const bool newFile = mode.toUpper() == QLatin1String("NEW");
        // Even an empty list is loaded: its finish releases the batch.
        if (id == LOAD_I1_FILES_OF_PATTERN)
            readI1Files(files, newFile);
        else
            readI0Files(files, newFile);
        return;
    }

    // An HDF5 stack: mode, file, then the image and energy datasets, which
    // the file chooses when they are not given. Unlike load_I1_files, any
    // failure still finishes, with the command's own id, so a script goes on.
    case LOAD_I1_H5:
    case LOAD_I0_H5: {
        const bool newFile = CmdArgs::str(cmd, 0).toUpper() == QLatin1String("NEW");
        const QString file = CmdArgs::str(cmd, 1);
        if (id == LOAD_I1_H5)
            readI1H5(file, CmdArgs::str(cmd, 2), CmdArgs::str(cmd, 3), newFile, id);
        else
            readI0H5(file, CmdArgs::str(cmd, 2), CmdArgs::str(cmd, 3), newFile, id);
        return;
    }

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

    // Box sizes, the display buttons and the image view.
    case SET_BAND_W:
    case SET_BAND_H:
    case SET_VIEW_W:
    case SET_VIEW_H:
    case SET_ANALYZE_W:
    case SET_ANALYZE_H:
    case SELECT_DISP_IMAGE:
    case SELECT_DISP_IMAGE_I1:
    case SELECT_DISP_IMAGE_I0:
    case SELECT_DISP_IMAGE_ESHIFT:
    case SELECT_DISP_IMAGE_ANALYZED:
    case SEEK_IMAGE:
    case SELECT_REGION:
    case SCALE_RESET:
    case ZOOM_IN:
        execViewCmd(id, cmd);
        break;

    // Absorption controls: the boxes are set through their setters, so
    // whatever follows a user's click follows here too.
    case USE_I0:
        ui->UseI0->setChecked(CmdArgs::toBool(cmd, 0));
        break;
    case SET_FLUO_TYPE:
        ui->FluoType->setChecked(CmdArgs::toBool(cmd, 0));
        break;
    case SET_I0_DARK_AREA:
        setI0DarkArea();
        break;
    case SET_I1_DARK_AREA:
        setI1DarkArea();
        break;
    case CLEAR_I0_DARK_AREA:
        clearI0DarkArea();
        break;
    case CLEAR_I1_DARK_AREA:
        clearI1DarkArea();
        break;

    case MOVE_POSITION:
        movePosition(CmdArgs::toInt(cmd, 0), CmdArgs::toInt(cmd, 1));
        break;

    case SAVE_SPECTRA:
    case XAFS_VIEW_NORMALIZE:
    case XAFS_VIEW_ENERUGY_CORRECTION:
        execXafsViewCmd(id, cmd);
        break;

    // The Analyzer window. The four exec words start one run (its kind is
    // the window's choice, not the word's) and finish when it ends; a run
    // that cannot begin never finishes, and the batch waits for Stop.
    case ANALYZER_EXEC_2DA:
    case ANALYZER_EXEC_LCF:
    case ANALYZER_EXEC_ELEMS:
    case ANALYZER_EXEC_RA:
        start2DAnalysis();
        return;
    case ANALYZER_SHOW_WINDOW:
    case ANALYZER_SELECT_ANALYSIS_MODE:
    case ANALYZER_MAIN_MODE:
    case ANALYZER_SUB_MODE:
    case ANALYZER_SELECT_MAIN_MODE_2DA:
    case ANALYZER_SELECT_SUB_MODE_DEDGE:
    case ANALYZER_SELECT_SUB_MODE_LCF:
    case ANALYZER_SELECT_SUB_MODE_ELEMS:
    case ANALYZER_SELECT_SUB_MODE_RA:
    case ANALYZER_SELECT_MAIN_MODE_PROCMAPS:
    case ANALYZER_VIEW_NORMALIZE:
    case ANALYZER_VIEW_ENERUGY_CORRECTION:
    case ANALYZER_SELECT_IMAGE:
    case ANALYZER_SET_FIXED_SCALE:
    case ANALYZER_SET_SCALE_MAX:
    case ANALYZER_SET_SCALE_MIN:
    case ANALYZER_SET_DMUT_SCALE_MAX:
    case ANALYZER_SET_DMUT_SCALE_MIN:
    case ANALYZER_SET_RATIO_SCALE_MAX:
    case ANALYZER_SET_RATIO_SCALE_MIN:
    case ANALYZER_DEDGE_SELECT_MODE:
    case ANALYZER_DEDGE_SELECT_MODE_MIDP:
    case ANALYZER_DEDGE_SELECT_MODE_COMP:
    case ANALYZER_DEDGE_MID_POINT_RATIO:
    case ANALYZER_DEDGE_COMP_TARGET:
    case ANALZYER_DEDGE_COMP_W_FILE:
    case ANALYZER_DEDGE_COMP_FILE_NAME:
    case ANALYZER_DEDGE_COMP_W_STEP:
    case ANALYZER_DEDGE_COMP_STEP_PARAMS:
    case ANALYZER_DEDGE_COMP_PARAMS:
    case ANALYZER_SELECT_IMAGE_TYPE:
    case ANALYZER_SET_LCF_STD:
    case ANALYZER_SET_LCF_MODE:
    case ANALYZER_SET_MLCF:
    case ANALYZER_SET_LCF_AS_OLD:
    case ANALYZER_SET_LCF_RANGE:
    case ANALYZER_TARGET_ELEMENTS:
    case ANALYZER_ELEMS_SELECT_TARGET:
    case ANALYZER_ELEMS_SORT_BY_AN:
    case ANALYZER_ELEMS_SELECT_SHOW:
    case ANALYZER_ELEMS_SET_DEVS:
    case ANALYZER_ELEMS_SET_CORR_TH:
    case ANALYZER_ELEMS_SELECT_DISP_MODE:
    case ANALYZER_ELEMS_SET_USE:
    case ANALYZER_ELEMS_ROI:
    case ANALYZER_ELEMS_THDMUT:
    case ANALYZER_ELEMS_NO_NEG:
    case ANALYZER_ELEMS_BG_DMUT:
    case ANALYZER_ELEMS_BG_DMUTR:
    case ANALYZER_ELEMS_BG_DE:
    case ANALYZER_ELEMS_BG_ROI:
    case ANALYZER_ELEMS_BG_NROI:
    case ANALYZER_SET_RA_ENERGY:
    case ANALYZER_SET_RA_FACTOR:
        execAnalyzerCmd(id, cmd);
        break;

    // Calibration and the energy-shift map. calib_load_map answers from
    // within the load, on every path; calib_exec only starts the run, and
    // the lines after it run while it proceeds.
    case SELECT_QS_FITTED_ESHIFT:
    case CALIB_SHOW_WINDOW:
    case CALIB_LOAD_STD:
    case CALIB_SET_EDGE_EV:
    case CALIB_EXEC:
    case CALIB_CLEAR_MAP:
    case CALIB_SAVE_MAP:
    case CALIB_TYPE:
        execCalibCmd(id, cmd);
        break;
    case CALIB_LOAD_MAP:
        loadEMap(CmdArgs::str(cmd, 0));
        return;

    // The statistics window.
    case STATS_SHOW_WINDOW:
    case STATS_BINS:
    case STATS_OVER_IMAGE:
    case STATS_IN_SELECTED_REGION:
        execStatsCmd(id, cmd);
        break;

    // Saving the map on display, the pictures and the save configuration.
    case SAVE_IMAGE:
    case SAVE_IMAGE_W_NUM:
    case SAVE_ALL_IMAGES:
    case SAVE_DATA:
    case SAVE_DATA_AS_TIFF:
    case SAVEDATACFG_SHOW_WINDOW:
    case SAVEDATACFG_SAVE_AS_TIFF:
    case SAVEDATACFG_SAVE_AS_TEXT:
    case SAVEDATACFG_TIFF_FIX_SCALE:
    case SAVEDATACFG_TIFF_SCALE_MIN:
    case SAVEDATACFG_TIFF_SCALE_MAX:
    case SAVEDATACFG_TIFF_AS_ANALYZED:
    case SAVEDATACFG_TEXT_AS_CSV:
    case SAVEDATACFG_TEXT_AS_SSV:
    case SAVEDATACFG_TEXT_AS_XYZ:
    case SAVEDATACFG_TEXT_AS_VALS:
        execSaveCmd(id, cmd);
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
