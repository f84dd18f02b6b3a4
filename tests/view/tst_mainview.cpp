#include "app/Body.h"
#include "app/Globals.h"
#include "batch/ExCmdId.h"
#include "images/TiffWriter.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <vector>

// The main window's position fields in one process, on a shown window with a
// 6 x 4 stack loaded: the memory of stored positions and the pointer placed
// by move_position.
class TestMainView : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();
    void positionMemory_data();
    void positionMemory();
    void movePosition_data();
    void movePosition();

private:
    QTemporaryDir tmp;
    Body *body = nullptr;
    QLineEdit *field(const char *name) const { return body->findChild<QLineEdit *>(name); }
    void click(const char *name) const { body->findChild<QPushButton *>(name)->click(); }
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

void TestMainView::initTestCase()
{
    QVERIFY(tmp.isValid());
    std::vector<quint16> px(W * H);
    for (int k = 0; k < 2; ++k) {
        for (int p = 0; p < W * H; ++p)
            px[p] = pixel(p % W, p / W, k);
        QVERIFY(writeTiff16(tmp.filePath(QStringLiteral("f%1.tif").arg(k)), W, H, px.data()));
    }
}

void TestMainView::init()
{
    InitGlobals();
    gConfig = ConfigTable();
    body = new Body;
    body->show();
    QVERIFY(QTest::qWaitForWindowExposed(body));
    QSignalSpy finish(body, &Body::finishBatchExec);
    body->readI1Files({tmp.filePath("f0.tif"), tmp.filePath("f1.tif")}, true);
    QVERIFY(finish.wait(10000));
}

void TestMainView::cleanup()
{
    delete body;
    body = nullptr;
}

void TestMainView::positionMemory_data()
{
    QTest::addColumn<QString>("label");
    // "mem", "go", "del", or "edit x y" (the position fields, as typed)
    QTest::addColumn<QStringList>("steps");
    QTest::addColumn<QString>("nextLabel");
    QTest::addColumn<QStringList>("items");
    QTest::addColumn<QString>("pos"); // PosX and PosY, trimmed, at the end

    // After a load the cursor is at (0, 0).
    QTest::newRow("A00 counts up") << "A00" << QStringList{"mem"} << "A01" << QStringList{"[A00]    0    0"} << "0 0";
    QTest::newRow("carry into a new digit")
        << "A99" << QStringList{"edit 2 3", "mem", "mem"} << "A101"
        << QStringList{"[A99]    2    3", "[A100]    2    3"} << "2 3";
    QTest::newRow("carry keeps the width") << "B09" << QStringList{"mem"} << "B10" << QStringList{"[B09]    0    0"}
                                           << "0 0";
    QTest::newRow("no digits") << "Z" << QStringList{"mem"} << "Z01" << QStringList{"[Z]    0    0"} << "0 0";
    QTest::newRow("go back to a stored position")
        << "P1" << QStringList{"edit 4 1", "mem", "edit 1 2", "go"} << "P2" << QStringList{"[P1]    4    1"}
        << "4 1";
    // x = 9 is off the 6-pixel width: refused, y still moves.
    QTest::newRow("edit outside the image, per coordinate")
        << "C0" << QStringList{"edit 3 2", "edit 9 1"} << "C0" << QStringList() << "3 1";
    QTest::newRow("delete the chosen one") << "D0" << QStringList{"mem", "edit 5 3", "mem", "del"} << "D2"
                                           << QStringList{"[D0]    0    0"} << "5 3";
}

void TestMainView::positionMemory()
{
    QFETCH(QString, label);
    QFETCH(QStringList, steps);
    QFETCH(QString, nextLabel);
    QFETCH(QStringList, items);
    QFETCH(QString, pos);

    auto *select = body->findChild<QComboBox *>("PosSelect");
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
        } else {
            field("PosX")->setText(w.at(1));
            field("PosY")->setText(w.at(2));
            body->newCurPos();
        }
    }
    QCOMPARE(field("PosLbl")->text(), nextLabel);
    QStringList got;
    for (int i = 0; i < select->count(); ++i)
        got << select->itemText(i);
    QCOMPARE(got, items);
    QCOMPARE(field("PosX")->text().trimmed() + " " + field("PosY")->text().trimmed(), pos);
}

void TestMainView::movePosition_data()
{
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("y");
    QTest::addRow("inside") << 4 << 2;
    QTest::addRow("first pixel") << 0 << 0;
    QTest::addRow("last pixel") << W - 1 << H - 1;
}

void TestMainView::movePosition()
{
    QFETCH(int, x);
    QFETCH(int, y);
    QSignalSpy finish(body, &Body::finishBatchExec);
    QSignalSpy position(body, &Body::currentPosition);
    body->execCmdSlot(CmdLine::parse(QStringLiteral("move_position %1 %2").arg(x).arg(y)), false);
    QCOMPARE(finish.count(), 1);
    QCOMPARE(finish.at(0).at(0).toInt(), int(MOVE_POSITION));
    QCOMPARE(position.count(), 1);
    QCOMPARE(position.at(0).at(0).toInt(), x);
    QCOMPARE(position.at(0).at(1).toInt(), y);
    QCOMPARE(field("PosX")->text(), QString::asprintf("% 4d", x));
    QCOMPARE(field("PosY")->text(), QString::asprintf("% 4d", y));
    QCOMPARE(field("Value")->text(), QString::number(pixel(x, y, 1)));
}

QTEST_MAIN(TestMainView)
#include "tst_mainview.moc"
