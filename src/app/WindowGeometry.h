#pragma once

#include <QString>

class QWidget;

// Window places are kept in QSettings ("Norvale Qelt", "Tessarelle") under a
// group of the window's name: size (of the client area), pos, visible, popUp.
void saveWindowGeometry(QWidget *w, const QString &name, bool popUp);
// Restores what saveWindowGeometry stored; a window never stored gets
// 400x400 at (200, 200), visible, and popUp true.
void restoreWindowGeometry(QWidget *w, const QString &name, bool *popUp);
