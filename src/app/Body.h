#pragma once

#include "analysis/AnalyzeCond.h"
#include "batch/CmdLine.h"
#include "spectrum/SuggestElm.h"
#include "batch/ExCmdId.h"
#include "images/Absorption.h"
#include "images/CrossSection.h"
#include "images/ErrPoints.h"
#include "images/H5Stack.h"
#include "images/TiffData.h"
#include "network/Client.h"
#include "spectrum/FourierWork.h"
#include "spectrum/Spectrum.h"
#include "spectrum/XafsSpectrum.h"
#include "view/DrawText.h"

#include <QButtonGroup>
#include <QElapsedTimer>
#include <QPointer>
#include <QMainWindow>
#include <QStringList>
#include <QVector>

#include <memory>
#include <vector>

class Analyzed2DRes;
class Analyzer;
class MapRun;
class BatchCtrl;
class BatchDispatcher;
class SaveDataCfg;
class LoadTiff;
class QPainter;
class QThread;
class QTimer;
class SelectDataFiles;
class Stars;
class XafsFileSelect;
class _FileDialog;
struct AbsorptionInput;
class XafsView;
class WindowPlaces;

namespace Ui {
class Body;
}

// The main window and the hub of the program: it owns the image stacks, the
// windows and the workers, and every other part is reached through its
// signals and slots. Its slots are many; each subsystem declares its own in
// a block of this class and defines them in its own folder (for instance
// src/batch/BodyBatch.cpp), so that this file stays a table of contents.
class Body : public QMainWindow
{
    Q_OBJECT
public:
    explicit Body(QWidget *parent = nullptr);
    ~Body() override;

    // Batch (src/batch/BodyBatch.cpp): the -b file goes into the batch
    // editor (false, and the editor unchanged, when it can't be read); -x
    // runs the editor's text as its execute button does.
    bool loadBatchFile(const QString &fname);
    void execBatch();

    // Suggested element (src/spectrum/BodySpectrum.cpp): the element, edge
    // and fit window that every spectrum analysis is handed, read from the
    // panel's fields at the moment of the call.
    SuggestElm suggestElm() const;

    // Every window of the program under the name its place is kept by
    // (src/app/Body.cpp); main restores them before the first show.
    WindowPlaces *windowPlaces() const { return places; }

signals:
    // Ends the program: main() connects it to QApplication::closeAllWindows.
    void finishing();
    // A batch command that takes time answers with its id when it is done.
    void finishBatchExec(int id);
    void currentPosition(int ix, int iy, int hw, int vw);

    // Loading (src/images/BodyImages.cpp): each queues a job on the loader
    // of its stack. errPs is the asking panel's mask, which the loader only
    // reads; id comes back with the loader's finish.
    void loadI1Files(QStringList files, bool ignoreLive, int skip, int cutFirst, int cutLast, ErrPoints *errPs,
                     EX_CMD_ID id);
    void loadI0Files(QStringList files, bool ignoreLive, int skip, int cutFirst, int cutLast, ErrPoints *errPs,
                     EX_CMD_ID id);
    // The same for the slices of an HDF5 stack.
    void loadI1Stack(H5Stack stack, int skip, int cutFirst, int cutLast, ErrPoints *errPs, EX_CMD_ID id);
    void loadI0Stack(H5Stack stack, int skip, int cutFirst, int cutLast, ErrPoints *errPs, EX_CMD_ID id);

public slots:
    // Batch (src/batch/BodyBatch.cpp): carries out one external batch
    // command and answers with finishBatchExec, at once or when the job ends.
    void execCmdSlot(CmdLine cmd, bool inRem);

    // Suggested element: fill the edge-energy field from the edge table for
    // the element and edge named in the panel.
    void newEdgeSuggested(int edge);
    void newElmSuggested();

    // View (src/view/BodyView.cpp): the colour bar moved (only the shown
    // image is recoloured) or was set for all (every frame of the stack).
    void cBarUpdating();
    void cBarUpdated();
    // Loading (src/images/BodyImages.cpp). readI1Files starts a load of
    // the files in the given order; with newFile the stack is emptied first.
    // The finish reaches a waiting batch with id 4 (I1) or 5 (I0). A single
    // file that is HDF5 loads as a stack, from the datasets the panel names.
    void readI1Files(QStringList files, bool newFile);
    void readI0Files(QStringList files, bool newFile);
    // An HDF5 stack: the frames are the slices of imagePath, with the
    // energies of energyPath when the file has them (empty paths let the
    // file choose). The stack is looked up before anything is cleared, so
    // that bad input loads nothing and keeps the stack there; the load ends
    // with the loader's finish carrying id in any case.
    void readI1H5(const QString &file, const QString &imagePath, const QString &energyPath, bool newFile,
                  EX_CMD_ID id);
    void readI0H5(const QString &file, const QString &imagePath, const QString &energyPath, bool newFile,
                  EX_CMD_ID id);
    // A frame from a loader: Body owns it from here on.
    void loadedI1(TiffData *data, int fNo, int totalFiles);
    void loadedI0(TiffData *data, int fNo, int totalFiles);
    void finishedLoadI1Files();
    void finishedLoadI0Files();
    void clearI1Files();
    void clearI0Files();

    // Navigation (src/view/BodyView.cpp). showData(no) shows frame no of the
    // stack chosen by ShowData/ShowI0 (nothing outside it) and moves SeekBar
    // and ImgNo to no. sliderMoved, prev, next and seekImage also move the
    // current index of that stack's file panel; newImageNo follows ImgNo.
    void showData(int no);
    void sliderMoved(int idx);
    void prev();
    void next();
    void seekImage(int imgNo);
    void newImageNo();
    // One of the four display buttons was toggled.
    void dispImgSelected(bool checked);
    // The whole image becomes the selected area.
    void selAreaFull();

private:
    // Construction, in the order the constructor calls them. The order
    // matters: the form must exist before any step connects to it, and the
    // configured batch runs only once every receiver of its commands is
    // there. A new subsystem adds its setupXxx() at its place in the list.
    static void registerMetaTypes();
    void setupForm();
    void setupSelectionGroup();
    void setupSuggestElm();
    void setupBatch();
    void setupFilePanels();
    void setupAnalyzer2();
    // Every window's place is stored as it is hidden and restored at start.
    void feedConfiguredBatch(const QStringList &cmdLines);

    std::unique_ptr<Ui::Body> ui;
    // What the image area shows: ShowData 0, ShowI0 1, ShowShiftMap 2,
    // ShowResAnalysis 3.
    QButtonGroup selGroup;

    // Batch: the dispatcher lives on its own thread, which is quit and
    // waited for when the window goes.
    void teardownBatch();
    QThread *batchThread = nullptr;
    BatchDispatcher *batchDispatcher = nullptr;
    BatchCtrl *batchCtrl = nullptr;

    // Loading: one loader per stack, each on a thread of its own, so the
    // two stacks load at the same time. The frames are owned here.
    void setupLoading();
    void teardownLoading();
    QVector<TiffData *> i1Frames;
    QVector<TiffData *> i0Frames;
    // Size and detector offsets of the first I1 frame.
    int imgW = 0;
    int imgH = 0;
    int imgX0 = 0;
    int imgY0 = 0;
    QThread *i1LoadThread = nullptr;
    QThread *i0LoadThread = nullptr;
    LoadTiff *i1Loader = nullptr;
    LoadTiff *i0Loader = nullptr;
    // Pace the spectrum under the pointer while frames arrive.
    QTimer *loadSpectrumTimer = nullptr;
    QElapsedTimer loadSpectrumClock;
    // Hooks for the spectrum under the pointer (src/images/BodyImages.cpp),
    // which the spectrum view fills in: a new I1 stack makes the two
    // spectrum views scale anew, a new frame refreshes the spectrum at the
    // cursor, and the end of a load puts the cursor back to (0, 0).
    void spectrumOnNewI1Stack();
    void spectrumOnNewFrame();
    void spectrumOnLoadFinished(bool i1);
    // A frame was chosen in the stack; its energy marks the spectrum plot.
    void spectrumOnFrameSelected(double energy);
    // Checks that every frame has the first frame's exposure and shows it
    // in the panel, red when they differ.
    static void checkExposures(const QVector<TiffData *> &frames, SelectDataFiles *panel);
    // Looks up the HDF5 stack a panel's load would read, and checks that it
    // fits in memory besides the frames that stay (those of `kept`, unless
    // newFile frees them). False, with a log line, otherwise.
    static bool findH5Stack(const QString &file, const QString &imagePath, const QString &energyPath,
                            const SelectDataFiles *panel, const QVector<TiffData *> &kept, bool newFile,
                            H5Stack &stack);

    // Navigation and display (src/view/BodyView.cpp).
    void setupNavigation();
    bool showsI1() const;
    const QVector<TiffData *> &shownFrames() const;
    SelectDataFiles *shownPanel() const;
    // Renders the frames [from, to) of the shown stack again through the bar.
    void rerenderShown(qsizetype from, qsizetype to);
    // True when a change of the colour bar recolours frames rather than a map.
    bool framesFollowColorBar() const;
    // Batch commands of the box sizes, the display and the image view.
    void execViewCmd(EX_CMD_ID id, const CmdLine &cmd);
    // Spectrum view (src/view/BodyView.cpp): the plot of the spectrum under
    // the pointer, a window of its own shown at start and brought back by the
    // "Spectrum" button, and the plot of the background spectrum. Both are
    // children of the main window, so they go with it.
    void setupXafsView();
    // The batch commands of the spectrum view: save_spectra,
    // xafs_view_normalize, xafs_view_enerugy_correction.
    void execXafsViewCmd(EX_CMD_ID id, const CmdLine &cmd);
    XafsView *xafsView = nullptr;
    XafsView *bgView = nullptr;

    // File panels (src/images/BodySelect.cpp): the batch commands that only
    // set a field of the I1 or the I0 panel, and finish at once.
    void execFilePanelCmd(EX_CMD_ID id, const QStringList &args);

    // Absorption (src/images/BodyAbsorption.cpp): the dark image, the dark
    // areas, the total-I0 and BG spectra, the bad-pixel mask, and the box
    // spectra built from them and from the controls as they stand.
public:
    // Each result lives in a curve kept by Body and refilled by the next call
    // of the same function, so a mouse move or a map pixel allocates nothing
    // once the curve has room; copy it to keep it. The absorption and its
    // corner form share one curve; raw and the two sections have their own.
    const Spectrum &absorptionSpectrum(int x, int y, int hw, int vw);
    // The same, with rawSpectrum's curve of the box taken from the same sums.
    const Spectrum &absorptionSpectrumWithRaw(int x, int y, int hw, int vw);
    // Both cross sections through (x, y) of the frame on show into hSection
    // and vSection, as horizontalSection(y, 1, viewHalfHeight()) and
    // verticalSection(x, 1, viewHalfWidth()) give them.
    void crossSections(int x, int y, bool asAbsorption);
    const Spectrum &absorptionSpectrumByCorners(int x0, int y0, int x1, int y1);
    const Spectrum &rawSpectrum(int x, int y, int hw, int vw);
    // Along row y / column x of the frame at SeekBar's index, in the stack
    // on display (ShowData: I1, else I0), or with asAbsorption in I1.
    const Spectrum &horizontalSection(int y, int hw, int vw, bool asAbsorption);
    const Spectrum &verticalSection(int x, int hw, int vw, bool asAbsorption);
    // The rectangle selected on the image area as x, y, w, h.
    QRectF selectedArea() const;

public slots:
    void selectedDark(QString fname);
    void clearDark();
    void setI0DarkArea();
    void setI1DarkArea();
    void updateI0DarkArea();
    void updateI1DarkArea();
    void clearUpdateI0DarkArea();
    void clearUpdateI1DarkArea();
    void clearI0DarkArea();
    void clearI1DarkArea();
    void newTotalI0ofI1File(QString fname);
    void newTotalI0ofI0File(QString fname);
    void selectedBG(QString fname);
    void clearedBG();
    void useErrPMaskToggled(bool f);

private:
    void setupAbsorption();
    void setupBGSelect();
    void setupErrPoints();
    AbsorptionInput absorptionInput();

    std::unique_ptr<TiffData> dark; // from SelectDark, or null
    _FileDialog *darkDialog = nullptr;
    bool useI0DarkArea = false;
    bool useI1DarkArea = false;
    QRectF i0DarkRect;
    QRectF i1DarkRect;
    // One value per frame of the stack: that frame's mean over its dark
    // rectangle less the dark image's. They grow with the stack.
    QVector<double> i0DarkList;
    QVector<double> i1DarkList;
    XafsSpectrum totalI0ofI1;
    XafsSpectrum totalI0ofI0; // read and logged; nothing else uses it
    XafsSpectrum bg;
    bool useBG = false;
    XafsFileSelect *totalI0ofI1Select = nullptr;
    XafsFileSelect *totalI0ofI0Select = nullptr;
    XafsFileSelect *bgSelect = nullptr;
    Spectrum absSpectrum;
    Spectrum rawSpec;
    Absorption::KeptSums pointerSums; // the pointer's box sums, slid as it moves
    Spectrum hSection;
    Spectrum vSection;
    CrossSection hCross{true}; // the pointer's sections, slid as it moves
    CrossSection vCross{false};

    // Main view (src/view/BodyMainView.cpp): the spectrum under the pointer,
    // the cross sections and values under it, what is drawn over the image,
    // and the memory of stored positions.
public:
    // The energy shift at the current pixel, added to the energy offset of
    // the spectrum shown.
    double currentEShift() const;

public slots:
    // Everything drawn over the image, in image coordinates.
    void draw(QPainter *p);
    // Analyses and plots the box spectrum at (curX, curY); the second form
    // first moves there (truncated), as a pointer move does.
    void showXafsSpectrum();
    void showXafsSpectrum(double x, double y);
    // Cross sections and the values under the pointer.
    void onMouseMovedInDispA();
    void onMousePressedInDispA();
    // PosX or PosY was edited: go there, per coordinate inside the image.
    void newCurPos();
    // Position memory: store the current position under PosLbl's label (and
    // count the label up), go to the chosen one, delete it.
    void savePos();
    void rememberPos();
    void deletePos();
    void updatePosLbl();
    // "Chk Vals": the current analysis map to the log.
    void showAnalyzedVals();

private:
    void setupMainView();
    // move_position x y: through the image area's pointer, as a mouse move.
    void movePosition(int x, int y);
    int viewHalfWidth() const;
    int viewHalfHeight() const;
    // The box of half widths hw, vw around image point (x, y), on screen.
    QRect screenBox(int x, int y, int hw, int vw) const;
    void drawStoredPositions(QPainter *p, int hw, int vw);

    int curX = 0;
    int curY = 0;
    DrawText posText;

private:
    void setupWindowPlaces();
    WindowPlaces *places = nullptr;

public:

    // Network (src/network/BodyNetwork.cpp): the message-server client,
    // whose settings frame stands in the side column, and the TCP target
    // that receives the displayed spectrum.
public:
    // Announces a saved file to the message server: the event
    // "<eventWord> <fileName>" on the empty channel, for instance
    // announceSaved("SavedImage", path). Returns the line sent, or
    // "Stars is not ready (<line>)" when there is no connection; the
    // announcement is then lost and nothing else happens.
    QString announceSaved(const QString &eventWord, const QString &fileName);
    Stars *stars() const;

public slots:
    // The spectrum view's "To Network": the spectrum with a header of the
    // stacks, the point and the bins goes to the server as the event
    // "SendXafsData <text with '|' for line feeds>" and unchanged to the
    // TCP target.
    void sendXafsDataToStars(QByteArray data);

private:
    void setupNetwork();
    void startStars();
    // Read once at start; the configuration file can't change them.
    bool useStars = true;
    Client client;

    // Analysis run (src/analysis/BodyAnalysis.cpp): a walk over the selected
    // area (the whole image without one), one point in flight at a time: the
    // main thread forms the point's spectrum, the Analyzer's worker analyses
    // it, and the end signal records the results and sends the next point.
public slots:
    // A toggle: during a run it stops it.
    void start2DAnalysis();
    void stop2DAnalysis();
    void analyzeASpectrumFinished();
    void recordResForAPoint();
    void generateResImages();
    // Sets ac up over the selected area with the analysis box as the point's
    // block; false, and ac unchanged, without I1 frames.
    bool askAnalyzeCond(AnalyzeCond &ac);
    void setupResAnalysisImage();
    // The Analyzer's chosen map becomes the image area's overlay.
    void showSelectedMap();
    // "DeGlitch": on, the chosen map is searched for outliers and its
    // processed copy is shown (and saved); off, its own data again.
    void deGlitchToggled(bool f);

signals:
    // Declared for compatibility; nothing emits them and nothing listens.
    void findFirstDEdgeAtAPoint();
    void findNextDEdgeAtAPoint();
    void noMorePointsToFindDEdge();

private:
    void setupAnalyzer();
    void analyzeAPoint(AnalyzeCond &ac);
    // The run with many spectra in flight (MapRun): false, with nothing
    // started, where the one-at-a-time path must take the run.
    bool startMapRun();
    // Records the rows the threads have finished, in walk order, and ends
    // the run after the last.
    void recordMapRows();
    void recordMapRow(int row, const double *values);
    void endMapRun();
    // The end of a run on either path: the images made, the buttons freed,
    // and the batch told.
    void finish2DAnalysis();
    // The progress bar at the row iy of the walk.
    void show2DProgress(int iy);
    void stopRunBeforeFramesGo();
    // The energy shift of a point of the run, from the shift map.
    double pointEShift(int ix, int iy) const;
    // The batch commands of the Analyzer window.
    void execAnalyzerCmd(EX_CMD_ID id, const CmdLine &cmd);
    Analyzer *analyzer = nullptr;
    bool running2D = false;
    AnalyzeCond analyzeCond;
    // Pointers into the Analyzer's and its panels' maps, for one run.
    // Guarded: a new element list replaces the panels and their maps, even
    // during a run.
    QList<QPointer<Analyzed2DRes>> lcfMaps;
    QList<QPointer<Analyzed2DRes>> elemMaps;
    Analyzed2DRes *raDMutMap = nullptr;
    Analyzed2DRes *raRestMap = nullptr;
    Analyzed2DRes *raRatioMap = nullptr;
    Analyzed2DRes *fvMap = nullptr;
    MapRun *mapRun = nullptr;
    int mapRow = 0;     // the next row to record
    QElapsedTimer mapShown; // since the maps were last redrawn in a run
    double mapZ = 0;    // the residual a point without a fit records
    std::vector<double> mapZRow;

    // Saving (src/saving/BodySaving.cpp): the map on display as TIFF or text.
public slots:
    void showSaveDataDialog();
    void saveData(QString fname);
    void saveDataAsTiff(QString fname, int ext);
    void saveDataAsText(QString fname, int ext);

private:
    void setupSaving();
    // The batch commands of saving and of the save configuration.
    void execSaveCmd(EX_CMD_ID id, const CmdLine &cmd);
    SaveDataCfg *saveDataCfg = nullptr;

    // Calibration (src/calibration/BodyCalib.cpp): the energy-shift map. A
    // walk over the area compares each point's spectrum with a standard and
    // records the shift; the map is saved to and loaded from .emp files,
    // cleaned of outliers, and read per pixel by every spectrum (under the
    // pointer, in runs). CalibCtrl and EMPHeader are named here with their
    // class keys, which declares them at namespace scope.
public:
    // The shift at map pixel (mx, my): the map's value there, or with "Q.S.
    // Fitted" its fitted surface's; 0 off the map.
    double eShiftAt(int mx, int my) const;
    // Reads an .emp file into map; finishBatchExec(142) on every path. A
    // file that can't be opened, an invalid header, or a size that the file
    // can't hold changes neither the map nor the fields.
    void loadMap(QString fname, Analyzed2DRes &map, struct EMPHeader &empH);
    // The suffix is forced to emp; a file that can't be opened is logged.
    void saveEMap(QString fname, const Analyzed2DRes &map);

public slots:
    void newStdFile();
    // A toggle: during a run it stops the run (no statistics then).
    void execCalibration();
    void calibNextPoint();
    void finishCalib();
    void clearShiftMap();
    void saveEMap(QString fname);
    void loadEMap(QString fname);
    // Outliers of the shift map (by 40 eV about its mean) are replaced.
    void normalizeEShift();

signals:
    // Queued to the slot of the same name: one point per turn of the loop.
    void doCalibNextPoint();
    void doFinishCalib();
    void calibProgress(double p);

private:
    void setupCalib();
    void execCalibCmd(EX_CMD_ID id, const CmdLine &cmd);
    // The selected area, or the view without a selection.
    QRectF calibArea() const;
    // Line type of a point's spectrum: 0 Victoreen, 1 straight.
    int targetLineType() const;
    // "Eng. Shift" is on and the map has data: the colour bar recolours it.
    bool shiftMapFollowsColorBar() const;
    // The calibration with many points in flight (MapRun), as the analysis
    // run has: false, with nothing started, where the one-at-a-time walk
    // must take it. Rows are recorded in walk order.
    bool startCalibRun();
    void recordCalibRows();
    void recordCalibPoint(int ix, int iy, double dE);
    void endCalibRun();
    class CalibCtrl *calibCtrl = nullptr;
    Analyzed2DRes *shiftMap = nullptr; // a child of this window
    bool calibrating = false;
    AnalyzeCond cursor;
    MapRun *calibRun = nullptr;
    int calibRow = 0; // the next row to record
    XafsSpectrum calibStd;
    double deMin = 1e300;
    double deMax = -1e300;
    double deSum = 0;
    double deSqSum = 0;
    int nPoints = 0;
    // The frame offsets for which the shift map was made.
    int calibOffX = 0;
    int calibOffY = 0;

    // Saving pictures and spectra (src/saving/BodySavePictures.cpp,
    // src/saving/BodySaveSpectra.cpp): the shown image with its colour bar
    // and its view, every map of the reference rows, the image area as on
    // screen, the neutral flat and dark frames, and the spectrum of every
    // point of the analysis area as one table. Pictures take their format
    // from the suffix; a save that fails is logged and nothing else changes.
public slots:
    void saveImage(QString fname);
    void saveImageInfo(QString fname);
    void saveImageWNum(QString fname, QString num);
    void saveAllImages(QString fname);
    void saveScreenAs(QString fname);
    void saveFlatDark();
    // The spectrum view saved a spectrum file: the file is announced.
    void savedXafsData(QString fname);
    // Runs the routine of each checked kind, in the order normalised, raw
    // XAFS, raw; each writes <dir>/<base>.dat.
    void saveEachSpectrum(QString fname);
    void saveEachNormalizedXafsSpectrum(QString fname);
    void saveEachRawXafsSpectrum(QString fname);
    void saveEachRawSpectrum(QString fname);

private:
    void setupSavePictures();
    // A save dialog with these filters in the data folder; the chosen name
    // goes to onChosen.
    void askSaveName(const QStringList &filters, void (Body::*onChosen)(QString));
    enum class SpectraKind { Normalized, RawXafs, Raw };
    void saveEachSpectrumOf(SpectraKind kind, const QString &fname);

    // Image tools (src/tools/BodyTools.cpp): the image processor, which
    // aligns I1 frames by recording their shifts, and the statistics window
    // of the map on show, whose value range can be outlined on the image.
public slots:
    // Hands the I1 frame at the panel's index to the image processor.
    void giveProcData();
    // The shift of the I1 frame at the panel's index; every I1 frame's.
    void setImgShift(int dx, int dy);
    void clearAllShifts();
    // Shows the statistics window with the Analyzer's map over the area.
    void showStatistics();
    void selectedRangeInStats();

private:
    void setupImgProc();
    void setupStats();
    void execStatsCmd(EX_CMD_ID id, const CmdLine &cmd);
    // The points of the statistics range, outlined over the image.
    void drawStatsOverlay(QPainter *p);
    class ImgProc *imgProc = nullptr;
    class Stats *stats = nullptr;
    bool statsOverlayWanted = false;

    // Quality tools (src/tools/BodyQuality.cpp): the dark check of the I1
    // stack, the sum-up map of frame ranges, and the Fourier comparison of
    // the first frame with the spectra's components. They run over the
    // analysis area and write into the working folder (dark-*.dat,
    // sumUpImg.png); the Fourier result exists only in the log.
public slots:
    // Wired to "Collect Q Info"; nothing has been built behind it.
    void startCollectQInfo();
    void darkCheck();
    void doSumUp();
    void execFourierA();

signals:
    void doCollectQInfo(AnalyzeCond ac);

private:
    void setupSumUp();
    class Analyzer2 *analyzer2 = nullptr;
    FourierWork fourierA;
};
