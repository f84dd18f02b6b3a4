#include "images/XafsFileSelect.h"

#include "app/Globals.h"
#include "ui_XafsFileSelect.h"

#include <QFileDialog>
#include <QFileInfo>

namespace {
const char *const ValidStyle = "background-color: rgb(255, 255, 224);";
const char *const InvalidStyle = "background-color: rgb(255, 240, 240);";
}

XafsFileSelect::XafsFileSelect(QWidget *parent)
    : QFrame(parent)
    , ui(new Ui::XafsFileSelect)
{
    ui->setupUi(this);
    dialog = new QFileDialog(this);
    dialog->setFileMode(QFileDialog::ExistingFile);
    dialog->setAcceptMode(QFileDialog::AcceptOpen);
    dialog->setNameFilters({ tr("XAFS Data File (*.dat)"), tr("Any Files (* *.*)") });
    dialog->setDirectory(gDataRoot);

    connect(ui->Select, &QPushButton::clicked, dialog, &QWidget::show);
    connect(dialog, &QFileDialog::fileSelected, this, &XafsFileSelect::fileSelected);
    connect(ui->Clear, &QPushButton::clicked, this, &XafsFileSelect::clear);
    connect(ui->Use, &QCheckBox::toggled, this, &XafsFileSelect::changedUse);
}

XafsFileSelect::~XafsFileSelect() = default;

QString XafsFileSelect::fileName() const
{
    return ui->Selected->text();
}

bool XafsFileSelect::isUsed() const
{
    return ui->Use->isChecked();
}

void XafsFileSelect::setTitle(const QString &title)
{
    ui->Use->setText(title);
}

void XafsFileSelect::setSelectText(const QString &text)
{
    ui->Select->setText(text);
}

void XafsFileSelect::load(const QString &fname)
{
    fileSelected(fname);
}

void XafsFileSelect::fileSelected(const QString &fname)
{
    hasFile = true;
    ui->Selected->setText(fname);
    const QString dir = QFileInfo(fname).canonicalPath();
    if (!dir.isEmpty())
        dialog->setDirectory(dir);
    emit newFile(fname);
}

void XafsFileSelect::fileNameValid(bool f)
{
    ui->Selected->setStyleSheet(QLatin1String(f ? ValidStyle : InvalidStyle));
}

void XafsFileSelect::clear()
{
    ui->Selected->clear();
    emit cleared();
}

void XafsFileSelect::setUse(bool f)
{
    ui->Use->setChecked(f);
}

void XafsFileSelect::showUse(bool f)
{
    ui->Use->setVisible(f);
}

void XafsFileSelect::setMaxSelectBW(int max)
{
    ui->Select->setMaximumWidth(max);
}

void XafsFileSelect::setMaxClearBW(int max)
{
    ui->Clear->setMaximumWidth(max);
}
