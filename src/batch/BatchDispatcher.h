#pragma once

#include "batch/CmdLine.h"
#include "batch/ForLoop.h"

#include <QList>
#include <QObject>
#include <QStringList>

// Runs a batch one line at a time on its own thread. Meta-commands (:for,
// :next, :let, :echo, :rem_start, :rem_end, :end) run here; any other known
// word is handed to the main window by execCmdSig, and the batch waits until
// finishBatchExec says that the command has ended. One external command is
// in flight at a time.
//
// Meta lines run in a loop inside execNextLineSlot rather than by the
// dispatcher calling itself once per line, so a long run of them does not
// grow the stack; every few thousand lines the loop yields to the event loop
// so that a stop can arrive even in a loop without external commands.
class BatchDispatcher : public QObject
{
    Q_OBJECT
public:
    // dataRoot is the value of the configuration key DataRoot; it becomes the
    // variable $DataRoot$.
    explicit BatchDispatcher(const QString &dataRoot, QObject *parent = nullptr);

    // Lines handled in one go before the dispatcher lets its event loop run.
    static constexpr int kLinesPerSlice = 4096;
    // Replacements of one marker in one argument before substitution gives up
    // (a value that contains its own key would never end).
    static constexpr int kMaxReplacements = 1000;

signals:
    void execNextLineSig();
    void execCmdSig(CmdLine cmd, bool inRem);
    void Log(const QString &msg);

public slots:
    void doDispatchCmds(const QStringList &cmdList);
    void execNextLineSlot();
    void batchStopSlot();
    void finishBatchExec(int id);

private slots:
    void resumeStepping();

private:
    bool execLine();
    void doFor(const CmdLine &cmd);
    void doNext(const CmdLine &cmd);
    void doLet(const CmdLine &cmd);
    void doEcho(CmdLine cmd);
    void doEnd();
    void substitute(CmdLine *cmd);
    void replaceBounded(QString *arg, const QString &key, const QString &value);
    void setVar(const QString &key, const QString &value);

    bool running = false;
    bool inRem = false;
    QStringList lines;
    int current = 0;
    // Variables in order of first definition; keys unique, case-sensitive.
    QStringList varKeys;
    QStringList varValues;
    QList<ForLoop> loops;

    bool stepping = false;  // inside the stepping loop
    bool resume = false;    // a finish arrived while stepping
    bool yielded = false;   // a queued continuation is pending
};
