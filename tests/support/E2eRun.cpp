#include "support/E2eRun.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>

E2eRun::E2eRun() = default;

QString E2eRun::executable()
{
    return QProcessEnvironment::systemEnvironment().value(QStringLiteral("TESSARELLE_EXE"));
}

bool E2eRun::haveExecutable()
{
    const QString exe = executable();
    return !exe.isEmpty() && QFileInfo(exe).isExecutable();
}

bool E2eRun::linesInOrder(const QString &debug, const QStringList &expected, const QStringList &absent,
                          QString *why)
{
    const QStringList lines = debug.split(QLatin1Char('\n'));
    qsizetype at = 0;
    for (const QString &e : expected) {
        while (at < lines.size() && lines.at(at).trimmed() != e && lines.at(at) != e)
            ++at;
        if (at == lines.size()) {
            *why = QStringLiteral("missing or out of order: %1\n%2").arg(e, debug);
            return false;
        }
        ++at;
    }
    for (const QString &a : absent) {
        for (const QString &l : lines) {
            if (l.trimmed().startsWith(a)) {
                *why = QStringLiteral("unexpected: %1\n%2").arg(a, debug);
                return false;
            }
        }
    }
    return true;
}

QString E2eRun::writeFile(const QString &name, const QString &text) const
{
    const QString path = QDir(tmp.path()).filePath(name);
    QFile f(path);
    if (f.open(QIODevice::WriteOnly | QIODevice::Text))
        f.write(text.toUtf8());
    return path;
}

E2eResult E2eRun::run(const QStringList &args, int timeoutMs) const
{
    E2eResult r;
    r.dir = tmp.path();
    QProcess p;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    // Window places stay in the run folder: runs neither see the user's
    // nor each other's.
    env.insert(QStringLiteral("XDG_CONFIG_HOME"), tmp.path());
    p.setProcessEnvironment(env);
    p.setWorkingDirectory(tmp.path());
    p.setStandardOutputFile(QProcess::nullDevice());
    p.start(executable(), args);
    r.started = p.waitForStarted(10000);
    if (!r.started)
        return r;
    r.finished = p.waitForFinished(timeoutMs);
    if (!r.finished) {
        p.kill();
        p.waitForFinished(5000);
    }
    r.crashed = r.finished && p.exitStatus() == QProcess::CrashExit;
    if (r.finished && !r.crashed)
        r.exitCode = p.exitCode();
    r.debug = QString::fromUtf8(p.readAllStandardError());
    return r;
}

E2eResult E2eRun::runBatch(const QStringList &configBatch, const QStringList &batchLines, int timeoutMs,
                           const QStringList &extraConfig) const
{
    QString cfg;
    for (const QString &l : configBatch)
        cfg += QStringLiteral("batch ") + l + QLatin1Char('\n');
    for (const QString &l : extraConfig)
        cfg += l + QLatin1Char('\n');
    writeFile(QStringLiteral("config.cfg"), cfg);
    writeFile(QStringLiteral("script.bat"), batchLines.join(QLatin1Char('\n')) + QLatin1Char('\n'));
    return run({QStringLiteral("-e"), QStringLiteral("-c"), QStringLiteral("config.cfg"), QStringLiteral("-b"),
                QStringLiteral("script.bat"), QStringLiteral("-x")},
               timeoutMs);
}
