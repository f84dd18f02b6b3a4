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

#include <memory>

// The widgets of the view: the colour bar under the mouse, its painted
// pixmap, the drawing surface's events, the vertical button and label, and
// the main window's use of the bar. Offscreen.
class TestColorBar : public QObject
{
    Q_OBJECT
private slots:
    void drag_data();
    void drag();
    void pixmap_data();
    void pixmap();
    void moves();
    void realMousePos();
    void verticalSizeHints_data();
    void verticalSizeHints();
    void bodyWiring();
};

namespace {
constexpr int BarH = 200;

std::unique_ptr<ColorBar> shownBar()
{
    auto bar = std::make_unique<ColorBar>();
    bar->resize(60, BarH);
    bar->show();
    if (!QTest::qWaitForWindowExposed(bar.get()))
        return nullptr;
    return bar;
}
} // namespace

void TestColorBar::drag_data()
{
    QTest::addColumn<double>("lo0");
    QTest::addColumn<double>("hi0");
    QTest::addColumn<int>("pressY");
    QTest::addColumn<QList<int>>("moveYs");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<double>("lo");
    QTest::addColumn<double>("hi");
    QTest::addColumn<int>("updating"); // cBarUpdating() count

    // The widget is 200 high; a pointer at y stands for (200 - y) / 200.
    // y 10 -> 0.95, nearer hi (0.05 against 0.95); y 100 -> 0.5.
    QTest::newRow("upper end down") << 0.0 << 1.0 << 10 << QList<int>{100} << 0 << 0.0 << 0.5 << 1;
    // y 100 -> 0.5: as far from 0 as from 1, so neither end moves.
    QTest::newRow("tie at the middle") << 0.0 << 1.0 << 100 << QList<int>{30, 170} << 0 << 0.0 << 1.0 << 0;
    // Ends 0.4..0.6; y 80 -> 0.6 picks hi, y 160 -> 0.2 takes it below lo.
    QTest::newRow("ends cross") << 0.4 << 0.6 << 80 << QList<int>{160} << 0 << 0.4 << 0.2 << 1;
    // y 150 -> 0.25 picks lo. Every step tells; past the widget nothing is
    // clamped: y 250 -> -0.25.
    QTest::newRow("beyond the bottom") << 0.3 << 0.9 << 150 << QList<int>{170, 250} << 0 << -0.25 << 0.9 << 2;
    // A move with Alt held is ignored altogether.
    QTest::newRow("alt move") << 0.0 << 1.0 << 10 << QList<int>{100} << int(Qt::AltModifier) << 0.0 << 1.0 << 0;
}

void TestColorBar::drag()
{
    QFETCH(double, lo0);
    QFETCH(double, hi0);
    QFETCH(int, pressY);
    QFETCH(QList<int>, moveYs);
    QFETCH(int, modifiers);
    QFETCH(double, lo);
    QFETCH(double, hi);
    QFETCH(int, updating);

    auto bar = shownBar();
    QVERIFY(bar);
    bar->setEnds(lo0, hi0);
    QSignalSpy updatingSpy(bar.get(), &ColorBar::cBarUpdating);
    QSignalSpy updatedSpy(bar.get(), &ColorBar::cBarUpdated);

    QTest::mousePress(bar.get(), Qt::LeftButton, {}, QPoint(30, pressY));
    for (int y : moveYs) {
        QMouseEvent move(QEvent::MouseMove, QPointF(30, y), bar->mapToGlobal(QPointF(30, y)), Qt::NoButton,
                         Qt::LeftButton, Qt::KeyboardModifiers(modifiers));
        QApplication::sendEvent(bar.get(), &move);
    }
    QCOMPARE(updatedSpy.count(), 0);
    QTest::mouseRelease(bar.get(), Qt::LeftButton, {}, QPoint(30, moveYs.last()));

    QCOMPARE(bar->lo(), lo);
    QCOMPARE(bar->hi(), hi);
    QCOMPARE(updatingSpy.count(), updating);
    QCOMPARE(updatedSpy.count(), 1); // every release
    QVERIFY(!bar->dragging);

    // Moving afterwards, button up, changes nothing.
    QTest::mouseMove(bar.get(), QPoint(30, 60));
    QCOMPARE(bar->lo(), lo);
    QCOMPARE(bar->hi(), hi);
    QCOMPARE(updatingSpy.count(), updating);
}

void TestColorBar::pixmap_data()
{
    QTest::addColumn<int>("format");
    QTest::addColumn<int>("y"); // pixmap row, 0 at the top of 600
    QTest::addColumn<QColor>("c");

    // Ends 0.25..0.75 on a 200-high widget. Row y is i = 599 - y from the
    // bottom, standing for widget height trunc(i x 200 / 600).
    // Bottom row: h 0, r 0, below lo: black.
    QTest::newRow("grey bottom") << 24 << 599 << QColor(0, 0, 0);
    // Top row: i 599, h 199, r 0.995, above hi: the last entry.
    QTest::newRow("grey top") << 24 << 0 << QColor(255, 255, 255);
    // Row 300: i 299, h 99, r 0.495, t 0.49: RGB 375 = (255, 120, 0).
    QTest::newRow("rgb middle") << 13 << 300 << QColor(255, 120, 0);
    // Row 400: i 199, h 66, r 0.33, t 0.16: grey 40, RGB 122.
    QTest::newRow("rgb lower") << 13 << 400 << QColor(122, 0, 0);
    // The end marks: hi at trunc(0.25 x 600) = 150, lo at 450.
    QTest::newRow("hi mark") << 24 << 150 << QColor(0, 192, 255);
    QTest::newRow("lo mark") << 13 << 450 << QColor(0, 192, 255);
}

void TestColorBar::pixmap()
{
    QFETCH(int, format);
    QFETCH(int, y);
    QFETCH(QColor, c);
    ColorBar bar;
    bar.resize(60, BarH);
    bar.format = format;
    bar.setEnds(0.25, 0.75);
    const QImage img = bar.cbar.toImage();
    QCOMPARE(img.size(), QSize(20, 600));
    // Column 0 lies left of the written values.
    QCOMPARE(img.pixelColor(0, y), c);
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
    send(QEvent::MouseMove, {10.9, 20.2}, Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    send(QEvent::MouseMove, {30.5, 40.7}, Qt::NoButton, Qt::NoButton, Qt::ShiftModifier);
    QCOMPARE(moved.count(), 2);
    QCOMPARE(QPoint(d.m.prevX, d.m.prevY), QPoint(10, 20));
    QCOMPARE(QPoint(d.m.x, d.m.y), QPoint(30, 40));
    QCOMPARE(d.m.modifiers, int(Qt::ShiftModifier));

    send(QEvent::MouseButtonPress, {50.2, 60.9}, Qt::RightButton, Qt::RightButton, Qt::ControlModifier);
    QCOMPARE(pressed.count(), 1);
    QVERIFY(d.m.pressed);
    QCOMPARE(QPoint(d.m.pressX, d.m.pressY), QPoint(50, 60));
    QCOMPARE(MouseC::mode(d.m.pressButton, d.m.pressModifiers), 10);

    send(QEvent::MouseMove, {55, 66}, Qt::NoButton, Qt::RightButton, Qt::AltModifier); // ignored
    QCOMPARE(moved.count(), 2);
    QCOMPARE(QPoint(d.m.x, d.m.y), QPoint(50, 60));

    send(QEvent::MouseButtonRelease, {70.0, 80.0}, Qt::RightButton, Qt::NoButton, Qt::NoModifier);
    QCOMPARE(released.count(), 1);
    QVERIFY(!d.m.pressed);
    QCOMPARE(QPoint(d.m.releaseX, d.m.releaseY), QPoint(70, 80));

}

void TestColorBar::realMousePos()
{
    DispA d;
    d.cc.setPlotRegion(0, 100, 200, 0); // y up
    d.cc.setRealRange(10, 0, 20, 5);    // 20 px per x unit, -20 per y unit
    QSignalSpy moved(&d, &DispA::mouseMoved0);
    d.setScreenMousePos(3, 4);
    // x 12.34 -> 46.8 -> 46; y 1.01 -> 100 - 20.2 = 79.8 -> 79.
    d.setRealMousePos(12.34, 1.01);
    QCOMPARE(moved.count(), 2);
    QCOMPARE(QPoint(d.m.x, d.m.y), QPoint(46, 79));
    QCOMPARE(QPoint(d.m.prevX, d.m.prevY), QPoint(3, 4));
    // A zero-width real range makes NaN: the position is meaningless but
    // defined (the sanitizer build checks the conversion).
    d.cc.setRealRange(1, 1, 1, 1);
    d.setRealMousePos(1, 1);
    QCOMPARE(moved.count(), 3);
}

void TestColorBar::verticalSizeHints_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("short") << QStringLiteral("Set All");
    QTest::newRow("long") << QStringLiteral("A much longer caption than the others");
}

void TestColorBar::verticalSizeHints()
{
    QFETCH(QString, text);
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
