#pragma once

#include <QFileDialog>

// The image-file chooser of the file panels and the dark image: opens one
// or several existing files, starting in the data root.
class _FileDialog : public QFileDialog
{
    Q_OBJECT
public:
    explicit _FileDialog(QWidget *parent = nullptr, bool single = false);
};
