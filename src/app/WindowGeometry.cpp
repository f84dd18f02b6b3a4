#include "app/WindowGeometry.h"

#include <QPoint>
#include <QSettings>
#include <QSize>
#include <QWidget>

namespace {
const char *const Organisation = "Norvale Qelt";
const char *const Application = "Tessarelle";
}

void saveWindowGeometry(QWidget *w, const QString &name, bool popUp)
{
    if (!w)
        return;
    QSettings settings(Organisation, Application);
    settings.beginGroup(name);
    const QRect g = w->geometry();
    settings.setValue("size", QSize(g.width(), g.height()));
    settings.setValue("pos", w->pos());
    settings.setValue("visible", w->isVisible());
    settings.setValue("popUp", popUp);
    settings.endGroup();
}

void restoreWindowGeometry(QWidget *w, const QString &name, bool *popUp)
{
    QSettings settings(Organisation, Application);
    settings.beginGroup(name);
    const QSize size = settings.value("size", QSize(400, 400)).toSize();
    const QPoint pos = settings.value("pos", QPoint(200, 200)).toPoint();
    const bool visible = settings.value("visible", true).toBool();
    const bool pop = settings.value("popUp", true).toBool();
    settings.endGroup();
    if (w) {
        w->resize(size);
        w->move(pos);
        w->setVisible(visible);
    }
    if (popUp)
        *popUp = pop;
}
