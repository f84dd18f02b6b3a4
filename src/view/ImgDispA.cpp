#include "view/ImgDispA.h"

#include "analysis/Analyzed2DRes.h"

#include "app/Globals.h"
#include "images/TiffData.h"
#include "view/ColorScale.h"

#include <QPainter>

#include <cmath>
#include <utility>

namespace {
// The central band of an axis in which the wheel scales; outside it the
// pointer is on an edge handle.
bool inCentralBand(double frac)
{
    return frac > 0.1 && frac < 0.9;
}
} // namespace

ImgDispA::ImgDispA(QWidget *parent)
    : DispA(parent)
{
    connect(this, &DispA::drawImage1, this, &ImgDispA::drawImage);
    connect(this, &DispA::mousePressed0, this, &ImgDispA::onMousePressed);
    connect(this, &DispA::mouseReleased0, this, &ImgDispA::onMouseReleased);
    connect(this, &DispA::mouseMoved0, this, &ImgDispA::onMouseMoved);
    connect(this, &DispA::wheelMoved0, this, &ImgDispA::onWheelMoved);
}

void ImgDispA::setData(TiffData *frame)
{
    data = frame;
    qimage = frame ? frame->image : nullptr;
    if (viewW == 0)
        resetImageViewWindow();
    update();
}

QImage *ImgDispA::overlayImage(double *vMin, double *vMax) const
{
    if (!overLayer || !overLayer->imgValid || !overLayer->img())
        return nullptr;
    *vMin = overLayer->effectiveMin();
    *vMax = overLayer->effectiveMax();
    return overLayer->img();
}

QImage *ImgDispA::currentImage()
{
    if (showOverLayer && overLayer) {
        double lo = 0, hi = 0;
        if (QImage *img = overlayImage(&lo, &hi))
            return img;
    }
    if (!data)
        return qimage = nullptr;
    if (!data->image)
        data->render();
    return qimage = data->image;
}

QImage ImgDispA::viewedImage()
{
    const QImage *img = currentImage();
    if (!img)
        return QImage();
    const int x0 = int(viewX);
    const int y0 = int(viewY);
    const int x1 = int(viewX + viewW);
    const int y1 = int(viewY + viewH);
    return img->copy(x0, y0, x1 - x0, y1 - y0);
}

QPointF ImgDispA::imagePos(double mx, double my) const
{
    return {mx / width() * viewW + viewX, my / height() * viewH + viewY};
}

void ImgDispA::zoomAxis(double &origin, double &size, double frac, double factor)
{
    const double at = origin + frac * size;
    size *= factor;
    origin = at - frac * size;
}

void ImgDispA::drawImage(QPainter *p)
{
    const QImage *src = nullptr;
    if (showOverLayer && overLayer) {
        double lo = 0, hi = 0;
        src = overlayImage(&lo, &hi);
        // A map is coloured by its own range: the bar says so.
        if (src && gColorBar)
            gColorBar->setValueRange(lo, hi);
    }
    if (!src)
        src = currentImage();
    if (src)
        p->drawImage(QRectF(0, 0, width(), height()), *src, QRectF(viewX, viewY, viewW, viewH));
    setupCoords();
}

void ImgDispA::setupCoords()
{
    cc.setWindow(0, 0, width(), height());
    cc.setRealRange(viewX, viewY, viewX + viewW, viewY + viewH);
}

void ImgDispA::resetImageViewWindow()
{
    if (!data)
        return;
    const double iw = data->width;
    const double ih = data->height;
    const double W = width();
    const double H = height();
    const double sx = iw > 0 ? W / iw : 1.0;
    const double sy = ih > 0 ? H / ih : 1.0;
    // Without resetMax the scale that fits (the smaller) decides and the
    // other axis is padded on both sides; with it the larger decides and the
    // image is cut on the other axis instead (pad negative).
    if ((!resetMax && sx > sy) || (resetMax && !(sx > sy))) {
        const double pad = (W * (ih / H) - iw) * 0.5;
        viewX = -pad;
        viewY = 0;
        viewW = iw + 2 * pad;
        viewH = ih;
    } else {
        const double pad = (H * (iw / W) - ih) * 0.5;
        viewX = 0;
        viewY = -pad;
        viewW = iw;
        viewH = ih + 2 * pad;
    }
    update();
}

void ImgDispA::setShowOverLayer(bool f)
{
    showOverLayer = f;
    update();
}

void ImgDispA::normaliseSelection()
{
    if (selW < 0) {
        selX += selW;
        selW = -selW;
    }
    if (selH < 0) {
        selY += selH;
        selH = -selH;
    }
}

void ImgDispA::setSelectedArea(int x1, int y1, int x2, int y2)
{
    selX = x1;
    selY = y1;
    selW = x2 - x1;
    selH = y2 - y1;
    hasSelection = true;
    update();
}

void ImgDispA::setViewWAsSelectedArea()
{
    // A selection without area would make a view of zero size, which maps
    // every point to infinity.
    if (!hasSelection || selW == 0 || selH == 0)
        return;
    viewX = selX;
    viewY = selY;
    viewW = selW;
    viewH = selH;
    update();
}

void ImgDispA::recallOldSelectedArea()
{
    selX = oldSelX;
    selY = oldSelY;
    selW = oldSelW;
    selH = oldSelH;
    hasSelection = selW != 0 && selH != 0;
    update();
}

void ImgDispA::setResetMax(bool f)
{
    resetMax = f;
}

void ImgDispA::onMousePressed()
{
    const int mode = MouseC::mode(m.pressButton, m.pressModifiers);
    if (mode == 0 || mode == 2) {
        selecting = true;
        oldSelX = selX;
        oldSelY = selY;
        oldSelW = selW;
        oldSelH = selH;
        const QPointF at = imagePos(m.pressX, m.pressY);
        selX = at.x();
        selY = at.y();
        selW = selH = 0;
    }
    if (mode == 8) {
        selecting = false;
        hasSelection = false;
        selX = selY = selW = selH = 0;
        emit mouseRPressed();
    }
    update();
}

void ImgDispA::onMouseMoved()
{
    const QPointF at = imagePos(m.x, m.y);
    if (!m.pressed) {
        emit mouseMoved(at.x(), at.y());
        return;
    }
    if (!currentImage())
        return;
    const int mode = MouseC::mode(m.button, m.modifiers);
    if ((mode == 0 || mode == 2) && selecting) {
        selW = at.x() - selX;
        selH = at.y() - selY;
    } else if (mode == 1 && dragEnabled) {
        // The image follows the pointer: the view moves the other way.
        viewX -= (m.x - m.prevX) / double(width()) * viewW;
        viewY -= (m.y - m.prevY) / double(height()) * viewH;
    }
    emit mouseDragged(at.x(), at.y());
}

void ImgDispA::onMouseReleased()
{
    const int mode = MouseC::mode(m.releaseButton, m.releaseModifiers);
    if ((mode != 0 && mode != 2) || !selecting)
        return;
    selecting = false;
    const bool wide = selX != selX + selW;
    const bool high = selY != selY + selH;
    if (wide && high) {
        normaliseSelection();
        hasSelection = true;
        if (mode == 2) {
            viewX = selX;
            viewY = selY;
            viewW = selW;
            viewH = selH;
        }
        emit newAreaSelected();
    }
    update();
}

void ImgDispA::onWheelMoved()
{
    if (!zoomEnabled)
        return;
    const double fx = m.x / double(width());
    const double fy = m.y / double(height());
    const bool midX = inCentralBand(fx);
    const bool midY = inCentralBand(fy);
    if (midX)
        zoomAxis(viewX, viewW, fx, zoomFactor);
    if (!midX || midY)
        zoomAxis(viewY, viewH, fy, zoomFactor);
    update();
}
