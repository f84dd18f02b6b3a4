#include "view/VPushButton.h"

#include <QStyleOptionButton>
#include <QStylePainter>

VPushButton::VPushButton(QWidget *parent)
    : QPushButton(parent)
{
}

VPushButton::VPushButton(const QString &text, QWidget *parent)
    : QPushButton(parent)
{
    setText(text);
}

void VPushButton::setText(const QString &text)
{
    inner.setText(text);
    QPushButton::setText(text);
    updateGeometry();
}

QSize VPushButton::sizeHint() const
{
    return inner.sizeHint().transposed();
}

QSize VPushButton::minimumSizeHint() const
{
    return inner.minimumSizeHint().transposed();
}

void VPushButton::paintEvent(QPaintEvent *)
{
    // The button as the style draws it, but without its text lying across;
    // then the text turned by 90 degrees.
    QStylePainter sp(this);
    QStyleOptionButton opt;
    initStyleOption(&opt);
    opt.text.clear();
    sp.drawControl(QStyle::CE_PushButton, opt);

    sp.setPen(Qt::black);
    sp.rotate(90);
    sp.drawText(QRect(0, -width(), height(), width()), Qt::AlignCenter, text());
}
