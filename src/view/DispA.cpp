#include "view/DispA.h"

#include "app/TruncatedInt.h"

#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

DispA::DispA(QWidget *parent)
    : QFrame(parent)
{
    setFrameShape(QFrame::StyledPanel);
    setMouseTracking(true);
}

void DispA::paintEvent(QPaintEvent *)
{
    QPainter p(this);
    cc.setWindow(0, 0, width(), height());
    p.fillRect(rect(), Qt::white);
    emit drawImage1(&p);
    emit drawImage2(&p);
}

void DispA::mouseMoveEvent(QMouseEvent *e)
{
    // A move with Alt held is reserved: nothing follows it.
    if (e->modifiers() & Qt::AltModifier)
        return;
    const QPointF pos = e->position();
    // buttons(), not button(): a move carries no button of its own, and the
    // listeners want to know which are held during a drag.
    m.moveTo(int(pos.x()), int(pos.y()), int(e->buttons()), int(e->modifiers()));
    emit mouseMoved0();
    update();
}

void DispA::mousePressEvent(QMouseEvent *e)
{
    const QPointF pos = e->position();
    m.press(int(pos.x()), int(pos.y()), int(e->button()), int(e->modifiers()));
    emit mousePressed0();
}

void DispA::mouseReleaseEvent(QMouseEvent *e)
{
    const QPointF pos = e->position();
    m.release(int(pos.x()), int(pos.y()), int(e->button()), int(e->modifiers()));
    emit mouseReleased0();
}

void DispA::mouseDoubleClickEvent(QMouseEvent *e)
{
    const QPointF pos = e->position();
    m.doubleClick(int(pos.x()), int(pos.y()), int(e->button()), int(e->modifiers()));
    emit mouseDoubleClicked0();
}

void DispA::wheelEvent(QWheelEvent *e)
{
    wheelSteps = e->angleDelta().y() * 0.125 / 15.0;
    // Away from the user (positive steps) shrinks the view, i.e. zooms in.
    zoomFactor = wheelSteps >= 0 ? 0.9090909090909091 : 1.1;
    const QPointF pos = e->position();
    m.moveTo(int(pos.x()), int(pos.y()), int(e->buttons()), int(e->modifiers()));
    emit wheelMoved0();
}

void DispA::setScreenMousePos(int x, int y)
{
    m.moveTo(x, y, m.button, m.modifiers);
    emit mouseMoved0();
    update();
}

void DispA::setRealMousePos(double x, double y)
{
    setScreenMousePos(truncatedInt(cc.r2sx(x)), truncatedInt(cc.r2sy(y)));
}
