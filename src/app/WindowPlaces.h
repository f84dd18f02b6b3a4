#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <QVector>

class QWidget;

// The program's windows under the names their places are kept by
// (saveWindowGeometry). Places are taken when the main window closes or the
// program is told to finish, while every window still shows as it was, and
// given back once at start-up.
class WindowPlaces : public QObject
{
    Q_OBJECT
public:
    explicit WindowPlaces(QObject *parent = nullptr);

    // A name holds no '/': that would nest it in another window's group.
    void add(QWidget *window, const QString &name);
    // Watches w for its close, which saves every window.
    void saveOnClose(QWidget *w);

    // Windows stored before get their size, place and visibility back; a
    // window never stored keeps what the program gave it (the stored
    // defaults would show every window at 400x400).
    void restoreAll();
    void saveAll() const;

public slots:
    // The first call saves, later ones do nothing: closing every window
    // after the first save would store them all as hidden.
    void saveOnce();

public:

    // Whether restoreAll gave w a stored place: then the window's own
    // first placement stands back.
    bool restored(const QWidget *w) const;

    QStringList names() const;
    QWidget *window(const QString &name) const;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Entry {
        QPointer<QWidget> window;
        QString name;
        bool restored = false;
    };
    QVector<Entry> entries;
    bool saved = false;
};
