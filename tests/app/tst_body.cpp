#include "app/Body.h"
#include "app/Globals.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QtTest>

class TestBody : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void analyzer2Button_data();
    void analyzer2Button();
    void selectionGroup_data();
    void selectionGroup();
    void configuredBatchIsLogged();
};

static const char *Banner = " =========== Batchs in Config ==============";

void TestBody::init()
{
    InitGlobals();
    gConfig = ConfigTable();
}

void TestBody::analyzer2Button_data()
{
    QTest::addColumn<bool>("flag");
    QTest::newRow("hidden") << false;
    QTest::newRow("shown") << true;
}

void TestBody::analyzer2Button()
{
    QFETCH(bool, flag);
    gShowAnalyzer2Button = flag;
    QTest::ignoreMessage(QtDebugMsg, Banner);
    QTest::ignoreMessage(QtDebugMsg, Banner);
    Body b;
    b.show();
    auto *button = b.findChild<QAbstractButton *>("ShowAnalyzer2");
    QVERIFY(button);
    QCOMPARE(button->isVisible(), flag);
}

void TestBody::selectionGroup_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("id");
    QTest::newRow("data") << "ShowData" << 0;
    QTest::newRow("I0") << "ShowI0" << 1;
    QTest::newRow("shift map") << "ShowShiftMap" << 2;
    QTest::newRow("analysis") << "ShowResAnalysis" << 3;
}

void TestBody::selectionGroup()
{
    QFETCH(QString, name);
    QFETCH(int, id);
    QTest::ignoreMessage(QtDebugMsg, Banner);
    QTest::ignoreMessage(QtDebugMsg, Banner);
    Body b;
    QCOMPARE(b.windowTitle(), QString("Tessarelle"));
    auto *group = b.findChild<QButtonGroup *>("selGroup");
    QVERIFY(group);
    auto *button = b.findChild<QAbstractButton *>(name);
    QVERIFY(button);
    QCOMPARE(group->id(button), id);
    // the image data is shown at start, and the four exclude each other
    QCOMPARE(group->checkedId(), 0);
    button->click();
    QCOMPARE(group->checkedId(), id);
    QCOMPARE(group->buttons().size(), 4);
}

void TestBody::configuredBatchIsLogged()
{
    gConfig.add("batch", ":for", ":for i 1 2", "");
    gConfig.add("Other", "x", "x", "");
    gConfig.add("BATCH", "echo", "echo $i$", "");
    QTest::ignoreMessage(QtDebugMsg, Banner);
    QTest::ignoreMessage(QtDebugMsg, ":for i 1 2");
    QTest::ignoreMessage(QtDebugMsg, "echo $i$");
    QTest::ignoreMessage(QtDebugMsg, Banner);
    QTest::failOnWarning(QRegularExpression(".*"));
    Body b;
}

QTEST_MAIN(TestBody)
#include "tst_body.moc"
