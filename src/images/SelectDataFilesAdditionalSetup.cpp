#include "images/SelectDataFilesAdditionalSetup.h"

#include "app/Globals.h"
#include "ui_SelectDataFilesAdditionalSetup.h"

#include <QFileDialog>

SelectDataFilesAdditionalSetup::SelectDataFilesAdditionalSetup(QWidget *parent)
    : QFrame(parent)
    , ui(new Ui::SelectDataFilesAdditionalSetup)
{
    ui->setupUi(this);

    errDialog = new QFileDialog(this);
    errDialog->setFileMode(QFileDialog::ExistingFile);
    errDialog->setAcceptMode(QFileDialog::AcceptOpen);
    errDialog->setDirectory(gDataRoot);

    connect(ui->SetDA, &QPushButton::clicked, this, &SelectDataFilesAdditionalSetup::setDarkArea);
    connect(ui->UpDateDA, &QPushButton::clicked, this, &SelectDataFilesAdditionalSetup::updateDarkArea);
    connect(ui->ClearDA, &QPushButton::clicked, this, &SelectDataFilesAdditionalSetup::clearDarkArea);
    connect(ui->ShowLatest, &QCheckBox::toggled, this, &SelectDataFilesAdditionalSetup::showLatestToggled);
    connect(ui->SelectErrPsDef, &QPushButton::clicked, errDialog, &QWidget::show);
    connect(errDialog, &QFileDialog::fileSelected, this, &SelectDataFilesAdditionalSetup::loadErrPs);
    connect(ui->UseErrPs, &QCheckBox::toggled, this, &SelectDataFilesAdditionalSetup::useErrPsToggled);

    const QString fname = gConfig.value(QStringLiteral("ErrPoints"));
    if (!fname.isEmpty())
        loadErrPs(fname);
}

SelectDataFilesAdditionalSetup::~SelectDataFilesAdditionalSetup() = default;

bool SelectDataFilesAdditionalSetup::showLatest() const
{
    return ui->ShowLatest->isChecked();
}

bool SelectDataFilesAdditionalSetup::ignoreLive() const
{
    return ui->IgnoreLiveFiles->isChecked();
}

QString SelectDataFilesAdditionalSetup::h5ImagePath() const
{
    return ui->H5ImagePath->text().trimmed();
}

QString SelectDataFilesAdditionalSetup::h5EnergyPath() const
{
    return ui->H5EnergyPath->text().trimmed();
}

QString SelectDataFilesAdditionalSetup::darkAreaText(double x0, double y0, double w, double h)
{
    return QStringLiteral("(%1,%2)-(%3,%4)").arg(x0).arg(y0).arg(x0 + w).arg(y0 + h);
}

void SelectDataFilesAdditionalSetup::darkArea(const QString &area)
{
    ui->DarkArea->setText(area);
}

void SelectDataFilesAdditionalSetup::setShowLatest(bool f)
{
    ui->ShowLatest->setChecked(f);
}

bool SelectDataFilesAdditionalSetup::loadErrPs(const QString &fname)
{
    if (!errPs.load(fname, false)) {
        ui->ErrPsFile->clear();
        return false;
    }
    errPs.inUse = ui->UseErrPs->isChecked();
    ui->ErrPsFile->setText(fname);
    return true;
}

void SelectDataFilesAdditionalSetup::useErrPsToggled(bool f)
{
    errPs.inUse = f;
}
