#pragma once

#include <QFrame>
#include <QImage>

#include <memory>

struct FeatureValueLists;
class QPainter;

namespace Ui {
class FVView;
}

// "Show FV": the feature values a run has collected, dM across and E2 - E1
// upwards, as a scatter picture and beside it as a smoothed density picture,
// so that clusters of similar points stand out. Every update also writes
// both pictures to "fvMap.png" and "fvHMap.png" in the working directory.
class FVView : public QFrame
{
    Q_OBJECT
public:
    // The lists are the Analyzer's and are only read.
    FVView(const FeatureValueLists *points, int mapSize, int hMapSize, QWidget *parent = nullptr);
    ~FVView() override;

    const QImage &scatterImage() const { return fvMap; }
    const QImage &densityImage() const { return fvHMap; }
    void showWindow();

public slots:
    void draw(QPainter *p);
    void updateMap();
    void updateVMap();
    void updateVHMap();

private:
    std::unique_ptr<Ui::FVView> ui;
    const FeatureValueLists *points;
    int mapSize;
    int hMapSize;
    QImage fvMap;
    QImage fvHMap;
};
