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
    // True when executable() names a program that can be run.
    static bool haveExecutable();

    // Checks that each of expected is a whole line of debug (as it stands or
    // trimmed), in this order, and that no line starts with any of absent; otherwise
    // returns false with the reason and the stream in *why.
    static bool linesInOrder(const QString &debug, const QStringList &expected, const QStringList &absent,
                             QString *why);

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

// For initTestCase(): skips the whole test when there is no program to run.
#define E2E_REQUIRE_EXECUTABLE()                                                                                      \
    do {                                                                                                               \
        if (!E2eRun::haveExecutable())                                                                                 \
            QSKIP("TESSARELLE_EXE does not name the built program");                                                   \
    } while (false)

// Checks that a run ended on its own (or, when mustFinish is false, that it
// was still running at its limit) without crashing, with exit code 0.
#define E2E_VERIFY_RUN(r, mustFinish)                                                                                  \
    do {                                                                                                               \
        QVERIFY((r).started);                                                                                          \
        QVERIFY2(!(r).crashed, qPrintable((r).debug));                                                                 \
        QVERIFY2((r).finished == (mustFinish), qPrintable((r).debug));                                                 \
        if (mustFinish)                                                                                                \
            QVERIFY2((r).exitCode == 0, qPrintable(QStringLiteral("exit code %1\n").arg((r).exitCode) + (r).debug.right(700))); \
    } while (false)

// Checks the debug stream of a run against expected and absent lines.
#define E2E_VERIFY_LINES(debug, expected, absent)                                                                      \
    do {                                                                                                               \
        QString e2eWhy;                                                                                                \
        QVERIFY2(E2eRun::linesInOrder((debug), (expected), (absent), &e2eWhy), qPrintable(e2eWhy));                    \
    } while (false)
