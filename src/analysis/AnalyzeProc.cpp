#include "analysis/AnalyzeProc.h"

#include "analysis/EdgeAnalysis.h"
#include "analysis/FeatureSearch.h"
#include "analysis/ResidualAbsorption.h"

#include <QDebug>

AnalyzeProc::AnalyzeProc(QObject *parent)
    : QObject(parent)
{
}

void AnalyzeProc::analyzeSpectrumDEdge0(XafsSpectrum s, SuggestElm sElm, bool isMidPoint, double midRatio,
                                        XafsSpectrum ref, double cwRangeEV, double cwInitDEeV, double cwMinDEeV)
{
    dEdge = edgePosition(s, sElm, isMidPoint, midRatio, ref, cwRangeEV, cwInitDEeV, cwMinDEeV);
    emit newDEdge(dEdge);
    emit finished();
}

void AnalyzeProc::analyzeSpectrum0(XafsSpectrum s, QVector<LcfRefInput> refs, bool isMLCF, double sE0, double eE0,
                                   SuggestElm sElm)
{
    const LcfForm form = isMLCF ? LcfForm::Mlcf : (lcfOld ? LcfForm::Old : LcfForm::New);
    analyzeLcf(s, refs, form, sE0, eE0, sElm, contAccess, lcfOut);
    switch (lcfOut.action) {
    case LcfOutcome::Action::None:
        return; // no answer at all: a run waits here
    case LcfOutcome::Action::FinishedOnly:
        lcfCoefs = lcfOut.lcfCoefs;
        lcfAmps = lcfOut.lcfAmps;
        emit finished();
        return;
    case LcfOutcome::Action::NewZAndFinished:
        lcfCoefs = lcfOut.lcfCoefs;
        lcfAmps = lcfOut.lcfAmps;
        z = lcfOut.z;
        fitted = lcfOut.fitted;
        if (lcfOut.writePanels)
            emit lcfForPanels(lcfOut.usedPanels, lcfCoefs, lcfAmps, fitted);
        emit newZ(z);
        emit finished();
        return;
    }
}

void AnalyzeProc::analyzeSpectrumElems0(XafsSpectrum s, QVector<ElemCond> elems, ElemsBg bg, int mainT)
{
    analyzeElems(s, elems, bg, mainT, elemsOut);
    elemRawDMut = elemsOut.res0;
    elemDMut = elemsOut.elemDMut;
    elemNDMut = elemsOut.elemNDMut;
    elemMutPlus = elemsOut.elemMutPlus;
    elemMutMinus = elemsOut.elemMutMinus;
    elemDE = elemsOut.elemDE;
    elemROI = elemsOut.elemROI;
    elemNROI = elemsOut.elemNROI;
    if (!contAccess)
        emit elemsForPanels(elemsOut);
    emit finishedAElems();
}

void AnalyzeProc::analyzeSpectrumRA(XafsSpectrum s, double raFactor, double atEV)
{
    const RaResult r = analyzeRA(s, raFactor, atEV);
    raDMut = r.raDMut;
    raScaled = r.raScaled;
    raRest = r.raRest;
    emit finished();
}

void AnalyzeProc::analyzeSpectrumFV(XafsSpectrum s, SuggestElm se, double, double elimReg, bool)
{
    emit finishedAFV(analyzeFV(s, se, elimReg));
}

void AnalyzeProc::setLcfOld(bool f)
{
    lcfOld = f;
    qDebug().noquote() << "lcf old flg" << (f ? "true" : "false");
}
