#pragma once

#include "view/ColorScale.h"
#include "view/DispA.h"
#include "view/DrawText.h"

#include <QPixmap>

// The colour bar: shows the colour scale from bottom (lo) to top (hi) and
// lets the user drag either end. The bar is painted into a 20 x 600 pixmap
// (cbar) that is scaled onto the widget, and that the savers write out.
//
// A press picks the nearer end (none on a tie); moving with the button down
// moves it to the pointer's height as a fraction of the widget, emitting
// cBarUpdating() at each step; the release emits cBarUpdated(). The ends are
// not clamped and may cross.
class ColorBar : public DispA, public ColorScale
{
    Q_OBJECT
public:
    explicit ColorBar(QWidget *parent = nullptr);

    enum class End { None, Lo, Hi };

    DrawText dt;
    QPixmap cbar;
    bool dragging = false;
    End dragged = End::None;

signals:
    void cBarUpdated();
    void cBarUpdating();

public slots:
    void paintCBar();
    void draw1(QPainter *p);
    void onMouseMoved();
    void onMousePressed();
    void onMouseReleased();
    // The colour at a widget height h (pixels from the bottom).
    QColor colorOfH(int h) const;

protected:
    void scaleChanged() override;
    // The pixmap's rows depend on the widget's height: painted anew.
    void resizeEvent(QResizeEvent *e) override;

private:
    // The pointer's height as a fraction of the widget, from the bottom.
    double pointerFraction() const;
};
