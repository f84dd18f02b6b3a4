#include "images/EOFSetup.h"

#include "app/Globals.h"
#include "ui_EOFSetup.h"

#include <QDebug>
#include <QFileDialog>
#include <QRegularExpression>

namespace {
double fieldValue(const QLineEdit *edit)
{
    return edit->text().toDouble();
}

QString numText(double v)
{
    return QString::number(v, 'g', 6);
}

const char *const PlainStyle = "";
const char *const BadPatternStyle = "background-color: rgb(255, 192, 192);";
}

EOFSetup::EOFSetup(QWidget *parent)
    : QFrame(parent)
    , ui(new Ui::EOFSetup)
{
    ui->setupUi(this);
    ui->PatternList->addItems(EngByName::knownPatterns());

    refDialog = new QFileDialog(this);
    refDialog->setFileMode(QFileDialog::ExistingFile);
    refDialog->setAcceptMode(QFileDialog::AcceptOpen);
    refDialog->setNameFilters({ tr("XAFS Data File (*.dat)"), tr("Any Files (* *.*)") });
    refDialog->setDirectory(gDataRoot);
    connect(ui->SelRefFile, &QPushButton::clicked, refDialog, &QWidget::show);
    connect(refDialog, &QFileDialog::fileSelected, this, &EOFSetup::setEngByRef);

    // A typed pattern counts once the user is done with it: following each
    // keystroke would add every half-typed expression to the list. Setters
    // and the list apply theirs at once.
    connect(ui->Pattern, &QLineEdit::editingFinished, this, &EOFSetup::newPattern);
    connect(ui->PatternList, qOverload<int>(&QComboBox::activated), this, &EOFSetup::patternChosen);
    setEngByNameRegExp(EngByName::knownPatterns().first());

    // The recipe fields are linked on the user's edits only: following every
    // text change, a new end would move the delta, which would move the end
    // again, without end. Setters (and so batches) set one field alone.
    connect(ui->Start, &QLineEdit::textEdited, this, &EOFSetup::newStart);
    connect(ui->Delta, &QLineEdit::textEdited, this, &EOFSetup::newDelta);
    connect(ui->End, &QLineEdit::textEdited, this, &EOFSetup::newEnd);
    connect(ui->NumOfPoints, &QLineEdit::textEdited, this, &EOFSetup::newNumOfPoints);

    connect(ui->sourceGroup, &QButtonGroup::buttonToggled, this, &EOFSetup::sourceToggled);
}

EOFSetup::~EOFSetup() = default;

void EOFSetup::setTitle(const QString &t)
{
    title = t;
    setWindowTitle(tr("Energy of Files Setup: %1").arg(t));
}

EngOfFiles EOFSetup::settings() const
{
    EngOfFiles s;
    s.fromFileName = ui->FromFileName->isChecked();
    s.fromRefFile = ui->FromRefFile->isChecked();
    s.fromFileNum = ui->FromFileNum->isChecked();
    s.byName.pattern = ui->Pattern->text();
    s.byName.factor = fieldValue(ui->Factor);
    s.correspondFromEnd = ui->CorrespondFromEnd->isChecked();
    s.calc.start = fieldValue(ui->Start);
    s.calc.delta = fieldValue(ui->Delta);
    s.calc.end = fieldValue(ui->End);
    s.calc.num = fieldValue(ui->NumOfPoints);
    s.calc.unit = ui->DisplayUnit->currentIndex();
    s.calc.evenInEnergy = ui->EvenInEnergy->isChecked();
    return s;
}

double EOFSetup::energyOf(const QString &fileName, int fNo, int totalFiles) const
{
    return settings().energyOf(fileName, fNo, totalFiles, ref, units.D);
}

void EOFSetup::setEngByName(bool f)
{
    ui->FromFileName->setChecked(f);
}

void EOFSetup::setEngByCalc(bool f)
{
    ui->FromFileNum->setChecked(f);
}

void EOFSetup::setEngCalcStart(double start)
{
    ui->Start->setText(QString::number(start));
}

void EOFSetup::setEngCalcDelta(double delta)
{
    ui->Delta->setText(QString::number(delta));
}

void EOFSetup::setEngCalcEnd(double end)
{
    ui->End->setText(QString::number(end));
}

void EOFSetup::setEngCalcNum(int num)
{
    ui->NumOfPoints->setText(QString::number(num));
}

void EOFSetup::setEvenInEng(bool f)
{
    ui->EvenInEnergy->setChecked(f);
}

void EOFSetup::setEvenInDeg(bool f)
{
    ui->EvenInAngle->setChecked(f);
}

void EOFSetup::setDispUnit(int idx)
{
    if (idx >= 0 && idx < ui->DisplayUnit->count())
        ui->DisplayUnit->setCurrentIndex(idx);
}

void EOFSetup::setEngByNameRegExp(const QString &pattern)
{
    ui->Pattern->setText(pattern);
    newPattern();
}

void EOFSetup::setEngByNameFactor(double factor)
{
    ui->Factor->setText(QString::number(factor));
}

void EOFSetup::setEngByRef(const QString &fname)
{
    ui->FromRefFile->setChecked(!fname.isEmpty());
    ui->RefFilePath->setText(fname);
    if (!fname.isEmpty())
        readRefFile(fname);
}

bool EOFSetup::readRefFile(const QString &fname)
{
    if (!ref.read(fname, units.D))
        return false;
    ui->RefFilePath->setText(fname);
    const QVector<double> &e = ref.energies;
    if (e.isEmpty()) {
        qDebug().noquote() << QStringLiteral("%1: no energies in ref file %2").arg(title, fname);
    } else {
        qDebug().noquote() << QStringLiteral("%1: %2 energies from ref file %3, %4 - %5 eV")
                                  .arg(title)
                                  .arg(e.size())
                                  .arg(fname)
                                  .arg(e.first(), 0, 'f', 3)
                                  .arg(e.last(), 0, 'f', 3);
    }
    return true;
}

void EOFSetup::newPattern()
{
    const QString pattern = ui->Pattern->text();
    ui->Factor->setText(numText(EngByName::factorFor(pattern)));
    int idx = ui->PatternList->findText(pattern, Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (idx < 0) {
        ui->PatternList->addItem(pattern);
        idx = ui->PatternList->count() - 1;
    }
    ui->PatternList->setCurrentIndex(idx);
    // A pattern that is no regular expression matches nothing: every frame
    // would get its number, so the field shows it.
    const bool valid = QRegularExpression(pattern).isValid();
    ui->Pattern->setStyleSheet(QLatin1String(valid ? PlainStyle : BadPatternStyle));
}

void EOFSetup::patternChosen(int idx)
{
    if (idx >= 0)
        setEngByNameRegExp(ui->PatternList->itemText(idx));
}

void EOFSetup::sourceToggled(QAbstractButton *, bool checked)
{
    // A switch unchecks one button and checks another; the second tells.
    if (!checked)
        return;
    static const char *const names[] = { "file name", "reference file", "file number" };
    qDebug().noquote() << QStringLiteral("%1: energy from %2").arg(title, QLatin1String(names[settings().source()]));
}

void EOFSetup::writeEnd()
{
    ui->End->setText(numText(EngCalc::endOf(fieldValue(ui->Start), fieldValue(ui->Delta),
                                            fieldValue(ui->NumOfPoints))));
}

void EOFSetup::writeDelta()
{
    ui->Delta->setText(numText(EngCalc::deltaOf(fieldValue(ui->Start), fieldValue(ui->End),
                                                fieldValue(ui->NumOfPoints))));
}

void EOFSetup::newStart()
{
    writeEnd();
}

void EOFSetup::newDelta()
{
    writeEnd();
}

void EOFSetup::newEnd()
{
    writeDelta();
}

void EOFSetup::newNumOfPoints()
{
    writeDelta();
}
