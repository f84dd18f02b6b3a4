// Body's saving slots: the map on display as 16-bit TIFF (with a picture of
// the colour bar beside it) or as text, and the save configuration window.
#include "app/Body.h"

#include "analysis/Analyzed2DRes.h"
#include "analysis/Analyzer.h"
#include "app/Globals.h"
#include "images/TiffWriter.h"
#include "batch/CmdArgs.h"
#include "saving/FileNames.h"
#include "saving/SaveDataCfg.h"
#include "ui_Body.h"
#include "view/ColorBar.h"

#include <QDebug>
#include <QFileInfo>

namespace {

// <absolute dir>/<complete base>-<ext>.<suffix>: the given suffix never
// survives, the number of the map row stands in the name.
QString numberedName(const QString &fname, int ext, const char *suffix)
{
    const QFileInfo fi(fname);
    return fi.absolutePath() + QLatin1Char('/')
           + QStringLiteral("%1-%2.%3").arg(fi.completeBaseName()).arg(ext).arg(QLatin1String(suffix));
}

} // namespace

void Body::setupSaving()
{
    saveDataCfg = new SaveDataCfg(this);
    saveDataCfg->setWindowFlag(Qt::Window);
    connect(ui->SaveDataCfgB, &QPushButton::clicked, saveDataCfg, &QWidget::show);
    connect(ui->SaveData, &QPushButton::clicked, this, &Body::showSaveDataDialog);
    setupSavePictures();
}

void Body::showSaveDataDialog()
{
    if (saveDataCfg->saveAsTiff())
        askSaveName({tr("Tiff File (*.tif)"), tr("Any Files (* *.*)")}, &Body::saveData);
    else
        askSaveName({tr("Data File (*.dat)"), tr("Any Files (* *.*)")}, &Body::saveData);
}

void Body::saveData(QString fname)
{
    const int ext = analyzer->selectedRefRow();
    if (!saveDataCfg->saveAsTiff()) {
        qDebug().noquote() << "selected text";
        saveDataAsText(fname, ext);
        return;
    }
    qDebug().noquote() << "selected tiff";
    saveDataAsTiff(fname, ext);
    // The picture format follows the suffix; a failed write goes unnoticed,
    // as for every picture the program saves.
    ui->CBar->cbar.save(withSuffix(withSuffix(fname, QString::number(ext)), QStringLiteral("-cBar")));
}

void Body::saveDataAsTiff(QString fname, int ext)
{
    const QString name = numberedName(fname, ext, "tif");
    qDebug().noquote() << "saveDataAsTiff";
    Analyzed2DRes *map = analyzer->selectedMap();
    if (!map)
        return;
    const bool asAnalyzed = saveDataCfg->tiffAsAnalyzed();
    std::vector<quint16> buf = map->tiffDataForSave(saveDataCfg->tiffFixedScale(), saveDataCfg->tiffScaleMin(),
                                                    saveDataCfg->tiffScaleMax(), asAnalyzed);
    if (buf.empty())
        return;
    const AnalyzeCond &c = map->cond;
    qint64 w = map->width();
    qint64 h = map->height();
    if (asAnalyzed) {
        w = (qint64(c.xEnd) - 1 - (qint64(c.binX) + c.xStart)) / qMax(1, c.xStep) + 1;
        h = (qint64(c.yEnd) - 1 - (qint64(c.binY) + c.yStart)) / qMax(1, c.yStep) + 1;
    }
    if (w < 1 || h < 1)
        return;
    // The picture never reads past the values: a walk of more points than
    // the map has pixels is cut, one of fewer is padded with zeros.
    if (quint64(w) * quint64(h) > buf.size())
        buf.resize(std::size_t(w * h), 0);
    if (!writeTiff16(name, quint32(w), quint32(h), buf.data()))
        qDebug().noquote() << "Can't write" << name;
}

void Body::saveDataAsText(QString fname, int ext)
{
    const QString name = numberedName(fname, ext, "dat");
    Analyzed2DRes *map = analyzer->selectedMap();
    if (!map)
        return;
    const QString written = map->writeText(name, saveDataCfg->commaSeparated(), saveDataCfg->xyVal());
    if (!written.isEmpty() && !fname.isEmpty())
        announceSaved(QStringLiteral("SavedDataAsText"), written);
}

void Body::execSaveCmd(EX_CMD_ID id, const CmdLine &cmd)
{
    SaveDataCfg *c = saveDataCfg;
    switch (id) {
    case SAVE_IMAGE:
        saveImage(CmdArgs::str(cmd, 0));
        break;
    case SAVE_IMAGE_W_NUM:
        saveImageWNum(CmdArgs::str(cmd, 0), CmdArgs::str(cmd, 1));
        break;
    case SAVE_ALL_IMAGES:
        saveAllImages(CmdArgs::str(cmd, 0));
        break;
    case SAVE_DATA:
        saveData(CmdArgs::str(cmd, 0));
        break;
    case SAVE_DATA_AS_TIFF:
        saveDataAsTiff(CmdArgs::str(cmd, 0), analyzer->selectedRefRow());
        break;
    case SAVEDATACFG_SHOW_WINDOW:
        c->show();
        break;
    case SAVEDATACFG_SAVE_AS_TIFF:
        qDebug().noquote() << "setting save as tiff";
        c->setSaveAsTiff();
        break;
    case SAVEDATACFG_SAVE_AS_TEXT:
        qDebug().noquote() << "setting save as text";
        c->setSaveAsText();
        break;
    case SAVEDATACFG_TIFF_FIX_SCALE:
        c->setSaveTiffScaleFixed(CmdArgs::toBool(cmd, 0));
        break;
    case SAVEDATACFG_TIFF_SCALE_MIN:
        c->setSaveTiffScaleMin(CmdArgs::toDouble(cmd, 0));
        break;
    case SAVEDATACFG_TIFF_SCALE_MAX:
        c->setSaveTiffScaleMax(CmdArgs::toDouble(cmd, 0));
        break;
    case SAVEDATACFG_TIFF_AS_ANALYZED:
        c->setSaveTiffAsAnalyzed(CmdArgs::toBool(cmd, 0));
        break;
    case SAVEDATACFG_TEXT_AS_CSV:
        c->setSaveTextAsCSV();
        break;
    case SAVEDATACFG_TEXT_AS_SSV:
        c->setSaveTextAsSSV();
        break;
    case SAVEDATACFG_TEXT_AS_XYZ:
        c->setSaveTextAsXYVal();
        break;
    case SAVEDATACFG_TEXT_AS_VALS:
        c->setSaveTextAsValValVal();
        break;
    default:
        break;
    }
}
