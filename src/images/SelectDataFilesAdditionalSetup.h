#pragma once

#include "images/ErrPoints.h"

#include <QFrame>
#include <QString>

#include <memory>

class QFileDialog;

namespace Ui {
class SelectDataFilesAdditionalSetup;
}

// The rarer options of one file panel: its dark area, whether the display
// follows the loading, "Live" files, its own bad-pixel mask, and the
// datasets of an HDF5 stack.
class SelectDataFilesAdditionalSetup : public QFrame
{
    Q_OBJECT
public:
    explicit SelectDataFilesAdditionalSetup(QWidget *parent = nullptr);
    ~SelectDataFilesAdditionalSetup() override;

    // This panel's mask, not the global one: its address goes into the
    // panel's load jobs, and the loader only reads it.
    ErrPoints errPs;

    bool showLatest() const;
    bool ignoreLive() const;
    // The datasets of an HDF5 stack as the fields name them; empty lets the
    // file choose.
    QString h5ImagePath() const;
    QString h5EnergyPath() const;
    QFileDialog *errPsDialog() const { return errDialog; }

    // "(x0,y0)-(x1,y1)" of a rectangle given as corner and size.
    static QString darkAreaText(double x0, double y0, double w, double h);

signals:
    void setDarkArea();
    void updateDarkArea();
    void clearDarkArea();
    void showLatestToggled(bool f);

public slots:
    void darkArea(const QString &area);
    void setShowLatest(bool f);
    // Loads a mask file; the mask is in use when the box says so. A file
    // that fails to load leaves the name field empty.
    bool loadErrPs(const QString &fname);

private slots:
    void useErrPsToggled(bool f);

private:
    std::unique_ptr<Ui::SelectDataFilesAdditionalSetup> ui;
    QFileDialog *errDialog = nullptr;
};
