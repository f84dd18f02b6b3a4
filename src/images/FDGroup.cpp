#include "images/FDGroup.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>

FDGroup::FDGroup(QObject *parent)
    : QObject(parent)
{
}

void FDGroup::add(QFileDialog *dialog)
{
    if (!dialog)
        return;
    for (const QPointer<QFileDialog> &d : dialogs) {
        if (d == dialog)
            return;
    }
    dialogs.append(dialog);
    connect(dialog, &QFileDialog::currentChanged, this, &FDGroup::currentChanged);
    connect(dialog, &QFileDialog::directoryEntered, this, &FDGroup::directoryEntered);
}

int FDGroup::count() const
{
    int n = 0;
    for (const QPointer<QFileDialog> &d : dialogs)
        n += d ? 1 : 0;
    return n;
}

void FDGroup::currentChanged(const QString &path)
{
    follow(qobject_cast<const QFileDialog *>(sender()), QFileInfo(path).canonicalPath());
}

void FDGroup::directoryEntered(const QString &dir)
{
    follow(qobject_cast<const QFileDialog *>(sender()), dir);
}

void FDGroup::follow(const QFileDialog *from, const QString &dir)
{
    // A file that vanished has no canonical path; staying put is better than
    // jumping to the working directory.
    if (dir.isEmpty())
        return;
    const QString target = QDir(dir).absolutePath();
    for (const QPointer<QFileDialog> &d : dialogs) {
        if (!d || d == from)
            continue;
        if (d->directory().absolutePath() != target)
            d->setDirectory(dir);
    }
}
