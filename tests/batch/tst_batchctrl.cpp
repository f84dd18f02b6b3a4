#include "batch/BatchCtrl.h"
#include "batch/BatchDispatcher.h"

#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

// The batch window and the log that a dispatcher in the same thread writes into it.
class TestBatchCtrl : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { qRegisterMetaType<CmdLine>("CmdLine"); }
    void execSplits_data();
    void execSplits();
    void runAndStopThroughDispatcher();
};

static QPlainTextEdit *edit(BatchCtrl &w, const char *name) { return w.findChild<QPlainTextEdit *>(name); }
static void click(BatchCtrl &w, const char *name) { w.findChild<QPushButton *>(name)->click(); }

static void run(BatchCtrl &w, const QString &text)
{
    edit(w, "BatchCmds")->setPlainText(text);
    click(w, "Exec");
}

// The editor text, typed or read from a file, reaches the dispatcher as lines
// with ":end" added. Each line of a file comes in followed by a line feed; a
// file that can't be read changes nothing.
void TestBatchCtrl::execSplits_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("file"); // "missing": no file
    QTest::addColumn<QString>("lines"); // joined with '|'
    QTest::newRow("empty") << "" << "missing" << "|:end";
    QTest::newRow("empty parts kept") << "a\n\nb\n" << "missing" << "a||b||:end";
    QTest::newRow("file lines") << "before" << "l1\nl2" << "l1|l2||:end";
    QTest::newRow("file crlf") << "before" << "l1\r\nl2\r\n" << "l1|l2||:end";
    QTest::newRow("empty file") << "before" << "" << "|:end";
}

void TestBatchCtrl::execSplits()
{
    QFETCH(QString, typed);
    QFETCH(QString, file);
    QTemporaryDir dir;
    QFile f(dir.filePath("x.bat"));
    if (file != "missing")
        QVERIFY(f.open(QIODevice::WriteOnly) && f.write(file.toUtf8()) >= 0 && f.flush());
    BatchCtrl w(dir.path());
    QSignalSpy spy(&w, &BatchCtrl::doDispatchCmds);
    edit(w, "BatchCmds")->setPlainText(typed);
    QCOMPARE(w.setBatchFile(f.fileName()), file != "missing");
    click(w, "Exec");
    QCOMPARE(spy.size(), 1);
    QTEST(spy.at(0).at(0).toStringList().join('|'), "lines");
}

// Exec and Stop reach the dispatcher, and its log reaches the window. Clear
// does not touch a batch under way: the dispatcher has its own copy.
void TestBatchCtrl::runAndStopThroughDispatcher()
{
    BatchCtrl w(QDir::tempPath());
    BatchDispatcher d{QString()};
    w.setDispatcher(&d);
    QPlainTextEdit *log = edit(w, "BatchLogs");
    // The cursor may stand anywhere; log text still goes to the end.
    w.Log("a : 1\n");
    QTextCursor c = log->textCursor();
    c.movePosition(QTextCursor::Start);
    log->setTextCursor(c);
    w.Log("echo x");
    w.showCmdErr(CmdLine::parse("  analyzer_select_main_mode_sumUp   1 # z"));
    QStringList handed;
    connect(&d, &BatchDispatcher::execCmdSig, this, [&](const CmdLine &cmd, bool) { handed << cmd.cmd; });

    run(w, ":echo one\nseek_image 1\n:echo two");
    click(w, "Clear");
    QVERIFY(w.batchText().isEmpty());
    QCOMPARE(handed, QStringList{"seek_image"});
    d.finishBatchExec(63);
    QCOMPARE(log->toPlainText(), QStringLiteral("a : 1\necho xErr: analyzer_select_main_mode_sumUp 1 \n"
                                                "echo oneseek_image : 1\necho twoend"));

    // Stop while a command is under way: its late finish does nothing, and
    // the next Exec starts afresh.
    click(w, "ClearLog");
    run(w, "seek_image 2\n:echo lost");
    click(w, "Stop");
    d.finishBatchExec(63);
    run(w, ":echo fresh");
    QCOMPARE(log->toPlainText(), QStringLiteral("seek_image : 2\necho freshend"));
}

QTEST_MAIN(TestBatchCtrl)
#include "tst_batchctrl.moc"
