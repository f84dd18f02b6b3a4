#pragma once

#include "view/ChCoord.h"
#include "view/MouseC.h"

#include <QFrame>

class QPainter;

// A framed drawing surface with no content of its own: on every paint it
// hands its painter to whoever listens (drawImage1 for the picture,
// drawImage2 for what lies over it), and it turns mouse events into plain
// signals, keeping the mouse's state in `m`. `cc` converts coordinates; its
// window is set to the widget, y running down, before each paint.
class DispA : public QFrame
{
    Q_OBJECT
public:
    explicit DispA(QWidget *parent = nullptr);

    bool zoomEnabled = true;
    bool dragEnabled = true;
    ChCoord cc;
    MouseC m;
    double wheelSteps = 0.0; // notches of the last wheel event
    double zoomFactor = 1.0; // 1/1.1 for a turn away from the user, else 1.1

signals:
    void drawImage1(QPainter *p);
    void drawImage2(QPainter *p);
    void mouseMoved0();
    void mousePressed0();
    void mouseReleased0();
    void mouseDoubleClicked0();
    void wheelMoved0();

public slots:
    // Moves the pointer as if the mouse had gone there: in screen pixels, or
    // in real units through cc (truncated).
    void setScreenMousePos(int x, int y);
    void setRealMousePos(double x, double y);

protected:
    void paintEvent(QPaintEvent *e) override;
    void mouseMoveEvent(QMouseEvent *e) override;
    void mousePressEvent(QMouseEvent *e) override;
    void mouseReleaseEvent(QMouseEvent *e) override;
    void mouseDoubleClickEvent(QMouseEvent *e) override;
    void wheelEvent(QWheelEvent *e) override;
};
