#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>

class QFileDialog;

// Keeps several file dialogs in one directory: wherever the user goes in one
// of them, the others follow, so that I1, I0, dark and reference files of a
// measurement are found in the same place.
class FDGroup : public QObject
{
    Q_OBJECT
public:
    explicit FDGroup(QObject *parent = nullptr);

    // A dialog already in the group is ignored. Dialogs are not owned; one
    // that is destroyed leaves the group by itself.
    void add(QFileDialog *dialog);
    int count() const;

public slots:
    // The other dialogs move to the directory of the file now current.
    void currentChanged(const QString &path);
    // The other dialogs move to the directory entered.
    void directoryEntered(const QString &dir);

private:
    void follow(const QFileDialog *from, const QString &dir);

    QList<QPointer<QFileDialog>> dialogs;
};
