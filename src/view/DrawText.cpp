#include "view/DrawText.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QTransform>

#include <algorithm>

namespace {
// Text is measured once at this size and scaled; glyph metrics are close
// enough to linear for fitting labels.
constexpr qreal MeasurePt = 100.0;
}

DrawText::DrawText(QObject *parent)
    : QObject(parent)
{
}

int DrawText::flagsOr(int flags) const
{
    if (flags >= 0)
        return flags;
    return defaultFlags >= 0 ? defaultFlags : int(Qt::AlignCenter);
}

qreal DrawText::fitBox(QPainter *p, const QRectF &rect, const QFont &font, int flags, const QString &text)
{
    if (text.isEmpty() || rect.width() <= 0 || rect.height() <= 0)
        return 0;
    QFont f(font);
    f.setPointSizeF(MeasurePt);
    const QFontMetricsF fm = p && p->device() ? QFontMetricsF(f, p->device()) : QFontMetricsF(f);
    // Alignment does not change the size of the text, line breaks do.
    const QRectF box = fm.boundingRect(QRectF(0, 0, 1e6, 1e6), flags & ~Qt::AlignVertical_Mask & ~Qt::AlignHorizontal_Mask, text);
    if (box.width() <= 0 || box.height() <= 0)
        return 0;
    return MeasurePt * std::min(rect.width() / box.width(), rect.height() / box.height());
}

QFont DrawText::fittedFont(QPainter *p, const QRectF &rect, const QString &text, int flags, int fit, qreal maxPt)
{
    QFont font = p->font();
    if (fit == 1) {
        qreal pt = fitBox(p, rect, font, flags, text);
        if (maxPt > 0)
            pt = std::min(pt, maxPt);
        if (pt > 0)
            font.setPointSizeF(pt);
    }
    return font;
}

void DrawText::drawFitted(QPainter *p, const QRectF &rect, const QString &text, int flags, int fit, qreal maxPt) const
{
    const int f = flagsOr(flags);
    p->save();
    p->setFont(fittedFont(p, rect, text, f, fit, maxPt));
    p->drawText(rect, f, text);
    p->restore();
}

QRectF DrawText::fittedBounds(QPainter *p, const QRectF &rect, const QString &text, int flags, int fit,
                              qreal maxPt) const
{
    const int f = flagsOr(flags);
    const QFont font = fittedFont(p, rect, text, f, fit, maxPt);
    const QFontMetricsF fm = p->device() ? QFontMetricsF(font, p->device()) : QFontMetricsF(font);
    return fm.boundingRect(rect, f, text);
}

void DrawText::drawRotated(QPainter *p, const QRectF &rect, const QString &text, qreal angle, int flags, int fit,
                           qreal maxPt) const
{
    QTransform t;
    t.translate(rect.center().x(), rect.center().y());
    t.rotate(angle);
    // The same rectangle as seen from the rotated painter: its corners carried
    // back through the rotation (exact for multiples of 90 degrees).
    const QRectF local = t.inverted().mapRect(rect);
    p->save();
    p->setTransform(t, true);
    drawFitted(p, local, text, flags, fit, maxPt);
    p->restore();
}

void DrawText::drawTexts(QPainter *p, const QVector<QRectF> &rects, const QStringList &texts, int flags,
                         qreal ptSize) const
{
    const int f = flagsOr(flags);
    const qsizetype n = std::min(rects.size(), texts.size());
    qreal pt = ptSize;
    if (pt <= 0) {
        qreal smallest = -1;
        for (qsizetype i = 0; i < n; ++i) {
            const qreal s = fitBox(p, rects.at(i), p->font(), f, texts.at(i));
            if (s > 0 && (smallest < 0 || s < smallest))
                smallest = s;
        }
        pt = smallest > 0 ? 0.9 * smallest : 0;
    }
    p->save();
    if (pt > 0) {
        QFont font = p->font();
        font.setPointSizeF(pt);
        p->setFont(font);
    }
    for (qsizetype i = 0; i < n; ++i)
        p->drawText(rects.at(i), f, texts.at(i));
    p->restore();
}

void DrawText::drawButton(QPainter *p, bool on, const QString &text, int x, int y, int w, int h) const
{
    p->save();
    const QRect box(QPoint(x, y - h), QPoint(x + w - 1, y - 1));
    p->fillRect(box, on ? onColor : offColor);
    p->setPen(frameColor);
    p->drawRect(box);
    p->setPen(textColor);
    drawFitted(p, QRectF(x + 1.2 * h, y - 0.95 * h, w - 1.2 * h, 0.9 * h), text, Qt::AlignLeft | Qt::AlignVCenter, 1);
    p->restore();
}
