#pragma once

#include <QString>
#include <QStringList>
#include <QTemporaryDir>

// What one run of the program left behind.
struct E2eResult {
    bool started = false;  // the executable could be started
    bool finished = false; // it ended on its own within the time limit
    bool crashed = false;
    int exitCode = -1;     // valid when finished and not crashed
    QString debug;         // the debug stream (standard error)
    QString dir;           // the working folder of the run
};

// Runs the built program ($TESSARELLE_EXE) offscreen in a temporary folder,
// with a configuration and a batch file written there, and a time limit.
class E2eRun
{
public:
    E2eRun();

    // The executable under test; empty when the environment does not name one.
    static QString executable();

    bool isValid() const { return tmp.isValid(); }
    QString dir() const { return tmp.path(); }

    // Writes text into the run folder; returns the file's path.
    QString writeFile(const QString &name, const QString &text) const;

    // Runs the program with these arguments (in the run folder); a program
    // that is still running at the limit is killed and reported unfinished.
    E2eResult run(const QStringList &args, int timeoutMs) const;

    // Writes config.cfg (each of configBatch as a `batch` line, then
    // extraConfig as they stand) and script.bat, and runs
    // "-e -c config.cfg -b script.bat -x".
    E2eResult runBatch(const QStringList &configBatch, const QStringList &batchLines, int timeoutMs,
                       const QStringList &extraConfig = {}) const;

private:
    QTemporaryDir tmp;
};
