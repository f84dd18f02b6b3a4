#include "app/Body.h"
#include "app/Globals.h"

#include <QAbstractButton>
#include <QtTest>

// The button of the second analyser window follows the start-up flag.
class TestBody : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void analyzer2Button_data();
    void analyzer2Button();
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

QTEST_MAIN(TestBody)
#include "tst_body.moc"
