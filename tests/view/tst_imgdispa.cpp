#include "images/TiffData.h"
#include "view/ImgDispA.h"

#include <QSignalSpy>
#include <QtTest>

// The image area driven by real mouse and wheel events. The widget is 200 x 100
// and shows the view (0, 0, 100, 50): widget (mx, my) is image (mx / 2, my / 2).
class TestImgDispA : public QObject
{
    Q_OBJECT
private slots:
    void gesture_data();
    void gesture();
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

// Showing the view (0, 0, 100, 50) until told otherwise.
struct Area {
    TiffData frame;
    ImgDispA a;
    Area(int iw = 100, int ih = 50, int ww = 200, int wh = 100)
    {
        frame.allocate(quint32(iw), quint32(ih), PixelU16);
        a.resize(ww, wh);
        a.setData(&frame);
        std::tie(a.viewX, a.viewY, a.viewW, a.viewH) = std::make_tuple(0.0, 0.0, 100.0, 50.0);
    }
};

// Within 1e-9 on every side; the message shows what came.
void compareRect(const QRectF &got, const QRectF &want)
{
    const QLineF d(got.topLeft() - want.topLeft(), QPointF(got.width() - want.width(), got.height() - want.height()));
    QVERIFY2(qAbs(d.x1()) < 1e-9 && qAbs(d.y1()) < 1e-9 && qAbs(d.x2()) < 1e-9 && qAbs(d.y2()) < 1e-9,
             qPrintable(QStringLiteral("%1 %2 %3 %4").arg(got.x()).arg(got.y()).arg(got.width()).arg(got.height())));
}
} // namespace

void TestImgDispA::gesture_data()
{
    // wheel: turned by `to` at `from`; drag, control, shift: a left drag with
    // those keys; fit, fill: resetImageViewWindow, image size `from` in a
    // widget of size `to`.
    QTest::addColumn<QString>("how");
    QTest::addColumn<QPoint>("from");
    QTest::addColumn<QPoint>("to");
    QTest::addColumn<QRectF>("selection"); // selected when not empty
    QTest::addColumn<QRectF>("view");

    const QPoint away(0, 120), towards(0, -120);
    const QRectF full(0, 0, 100, 50), none(0, 0, 0, 0);
    // Away from the user: factor 1/1.1, sizes 100/1.1, 50/1.1; the image
    // point under the pointer keeps its place.
    const double w = 100 / 1.1, h = 50 / 1.1;
    // Centre (100, 50) = image (50, 25): origin = point - 0.5 * new size.
    QTest::newRow("wheel centre") << "wheel" << QPoint(100, 50) << away << none << QRectF(50 - w / 2, 25 - h / 2, w, h);
    // x at exactly 10 % of the width: an edge handle, only the height scales.
    QTest::newRow("wheel left edge") << "wheel" << QPoint(20, 50) << away << none << QRectF(0, 25 - h / 2, 100, h);
    // A corner counts as the left or right edge: height about image y 2.5.
    QTest::newRow("wheel corner") << "wheel" << QPoint(10, 5) << away << none << QRectF(0, 2.5 - 0.05 * h, 100, h);
    QTest::newRow("wheel top edge") << "wheel" << QPoint(100, 5) << away << none << QRectF(50 - w / 2, 0, w, 50);
    // Towards the user at a quarter: factor 1.1 about image (25, 12.5): 25 - 0.25 * 110, 12.5 - 0.25 * 55.
    QTest::newRow("wheel zoom out") << "wheel" << QPoint(50, 25) << towards << none << QRectF(-2.5, -1.25, 110, 55);

    // Image (60, 40) to (20, 10): normalised to origin (20, 10), size 40 x 30.
    const QRectF a(20, 10, 40, 30);
    QTest::newRow("left drag, backwards") << "drag" << QPoint(120, 80) << QPoint(40, 20) << a << full;
    QTest::newRow("control drag zooms") << "control" << QPoint(120, 80) << QPoint(40, 20) << a << a;
    // A click is a point: nothing selected.
    QTest::newRow("click") << "drag" << QPoint(50, 50) << QPoint(50, 50) << QRectF(25, 25, 0, 0) << full;
    // No height: no selection, and no zoom to a flat area.
    QTest::newRow("control drag, flat") << "control" << QPoint(40, 20) << QPoint(120, 20) << QRectF(20, 10, 40, 0)
                                        << full;
    // The image follows the pointer: widget (20, 10) is image (10, 5).
    QTest::newRow("shift drag pans") << "shift" << QPoint(100, 50) << QPoint(120, 60) << none
                                     << QRectF(-10, -5, 100, 50);

    // 100 x 100 in 200 x 100: sx = 2, sy = 1. Fit: pad x = (200 * 100/100 -
    // 100) / 2 = 50. Fill: pad y = (100 * 100/200 - 100) / 2 = -25.
    const QPoint square(100, 100);
    QTest::newRow("wide widget, fit") << "fit" << square << QPoint(200, 100) << none << QRectF(-50, 0, 200, 100);
    QTest::newRow("wide widget, fill") << "fill" << square << QPoint(200, 100) << none << QRectF(0, 25, 100, 50);
    // 100 x 100 in 100 x 200: sx = 1, sy = 2. Fit: pad y = (200 - 100) / 2.
    // Fill: pad x = (100 * 100/200 - 100) / 2 = -25.
    QTest::newRow("tall widget, fit") << "fit" << square << QPoint(100, 200) << none << QRectF(0, -50, 100, 200);
    QTest::newRow("tall widget, fill") << "fill" << square << QPoint(100, 200) << none << QRectF(25, 0, 50, 100);
    // Equal scales take the second branch either way: pad y = 0.
    QTest::newRow("same aspect, fill") << "fill" << QPoint(64, 32) << QPoint(200, 100) << none << QRectF(0, 0, 64, 32);
}

void TestImgDispA::gesture()
{
    QFETCH(QString, how);
    QFETCH(QPoint, from);
    QFETCH(QPoint, to);
    QFETCH(QRectF, selection);
    QFETCH(QRectF, view);

    const bool reset = how == "fit" || how == "fill";
    Area t = reset ? Area(from.x(), from.y(), to.x(), to.y()) : Area();
    QSignalSpy newArea(&t.a, &ImgDispA::newAreaSelected);
    if (reset) {
        t.a.setResetMax(how == "fill");
        t.a.resetImageViewWindow();
    } else if (how == "wheel") {
        QWheelEvent e(QPointF(from), QPointF(t.a.mapToGlobal(from)), QPoint(), to, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&t.a, &e);
    } else {
        dragOn(&t.a, from, to,
               how == "control" ? Qt::ControlModifier : how == "shift" ? Qt::ShiftModifier : Qt::NoModifier);
    }
    QCOMPARE(t.a.hasSelection, !selection.isEmpty());
    QCOMPARE(newArea.count(), selection.isEmpty() ? 0 : 1);
    QVERIFY(!t.a.selecting);
    compareRect(t.a.selectedArea(), selection);
    compareRect(t.a.viewWindow(), view);
}

void TestImgDispA::rightPressAndRecall()
{
    Area t;
    QSignalSpy moved(&t.a, &ImgDispA::mouseMoved);
    QSignalSpy right(&t.a, &ImgDispA::mouseRPressed);

    dragOn(&t.a, QPoint(20, 20), QPoint(60, 40)); // A = image (10, 10, 20, 10)
    dragOn(&t.a, QPoint(100, 60), QPoint(140, 90)); // B = (50, 30, 20, 15); A saved
    mouse(&t.a, QEvent::MouseButtonPress, QPoint(10, 10), Qt::RightButton, Qt::NoModifier);
    QCOMPARE(right.count(), 1);
    QVERIFY(!t.a.hasSelection);
    compareRect(t.a.selectedArea(), QRectF());
    mouse(&t.a, QEvent::MouseButtonRelease, QPoint(10, 10), Qt::RightButton, Qt::NoModifier);

    // The right press saved nothing: the last left press saved A.
    t.a.recallOldSelectedArea();
    QVERIFY(t.a.hasSelection);
    compareRect(t.a.selectedArea(), QRectF(10, 10, 20, 10));

    // Moving with no button reports the image position; drags did not.
    QCOMPARE(moved.count(), 0);
    mouse(&t.a, QEvent::MouseMove, QPoint(30, 70), Qt::NoButton, Qt::NoModifier);
    QCOMPARE(moved.count(), 1);
    QCOMPARE(QPointF(moved.at(0).at(0).toDouble(), moved.at(0).at(1).toDouble()), QPointF(15, 35));
}

QTEST_MAIN(TestImgDispA)
#include "tst_imgdispa.moc"
