#pragma once

#include "analysis/ElemsAnalysis.h"
#include "analysis/FeatureValue.h"
#include "analysis/LcfFit.h"
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
    // The fitted curve of the last fit, and the raw jump of each element.
    XafsSpectrum fitted;
    QList<double> elemRawDMut;

signals:
    void finished();
    void finishedAElems();
    void finishedAFV(FeatureValue fv);
    void newZ(double z);
    void newDEdge(double dEdge);
    // Outside a run, the results a single spectrum gives the panels, by
    // value, so that the window never reads members the worker may be
    // rewriting for the next spectrum. Sent before the end signal.
    void lcfForPanels(QVector<int> usedPanels, QVector<double> coefs, QVector<double> amps, XafsSpectrum fitted);
    void elemsForPanels(ElemsOutcome results);

public slots:
    void setContAccess(bool f) { contAccess = f; }
    // The fits: MLCF when isMLCF, else the old LCF when set, else the LCF.
    // refs is a snapshot of the reference panels taken on the main thread.
    void analyzeSpectrum0(XafsSpectrum s, QVector<LcfRefInput> refs, bool isMLCF, double sE0, double eE0,
                          SuggestElm sElm);
    void analyzeSpectrumElems0(XafsSpectrum s, QVector<ElemCond> elems, ElemsBg bg, int mainT);
    void analyzeSpectrumRA(XafsSpectrum s, double raFactor, double atEV);
    // eStep and contAccess are part of the request and not used: the search
    // works on the spectrum's own points.
    void analyzeSpectrumFV(XafsSpectrum s, SuggestElm se, double eStep, double elimReg, bool contAccess);
    void analyzeSpectrumDEdge0(XafsSpectrum s, SuggestElm sElm, bool isMidPoint, double midRatio, XafsSpectrum ref,
                               double cwRangeEV, double cwInitDEeV, double cwMinDEeV);
    void setLcfOld(bool f);

private:
    // Kept from call to call, so that their lists stop allocating.
    LcfOutcome lcfOut;
    ElemsOutcome elemsOut;
};
