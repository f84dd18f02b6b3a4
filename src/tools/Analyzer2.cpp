#include "tools/Analyzer2.h"

#include "ui_Analyzer2.h"

#include <QDebug>

Analyzer2::Analyzer2(QWidget *parent)
    : QFrame(parent)
    , ui(new Ui::Analyzer2)
{
    ui->setupUi(this);
    connect(ui->CollectQInfo, &QPushButton::clicked, this, &Analyzer2::startCollectQInfo);
    connect(ui->DarkCheck, &QPushButton::clicked, this, &Analyzer2::askedDarkCheck);
    connect(ui->ExecFourierA, &QPushButton::clicked, this, &Analyzer2::askedFourierA);
    connect(ui->UseErrPMask, &QAbstractButton::toggled, this, &Analyzer2::useErrPMaskToggled);
}

Analyzer2::~Analyzer2() = default;

double Analyzer2::darkTh() const
{
    return ui->DarkTh->text().toDouble();
}

double Analyzer2::histgMax() const
{
    return ui->HistgMax->text().toDouble();
}

int Analyzer2::histgBins() const
{
    return ui->HistgBins->text().toInt();
}

void Analyzer2::doCollectQInfo(AnalyzeCond)
{
    // The collection itself was never written; the wiring stands for it.
    qDebug().noquote() << "do collect Q Info";
}

void Analyzer2::setUseErrPMaskEnabled(bool f)
{
    ui->UseErrPMask->setEnabled(f);
}

void Analyzer2::setUseErrPMaskChecked(bool f)
{
    ui->UseErrPMask->setChecked(f);
}

bool Analyzer2::useErrPMask()
{
    return ui->UseErrPMask->isChecked();
}

void Analyzer2::setErrPMaskFileName(QString fname)
{
    ui->ErrPMaskFileName->setText(fname);
}
