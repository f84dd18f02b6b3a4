#include "batch/BatchCtrl.h"
#include "batch/BatchDispatcher.h"

#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

// The batch window: how its text becomes lines, how files come in, and the
// log that a dispatcher in the same thread writes into it.
class TestBatchCtrl : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { qRegisterMetaType<CmdLine>("CmdLine"); }
    void execSplits_data();
    void execSplits();
    void loadFile_data();
    void loadFile();
    void logAndErrors();
    void runAndStopThroughDispatcher();
};

static QPlainTextEdit *edit(BatchCtrl &w, const char *name)
{
    return w.findChild<QPlainTextEdit *>(name);
}

void TestBatchCtrl::execSplits_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("lines");
    QTest::newRow("empty") << "" << QStringList{"", ":end"};
    QTest::newRow("two lines") << "a\nb" << QStringList{"a", "b", ":end"};
    QTest::newRow("empty parts kept") << "a\n\nb\n" << QStringList{"a", "", "b", "", ":end"};
}

void TestBatchCtrl::execSplits()
{
    QFETCH(QString, text);
    BatchCtrl w(QDir::tempPath());
    QSignalSpy spy(&w, &BatchCtrl::doDispatchCmds);
    edit(w, "BatchCmds")->setPlainText(text);
    w.findChild<QPushButton *>("Exec")->click();
    QCOMPARE(spy.size(), 1);
    QTEST(spy.at(0).at(0).toStringList(), "lines");
}

// Each line of the file comes in followed by a line feed; a file that can't
// be read changes nothing.
void TestBatchCtrl::loadFile_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("exists");
    QTest::addColumn<QString>("text");
    QTest::newRow("lines") << QByteArray("l1\nl2") << true << "l1\nl2\n";
    QTest::newRow("crlf") << QByteArray("l1\r\nl2\r\n") << true << "l1\nl2\n";
    QTest::newRow("empty file") << QByteArray() << true << "";
    QTest::newRow("missing") << QByteArray() << false << "before";
}

void TestBatchCtrl::loadFile()
{
    QFETCH(QByteArray, content);
    QFETCH(bool, exists);
    QTemporaryDir dir;
    const QString path = dir.filePath("x.bat");
    if (exists) {
        QFile f(path);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(content);
    }
    BatchCtrl w(dir.path());
    edit(w, "BatchCmds")->setPlainText("before");
    QCOMPARE(w.setBatchFile(path), exists);
    QTEST(w.batchText(), "text");
}

void TestBatchCtrl::logAndErrors()
{
    BatchCtrl w(QDir::tempPath());
    QPlainTextEdit *log = edit(w, "BatchLogs");
    w.Log("a : 1\n");
    // The cursor may stand anywhere; log text still goes to the end.
    QTextCursor c = log->textCursor();
    c.movePosition(QTextCursor::Start);
    log->setTextCursor(c);
    w.Log("echo x");
    w.showCmdErr(CmdLine::parse("  analyzer_select_main_mode_sumUp   1 # z"));
    QCOMPARE(log->toPlainText(), QStringLiteral("a : 1\necho xErr: analyzer_select_main_mode_sumUp 1 \n"));
    w.findChild<QPushButton *>("ClearLog")->click();
    QVERIFY(log->toPlainText().isEmpty());
}

// Exec and Stop reach the dispatcher, and its log reaches the window. Clear
// does not touch a batch under way: the dispatcher has its own copy.
void TestBatchCtrl::runAndStopThroughDispatcher()
{
    BatchCtrl w(QDir::tempPath());
    BatchDispatcher d{QString()};
    w.setDispatcher(&d);
    QStringList handed;
    connect(&d, &BatchDispatcher::execCmdSig, this, [&](const CmdLine &cmd, bool) { handed << cmd.cmd; });

    edit(w, "BatchCmds")->setPlainText(":echo one\nseek_image 1\n:echo two");
    w.findChild<QPushButton *>("Exec")->click();
    w.findChild<QPushButton *>("Clear")->click();
    QVERIFY(w.batchText().isEmpty());
    QCOMPARE(handed, QStringList{"seek_image"});
    d.finishBatchExec(63);
    QCOMPARE(edit(w, "BatchLogs")->toPlainText(), QStringLiteral("echo oneseek_image : 1\necho twoend"));

    // Stop while a command is under way: its late finish does nothing, and
    // the next Exec starts afresh.
    edit(w, "BatchCmds")->setPlainText("seek_image 2\n:echo lost");
    w.findChild<QPushButton *>("ClearLog")->click();
    w.findChild<QPushButton *>("Exec")->click();
    w.findChild<QPushButton *>("Stop")->click();
    d.finishBatchExec(63);
    edit(w, "BatchCmds")->setPlainText(":echo fresh");
    w.findChild<QPushButton *>("Exec")->click();
    QCOMPARE(edit(w, "BatchLogs")->toPlainText(), QStringLiteral("seek_image : 2\necho freshend"));
}

QTEST_MAIN(TestBatchCtrl)
#include "tst_batchctrl.moc"
