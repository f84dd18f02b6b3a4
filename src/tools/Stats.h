#pragma once

#include "analysis/AnalyzeCond.h"
#include "tools/MapHistogram.h"

#include <QFrame>
#include <QPointer>

#include <memory>

class Analyzed2DRes;
class QPainter;

namespace Ui {
class Stats;
}

// The "Statistics" window: a histogram of the map the analysis window shows,
// over the analysis area, with the area's count, mean and sigma. Two blue
// markers bracket a value range; the statistics inside it are shown, and the
// points of the range can be outlined on the main image (Body draws them
// from selection() when the overlay is wanted).
class Stats : public QFrame
{
    Q_OBJECT
public:
    explicit Stats(QWidget *parent = nullptr);
    ~Stats() override;

    // Takes the map (not owned; a map that goes is let go) and the area,
    // and computes everything. A null map changes nothing.
    void setMap(Analyzed2DRes *map, const AnalyzeCond &area);
    const MapHistogram &histogram() const { return hist; }
    Analyzed2DRes *currentMap() const { return map; }
    const AnalyzeCond &currentArea() const { return area; }
    bool showOverImage() const;
    void showWindow();

signals:
    void rangeSelected();

public slots:
    void draw(QPainter *p);
    void mouseMoved();
    void mousePressed();
    void mouseReleased();
    void toggledShowOverImage(bool f);
    void pointedAt(double rx, double ry);
    // Sets the Bins field and computes the histogram anew.
    void setBins(int bins);
    void setOverImage(bool f);
    void setCalcInSelectedRegion(bool f);

private:
    void compute();
    void selectionChanged();
    void showNumbers();

    std::unique_ptr<Ui::Stats> ui;
    QPointer<Analyzed2DRes> map;
    AnalyzeCond area;
    MapHistogram hist;
    double *dragged = nullptr;
    double pointedValue = 0;
};
