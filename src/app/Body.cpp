#include "app/Body.h"

#include "analysis/AElemsConds.h"
#include "analysis/Analyzer.h"
#include "analysis/ElemCtrl.h"
#include "analysis/ElemsAnalysis.h"
#include "analysis/FeatureValue.h"
#include "analysis/LcfFit.h"
#include "analysis/LCFReference.h"
#include "app/Globals.h"
#include "app/WindowPlaces.h"
#include "batch/BatchCtrl.h"
#include "batch/ExCmdId.h"
#include "calibration/CalibCtrl.h"
#include "images/EOFSetup.h"
#include "images/SelectDataFiles.h"
#include "images/SelectDataFilesAdditionalSetup.h"
#include "saving/SaveDataCfg.h"
#include "tools/Analyzer2.h"
#include "tools/FVView.h"
#include "tools/ImgProc.h"
#include "tools/Stats.h"
#include "spectrum/ElmEdges.h"
#include "spectrum/XafsSpectrum.h"
#include "ui_Body.h"
#include "view/ColorBar.h"
#include "view/XafsView.h"

#include <QDebug>
#include <QScrollBar>

namespace {
const char *const BatchBanner = " =========== Batchs in Config ==============";
}

Body::Body(QWidget *parent)
    : QMainWindow(parent)
    , ui(new Ui::Body)
    , selGroup(this)
{
    // Element tables are read first, before anything can suggest an edge.
    loadElmEdges();
    registerMetaTypes();
    setupForm();
    setupSelectionGroup();
    setupNetwork();
    setupSuggestElm();

    // Setup steps of the subsystems, in this order: batch, spectrum view,
    // loading, navigation, CalibCtrl, Analyzer, Analyzer2, saving,
    // DeGlitch/NormalizeEShift, ImgProc, SumUp, bad-pixel mask, Stats.
    setupBatch();
    setupXafsView();
    setupFilePanels();
    setupLoading();
    setupAbsorption();
    setupNavigation();
    setupCalib();
    setupAnalyzer();
    setupAnalyzer2();
    setupSaving();
    setupImgProc();
    setupSumUp();
    setupErrPoints();
    setupStats();

    // CheckVals, the BG view and the position memory go here.
    setupBGSelect();
    setupMainView();
    setupWindowPlaces();

    feedConfiguredBatch(gConfig.allRestsOf(QStringLiteral("BATCH")));
    // Last: the connection to the message server.
    startStars();
}

Body::~Body()
{
    // A threaded run's threads read the frames: they end first.
    endMapRun();
    endCalibRun();
    // The loaders go first, so that no frame arrives while the stacks are
    // deleted.
    teardownLoading();
    teardownBatch();
    // Frames rendered after the window has gone take the full scale.
    if (gColorBar == ui->CBar)
        gColorBar = nullptr;
}

void Body::registerMetaTypes()
{
    // Every type that crosses threads by queued signal is registered here
    // under the name its signals are declared with, e.g.
    //     qRegisterMetaType<XafsSpectrum>("XafsSpectrum");
    // Each type is added as the code that defines it arrives.
    qRegisterMetaType<XafsSpectrum>("XafsSpectrum");
    qRegisterMetaType<SuggestElm>("SuggestElm");
    qRegisterMetaType<CmdLine>("CmdLine");
    qRegisterMetaType<EX_CMD_ID>("EX_CMD_ID");
    qRegisterMetaType<TiffData *>("TiffData*");
    qRegisterMetaType<ErrPoints *>("ErrPoints*");
    qRegisterMetaType<XafsSpectrum *>("XafsSpectrum*");
    qRegisterMetaType<AnalyzeCond>("AnalyzeCond");
    // The panels cross to the worker only as snapshots; the pointer types
    // are registered under their historical names all the same, the first
    // with its spelling.
    qRegisterMetaType<QVector<LCFReference *>>("QVector<LCFReferencd*>");
    qRegisterMetaType<QVector<ElemCtrl *>>("QVector<ElemCtrl*>");
    qRegisterMetaType<AElemsConds *>("AElemsConds*");
    qRegisterMetaType<QList<double> *>("QList<double>*");
    qRegisterMetaType<FeatureValue>("FeatureValue");
    qRegisterMetaType<QVector<LcfRefInput>>("QVector<LcfRefInput>");
    qRegisterMetaType<QVector<ElemCond>>("QVector<ElemCond>");
    qRegisterMetaType<ElemsBg>("ElemsBg");
    qRegisterMetaType<ElemsOutcome>("ElemsOutcome");
    qRegisterMetaType<H5Stack>("H5Stack");
}

void Body::setupForm()
{
    ui->setupUi(this);
    setWindowTitle(QStringLiteral("Tessarelle"));
    // The side column scrolls on short screens; it keeps room for its
    // scroll bar, so that the bar never covers the fields' right edge.
    ui->sideScroll->setMinimumWidth(ui->sideContents->sizeHint().width()
                                    + ui->sideScroll->verticalScrollBar()->sizeHint().width());
    // Frames render through the colour bar from here on.
    gColorBar = ui->CBar;
    ui->CBarAll->setText(tr("Set All"));
    // The end of a drag has no receiver: a drag recolours the frame on
    // screen only, and "Set All" is the one way to recolour a whole stack.
    connect(ui->CBar, &ColorBar::cBarUpdating, this, &Body::cBarUpdating);
    connect(ui->CBarAll, &QPushButton::clicked, this, &Body::cBarUpdated);
}

void Body::setupSelectionGroup()
{
    selGroup.setObjectName(QStringLiteral("selGroup"));
    selGroup.addButton(ui->ShowData, 0);
    selGroup.addButton(ui->ShowI0, 1);
    selGroup.addButton(ui->ShowShiftMap, 2);
    selGroup.addButton(ui->ShowResAnalysis, 3);
    for (QAbstractButton *b : selGroup.buttons())
        connect(b, &QAbstractButton::toggled, this, &Body::dispImgSelected);
}

void Body::setupWindowPlaces()
{
    // Names are the classes' (and panels') names, not the titles, which
    // change with the language.
    places = new WindowPlaces(this);
    places->add(this, QStringLiteral("Body"));
    places->add(xafsView, QStringLiteral("XafsView"));
    places->add(bgView, QStringLiteral("BGView"));
    places->add(analyzer, QStringLiteral("Analyzer"));
    places->add(analyzer->xafsView(), QStringLiteral("AnalyzerXafsView"));
    places->add(calibCtrl, QStringLiteral("CalibCtrl"));
    places->add(saveDataCfg, QStringLiteral("SaveDataCfg"));
    places->add(batchCtrl, QStringLiteral("BatchCtrl"));
    for (SelectDataFiles *panel : {ui->SelectI1Files, ui->SelectI0Files}) {
        places->add(panel->eofSetup(), panel->objectName() + QStringLiteral("-EOFSetup"));
        places->add(panel->additionalSetup(), panel->objectName() + QStringLiteral("-AdditionalSetup"));
    }
    places->add(analyzer2, QStringLiteral("Analyzer2"));
    places->add(imgProc, QStringLiteral("ImgProc"));
    places->add(stats, QStringLiteral("Stats"));
    places->add(analyzer->fvView, QStringLiteral("FVView"));
    places->saveOnClose(this);
}

void Body::feedConfiguredBatch(const QStringList &cmdLines)
{
    qDebug().noquote() << BatchBanner;
    for (const QString &line : cmdLines)
        qDebug().noquote() << line;
    qDebug().noquote() << BatchBanner;
    // Passed on even when empty and without ":end": the dispatcher then
    // stands in its running state until a finish or Stop, as it always has.
    batchCtrl->dispatchCmds(cmdLines);
}
