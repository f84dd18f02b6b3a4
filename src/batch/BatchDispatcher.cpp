#include "batch/BatchDispatcher.h"

#include "batch/ExCmdId.h"
#include "batch/MetaCmd.h"

#include <QDebug>

BatchDispatcher::BatchDispatcher(const QString &dataRoot, QObject *parent)
    : QObject(parent)
{
    setVar(QStringLiteral("$DataRoot$"), dataRoot);
    connect(this, &BatchDispatcher::execNextLineSig, this, &BatchDispatcher::execNextLineSlot,
            Qt::DirectConnection);
}

void BatchDispatcher::doDispatchCmds(const QStringList &cmdList)
{
    qDebug().noquote() << "dispacher :: do dispach cmds" << cmdList.size() << running;
    lines += cmdList;
    if (!running) {
        running = true;
        current = 0;
        loops.clear();
        emit execNextLineSig();
    }
}

void BatchDispatcher::finishBatchExec(int id)
{
    Q_UNUSED(id) // any finish releases the batch
    emit execNextLineSig();
}

void BatchDispatcher::batchStopSlot()
{
    current = 0;
    lines.clear();
    running = false;
    inRem = false;
}

void BatchDispatcher::execNextLineSlot()
{
    // A finish that comes back synchronously (direct connection) while we
    // step is remembered and handled by the loop below instead of recursing.
    if (stepping) {
        resume = true;
        return;
    }
    yielded = false; // this call takes over any pending continuation
    stepping = true;
    int budget = kLinesPerSlice;
    do {
        resume = false;
        while (running && current >= 0 && current < lines.size()) {
            if (execLine())
                break; // an external command is in flight; its finish resumes
            if (--budget <= 0) {
                yielded = true;
                QMetaObject::invokeMethod(this, &BatchDispatcher::resumeStepping, Qt::QueuedConnection);
                break;
            }
        }
    } while (resume && !yielded);
    stepping = false;
}

void BatchDispatcher::resumeStepping()
{
    if (yielded)
        execNextLineSlot();
}

// Executes the line at current. Returns true when an external command was
// handed on, so that stepping must wait for its finish.
bool BatchDispatcher::execLine()
{
    CmdLine cmd = CmdLine::parse(CmdLine::gather(lines, &current));
    const bool external = !cmd.cmd.isEmpty() && isExCmd(cmd.cmd);

    if (!cmd.cmd.isEmpty()) {
        const MetaCmdId meta = metaCmdId(cmd.cmd);
        if (meta == MetaRemEnd)
            inRem = false;
        if (meta == MetaRemStart) {
            inRem = true;
        } else if (!inRem) {
            switch (meta) {
            case MetaFor: doFor(cmd); break;
            case MetaNext: doNext(cmd); break;
            case MetaEcho: doEcho(cmd); break;
            case MetaLet: doLet(cmd); break;
            case MetaEnd: doEnd(); break;
            default: break;
            }
            if (external) {
                substitute(&cmd);
                emit Log(QStringLiteral("%1 : %2\n").arg(cmd.cmd, cmd.args.join(QLatin1Char(' '))));
            }
        }
    }
    ++current;

    if (external) {
        // Handed on inside a comment block too, flagged, so that the main
        // window answers at once and the batch moves on by the usual road.
        emit execCmdSig(cmd, inRem);
        return true;
    }
    return false;
}

void BatchDispatcher::doFor(const CmdLine &cmd)
{
    // The words are scanned again as one line; quotes were already removed,
    // so a :for argument cannot hold a blank. Nothing is substituted here.
    const ForLoop f = ForLoop::fromWords(CmdLine::tokens(cmd.args.join(QLatin1Char(' '))), current);
    for (qsizetype i = loops.size() - 1; i >= 0; --i) {
        if (loops.at(i).name == f.name)
            loops.removeAt(i);
    }
    loops.append(f);
    emit Log(QStringLiteral("for %1 : %2 = %3\n").arg(f.name, f.var, f.current));
}

void BatchDispatcher::doNext(const CmdLine &cmd)
{
    const QString label = cmd.args.value(0);
    for (ForLoop &f : loops) {
        if (f.name != label)
            continue;
        if (f.advance())
            current = f.line; // the caller's increment lands behind :for
        emit Log(QStringLiteral("next %1 : %2 = %3\n").arg(f.name, f.var, f.current));
        return;
    }
    emit Log(QStringLiteral("next %1 : %2 = %3\n").arg(QString(), QString(), QString()));
}

void BatchDispatcher::doLet(const CmdLine &cmd)
{
    setVar(QStringLiteral("$%1$").arg(cmd.args.value(0)), cmd.args.value(1));
}

void BatchDispatcher::doEcho(CmdLine cmd)
{
    substitute(&cmd);
    const QString text = QStringLiteral("echo %1").arg(cmd.args.value(0));
    qDebug().noquote() << text;
    emit Log(text);
}

void BatchDispatcher::doEnd()
{
    current = 0;
    lines.clear();
    running = false;
    emit Log(QStringLiteral("end"));
}

void BatchDispatcher::setVar(const QString &key, const QString &value)
{
    const qsizetype i = varKeys.indexOf(key);
    if (i >= 0) {
        varValues[i] = value;
    } else {
        varKeys.append(key);
        varValues.append(value);
    }
}

// Loop values first, in loop order, then variables in table order; so a
// variable whose value names another variable is expanded only when that
// other one stands later in the table.
void BatchDispatcher::substitute(CmdLine *cmd)
{
    for (QString &arg : cmd->args) {
        for (const ForLoop &f : loops)
            replaceBounded(&arg, f.var, f.current);
        for (qsizetype i = 0; i < varKeys.size(); ++i)
            replaceBounded(&arg, varKeys.at(i), varValues.at(i));
    }
}

void BatchDispatcher::replaceBounded(QString *arg, const QString &key, const QString &value)
{
    // An empty marker (a :for without a variable) occurs everywhere; it
    // replaces nothing.
    if (key.isEmpty())
        return;
    int count = 0;
    qsizetype at;
    while ((at = arg->indexOf(key)) >= 0) {
        if (count == kMaxReplacements) {
            const QString msg = QStringLiteral("substitution of %1 stopped after %2 replacements")
                                    .arg(key).arg(kMaxReplacements);
            qDebug().noquote() << msg;
            emit Log(msg + QLatin1Char('\n'));
            return;
        }
        arg->replace(at, key.size(), value);
        ++count;
    }
}
