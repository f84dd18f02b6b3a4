#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QObject>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

// Runs the program headless in dir on batch (with a configuration whose own
// batch ends at once) and returns the seconds between the first debug line
// containing `from` and the first one after it containing `to`, or -1.
// stopAtTo ends the program there; otherwise it runs the batch to its end.
// serial sets TESSARELLE_SERIAL_RUN, the one-spectrum-at-a-time run.
inline double timedProgramRun(const QString &exe, const QString &dir, const QStringList &batch, const char *from,
                              const char *to, bool stopAtTo, bool serial = false)
{
    QFile cfg(dir + "/bench.cfg");
    cfg.open(QIODevice::WriteOnly);
    cfg.write("batch :end\n");
    cfg.close();
    QFile bat(dir + "/bench.bat");
    bat.open(QIODevice::WriteOnly);
    bat.write(batch.join('\n').toLatin1() + "\n");
    bat.close();
    QProcess p;
    p.setWorkingDirectory(dir);
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("QT_QPA_PLATFORM", "offscreen");
    if (serial)
        env.insert("TESSARELLE_SERIAL_RUN", "1");
    p.setProcessEnvironment(env);
    QElapsedTimer t;
    qint64 start = -1, end = -1;
    QByteArray pending;
    QObject::connect(&p, &QProcess::readyReadStandardError, [&] {
        pending += p.readAllStandardError();
        int nl;
        while ((nl = pending.indexOf('\n')) >= 0) {
            const QByteArray line = pending.left(nl);
            pending.remove(0, nl + 1);
            if (start < 0 && line.contains(from)) {
                start = t.nsecsElapsed();
            } else if (start >= 0 && end < 0 && line.contains(to)) {
                end = t.nsecsElapsed();
                if (stopAtTo)
                    p.kill();
            }
        }
    });
    t.start();
    p.start(exe, {"-e", "-c", dir + "/bench.cfg", "-b", dir + "/bench.bat", "-x"});
    p.waitForFinished(-1);
    QCoreApplication::processEvents();
    return start >= 0 && end > start ? double(end - start) / 1e9 : -1;
}
