#pragma once

#include "spectrum/XafsSpectrum.h"

#include <QFrame>
#include <QList>
#include <QString>

#include <memory>

class Analyzed2DRes;
class QAbstractButton;
class XafsFileSelect;

namespace Ui {
class LCFReference;
}

// One reference spectrum of the linear-combination fits, with its two maps
// (kind 0: amplitude, kind 1: ratio). Its energies are read shifted by the
// panel's dE for good: the spectrum's xShift is switched on at construction
// and holds dE, as does its eOffset.
class LCFReference : public QFrame
{
    Q_OBJECT
public:
    explicit LCFReference(QWidget *parent = nullptr);
    ~LCFReference() override;

    XafsSpectrum spectrum;
    QList<Analyzed2DRes *> maps; // owned
    bool use = false;
    double ratio = 0;

    XafsFileSelect *fileSelect() const;
    QAbstractButton *showButton() const;
    // Use checked and a file chosen: the panel takes part in a fit.
    bool inUse() const;
    bool isVictreen() const;
    double deltaE() const;

signals:
    void newFileSelected();
    void newDeltaE();

public slots:
    void newFile(QString fname);
    void changedUse(bool f);
    void editedDeltaE();
    void toggledIsVictreen(bool f);
    // The batch's way in. isVic empty, "VIC" in any case, or a positive
    // integer checks Victreen; the file is loaded, Use set, dE taken.
    void setStd(bool use, double dE, QString fname, QString isVic);
    void setRatio(double r);
    void setAmp(double a);

private:
    void setDeltaE(double dE);

    std::unique_ptr<Ui::LCFReference> ui;
};
