#pragma once

#include "view/DispA.h"

class QImage;
class QPainter;

// A plain image area for processed images: a view onto one QImage that the
// wheel zooms about the pointer, with no selection. The image is not owned.
class ProcDispA : public DispA
{
    Q_OBJECT
public:
    explicit ProcDispA(QWidget *parent = nullptr);

    QImage *qimage = nullptr;
    double viewX = 0, viewY = 0, viewW = 0, viewH = 0;

    // Shows an image (or nothing) and resets the view to it.
    void setImage(QImage *img);
    // The whole image; 1 x 1 without one, so that the view never has a zero
    // size to divide by.
    void resetView();

signals:
    void mouseMoved(double x, double y);

public slots:
    void drawOnScreen(QPainter *p);
    void onMousePressed();
    void onMouseReleased();
    void onMouseMoved();
    void onWheelMoved();
};
