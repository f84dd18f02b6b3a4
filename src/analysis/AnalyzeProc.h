#pragma once

#include "spectrum/SuggestElm.h"
#include "spectrum/XafsSpectrum.h"

#include <QList>
#include <QObject>

#include <atomic>

// The worker of the two-dimensional analysis. It lives on a thread of its
// own, takes one spectrum at a time by queued signal, runs one analysis on
// it, leaves the numbers in its members and tells the end by a signal.
//
// The analyses themselves are plain functions of the spectrum and a snapshot
// of the parameters (EdgeAnalysis.h and its neighbours); the slots here only
// call them, store the result and signal. Members are written on the worker
// thread and read by the main thread only after the matching end signal has
// arrived while nothing more is in flight: the one-spectrum-at-a-time rule
// is what makes that safe without a lock.
class AnalyzeProc : public QObject
{
    Q_OBJECT
public:
    explicit AnalyzeProc(QObject *parent = nullptr);

    // Set directly by the main thread when a run starts and ends: while it is
    // true, results go only into the members.
    std::atomic<bool> contAccess{false};

    double z = 0;      // residual of the last fit ("Zansa")
    double dEdge = 0;  // the last edge position, relative to the expected edge, eV
    QList<double> lcfCoefs;
    QList<double> lcfAmps;
    QList<double> elemDMut;
    QList<double> elemNDMut;
    QList<double> elemMutPlus;
    QList<double> elemMutMinus;
    QList<double> elemDE;
    QList<double> elemROI;
    QList<double> elemNROI;
    std::atomic<bool> lcfOld{false};
    double raDMut = 0;
    double raScaled = 0;
    double raRest = 0;

signals:
    void finished();
    void finishedAElems();
    void newZ(double z);
    void newDEdge(double dEdge);

public slots:
    void setContAccess(bool f) { contAccess = f; }
    void analyzeSpectrumDEdge0(XafsSpectrum s, SuggestElm sElm, bool isMidPoint, double midRatio, XafsSpectrum ref,
                               double cwRangeEV, double cwInitDEeV, double cwMinDEeV);
    void setLcfOld(bool f);
};
