// Body's slots of the image tools: the image processor's frames and shifts,
// the statistics window, its overlay on the image and its batch commands.
#include "app/Body.h"

#include "analysis/Analyzed2DRes.h"
#include "analysis/Analyzer.h"
#include "batch/CmdArgs.h"
#include "images/SelectDataFiles.h"
#include "tools/ImgProc.h"
#include "tools/Stats.h"
#include "ui_Body.h"
#include "view/ImgDispA.h"

#include <QPainter>

void Body::setupImgProc()
{
    imgProc = new ImgProc(this);
    imgProc->setWindowFlag(Qt::Window);
    connect(ui->ShowImgProc, &QPushButton::clicked, imgProc, &ImgProc::showWindow);
    connect(imgProc, &ImgProc::askGiveData, this, &Body::giveProcData);
    connect(imgProc, &ImgProc::imgShift, this, &Body::setImgShift);
    connect(imgProc, &ImgProc::askClearAllShifts, this, &Body::clearAllShifts);
}

void Body::giveProcData()
{
    const int i = ui->SelectI1Files->currentIndex();
    if (i >= 0 && i < i1Frames.size())
        imgProc->setImage(i1Frames.at(i));
}

void Body::setImgShift(int dx, int dy)
{
    const int i = ui->SelectI1Files->currentIndex();
    if (i < 0 || i >= i1Frames.size())
        return;
    i1Frames.at(i)->shiftX = dx;
    i1Frames.at(i)->shiftY = dy;
}

void Body::clearAllShifts()
{
    for (TiffData *f : std::as_const(i1Frames))
        f->shiftX = f->shiftY = 0;
}

void Body::setupStats()
{
    stats = new Stats(this);
    stats->setWindowFlag(Qt::Window);
    connect(ui->ShowStatistics, &QPushButton::clicked, this, &Body::showStatistics);
    connect(stats, &Stats::rangeSelected, this, &Body::selectedRangeInStats);
    connect(ui->dispA, &ImgDispA::mouseMoved, stats, &Stats::pointedAt);
}

void Body::showStatistics()
{
    stats->showWindow();
    Analyzed2DRes *map = analyzer->selectedMap();
    if (!map)
        return;
    // The area as a run would walk it now; without frames, the map's own.
    AnalyzeCond area = map->cond;
    askAnalyzeCond(area);
    stats->setMap(map, area);
}

void Body::selectedRangeInStats()
{
    statsOverlayWanted = true;
    ui->dispA->update();
}

void Body::drawStatsOverlay(QPainter *p)
{
    const Analyzed2DRes *map = stats->currentMap();
    if (!statsOverlayWanted || !stats->showOverImage() || !map)
        return;
    const MapHistogram &h = stats->histogram();
    AnalyzeCond c = stats->currentArea();
    p->save();
    p->setPen(QColor(255, 200, 200));
    c.restart();
    do {
        const double v = map->valueAt(c.ix, c.iy);
        if (h.selLo <= v && v <= h.selHi)
            p->drawRect(screenBox(c.ix, c.iy, c.binX, c.binY));
    } while (c.next());
    p->restore();
}

void Body::execStatsCmd(EX_CMD_ID id, const CmdLine &cmd)
{
    const bool b = CmdArgs::toBool(cmd, 0);
    switch (id) {
    case STATS_SHOW_WINDOW:
        if (CmdArgs::str(cmd, 0).isEmpty() || b)
            showStatistics();
        else
            stats->hide();
        break;
    case STATS_BINS:
        stats->setBins(CmdArgs::toInt(cmd, 0));
        break;
    case STATS_OVER_IMAGE:
        stats->setOverImage(b);
        break;
    case STATS_IN_SELECTED_REGION:
        stats->setCalcInSelectedRegion(b);
        break;
    default:
        break;
    }
}
