#include "analysis/ElemCtrl.h"

#include "analysis/Analyzed2DRes.h"
#include "spectrum/ElmEdges.h"
#include "ui_ElemCtrl.h"

namespace {
const char *const MapSuffix[ElemCtrl::MapKinds] = {"Elem Ctrl 0",  "Elem Ctrl N",   "Elem Ctrl MP",  "Elem Ctrl MM",
                                                   "Elem Ctrl DE", "Elem Ctrl ROI", "Elem Ctrl NROI"};

QString g6(double v)
{
    return QString::number(v, 'g', 6);
}
} // namespace

ElemCtrl::ElemCtrl(QWidget *parent)
    : QFrame(parent)
    , ui(new Ui::ElemCtrl)
{
    ui->setupUi(this);
    for (const char *s : MapSuffix)
        maps << new Analyzed2DRes(QString::fromLatin1(s), this);
    connect(ui->StdRatio, &QLineEdit::editingFinished, this, &ElemCtrl::newStdRatio);
}

ElemCtrl::~ElemCtrl() = default;

void ElemCtrl::setElement(int zNo, int edgeNo, const QString &title)
{
    z = zNo;
    edge = edgeNo;
    ui->Name->setText(title);
    for (int k = 0; k < MapKinds; ++k)
        maps[k]->name = QStringLiteral("%1 %2").arg(title, QString::fromLatin1(MapSuffix[k]));
    ui->No->setText(QString::number(z));
    double kev = 0;
    if (z >= 0 && z < elmEdgeRows && edge >= 0 && edge < 5)
        kev = elmEdges[z].edge[edge];
    ui->Eng->setText(g6(kev * 1000.0));
}

QString ElemCtrl::name() const
{
    return ui->Name->text();
}

double ElemCtrl::eng() const
{
    return ui->Eng->text().toDouble();
}

double ElemCtrl::prePostDE() const
{
    return ui->PrePostDE->text().toDouble();
}

double ElemCtrl::roiS() const
{
    return ui->ROIs->text().toDouble();
}

double ElemCtrl::roiE() const
{
    return ui->ROIe->text().toDouble();
}

double ElemCtrl::thDMut() const
{
    return ui->ThDMut->text().toDouble();
}

bool ElemCtrl::noNeg() const
{
    return ui->NoNeg->isChecked();
}

bool ElemCtrl::isUsed() const
{
    return ui->Use->isChecked();
}

QAbstractButton *ElemCtrl::mainTargetButton() const
{
    return ui->MainTarget;
}

QAbstractButton *ElemCtrl::showButton() const
{
    return ui->Show;
}

void ElemCtrl::setResults(double dmut, double ratio, double mutP, double mutM, double de, double roi, double nroi)
{
    dmutV = dmut;
    ratioV = ratio;
    mutPlus = mutP;
    mutMinus = mutM;
    ui->DMuT->setText(g6(dmut));
    ui->Ratio->setText(g6(ratio));
    ui->DE->setText(g6(de));
    ui->ROI->setText(g6(roi).left(5));
    ui->NROI->setText(g6(nroi).left(5));
}

void ElemCtrl::newStdRatio()
{
    setStdRatio(ui->StdRatio->text().toDouble());
}

void ElemCtrl::setStdRatio(double r)
{
    stdRatio = r;
    ui->StdRatio->setText(g6(r));
}

void ElemCtrl::setROI(double s, double e)
{
    ui->ROIs->setText(g6(s));
    ui->ROIe->setText(g6(e));
}

void ElemCtrl::setThDMut(double th)
{
    ui->ThDMut->setText(g6(th));
}

void ElemCtrl::setPrePostDE(double dE)
{
    ui->PrePostDE->setText(g6(dE));
}

void ElemCtrl::setNoNeg(bool f)
{
    ui->NoNeg->setChecked(f);
}

void ElemCtrl::setUse(bool f)
{
    ui->Use->setChecked(f);
}
