#pragma once

#include <QObject>
#include <QString>

class QWidget;

// Keeps the place of a top-level window between sessions, by the helpers of
// WindowGeometry.h under the window's name: the place stored is restored at
// once (a window never stored keeps the place it was made with, rather
// than the helpers' 400 x 400 default), and the place is stored each time
// the window is hidden or closed.
class WindowPlace : public QObject
{
    Q_OBJECT
public:
    // The keeper is a child of w and goes with it.
    static void keep(QWidget *w, const QString &name);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    WindowPlace(QWidget *w, const QString &name);
    QString name;
    bool popUp = true;
};
