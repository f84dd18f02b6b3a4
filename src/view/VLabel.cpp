#include "view/VLabel.h"

#include <QPainter>

VLabel::VLabel(QWidget *parent)
    : QLabel(parent)
{
}

VLabel::VLabel(const QString &text, QWidget *parent)
    : QLabel(parent)
{
    setText(text);
}

void VLabel::setText(const QString &text)
{
    inner.setText(text);
    QLabel::setText(text);
    updateGeometry();
}

QSize VLabel::sizeHint() const
{
    return inner.sizeHint().transposed();
}

QSize VLabel::minimumSizeHint() const
{
    return inner.minimumSizeHint().transposed();
}

void VLabel::paintEvent(QPaintEvent *)
{
    // The frame and background only; the base would lay the text across.
    QPainter p(this);
    drawFrame(&p);
    p.setPen(Qt::black);
    p.rotate(90);
    p.drawText(QRect(0, -width(), height(), width()), Qt::AlignCenter, text());
}
