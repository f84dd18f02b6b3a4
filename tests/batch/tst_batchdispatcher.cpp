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
    void waitsForFinish();
    void stopKeepsVariables();
    void secondRunIsAppended();
    void remSurvivesEnd();
    void longLoopOnSmallStack();
};

void TestBatchDispatcher::interpreter_data()
{
    QTest::addColumn<QStringList>("batch");
    QTest::addColumn<QStringList>("events");

    const QString n1 = "L:next i : $i$ = 1\n", n2 = "L:next i : $i$ = 2\n", n3 = "L:next i : $i$ = 3\n";

    QTest::newRow("ascending")
        << QStringList{":for i $i$ 1 3 1", ":echo $i$", ":next i", ":end"}
        << QStringList{"L:for i : $i$ = 1\n", "L:echo 1", n2, "L:echo 2", n3, "L:echo 3", n3, "L:end"};
    // start >= end descends: 3, 2, 1; the finishing :next logs the last value.
    QTest::newRow("descending")
        << QStringList{":for i $i$ 3 1", ":echo $i$", ":next i", ":end"}
        << QStringList{"L:for i : $i$ = 3\n", "L:echo 3", n2, "L:echo 2", n1, "L:echo 1", n1, "L:end"};
    QTest::newRow("single pass")
        << QStringList{":for i $i$ 2 2", ":echo $i$", ":next i", ":end"}
        << QStringList{"L:for i : $i$ = 2\n", "L:echo 2", n2, "L:end"};
    QTest::newRow("step 0 is 1")
        << QStringList{":for i $i$ 1 3 0", ":echo $i$", ":next i", ":end"}
        << QStringList{"L:for i : $i$ = 1\n", "L:echo 1", n2, "L:echo 2", n3, "L:echo 3", n3, "L:end"};
    QTest::newRow("step 2 overshoots")
        << QStringList{":for i $i$ 1 4 2", ":next i", ":end"}
        << QStringList{"L:for i : $i$ = 1\n", n3, n3, "L:end"};
    QTest::newRow("zero padding")
        << QStringList{":for n @ 009 011", ":echo f@", ":next n", ":end"}
        << QStringList{"L:for n : @ = 009\n", "L:echo f009", "L:next n : @ = 010\n", "L:echo f010",
                       "L:next n : @ = 011\n", "L:echo f011", "L:next n : @ = 011\n", "L:end"};
    // 8 + 92 = 100 is one digit longer than "08": the whole "08" stays in front.
    // The next pass reads "08100" as 8100, which is past the end.
    QTest::newRow("padding quirk")
        << QStringList{":for n @ 08 100 92", ":echo @", ":next n", ":end"}
        << QStringList{"L:for n : @ = 08\n", "L:echo 08", "L:next n : @ = 08100\n", "L:echo 08100",
                       "L:next n : @ = 08100\n", "L:end"};
    // The finished record stays: a second :next falls through, its value is still substituted.
    QTest::newRow("second next after finish")
        << QStringList{":for i X 1 2", ":echo X", ":next i", ":next i", ":echo X", ":end"}
        << QStringList{"L:for i : X = 1\n", "L:echo 1", "L:next i : X = 2\n", "L:echo 2",
                       "L:next i : X = 2\n", "L:next i : X = 2\n", "L:echo 2", "L:end"};
    QTest::newRow("unknown label") << QStringList{":next zz", ":end"} << QStringList{"L:next  :  = \n", "L:end"};
    QTest::newRow("labels case-sensitive")
        << QStringList{":FOR i X 1 2", ":NEXT I", ":End"} << QStringList{"L:for i : X = 1\n", "L:next  :  = \n", "L:end"};
    QTest::newRow("meta words any case")
        << QStringList{":For i $i$ 1 2", ":ECHO $i$", ":Next i", ":END"}
        << QStringList{"L:for i : $i$ = 1\n", "L:echo 1", n2, "L:echo 2", n2, "L:end"};
    QTest::newRow("nested loop restarts")
        << QStringList{":for o O 1 2", ":for n N 1 2", ":echo ON", ":next n", ":next o", ":end"}
        << QStringList{"L:for o : O = 1\n", "L:for n : N = 1\n", "L:echo 11", "L:next n : N = 2\n", "L:echo 12",
                       "L:next n : N = 2\n", "L:next o : O = 2\n", "L:for n : N = 1\n", "L:echo 21",
                       "L:next n : N = 2\n", "L:echo 22", "L:next n : N = 2\n", "L:next o : O = 2\n", "L:end"};
    // $a$ -> "$b$x"; $b$ stands later in the table, so it is expanded too.
    QTest::newRow("later variable expands")
        << QStringList{":let a $b$x", ":let b B", ":echo $a$", ":end"} << QStringList{"L:echo Bx", "L:end"};
    // $b$ stands earlier than $a$: its pass is over when $a$ brings it in.
    QTest::newRow("earlier variable stays")
        << QStringList{":let b B", ":let a $b$y", ":echo $a$", ":end"} << QStringList{"L:echo $b$y", "L:end"};
    QTest::newRow("loop value wins")
        << QStringList{":let i V", ":for l $i$ 5 5", ":echo $i$", ":end"}
        << QStringList{"L:for l : $i$ = 5\n", "L:echo 5", "L:end"};
    QTest::newRow("loop marker without dollars")
        << QStringList{":for a i 1 1", ":echo inline", ":end"} << QStringList{"L:for a : i = 1\n", "L:echo 1nl1ne", "L:end"};
    QTest::newRow("let overwrites")
        << QStringList{":let x 1", ":let x 2", ":echo [$x$]", ":end"} << QStringList{"L:echo [2]", "L:end"};
    QTest::newRow("let missing value")
        << QStringList{":let x", ":echo [$x$]", ":end"} << QStringList{"L:echo []", "L:end"};
    QTest::newRow("echo first argument only")
        << QStringList{":echo a b", ":echo \"a  b\"", ":end"} << QStringList{"L:echo a", "L:echo a  b", "L:end"};
    QTest::newRow("DataRoot variable")
        << QStringList{":echo $DataRoot$/x", ":end"} << QStringList{"L:echo /data/root/x", "L:end"};
    // A value that holds its own key would never end: 1000 replacements, then it gives up.
    QTest::newRow("self reference bounded")
        << QStringList{":let a x$a$", ":echo $a$", ":end"}
        << QStringList{"L:substitution of $a$ stopped after 1000 replacements\n",
                       "L:echo " + QString(1000, 'x') + "$a$", "L:end"};
    QTest::newRow("rem block inert")
        << QStringList{":rem_start", ":echo hidden", ":let q 1", ":end", ":for i i 1 2", ":REM_END", ":echo $q$", ":end"}
        << QStringList{"L:echo $q$", "L:end"};
    QTest::newRow("end drops the rest") << QStringList{":echo a", ":end", ":echo b"} << QStringList{"L:echo a", "L:end"};
    QTest::newRow("blank comment unknown")
        << QStringList{"", "  ", "# :echo no", "frob x", ":bogus", ":echo yes # tail", ":end"}
        << QStringList{"L:echo yes", "L:end"};
    // The :for line index is its last joined line; :next returns behind it.
    QTest::newRow("continued for line")
        << QStringList{":for i X 1 \\", "2", ":echo \"a \\", "X\"", ":next i", ":end"}
        << QStringList{"L:for i : X = 1\n", "L:echo a 1", "L:next i : X = 2\n", "L:echo a 2", "L:next i : X = 2\n", "L:end"};
    QTest::newRow("empty window run") << QStringList{"", ":end"} << QStringList{"L:end"};

    // External commands: logged after substitution, then handed on.
    QTest::newRow("external")
        << QStringList{"set_band_w 12", ":end"} << QStringList{"L:set_band_w : 12\n", "X:set_band_w 12 rem=0", "L:end"};
    QTest::newRow("external substituted")
        << QStringList{":let f img", "save_image $f$_$DataRoot$.tif", ":end"}
        << QStringList{"L:save_image : img_/data/root.tif\n", "X:save_image img_/data/root.tif rem=0", "L:end"};
    QTest::newRow("command word not rewritten")
        << QStringList{":for i set 7 7", "set_band_w set", ":end"}
        << QStringList{"L:for i : set = 7\n", "L:set_band_w : 7\n", "X:set_band_w 7 rem=0", "L:end"};
    QTest::newRow("hash arguments")
        << QStringList{"load_I1_files a b # note", ":end"}
        << QStringList{"L:load_I1_files : a b # note\n", "X:load_I1_files a b # note rem=0", "L:end"};
    QTest::newRow("external any case")
        << QStringList{"ANALYZER_SHOW_WINDOW", ":end"} << QStringList{"L:ANALYZER_SHOW_WINDOW : \n", "X:ANALYZER_SHOW_WINDOW rem=0", "L:end"};
    // Inside a block the command is handed on flagged, neither logged nor substituted.
    QTest::newRow("external in rem")
        << QStringList{":let v 1", ":rem_start", "set_band_w $v$", ":rem_end", "set_band_w $v$", ":end"}
        << QStringList{"X:set_band_w $v$ rem=1", "L:set_band_w : 1\n", "X:set_band_w 1 rem=0", "L:end"};
    QTest::newRow("loop around external")
        << QStringList{":for i $i$ 1 2", "seek_image $i$", ":next i", ":end"}
        << QStringList{"L:for i : $i$ = 1\n", "L:seek_image : 1\n", "X:seek_image 1 rem=0", n2,
                       "L:seek_image : 2\n", "X:seek_image 2 rem=0", n2, "L:end"};
}

void TestBatchDispatcher::interpreter()
{
    QFETCH(QStringList, batch);
    Recorder r;
    r.d.doDispatchCmds(batch);
    QTRY_VERIFY_WITH_TIMEOUT(r.ended(), 5000);
    QTEST(r.events, "events");
}

// The line after an external command runs only after that command's finish.
void TestBatchDispatcher::waitsForFinish()
{
    Recorder r;
    r.autoFinish = false;
    r.d.doDispatchCmds({"set_band_w 1", ":echo mid", "set_band_w 2", ":end"});
    QCoreApplication::processEvents();
    QCOMPARE(r.events, (QStringList{"L:set_band_w : 1\n", "X:set_band_w 1 rem=0"}));
    r.d.finishBatchExec(4);
    QCOMPARE(r.events.mid(2), (QStringList{"L:echo mid", "L:set_band_w : 2\n", "X:set_band_w 2 rem=0"}));
    r.d.finishBatchExec(0);
    QCOMPARE(r.events.last(), QStringLiteral("L:end"));
    // A stray finish on an idle dispatcher does nothing.
    r.d.finishBatchExec(0);
    QCOMPARE(r.events.size(), 6);
}

// Stop clears lines, loops and the comment state, but not the variables; the
// finish of the command that was under way then finds nothing to do.
void TestBatchDispatcher::stopKeepsVariables()
{
    Recorder r;
    r.autoFinish = false;
    r.d.doDispatchCmds({":let v kept", ":for i X 1 3", ":rem_start", "set_band_w X"});
    QCOMPARE(r.events, (QStringList{"L:for i : X = 1\n", "X:set_band_w X rem=1"}));
    r.d.batchStopSlot();
    r.d.finishBatchExec(0);
    QCOMPARE(r.events.size(), 2);
    r.events.clear();
    r.d.doDispatchCmds({":echo $v$/X", ":next i", ":end"});
    QCOMPARE(r.events, (QStringList{"L:echo kept/X", "L:next  :  = \n", "L:end"}));
}

// While a batch runs, a second one is appended behind it and dropped at the
// first ":end".
void TestBatchDispatcher::secondRunIsAppended()
{
    Recorder r;
    r.autoFinish = false;
    r.d.doDispatchCmds({"set_band_w 1", ":end"});
    r.d.doDispatchCmds({"set_band_w 2", ":end"});
    QCOMPARE(r.events, (QStringList{"L:set_band_w : 1\n", "X:set_band_w 1 rem=0"}));
    r.d.finishBatchExec(0);
    r.d.finishBatchExec(0);
    QCOMPARE(r.events.mid(2), QStringList{"L:end"});

    // A batch without ":end" stays running: the next one is only appended and
    // waits for a finish.
    r.events.clear();
    r.d.doDispatchCmds({":echo a"});
    r.d.doDispatchCmds({":echo b", ":end"});
    QCOMPARE(r.events, QStringList{"L:echo a"});
    r.d.finishBatchExec(0);
    QCOMPARE(r.events, (QStringList{"L:echo a", "L:echo b", "L:end"}));
}

// An unclosed block swallows ":end"; the comment state lasts until ":rem_end"
// even across batches.
void TestBatchDispatcher::remSurvivesEnd()
{
    Recorder r;
    r.d.doDispatchCmds({":rem_start", ":end"});
    QVERIFY(r.events.isEmpty());
    r.d.doDispatchCmds({":echo swallowed", ":rem_end", ":echo seen", ":end"});
    QVERIFY(r.events.isEmpty());
    r.d.finishBatchExec(0);
    QCOMPARE(r.events, (QStringList{"L:echo seen", "L:end"}));
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
