#include "view/ColorBar.h"

#include "app/TruncatedInt.h"

#include <QPainter>

#include <cmath>

namespace {
constexpr int PixmapW = 20;
constexpr int PixmapH = 600;
const QColor EndPen(0, 192, 255);
const QColor TextPen(0, 255, 192);
constexpr qreal TextLength = 95;
constexpr qreal TextMaxPt = 10;

double clamp01(double r)
{
    if (!(r > 0.0))
        return 0.0;
    return r > 1.0 ? 1.0 : r;
}
} // namespace

ColorBar::ColorBar(QWidget *parent)
    : DispA(parent)
    , cbar(PixmapW, PixmapH)
{
    connect(this, &DispA::drawImage1, this, &ColorBar::draw1);
    connect(this, &DispA::mouseMoved0, this, &ColorBar::onMouseMoved);
    connect(this, &DispA::mousePressed0, this, &ColorBar::onMousePressed);
    connect(this, &DispA::mouseReleased0, this, &ColorBar::onMouseReleased);
    paintCBar();
}

QColor ColorBar::colorOfH(int h) const
{
    const double r = clamp01(double(h) / double(height()));
    return colorOfRatio(scaled(r, ends()));
}

void ColorBar::paintCBar()
{
    const int w = cbar.width();
    const int H = cbar.height();
    const double wh = height();
    QPainter p(&cbar);
    // Pixmap row i (from the bottom) takes the colour of widget height
    // i x H / wh. On purpose: the rows meet the fractions a drag sets only on
    // a bar 600 pixels high, and a lower bar shows its top colour from below
    // its top. truncatedInt: a bar not laid out yet has no height.
    for (int i = 0; i < H; ++i) {
        p.setPen(colorOfH(truncatedInt(double(i) * H / wh)));
        p.drawLine(0, H - 1 - i, w - 1, H - 1 - i);
    }

    const Ends e = ends();
    p.setPen(EndPen);
    for (double end : {e.hi, e.lo}) {
        const double y = std::trunc((1.0 - end) * H);
        if (std::abs(y) < 1e6) // an end dragged far off is simply not seen
            p.drawLine(0, int(y), w - 1, int(y));
    }

    p.setPen(TextPen);
    const auto label = [&](double v, qreal centreY, int align) {
        const QRectF box(w / 4.0, centreY - TextLength / 2, w / 2.0, TextLength);
        dt.drawRotated(&p, box, QString::number(v, 'g', 6), 90, align | Qt::AlignVCenter, 1, TextMaxPt);
    };
    label(vMax, 50, Qt::AlignLeft);
    label(vMin, H - 50, Qt::AlignRight);
    if (dragging && dragged != End::None) {
        const double end = dragged == End::Hi ? e.hi : e.lo;
        label((vMax - vMin) * end + vMin, H / 2.0, Qt::AlignRight);
    }
}

void ColorBar::draw1(QPainter *p)
{
    p->drawPixmap(rect(), cbar);
}

double ColorBar::pointerFraction() const
{
    const double bh = height();
    return (bh - m.y) / bh;
}

void ColorBar::onMousePressed()
{
    const double f = pointerFraction();
    const Ends e = ends();
    const double dLo = std::abs(e.lo - f);
    const double dHi = std::abs(e.hi - f);
    if (dLo > dHi)
        dragged = End::Hi;
    else if (dHi > dLo)
        dragged = End::Lo;
    else
        dragged = End::None;
    dragging = dragged != End::None;
    paintCBar();
    update();
}

void ColorBar::onMouseMoved()
{
    if (!m.pressed || !dragging)
        return;
    const double f = pointerFraction();
    const Ends e = ends();
    if (dragged == End::Hi)
        setEnds(e.lo, f);
    else
        setEnds(f, e.hi);
    emit cBarUpdating();
}

void ColorBar::onMouseReleased()
{
    emit cBarUpdated();
    dragging = false;
    dragged = End::None;
    // Takes the dragged end's value off the bar.
    paintCBar();
    update();
}

void ColorBar::resizeEvent(QResizeEvent *e)
{
    DispA::resizeEvent(e);
    paintCBar();
}

void ColorBar::scaleChanged()
{
    paintCBar();
    update();
}
