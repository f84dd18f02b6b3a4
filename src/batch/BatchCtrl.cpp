#include "batch/BatchCtrl.h"

#include "batch/BatchDispatcher.h"
#include "ui_BatchCtrl.h"

#include <QCoreApplication>
#include <QDebug>
#include <QFile>
#include <QFileDialog>
#include <QTextCursor>
#include <QTextStream>

namespace {

QFileDialog *makeDialog(QWidget *parent, const QString &dir, QFileDialog::AcceptMode mode)
{
    auto *d = new QFileDialog(parent);
    d->setDirectory(dir);
    d->setNameFilters({QCoreApplication::translate("BatchCtrl", "Batch File (*.bat)"),
                       QCoreApplication::translate("BatchCtrl", "Any Files (* *.*)")});
    d->setAcceptMode(mode);
    d->setFileMode(mode == QFileDialog::AcceptSave ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    return d;
}

} // namespace

BatchCtrl::BatchCtrl(const QString &batchRoot, QWidget *parent)
    : QMainWindow(parent), ui(std::make_unique<Ui::BatchCtrl>())
{
    ui->setupUi(this);
    ui->BatchLogs->setMaximumBlockCount(kMaxLogLines);
    loadDialog = makeDialog(this, batchRoot, QFileDialog::AcceptOpen);
    saveDialog = makeDialog(this, batchRoot, QFileDialog::AcceptSave);

    connect(ui->Load, &QPushButton::clicked, loadDialog, &QFileDialog::show);
    connect(ui->Save, &QPushButton::clicked, saveDialog, &QFileDialog::show);
    connect(loadDialog, &QFileDialog::fileSelected, this, &BatchCtrl::load);
    connect(saveDialog, &QFileDialog::fileSelected, this, &BatchCtrl::save);
    connect(ui->Clear, &QPushButton::clicked, this, &BatchCtrl::clear);
    connect(ui->ClearLog, &QPushButton::clicked, this, &BatchCtrl::clearLog);
    connect(ui->Exec, &QPushButton::clicked, this, &BatchCtrl::execCmdsSlot);
    connect(ui->Stop, &QPushButton::clicked, this, &BatchCtrl::batchStop);
}

BatchCtrl::~BatchCtrl() = default;

void BatchCtrl::setDispatcher(BatchDispatcher *d)
{
    dispatcher = d;
    connect(ui->Stop, &QPushButton::clicked, d, &BatchDispatcher::batchStopSlot);
    connect(this, &BatchCtrl::doDispatchCmds, d, &BatchDispatcher::doDispatchCmds);
    connect(d, &BatchDispatcher::Log, this, &BatchCtrl::Log);
}

void BatchCtrl::dispatchCmds(const QStringList &lines)
{
    emit doDispatchCmds(lines);
}

QString BatchCtrl::batchText() const
{
    return ui->BatchCmds->toPlainText();
}

void BatchCtrl::execCmdsSlot()
{
    // Empty parts are kept so that line numbers match the editor; ":end"
    // brings a run from the window back to idle.
    cmdLines = ui->BatchCmds->toPlainText().split(QLatin1Char('\n'), Qt::KeepEmptyParts);
    cmdLines.append(QStringLiteral(":end"));
    emit doDispatchCmds(cmdLines);
}

void BatchCtrl::execBatchSlot()
{
    execCmdsSlot();
}

void BatchCtrl::clear()
{
    ui->BatchCmds->clear();
}

void BatchCtrl::clearLog()
{
    ui->BatchLogs->clear();
}

void BatchCtrl::save(const QString &fname)
{
    QFile f(fname);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Text))
        return;
    QTextStream out(&f);
    out << ui->BatchCmds->toPlainText();
}

void BatchCtrl::load(const QString &fname)
{
    setBatchFile(fname);
}

bool BatchCtrl::setBatchFile(const QString &fname)
{
    QFile f(fname);
    if (!f.open(QIODevice::ReadOnly | QIODevice::Text))
        return false;
    QTextStream in(&f);
    QString text;
    while (!in.atEnd()) {
        text += in.readLine();
        text += QLatin1Char('\n');
    }
    ui->BatchCmds->clear();
    ui->BatchCmds->insertPlainText(text);
    return true;
}

void BatchCtrl::Log(const QString &msg)
{
    QTextCursor c = ui->BatchLogs->textCursor();
    c.movePosition(QTextCursor::End);
    c.insertText(msg);
    ui->BatchLogs->setTextCursor(c);
}

void BatchCtrl::showCmdErr(const CmdLine &cmd)
{
    qDebug().noquote() << "cmd" << cmd.line;
    Log(QStringLiteral("Err: %1\n").arg(cmd.line));
}
