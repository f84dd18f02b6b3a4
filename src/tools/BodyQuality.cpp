// Body's quality slots: the Analyzer2 window and its dark check, the sum-up
// map, and the Fourier comparison.
#include "app/Body.h"

#include "analysis/Analyzed2DRes.h"
#include "analysis/Analyzer.h"
#include "app/Globals.h"
#include "app/LogTime.h"
#include "tools/Analyzer2.h"
#include "tools/DarkCheck.h"
#include "tools/FourierMatch.h"
#include "tools/SumUp.h"
#include "tools/SumUpCtrl.h"
#include "ui_Body.h"

#include <QDebug>
#include <QDir>

void Body::setupAnalyzer2()
{
    analyzer2 = new Analyzer2(this);
    analyzer2->setWindowFlag(Qt::Window);
    ui->ShowAnalyzer2->setVisible(gShowAnalyzer2Button);
    const auto showA2 = [this] {
        analyzer2->show();
        analyzer2->raise();
    };
    connect(ui->ShowAnalyzer2, &QPushButton::clicked, analyzer2, showA2);
    connect(analyzer, &Analyzer::showAnalyzer2, analyzer2, showA2);
    connect(analyzer2, &Analyzer2::startCollectQInfo, this, &Body::startCollectQInfo);
    connect(this, &Body::doCollectQInfo, analyzer2, &Analyzer2::doCollectQInfo);
    connect(analyzer2, &Analyzer2::askedDarkCheck, this, &Body::darkCheck);
    connect(analyzer2, &Analyzer2::useErrPMaskToggled, this, &Body::useErrPMaskToggled);
    connect(analyzer2, &Analyzer2::askedFourierA, this, &Body::execFourierA);
}

void Body::setupSumUp()
{
    connect(analyzer, &Analyzer::askSumUp, this, &Body::doSumUp);
}

void Body::startCollectQInfo()
{
}

void Body::darkCheck()
{
    if (i1Frames.isEmpty()) {
        qDebug().noquote() << "Dark Check: no I1 frames";
        return;
    }
    const QString dir = QDir::currentPath();
    const double histMax = analyzer2->histgMax();
    const int bins = analyzer2->histgBins();
    const QVector<qint64> counts = DarkCheck::histogram(i1Frames, histMax, bins);
    if (counts.isEmpty())
        qDebug().noquote() << "Dark Check: no histogram of" << bins << "bins";
    DarkCheck::writeHistogram(dir, counts, histMax, bins);

    QVector<int> sizes;
    const QVector<DarkCheck::Point> hot = DarkCheck::hotPixels(i1Frames, analyzer2->darkTh(), &sizes);
    qDebug().noquote() << "Dark Check:" << hot.size() << "hot pixels";
    const TiffData *first = i1Frames.first();
    DarkCheck::writeHotPixels(dir, hot, sizes, int(first->width), int(first->height), gErrPoints);
}

void Body::doSumUp()
{
    AnalyzeCond ac;
    if (!askAnalyzeCond(ac)) {
        qDebug().noquote() << "Sum Up: no I1 frames";
        return;
    }
    Analyzed2DRes &map = analyzer->sumUpMap;
    map.clear();
    map.setUp(ac);
    SumUp::fillMap(i1Frames, analyzer->sumUpCtrl->sumUps, ac, map);
    map.genImg();
    const QString fname = QDir::current().filePath(QStringLiteral("sumUpImg.png"));
    if (!map.img() || !map.img()->save(fname))
        qDebug().noquote() << "Sum Up: can't save" << fname;
    showSelectedMap();
}

void Body::execFourierA()
{
    if (i1Frames.isEmpty()) {
        qDebug().noquote() << "Fourier A.: no I1 frames";
        return;
    }
    logTime(QStringLiteral("2da FA 1:"));
    const int n = int(i1Frames.size());
    AnalyzeCond ac;
    askAnalyzeCond(ac);
    // One transform per point for all components together: the sums of
    // every k grow in the same pass.
    fourierA.setSize(n);
    FourierMatch match(n);
    do {
        const double a = i1Frames.first()->boxSum(ac.ix, ac.iy, ac.binX, ac.binY);
        fourierA.forwardOf(rawSpectrum(ac.ix, ac.iy, ac.binX, ac.binY));
        const double *mags = fourierA.magnitudes();
        if (!mags) {
            qDebug().noquote() << "Fourier A.: no room for" << n << "points";
            return;
        }
        match.add(a, mags);
    } while (ac.next());
    for (int k = 0; k < n; ++k)
        qDebug() << "Res" << k << match.sumAA() << match.sumBB(k) << match.sumAB(k) << match.ratio(k);
}
