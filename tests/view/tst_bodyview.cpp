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

// The main window's image side: batch commands of the box sizes, the display
// and the view; after a load through the real loader threads from TIFFs
// written here, the exposure check and the colour refresh after the bar moved.
class TestBodyView : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void commands_data();
    void commands();
    void load_data();
    void load();
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

    const QRectF none, r(10, 20, 40, 60); // select_region 10 20 50 80: width x1 - x0, height y1 - y0
    const QString d = "10 10 10 10";
    QTest::newRow("band width") << QStringList{"set_band_w 7"} << "7 10 7 10" << 0 << none << none;
    QTest::newRow("band height") << QStringList{"set_band_h 3"} << "10 3 10 3" << 0 << none << none;
    QTest::newRow("each field") << QStringList{"set_view_w 1", "set_view_h 2", "set_analyze_w 3", "set_analyze_h 4"}
                                << "1 2 3 4" << 0 << none << none;
    QTest::newRow("not an integer: 0") << QStringList{"set_view_w 2.5"} << "0 10 10 10" << 0 << none << none;
    QTest::newRow("display by id") << QStringList{"select_disp_image 3"} << d << 3 << none << none;
    QTest::newRow("unknown id") << QStringList{"select_disp_image_i0", "select_disp_image 7"} << d << 1 << none << none;
    QTest::newRow("shift map") << QStringList{"select_disp_image_eShift"} << d << 2 << none << none;
    QTest::newRow("analysed, then I1") << QStringList{"select_disp_image_analyzed", "select_disp_image_i1"} << d << 0
                                       << none << none;
    QTest::newRow("region") << QStringList{"select_region 10 20 50 80"} << d << 0 << r << none;
    // Without a frame the reset has nothing to fit and the zoom stays.
    QTest::newRow("zoom, reset without frame") << QStringList{"select_region 10 20 50 80", "zoom_in", "scale_reset"}
                                               << d << 0 << r << r;
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
    QStringList box;
    for (const char *name : {"vHWidth_", "vVWidth_", "aHWidth_", "aVWidth_"})
        box << b.findChild<QLineEdit *>(name)->text();
    QCOMPARE(box.join(' '), boxes);
    QCOMPARE(b.findChild<QButtonGroup *>("selGroup")->checkedId(), shown);
    const ImgDispA *a = b.findChild<ImgDispA *>("dispA");
    QCOMPARE(a->hasSelection, !selection.isNull());
    if (!selection.isNull())
        QCOMPARE(a->selectedArea(), selection);
    QCOMPARE(a->viewWindow(), view);
}

void TestBodyView::load_data()
{
    QTest::addColumn<QList<double>>("seconds"); // per frame; negative: none recorded
    QTest::addColumn<double>("ms");
    QTest::addColumn<bool>("red");
    // After the bar's ends went to 0.25..0.75; "eShift" rows load into I0
    // and show the (empty) shift map: the current I0 frame follows the bar.
    QTest::addColumn<QString>("refresh");
    QTest::addColumn<QList<bool>>("recoloured"); // per frame; the last is shown

    QTest::newRow("equal, bar untouched") << QList<double>{0.05, 0.05, 0.05} << 50.0 << false << ""
                                          << QList<bool>{false, false, false};
    // The first value stands, in a red field. A drag recolours the shown frame.
    QTest::newRow("last differs, drag") << QList<double>{0.05, 0.05, 0.2} << 50.0 << true << "drag"
                                        << QList<bool>{false, false, true};
    // Frames without a time hold 100 ms, which replaces the default 50.
    QTest::newRow("none recorded, set all") << QList<double>{-1, -1} << 100.0 << false << "set all"
                                            << QList<bool>{true, true};
    QTest::newRow("no shift map, drag") << QList<double>{0.05, 0.05} << 50.0 << false << "eShift drag"
                                        << QList<bool>{false, true};
    QTest::newRow("no shift map, set all") << QList<double>{0.05, 0.05} << 50.0 << false << "eShift set all"
                                           << QList<bool>{true, true};
}

void TestBodyView::load()
{
    QFETCH(QList<double>, seconds);
    QFETCH(double, ms);
    QFETCH(bool, red);
    QFETCH(QString, refresh);
    QFETCH(QList<bool>, recoloured);

    // 5 x 1 frames of the values 0, 250, 500, 750, 1000 into one stack.
    const bool i0 = refresh.startsWith("eShift");
    QTemporaryDir dir;
    const quint16 px[] = {0, 250, 500, 750, 1000};
    QStringList files;
    for (int i = 0; i < seconds.size(); ++i) {
        files << QStringLiteral("%1/f%2.tif").arg(dir.path()).arg(i);
        QVERIFY(writeTiff16(files.last(), 5, 1, px, seconds.at(i)));
    }
    Body b;
    QSignalSpy finish(&b, &Body::finishBatchExec);
    if (i0)
        b.readI0Files(files, true);
    else
        b.readI1Files(files, true);
    QVERIFY(finish.wait(10000));
    QCOMPARE(finish.at(0).at(0).toInt(), int(i0 ? LOAD_I0_FILES : LOAD_I1_FILES));
    const SelectDataFiles *panel = b.findChild<SelectDataFiles *>(i0 ? "SelectI0Files" : "SelectI1Files");
    QCOMPARE(panel->expTimeMS(), ms);
    QCOMPARE(panel->findChild<QLineEdit *>("ExpTime")->styleSheet().contains("255, 192, 192"), red);

    ImgDispA *a = b.findChild<ImgDispA *>("dispA");
    if (i0)
        QVERIFY(exec(b, "select_disp_image_i0"));
    QVector<TiffData *> frames;
    for (int i = 0; i < seconds.size(); ++i) {
        QVERIFY(exec(b, QStringLiteral("seek_image %1").arg(i)));
        frames << a->data;
    }
    QCOMPARE(frames.last()->fileName, files.last());
    if (i0)
        QVERIFY(exec(b, "select_disp_image_eShift"));
    // Values 250 and 750 are t = 0.25 and 0.75 of the frame's range. Ends
    // 0..1 give grey trunc(t * 256) = 64 and 192; ends 0.25..0.75 map them to
    // 0 and 1, grey 0 and 255.
    auto *bar = b.findChild<ColorBar *>("CBar");
    bar->setEnds(0.25, 0.75);
    if (refresh.endsWith("set all"))
        QVERIFY(exec(b, "cbar_set_all"));
    else if (refresh.endsWith("drag")) {
        // A drag: each move, then the release.
        emit bar->cBarUpdating();
        emit bar->cBarUpdated();
    }
    for (int i = 0; i < frames.size(); ++i) {
        const auto *bytes = reinterpret_cast<const uchar *>(frames.at(i)->imageBytes.constData());
        QVERIFY(frames.at(i)->image);
        QCOMPARE(QPoint(bytes[1], bytes[3]), recoloured.at(i) ? QPoint(0, 255) : QPoint(64, 192));
    }
}

QTEST_MAIN(TestBodyView)
#include "tst_bodyview.moc"
