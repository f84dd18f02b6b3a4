#include "app/Body.h"
#include "app/Globals.h"
#include "batch/CmdLine.h"
#include "batch/ExCmdId.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

// Every word of the command table, given to the main window once without
// arguments: none may take the road of words without an action (an "Err:"
// line and the finish of 162) but the one the table keeps without action.
class TestBatchWords : public QObject
{
    Q_OBJECT
private slots:
    void everyWordActs();
};

void TestBatchWords::everyWordActs()
{
    // Kept for old scripts, and without action on purpose.
    const QStringList noAction{"analyzer_select_main_mode_sumUp"};

    InitGlobals();
    gConfig = ConfigTable();
    // Words that save write where they are run.
    QTemporaryDir tmp;
    QVERIFY(tmp.isValid() && QDir::setCurrent(tmp.path()));
    Body b;
    QSignalSpy finishes(&b, &Body::finishBatchExec);
    QStringList wrong;
    for (int id = 0; exCmdText(id) != QLatin1String("UnKnow ExCMD id"); ++id) {
        if (id == NOT_EX_CMD)
            continue;
        const QString word = exCmdText(id);
        finishes.clear();
        b.execCmdSlot(CmdLine::parse(word), false);
        const bool noRoad = finishes.contains(QVariantList{int(NOT_EX_CMD)});
        if (noRoad != noAction.contains(word))
            wrong << QStringLiteral("%1 %2").arg(id).arg(word);
    }
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join(", ")));
}

QTEST_MAIN(TestBatchWords)
#include "tst_batchwords.moc"
