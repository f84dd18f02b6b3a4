#pragma once

#include "view/DispA.h"

#include <QImage>
#include <QRectF>

class Analyzed2DRes;
class QPainter;
class TiffData;

// The image area: one frame of a stack (or, in its place, a result map laid
// over it), a movable view onto it, and the selected area.
//
// The view (viewX, viewY, viewW, viewH) is the part of the image, in image
// pixels, that fills the whole widget; it may reach beyond the image, which
// shows white there. Image position of a widget pixel (mx, my) of a W x H
// widget: (mx / W * viewW + viewX, my / H * viewH + viewY), y running down.
//
// Mouse, by MouseC::mode: left (0) drags a selection, Control-left (2) drags
// one and zooms to it, Shift-left (1) pans, right (8) clears the selection.
// The wheel zooms about the pointer; at the left or right edge it stretches
// the height alone, at the top or bottom edge the width alone.
//
// Neither the frame nor the overlay is owned: whoever deletes a frame that
// is on show detaches it first with setData(nullptr).
class ImgDispA : public DispA
{
    Q_OBJECT
public:
    explicit ImgDispA(QWidget *parent = nullptr);

    TiffData *data = nullptr;
    // The frame's display image, fetched again at every use: rendering
    // replaces a frame's image, so a pointer kept from an earlier paint could
    // be stale.
    QImage *qimage = nullptr;
    bool showOverLayer = false;
    // The map shown in place of the frame while showOverLayer is set; not
    // owned, and a map without an image leaves the frame on show.
    Analyzed2DRes *overLayer = nullptr;
    double viewX = 0, viewY = 0, viewW = 0, viewH = 0;
    bool selecting = false;
    bool hasSelection = false;
    double selX = 0, selY = 0, selW = 0, selH = 0;
    double oldSelX = 0, oldSelY = 0, oldSelW = 0, oldSelH = 0;
    bool resetMax = false;

    // Shows a frame (or nothing for null). The view is reset only when there
    // is none yet, so stepping through a stack keeps the zoom.
    void setData(TiffData *frame);
    // The image drawn now: the overlay's when it is shown, else the frame's
    // (null without either).
    QImage *currentImage();
    // A copy of the shown part of the current image, from the truncated view
    // origin to the truncated far corner; parts outside the image are 0.
    QImage viewedImage();

    QRectF viewWindow() const { return {viewX, viewY, viewW, viewH}; }
    QRectF selectedArea() const { return {selX, selY, selW, selH}; }
    // Image position of a widget pixel.
    QPointF imagePos(double mx, double my) const;
    // Sets cc to the widget and the view as a paint does, so that a pointer
    // placed in image coordinates before the next paint lands where meant.
    void setupCoords();

    // Zooms one axis of a view by factor about the point at fraction frac
    // of it: that point stays where it is on the screen.
    static void zoomAxis(double &origin, double &size, double frac, double factor);

signals:
    void mouseMoved(double x, double y);
    void mouseDragged(double x, double y);
    void newAreaSelected();
    void mouseRPressed();

public slots:
    void onMousePressed();
    void onMouseReleased();
    void onMouseMoved();
    void onWheelMoved();
    void drawImage(QPainter *p);
    // Fits the whole image into the widget, centred and keeping its aspect
    // ratio, or with resetMax fills the widget with it. Nothing without a
    // frame.
    void resetImageViewWindow();
    void setShowOverLayer(bool f);
    // The rectangle from (x1, y1) to (x2, y2) becomes the selection, as the
    // batch and the "Full" button give it.
    void setSelectedArea(int x1, int y1, int x2, int y2);
    // Zooms to the selection, if there is one with an area.
    void setViewWAsSelectedArea();
    // The selection saved by the last left press comes back.
    void recallOldSelectedArea();
    void setResetMax(bool f);

private:
    // The overlay's prepared image and its value range (the map's own, fixed
    // or automatic); null when there is none.
    QImage *overlayImage(double *vMin, double *vMax) const;
    // Makes the selection's origin its smaller corner and its size positive.
    void normaliseSelection();
};
