#pragma once

#include "analysis/AnalyzeCond.h"
#include "analysis/ElemsAnalysis.h"
#include "analysis/LcfFit.h"
#include "images/Absorption.h"
#include "spectrum/SuggestElm.h"
#include "spectrum/XafsSpectrum.h"

#include <QObject>
#include <QVector>

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

// What every point of a run computes, fixed when the run starts: the box
// spectrum and the analyses chosen, with the snapshots of their parameters.
// A point's answers are a row of doubles laid out as below.
struct PointAnalyses
{
    int hw = 0; // the box the spectrum is summed over
    int vw = 0;
    int lineType = 1;
    SuggestElm sElm;

    bool lcf = false;
    QVector<LcfRefInput> lcfRefs;
    LcfForm lcfForm = LcfForm::New;
    double lcfR1 = 0;
    double lcfR2 = 0;

    bool dEdge = false;
    bool dEdgeIsMid = true;
    double dEdgeMidRatio = 0.5;
    XafsSpectrum dEdgeRef;
    double dEdgeRange = 0; // the half range of the search
    double dEdgeInit = 0;
    double dEdgeMin = 0;

    bool elems = false;
    QVector<ElemCond> elemConds;
    ElemsBg elemsBg;
    int mainT = 0;

    bool ra = false;
    double raFactor = 1;
    double raAtEV = 0;

    bool fv = false;
    double fvElimReg = 1;

    // The energy-shift calibration: the point's shift against the standard,
    // by edge positions or by inner products.
    bool calib = false;
    bool calibInnerP = false;
    XafsSpectrum calibStd;
    double calibDEw = 0;
    double calibDEs = 0;
    double calibMinDEs = 0;

    // The layout of a point's answers. LCF: what the fit did (the Action as
    // a number), z, then one amplitude and one coefficient per used panel.
    // Edge: the position. Elements: MapKinds lists of one value per element,
    // in ElemsOutcome's order. Residual: raDMut, raRest. Feature: dM, e1, e2.
    // Calibration: the shift.
    void layOut();
    // The standards of the searches by inner products as they read four
    // candidates at a time, made once for all points.
    void prepareReadings();
    InnerProductStandard dEdgeReading;
    InnerProductStandard calibReading;
    int usedRefs = 0;
    int lcfAt = -1;
    int dEdgeAt = -1;
    int elemsAt = -1;
    int raAt = -1;
    int fvAt = -1;
    int calibAt = -1;
    int width = 0;
};

// The analysis run over an area, many spectra at a time: each of a few
// threads takes its share of every row of the walk, sums the boxes with
// BoxRowSums, analyses the spectra with buffers of its own, and leaves the
// answers in a ring of rows; the owner takes the rows back strictly in walk
// order (rowsReady tells when one is complete). The threads run at most a
// ring's length ahead of the owner. The stacks and dark lists must stay as
// they are until the run is destroyed.
class MapRun : public QObject
{
    Q_OBJECT
public:
    // shifts holds the energy offset of every point in walk order.
    MapRun(const AbsorptionInput &in, const PointAnalyses &job, const AnalyzeCond &walk, std::vector<double> shifts,
           int threads, QObject *parent = nullptr);
    // Stops the threads and waits for them.
    ~MapRun() override;

    void start();
    void stop();

    const PointAnalyses &job() const { return m_job; }
    // The centres of a row, and the rows, in walk order.
    const std::vector<int> &xs() const { return m_xs; }
    const std::vector<int> &ys() const { return m_ys; }
    // The answers of row `row` (the next not yet released) when all its points are done, else null.
    const double *readyRow(int row);
    // Gives the row's room back to the threads.
    void releaseRow();

signals:
    void rowsReady();

private:
    struct Worker;
    void work(int t);

    Absorption::AbsorptionWalk m_walk;
    PointAnalyses m_job;
    std::vector<int> m_xs;
    std::vector<int> m_ys;
    std::vector<double> m_shifts;
    int m_threads = 1;
    int m_ring = 8;
    std::vector<double> m_slots; // m_ring rows of xs * width answers
    std::vector<int> m_done;     // threads done with each slot's row
    int m_released = 0;          // rows given back
    std::mutex m_mutex;
    std::condition_variable m_cv;
    std::atomic<bool> m_stop{false};
    std::vector<std::thread> m_pool;
};
