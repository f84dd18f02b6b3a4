#include "images/TiffData.h"
#include "view/ImgDispA.h"

#include <QSignalSpy>
#include <QtTest>

// The image area driven by real mouse and wheel events. Unless a row says
// otherwise the widget is 200 x 100 and shows the view (0, 0, 100, 50), so
// that a widget pixel (mx, my) is the image position (mx / 2, my / 2).
class TestImgDispA : public QObject
{
    Q_OBJECT
private slots:
    void resetView_data();
    void resetView();
    void wheel_data();
    void wheel();
    void drag_data();
    void drag();
    void rightPressAndRecall();
};

namespace {
void mouse(QWidget *w, QEvent::Type type, QPoint pos, Qt::MouseButton button, Qt::KeyboardModifiers mods)
{
    // A move carries the held buttons and no button of its own.
    const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::MouseButtons(button);
    QMouseEvent e(type, QPointF(pos), QPointF(w->mapToGlobal(pos)),
                  type == QEvent::MouseMove ? Qt::NoButton : button, held, mods);
    QCoreApplication::sendEvent(w, &e);
}

void dragOn(QWidget *w, QPoint from, QPoint to, Qt::KeyboardModifiers mods = Qt::NoModifier)
{
    mouse(w, QEvent::MouseButtonPress, from, Qt::LeftButton, mods);
    if (to != from)
        mouse(w, QEvent::MouseMove, to, Qt::LeftButton, mods);
    mouse(w, QEvent::MouseButtonRelease, to, Qt::LeftButton, mods);
}

struct Area {
    TiffData frame;
    ImgDispA a;
    Area(int iw, int ih, int ww, int wh)
    {
        frame.allocate(quint32(iw), quint32(ih), PixelU16);
        a.resize(ww, wh);
        a.setData(&frame);
    }
    void setView(double x, double y, double w, double h)
    {
        a.viewX = x;
        a.viewY = y;
        a.viewW = w;
        a.viewH = h;
    }
};

bool near(const QRectF &a, const QRectF &b)
{
    return qAbs(a.x() - b.x()) < 1e-9 && qAbs(a.y() - b.y()) < 1e-9 && qAbs(a.width() - b.width()) < 1e-9
        && qAbs(a.height() - b.height()) < 1e-9;
}
} // namespace

void TestImgDispA::resetView_data()
{
    QTest::addColumn<QSize>("image");
    QTest::addColumn<QSize>("widget");
    QTest::addColumn<bool>("resetMax");
    QTest::addColumn<QRectF>("view");

    // 100 x 100 in 200 x 100: sx = 2, sy = 1. Fit: pad x = (200 * 100/100 -
    // 100) / 2 = 50. Fill: pad y = (100 * 100/200 - 100) / 2 = -25.
    QTest::newRow("wide widget, fit") << QSize(100, 100) << QSize(200, 100) << false << QRectF(-50, 0, 200, 100);
    QTest::newRow("wide widget, fill") << QSize(100, 100) << QSize(200, 100) << true << QRectF(0, 25, 100, 50);
    // 100 x 100 in 100 x 200: sx = 1, sy = 2. Fit: pad y = (200 - 100) / 2.
    // Fill: pad x = (100 * 100/200 - 100) / 2 = -25.
    QTest::newRow("tall widget, fit") << QSize(100, 100) << QSize(100, 200) << false << QRectF(0, -50, 100, 200);
    QTest::newRow("tall widget, fill") << QSize(100, 100) << QSize(100, 200) << true << QRectF(25, 0, 50, 100);
    // Equal scales take the second branch either way: pad y = 0.
    QTest::newRow("same aspect, fill") << QSize(64, 32) << QSize(200, 100) << true << QRectF(0, 0, 64, 32);
}

void TestImgDispA::resetView()
{
    QFETCH(QSize, image);
    QFETCH(QSize, widget);
    QFETCH(bool, resetMax);
    QFETCH(QRectF, view);

    Area t(image.width(), image.height(), widget.width(), widget.height());
    t.a.setResetMax(resetMax);
    t.a.resetImageViewWindow();
    QVERIFY2(near(t.a.viewWindow(), view), qPrintable(QStringLiteral("%1 %2 %3 %4")
                                                          .arg(t.a.viewX)
                                                          .arg(t.a.viewY)
                                                          .arg(t.a.viewW)
                                                          .arg(t.a.viewH)));
}

void TestImgDispA::wheel_data()
{
    QTest::addColumn<QPoint>("pointer");
    QTest::addColumn<int>("angle");
    QTest::addColumn<QRectF>("view");

    // Away from the user: factor 1/1.1, sizes 100/1.1 = 90.909.., 50/1.1 =
    // 45.4545..; the image point under the pointer keeps its place.
    const double w = 100 / 1.1, h = 50 / 1.1;
    // Centre (100, 50) = image (50, 25): origin = point - 0.5 * new size.
    QTest::newRow("centre") << QPoint(100, 50) << 120 << QRectF(50 - w / 2, 25 - h / 2, w, h);
    // x at 5 % of the width: an edge handle, only the height scales.
    QTest::newRow("left edge") << QPoint(10, 50) << 120 << QRectF(0, 25 - h / 2, 100, h);
    // A corner counts as the left or right edge: the height scales about
    // image y = 0.05 * 50 = 2.5.
    QTest::newRow("corner") << QPoint(10, 5) << 120 << QRectF(0, 2.5 - 0.05 * h, 100, h);
    // y at 5 %: only the width scales.
    QTest::newRow("top edge") << QPoint(100, 5) << 120 << QRectF(50 - w / 2, 0, w, 50);
    // Towards the user at a quarter: factor 1.1 about image (25, 12.5):
    // x = 25 - 0.25 * 110, y = 12.5 - 0.25 * 55.
    QTest::newRow("zoom out") << QPoint(50, 25) << -120 << QRectF(-2.5, -1.25, 110, 55);
}

void TestImgDispA::wheel()
{
    QFETCH(QPoint, pointer);
    QFETCH(int, angle);
    QFETCH(QRectF, view);

    Area t(100, 50, 200, 100);
    t.setView(0, 0, 100, 50);
    QWheelEvent e(QPointF(pointer), QPointF(t.a.mapToGlobal(pointer)), QPoint(), QPoint(0, angle), Qt::NoButton,
                  Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&t.a, &e);
    QVERIFY2(near(t.a.viewWindow(), view), qPrintable(QStringLiteral("%1 %2 %3 %4")
                                                          .arg(t.a.viewX)
                                                          .arg(t.a.viewY)
                                                          .arg(t.a.viewW)
                                                          .arg(t.a.viewH)));
}

void TestImgDispA::drag_data()
{
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<QPoint>("from");
    QTest::addColumn<QPoint>("to");
    QTest::addColumn<bool>("selected");
    QTest::addColumn<QRectF>("selection");
    QTest::addColumn<QRectF>("view");

    const QRectF full(0, 0, 100, 50);
    // Image (60, 40) to (20, 10): normalised to origin (20, 10), size 40 x 30.
    QTest::newRow("left drag, backwards") << int(Qt::NoModifier) << QPoint(120, 80) << QPoint(40, 20) << true
                                          << QRectF(20, 10, 40, 30) << full;
    QTest::newRow("control drag zooms") << int(Qt::ControlModifier) << QPoint(120, 80) << QPoint(40, 20) << true
                                        << QRectF(20, 10, 40, 30) << QRectF(20, 10, 40, 30);
    // A click selects nothing: the area is a point.
    QTest::newRow("click") << int(Qt::NoModifier) << QPoint(50, 50) << QPoint(50, 50) << false
                           << QRectF(25, 25, 0, 0) << full;
    // No height: no selection, and no zoom to a flat area.
    QTest::newRow("control drag, flat") << int(Qt::ControlModifier) << QPoint(40, 20) << QPoint(120, 20) << false
                                        << QRectF(20, 10, 40, 0) << full;
    // The image follows the pointer: 20 widget pixels right are 10 image
    // pixels, 10 down are 5, so the view moves by (-10, -5).
    QTest::newRow("shift drag pans") << int(Qt::ShiftModifier) << QPoint(100, 50) << QPoint(120, 60) << false
                                     << QRectF(0, 0, 0, 0) << QRectF(-10, -5, 100, 50);
}

void TestImgDispA::drag()
{
    QFETCH(int, modifiers);
    QFETCH(QPoint, from);
    QFETCH(QPoint, to);
    QFETCH(bool, selected);
    QFETCH(QRectF, selection);
    QFETCH(QRectF, view);

    Area t(100, 50, 200, 100);
    t.setView(0, 0, 100, 50);
    QSignalSpy newArea(&t.a, &ImgDispA::newAreaSelected);
    dragOn(&t.a, from, to, Qt::KeyboardModifiers(modifiers));
    QCOMPARE(t.a.hasSelection, selected);
    QCOMPARE(newArea.count(), selected ? 1 : 0);
    QCOMPARE(t.a.selecting, false);
    QVERIFY(near(t.a.selectedArea(), selection));
    QVERIFY(near(t.a.viewWindow(), view));
}

void TestImgDispA::rightPressAndRecall()
{
    Area t(100, 50, 200, 100);
    t.setView(0, 0, 100, 50);
    QSignalSpy moved(&t.a, &ImgDispA::mouseMoved);
    QSignalSpy right(&t.a, &ImgDispA::mouseRPressed);

    dragOn(&t.a, QPoint(20, 20), QPoint(60, 40)); // A = image (10, 10, 20, 10)
    dragOn(&t.a, QPoint(100, 60), QPoint(140, 90)); // B = (50, 30, 20, 15); A saved
    mouse(&t.a, QEvent::MouseButtonPress, QPoint(10, 10), Qt::RightButton, Qt::NoModifier);
    QCOMPARE(right.count(), 1);
    QVERIFY(!t.a.hasSelection);
    QVERIFY(near(t.a.selectedArea(), QRectF()));
    mouse(&t.a, QEvent::MouseButtonRelease, QPoint(10, 10), Qt::RightButton, Qt::NoModifier);

    // The right press saved nothing: the last left press saved A.
    t.a.recallOldSelectedArea();
    QVERIFY(t.a.hasSelection);
    QVERIFY(near(t.a.selectedArea(), QRectF(10, 10, 20, 10)));

    // Moving with no button reports the image position; drags did not.
    QCOMPARE(moved.count(), 0);
    mouse(&t.a, QEvent::MouseMove, QPoint(30, 70), Qt::NoButton, Qt::NoModifier);
    QCOMPARE(moved.count(), 1);
    QCOMPARE(moved.at(0).at(0).toDouble(), 15.0);
    QCOMPARE(moved.at(0).at(1).toDouble(), 35.0);
}

QTEST_MAIN(TestImgDispA)
#include "tst_imgdispa.moc"
