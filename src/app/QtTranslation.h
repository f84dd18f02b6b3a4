#pragma once

class QObject;

// Qt's own texts (file dialogs, standard buttons) in Japanese, from the
// translations Qt ships (Debian: qt6-translations-l10n). Without them those
// texts stay English and the log says so. The translator is a child of
// parent; returns whether it was installed.
bool installQtJapanese(QObject *parent);
