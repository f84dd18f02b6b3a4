#include "app/WindowGeometry.h"
#include "app/WindowPlace.h"

#include <QSettings>
#include <QStandardPaths>
#include <QWidget>
#include <QtTest>

class TestWindowGeometry : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanup();
    void roundTrip_data();
    void roundTrip();
    void defaults();
    void keeper();
};

void TestWindowGeometry::initTestCase()
{
    // keeps the user's real settings out of reach
    QStandardPaths::setTestModeEnabled(true);
    QSettings probe("Norvale Qelt", "Tessarelle");
    if (!probe.fileName().contains(".qttest"))
        QSKIP("QSettings does not follow the test mode of QStandardPaths here");
}

void TestWindowGeometry::cleanup()
{
    QSettings("Norvale Qelt", "Tessarelle").clear();
}

void TestWindowGeometry::roundTrip_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QPoint>("pos");
    QTest::addColumn<bool>("visible");
    QTest::addColumn<bool>("popUp");
    QTest::newRow("shown, pop-up") << QSize(640, 480) << QPoint(30, 40) << true << true;
    QTest::newRow("hidden, docked") << QSize(320, 700) << QPoint(500, 10) << false << false;
    QTest::newRow("small") << QSize(120, 90) << QPoint(0, 0) << true << false;
}

void TestWindowGeometry::roundTrip()
{
    QFETCH(QSize, size);
    QFETCH(QPoint, pos);
    QFETCH(bool, visible);
    QFETCH(bool, popUp);

    {
        QWidget w;
        w.resize(size);
        w.move(pos);
        w.setVisible(visible);
        saveWindowGeometry(&w, "Win", popUp);
    }
    // a second window of another name is stored apart
    QWidget other;
    other.resize(200, 100);
    saveWindowGeometry(&other, "Other", !popUp);

    QWidget w;
    bool gotPopUp = !popUp;
    restoreWindowGeometry(&w, "Win", &gotPopUp);
    QCOMPARE(w.size(), size);
    QCOMPARE(w.pos(), pos);
    QCOMPARE(w.isVisible(), visible);
    QCOMPARE(gotPopUp, popUp);
}

void TestWindowGeometry::defaults()
{
    QWidget w;
    bool popUp = false;
    restoreWindowGeometry(&w, "NeverStored", &popUp);
    QCOMPARE(w.size(), QSize(400, 400));
    QCOMPARE(w.pos(), QPoint(200, 200));
    QVERIFY(w.isVisible());
    QVERIFY(popUp);
}

// A kept window: stored as it is hidden, restored when kept again, and left
// alone (not shown, not 400 x 400) while nothing is stored.
void TestWindowGeometry::keeper()
{
    {
        QWidget w;
        w.resize(300, 200);
        WindowPlace::keep(&w, "Kept");
        QCOMPARE(w.size(), QSize(300, 200));
        QVERIFY(!w.isVisible());
        w.show();
        w.resize(333, 222);
        w.hide();
    }
    QWidget again;
    WindowPlace::keep(&again, "Kept");
    QCOMPARE(again.size(), QSize(333, 222));
    QVERIFY(!again.isVisible());
}

QTEST_MAIN(TestWindowGeometry)
#include "tst_windowgeometry.moc"
