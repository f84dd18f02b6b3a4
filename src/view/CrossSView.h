#pragma once

#include "spectrum/Spectrum.h"
#include "view/DispA.h"
#include "view/DrawText.h"

class QPainter;

// A cross section through the image at the pointer: the values along a row
// (horizontal) or a column (vertical, drawn standing, its values running to
// the right) with a mark at the pointer's position along it.
class CrossSView : public DispA
{
    Q_OBJECT
public:
    explicit CrossSView(QWidget *parent = nullptr);

    // Copies the cut into data's own storage, so that refilling it on every
    // pointer move allocates nothing once the view has seen a full row.
    void setData(const Spectrum &s);

    DrawText dt;
    Spectrum data;
    bool vertical = false;
    int pos = 0; // along the abscissa of data

public slots:
    void draw(QPainter *p);

private:
    QPolygon line; // screen points, kept between paints
};
