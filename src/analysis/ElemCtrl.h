#pragma once

#include <QFrame>
#include <QList>
#include <QString>

#include <memory>

class Analyzed2DRes;
class QAbstractButton;

namespace Ui {
class ElemCtrl;
}

// One element of the element analysis: its conditions (edge energy, the
// +-dE of the jump, the ROI, the jump threshold), its last single results,
// its standard ratio for the correlation, and its seven maps, by kind:
// 0 dmut, 1 dmut relative to the target, 2 mean above the edge (Mut+),
// 3 mean below (Mut-), 4 edge position, 5 ROI, 6 ROI / dmut.
class ElemCtrl : public QFrame
{
    Q_OBJECT
public:
    enum { MapKinds = 7 };

    explicit ElemCtrl(QWidget *parent = nullptr);
    ~ElemCtrl() override;

    QList<Analyzed2DRes *> maps; // owned, MapKinds of them
    int z = 1;
    int edge = 0;
    double dmutV = 0;
    double ratioV = 0;
    double stdRatio = 1.0;
    double mutPlus = 0;
    double mutMinus = 0;

    // Stores the element, shows the title, names the maps after it and
    // writes the table's edge energy (keV x 1000) into Eng.
    void setElement(int z, int edge, const QString &title);
    QString name() const;

    // The conditions, read from the fields as they stand (0 where they do
    // not parse).
    double eng() const;
    double prePostDE() const;
    double roiS() const;
    double roiE() const;
    double thDMut() const;
    bool noNeg() const;
    bool isUsed() const;

    QAbstractButton *mainTargetButton() const;
    QAbstractButton *showButton() const;

    // The results of a single analysis: shown (ROI and N.ROI cut to five
    // characters) and kept as dmutV, ratioV, mutPlus, mutMinus.
    void setResults(double dmut, double ratio, double mutP, double mutM, double de, double roi, double nroi);

public slots:
    void newStdRatio();
    void setStdRatio(double r);
    void setROI(double s, double e);
    void setThDMut(double th);
    void setPrePostDE(double dE);
    void setNoNeg(bool f);
    void setUse(bool f);

private:
    std::unique_ptr<Ui::ElemCtrl> ui;
};
