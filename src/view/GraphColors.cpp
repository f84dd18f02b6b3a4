#include "view/GraphColors.h"

#include <QVector>

namespace {
QVector<QColor> graphColors;
}

void initGraphColors()
{
    graphColors = {
        QColor(255, 255, 255), QColor(0, 255, 0),   QColor(0, 0, 255),   QColor(255, 200, 0), QColor(255, 0, 200),
        QColor(200, 255, 0),   QColor(200, 0, 255), QColor(0, 255, 200), QColor(0, 200, 255),
    };
}

QColor colorOfIndex(int i)
{
    const int n = int(graphColors.size());
    if (n == 0)
        return QColor(0, 0, 0);
    return graphColors.at(((i % n) + n) % n);
}
