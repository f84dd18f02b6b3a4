#include "calibration/CalibCtrl.h"

#include "app/Globals.h"
#include "app/Units.h"
#include "images/XafsFileSelect.h"
#include "spectrum/XafsSpectrum.h"
#include "ui_CalibCtrl.h"

#include <QFileDialog>

namespace {

QString g6(double v)
{
    return QString::number(v, 'g', 6);
}

QFileDialog *mapDialog(QWidget *parent, bool save)
{
    auto *d = new QFileDialog(parent);
    d->setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    d->setFileMode(save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    d->setNameFilters({CalibCtrl::tr("Energy Shift Map File (*.emp)"), CalibCtrl::tr("Any Files (* *.*)")});
    d->setDirectory(gDataRoot);
    return d;
}

} // namespace

CalibCtrl::CalibCtrl(QWidget *parent)
    : QFrame(parent)
    , ui(new Ui::CalibCtrl)
    , stdSpectrum(new XafsSpectrum)
{
    ui->setupUi(this);
    for (const Crystal &c : Crystals)
        ui->SelCrystal->addItem(QString::fromLatin1(c.name), c.d);
    ui->SelectStd->setSelectText(tr("Select Std."));
    ui->SelectStd->showUse(false);
    saveDialog = mapDialog(this, true);
    loadDialog = mapDialog(this, false);

    connect(ui->CalibTypeInnerP, &QAbstractButton::toggled, ui->InnerPCtrl, &QWidget::setEnabled);
    ui->InnerPCtrl->setEnabled(ui->CalibTypeInnerP->isChecked());
    connect(ui->SelectStd, &XafsFileSelect::newFile, this, &CalibCtrl::newFile);
    connect(ui->StdBGVictreen, &QAbstractButton::toggled, this, &CalibCtrl::stdBGToggled);
    connect(ui->ExecCalib, &QPushButton::clicked, this, &CalibCtrl::execCalibration);
    connect(ui->ClearMap, &QPushButton::clicked, this, &CalibCtrl::clearMap);
    connect(ui->SaveMap, &QPushButton::clicked, saveDialog, &QWidget::show);
    connect(saveDialog, &QFileDialog::fileSelected, this, &CalibCtrl::saveEMap);
    connect(ui->LoadMap, &QPushButton::clicked, loadDialog, &QWidget::show);
    connect(loadDialog, &QFileDialog::fileSelected, this, &CalibCtrl::loadEShiftMap);
}

CalibCtrl::~CalibCtrl() = default;

QString CalibCtrl::stdFileName() const
{
    return ui->SelectStd->fileName();
}

bool CalibCtrl::innerP() const
{
    return ui->CalibTypeInnerP->isChecked();
}

double CalibCtrl::dEw() const
{
    return ui->DEw->text().toDouble();
}

double CalibCtrl::dEs() const
{
    return ui->DEs->text().toDouble();
}

double CalibCtrl::minDEs() const
{
    return ui->MinDEs->text().toDouble();
}

double CalibCtrl::spacing() const
{
    return ui->SelCrystal->currentData().toDouble();
}

double CalibCtrl::edgeEV() const
{
    return ui->EdgeEeV->text().toDouble();
}

int CalibCtrl::targetLineType() const
{
    return ui->TargetBGVictreen->isChecked() ? 0 : 1;
}

int CalibCtrl::stdLineType() const
{
    return ui->StdBGVictreen->isChecked() ? 0 : 1;
}

bool CalibCtrl::checkSize() const
{
    return ui->CheckSize->isChecked();
}

int CalibCtrl::xOffset() const
{
    return ui->XOffset->text().toInt();
}

int CalibCtrl::yOffset() const
{
    return ui->YOffset->text().toInt();
}

void CalibCtrl::setRunProperties(int xOffset, int yOffset, int width, int height)
{
    ui->XOffset->setText(QString::number(xOffset));
    ui->YOffset->setText(QString::number(yOffset));
    ui->Width->setText(QString::number(width));
    ui->Height->setText(QString::number(height));
}

void CalibCtrl::setStatistics(double deMin, double deMax, double deAvr)
{
    ui->DEMin->setText(g6(deMin));
    ui->DEMax->setText(g6(deMax));
    ui->DEAvr->setText(g6(deAvr));
}

void CalibCtrl::setSigma(double sigma)
{
    ui->DESigma->setText(g6(sigma));
}

void CalibCtrl::setEMPFileName(const QString &fname)
{
    ui->EMPFileName->setText(fname);
}

void CalibCtrl::setCalibType(bool innerP)
{
    (innerP ? ui->CalibTypeInnerP : ui->CalibTypeDMidX)->setChecked(true);
}

void CalibCtrl::newFile(QString fname)
{
    stdSpectrum = std::make_unique<XafsSpectrum>();
    if (!stdSpectrum->read(fname)) {
        ui->SelectStd->clear();
        return;
    }
    stdSpectrum->lineType = stdLineType();
    stdSpectrum->analyze(stdSpectrum->lineType);
    ui->EdgeEeV->setText(g6(stdSpectrum->midx));
    emit newStdFileLoaded();
}

void CalibCtrl::stdBGToggled(bool)
{
    stdSpectrum->lineType = stdLineType();
    stdSpectrum->analyze(stdSpectrum->lineType);
    // Body keeps a copy of the standard: it takes the new analysis too, or
    // the toggle would change nothing that a run reads.
    if (!stdSpectrum->points.isEmpty())
        emit newStdFileLoaded();
}

void CalibCtrl::loadStd(QString fname)
{
    ui->SelectStd->load(fname);
}

void CalibCtrl::setEdgeEV(QString eV)
{
    ui->EdgeEeV->setText(eV);
}

void CalibCtrl::loadEShiftMap(QString fname)
{
    emit loadEMap(fname);
}

void CalibCtrl::progress(double p)
{
    ui->Progress->setText(g6(p));
    repaint();
}
