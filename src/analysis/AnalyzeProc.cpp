#include "analysis/AnalyzeProc.h"

#include "analysis/EdgeAnalysis.h"

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

void AnalyzeProc::setLcfOld(bool f)
{
    lcfOld = f;
    qDebug().noquote() << "lcf old flg" << (f ? "true" : "false");
}
