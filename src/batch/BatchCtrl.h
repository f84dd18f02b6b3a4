#pragma once

#include "batch/CmdLine.h"

#include <QMainWindow>
#include <QStringList>

#include <memory>

class BatchDispatcher;
class QFileDialog;

namespace Ui {
class BatchCtrl;
}

// The batch editor: holds the text of a batch, loads and saves it, hands it
// to the dispatcher and shows the dispatcher's log.
class BatchCtrl : public QMainWindow
{
    Q_OBJECT
public:
    // batchRoot is the directory both file dialogs start in.
    explicit BatchCtrl(const QString &batchRoot, QWidget *parent = nullptr);
    ~BatchCtrl() override;

    // Lines the progress log keeps; older ones drop off its top, so that a
    // batch looping for hours does not grow the program without end.
    static constexpr int kMaxLogLines = 10000;

    // Connects Stop, doDispatchCmds and the dispatcher's Log.
    void setDispatcher(BatchDispatcher *dispatcher);

    // Passes lines to the dispatcher unchanged, without ":end" (the
    // configured start-up lines take this road).
    void dispatchCmds(const QStringList &cmdLines);

    QString batchText() const;

signals:
    void doDispatchCmds(QStringList cmdLines);
    void batchStop();

public slots:
    void execCmdsSlot();
    void execBatchSlot();
    void clear();
    void clearLog();
    void save(const QString &fname);
    void load(const QString &fname);
    bool setBatchFile(const QString &fname);
    void Log(const QString &LogMsg);
    void showCmdErr(const CmdLine &cmd);

private:
    std::unique_ptr<Ui::BatchCtrl> ui;
    QFileDialog *loadDialog = nullptr;
    QFileDialog *saveDialog = nullptr;
    QStringList cmdLines;
    BatchDispatcher *dispatcher = nullptr;
};
