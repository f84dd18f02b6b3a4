#include "app/WindowPlaces.h"

#include "app/WindowGeometry.h"

#include <QEvent>
#include <QSettings>
#include <QWidget>

WindowPlaces::WindowPlaces(QObject *parent)
    : QObject(parent)
{
}

void WindowPlaces::add(QWidget *window, const QString &name)
{
    if (window && !name.isEmpty() && !name.contains(QLatin1Char('/')))
        entries.append({window, name});
}

void WindowPlaces::saveOnClose(QWidget *w)
{
    if (w)
        w->installEventFilter(this);
}

void WindowPlaces::restoreAll()
{
    const QStringList stored = QSettings(QStringLiteral("Norvale Qelt"), QStringLiteral("Tessarelle")).childGroups();
    for (Entry &e : entries) {
        if (!e.window || !stored.contains(e.name))
            continue;
        bool popUp = true;
        restoreWindowGeometry(e.window, e.name, &popUp);
        e.restored = true;
    }
}

bool WindowPlaces::restored(const QWidget *w) const
{
    for (const Entry &e : entries) {
        if (e.window == w)
            return e.restored;
    }
    return false;
}

void WindowPlaces::saveAll() const
{
    for (const Entry &e : entries) {
        if (e.window)
            saveWindowGeometry(e.window, e.name, true);
    }
}

void WindowPlaces::saveOnce()
{
    if (saved)
        return;
    saved = true;
    saveAll();
}

QStringList WindowPlaces::names() const
{
    QStringList n;
    n.reserve(entries.size());
    for (const Entry &e : entries)
        n << e.name;
    return n;
}

QWidget *WindowPlaces::window(const QString &name) const
{
    for (const Entry &e : entries) {
        if (e.name == name)
            return e.window;
    }
    return nullptr;
}

bool WindowPlaces::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Close)
        saveOnce();
    return QObject::eventFilter(watched, event);
}
