#include "images/SelectDataFiles.h"

#include "images/EOFSetup.h"
#include "images/SelectDataFilesAdditionalSetup.h"
#include "images/_FileDialog.h"
#include "ui_SelectDataFiles.h"

namespace {
const char *const ExpOkStyle = "background-color: rgb(255, 255, 255);";
const char *const ExpBadStyle = "background-color: rgb(255, 192, 192);";
}

SelectDataFiles::SelectDataFiles(QWidget *parent)
    : QFrame(parent)
    , ui(new Ui::SelectDataFiles)
{
    ui->setupUi(this);
    // The two setup windows are windows of their own, deleted with the panel.
    dialog = new _FileDialog(this, false);
    eof = new EOFSetup(this);
    eof->setWindowFlag(Qt::Window);
    addSetup = new SelectDataFilesAdditionalSetup(this);
    addSetup->setWindowFlag(Qt::Window);

    connect(ui->Select, &QPushButton::clicked, dialog, &QWidget::show);
    connect(dialog, &QFileDialog::filesSelected, this, &SelectDataFiles::dialogFilesSelected);
    connect(ui->Clear, &QPushButton::clicked, this, &SelectDataFiles::clear);
    connect(ui->EngOfFilesSetup, &QPushButton::clicked, eof, &QWidget::show);
    connect(ui->AdditionalSetup, &QPushButton::clicked, addSetup, &QWidget::show);
    connect(ui->Selected, qOverload<int>(&QComboBox::currentIndexChanged), this,
            &SelectDataFiles::newImageSelected);

    connect(addSetup, &SelectDataFilesAdditionalSetup::setDarkArea, this, &SelectDataFiles::setDarkArea);
    connect(addSetup, &SelectDataFilesAdditionalSetup::updateDarkArea, this, &SelectDataFiles::updateDarkArea);
    connect(addSetup, &SelectDataFilesAdditionalSetup::clearDarkArea, this, &SelectDataFiles::clearDarkArea);
}

SelectDataFiles::~SelectDataFiles() = default;

void SelectDataFiles::setTitle(const QString &title)
{
    ui->Title->setText(title);
    eof->setTitle(title);
}

QString SelectDataFiles::title() const
{
    return ui->Title->text();
}

int SelectDataFiles::skip() const
{
    const int s = ui->Skip->text().toInt();
    return s < 2 ? 1 : s;
}

int SelectDataFiles::cutFirst() const
{
    return qMax(0, ui->CutFirst->text().toInt());
}

int SelectDataFiles::cutLast() const
{
    return qMax(0, ui->CutLast->text().toInt());
}

bool SelectDataFiles::ignoreLive() const
{
    return addSetup->ignoreLive();
}

QString SelectDataFiles::h5ImagePath() const
{
    return addSetup->h5ImagePath();
}

QString SelectDataFiles::h5EnergyPath() const
{
    return addSetup->h5EnergyPath();
}

bool SelectDataFiles::showLatest() const
{
    return addSetup->showLatest();
}

bool SelectDataFiles::loadNewFiles() const
{
    return ui->LoadNewFiles->isChecked();
}

double SelectDataFiles::expTimeMS() const
{
    return ui->ExpTime->text().toDouble();
}

ErrPoints *SelectDataFiles::errPs() const
{
    return &addSetup->errPs;
}

int SelectDataFiles::count() const
{
    return ui->Selected->count();
}

int SelectDataFiles::currentIndex() const
{
    return ui->Selected->currentIndex();
}

double SelectDataFiles::energyAt(int idx) const
{
    if (idx < 0 || idx >= ui->Selected->count())
        return 0;
    return ui->Selected->itemData(idx).toDouble();
}

double SelectDataFiles::energyOf(const QString &fileName, int fNo, int totalFiles) const
{
    return eof->energyOf(fileName, fNo, totalFiles);
}

double SelectDataFiles::registerFrame(const QString &fileName, int fNo, int totalFiles,
                                      std::optional<double> fileEnergy)
{
    const double e = fileEnergy ? *fileEnergy : eof->energyOf(fileName, fNo, totalFiles);
    ui->Selected->addItem(fileName, e);
    ui->Count->setText(QString::number(ui->Selected->count()));
    return e;
}

void SelectDataFiles::setSkip(int skip)
{
    ui->Skip->setText(QString::number(skip));
}

void SelectDataFiles::setCutF(int cutF)
{
    ui->CutFirst->setText(QString::number(cutF));
}

void SelectDataFiles::setCutL(int cutL)
{
    ui->CutLast->setText(QString::number(cutL));
}

void SelectDataFiles::setShowLatest(bool f)
{
    addSetup->setShowLatest(f);
}

void SelectDataFiles::setEngByName(bool f)
{
    eof->setEngByName(f);
}

void SelectDataFiles::setEngByCalc(bool f)
{
    eof->setEngByCalc(f);
}

void SelectDataFiles::setEngCalcStart(double start)
{
    eof->setEngCalcStart(start);
}

void SelectDataFiles::setEngCalcDelta(double delta)
{
    eof->setEngCalcDelta(delta);
}

void SelectDataFiles::setEngCalcEnd(double end)
{
    eof->setEngCalcEnd(end);
}

void SelectDataFiles::setEngCalcNum(int num)
{
    eof->setEngCalcNum(num);
}

void SelectDataFiles::setEvenInEng(bool f)
{
    eof->setEvenInEng(f);
}

void SelectDataFiles::setEvenInDeg(bool f)
{
    eof->setEvenInDeg(f);
}

void SelectDataFiles::setDispUnit(int idx)
{
    eof->setDispUnit(idx);
}

void SelectDataFiles::setEngByNameRegExp(const QString &pattern)
{
    eof->setEngByNameRegExp(pattern);
}

void SelectDataFiles::setEngByNameFactor(double factor)
{
    eof->setEngByNameFactor(factor);
}

void SelectDataFiles::setEngByRef(const QString &fname)
{
    eof->setEngByRef(fname);
}

void SelectDataFiles::setExpTimeMS(double ms, bool ok)
{
    ui->ExpTime->setText(QString::number(ms, 'g', 6));
    ui->ExpTime->setStyleSheet(QLatin1String(ok ? ExpOkStyle : ExpBadStyle));
}

void SelectDataFiles::darkArea(const QString &area)
{
    addSetup->darkArea(area);
}

void SelectDataFiles::prev()
{
    select(ui->Selected->currentIndex() - 1);
}

void SelectDataFiles::next()
{
    select(ui->Selected->currentIndex() + 1);
}

void SelectDataFiles::select(int idx)
{
    if (idx >= 0 && idx < ui->Selected->count())
        ui->Selected->setCurrentIndex(idx);
}

void SelectDataFiles::clearFiles()
{
    ui->Selected->clear();
    ui->Count->setText(QStringLiteral("0"));
}

void SelectDataFiles::newImageSelected(int i)
{
    if (addSetup->showLatest())
        emit currentIndexChanged(i);
}

void SelectDataFiles::dialogFilesSelected(const QStringList &files)
{
    emit filesSelected(files, ui->LoadNewFiles->isChecked());
}
