#pragma once

#include "analysis/AnalyzeCond.h"
#include "analysis/Analyzed2DRes.h"
#include "analysis/ElemsAnalysis.h"
#include "analysis/FeatureValue.h"
#include "analysis/FeatureValueLists.h"
#include "analysis/LcfFit.h"
#include "analysis/MapRun.h"
#include "calibration/EMPHeader.h"
#include "images/FDGroup.h"
#include "spectrum/SuggestElm.h"
#include "spectrum/XafsSpectrum.h"

#include <QFrame>
#include <QList>

#include <memory>

class AElemsConds;
class AnalyzeProc;
class ElemCtrl;
class FVView;
class LCFReference;
class QAbstractButton;
class QButtonGroup;
class QFileDialog;
class QThread;
class SumUpCtrl;
class XafsView;

namespace Ui {
class Analyzer;
}

// The control window of the two-dimensional analysis. It owns the worker and
// its thread, the reference and element panels, every result map but those
// of the panels, the fitted curve and the "Analyzing Spectrum" plot. It
// holds the choice of analyses, sends a point's spectrum to the worker,
// counts the end signals, and tells which map the image area shows. The walk
// over the image is Body's.
class Analyzer : public QFrame
{
    Q_OBJECT
public:
    explicit Analyzer(QWidget *parent = nullptr);
    // Stops the worker's thread and waits for it: a point in flight ends
    // first.
    ~Analyzer() override;

    XafsView *xafsView() const { return xafsView_; }
    AnalyzeProc *analyzeProc() const { return worker; }

    // Which analyses the run does.
    bool selLCF() const;
    bool selDEdge() const;
    bool selElems() const;
    bool selRA() const;
    bool selFV() const;
    bool sel2DA() const;
    bool dEdgeCompWithStep() const;
    // "Disp. on Time": the maps are redrawn at every row of a run.
    bool dispOnTime() const;

    // The map the image area should show now, by the buttons; null for none.
    Analyzed2DRes *selectedMap();
    // The index of the first reference panel whose Show button is checked,
    // 0 when none: the number a saved map's file name carries.
    int selectedRefRow() const;

    // Waits until the worker has done everything sent to it so far and drops
    // the end signals of that work, so that a late answer to a single
    // spectrum or to a stopped run can never count as a point of the next.
    void drainWorker();

    // Rebuilds the comparison step from its three fields.
    void generateDEdgeStep();

    SuggestElm sElm;
    QButtonGroup *refGroup = nullptr;
    QList<LCFReference *> lcfrs;
    FDGroup fdGroup;
    XafsSpectrum curSpectrum;
    XafsSpectrum fitted;
    Analyzed2DRes zansaMap{QStringLiteral("a2d Zansa")};
    Analyzed2DRes dEdgeMap{QStringLiteral("a2d dEdge")};
    bool contAccess = false;
    int pending = 0;
    Analyzed2DRes raDMutMap{QStringLiteral("a2d DMut")};
    Analyzed2DRes raRestMap{QStringLiteral("a2d Rest")};
    Analyzed2DRes raRatioMap{QStringLiteral("a2d Rati")};
    double raFactor = 1.0;
    double raAtEV = 8200;
    QList<ElemCtrl *> elems;
    QList<double> elemRawDMut;
    QButtonGroup *targetGroup = nullptr;
    QButtonGroup *showGroup = nullptr;
    double correlation = 1.0;
    double corTh = 0.999;
    Analyzed2DRes elemsCorMap{QStringLiteral("a2d ElemsCor")};
    Analyzed2DRes elemsCorThMap{QStringLiteral("a2d ElemsCorTh")};
    Analyzed2DRes fvMap{QStringLiteral("a2d FV")};
    FeatureValueLists fvLists;
    FeatureValue fv;
    double fvEStep = 0.01;
    double fvElimReg = 1;
    // The scatter and density maps of fvLists; a child window.
    FVView *fvView = nullptr;
    Analyzed2DRes sumUpMap{QStringLiteral("Sum Up Img")};
    SumUpCtrl *sumUpCtrl = nullptr; // the ranges of sumUpMap, under the mode row
    Analyzed2DRes processedMap{QStringLiteral("Processed Map")};
    Analyzed2DRes map1{QStringLiteral("E-Shift Map 1")};
    Analyzed2DRes map2{QStringLiteral("E-Shift Map 2")};
    QFileDialog *map1Dialog = nullptr;
    QFileDialog *map2Dialog = nullptr;

    // The comparison target of the edge analysis and the snapshot of the
    // edge parameters that a run works with.
    XafsSpectrum dEdgeRef;
    bool dEdgeIsMid = true;
    double dEdgeMidRatio = 0.5;
    double dEdgeCWRange = 20;
    double dEdgeCWInit = 1;
    double dEdgeCWMin = 0.1;

    // The snapshots the worker gets at each point, read from the panels as
    // they stand: the references, the elements' conditions and ratios, the
    // background values.
    QVector<LcfRefInput> lcfSnapshot() const;
    QVector<ElemCond> elemSnapshot() const;
    ElemsBg elemsBgSnapshot() const;
    // The index of the element whose "Target" is checked, 0 without one.
    int mainTarget() const;
    // The analyses chosen and their parameters, as analyzeSpectrum would
    // send them for a point now; the box, line type and element are Body's.
    PointAnalyses pointAnalyses() const;

signals:
    void askAnalyze();
    void askGenDEdgeMap(); // declared for compatibility; nothing emits it
    void analyzeSpectrumDEdge0(XafsSpectrum s, SuggestElm sElm, bool isMidPoint, double midRatio, XafsSpectrum ref,
                               double cwRangeEV, double cwInitDEeV, double cwMinDEeV);
    void analyzeSpectrum0(XafsSpectrum s, QVector<LcfRefInput> refs, bool isMLCF, double sE0, double eE0,
                          SuggestElm sElm);
    void analyzeSpectrumElems0(XafsSpectrum s, QVector<ElemCond> elems, ElemsBg bg, int mainT);
    void analyzeSpectrumRA(XafsSpectrum s, double raFactor, double atEV);
    void analyzeSpectrumFV(XafsSpectrum s, SuggestElm se, double eStep, double elimReg, bool contAccess);
    void finished();
    void changedSelection();
    void setNewCorrelation(double cor);
    void askSumUp();
    void askAnalyzeCond(AnalyzeCond &ac);
    void showAnalyzer2();
    // Reads an energy map file into map (Body, directly); empH.valid then
    // says whether it was taken.
    void loadMap(QString fname, Analyzed2DRes &map, EMPHeader &empH);

public slots:
    void addNewRef();
    void analyze2DFinished();
    void analyze2DElemsFinished();
    void analyze2DFVFinished(FeatureValue fv);
    // A single spectrum's fit and element results reach the panels.
    void lcfForPanels(QVector<int> usedPanels, QVector<double> coefs, QVector<double> amps, XafsSpectrum fit);
    void elemsForPanels(ElemsOutcome results);
    void newElems();
    void setElemsStd();
    void calcCorrelation();
    void recalcCorMap();
    void newCorTh();
    void setCorTh(double th);
    void setCorrelation(double cor);
    void setTargetElements(QString elements);
    // Batch setters of the element panels, by the panel's name (none when no
    // panel bears it).
    void selectTargetElement(const QString &name);
    void selectShownElement(const QString &name);
    void setElemsSortByAN(bool f);
    void setElemsDE(double dE);
    void setElemsDispMode(int mode);
    void setElemUse(const QString &name, bool f);
    void setElemROI(const QString &name, double s, double e);
    void setElemThDMut(const QString &name, double th);
    void setElemNoNeg(const QString &name, bool f);
    AElemsConds *elemsConds() const;
    void selectedNewRef(int i);
    void colorScaleChanged();
    void processMaps();
    void captureAsMap1();
    void captureAsMap2();
    void noticedNewZ(double z);
    void noticedNewDEdge(double dEdge);
    void toggledDEdgeCompWith(bool f);
    void toggledCWFile(bool f);
    void selectedNewDEdgeCWFile(QString fname);
    void setFVEStep();
    void setFVElimReg();
    // Draws the feature-value maps again (and writes their picture files).
    void updateFVMap();
    void show();
    void showXv();
    void setContAccess(bool f);
    void setLCFMode(int f);
    void setLCFAsOld(bool f);
    void setLCFRange(double fromEV, double toEV);
    void analyzeAndShowSpectrum(XafsSpectrum s, SuggestElm sElm);
    void initAnalyzeSpectrum();
    void analyzeSpectrum(const XafsSpectrum &s, SuggestElm sElm);
    void reAnalyzeSpectrum();
    void setProgress(double perCent);
    void setLCFStd(int no, bool use, double dE, QString fname, QString isVic);
    void selectImage(int id);
    void setRaEnergy(double eng);
    void setRaFactor(double factor);
    void setFixedScale(bool f);
    void setUseUpperLimit(bool f);
    void setDMutScaleMax(double v);
    void setDMutScaleMin(double v);
    void setRatioScaleMax(double v);
    void setRatioScaleMin(double v);
    void setUpperLimitV(double v);
    void setNormalize(bool f);
    void setEnergyCorrection(bool f);

    // Batch access to the controls of the modes and the edge analysis.
    void setMainMode2DA();
    void setMainModeProcMaps();
    void setSelSumUp();
    void setSelLCF(bool f);
    void setSelDEdge(bool f);
    void setSelElems(bool f);
    void setSelRA(bool f);
    void setSelFV(bool f);
    void setImageTypeRatio(bool ratio);
    void setDEdgeMidPoint(bool midPoint);
    void setDEdgeMidRatio(double r);
    void setDEdgeCompWithStep(bool step);
    void loadDEdgeCompFile(const QString &fname);
    void setDEdgeStepParams(double at, double width, double spacing);
    void setDEdgeCompParams(double range, double init, double min);

private:
    void setupForm();
    void setupWorker();
    void setupRefGroup();
    // All maps of the window's own and of its panels, with their scale kind
    // (true: the ratio scale).
    QList<QPair<Analyzed2DRes *, bool>> scaledMaps();

    std::unique_ptr<Ui::Analyzer> ui;
    XafsView *xafsView_ = nullptr;
    QThread *thread = nullptr;
    AnalyzeProc *worker = nullptr;
    bool draining = false;
    bool settingCorrelation = false;
    // The correlation field's colour: above the threshold or not, -1 unset.
    int corAboveTh = -1;
    QList<ElemCtrl *> elemsNamed(const QString &name) const;
};
