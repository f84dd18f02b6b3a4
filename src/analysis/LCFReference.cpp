#include "analysis/LCFReference.h"

#include "analysis/Analyzed2DRes.h"
#include "images/XafsFileSelect.h"
#include "ui_LCFReference.h"

LCFReference::LCFReference(QWidget *parent)
    : QFrame(parent)
    , ui(new Ui::LCFReference)
{
    ui->setupUi(this);
    maps << new Analyzed2DRes(QStringLiteral("LCF Ref 1"), this) << new Analyzed2DRes(QStringLiteral("LCF Ref 2"), this);
    ui->XFS->showUse(true);
    ui->XFS->setTitle(tr("Use"));
    // The file name needs the room more than the buttons do.
    ui->XFS->setMaxSelectBW(100);
    ui->XFS->setMaxClearBW(50);
    spectrum.xShiftOn = true;
    editedDeltaE();
    ratio = 0;
    connect(ui->XFS, &XafsFileSelect::newFile, this, &LCFReference::newFile);
    connect(ui->XFS, &XafsFileSelect::changedUse, this, &LCFReference::changedUse);
    connect(ui->DeltaE, &QLineEdit::editingFinished, this, &LCFReference::editedDeltaE);
    connect(ui->IsVictreen, &QCheckBox::toggled, this, &LCFReference::toggledIsVictreen);
}

LCFReference::~LCFReference() = default;

XafsFileSelect *LCFReference::fileSelect() const
{
    return ui->XFS;
}

QAbstractButton *LCFReference::showButton() const
{
    return ui->Show;
}

bool LCFReference::inUse() const
{
    return ui->XFS->isUsed() && ui->XFS->hasFile;
}

bool LCFReference::isVictreen() const
{
    return ui->IsVictreen->isChecked();
}

double LCFReference::deltaE() const
{
    return ui->DeltaE->text().toDouble();
}

void LCFReference::newFile(QString fname)
{
    if (!spectrum.load(fname)) {
        ui->XFS->fileNameValid(false);
        return;
    }
    ui->XFS->fileNameValid(true);
    spectrum.analyze(isVictreen() ? 0 : 1);
    ui->DMut->setText(QString::number(spectrum.dMut, 'g', 6));
    ui->MidE->setText(QString::number(spectrum.midx, 'g', 6));
    emit newFileSelected();
}

void LCFReference::changedUse(bool f)
{
    use = f;
}

void LCFReference::setDeltaE(double dE)
{
    spectrum.eOffset = dE;
    spectrum.xShift = dE;
}

void LCFReference::editedDeltaE()
{
    setDeltaE(deltaE());
    emit newDeltaE();
}

void LCFReference::toggledIsVictreen(bool f)
{
    spectrum.analyze(f ? 0 : 1);
}

void LCFReference::setStd(bool useIt, double dE, QString fname, QString isVic)
{
    bool vic = true;
    if (!isVic.isEmpty()) {
        bool ok = false;
        const int n = isVic.toInt(&ok);
        vic = isVic.toUpper() == QLatin1String("VIC") || (ok && n > 0);
    }
    ui->IsVictreen->setChecked(vic);
    ui->XFS->load(fname);
    ui->XFS->setUse(useIt);
    use = useIt;
    setDeltaE(dE);
    ui->DeltaE->setText(QString::number(dE, 'g', 6));
}

void LCFReference::setRatio(double r)
{
    ratio = r;
    ui->R->setText(QString::asprintf("%5.2f", r * 100));
}

void LCFReference::setAmp(double a)
{
    ui->T->setText(QString::number(a, 'g', 6));
}
