#pragma once

#include <QFrame>

#include <memory>

namespace Ui {
class AElemsConds;
}

// The background values of the element analysis: what a point records for
// an element whose jump stays below its threshold. N.ROI's background is
// read from the ROI field, and the dmut-ratio and NROI fields are kept but
// read by no analysis: scripts set them, results never depend on them.
class AElemsConds : public QFrame
{
    Q_OBJECT
public:
    explicit AElemsConds(QWidget *parent = nullptr);
    ~AElemsConds() override;

    double bgvDMut() const;
    double bgvDE() const;
    double bgvROI() const;

public slots:
    void setBGVDMut(double v);
    void setBGVDMutR(double v);
    void setBGVDE(double v);
    void setBGVROI(double v);
    void setBGVNROI(double v);

private:
    std::unique_ptr<Ui::AElemsConds> ui;
};
