#include "app/Body.h"
#include "app/Globals.h"
#include "batch/ExCmdId.h"
#include "images/SelectDataFiles.h"
#include "images/TiffWriter.h"
#include "view/ColorBar.h"
#include "view/ImgDispA.h"

#include <QButtonGroup>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <vector>

// The main window's image side in one process: batch commands of the box
// sizes, the display and the view; the colour refresh after the bar moved;
// the exposure check at the end of a load. Frames load through the real
// loader threads from TIFFs written here.
class TestBodyView : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void commands_data();
    void commands();
    void colourRefresh_data();
    void colourRefresh();
    void exposure_data();
    void exposure();
};

namespace {
// Runs one batch line; true when it answered at once with its own id.
bool exec(Body &b, const QString &line)
{
    QSignalSpy finish(&b, &Body::finishBatchExec);
    const CmdLine cmd = CmdLine::parse(line);
    b.execCmdSlot(cmd, false);
    return finish.count() == 1 && finish.at(0).at(0).toInt() == int(exCmdId(cmd.cmd));
}

// Loads 5 x 1 frames of the values 0, 250, 500, 750, 1000 into the I1 stack
// and waits for the loader's finish.
bool loadFrames(Body &b, const QString &dir, const QList<double> &exposures)
{
    const std::vector<quint16> px{0, 250, 500, 750, 1000};
    QStringList files;
    for (int i = 0; i < exposures.size(); ++i) {
        files << QStringLiteral("%1/f%2.tif").arg(dir).arg(i);
        if (!writeTiff16(files.last(), 5, 1, px.data(), exposures.at(i)))
            return false;
    }
    QSignalSpy finish(&b, &Body::finishBatchExec);
    b.readI1Files(files, true);
    return finish.wait(10000) && finish.at(0).at(0).toInt() == LOAD_I1_FILES;
}

QString box(const Body &b)
{
    QStringList v;
    for (const char *name : {"vHWidth_", "vVWidth_", "aHWidth_", "aVWidth_"})
        v << b.findChild<QLineEdit *>(name)->text();
    return v.join(' ');
}
} // namespace

void TestBodyView::init()
{
    InitGlobals();
    gConfig = ConfigTable();
}

void TestBodyView::commands_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QString>("boxes"); // view w, view h, analysis w, analysis h
    QTest::addColumn<int>("shown");     // checked display button
    QTest::addColumn<QRectF>("selection"); // empty: none
    QTest::addColumn<QRectF>("view");

    const QRectF none;
    QTest::newRow("band width") << QStringList{"set_band_w 7"} << "7 10 7 10" << 0 << none << none;
    QTest::newRow("band height") << QStringList{"set_band_h 3"} << "10 3 10 3" << 0 << none << none;
    QTest::newRow("each field") << QStringList{"set_view_w 1", "set_view_h 2", "set_analyze_w 3", "set_analyze_h 4"}
                                << "1 2 3 4" << 0 << none << none;
    // Not an integer: 0.
    QTest::newRow("not an integer") << QStringList{"set_view_w 2.5"} << "0 10 10 10" << 0 << none << none;
    QTest::newRow("display by id") << QStringList{"select_disp_image 3"} << "10 10 10 10" << 3 << none << none;
    QTest::newRow("unknown id") << QStringList{"select_disp_image_i0", "select_disp_image 7"} << "10 10 10 10" << 1
                                << none << none;
    QTest::newRow("shift map") << QStringList{"select_disp_image_eShift"} << "10 10 10 10" << 2 << none << none;
    QTest::newRow("analysed, then I1") << QStringList{"select_disp_image_analyzed", "select_disp_image_i1"}
                                       << "10 10 10 10" << 0 << none << none;
    // Width x1 - x0 = 40, height y1 - y0 = 60.
    QTest::newRow("region") << QStringList{"select_region 10 20 50 80"} << "10 10 10 10" << 0
                            << QRectF(10, 20, 40, 60) << none;
    // Without a frame the reset has nothing to fit and the zoom stays.
    QTest::newRow("zoom, reset without frame") << QStringList{"select_region 10 20 50 80", "zoom_in", "scale_reset"}
                                               << "10 10 10 10" << 0 << QRectF(10, 20, 40, 60)
                                               << QRectF(10, 20, 40, 60);
}

void TestBodyView::commands()
{
    QFETCH(QStringList, lines);
    QFETCH(QString, boxes);
    QFETCH(int, shown);
    QFETCH(QRectF, selection);
    QFETCH(QRectF, view);

    Body b;
    for (const QString &l : lines)
        QVERIFY2(exec(b, l), qPrintable(l));
    QCOMPARE(box(b), boxes);
    QCOMPARE(b.findChild<QButtonGroup *>("selGroup")->checkedId(), shown);
    const ImgDispA *a = b.findChild<ImgDispA *>("dispA");
    QCOMPARE(a->hasSelection, !selection.isNull());
    if (!selection.isNull())
        QCOMPARE(a->selectedArea(), selection);
    QCOMPARE(a->viewWindow(), view);
}

void TestBodyView::colourRefresh_data()
{
    QTest::addColumn<bool>("setAll");
    QTest::addColumn<QList<bool>>("recoloured"); // frames 0, 1, 2; 2 is shown

    QTest::newRow("drag: the shown frame") << false << QList<bool>{false, false, true};
    QTest::newRow("set all: the stack") << true << QList<bool>{true, true, true};
}

void TestBodyView::colourRefresh()
{
    QFETCH(bool, setAll);
    QFETCH(QList<bool>, recoloured);

    QTemporaryDir dir;
    Body b;
    QVERIFY(loadFrames(b, dir.path(), {-1, -1, -1}));
    ImgDispA *a = b.findChild<ImgDispA *>("dispA");
    QVector<TiffData *> frames;
    for (int i = 0; i < 3; ++i) {
        QVERIFY(exec(b, QStringLiteral("seek_image %1").arg(i)));
        frames << a->data;
    }
    QCOMPARE(frames.last()->fileName, dir.path() + "/f2.tif");

    // Values 250 and 750 are t = 0.25 and 0.75 of the frame's range. Ends
    // 0..1 give grey trunc(t * 256) = 64 and 192; ends 0.25..0.75 map them to
    // 0 and 1, grey 0 and 255.
    auto *bar = b.findChild<ColorBar *>("CBar");
    bar->setEnds(0.25, 0.75);
    if (setAll)
        QVERIFY(exec(b, "cbar_set_all"));
    else
        emit bar->cBarUpdating();

    for (int i = 0; i < 3; ++i) {
        const auto *bytes = reinterpret_cast<const uchar *>(frames.at(i)->imageBytes.constData());
        const bool isNew = recoloured.at(i);
        QVERIFY(frames.at(i)->image);
        QCOMPARE(int(bytes[1]), isNew ? 0 : 64);
        QCOMPARE(int(bytes[3]), isNew ? 255 : 192);
    }
}

void TestBodyView::exposure_data()
{
    QTest::addColumn<QList<double>>("seconds"); // per frame; negative: none recorded
    QTest::addColumn<double>("ms");
    QTest::addColumn<bool>("red");

    QTest::newRow("equal") << QList<double>{0.05, 0.05, 0.05} << 50.0 << false;
    // The first value stands, in a red field.
    QTest::newRow("last differs") << QList<double>{0.05, 0.05, 0.2} << 50.0 << true;
    // Frames without a time hold 100 ms, which replaces the default 50.
    QTest::newRow("none recorded") << QList<double>{-1, -1} << 100.0 << false;
}

void TestBodyView::exposure()
{
    QFETCH(QList<double>, seconds);
    QFETCH(double, ms);
    QFETCH(bool, red);

    QTemporaryDir dir;
    Body b;
    QVERIFY(loadFrames(b, dir.path(), seconds));
    const SelectDataFiles *panel = b.findChild<SelectDataFiles *>("SelectI1Files");
    QCOMPARE(panel->expTimeMS(), ms);
    QCOMPARE(panel->findChild<QLineEdit *>("ExpTime")->styleSheet().contains("255, 192, 192"), red);
}

QTEST_MAIN(TestBodyView)
#include "tst_bodyview.moc"
