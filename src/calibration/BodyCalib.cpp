// Body's calibration slots: the walk that makes the energy-shift map, its
// statistics, the .emp save and load, the cleaning of the map, the shift
// that a pixel's spectrum is read with, and the batch commands of the
// calibration window.
#include "app/Body.h"

#include "analysis/Analyzed2DRes.h"
#include "analysis/MapRun.h"
#include "batch/CmdArgs.h"
#include "calibration/CalibCtrl.h"
#include "calibration/EMPHeader.h"
#include "calibration/EmpFile.h"
#include "images/TiffData.h"
#include "saving/FileNames.h"
#include "ui_Body.h"
#include "view/ImgDispA.h"
#include "view/XafsView.h"

#include <QDateTime>
#include <QDebug>
#include <QFile>
#include <QThread>

#include <cmath>

void Body::setupCalib()
{
    calibCtrl = new CalibCtrl(this);
    calibCtrl->setWindowFlag(Qt::Window);
    shiftMap = new Analyzed2DRes(QStringLiteral("E-Shift Map"), this);
    connect(ui->ShowCalib, &QPushButton::clicked, calibCtrl, [this]() {
        calibCtrl->show();
        calibCtrl->raise();
    });
    connect(calibCtrl, &CalibCtrl::newStdFileLoaded, this, &Body::newStdFile);
    connect(calibCtrl, &CalibCtrl::execCalibration, this, &Body::execCalibration);
    connect(calibCtrl, &CalibCtrl::saveEMap, this, qOverload<QString>(&Body::saveEMap));
    connect(calibCtrl, &CalibCtrl::loadEMap, this, &Body::loadEMap);
    connect(calibCtrl, &CalibCtrl::clearMap, this, &Body::clearShiftMap);
    // Queued: each point is one turn of the event loop, so that the window
    // stays alive and a stop takes effect between points.
    connect(this, &Body::doCalibNextPoint, this, &Body::calibNextPoint, Qt::QueuedConnection);
    connect(this, &Body::doFinishCalib, this, &Body::finishCalib);
    connect(this, &Body::calibProgress, calibCtrl, &CalibCtrl::progress);
    connect(ui->NormalizeEShift, &QPushButton::clicked, this, &Body::normalizeEShift);
}

int Body::targetLineType() const
{
    return calibCtrl ? calibCtrl->targetLineType() : 1;
}

bool Body::shiftMapFollowsColorBar() const
{
    return ui->ShowShiftMap->isChecked() && shiftMap && shiftMap->hasData();
}

double Body::eShiftAt(int mx, int my) const
{
    if (!shiftMap || mx < 0 || my < 0 || mx >= shiftMap->width() || my >= shiftMap->height())
        return 0.0;
    if (ui->QuadSurfFittedEShift->isChecked())
        return shiftMap->surface.value(mx, my);
    return shiftMap->valueAt(mx, my);
}

void Body::newStdFile()
{
    calibStd = calibCtrl->standard();
    xafsView->setStd(calibStd);
}

QRectF Body::calibArea() const
{
    const ImgDispA *a = ui->dispA;
    return a->hasSelection ? a->selectedArea() : a->viewWindow();
}

void Body::execCalibration()
{
    // The start button is also the stop button: the point in flight is the
    // last, and a stopped run leaves the statistics as they were.
    if (calibrating) {
        calibrating = false;
        endCalibRun();
        return;
    }
    if (i1Frames.isEmpty())
        return;
    calibrating = true;
    qDebug().noquote() << "Start Calibration";
    cursor.setUp(imgW, imgH, ui->aHWidth_->text().toInt(), ui->aVWidth_->text().toInt(), calibArea(), -1, -1);
    shiftMap->setUp(cursor);
    const TiffData *first = i1Frames.first();
    calibCtrl->setRunProperties(int(first->xOffset), int(first->yOffset), int(first->width), int(first->height));
    calibOffX = int(first->xOffset);
    calibOffY = int(first->yOffset);
    deMin = 1e300;
    deMax = -1e300;
    deSum = 0;
    deSqSum = 0;
    nPoints = 0;
    if (!startCalibRun())
        emit doCalibNextPoint();
}

bool Body::startCalibRun()
{
    if (qEnvironmentVariableIntValue("TESSARELLE_SERIAL_RUN"))
        return false;
    PointAnalyses job;
    job.hw = viewHalfWidth();
    job.vw = viewHalfHeight();
    job.lineType = targetLineType();
    job.sElm = suggestElm();
    job.calib = true;
    job.calibInnerP = calibCtrl->innerP();
    job.calibStd = calibStd;
    job.calibDEw = calibCtrl->dEw();
    job.calibDEs = calibCtrl->dEs();
    job.calibMinDEs = calibCtrl->minDEs();
    // The points' spectra are read without a shift: the map is being made.
    std::vector<double> shifts;
    AnalyzeCond c = cursor;
    do
        shifts.push_back(0.0);
    while (c.next());
    calibRun = new MapRun(absorptionInput(), job, cursor, std::move(shifts), QThread::idealThreadCount(), this);
    connect(calibRun, &MapRun::rowsReady, this, &Body::recordCalibRows, Qt::QueuedConnection);
    calibRow = 0;
    calibRun->start();
    return true;
}

void Body::endCalibRun()
{
    delete calibRun;
    calibRun = nullptr;
}

void Body::recordCalibRows()
{
    while (calibrating && calibRun) {
        const double *values = calibRun->readyRow(calibRow);
        if (!values)
            return;
        const std::vector<int> &xs = calibRun->xs();
        const int iy = calibRun->ys()[size_t(calibRow)];
        const qsizetype st = calibRun->job().width;
        for (size_t i = 0; i < xs.size(); ++i)
            recordCalibPoint(xs[i], iy, values[qsizetype(i) * st + calibRun->job().calibAt]);
        calibRun->releaseRow();
        if (iy > cursor.yStart + cursor.binY)
            emit calibProgress(100.0 * double(iy - cursor.yStart) / double(cursor.yEnd - cursor.yStart));
        if (++calibRow >= int(calibRun->ys().size())) {
            endCalibRun();
            // Where the one-at-a-time walk ends.
            while (cursor.next()) {
            }
            emit doFinishCalib();
            return;
        }
    }
}

void Body::recordCalibPoint(int ix, int iy, double dE)
{
    shiftMap->setData(ix, iy, cursor.binX, cursor.binY, dE);
    deMin = std::min(deMin, dE);
    deMax = std::max(deMax, dE);
    deSum += dE;
    ++nPoints;
}

void Body::calibNextPoint()
{
    if (!calibrating)
        return;
    const int ix = cursor.ix;
    const int iy = cursor.iy;
    if (iy > cursor.yStart + cursor.binY)
        emit calibProgress(100.0 * double(iy - cursor.yStart) / double(cursor.yEnd - cursor.yStart));
    // The spectrum is summed over the view's box, while the cell that
    // takes its shift is the analysis box: the two may differ.
    const XafsSpectrum t(absorptionSpectrum(ix, iy, viewHalfWidth(), viewHalfHeight()), QStringLiteral("Body-Calib"),
                         targetLineType(), 0, suggestElm());
    const double dE = calibCtrl->innerP()
                          ? t.searchDE(calibStd, calibCtrl->dEw(), calibCtrl->dEs(), calibCtrl->minDEs())
                          : t.midx - calibStd.midx;
    recordCalibPoint(ix, iy, dE);
    if (cursor.next())
        emit doCalibNextPoint();
    else
        emit doFinishCalib();
}

void Body::finishCalib()
{
    calibrating = false;
    emit calibProgress(100.0);
    deSum /= nPoints;
    calibCtrl->setStatistics(deMin, deMax, deSum);

    // The spread about the mean over the cells of the walk, of the map or of
    // the surface fitted through it: so the surface's sums are solved now.
    shiftMap->surface.solve();
    const bool fitted = ui->QuadSurfFittedEShift->isChecked();
    AnalyzeCond c;
    c.setUp(imgW, imgH, ui->aHWidth_->text().toInt(), ui->aVWidth_->text().toInt(), calibArea(), -1, -1);
    do {
        double v = 0.0;
        if (c.ix >= 0 && c.iy >= 0 && c.ix < shiftMap->width() && c.iy < shiftMap->height())
            v = fitted ? shiftMap->surface.value(c.ix, c.iy) : shiftMap->valueAt(c.ix, c.iy);
        deSqSum += (v - deSum) * (v - deSum);
    } while (c.next());
    calibCtrl->setSigma(std::sqrt(deSqSum / nPoints));

    shiftMap->genImg();
    ui->dispA->update();
    qDebug().noquote() << "End Calibration   ";
}

void Body::clearShiftMap()
{
    shiftMap->clear();
    calibCtrl->setRunProperties(0, 0, 0, 0);
    calibOffX = 0;
    calibOffY = 0;
    ui->dispA->update();
}

void Body::saveEMap(QString fname)
{
    saveEMap(fname, *shiftMap);
}

void Body::saveEMap(QString fname, const Analyzed2DRes &map)
{
    fname = setSuffix(fname, QStringLiteral("emp"), true, false);
    QFile f(fname);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Text)) {
        qDebug().noquote() << "Can not open" << fname;
        return;
    }
    EmpFile::Source src;
    src.recordDate = QDateTime::currentDateTime().toString(QStringLiteral("yy/MM/dd hh:mm:ss.zzz"));
    src.stdEdgeE = calibStd.midx;
    src.spacing = calibCtrl->spacing();
    src.xOffset = calibCtrl->xOffset();
    src.yOffset = calibCtrl->yOffset();
    src.stdFileName = calibCtrl->stdFileName();
    if (!EmpFile::write(f, src, map, imgW, imgH))
        qDebug().noquote() << "Can not write" << fname;
}

void Body::loadEMap(QString fname)
{
    qDebug().noquote() << "loading emap" << fname;
    EMPHeader header;
    loadMap(fname, *shiftMap, header);
}

void Body::loadMap(QString fname, Analyzed2DRes &map, EMPHeader &empH)
{
    QFile f(fname);
    if (!f.open(QIODevice::ReadOnly | QIODevice::Text)) {
        qDebug().noquote() << "Can not open" << fname;
        emit finishBatchExec(CALIB_LOAD_MAP);
        return;
    }
    empH = EmpFile::readHeader(f);
    // The size is checked against the file before anything is allocated.
    if (empH.valid && !EmpFile::bodyFits(empH, f.size() - f.pos()))
        empH.valid = false;
    if (!empH.valid) {
        qDebug().noquote() << "Invalid Energy Map Data File : " + fname;
        emit finishBatchExec(CALIB_LOAD_MAP);
        return;
    }
    calibCtrl->setRunProperties(empH.xOffset, empH.yOffset, empH.width, empH.height);
    calibOffX = empH.xOffset;
    calibOffY = empH.yOffset;
    if (calibCtrl->checkSize() && (empH.width != imgW || empH.height != imgH)) {
        if (i1Frames.isEmpty()) {
            // Without images there is nothing to differ from: the map's size
            // is taken for the image's.
            imgW = empH.width;
            imgH = empH.height;
        } else {
            qDebug().noquote() << QStringLiteral("Loading Energy Map size : %1 x %2 : is not matched to the current "
                                                 "image size : %3 x %4")
                                      .arg(empH.width)
                                      .arg(empH.height)
                                      .arg(imgW)
                                      .arg(imgH);
            empH.valid = false;
            emit finishBatchExec(CALIB_LOAD_MAP);
            return;
        }
    }
    const double e = calibCtrl->edgeEV() > 0 ? calibCtrl->edgeEV() : empH.stdEdgeE;
    qDebug().noquote() << "Start Reading EMP file ";
    EmpFile::readBody(f, empH, e, map);
    f.close();
    map.genImg();
    ui->dispA->update();
    qDebug().noquote() << "End Reading EMP file   ";
    calibCtrl->setEMPFileName(fname);
    emit finishBatchExec(CALIB_LOAD_MAP);
}

void Body::normalizeEShift()
{
    qDebug().noquote() << "Start Normalize E Shift";
    shiftMap->deglitch2(40.0);
    shiftMap->copyProc2Data();
    shiftMap->genImg();
    ui->dispA->update();
    qDebug().noquote() << "End Normalize E Shift  ";
}

void Body::execCalibCmd(EX_CMD_ID id, const CmdLine &cmd)
{
    switch (id) {
    case SELECT_QS_FITTED_ESHIFT:
        ui->QuadSurfFittedEShift->setChecked(CmdArgs::toBool(cmd, 0));
        qDebug().noquote() << "QS Eshift";
        break;
    case CALIB_SHOW_WINDOW:
        calibCtrl->show();
        break;
    case CALIB_LOAD_STD:
        calibCtrl->loadStd(CmdArgs::str(cmd, 0));
        break;
    case CALIB_SET_EDGE_EV:
        calibCtrl->setEdgeEV(CmdArgs::str(cmd, 0));
        break;
    case CALIB_EXEC:
        execCalibration();
        break;
    case CALIB_CLEAR_MAP:
        clearShiftMap();
        break;
    case CALIB_SAVE_MAP:
        saveEMap(CmdArgs::str(cmd, 0));
        break;
    case CALIB_TYPE:
        calibCtrl->setCalibType(CmdArgs::toInt(cmd, 0) == 1);
        break;
    default:
        break;
    }
}
