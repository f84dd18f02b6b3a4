#include "app/WindowPlace.h"

#include "app/WindowGeometry.h"

#include <QEvent>
#include <QSettings>
#include <QWidget>

WindowPlace::WindowPlace(QWidget *w, const QString &name)
    : QObject(w)
    , name(name)
{
}

void WindowPlace::keep(QWidget *w, const QString &name)
{
    if (!w)
        return;
    auto *keeper = new WindowPlace(w, name);
    QSettings settings(QStringLiteral("Norvale Qelt"), QStringLiteral("Tessarelle"));
    if (settings.contains(name + QStringLiteral("/size"))) {
        // A window is stored as it is hidden, so this never shows one.
        const bool visible = w->isVisible();
        restoreWindowGeometry(w, name, &keeper->popUp);
        w->setVisible(visible);
    }
    w->installEventFilter(keeper);
}

bool WindowPlace::eventFilter(QObject *watched, QEvent *event)
{
    // Hide comes with every close as well; a window that was never shown
    // has no place of its own to keep.
    if (event->type() == QEvent::Hide && watched == parent()) {
        auto *w = static_cast<QWidget *>(watched);
        if (w->testAttribute(Qt::WA_WState_ExplicitShowHide) && !w->isMinimized())
            saveWindowGeometry(w, name, popUp);
    }
    return QObject::eventFilter(watched, event);
}
