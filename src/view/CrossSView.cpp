#include "view/CrossSView.h"

#include <QPainter>

CrossSView::CrossSView(QWidget *parent)
    : DispA(parent)
{
    zoomEnabled = false;
    dragEnabled = false;
    connect(this, &DispA::drawImage1, this, &CrossSView::draw);
}

void CrossSView::setData(const Spectrum &s)
{
    // reset() keeps the room of the unshared list; a plain assignment would
    // share the source's list and detach on the source's next refill.
    data.reset();
    data.reserve(s.size());
    for (const QPointF &pt : s.points)
        data.points.append(pt);
    data.xMin = s.xMin;
    data.xMax = s.xMax;
    data.yMin = s.yMin;
    data.yMax = s.yMax;
}

void CrossSView::draw(QPainter *p)
{
    cc.setWindow(0, height(), width(), 0);
    const int n = data.size();
    if (n == 0)
        return;
    if (vertical)
        cc.setRealRange(data.yMin, data.xMin, data.yMax, data.xMax);
    else
        cc.setRealRange(data.xMin, data.yMin, data.xMax, data.yMax);
    line.resize(n);
    for (int i = 0; i < n; ++i) {
        const QPointF &pt = data.points.at(i);
        const double sx = vertical ? cc.r2sx(pt.y()) : cc.r2sx(pt.x());
        const double sy = vertical ? cc.r2sy(pt.x()) : cc.r2sy(pt.y());
        line[i] = QPoint(int(sx), int(sy));
    }
    p->drawPolyline(line);
    p->setPen(QColor(192, 192, 0));
    if (vertical) {
        const int y = int(cc.r2sy(pos));
        p->drawLine(0, y, width(), y);
    } else {
        const int x = int(cc.r2sx(pos));
        p->drawLine(x, 0, x, height());
    }
}
