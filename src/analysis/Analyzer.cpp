#include "analysis/Analyzer.h"

#include "analysis/AElemsConds.h"
#include "analysis/AnalyzeProc.h"
#include "analysis/EdgeAnalysis.h"
#include "analysis/ElemCtrl.h"
#include "analysis/ElemNames.h"
#include "analysis/ElemsCorrelation.h"
#include "analysis/LCFReference.h"
#include "app/Globals.h"
#include "images/XafsFileSelect.h"
#include "tools/FVView.h"
#include "tools/SumUpCtrl.h"
#include "ui_Analyzer.h"
#include "view/XafsView.h"

#include <QButtonGroup>
#include <QCoreApplication>
#include <QDebug>
#include <QFileDialog>
#include <QGridLayout>
#include <QThread>

#include <algorithm>
#include <utility>

namespace {

QString g6(double v)
{
    return QString::number(v, 'g', 6);
}

QFileDialog *mapDialog(QWidget *parent)
{
    auto *d = new QFileDialog(parent);
    d->setFileMode(QFileDialog::ExistingFile);
    d->setAcceptMode(QFileDialog::AcceptOpen);
    d->setNameFilters({Analyzer::tr("Energy Shift Map File (*.emp)"), Analyzer::tr("Any Files (* *.*)")});
    d->setDirectory(gDataRoot);
    return d;
}

} // namespace

Analyzer::Analyzer(QWidget *parent)
    : QFrame(parent)
    , ui(new Ui::Analyzer)
{
    setupForm();
    setupWorker();
    setupRefGroup();
    // The snapshot of the parameters is taken once here, so that a single
    // spectrum analysed before any run sees the fields' values.
    initAnalyzeSpectrum();
    for (int i = 0; i < 4; ++i)
        addNewRef();
    // The form's threshold is replaced at once: the field never shows it.
    setCorTh(0.999);
}

Analyzer::~Analyzer()
{
    thread->quit();
    thread->wait();
}

void Analyzer::setupForm()
{
    ui->setupUi(this);
    setWindowFlag(Qt::Window);
    xafsView_ = new XafsView(this);
    xafsView_->setWindowFlag(Qt::Window);
    xafsView_->setWindowTitle(tr("Analyzing Spectrum"));
    xafsView_->setOthers({&fitted}, {QPen(QColor(128, 192, 0), 2)});
    ui->ShowAnalyzer2->setVisible(gShowAnalyzer2Button);
    sumUpCtrl = new SumUpCtrl(this);
    ui->vboxlayout11->insertWidget(1, sumUpCtrl);
    map1Dialog = mapDialog(this);
    map2Dialog = mapDialog(this);

    connect(ui->AskAnalyze, &QPushButton::clicked, this, &Analyzer::askAnalyze);
    connect(ui->AskSumUp, &QPushButton::clicked, this, &Analyzer::askSumUp);
    connect(ui->ShowAnalyzer2, &QPushButton::clicked, this, &Analyzer::showAnalyzer2);
    connect(ui->ShowView, &QPushButton::clicked, this, &Analyzer::showXv);
    connect(ui->AddRef, &QPushButton::clicked, this, &Analyzer::addNewRef);
    for (QAbstractButton *b : {static_cast<QAbstractButton *>(ui->SelRatio), static_cast<QAbstractButton *>(ui->FixedScale),
                               static_cast<QAbstractButton *>(ui->UseUpperLimit)})
        connect(b, &QAbstractButton::toggled, this, &Analyzer::colorScaleChanged);
    for (QLineEdit *e : {ui->DMutScaleMin, ui->DMutScaleMax, ui->RatioScaleMin, ui->RatioScaleMax, ui->UpperLimitV})
        connect(e, &QLineEdit::editingFinished, this, &Analyzer::colorScaleChanged);
    connect(ui->FVeStep, &QLineEdit::editingFinished, this, &Analyzer::setFVEStep);
    connect(ui->FVElimReg, &QLineEdit::editingFinished, this, &Analyzer::setFVElimReg);
    // A few hundred pixels a side is enough to see clusters.
    fvView = new FVView(&fvLists, 300, 300, this);
    fvView->setWindowFlag(Qt::Window);
    connect(ui->ShowFV, &QPushButton::clicked, fvView, &FVView::showWindow);
    connect(ui->SelMap1, &QPushButton::clicked, map1Dialog, &QWidget::show);
    connect(ui->SelMap2, &QPushButton::clicked, map2Dialog, &QWidget::show);
    connect(map1Dialog, &QFileDialog::fileSelected, this, [this](const QString &fname) {
        EMPHeader header;
        emit loadMap(fname, map1, header);
        if (header.valid)
            ui->Map1Name->setText(fname);
    });
    connect(map2Dialog, &QFileDialog::fileSelected, this, [this](const QString &fname) {
        EMPHeader header;
        emit loadMap(fname, map2, header);
        if (header.valid)
            ui->Map2Name->setText(fname);
    });
    connect(ui->AskProcessMaps, &QPushButton::clicked, this, &Analyzer::processMaps);
    connect(ui->CaptureAsMap1, &QPushButton::clicked, this, &Analyzer::captureAsMap1);
    connect(ui->CaptureAsMap2, &QPushButton::clicked, this, &Analyzer::captureAsMap2);
    connect(ui->DEdgeCompWith, &QAbstractButton::toggled, this, &Analyzer::toggledDEdgeCompWith);
    connect(ui->DEdgeCWFile, &QAbstractButton::toggled, this, &Analyzer::toggledCWFile);
    connect(ui->DEdgeCWFileSelect, &XafsFileSelect::newFile, this, &Analyzer::selectedNewDEdgeCWFile);
    ui->DEdgeCWFileSelect->showUse(false);
    fdGroup.add(ui->DEdgeCWFileSelect->fileDialog());
    fdGroup.add(map1Dialog);
    fdGroup.add(map2Dialog);
    connect(ui->AElemNames, &QLineEdit::editingFinished, this, &Analyzer::newElems);
    connect(ui->SetSTD, &QPushButton::clicked, this, &Analyzer::setElemsStd);
    connect(ui->ReCalcCor, &QPushButton::clicked, this, &Analyzer::recalcCorMap);
    connect(ui->CorTh, &QLineEdit::editingFinished, this, &Analyzer::newCorTh);
    connect(this, &Analyzer::setNewCorrelation, this, &Analyzer::setCorrelation);
    const auto showElems = ui->ShowElemsDMut0->group();
    if (showElems)
        connect(showElems, &QButtonGroup::buttonClicked, this, &Analyzer::changedSelection);
    setFVEStep();
    setFVElimReg();
}

void Analyzer::setupWorker()
{
    thread = new QThread;
    thread->setObjectName(QStringLiteral("analysis"));
    thread->setParent(this);
    worker = new AnalyzeProc;
    worker->moveToThread(thread);
    connect(thread, &QThread::finished, worker, &QObject::deleteLater);
    connect(this, &Analyzer::analyzeSpectrum0, worker, &AnalyzeProc::analyzeSpectrum0);
    connect(this, &Analyzer::analyzeSpectrumDEdge0, worker, &AnalyzeProc::analyzeSpectrumDEdge0);
    connect(this, &Analyzer::analyzeSpectrumElems0, worker, &AnalyzeProc::analyzeSpectrumElems0);
    connect(this, &Analyzer::analyzeSpectrumRA, worker, &AnalyzeProc::analyzeSpectrumRA);
    connect(this, &Analyzer::analyzeSpectrumFV, worker, &AnalyzeProc::analyzeSpectrumFV);
    connect(worker, &AnalyzeProc::finished, this, &Analyzer::analyze2DFinished);
    connect(worker, &AnalyzeProc::finishedAElems, this, &Analyzer::analyze2DElemsFinished);
    connect(worker, &AnalyzeProc::finishedAFV, this, &Analyzer::analyze2DFVFinished);
    connect(worker, &AnalyzeProc::lcfForPanels, this, &Analyzer::lcfForPanels);
    connect(worker, &AnalyzeProc::elemsForPanels, this, &Analyzer::elemsForPanels);
    connect(worker, &AnalyzeProc::newZ, this, &Analyzer::noticedNewZ);
    connect(worker, &AnalyzeProc::newDEdge, this, &Analyzer::noticedNewDEdge);
    connect(ui->AsOldLCF, &QAbstractButton::toggled, worker, &AnalyzeProc::setLcfOld);
    thread->start(QThread::InheritPriority);
}

void Analyzer::setupRefGroup()
{
    // The panels' Show buttons come first, with their row as id; the
    // window's own buttons follow with ids counted from the four panels
    // made at construction. A panel added later takes the id its row gives
    // and so may share one with a button below: only the group's order
    // tells them apart, as it always has.
    refGroup = new QButtonGroup(this);
    refGroup->setObjectName(QStringLiteral("refGroup"));
    const int n = 4;
    refGroup->addButton(ui->ShowDEdge, n);
    refGroup->addButton(ui->ShowZ, n + 1);
    refGroup->addButton(ui->ShowResElemsA, n + 2);
    refGroup->addButton(ui->ShowDMuT, n + 3);
    refGroup->addButton(ui->ShowRest, n + 4);
    refGroup->addButton(ui->ShowRatio, n + 5);
    refGroup->addButton(ui->SelSumUp, n + 6);
    connect(refGroup, &QButtonGroup::idClicked, this, &Analyzer::selectedNewRef);
}

bool Analyzer::selLCF() const
{
    return ui->Sel2DAMLCFA->isChecked();
}

bool Analyzer::selDEdge() const
{
    return ui->Sel2DADEdgeA->isChecked();
}

bool Analyzer::selElems() const
{
    return ui->Sel2DAElemA->isChecked();
}

bool Analyzer::selRA() const
{
    return ui->Sel2DARAA->isChecked();
}

bool Analyzer::selFV() const
{
    return ui->Sel2DFVA->isChecked();
}

bool Analyzer::sel2DA() const
{
    return ui->Sel2DA->isChecked();
}

bool Analyzer::dispOnTime() const
{
    return ui->DispOnTime->isChecked();
}

bool Analyzer::dEdgeCompWithStep() const
{
    return ui->DEdgeCWStep->isChecked();
}

void Analyzer::addNewRef()
{
    auto *r = new LCFReference(ui->RefBase);
    lcfrs << r;
    r->fileSelect()->setSelectText(tr("Select Ref%1").arg(lcfrs.size()));
    const bool inUse = lcfrs.size() <= 3;
    r->fileSelect()->setUse(inUse);
    r->use = inUse;
    ui->RefBase->layout()->addWidget(r);
    resize(width(), height() + 23);
    fdGroup.add(r->fileSelect()->fileDialog());
    refGroup->addButton(r->showButton(), int(lcfrs.size()) - 1);

    QVector<XafsSpectrum *> spectra{&fitted};
    QVector<QPen> pens{QPen(QColor(128, 192, 0), 2)};
    for (LCFReference *p : std::as_const(lcfrs))
        spectra << &p->spectrum;
    xafsView_->setOthers(spectra, pens);

    connect(r, &LCFReference::newFileSelected, xafsView_, &XafsView::update);
    connect(r, &LCFReference::newDeltaE, this, &Analyzer::reAnalyzeSpectrum);
}

void Analyzer::drainWorker()
{
    QMetaObject::invokeMethod(worker, [] {}, Qt::BlockingQueuedConnection);
    draining = true;
    QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
    draining = false;
    pending = 0;
}

void Analyzer::analyze2DFinished()
{
    if (draining)
        return;
    if (!contAccess)
        xafsView_->update();
    // The test is on the count before it falls: an extra end signal still
    // ends the point.
    const int before = pending--;
    if (before <= 1)
        emit finished();
}

void Analyzer::analyze2DElemsFinished()
{
    if (draining)
        return;
    if (!contAccess)
        xafsView_->update();
    const int before = pending--;
    if (before <= 1)
        emit finished();
}

void Analyzer::analyze2DFVFinished(FeatureValue value)
{
    if (draining)
        return;
    fv = value;
    if (!contAccess) {
        ui->FVdM->setText(g6(fv.dM));
        ui->FVdE12->setText(g6(fv.e2 - fv.e1));
        ui->FVE2E1->setText(QStringLiteral("(%1-%2)").arg(fv.e2).arg(fv.e1));
        xafsView_->update();
    }
    const int before = pending--;
    if (before <= 1)
        emit finished();
}

void Analyzer::lcfForPanels(QVector<int> usedPanels, QVector<double> coefs, QVector<double> amps, XafsSpectrum fit)
{
    for (int j = 0; j < usedPanels.size() && j < coefs.size() && j < amps.size(); ++j) {
        if (LCFReference *r = lcfrs.value(usedPanels.at(j))) {
            r->setRatio(coefs.at(j));
            r->setAmp(amps.at(j));
        }
    }
    fitted = fit;
    xafsView_->update();
}

void Analyzer::elemsForPanels(ElemsOutcome r)
{
    elemRawDMut = r.res0;
    if (!ui->Sel2DAElemA->isChecked())
        return;
    // The panels may have been replaced since the spectrum was sent.
    const int n = std::min<int>(elems.size(), r.elemDMut.size());
    for (int i = 0; i < n; ++i)
        elems.at(i)->setResults(r.elemDMut.at(i), r.elemNDMut.at(i), r.elemMutPlus.at(i), r.elemMutMinus.at(i),
                                r.elemDE.at(i), r.elemROI.at(i), r.elemNROI.at(i));
    calcCorrelation();
}

void Analyzer::newElems()
{
    if (targetGroup)
        targetGroup->deleteLater();
    if (showGroup)
        showGroup->deleteLater();
    targetGroup = new QButtonGroup(this);
    showGroup = new QButtonGroup(this);
    connect(showGroup, &QButtonGroup::buttonClicked, this, &Analyzer::changedSelection);
    QLayout *grid = ui->ElemsBase->layout();
    for (ElemCtrl *e : std::as_const(elems)) {
        grid->removeWidget(e);
        e->hide();
        e->deleteLater();
    }
    elems.clear();
    const QVector<ElemName> names = parseElemNames(ui->AElemNames->text(), ui->SortByANo->isChecked());
    for (const ElemName &n : names) {
        auto *e = new ElemCtrl(ui->ElemsBase);
        e->setElement(n.z, n.edge, n.title);
        const int row = int(elems.size());
        elems << e;
        static_cast<QGridLayout *>(grid)->addWidget(e, row, 0);
        targetGroup->addButton(e->mainTargetButton(), row);
        showGroup->addButton(e->showButton(), row);
    }
    if (!elems.isEmpty()) {
        elems.first()->mainTargetButton()->setChecked(true);
        elems.first()->showButton()->setChecked(true);
    }
}

void Analyzer::setTargetElements(QString elements)
{
    ui->AElemNames->setText(elements);
    newElems();
}

void Analyzer::setElemsStd()
{
    for (ElemCtrl *e : std::as_const(elems))
        e->setStdRatio(e->ratioV);
    recalcCorMap();
}

void Analyzer::calcCorrelation()
{
    if (elems.isEmpty())
        return;
    double cor = correlation;
    if (::calcCorrelation(elemSnapshot(), cor))
        emit setNewCorrelation(cor);
}

void Analyzer::setCorrelation(double cor)
{
    if (settingCorrelation)
        return;
    settingCorrelation = true;
    correlation = cor;
    ui->ElemsCorrelation->setText(g6(cor));
    const int above = cor > corTh ? 1 : 0;
    if (above != corAboveTh) {
        ui->ElemsCorrelation->setStyleSheet(QLatin1String(above ? "background-color: rgb(211, 255, 241);"
                                                                : "background-color: rgb(176, 192, 192);"));
        corAboveTh = above;
    }
    settingCorrelation = false;
}

void Analyzer::newCorTh()
{
    setCorTh(ui->CorTh->text().toDouble());
}

void Analyzer::setCorTh(double th)
{
    ui->CorTh->setText(g6(th));
    corTh = th;
    recalcCorMap();
}

void Analyzer::recalcCorMap()
{
    AnalyzeCond c = elemsCorMap.cond;
    c.restart();
    const QVector<ElemCond> conds = elemSnapshot();
    QVector<double> v(elems.size());
    QVector<CorStep> steps;
    do {
        if (c.newLine)
            setProgress(double(c.iy - c.yStart) / double(c.yEnd - c.yStart) * 100.0);
        for (int i = 0; i < elems.size(); ++i)
            v[i] = elems.at(i)->maps.at(1)->valueAt(c.ix, c.iy);
        pointCorrelation(v, conds, corTh, steps);
        for (const CorStep &st : std::as_const(steps)) {
            elemsCorMap.setData(c.ix, c.iy, c.binX, c.binY, st.cor);
            elemsCorThMap.setData(c.ix, c.iy, c.binX, c.binY, st.corTh);
        }
    } while (c.next());
    setProgress(100.0);
    elemsCorMap.genImg();
    elemsCorThMap.genImg();
    emit changedSelection();
}

QList<ElemCtrl *> Analyzer::elemsNamed(const QString &name) const
{
    QList<ElemCtrl *> out;
    for (ElemCtrl *e : elems)
        if (e->name() == name)
            out << e;
    return out;
}

void Analyzer::selectTargetElement(const QString &name)
{
    for (ElemCtrl *e : elemsNamed(name))
        e->mainTargetButton()->setChecked(true);
}

void Analyzer::selectShownElement(const QString &name)
{
    for (ElemCtrl *e : elemsNamed(name))
        e->showButton()->setChecked(true);
}

void Analyzer::setElemsSortByAN(bool f)
{
    ui->SortByANo->setChecked(f);
}

void Analyzer::setElemsDE(double dE)
{
    for (ElemCtrl *e : std::as_const(elems))
        e->setPrePostDE(dE);
}

void Analyzer::setElemsDispMode(int mode)
{
    QAbstractButton *const buttons[] = {ui->ShowElemsDMut0,    ui->ShowElemsDMutN,     ui->ShowElemsCorr,
                                        ui->ShowElemsCorrTh,   ui->ShowElemsMutPlus,   ui->ShowElemsMutMinus,
                                        ui->ShowElemsDE,       ui->ShowElemsROI,       ui->ShowElemsNROI};
    if (mode >= 0 && mode < 9)
        buttons[mode]->setChecked(true);
    emit changedSelection();
}

void Analyzer::setElemUse(const QString &name, bool f)
{
    for (ElemCtrl *e : elemsNamed(name))
        e->setUse(f);
}

void Analyzer::setElemROI(const QString &name, double s, double e)
{
    for (ElemCtrl *c : elemsNamed(name))
        c->setROI(s, e);
}

void Analyzer::setElemThDMut(const QString &name, double th)
{
    for (ElemCtrl *e : elemsNamed(name))
        e->setThDMut(th);
}

void Analyzer::setElemNoNeg(const QString &name, bool f)
{
    for (ElemCtrl *e : elemsNamed(name))
        e->setNoNeg(f);
}

AElemsConds *Analyzer::elemsConds() const
{
    return ui->AElemsCds;
}

void Analyzer::selectedNewRef(int)
{
    emit changedSelection();
}

int Analyzer::selectedRefRow() const
{
    for (int i = 0; i < lcfrs.size(); ++i)
        if (lcfrs.at(i)->showButton()->isChecked())
            return i;
    return 0;
}

Analyzed2DRes *Analyzer::selectedMap()
{
    Analyzed2DRes *map = nullptr;
    // A later hit overrides an earlier one, in this order.
    const int id = refGroup->checkedId();
    if (id >= 0 && id < lcfrs.size()) {
        const int kind = ui->SelDMut->isChecked() ? 0 : (ui->SelRatio->isChecked() ? 1 : 0);
        map = lcfrs.at(id)->maps.value(kind);
    }
    if (ui->ShowZ->isChecked())
        map = &zansaMap;
    if (ui->ShowDEdge->isChecked())
        map = &dEdgeMap;
    if (ui->ShowDMuT->isChecked() && raDMutMap.imgValid)
        map = &raDMutMap;
    if (ui->ShowRest->isChecked() && raRestMap.imgValid)
        map = &raRestMap;
    if (ui->ShowRatio->isChecked() && raRatioMap.imgValid)
        map = &raRatioMap;
    if (ui->ShowResElemsA->isChecked() && !elems.isEmpty() && showGroup) {
        const int e = showGroup->checkedId();
        if (e >= 0 && e < elems.size()) {
            const QList<Analyzed2DRes *> &m = elems.at(e)->maps;
            const QPair<QAbstractButton *, Analyzed2DRes *> kinds[] = {
                {ui->ShowElemsDMut0, m.value(0)},   {ui->ShowElemsDMutN, m.value(1)},
                {ui->ShowElemsCorr, &elemsCorMap},  {ui->ShowElemsCorrTh, &elemsCorThMap},
                {ui->ShowElemsMutPlus, m.value(2)}, {ui->ShowElemsMutMinus, m.value(3)},
                {ui->ShowElemsDE, m.value(4)},      {ui->ShowElemsROI, m.value(5)},
                {ui->ShowElemsNROI, m.value(6)}};
            for (const auto &k : kinds)
                if (k.first->isChecked())
                    map = k.second;
        }
    }
    if (ui->SelSumUp->isChecked())
        map = &sumUpMap;
    if (ui->SelProcMaps->isChecked()) {
        if (ui->ShowMap1->isChecked())
            map = &map1;
        if (ui->ShowMap2->isChecked())
            map = &map2;
        if (ui->ShowProcessedMap->isChecked())
            map = &processedMap;
    }
    return map;
}

QList<QPair<Analyzed2DRes *, bool>> Analyzer::scaledMaps()
{
    QList<QPair<Analyzed2DRes *, bool>> out;
    for (LCFReference *r : std::as_const(lcfrs)) {
        out << qMakePair(r->maps.at(0), false);
        out << qMakePair(r->maps.at(1), true);
    }
    out << qMakePair(&zansaMap, false) << qMakePair(&dEdgeMap, false) << qMakePair(&raDMutMap, false)
        << qMakePair(&raRestMap, false) << qMakePair(&raRatioMap, true);
    for (ElemCtrl *e : std::as_const(elems))
        for (Analyzed2DRes *m : std::as_const(e->maps))
            out << qMakePair(m, false);
    return out;
}

void Analyzer::colorScaleChanged()
{
    const bool f = ui->FixedScale->isChecked();
    const double dMin = ui->DMutScaleMin->text().toDouble();
    const double dMax = ui->DMutScaleMax->text().toDouble();
    const double rMin = ui->RatioScaleMin->text().toDouble();
    const double rMax = ui->RatioScaleMax->text().toDouble();
    const bool u = ui->UseUpperLimit->isChecked();
    const double v = ui->UpperLimitV->text().toDouble();
    for (const auto &m : scaledMaps()) {
        m.first->setFixedScale(f);
        if (m.second)
            m.first->setScale(rMin, rMax);
        else
            m.first->setScale(dMin, dMax);
        // Only the panels' and the elements' maps keep the upper limit.
        if (m.first != &zansaMap && m.first != &dEdgeMap && m.first != &raDMutMap && m.first != &raRestMap
            && m.first != &raRatioMap)
            m.first->setUpperLimit(u, v);
    }
    emit changedSelection();
}

void Analyzer::processMaps()
{
    if (!map1.imgValid || !map2.imgValid)
        return;
    AnalyzeCond cond;
    emit askAnalyzeCond(cond);
    const int mode = ui->ProcTypeSub->isChecked() ? 0
                     : ui->ProcTypeDiv->isChecked() ? 1
                     : ui->ProcTypeMask->isChecked() ? 2
                                                     : 0;
    processedMap.setUp(cond);
    AnalyzeCond c = cond;
    c.restart();
    do {
        const double a = map1.sumInBlock(c.ix, c.iy, c.binX, c.binY);
        const double b = map2.sumInBlock(c.ix, c.iy, c.binX, c.binY);
        double v = 0;
        if (mode == 1)
            v = b == 0 ? 1.0 : a / b;
        else if (mode == 2)
            v = b > 0 ? a : 0.0;
        else
            v = a - b;
        processedMap.setData(c.ix, c.iy, c.binX, c.binY, v);
        qDebug() << c.ix << c.iy << v << map1.valueAt(c.ix, c.iy) << c.binX << c.binY << map1.width()
                 << map1.height();
    } while (c.next());
    processedMap.genImg();
}

void Analyzer::captureAsMap1()
{
    if (Analyzed2DRes *m = selectedMap()) {
        map1.assignFrom(m);
        ui->Map1Name->setText(map1.name);
    }
}

void Analyzer::captureAsMap2()
{
    if (Analyzed2DRes *m = selectedMap()) {
        map2.assignFrom(m);
        ui->Map2Name->setText(map2.name);
    }
}

void Analyzer::noticedNewZ(double z)
{
    ui->DispZansa->setText(g6(z));
}

void Analyzer::noticedNewDEdge(double dEdge)
{
    ui->DispDEdge->setText(g6(dEdge));
}

void Analyzer::toggledDEdgeCompWith(bool)
{
    // Enabled on either toggle: once shown, the comparison controls stay
    // available, whichever mode is chosen afterwards.
    ui->DEdgeCWFrame->setEnabled(true);
}

void Analyzer::toggledCWFile(bool)
{
}

void Analyzer::selectedNewDEdgeCWFile(QString fname)
{
    // A file that fails to load leaves an empty target: the comparison then
    // finds no overlap, which shows in the map, not here.
    dEdgeRef.load(fname);
}

void Analyzer::setFVEStep()
{
    fvEStep = ui->FVeStep->text().toDouble();
}

void Analyzer::setFVElimReg()
{
    fvElimReg = ui->FVElimReg->text().toDouble();
}

void Analyzer::updateFVMap()
{
    fvView->updateMap();
}

void Analyzer::show()
{
    QFrame::show();
    xafsView_->show();
}

void Analyzer::showXv()
{
    xafsView_->show();
}

void Analyzer::setContAccess(bool f)
{
    contAccess = f;
    worker->contAccess = f;
}

void Analyzer::setLCFMode(int f)
{
    ui->MLCF->setChecked(f == 1);
}

void Analyzer::setLCFAsOld(bool f)
{
    ui->AsOldLCF->setChecked(f);
}

void Analyzer::setLCFRange(double fromEV, double toEV)
{
    ui->LCFRange1->setText(g6(fromEV));
    ui->LCFRange2->setText(g6(toEV));
}

void Analyzer::analyzeAndShowSpectrum(XafsSpectrum s, SuggestElm elm)
{
    curSpectrum = s;
    analyzeSpectrum(curSpectrum, elm);
    xafsView_->setTarget(curSpectrum);
}

void Analyzer::initAnalyzeSpectrum()
{
    dEdgeIsMid = ui->DEdgeMidPoint->isChecked();
    dEdgeMidRatio = ui->DEdgeMidRatio->text().toDouble();
    dEdgeCWRange = ui->DEdgeCWFullRangeEV->text().toDouble();
    dEdgeCWInit = ui->DEdgeCWInitDEeV->text().toDouble();
    dEdgeCWMin = ui->DEdgeCWMinDEeV->text().toDouble();
    raFactor = ui->RAFactor->text().toDouble();
    raAtEV = ui->RAAtEV->text().toDouble();
}

void Analyzer::generateDEdgeStep()
{
    dEdgeRef = dEdgeStep(ui->DEdgeCWStepAt->text().toDouble(), ui->DEdgeCWStepWeV->text().toDouble(),
                         ui->DEdgeCWStepDEeV->text().toDouble());
}

void Analyzer::analyzeSpectrum(const XafsSpectrum &s, SuggestElm elm)
{
    sElm = elm;
    if (!ui->Sel2DA->isChecked())
        return;
    pending = int(selLCF()) + int(selDEdge()) + int(selElems()) + int(selRA()) + int(selFV());
    // The order is fixed: the worker answers in it.
    if (selLCF()) {
        // The range and the model are read at every point, unlike the
        // snapshot of the run's other parameters.
        const double r1 = ui->LCFRange1->text().toDouble();
        const double r2 = ui->LCFRange2->text().toDouble();
        emit analyzeSpectrum0(limitedSpectrum(s, r1, r2), lcfSnapshot(), ui->MLCF->isChecked(), r1, r2, sElm);
    }
    if (selDEdge())
        emit analyzeSpectrumDEdge0(s, sElm, dEdgeIsMid, dEdgeMidRatio, dEdgeRef, dEdgeCWRange * 0.5, dEdgeCWInit,
                                   dEdgeCWMin);
    if (selElems())
        emit analyzeSpectrumElems0(s, elemSnapshot(), elemsBgSnapshot(), mainTarget());
    if (selRA())
        emit analyzeSpectrumRA(s, raFactor, raAtEV);
    if (selFV())
        emit analyzeSpectrumFV(s, sElm, std::max(0.01, fvEStep), fvElimReg, contAccess);
}

PointAnalyses Analyzer::pointAnalyses() const
{
    PointAnalyses p;
    p.lcf = selLCF();
    if (p.lcf) {
        p.lcfRefs = lcfSnapshot();
        p.lcfForm = ui->MLCF->isChecked() ? LcfForm::Mlcf : (worker->lcfOld ? LcfForm::Old : LcfForm::New);
        p.lcfR1 = ui->LCFRange1->text().toDouble();
        p.lcfR2 = ui->LCFRange2->text().toDouble();
    }
    p.dEdge = selDEdge();
    p.dEdgeIsMid = dEdgeIsMid;
    p.dEdgeMidRatio = dEdgeMidRatio;
    p.dEdgeRef = dEdgeRef;
    p.dEdgeRange = dEdgeCWRange * 0.5;
    p.dEdgeInit = dEdgeCWInit;
    p.dEdgeMin = dEdgeCWMin;
    p.elems = selElems();
    if (p.elems) {
        p.elemConds = elemSnapshot();
        p.elemsBg = elemsBgSnapshot();
        p.mainT = mainTarget();
    }
    p.ra = selRA();
    p.raFactor = raFactor;
    p.raAtEV = raAtEV;
    p.fv = selFV();
    p.fvElimReg = fvElimReg;
    return p;
}

QVector<LcfRefInput> Analyzer::lcfSnapshot() const
{
    QVector<LcfRefInput> refs;
    refs.reserve(lcfrs.size());
    for (const LCFReference *r : lcfrs)
        refs.append({r->spectrum, r->inUse(), r->ratio});
    return refs;
}

QVector<ElemCond> Analyzer::elemSnapshot() const
{
    QVector<ElemCond> conds;
    conds.reserve(elems.size());
    for (const ElemCtrl *e : elems)
        conds.append({e->eng(), e->prePostDE(), e->roiS(), e->roiE(), e->thDMut(), e->noNeg(), e->isUsed(), e->ratioV,
                      e->stdRatio});
    return conds;
}

ElemsBg Analyzer::elemsBgSnapshot() const
{
    const AElemsConds *c = ui->AElemsCds;
    return {c->bgvDMut(), c->bgvDE(), c->bgvROI()};
}

int Analyzer::mainTarget() const
{
    return targetGroup ? targetGroup->checkedId() : 0;
}

void Analyzer::reAnalyzeSpectrum()
{
    analyzeSpectrum(curSpectrum, sElm);
}

void Analyzer::setProgress(double perCent)
{
    ui->Progress->setText(QString::asprintf("%5.2f", perCent));
}

void Analyzer::setLCFStd(int no, bool use, double dE, QString fname, QString isVic)
{
    if (no >= 0 && no < lcfrs.size())
        lcfrs.at(no)->setStd(use, dE, fname, isVic);
}

void Analyzer::selectImage(int id)
{
    if (QAbstractButton *b = refGroup->button(id))
        b->setChecked(true);
    emit changedSelection();
}

void Analyzer::setRaEnergy(double eng)
{
    ui->RAAtEV->setText(g6(eng));
}

void Analyzer::setRaFactor(double factor)
{
    ui->RAFactor->setText(g6(factor));
}

void Analyzer::setFixedScale(bool f)
{
    ui->FixedScale->setChecked(f);
    colorScaleChanged();
}

void Analyzer::setUseUpperLimit(bool f)
{
    ui->UseUpperLimit->setChecked(f);
    colorScaleChanged();
}

void Analyzer::setDMutScaleMax(double v)
{
    ui->DMutScaleMax->setText(g6(v));
    colorScaleChanged();
}

void Analyzer::setDMutScaleMin(double v)
{
    ui->DMutScaleMin->setText(g6(v));
    colorScaleChanged();
}

void Analyzer::setRatioScaleMax(double v)
{
    ui->RatioScaleMax->setText(g6(v));
    colorScaleChanged();
}

void Analyzer::setRatioScaleMin(double v)
{
    ui->RatioScaleMin->setText(g6(v));
    colorScaleChanged();
}

void Analyzer::setUpperLimitV(double v)
{
    ui->UpperLimitV->setText(g6(v));
    colorScaleChanged();
}

void Analyzer::setNormalize(bool f)
{
    if (xafsView_)
        xafsView_->setNormalize(f);
}

void Analyzer::setEnergyCorrection(bool f)
{
    if (xafsView_)
        xafsView_->setEnergyCorrection(f);
}

void Analyzer::setMainMode2DA()
{
    ui->Sel2DA->setChecked(true);
}

void Analyzer::setMainModeProcMaps()
{
    ui->SelProcMaps->setChecked(true);
}

void Analyzer::setSelSumUp()
{
    ui->SelSumUp->setChecked(true);
}

void Analyzer::setSelLCF(bool f)
{
    ui->Sel2DAMLCFA->setChecked(f);
}

void Analyzer::setSelDEdge(bool f)
{
    ui->Sel2DADEdgeA->setChecked(f);
}

void Analyzer::setSelElems(bool f)
{
    ui->Sel2DAElemA->setChecked(f);
}

void Analyzer::setSelRA(bool f)
{
    ui->Sel2DARAA->setChecked(f);
}

void Analyzer::setSelFV(bool f)
{
    ui->Sel2DFVA->setChecked(f);
}

void Analyzer::setImageTypeRatio(bool ratio)
{
    if (ratio)
        ui->SelRatio->setChecked(true);
    else
        ui->SelDMut->setChecked(true);
}

void Analyzer::setDEdgeMidPoint(bool midPoint)
{
    if (midPoint)
        ui->DEdgeMidPoint->setChecked(true);
    else
        ui->DEdgeCompWith->setChecked(true);
}

void Analyzer::setDEdgeMidRatio(double r)
{
    ui->DEdgeMidRatio->setText(g6(r));
}

void Analyzer::setDEdgeCompWithStep(bool step)
{
    if (step)
        ui->DEdgeCWStep->setChecked(true);
    else
        ui->DEdgeCWFile->setChecked(true);
}

void Analyzer::loadDEdgeCompFile(const QString &fname)
{
    ui->DEdgeCWFileSelect->load(fname);
}

void Analyzer::setDEdgeStepParams(double at, double width, double spacing)
{
    ui->DEdgeCWStepAt->setText(g6(at));
    ui->DEdgeCWStepWeV->setText(g6(width));
    ui->DEdgeCWStepDEeV->setText(g6(spacing));
}

void Analyzer::setDEdgeCompParams(double range, double init, double min)
{
    ui->DEdgeCWFullRangeEV->setText(g6(range));
    ui->DEdgeCWInitDEeV->setText(g6(init));
    ui->DEdgeCWMinDEeV->setText(g6(min));
}
