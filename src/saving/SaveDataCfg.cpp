#include "saving/SaveDataCfg.h"

#include "ui_SaveDataCfg.h"

SaveDataCfg::SaveDataCfg(QWidget *parent)
    : QFrame(parent)
    , ui(new Ui::SaveDataCfg)
{
    ui->setupUi(this);
    connect(ui->SaveAsTiff, &QAbstractButton::toggled, this, &SaveDataCfg::toggledSaveAs);
    toggledSaveAs(ui->SaveAsTiff->isChecked());
}

SaveDataCfg::~SaveDataCfg() = default;

bool SaveDataCfg::saveAsTiff() const
{
    return ui->SaveAsTiff->isChecked();
}

bool SaveDataCfg::tiffFixedScale() const
{
    return ui->TiffFixedScale->isChecked();
}

double SaveDataCfg::tiffScaleMin() const
{
    return ui->TiffScaleMin->text().toDouble();
}

double SaveDataCfg::tiffScaleMax() const
{
    return ui->TiffScaleMax->text().toDouble();
}

bool SaveDataCfg::tiffAsAnalyzed() const
{
    return ui->TiffAsAnalyzed->isChecked();
}

bool SaveDataCfg::commaSeparated() const
{
    return ui->DataCommaSeparated->isChecked();
}

bool SaveDataCfg::xyVal() const
{
    return ui->DataXYVal->isChecked();
}

void SaveDataCfg::toggledSaveAs(bool f)
{
    ui->TiffCfg->setEnabled(f);
    ui->TextCfg->setEnabled(!f);
}

void SaveDataCfg::setSaveAsTiff()
{
    ui->SaveAsTiff->setChecked(true);
}

void SaveDataCfg::setSaveAsText()
{
    ui->SaveAsTextData->setChecked(true);
}

void SaveDataCfg::setSaveTiffScaleFixed(bool f)
{
    ui->TiffFixedScale->setChecked(f);
}

void SaveDataCfg::setSaveTiffScaleMin(double min)
{
    ui->TiffScaleMin->setText(QString::number(min, 'g', 6));
}

void SaveDataCfg::setSaveTiffScaleMax(double max)
{
    ui->TiffScaleMax->setText(QString::number(max, 'g', 6));
}

void SaveDataCfg::setSaveTiffAsAnalyzed(bool f)
{
    ui->TiffAsAnalyzed->setChecked(f);
}

void SaveDataCfg::setSaveTextAsCSV()
{
    ui->DataCommaSeparated->setChecked(true);
}

void SaveDataCfg::setSaveTextAsSSV()
{
    ui->DataSpaceSeparated->setChecked(true);
}

void SaveDataCfg::setSaveTextAsXYVal()
{
    ui->DataXYVal->setChecked(true);
}

void SaveDataCfg::setSaveTextAsValValVal()
{
    ui->DataValValVal->setChecked(true);
}
