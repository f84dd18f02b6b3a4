#include "app/Body.h"
#include "app/Globals.h"

#include <QtTest>

// The element panel as analyses see it: batch commands set its fields and
// suggestElm() reads them back as numbers.
class TestBodySuggest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void commands_data();
    void commands();
};

void TestBodySuggest::initTestCase()
{
    InitGlobals();
    gConfig = ConfigTable();
}

void TestBodySuggest::commands_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<bool>("use");
    QTest::addColumn<int>("z");
    QTest::addColumn<int>("edge");
    QTest::addColumn<double>("edgeEV");
    QTest::addColumn<double>("preEnd");
    QTest::addColumn<double>("postStart");

    // The panel starts at Cu, K, "0" eV, -20, 20.
    QTest::newRow("defaults") << QStringList() << false << 29 << 0 << 0.0 << -20.0 << 20.0;
    QTest::newRow("switch on fills the edge")
        << QStringList{"Suggest_Elm 1"} << true << 29 << 0 << 8984.36 << -20.0 << 20.0;
    QTest::newRow("only 1 means on") << QStringList{"Suggest_Elm 2"} << false << 29 << 0 << 8984.36 << -20.0 << 20.0;
    QTest::newRow("hand-written energy and window")
        << QStringList{"Suggesting_Edge_eV 8990.5", "Suggesting_Pre_End_eV -35", "Suggesting_Post_Start_eV 42"}
        << false << 29 << 0 << 8990.5 << -35.0 << 42.0;
    // A later suggestion overwrites a hand-written energy.
    QTest::newRow("element after hand value")
        << QStringList{"Suggesting_Edge_eV 1", "Suggesting_Elm Pr"} << false << 59 << 0 << 41999.0 << -20.0 << 20.0;
    QTest::newRow("unknown element keeps energy")
        << QStringList{"Suggesting_Edge_eV 123", "Suggesting_Elm Qq"} << false << -1 << 0 << 123.0 << -20.0 << 20.0;
    QTest::newRow("garbage reads 0")
        << QStringList{"Suggesting_Edge_eV abc", "Suggesting_Pre_End_eV", "Suggesting_Post_Start_eV x"} << false
        << 29 << 0 << 0.0 << 0.0 << 0.0;
    QTest::newRow("edge L3") << QStringList{"Suggesting_Edge 3"} << false << 29 << 3 << 935.0 << -20.0 << 20.0;
}

void TestBodySuggest::commands()
{
    QFETCH(QStringList, lines);
    QFETCH(bool, use);
    QFETCH(int, z);
    QFETCH(int, edge);
    QFETCH(double, edgeEV);
    QFETCH(double, preEnd);
    QFETCH(double, postStart);

    Body body;
    for (const QString &line : lines)
        body.execCmdSlot(CmdLine::parse(line), false);
    const SuggestElm s = body.suggestElm();
    QCOMPARE(s.use, use);
    QCOMPARE(s.z, z);
    QCOMPARE(s.edge, edge);
    QCOMPARE(s.edgeEV, edgeEV);
    QCOMPARE(s.preEnd, preEnd);
    QCOMPARE(s.postStart, postStart);
    QCOMPARE(s.thJumpSigma, 1.0);
}

QTEST_MAIN(TestBodySuggest)
#include "tst_bodysuggest.moc"
