// Body's view slots: what follows a change of the colour bar.
#include "app/Body.h"

#include "ui_Body.h"
#include "view/ColorBar.h"

#include <QDebug>

void Body::cBarUpdating()
{
    // TODO: rebuild the display image of what is shown (the shift map, the
    // Analyzer's current map, or the current frame of the I1 or I0 stack)
    // once the stacks and the image area exist. Until then only the area is
    // repainted.
    ui->dispA->update();
}

void Body::cBarUpdated()
{
    qDebug().noquote() << "cBarUpdated" << ui->CBar->lo() << ui->CBar->hi();
    // TODO: as cBarUpdating, but rebuild every frame of the shown stack.
    ui->dispA->update();
}
