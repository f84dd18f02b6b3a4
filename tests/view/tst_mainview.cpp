#include "app/Body.h"
#include "app/Globals.h"
#include "batch/ExCmdId.h"
#include "images/TiffWriter.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QSlider>
#include <QTemporaryDir>
#include <QtTest>

#include <vector>

// The main window's position fields on a shown window with a 6 x 4 stack
// loaded: the memory of stored positions and the pointer placed by
// move_position, with the value shown under it.
class TestMainView : public QObject
{
    Q_OBJECT
private slots:
    void position_data();
    void position();
};

namespace {
const int W = 6, H = 4;
// Pixel (x, y) of frame k; frame 1, the newest, is on display after the load
// ("Show Latest" is on by default).
quint16 pixel(int x, int y, int k)
{
    return quint16(100 * y + 7 * x + 1000 * k + 3);
}
} // namespace

void TestMainView::position_data()
{
    QTest::addColumn<QString>("label");
    // "mem", "go", "del", "edit x y" (the position fields, as typed),
    // "move x y" (the batch command), "slide k" (the seek bar dragged to
    // frame k) or "key" (the arrow key on the seek bar, which moves the
    // handle but not the frame)
    QTest::addColumn<QStringList>("steps");
    QTest::addColumn<QString>("nextLabel");
    QTest::addColumn<QStringList>("items");
    QTest::addColumn<QPoint>("pos"); // PosX and PosY at the end

    // After a load the cursor is at (0, 0).
    QTest::newRow("A00 counts up") << "A00" << QStringList{"mem"} << "A01" << QStringList{"[A00]    0    0"}
                                   << QPoint();
    QTest::newRow("carry into a new digit") << "A99" << QStringList{"edit 2 3", "mem", "mem"} << "A101"
                                            << QStringList{"[A99]    2    3", "[A100]    2    3"} << QPoint(2, 3);
    QTest::newRow("carry keeps the width") << "B09" << QStringList{"mem"} << "B10" << QStringList{"[B09]    0    0"}
                                           << QPoint();
    QTest::newRow("no digits") << "Z" << QStringList{"mem"} << "Z01" << QStringList{"[Z]    0    0"} << QPoint();
    QTest::newRow("go back to a stored position") << "P1" << QStringList{"edit 4 1", "mem", "edit 1 2", "go"} << "P2"
                                                  << QStringList{"[P1]    4    1"} << QPoint(4, 1);
    // x = 6 and y = 4 are just off the 6 x 4 image: refused per coordinate.
    QTest::newRow("edit outside the image, per coordinate") << "C0" << QStringList{"edit 3 2", "edit 6 1", "edit 6 4"}
                                                            << "C0" << QStringList() << QPoint(3, 1);
    QTest::newRow("delete the chosen one") << "D0" << QStringList{"mem", "edit 5 3", "mem", "del"} << "D2"
                                           << QStringList{"[D0]    0    0"} << QPoint(5, 3);
    QTest::newRow("move, back to the first pixel") << "M0" << QStringList{"move 4 2", "move 0 0"} << "M0"
                                                   << QStringList() << QPoint();
    QTest::newRow("move to the last pixel") << "M0" << QStringList{"move 5 3"} << "M0" << QStringList()
                                            << QPoint(W - 1, H - 1);
    QTest::newRow("seek bar dragged, then a key") << "S0" << QStringList{"slide 0", "move 2 1", "key", "move 3 2"}
                                                  << "S0" << QStringList() << QPoint(3, 2);
}

void TestMainView::position()
{
    QFETCH(QString, label);
    QFETCH(QStringList, steps);
    QFETCH(QString, nextLabel);
    QFETCH(QStringList, items);
    QFETCH(QPoint, pos);

    QTemporaryDir tmp;
    std::vector<quint16> px(W * H);
    QStringList files;
    for (int k = 0; k < 2; ++k) {
        for (int p = 0; p < W * H; ++p)
            px[p] = pixel(p % W, p / W, k);
        files << tmp.filePath(QStringLiteral("f%1.tif").arg(k));
        QVERIFY(writeTiff16(files.last(), W, H, px.data()));
    }
    InitGlobals();
    gConfig = ConfigTable();
    Body body;
    body.show();
    QVERIFY(QTest::qWaitForWindowExposed(&body));
    QSignalSpy loaded(&body, &Body::finishBatchExec);
    body.readI1Files(files, true);
    QVERIFY(loaded.wait(10000));
    const auto field = [&body](const char *name) { return body.findChild<QLineEdit *>(name); };
    const auto click = [&body](const char *name) { body.findChild<QPushButton *>(name)->click(); };
    auto *select = body.findChild<QComboBox *>("PosSelect");
    auto *seekBar = body.findChild<QSlider *>("SeekBar");
    int shown = 1;
    field("PosLbl")->setText(label);
    for (const QString &s : steps) {
        const QStringList w = s.split(' ');
        if (w.at(0) == "mem") {
            click("PosMem");
        } else if (w.at(0) == "go") {
            select->setCurrentIndex(0);
            click("PosGo");
        } else if (w.at(0) == "del") {
            select->setCurrentIndex(select->count() - 1);
            click("PosDel");
        } else if (w.at(0) == "edit") {
            field("PosX")->setText(w.at(1));
            field("PosY")->setText(w.at(2));
            body.newCurPos();
        } else if (w.at(0) == "slide") {
            shown = w.at(1).toInt();
            seekBar->setSliderDown(true);
            seekBar->setSliderPosition(shown);
            seekBar->setSliderDown(false);
        } else if (w.at(0) == "key") {
            QTest::keyClick(seekBar, Qt::Key_Right);
        } else {
            const QPoint to(w[1].toInt(), w[2].toInt());
            QSignalSpy finish(&body, &Body::finishBatchExec);
            QSignalSpy position(&body, &Body::currentPosition);
            body.execCmdSlot(CmdLine::parse("move_position " + w.at(1) + " " + w.at(2)), false);
            QCOMPARE(QList<QVariantList>(finish), QList<QVariantList>({{QVariant(int(MOVE_POSITION))}}));
            QCOMPARE(position.count(), 1);
            QCOMPARE(QPoint(position.at(0).at(0).toInt(), position.at(0).at(1).toInt()), to);
            QCOMPARE(field("PosX")->text() + field("PosY")->text(), QString::asprintf("% 4d% 4d", to.x(), to.y()));
            // The value under the pointer is shown only when the pointer was placed.
            QCOMPARE(field("Value")->text(), QString::number(pixel(to.x(), to.y(), shown)));
        }
    }
    QCOMPARE(field("PosLbl")->text(), nextLabel);
    QStringList got;
    for (int i = 0; i < select->count(); ++i)
        got << select->itemText(i);
    QCOMPARE(got, items);
    QCOMPARE(QPoint(field("PosX")->text().toInt(), field("PosY")->text().toInt()), pos);
}

QTEST_MAIN(TestMainView)
#include "tst_mainview.moc"
