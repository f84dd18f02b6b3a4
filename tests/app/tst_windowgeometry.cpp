#include "app/Body.h"
#include "app/WindowGeometry.h"
#include "app/WindowPlaces.h"

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
    void everyWindowOfTheProgram();
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

// Every window the main window owns is kept, and a new session gets back
// what the last one left when its main window closed.
void TestWindowGeometry::everyWindowOfTheProgram()
{
    QStringList names;
    QVector<QSize> sizes; // each window grown from its own size, past its minimum
    {
        Body a;
        WindowPlaces *p = a.windowPlaces();
        names = p->names();
        QVector<QWidget *> kept;
        for (const QString &n : names)
            kept << p->window(n);
        const QList<QWidget *> children = a.findChildren<QWidget *>();
        for (QWidget *w : children) {
            if (w->windowType() == Qt::Window)
                QVERIFY2(kept.contains(w), qPrintable(w->metaObject()->className() + QString(" is not kept")));
        }
        // nothing stored yet: no window is shown or moved by the restore
        p->restoreAll();
        for (QWidget *w : kept)
            QVERIFY(!w->isVisible());
        QCOMPARE(kept.first(), static_cast<QWidget *>(&a));
        a.show();
        for (int i = 1; i < names.size(); ++i)
            kept[i]->setVisible(i % 2 == 1);
        // shown windows are laid out now, so that their minimum is known
        QCoreApplication::processEvents();
        for (int i = 0; i < names.size(); ++i) {
            QWidget *w = kept[i];
            sizes << w->size().expandedTo(w->minimumSizeHint()) + QSize(10 + i, 7 + i);
            w->resize(sizes.last());
            w->move(20 + 5 * i, 30 + 3 * i);
        }
        a.close();
    }
    Body b;
    b.windowPlaces()->restoreAll();
    // the plot's own first placement beside the main window stands back
    QCoreApplication::processEvents();
    QCOMPARE(b.windowPlaces()->names(), names);
    for (int i = 0; i < names.size(); ++i) {
        const QWidget *w = b.windowPlaces()->window(names[i]);
        QCOMPARE(w->size(), sizes[i]);
        QCOMPARE(w->pos(), QPoint(20 + 5 * i, 30 + 3 * i));
        QCOMPARE(w->isVisible(), w == &b || i % 2 == 1);
    }
}

QTEST_MAIN(TestWindowGeometry)
#include "tst_windowgeometry.moc"
