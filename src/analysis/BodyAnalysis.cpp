// Body's analysis slots: the run over the image area, point by point, as a
// chain of signals between Body, the Analyzer and its worker; the recording
// of each point into the maps; their images; and the batch commands of the
// Analyzer window.
#include "app/Body.h"

#include "analysis/AnalyzeProc.h"
#include "analysis/Analyzed2DRes.h"
#include "analysis/AElemsConds.h"
#include "analysis/Analyzer.h"
#include "analysis/ElemCtrl.h"
#include "analysis/LCFReference.h"
#include "analysis/MapRun.h"
#include "batch/CmdArgs.h"
#include "images/TiffData.h"
#include "ui_Body.h"
#include "view/ImgDispA.h"

#include <QDebug>
#include <QThread>

void Body::setupAnalyzer()
{
    analyzer = new Analyzer(this);
    connect(ui->ShowAnalyzer, &QPushButton::clicked, analyzer, &Analyzer::show);
    // Direct: the walk is the main thread's, and askAnalyzeCond fills its
    // argument before the emitter reads it.
    connect(analyzer, &Analyzer::askAnalyze, this, &Body::start2DAnalysis, Qt::DirectConnection);
    connect(analyzer, &Analyzer::finished, this, &Body::analyzeASpectrumFinished, Qt::DirectConnection);
    connect(analyzer, &Analyzer::askAnalyzeCond, this, &Body::askAnalyzeCond, Qt::DirectConnection);
    connect(analyzer, &Analyzer::changedSelection, this, &Body::showSelectedMap);
    connect(ui->DeGlitch, &QAbstractButton::toggled, this, &Body::deGlitchToggled);
    // Direct: the header tells the Analyzer whether the file was taken.
    connect(analyzer, &Analyzer::loadMap, this, &Body::loadMap, Qt::DirectConnection);
}

bool Body::askAnalyzeCond(AnalyzeCond &ac)
{
    if (i1Frames.isEmpty())
        return false;
    const TiffData *first = i1Frames.first();
    const ImgDispA *a = ui->dispA;
    const QRectF rect = a->hasSelection ? a->selectedArea() : QRectF(0, 0, first->width, first->height);
    ac.setUp(int(first->width), int(first->height), ui->aHWidth_->text().toInt(), ui->aVWidth_->text().toInt(), rect,
             -1, -1);
    return true;
}

void Body::start2DAnalysis()
{
    // The "Analyze" button is one toggle: pressed during a run it stops it.
    if (running2D) {
        stop2DAnalysis();
        return;
    }
    if (i1Frames.isEmpty() || !askAnalyzeCond(analyzeCond))
        return;
    // The spectrum under the pointer may still be in the worker: it ends as
    // a single spectrum, writing its panels (whose ratios the run's fits
    // read), before the run takes the worker. Its answers are not taken for
    // the run's first point.
    analyzer->drainWorker();
    running2D = true;
    analyzer->setContAccess(true);
    analyzer->setProgress(0.0);
    analyzer->initAnalyzeSpectrum();

    int no = 0;
    auto take = [&no, this](Analyzed2DRes *m) {
        m->setNo(no++);
        m->setUp(analyzeCond);
    };
    if (analyzer->selLCF()) {
        lcfMaps.clear();
        for (int kind = 0; kind < 2; ++kind)
            for (LCFReference *r : std::as_const(analyzer->lcfrs))
                lcfMaps << r->maps.at(kind);
        for (Analyzed2DRes *m : std::as_const(lcfMaps))
            take(m);
        take(&analyzer->zansaMap);
        qDebug().noquote() << "setup for LCF/MLCF" << analyzeCond.text();
    }
    if (analyzer->selDEdge()) {
        if (analyzer->dEdgeCompWithStep())
            analyzer->generateDEdgeStep();
        take(&analyzer->dEdgeMap);
    }
    if (analyzer->selElems()) {
        elemMaps.clear();
        for (int kind = 0; kind < ElemCtrl::MapKinds; ++kind)
            for (ElemCtrl *e : std::as_const(analyzer->elems))
                elemMaps << e->maps.at(kind);
        elemMaps << &analyzer->elemsCorMap << &analyzer->elemsCorThMap;
        for (Analyzed2DRes *m : std::as_const(elemMaps))
            take(m);
    }
    if (analyzer->selRA()) {
        raDMutMap = &analyzer->raDMutMap;
        raRestMap = &analyzer->raRestMap;
        raRatioMap = &analyzer->raRatioMap;
        take(raDMutMap);
        take(raRestMap);
        take(raRatioMap);
    }
    if (analyzer->selFV()) {
        analyzer->fvLists.clear();
        fvMap = &analyzer->fvMap;
        take(fvMap);
    }
    if (startMapRun())
        return;
    analyzeAPoint(analyzeCond);
}

void Body::stop2DAnalysis()
{
    // The point in flight still ends, but finds the run over and records
    // nothing: the maps keep what was recorded, with the images last made.
    running2D = false;
    analyzer->setContAccess(false);
    endMapRun();
}

bool Body::startMapRun()
{
    // TESSARELLE_SERIAL_RUN keeps the one-at-a-time path, against which the
    // threaded run is compared. Without a chosen analysis neither path
    // records anything, and the serial one shows it as it always has.
    if (qEnvironmentVariableIntValue("TESSARELLE_SERIAL_RUN") || !analyzer->sel2DA())
        return false;
    PointAnalyses job = analyzer->pointAnalyses();
    if (!(job.lcf || job.dEdge || job.elems || job.ra || job.fv))
        return false;
    job.hw = viewHalfWidth();
    job.vw = viewHalfHeight();
    job.lineType = targetLineType();
    job.sElm = suggestElm();
    analyzer->sElm = job.sElm;
    std::vector<double> shifts;
    AnalyzeCond c = analyzeCond;
    do
        shifts.push_back(pointEShift(c.ix, c.iy));
    while (c.next());
    mapRun = new MapRun(absorptionInput(), job, analyzeCond, std::move(shifts), QThread::idealThreadCount(), this);
    connect(mapRun, &MapRun::rowsReady, this, &Body::recordMapRows, Qt::QueuedConnection);
    mapRow = 0;
    mapShown.invalidate();
    mapZ = analyzer->analyzeProc()->z;
    mapRun->start();
    return true;
}

void Body::stopRunBeforeFramesGo()
{
    // A threaded run reads the frames and the dark frame from its threads:
    // it ends before any of them is deleted, as if Stop had been pressed.
    if (mapRun)
        stop2DAnalysis();
    if (calibRun) {
        calibrating = false;
        endCalibRun();
    }
}

void Body::endMapRun()
{
    delete mapRun;
    mapRun = nullptr;
}

void Body::recordMapRows()
{
    while (running2D && mapRun) {
        const double *values = mapRun->readyRow(mapRow);
        if (!values)
            return;
        recordMapRow(mapRow, values);
        mapRun->releaseRow();
        const std::vector<int> &ys = mapRun->ys();
        if (++mapRow >= int(ys.size())) {
            endMapRun();
            // Where the one-at-a-time walk ends.
            while (analyzeCond.next()) {
            }
            finish2DAnalysis();
            return;
        }
        // Rows come far faster than a person can look at them: the maps are
        // redrawn at most four times a second, not at every row, which on a
        // large map would cost more than the analysis. The values recorded
        // are the same; the images are remade at the end in any case.
        if (analyzer->dispOnTime() && (!mapShown.isValid() || mapShown.elapsed() >= 250)) {
            generateResImages();
            mapShown.start();
        }
        show2DProgress(ys[size_t(mapRow)]);
    }
}

void Body::finish2DAnalysis()
{
    generateResImages();
    ui->dispA->update();
    running2D = false;
    analyzer->setContAccess(false);
    analyzer->setProgress(100.0);
    // All four analysis commands finish with this one id.
    emit finishBatchExec(ANALYZER_EXEC_LCF);
}

void Body::show2DProgress(int iy)
{
    analyzer->setProgress(double(iy - analyzeCond.yStart) / double(analyzeCond.yEnd - analyzeCond.yStart) * 100.0);
}

void Body::recordMapRow(int row, const double *v)
{
    const PointAnalyses &job = mapRun->job();
    const std::vector<int> &xv = mapRun->xs();
    const int *xs = xv.data();
    const int n = int(xv.size());
    const int iy = mapRun->ys()[size_t(row)];
    const int bx = analyzeCond.binX;
    const int by = analyzeCond.binY;
    const qsizetype st = job.width;
    if (job.lcf) {
        // A fit without an answer (no points in range) records nothing; a
        // point without a positive jump records zeros and the last residual.
        const double *l = v + job.lcfAt;
        const double none = double(int(LcfOutcome::Action::None));
        const double fitted = double(int(LcfOutcome::Action::NewZAndFinished));
        bool answered = true;
        bool anyFit = false;
        mapZRow.resize(size_t(n));
        for (int i = 0; i < n; ++i) {
            const double action = l[i * st];
            answered = answered && action != none;
            if (action == fitted) {
                mapZ = l[i * st + 1];
                anyFit = true;
            }
            mapZRow[size_t(i)] = mapZ;
        }
        if (anyFit)
            analyzer->noticedNewZ(mapZ);
        auto record = [&](int from, int count) {
            int k = 0;
            for (int j = 0; j < analyzer->lcfrs.size() && j < job.lcfRefs.size(); ++j) {
                if (!job.lcfRefs.at(j).inUse)
                    continue;
                const double *amps = l + from * st + 2;
                LCFReference *r = analyzer->lcfrs.at(j);
                r->maps.at(0)->setRowData(xs + from, count, iy, bx, by, amps + k, st);
                r->maps.at(1)->setRowData(xs + from, count, iy, bx, by, amps + job.usedRefs + k, st);
                ++k;
            }
            analyzer->zansaMap.setRowData(xs + from, count, iy, bx, by, mapZRow.data() + from, 1);
        };
        if (answered)
            record(0, n);
        else
            for (int i = 0; i < n; ++i)
                if (l[i * st] != none)
                    record(i, 1);
    }
    if (job.dEdge) {
        analyzer->dEdgeMap.setRowData(xs, n, iy, bx, by, v + job.dEdgeAt, st);
        analyzer->noticedNewDEdge(v[(n - 1) * st + job.dEdgeAt]);
    }
    if (job.elems) {
        const int ne = int(job.elemConds.size());
        for (int j = 0; j < analyzer->elems.size() && j < ne; ++j)
            for (int kind = 0; kind < ElemCtrl::MapKinds; ++kind)
                analyzer->elems.at(j)->maps.at(kind)->setRowData(xs, n, iy, bx, by,
                                                                v + job.elemsAt + kind * ne + j, st);
        const double c = analyzer->correlation;
        const double cTh = c < analyzer->corTh ? 0.0 : c;
        analyzer->elemsCorMap.setRowData(xs, n, iy, bx, by, &c, 0);
        analyzer->elemsCorThMap.setRowData(xs, n, iy, bx, by, &cTh, 0);
    }
    if (job.ra) {
        analyzer->raDMutMap.setRowData(xs, n, iy, bx, by, v + job.raAt, st);
        analyzer->raRestMap.setRowData(xs, n, iy, bx, by, v + job.raAt + 1, st);
    }
    if (job.fv) {
        for (int i = 0; i < n; ++i) {
            const double *f = v + i * st + job.fvAt;
            analyzer->fv = FeatureValue{f[0], f[1], f[2]};
            analyzer->fvLists.record(analyzer->fv);
        }
    }
}

double Body::pointEShift(int ix, int iy) const
{
    return eShiftAt(imgX0 + ix - calibOffX, imgY0 + iy - calibOffY);
}

void Body::analyzeAPoint(AnalyzeCond &ac)
{
    const double shift = pointEShift(ac.ix, ac.iy);
    const SuggestElm sElm = suggestElm();
    // The line type is the calibration window's choice for a point.
    const XafsSpectrum s(absorptionSpectrum(ac.ix, ac.iy, viewHalfWidth(), viewHalfHeight()),
                         QStringLiteral("Body-AaP"), targetLineType(), shift, sElm);
    analyzer->analyzeSpectrum(s, sElm);
}

void Body::analyzeASpectrumFinished()
{
    if (!running2D)
        return;
    recordResForAPoint();
    if (!analyzeCond.next()) {
        finish2DAnalysis();
        return;
    }
    if (analyzeCond.newLine) {
        if (analyzer->dispOnTime())
            generateResImages();
        show2DProgress(analyzeCond.iy);
    }
    analyzeAPoint(analyzeCond);
}

void Body::recordResForAPoint()
{
    const AnalyzeProc *w = analyzer->analyzeProc();
    const int ix = analyzeCond.ix;
    const int iy = analyzeCond.iy;
    const int bx = analyzeCond.binX;
    const int by = analyzeCond.binY;
    if (analyzer->selLCF()) {
        // The worker's lists hold one entry per panel in use, in panel order.
        int k = 0;
        for (LCFReference *r : std::as_const(analyzer->lcfrs)) {
            if (!r->inUse())
                continue;
            if (k < w->lcfAmps.size() && k < w->lcfCoefs.size()) {
                r->maps.at(0)->setData(ix, iy, bx, by, w->lcfAmps.at(k));
                r->maps.at(1)->setData(ix, iy, bx, by, w->lcfCoefs.at(k));
            }
            ++k;
        }
        analyzer->zansaMap.setData(ix, iy, bx, by, w->z);
    }
    if (analyzer->selDEdge())
        analyzer->dEdgeMap.setData(ix, iy, bx, by, w->dEdge);
    if (analyzer->selElems()) {
        const QList<double> *lists[ElemCtrl::MapKinds] = {&w->elemDMut,     &w->elemNDMut, &w->elemMutPlus,
                                                          &w->elemMutMinus, &w->elemDE,    &w->elemROI,
                                                          &w->elemNROI};
        for (int j = 0; j < analyzer->elems.size(); ++j)
            for (int kind = 0; kind < ElemCtrl::MapKinds; ++kind)
                if (j < lists[kind]->size())
                    analyzer->elems.at(j)->maps.at(kind)->setData(ix, iy, bx, by, lists[kind]->at(j));
        // During a run nothing refreshes the correlation: these two maps are
        // constant until they are recalculated from the element maps.
        const double c = analyzer->correlation;
        analyzer->elemsCorMap.setData(ix, iy, bx, by, c);
        analyzer->elemsCorThMap.setData(ix, iy, bx, by, c < analyzer->corTh ? 0.0 : c);
    }
    if (analyzer->selRA()) {
        analyzer->raDMutMap.setData(ix, iy, bx, by, w->raDMut);
        analyzer->raRestMap.setData(ix, iy, bx, by, w->raRest);
    }
    if (analyzer->selFV())
        analyzer->fvLists.record(analyzer->fv);
}

void Body::generateResImages()
{
    if (analyzer->selLCF()) {
        for (Analyzed2DRes *m : std::as_const(lcfMaps))
            if (m)
                m->genImg();
        analyzer->zansaMap.genImg();
    }
    if (analyzer->selDEdge())
        analyzer->dEdgeMap.genImg();
    if (analyzer->selElems()) {
        for (Analyzed2DRes *m : std::as_const(elemMaps))
            if (m)
                m->genImg();
    }
    if (analyzer->selRA()) {
        // The ratio is made from the whole maps, not at the points: m, the
        // smallest rest anywhere (unwritten pixels' 0 included), moves the
        // rest to be positive.
        const Analyzed2DRes &rest = analyzer->raRestMap;
        const Analyzed2DRes &dmut = analyzer->raDMutMap;
        Analyzed2DRes &ratio = analyzer->raRatioMap;
        double m = 1e300;
        for (double v : rest.data)
            if (v < m)
                m = v;
        for (int y = 0; y < rest.height(); ++y)
            for (int x = 0; x < rest.width(); ++x) {
                const double r = rest.valueAt(x, y) - m;
                ratio.setData(x, y, 0, 0, r / (dmut.valueAt(x, y) + r));
            }
        analyzer->raDMutMap.genImg();
        analyzer->raRestMap.genImg();
        analyzer->raRatioMap.genImg();
    }
    if (analyzer->selFV())
        analyzer->updateFVMap();
    showSelectedMap();
}

void Body::setupResAnalysisImage()
{
    if (Analyzed2DRes *m = analyzer->selectedMap())
        m->genImg();
}

void Body::showSelectedMap()
{
    // The image area takes the Analyzer's choice; it is on show while
    // "Res. Analysis" is checked. The shift map on show stays.
    if (ui->ShowShiftMap->isChecked())
        return;
    ui->dispA->overLayer = analyzer->selectedMap();
    if (ui->ShowResAnalysis->isChecked())
        ui->dispA->setShowOverLayer(true);
    ui->dispA->update();
}

void Body::deGlitchToggled(bool f)
{
    Analyzed2DRes *m = analyzer->selectedMap();
    if (!m)
        return;
    if (f)
        m->deglitch();
    m->selectProcImg(f);
    showSelectedMap();
}

void Body::execAnalyzerCmd(EX_CMD_ID id, const CmdLine &cmd)
{
    Analyzer *a = analyzer;
    const bool b = CmdArgs::toBool(cmd, 0);
    const int i = CmdArgs::toInt(cmd, 0);
    const double d = CmdArgs::toDouble(cmd, 0);
    switch (id) {
    case ANALYZER_SHOW_WINDOW:
        a->show();
        break;
    case ANALYZER_SELECT_ANALYSIS_MODE:
        switch (i) {
        case 0:
            a->setMainMode2DA();
            a->setSelLCF(true);
            break;
        case 1:
            a->setMainMode2DA();
            a->setSelRA(true);
            break;
        case 2:
            a->setMainMode2DA();
            a->setSelElems(true);
            break;
        case 3:
            a->setSelSumUp();
            break;
        case 4:
            a->setMainModeProcMaps();
            break;
        case 5:
            a->setMainMode2DA();
            a->setSelDEdge(true);
            break;
        default:
            break;
        }
        break;
    case ANALYZER_MAIN_MODE:
        if (i == 0)
            a->setMainMode2DA();
        else if (i == 1)
            a->setMainModeProcMaps();
        break;
    case ANALYZER_SUB_MODE:
        // Each argument after the 0 sets one box, in this order.
        if (cmd.args.size() >= 2 && i == 0) {
            // A switch rather than a table of member pointers: GCC's bounds
            // checker misreads such a table's index on a relocated stack frame.
            for (int k = 1; k < cmd.args.size() && k <= 5; ++k) {
                const bool on = CmdArgs::toBool(cmd, k);
                switch (k) {
                case 1:
                    a->setSelDEdge(on);
                    break;
                case 2:
                    a->setSelLCF(on);
                    break;
                case 3:
                    a->setSelElems(on);
                    break;
                case 4:
                    a->setSelRA(on);
                    break;
                default:
                    a->setSelFV(on);
                    break;
                }
            }
        }
        break;
    case ANALYZER_SELECT_MAIN_MODE_2DA:
        a->setMainMode2DA();
        break;
    case ANALYZER_SELECT_SUB_MODE_DEDGE:
        a->setSelDEdge(b);
        break;
    case ANALYZER_SELECT_SUB_MODE_LCF:
        a->setSelLCF(b);
        break;
    case ANALYZER_SELECT_SUB_MODE_ELEMS:
        a->setSelElems(b);
        break;
    case ANALYZER_SELECT_SUB_MODE_RA:
        a->setSelRA(b);
        break;
    case ANALYZER_SELECT_MAIN_MODE_PROCMAPS:
        a->setMainModeProcMaps();
        break;
    case ANALYZER_VIEW_NORMALIZE:
        a->setNormalize(b);
        break;
    case ANALYZER_VIEW_ENERUGY_CORRECTION:
        a->setEnergyCorrection(b);
        break;
    case ANALYZER_SELECT_IMAGE:
        a->selectImage(i);
        break;
    case ANALYZER_SET_FIXED_SCALE:
        a->setFixedScale(b);
        break;
    case ANALYZER_SET_SCALE_MAX:
        a->setDMutScaleMax(d);
        a->setRatioScaleMax(d);
        break;
    case ANALYZER_SET_SCALE_MIN:
        a->setDMutScaleMin(d);
        a->setRatioScaleMin(d);
        break;
    case ANALYZER_SET_DMUT_SCALE_MAX:
        a->setDMutScaleMax(d);
        break;
    case ANALYZER_SET_DMUT_SCALE_MIN:
        a->setDMutScaleMin(d);
        break;
    case ANALYZER_SET_RATIO_SCALE_MAX:
        a->setRatioScaleMax(d);
        break;
    case ANALYZER_SET_RATIO_SCALE_MIN:
        a->setRatioScaleMin(d);
        break;
    case ANALYZER_DEDGE_SELECT_MODE:
        if (i == 0 || i == 1)
            a->setDEdgeMidPoint(i == 0);
        break;
    case ANALYZER_DEDGE_SELECT_MODE_MIDP:
        a->setDEdgeMidPoint(true);
        break;
    case ANALYZER_DEDGE_SELECT_MODE_COMP:
        a->setDEdgeMidPoint(false);
        break;
    case ANALYZER_DEDGE_MID_POINT_RATIO:
        a->setDEdgeMidRatio(d);
        break;
    case ANALYZER_DEDGE_COMP_TARGET:
        if (i == 0 || i == 1)
            a->setDEdgeCompWithStep(i == 1);
        break;
    case ANALZYER_DEDGE_COMP_W_FILE:
        a->setDEdgeCompWithStep(false);
        break;
    case ANALYZER_DEDGE_COMP_FILE_NAME:
        a->loadDEdgeCompFile(CmdArgs::str(cmd, 0));
        break;
    case ANALYZER_DEDGE_COMP_W_STEP:
        a->setDEdgeCompWithStep(true);
        break;
    case ANALYZER_DEDGE_COMP_STEP_PARAMS:
        a->setDEdgeStepParams(d, CmdArgs::toDouble(cmd, 1), CmdArgs::toDouble(cmd, 2));
        break;
    case ANALYZER_DEDGE_COMP_PARAMS:
        a->setDEdgeCompParams(d, CmdArgs::toDouble(cmd, 1), CmdArgs::toDouble(cmd, 2));
        break;
    case ANALYZER_SELECT_IMAGE_TYPE:
        if (i == 0 || i == 1)
            a->setImageTypeRatio(i == 0);
        break;
    case ANALYZER_SET_LCF_STD:
        a->setLCFStd(i, CmdArgs::toBool(cmd, 1), CmdArgs::toDouble(cmd, 2), CmdArgs::str(cmd, 3), CmdArgs::str(cmd, 4));
        break;
    case ANALYZER_SET_LCF_MODE:
    case ANALYZER_SET_MLCF:
        a->setLCFMode(b ? 1 : 0);
        break;
    case ANALYZER_SET_LCF_AS_OLD:
        a->setLCFAsOld(b);
        break;
    case ANALYZER_SET_LCF_RANGE:
        a->setLCFRange(d, CmdArgs::toDouble(cmd, 1));
        break;
    case ANALYZER_TARGET_ELEMENTS:
        a->setTargetElements(CmdArgs::str(cmd, 0));
        break;
    case ANALYZER_ELEMS_SELECT_TARGET:
        a->selectTargetElement(CmdArgs::str(cmd, 0));
        dispImgSelected(true);
        break;
    case ANALYZER_ELEMS_SORT_BY_AN:
        a->setElemsSortByAN(b);
        break;
    case ANALYZER_ELEMS_SELECT_SHOW:
        a->selectShownElement(CmdArgs::str(cmd, 0));
        dispImgSelected(true);
        break;
    case ANALYZER_ELEMS_SET_DEVS:
        a->setElemsDE(d);
        break;
    case ANALYZER_ELEMS_SET_CORR_TH:
        a->setCorTh(d);
        break;
    case ANALYZER_ELEMS_SELECT_DISP_MODE:
        a->setElemsDispMode(i);
        break;
    case ANALYZER_ELEMS_SET_USE:
        a->setElemUse(CmdArgs::str(cmd, 0), CmdArgs::toBool(cmd, 1));
        break;
    case ANALYZER_ELEMS_ROI:
        a->setElemROI(CmdArgs::str(cmd, 0), CmdArgs::toDouble(cmd, 1), CmdArgs::toDouble(cmd, 2));
        break;
    case ANALYZER_ELEMS_THDMUT:
        a->setElemThDMut(CmdArgs::str(cmd, 0), CmdArgs::toDouble(cmd, 1));
        break;
    case ANALYZER_ELEMS_NO_NEG:
        a->setElemNoNeg(CmdArgs::str(cmd, 0), CmdArgs::toBool(cmd, 1));
        break;
    // The background values: the element's name is read past, as it has
    // always been; the value is the second argument.
    case ANALYZER_ELEMS_BG_DMUT:
        a->elemsConds()->setBGVDMut(CmdArgs::toDouble(cmd, 1));
        break;
    case ANALYZER_ELEMS_BG_DMUTR:
        a->elemsConds()->setBGVDMutR(CmdArgs::toDouble(cmd, 1));
        break;
    case ANALYZER_ELEMS_BG_DE:
        a->elemsConds()->setBGVDE(CmdArgs::toDouble(cmd, 1));
        break;
    case ANALYZER_ELEMS_BG_ROI:
        a->elemsConds()->setBGVROI(CmdArgs::toDouble(cmd, 1));
        break;
    case ANALYZER_ELEMS_BG_NROI:
        a->elemsConds()->setBGVNROI(CmdArgs::toDouble(cmd, 1));
        break;
    case ANALYZER_SET_RA_ENERGY:
        a->setRaEnergy(d);
        break;
    case ANALYZER_SET_RA_FACTOR:
        a->setRaFactor(d);
        break;
    default:
        break;
    }
}
