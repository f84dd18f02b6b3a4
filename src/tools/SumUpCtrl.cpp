#include "tools/SumUpCtrl.h"

#include "ui_SumUpCtrl.h"

SumUpCtrl::SumUpCtrl(QWidget *parent)
    : QFrame(parent)
    , ui(new Ui::SumUpCtrl)
{
    ui->setupUi(this);
    connect(ui->AddSumUp, &QPushButton::clicked, this, &SumUpCtrl::add);
    connect(ui->DelSumUp, &QPushButton::clicked, this, &SumUpCtrl::del);
}

SumUpCtrl::~SumUpCtrl() = default;

void SumUpCtrl::add()
{
    const int from = ui->SumUpFrom->text().toInt();
    const int to = ui->SumUpTo->text().toInt();
    sumUps.append({from, to});
    ui->SumUps->addItem(QStringLiteral("%1-%2").arg(from).arg(to));
}

void SumUpCtrl::del()
{
    const int i = ui->SumUps->currentIndex();
    if (ui->SumUps->count() == 0 || i < 0)
        return;
    if (i > 0)
        ui->SumUps->setCurrentIndex(i - 1);
    ui->SumUps->removeItem(i);
}
