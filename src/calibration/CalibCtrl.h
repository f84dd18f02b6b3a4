#pragma once

#include <QFrame>
#include <QString>

#include <memory>

class QFileDialog;
class XafsSpectrum;

namespace Ui {
class CalibCtrl;
}

// The control window of the energy-shift calibration: the method (edge
// positions or inner products) and its search, the crystal, the standard
// spectrum and its line type, the run's start/stop button with its progress
// and statistics, and the map file's save and load. The run itself and the
// map are Body's; this window holds the standard and the fields they read.
class CalibCtrl : public QFrame
{
    Q_OBJECT
public:
    explicit CalibCtrl(QWidget *parent = nullptr);
    ~CalibCtrl() override;

    // The standard as last read and analysed; empty (midx 0) before any.
    const XafsSpectrum &standard() const { return *stdSpectrum; }
    QString stdFileName() const;

    bool innerP() const;
    double dEw() const;
    double dEs() const;
    double minDEs() const;
    // Lattice spacing of the chosen crystal, angstrom.
    double spacing() const;
    double edgeEV() const;
    // Line type of the points' spectra: 0 Victoreen, 1 straight.
    int targetLineType() const;
    bool checkSize() const;
    int xOffset() const;
    int yOffset() const;

    // The fields of the run and the map: written by Body, 'g' 6 digits.
    void setRunProperties(int xOffset, int yOffset, int width, int height);
    void setStatistics(double deMin, double deMax, double deAvr);
    void setSigma(double sigma);
    void setEMPFileName(const QString &fname);
    // calib_type: the inner-products method when true, else the edges'.
    void setCalibType(bool innerP);

signals:
    void newStdFileLoaded();
    void execCalibration();
    void saveEMap(QString fname);
    void loadEMap(QString fname);
    void clearMap();

public slots:
    // A new standard from the selector: read and analysed with the chosen
    // line type, its edge written to EdgeEeV. A file that can't be read
    // clears the selector and leaves the standard empty.
    void newFile(QString fname);
    void stdBGToggled(bool f);
    // As if the file were chosen in the selector.
    void loadStd(QString fname);
    void setEdgeEV(QString eV);
    void loadEShiftMap(QString fname);
    void progress(double p);

private:
    int stdLineType() const;

    std::unique_ptr<Ui::CalibCtrl> ui;
    std::unique_ptr<XafsSpectrum> stdSpectrum;
    QFileDialog *saveDialog = nullptr;
    QFileDialog *loadDialog = nullptr;
};
