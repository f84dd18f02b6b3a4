#include "analysis/AElemsConds.h"

#include "ui_AElemsConds.h"

AElemsConds::AElemsConds(QWidget *parent)
    : QFrame(parent)
    , ui(new Ui::AElemsConds)
{
    ui->setupUi(this);
}

AElemsConds::~AElemsConds() = default;

double AElemsConds::bgvDMut() const
{
    return ui->BGVDMut->text().toDouble();
}

double AElemsConds::bgvDE() const
{
    return ui->BGVDE->text().toDouble();
}

double AElemsConds::bgvROI() const
{
    return ui->BGVROI->text().toDouble();
}

void AElemsConds::setBGVDMut(double v)
{
    ui->BGVDMut->setText(QString::number(v, 'g', 6));
}

void AElemsConds::setBGVDMutR(double v)
{
    ui->BGVDMutR->setText(QString::number(v, 'g', 6));
}

void AElemsConds::setBGVDE(double v)
{
    ui->BGVDE->setText(QString::number(v, 'g', 6));
}

void AElemsConds::setBGVROI(double v)
{
    ui->BGVROI->setText(QString::number(v, 'g', 6));
}

void AElemsConds::setBGVNROI(double v)
{
    ui->BGVNROI->setText(QString::number(v, 'g', 6));
}
