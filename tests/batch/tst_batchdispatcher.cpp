#include "batch/BatchDispatcher.h"

#include <QtTest>

#include <functional>

// Drives a dispatcher and records what it says, in order: "L:<log text>" for
// each Log, "X:<cmd> <args...> rem=<0|1>" for each external command.
struct Recorder {
    BatchDispatcher d{QStringLiteral("/data/root")};
    QStringList events;
    bool autoFinish = true; // answer every command as the main window would, queued

    Recorder()
    {
        QObject::connect(&d, &BatchDispatcher::Log, [this](const QString &m) { events << "L:" + m; });
        QObject::connect(&d, &BatchDispatcher::execCmdSig, [this](const CmdLine &c, bool inRem) {
            events << QStringLiteral("X:%1 rem=%2").arg((QStringList{c.cmd} + c.args).join(' ')).arg(int(inRem));
            if (autoFinish)
                QMetaObject::invokeMethod(&d, "finishBatchExec", Qt::QueuedConnection, Q_ARG(int, 0));
        });
    }

    bool ended() const { return !events.isEmpty() && events.last() == QLatin1String("L:end"); }
};

class TestBatchDispatcher : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { qRegisterMetaType<CmdLine>("CmdLine"); }
    void interpreter_data();
    void interpreter();
    void sequence_data();
    void sequence();
    void longLoopOnSmallStack();
};

// What a for/next loop logs: the :for line with the first value, then per
// later value its :next line, with the body's events (%1: the value) after
// each; the finishing :next logs the last value once more.
static QString loop(const QString &label, const QString &marker, const QStringList &values, const QString &body)
{
    QStringList ev;
    for (int k = 0; k < values.size(); ++k) {
        ev << QStringLiteral("L:%1 %2 : %3 = %4\n").arg(k ? "next" : "for", label, marker, values[k]);
        if (!body.isEmpty())
            ev << QString(body).replace("%1", values[k]).split('|');
    }
    ev << QStringLiteral("L:next %1 : %2 = %3\n").arg(label, marker, values.last());
    return ev.join('|');
}

// Batch lines and the events they cause, each joined with '|'.
void TestBatchDispatcher::interpreter_data()
{
    QTest::addColumn<QString>("batch");
    QTest::addColumn<QString>("events");
    const QString echo = "L:echo %1";
    const QString end = "|L:end";
    QTest::newRow("ascending") << ":for i $i$ 1 3 1|:echo $i$|:next i|:end" << loop("i", "$i$", {"1", "2", "3"}, echo) + end;
    // start >= end descends
    QTest::newRow("descending") << ":for i $i$ 3 1|:echo $i$|:next i|:end" << loop("i", "$i$", {"3", "2", "1"}, echo) + end;
    QTest::newRow("single pass") << ":for i $i$ 2 2|:echo $i$|:next i|:end" << loop("i", "$i$", {"2"}, echo) + end;
    QTest::newRow("step 0 is 1") << ":for i $i$ 1 3 0|:echo $i$|:next i|:end" << loop("i", "$i$", {"1", "2", "3"}, echo) + end;
    // the finishing :next logs the overshooting value 3 too
    QTest::newRow("step 2 overshoots") << ":for i $i$ 1 4 2|:next i|:end" << "L:for i : $i$ = 1\n|L:next i : $i$ = 3\n|L:next i : $i$ = 3\n" + end;
    QTest::newRow("zero padding") << ":for n @ 009 011|:echo f@|:next n|:end" << loop("n", "@", {"009", "010", "011"}, "L:echo f%1") + end;
    // 8 + 92 = 100 is one digit longer than "08": the whole "08" stays in front.
    // The next pass reads "08100" as 8100, which is past the end.
    QTest::newRow("padding quirk") << ":for n @ 08 100 92|:echo @|:next n|:end" << loop("n", "@", {"08", "08100"}, echo) + end;
    // The finished record stays: a second :next falls through, its value is still substituted.
    QTest::newRow("second next after finish") << ":for i X 1 2|:echo X|:next i|:next i|:echo X|:end"
                                              << loop("i", "X", {"1", "2"}, echo) + "|L:next i : X = 2\n|L:echo 2" + end;
    // A later loop under a finished loop's label replaces its record and runs its full range.
    QTest::newRow("label used again") << ":for i X 1 2|:next i|:for i Y 5 7|:echo Y|:next i|:end"
                                      << loop("i", "X", {"1", "2"}, "") + "|" + loop("i", "Y", {"5", "6", "7"}, echo) + end;
    QTest::newRow("unknown label") << ":next zz|:end" << "L:next  :  = \n" + end;
    QTest::newRow("labels case-sensitive") << ":FOR i X 1 2|:NEXT I|:End" << "L:for i : X = 1\n|L:next  :  = \n" + end;
    QTest::newRow("meta words any case") << ":For i $i$ 1 2|:ECHO $i$|:Next i|:END" << loop("i", "$i$", {"1", "2"}, echo) + end;
    const QString inner = loop("n", "N", {"1", "2"}, "L:echo @@%1").replace("@@", "%1"); // %1%1: outer, inner
    QTest::newRow("nested loop restarts") << ":for o O 1 2|:for n N 1 2|:echo ON|:next n|:next o|:end"
                                          << loop("o", "O", {"1", "2"}, inner) + end;
    // $a$ -> "$b$x"; $b$ stands later in the table, so it is expanded too.
    QTest::newRow("later variable expands") << ":let a $b$x|:let b B|:echo $a$|:end" << "L:echo Bx" + end;
    // $b$ stands earlier than $a$: its pass is over when $a$ brings it in.
    QTest::newRow("earlier variable stays") << ":let b B|:let a $b$y|:echo $a$|:end" << "L:echo $b$y" + end;
    QTest::newRow("loop value wins") << ":let i V|:for l $i$ 5 5|:echo $i$|:end" << "L:for l : $i$ = 5\n|L:echo 5" + end;
    QTest::newRow("loop marker without dollars") << ":for a i 1 1|:echo inline|:end" << "L:for a : i = 1\n|L:echo 1nl1ne" + end;
    QTest::newRow("let overwrites") << ":let x 1|:let x 2|:echo [$x$]|:end" << "L:echo [2]" + end;
    QTest::newRow("let missing value") << ":let x|:echo [$x$]|:end" << "L:echo []" + end;
    QTest::newRow("echo first argument only") << ":echo a b|:echo \"a  b\"|:end" << "L:echo a|L:echo a  b" + end;
    QTest::newRow("DataRoot variable") << ":echo $DataRoot$/x|:end" << "L:echo /data/root/x" + end;
    // A value that holds its own key would never end: 1000 replacements, then it gives up.
    QTest::newRow("self reference bounded") << ":let a x$a$|:echo $a$|:end"
                                            << "L:substitution of $a$ stopped after 1000 replacements\n|L:echo "
            + QString(1000, 'x') + "$a$" + end;
    QTest::newRow("rem block inert") << ":rem_start|:echo hidden|:let q 1|:end|:for i i 1 2|:REM_END|:echo $q$|:end"
                                     << "L:echo $q$" + end;
    QTest::newRow("end drops the rest") << ":echo a|:end|:echo b" << "L:echo a" + end;
    QTest::newRow("blank comment unknown") << "|  |# :echo no|frob x|:bogus|:echo yes # tail|:end" << "L:echo yes" + end;
    // The :for line index is its last joined line; :next returns behind it.
    QTest::newRow("continued for line") << ":for i X 1 \\|2|:echo \"a \\|X\"|:next i|:end" << loop("i", "X", {"1", "2"}, "L:echo a %1") + end;
    QTest::newRow("empty window run") << "|:end" << "L:end";
    // External commands: logged after substitution, then handed on.
    QTest::newRow("external substituted") << ":let f img|save_image $f$_$DataRoot$.tif|:end"
                                          << "L:save_image : img_/data/root.tif\n|X:save_image img_/data/root.tif rem=0" + end;
    QTest::newRow("command word not rewritten") << ":for i set 7 7|set_band_w set|:end"
                                                << "L:for i : set = 7\n|L:set_band_w : 7\n|X:set_band_w 7 rem=0" + end;
    QTest::newRow("hash arguments") << "load_I1_files a b # note|:end"
                                    << "L:load_I1_files : a b # note\n|X:load_I1_files a b # note rem=0" + end;
    QTest::newRow("external any case") << "ANALYZER_SHOW_WINDOW|:end" << "L:ANALYZER_SHOW_WINDOW : \n|X:ANALYZER_SHOW_WINDOW rem=0" + end;
    // Inside a block the command is handed on flagged, neither logged nor substituted.
    QTest::newRow("external in rem") << ":let v 1|:rem_start|set_band_w $v$|:rem_end|set_band_w $v$|:end"
                                     << "X:set_band_w $v$ rem=1|L:set_band_w : 1\n|X:set_band_w 1 rem=0" + end;
    QTest::newRow("loop around external") << ":for i $i$ 1 2|seek_image $i$|:next i|:end"
                                          << loop("i", "$i$", {"1", "2"}, "L:seek_image : %1\n|X:seek_image %1 rem=0") + end;
}

void TestBatchDispatcher::interpreter()
{
    QFETCH(QString, batch);
    Recorder r;
    r.d.doDispatchCmds(batch.split('|'));
    QTRY_VERIFY_WITH_TIMEOUT(r.ended(), 5000);
    QTEST(r.events.join('|'), "events");
}

// Steps without automatic finishes: "> lines" runs a batch, "finish N" and
// "stop" call the dispatcher, "= events" checks what happened since the last check.
void TestBatchDispatcher::sequence_data()
{
    QTest::addColumn<QStringList>("steps");
    // the line after an external command runs only after its finish; a stray
    // finish on an idle dispatcher does nothing
    QTest::newRow("waits for finish") << QStringList{"> set_band_w 1|:echo mid|set_band_w 2|:end", "= L:set_band_w : 1\n|X:set_band_w 1 rem=0",
        "finish 4", "= L:echo mid|L:set_band_w : 2\n|X:set_band_w 2 rem=0", "finish 0", "= L:end", "finish 0", "= "};
    // Stop clears lines, loops and the comment state, but not the variables;
    // the finish of the command under way then finds nothing to do.
    QTest::newRow("stop keeps variables") << QStringList{"> :let v kept|:for i X 1 3|:rem_start|set_band_w X",
        "= L:for i : X = 1\n|X:set_band_w X rem=1", "stop", "finish 0", "= ", "> :echo $v$/X|:next i|:end",
        "= L:echo kept/X|L:next  :  = \n|L:end"};
    // while a batch runs, a second one is appended and dropped at the first ":end"
    QTest::newRow("second run appended") << QStringList{"> set_band_w 1|:end", "> set_band_w 2|:end",
        "= L:set_band_w : 1\n|X:set_band_w 1 rem=0", "finish 0", "finish 0", "= L:end"};
    // without ":end" the batch stays running: the next one waits for a finish
    QTest::newRow("no end keeps running") << QStringList{"> :echo a", "> :echo b|:end", "= L:echo a", "finish 0", "= L:echo b|L:end"};
    // an unclosed block swallows ":end" and lasts across batches
    QTest::newRow("rem survives end") << QStringList{"> :rem_start|:end", "= ", "> :echo swallowed|:rem_end|:echo seen|:end", "= ",
        "finish 0", "= L:echo seen|L:end"};
}

void TestBatchDispatcher::sequence()
{
    QFETCH(QStringList, steps);
    Recorder r;
    r.autoFinish = false;
    for (const QString &step : steps) {
        if (step.startsWith("> "))
            r.d.doDispatchCmds(step.mid(2).split('|'));
        else if (step.startsWith("finish "))
            r.d.finishBatchExec(step.mid(7).toInt());
        else if (step == "stop")
            r.d.batchStopSlot();
        QCoreApplication::processEvents();
        if (step.startsWith("= ")) {
            QCOMPARE(r.events.join('|'), step.mid(2));
            r.events.clear();
        }
    }
}

// A loop of 100000 passes around a meta-command on a thread whose stack is
// far too small for one frame per line; Stop must also get through while
// such a loop runs without any external command.
void TestBatchDispatcher::longLoopOnSmallStack()
{
    QThread thread;
    thread.setObjectName("batch test");
    thread.setStackSize(256 * 1024);
    auto *d = new BatchDispatcher(QString());
    d->moveToThread(&thread);
    connect(&thread, &QThread::finished, d, &QObject::deleteLater);

    // Counted on the dispatcher's own thread, so that a flood of log lines
    // does not pile up in this thread's event queue.
    std::atomic<int> logs{0};
    std::atomic<bool> ended{false};
    connect(
        d, &BatchDispatcher::Log, d,
        [&](const QString &m) {
            ++logs;
            if (m == QLatin1String("end"))
                ended = true;
        },
        Qt::DirectConnection);
    // 100000 "echo" lines in the debug stream say nothing here.
    const QtMessageHandler previous = qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    auto restore = qScopeGuard([previous] { qInstallMessageHandler(previous); });
    thread.start();

    const int passes = 100000;
    QMetaObject::invokeMethod(d, "doDispatchCmds", Qt::QueuedConnection,
                              Q_ARG(QStringList, (QStringList{":for i $i$ 1 100000", ":echo $i$", ":next i", ":end"})));
    QTRY_VERIFY_WITH_TIMEOUT(ended.load(), 60000);
    // for + one echo and one next per pass + end
    QCOMPARE(logs.load(), 1 + 2 * passes + 1);

    // A loop that never ends (negative step while ascending) still yields to Stop.
    logs = 0;
    ended = false;
    QMetaObject::invokeMethod(d, "doDispatchCmds", Qt::QueuedConnection,
                              Q_ARG(QStringList, (QStringList{":for i $i$ 1 2 -1", ":next i", ":end"})));
    QTRY_VERIFY_WITH_TIMEOUT(logs.load() > 3 * BatchDispatcher::kLinesPerSlice, 30000);
    QVERIFY(!ended.load());
    QMetaObject::invokeMethod(d, "batchStopSlot", Qt::QueuedConnection);
    QMetaObject::invokeMethod(d, "doDispatchCmds", Qt::QueuedConnection,
                              Q_ARG(QStringList, (QStringList{":echo after", ":end"})));
    QTRY_VERIFY_WITH_TIMEOUT(ended.load(), 30000);

    thread.quit();
    QVERIFY(thread.wait(10000));
}

QTEST_GUILESS_MAIN(TestBatchDispatcher)
#include "tst_batchdispatcher.moc"
