#pragma once

#include <QColor>
#include <QObject>
#include <QRectF>
#include <QStringList>
#include <QVector>

class QFont;
class QPainter;

// Text fitted into rectangles, for axes, labels and the colour bar. All
// sizes are point sizes measured on the painter's device.
class DrawText : public QObject
{
    Q_OBJECT
public:
    explicit DrawText(QObject *parent = nullptr);

    // The largest point size at which text, laid out with flags, fits into
    // rect; 0 for an empty text or an empty rectangle.
    static qreal fitBox(QPainter *p, const QRectF &rect, const QFont &font, int flags, const QString &text);

    // Draws text in rect with the alignment flags (the default alignment, or
    // centred, when flags is negative). With fit 1 the painter's font is
    // scaled so that the text fills the rectangle, at most maxPt points when
    // maxPt > 0; otherwise it is drawn in the painter's font.
    void drawFitted(QPainter *p, const QRectF &rect, const QString &text, int flags = -1, int fit = 1,
                    qreal maxPt = 0) const;
    // The rectangle that drawFitted with the same arguments fills with text,
    // so that a caller can keep labels from overlapping before it draws.
    QRectF fittedBounds(QPainter *p, const QRectF &rect, const QString &text, int flags = -1, int fit = 1,
                        qreal maxPt = 0) const;

    // As drawFitted, in a painter rotated by angle degrees about the centre
    // of rect. rect is given on the screen: its corners are carried into the
    // rotated painter, so the text lands in the same place whatever the
    // angle (at 90 degrees a tall box holds text running downwards).
    void drawRotated(QPainter *p, const QRectF &rect, const QString &text, qreal angle, int flags = -1,
                     int fit = 1, qreal maxPt = 0) const;

    // Draws texts[i] in rects[i] (as many as both lists have). With ptSize
    // <= 0 they share one size: 0.9 of the smallest that fits each.
    void drawTexts(QPainter *p, const QVector<QRectF> &rects, const QStringList &texts, int flags = -1,
                   qreal ptSize = 0) const;

    // A small toggle label: a box from (x, y - h) to (x + w - 1, y - 1) in
    // the on or off colour with a frame, and the text right of a square
    // h wide.
    void drawButton(QPainter *p, bool on, const QString &text, int x, int y, int w, int h) const;

    int defaultFlags = -1; // alignment used when a call gives none; -1: centred
    QColor frameColor{0, 220, 220};
    QColor onColor{170, 255, 170};
    QColor offColor{140, 180, 140};
    QColor textColor{0, 0, 0};

private:
    int flagsOr(int flags) const;
    // The painter's font, at the fitted size when fit is 1.
    static QFont fittedFont(QPainter *p, const QRectF &rect, const QString &text, int flags, int fit, qreal maxPt);
};
