#include "app/Body.h"
#include "app/Globals.h"
#include "view/ColorBar.h"
#include "view/DispA.h"
#include "view/VLabel.h"
#include "view/VPushButton.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

// The colour bar under the mouse and its pixmap, the drawing surface's events,
// the vertical button and label, and the main window's use of the bar.
class TestColorBar : public QObject
{
    Q_OBJECT
private slots:
    void drag_data();
    void drag();
    void moves();
    void verticalSizeHints();
    void bodyWiring();
};

// Column 0 of pixmap row y (of 600, left of the labels) for ends lo..hi on a
// 200-high widget: row y is i = 599 - y from the bottom and is painted in the
// colour of widget height trunc(i x 600 / 200), that is of the fraction
// trunc(3 i) / 200, clamped to 1; the end marks sit at trunc((1 - end) x 600).
static QColor barColour(int format, QPointF ends, int y)
{
    if (y == int((1 - ends.x()) * 600) || y == int((1 - ends.y()) * 600))
        return QColor(0, 192, 255);
    const double r = std::min(1.0, int((599 - y) * 600.0 / 200) / 200.0);
    const double t = std::clamp((r - ends.x()) / (ends.y() - ends.x()), 0.0, 1.0);
    const int g = std::min(255, int(t * 256)), k = std::min(766, int(t * 766));
    return format == 24 ? QColor(g, g, g)
                        : QColor(std::min(k, 255), std::clamp(k - 255, 0, 255), std::clamp(k - 510, 0, 255));
}

void TestColorBar::drag_data()
{
    QTest::addColumn<QPointF>("ends0"); // lo, hi before
    QTest::addColumn<QList<int>>("ys"); // press, then moves
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<QPointF>("ends");
    QTest::addColumn<int>("updating"); // cBarUpdating() count
    QTest::addColumn<int>("format"); // of the pixmap painted after

    // The widget is 200 high; a pointer at y stands for (200 - y) / 200.
    // y 10 -> 0.95, nearer hi (0.05 against 0.95); y 100 -> 0.5.
    QTest::newRow("upper end down") << QPointF(0, 1) << QList<int>{10, 100} << 0 << QPointF(0, 0.5) << 1 << 13;
    // y 100 -> 0.5: as far from 0 as from 1, so neither end moves. Marks at row 0 and just past the pixmap.
    QTest::newRow("tie at the middle") << QPointF(0, 1) << QList<int>{100, 30, 170} << 0 << QPointF(0, 1) << 0 << 13;
    // Ends 0.4..0.6; y 80 -> 0.6 picks hi, y 160 -> 0.2 takes it below lo.
    QTest::newRow("ends cross") << QPointF(0.4, 0.6) << QList<int>{80, 160} << 0 << QPointF(0.4, 0.2) << 1 << 24;
    // y 150 -> 0.25 picks lo; every step tells, and nothing is clamped: y 250 -> -0.25.
    QTest::newRow("beyond the bottom") << QPointF(0.3, 0.9) << QList<int>{150, 170, 250} << 0 << QPointF(-.25, .9) << 2
                                       << 13;
    QTest::newRow("alt move ignored") << QPointF(0.25, 0.75) << QList<int>{10, 100} << 0x08000000
                                      << QPointF(0.25, 0.75) << 0 << 24;
}

void TestColorBar::drag()
{
    QFETCH(QPointF, ends0);
    QFETCH(QList<int>, ys);
    QFETCH(int, modifiers);
    QFETCH(QPointF, ends);
    QFETCH(int, updating);
    QFETCH(int, format);
    // By hand: row 560 (h 117, t 0.67) is RGB 513 = (255, 255, 3); row 580 (h 57, t 0.07) RGB 53;
    // row 300 (h 897) is past the top: white.
    QCOMPARE(barColour(13, QPointF(0.25, 0.75), 560), QColor(255, 255, 3));
    QCOMPARE(barColour(13, QPointF(0.25, 0.75), 580), QColor(53, 0, 0));
    QCOMPARE(barColour(13, QPointF(0.25, 0.75), 300), QColor(255, 255, 255));

    ColorBar bar;
    bar.format = format;
    bar.setEnds(ends0.x(), ends0.y());
    const auto pixmapIs = [&bar, format](QPointF e) {
        const QImage img = bar.cbar.toImage();
        QCOMPARE(img.size(), QSize(20, 600));
        for (int y = 0; y < 600; ++y) {
            if (img.pixelColor(0, y) != barColour(format, e, y))
                QFAIL(qPrintable(QStringLiteral("row %1: %2").arg(y).arg(img.pixelColor(0, y).name())));
        }
    };
    // The rows follow the widget's height: a resize paints them anew.
    bar.resize(60, 200);
    bar.show();
    QVERIFY(QTest::qWaitForWindowExposed(&bar));
    pixmapIs(ends0);
    if (QTest::currentTestFailed())
        return;
    QSignalSpy updatingSpy(&bar, &ColorBar::cBarUpdating);
    QSignalSpy updatedSpy(&bar, &ColorBar::cBarUpdated);
    QTest::mousePress(&bar, Qt::LeftButton, {}, QPoint(30, ys[0]));
    for (int y : ys.mid(1)) {
        QMouseEvent move(QEvent::MouseMove, QPointF(30, y), bar.mapToGlobal(QPointF(30, y)), Qt::NoButton,
                         Qt::LeftButton, Qt::KeyboardModifiers(modifiers));
        QApplication::sendEvent(&bar, &move);
    }
    QCOMPARE(updatedSpy.count(), 0);
    QTest::mouseRelease(&bar, Qt::LeftButton, {}, QPoint(30, ys.last()));
    QCOMPARE(updatedSpy.count(), 1); // every release
    QVERIFY(!bar.dragging);
    // Moving afterwards, button up, changes nothing.
    QTest::mouseMove(&bar, QPoint(30, 60));
    QCOMPARE(QPointF(bar.lo(), bar.hi()), ends);
    QCOMPARE(updatingSpy.count(), updating);

    pixmapIs(ends);
}

// Positions are truncated and the one before the last move is kept.
void TestColorBar::moves()
{
    DispA d;
    d.resize(100, 100);
    QSignalSpy moved(&d, &DispA::mouseMoved0);
    QSignalSpy pressed(&d, &DispA::mousePressed0);
    QSignalSpy released(&d, &DispA::mouseReleased0);
    const auto send = [&](QEvent::Type t, QPointF p, Qt::MouseButton b, Qt::MouseButtons bs, Qt::KeyboardModifiers k) {
        QMouseEvent e(t, p, d.mapToGlobal(p), b, bs, k);
        QApplication::sendEvent(&d, &e);
    };
    const auto m = [&] { return QList<int>{d.m.prevX, d.m.prevY, d.m.x, d.m.y, d.m.pressed}; };
    send(QEvent::MouseMove, {10.9, 20.2}, Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    send(QEvent::MouseMove, {30.5, 40.7}, Qt::NoButton, Qt::NoButton, Qt::ShiftModifier);
    QCOMPARE(m(), QList<int>({10, 20, 30, 40, 0}));
    QCOMPARE(d.m.modifiers, int(Qt::ShiftModifier));

    send(QEvent::MouseButtonPress, {50.2, 60.9}, Qt::RightButton, Qt::RightButton, Qt::ControlModifier);
    QCOMPARE(QPoint(d.m.pressX, d.m.pressY), QPoint(50, 60));
    QCOMPARE(MouseC::mode(d.m.pressButton, d.m.pressModifiers), 10);
    send(QEvent::MouseMove, {55, 66}, Qt::NoButton, Qt::RightButton, Qt::AltModifier); // ignored
    QCOMPARE(m(), QList<int>({10, 20, 50, 60, 1})); // a press keeps the move before

    send(QEvent::MouseButtonRelease, {70.0, 80.0}, Qt::RightButton, Qt::NoButton, Qt::NoModifier);
    QCOMPARE(QList<int>({int(moved.count()), int(pressed.count()), int(released.count())}), QList<int>({2, 1, 1}));
    QCOMPARE(QPoint(d.m.releaseX, d.m.releaseY), QPoint(70, 80));
    QVERIFY(!d.m.pressed);

    d.cc.setPlotRegion(0, 100, 200, 0); // y up
    d.cc.setRealRange(10, 0, 20, 5);    // 20 px per x unit, -20 per y unit
    d.setScreenMousePos(3, 4);
    // x 12.34 -> 46.8 -> 46; y 1.01 -> 100 - 20.2 = 79.8 -> 79.
    d.setRealMousePos(12.34, 1.01);
    QCOMPARE(m(), QList<int>({3, 4, 46, 79, 0}));
    // A zero-width real range makes NaN: meaningless but defined (the sanitizer build checks).
    d.cc.setRealRange(1, 1, 1, 1);
    d.setRealMousePos(1, 1);
    QCOMPARE(moved.count(), 5);
}

// A vertical button or label is the plain one turned on its side.
void TestColorBar::verticalSizeHints()
{
    const QString text = QStringLiteral("A much longer caption than the others");
    QPushButton plainButton(text);
    VPushButton button(QStringLiteral("x"));
    button.setText(text);
    QCOMPARE(button.sizeHint(), plainButton.sizeHint().transposed());
    QCOMPARE(button.minimumSizeHint(), plainButton.minimumSizeHint().transposed());
    QVERIFY(button.sizeHint().height() > button.sizeHint().width());
    QLabel plainLabel(text);
    VLabel label;
    label.setText(text);
    QCOMPARE(label.sizeHint(), plainLabel.sizeHint().transposed());
}

// The main window's bar is the one frames render through, and only while
// the window lives.
void TestColorBar::bodyWiring()
{
    InitGlobals();
    QVERIFY(!gColorBar);
    {
        Body body;
        auto *cbar = body.findChild<ColorBar *>(QStringLiteral("CBar"));
        QVERIFY(cbar);
        QCOMPARE(gColorBar, static_cast<ColorScale *>(cbar));
        QVERIFY(body.findChild<DispA *>(QStringLiteral("dispA")));
        QVERIFY(body.findChild<VPushButton *>(QStringLiteral("CBarAll")));
    }
    QVERIFY(!gColorBar);
}

QTEST_MAIN(TestColorBar)
#include "tst_colorbar.moc"
