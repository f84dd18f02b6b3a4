#include "view/ProcDispA.h"

#include "view/ImgDispA.h"

#include <QImage>
#include <QPainter>

ProcDispA::ProcDispA(QWidget *parent)
    : DispA(parent)
{
    connect(this, &DispA::drawImage1, this, &ProcDispA::drawOnScreen);
    connect(this, &DispA::mousePressed0, this, &ProcDispA::onMousePressed);
    connect(this, &DispA::mouseReleased0, this, &ProcDispA::onMouseReleased);
    connect(this, &DispA::mouseMoved0, this, &ProcDispA::onMouseMoved);
    connect(this, &DispA::wheelMoved0, this, &ProcDispA::onWheelMoved);
    resetView();
}

void ProcDispA::setImage(QImage *img)
{
    qimage = img;
    resetView();
}

void ProcDispA::resetView()
{
    const bool has = qimage && !qimage->isNull();
    viewX = viewY = 0;
    viewW = has ? qimage->width() : 1;
    viewH = has ? qimage->height() : 1;
    update();
}

void ProcDispA::drawOnScreen(QPainter *p)
{
    if (qimage && !qimage->isNull())
        p->drawImage(QRectF(0, 0, width(), height()), *qimage, QRectF(viewX, viewY, viewW, viewH));
    cc.setWindow(0, 0, width(), height());
    cc.setRealRange(viewX, viewY, viewX + viewW, viewY + viewH);
}

// Press and release do nothing: this area has no selection.
void ProcDispA::onMousePressed() {}

void ProcDispA::onMouseReleased() {}

void ProcDispA::onMouseMoved()
{
    emit mouseMoved(m.x / double(width()) * viewW + viewX, m.y / double(height()) * viewH + viewY);
}

void ProcDispA::onWheelMoved()
{
    if (!zoomEnabled)
        return;
    ImgDispA::zoomAxis(viewX, viewW, m.x / double(width()), zoomFactor);
    ImgDispA::zoomAxis(viewY, viewH, m.y / double(height()), zoomFactor);
    update();
}
