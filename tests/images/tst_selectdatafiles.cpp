#include "app/Globals.h"
#include "images/EOFSetup.h"
#include "images/FDGroup.h"
#include "images/SelectDataFiles.h"
#include "images/SelectDataFilesAdditionalSetup.h"
#include "images/XafsFileSelect.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QtTest>

#include <cmath>

// The file panel as Body and the batch use it: setters, the energy a frame
// gets, the frame list, the linked recipe fields; and the small file
// widgets. Expected values are worked out by hand in the comments.
namespace {
constexpr double D0 = 3.13553;

double angleToEV(double deg)
{
    return 12398.424360387684 / (2 * std::sin(deg * 3.1415926535 / 180) * D0);
}

// Calls the panel's slots by name, in the batch's manner: "slot argument",
// the argument converted to the slot's parameter type.
void apply(QObject &o, const QStringList &steps)
{
    for (const QString &step : steps) {
        const QMetaObject *mo = o.metaObject();
        int i = mo->methodCount();
        while (--i >= 0 && mo->method(i).name() != step.section(' ', 0, 0).toLatin1()) {
        }
        QVERIFY2(i >= 0, qPrintable("unknown step " + step));
        const QMetaMethod m = mo->method(i);
        if (m.parameterCount() == 0) {
            QVERIFY(m.invoke(&o));
            continue;
        }
        QVariant v(step.section(' ', 1));
        QVERIFY(v.convert(QMetaType(m.parameterType(0))));
        QVERIFY(m.invoke(&o, QGenericArgument(m.parameterTypes().at(0).constData(), v.data())));
    }
}

bool writeText(const QString &path, const QByteArray &text)
{
    QFile f(path);
    return f.open(QIODevice::WriteOnly) && f.write(text) == text.size();
}
}

class TestSelectDataFiles : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void energy_data();
    void energy();
    void panelState_data();
    void panelState();
    void eofFields_data();
    void eofFields();
    void errPointsMask_data();
    void errPointsMask();
    void xafsFileSelect();
    void fdGroup();

private:
    QTemporaryDir tmp;
    QString refPath;
};

void TestSelectDataFiles::initTestCase()
{
    QVERIFY(tmp.isValid());
    // Angles 14.0, 14.1, 14.2 in a plain table.
    refPath = tmp.filePath("ref.dat");
    QVERIFY(writeText(refPath, "angle\n14.0\n14.1\n14.2\n"));
}

void TestSelectDataFiles::energy_data()
{
    QTest::addColumn<QStringList>("steps");
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<int>("fNo");
    QTest::addColumn<int>("total");
    QTest::addColumn<double>("expected");

    const QString keV = "setEngByNameRegExp \\d\\d_\\d\\d\\d\\d\\d\\dKeV";
    const QString calc = "setEngByCalc 1";
    // Default: by name with the first pattern, which wants four decimals.
    QTest::newRow("default pattern") << QStringList() << "/d/s_7112_5000.tif" << 0 << 1 << 7112.5;
    QTest::newRow("pattern set") << QStringList{"setEngByNameRegExp \\d\\d\\d\\d_\\d\\d"} << "/d/s_7112_50.tif" << 3
                                 << 9 << 7112.5;
    // A keV pattern brings the factor 1000 with it; a factor set after it stands.
    QTest::newRow("keV pattern sets factor") << QStringList{keV} << "a_12_345678KeV.tif" << 0 << 1 << 12345.678;
    QTest::newRow("factor after pattern") << QStringList{keV, "setEngByNameFactor 1"} << "a_12_345678KeV.tif" << 0
                                          << 1 << 12.345678;
    QTest::newRow("pattern after factor resets it")
        << QStringList{"setEngByNameFactor 1000", "setEngByNameRegExp \\d\\d\\d\\d_\\d\\d"} << "s_7112_50.tif" << 0
        << 1 << 7112.5;
    QTest::newRow("no match: index times factor") << QStringList{"setEngByNameFactor 1000"} << "frame.tif" << 5 << 9
                                                  << 5000.0;
    // Recipe even in energy: 7000 + 2 * 10 eV; (7 + 0.002 * 5) keV.
    QTest::newRow("calc eV") << QStringList{calc, "setEvenInEng 1", "setEngCalcStart 7000", "setEngCalcDelta 2"}
                             << "s_7112_5000.tif" << 10 << 20 << 7020.0;
    QTest::newRow("calc keV") << QStringList{calc, "setEvenInEng 1", "setDispUnit 1", "setEngCalcStart 7",
                                             "setEngCalcDelta 0.002"}
                              << "f.tif" << 5 << 20 << 7010.0;
    // Degrees, index 2 of the selector: 14 - 0.1 * 3 = 13.7; an index beyond the list is ignored.
    QTest::newRow("calc deg, unit beyond list")
        << QStringList{calc, "setDispUnit 2", "setDispUnit 3", "setEngCalcStart 14", "setEngCalcDelta -0.1"}
        << "f.tif" << 3 << 20 << angleToEV(13.7);
    QTest::newRow("calc even angle first") << QStringList{calc} << "f.tif" << 0 << 20 << 8000.0;
    QTest::newRow("back to name") << QStringList{calc, "setEngByName 1"} << "s_7112_5000.tif" << 0 << 1 << 7112.5;
    // Three rows matched from the end: of 2 frames, frame 0 takes row 1.
    QTest::newRow("ref from end") << QStringList{"setEngByRef REF"} << "f.tif" << 0 << 2 << angleToEV(14.1);
    // The recipe chosen after the file turns the file's radio off.
    QTest::newRow("calc after ref") << QStringList{"setEngByRef REF", calc, "setEvenInEng 1"} << "f.tif" << 1 << 2
                                    << 8001.0;
    // Unreadable: the source is still the file, and with no rows frames count from 8000.
    QTest::newRow("ref unreadable") << QStringList{"setEngByRef /no/such/ref.dat"} << "f.tif" << 4 << 9 << 8004.0;
    // Switching a chosen radio off does not turn another on.
    QTest::newRow("calc off keeps name") << QStringList{"setEngByCalc 0"} << "s_7112_5000.tif" << 0 << 1 << 7112.5;
}

void TestSelectDataFiles::energy()
{
    QFETCH(QStringList, steps);
    QFETCH(QString, fileName);
    QFETCH(int, fNo);
    QFETCH(int, total);
    QFETCH(double, expected);

    steps.replaceInStrings(QStringLiteral("REF"), refPath);
    SelectDataFiles panel;
    apply(panel, steps);
    QCOMPARE(panel.energyOf(fileName, fNo, total), expected);
}

void TestSelectDataFiles::panelState_data()
{
    QTest::addColumn<QStringList>("steps");
    // skip, cutFirst, cutLast, current frame, the Count label, currentIndexChanged signals
    QTest::addColumn<QVector<int>>("expected");

    QTest::newRow("options as given") << QStringList{"setSkip 3", "setCutF 4", "setCutL 5"}
                                      << QVector<int>{3, 4, 5, 0, 3, 1};
    QTest::newRow("stride below 2") << QStringList{"setSkip 0"} << QVector<int>{1, 0, 0, 0, 3, 1};
    QTest::newRow("stride 2") << QStringList{"setSkip 2", "setCutF 1"} << QVector<int>{2, 1, 0, 0, 3, 1};
    QTest::newRow("negative") << QStringList{"setSkip -2", "setCutF -3", "setCutL -1"} << QVector<int>{1, 0, 0, 0, 3, 1};
    // The first frame became current as it came; each move reports itself.
    QTest::newRow("next") << QStringList{"next"} << QVector<int>{1, 0, 0, 1, 3, 2};
    QTest::newRow("next at end") << QStringList{"select 2", "next"} << QVector<int>{1, 0, 0, 2, 3, 2};
    QTest::newRow("prev") << QStringList{"select 2", "prev"} << QVector<int>{1, 0, 0, 1, 3, 3};
    QTest::newRow("prev at start") << QStringList{"prev"} << QVector<int>{1, 0, 0, 0, 3, 1};
    QTest::newRow("select beyond") << QStringList{"select 1", "select 3"} << QVector<int>{1, 0, 0, 1, 3, 2};
    QTest::newRow("select negative") << QStringList{"select 1", "select -1"} << QVector<int>{1, 0, 0, 1, 3, 2};
    // Only while following the loading does the panel report a new frame.
    QTest::newRow("not following") << QStringList{"setShowLatest 0", "select 1"} << QVector<int>{1, 0, 0, 1, 3, 1};
    QTest::newRow("cleared") << QStringList{"clearFiles"} << QVector<int>{1, 0, 0, -1, 0, 2};
}

// Three frames listed with the energies their names give, then the steps.
void TestSelectDataFiles::panelState()
{
    QFETCH(QStringList, steps);
    QFETCH(QVector<int>, expected);

    SelectDataFiles panel;
    auto *count = panel.findChild<QLabel *>("Count");
    auto *list = panel.findChild<QComboBox *>("Selected");
    QVERIFY(count && list);
    QSignalSpy spy(&panel, &SelectDataFiles::currentIndexChanged);
    panel.setEngByNameRegExp("\\d\\d\\d\\d_\\d\\d");
    QCOMPARE(panel.registerFrame("/d/a_7112_50.tif", 0, 3), 7112.5);
    QCOMPARE(panel.registerFrame("/d/a_7113_25.tif", 1, 3), 7113.25);
    QCOMPARE(panel.registerFrame("/d/a_dark.tif", 2, 3), 2.0);
    QCOMPARE(list->itemText(1), QStringLiteral("/d/a_7113_25.tif"));
    QCOMPARE(panel.energyAt(1), 7113.25);
    QCOMPARE(panel.energyAt(3), 0.0);
    apply(panel, steps);
    QCOMPARE((QVector<int>{panel.skip(), panel.cutFirst(), panel.cutLast(), panel.currentIndex(),
                           count->text().toInt(), int(spy.count())}),
             expected);
    QCOMPARE(panel.count(), expected[4]);
}

void TestSelectDataFiles::eofFields_data()
{
    QTest::addColumn<QStringList>("steps"); // "Field<-text" typed then Return, "choose i", or a slot call
    QTest::addColumn<QStringList>("expected"); // "Field=text[ marked]" or "PatternList=current/count"

    // Defaults: start 8000, end 9000, delta 1, num 1000.
    QTest::newRow("start moves end") << QStringList{"Start<-7000"} << QStringList{"Start=7000", "End=8000"};
    QTest::newRow("delta moves end") << QStringList{"Delta<-2"} << QStringList{"End=10000"};
    QTest::newRow("end turns delta") << QStringList{"End<-8500"} << QStringList{"Delta=-0.5"}; // (8000-8500)/1000
    QTest::newRow("num moves delta") << QStringList{"NumOfPoints<-3"} << QStringList{"Delta=-333.333"}; // 6 digits
    QTest::newRow("num zero") << QStringList{"NumOfPoints<-0"} << QStringList{"Delta=-inf"};

    // Ten known patterns; the factor follows a "KeV" ending whatever was set before.
    const QString f7 = "setEngByNameFactor 7";
    QTest::newRow("known") << QStringList{f7, "setEngByNameRegExp \\d\\d\\d\\d\\.\\d"}
                           << QStringList{"PatternList=7/10", "Factor=1"};
    QTest::newRow("known keV") << QStringList{f7, "setEngByNameRegExp \\d_\\d\\d\\d\\d\\d\\dKeV"}
                               << QStringList{"PatternList=9/10", "Factor=1000"};
    QTest::newRow("new one appended") << QStringList{f7, "setEngByNameRegExp E(\\d+)"}
                                      << QStringList{"PatternList=10/11", "Factor=1", "Pattern=E(\\d+)"};
    QTest::newRow("new keV, any case") << QStringList{f7, "setEngByNameRegExp \\d+kev"}
                                       << QStringList{"PatternList=10/11", "Factor=1000"};
    QTest::newRow("invalid marked") << QStringList{f7, "setEngByNameRegExp (\\d"}
                                    << QStringList{"PatternList=10/11", "Pattern=(\\d marked"};
    // Typed: one new item when the edit is done, not one per key.
    QTest::newRow("typed new") << QStringList{f7, "Pattern<-E(\\d+)"} << QStringList{"PatternList=10/11", "Factor=1"};
    QTest::newRow("typed known") << QStringList{"Pattern<-\\d\\d\\d\\d\\.\\d"} << QStringList{"PatternList=7/10"};
    // Choosing a list item writes it back to the field, factor included.
    QTest::newRow("chosen from the list") << QStringList{f7, "setEngByNameRegExp (\\d", "choose 8"}
                                          << QStringList{"Pattern=\\d\\d_\\d\\d\\d\\d\\d\\dKeV", "Factor=1000"};
}

void TestSelectDataFiles::eofFields()
{
    QFETCH(QStringList, steps);
    QFETCH(QStringList, expected);

    EOFSetup eof;
    auto *list = eof.findChild<QComboBox *>("PatternList");
    QVERIFY(list);
    for (const QString &step : steps) {
        if (step.contains("<-")) {
            auto *edit = eof.findChild<QLineEdit *>(step.section("<-", 0, 0));
            QVERIFY(edit);
            edit->selectAll();
            QTest::keyClicks(edit, step.section("<-", 1));
            QTest::keyClick(edit, Qt::Key_Return);
        } else if (step.startsWith("choose ")) {
            list->setCurrentIndex(step.mid(7).toInt());
            emit list->activated(list->currentIndex());
        } else {
            apply(eof, {step});
        }
    }
    for (const QString &e : expected) {
        QWidget *w = eof.findChild<QWidget *>(e.section('=', 0, 0));
        QVERIFY2(w, qPrintable(e));
        QString got = QStringLiteral("%1/%2").arg(list->currentIndex()).arg(list->count());
        if (auto *edit = qobject_cast<QLineEdit *>(w))
            got = edit->text() + (edit->styleSheet().isEmpty() ? "" : " marked");
        QCOMPARE(got, e.section('=', 1));
    }
}

void TestSelectDataFiles::errPointsMask_data()
{
    QTest::addColumn<bool>("use");
    QTest::addColumn<bool>("good");
    QTest::addColumn<bool>("inUse");
    QTest::addColumn<QString>("key"); // names the mask in the configuration; the case does not matter

    QTest::newRow("used") << true << true << true << "ErrPoints";
    QTest::newRow("not used") << false << true << false << "errpoints";
    QTest::newRow("bad file") << true << false << false << "ERRPOINTS";
}

void TestSelectDataFiles::errPointsMask()
{
    QFETCH(bool, use);
    QFETCH(bool, good);
    QFETCH(bool, inUse);
    QFETCH(QString, key);

    const QString mask = tmp.filePath("mask.txt");
    QVERIFY(writeText(mask, "# Size 8 8\n1 2\n3 4\n"));
    gConfig = ConfigTable();
    gConfig.add(key, mask, mask, QString());
    SelectDataFilesAdditionalSetup add;
    gConfig = ConfigTable();
    auto *useBox = add.findChild<QCheckBox *>("UseErrPs");
    auto *name = add.findChild<QLineEdit *>("ErrPsFile");
    QVERIFY(useBox && name);
    QCOMPARE(name->text(), mask); // read at construction
    QCOMPARE(add.errPs.points.size(), 2);
    useBox->setChecked(use);
    QCOMPARE(add.errPs.inUse, use);
    QCOMPARE(add.loadErrPs(good ? mask : tmp.filePath("none.txt")), good);
    QCOMPARE(add.errPs.inUse, inUse);
    QCOMPARE(name->text().isEmpty(), !good);
    if (good)
        QCOMPARE(add.errPs.points.size(), 2);
}

// hasFile survives clear(); the path's colour tells the outcome of a read.
void TestSelectDataFiles::xafsFileSelect()
{
    XafsFileSelect xfs;
    QSignalSpy files(&xfs, &XafsFileSelect::newFile);
    QSignalSpy cleared(&xfs, &XafsFileSelect::cleared);
    QVERIFY(!xfs.hasFile);

    xfs.load(refPath);
    QVERIFY(xfs.hasFile);
    QCOMPARE(files.count(), 1);
    QCOMPARE(xfs.fileName(), refPath);
    QCOMPARE(QDir(xfs.fileDialog()->directory()).canonicalPath(), QDir(tmp.path()).canonicalPath());

    xfs.fileNameValid(false);
    auto *selected = xfs.findChild<QLineEdit *>("Selected");
    QVERIFY(selected);
    QCOMPARE(selected->styleSheet(), QStringLiteral("background-color: rgb(255, 240, 240);"));

    xfs.clear();
    QCOMPARE(cleared.count(), 1);
    QVERIFY(xfs.fileName().isEmpty());
    QVERIFY(xfs.hasFile);
}

// Entering a directory in one dialog moves the others; a dialog added twice
// is kept once; a deleted dialog leaves the group.
void TestSelectDataFiles::fdGroup()
{
    QVERIFY(QDir(tmp.path()).mkpath("a/b"));
    const QString a = tmp.filePath("a");
    const QString b = tmp.filePath("a/b");
    QVERIFY(writeText(b + "/x.tif", "x"));

    QFileDialog d1;
    QFileDialog d2;
    auto *d3 = new QFileDialog;
    FDGroup group;
    group.add(&d1);
    group.add(&d2);
    group.add(&d1);
    group.add(d3);
    QCOMPARE(group.count(), 3);

    emit d1.directoryEntered(a);
    QCOMPARE(d2.directory().absolutePath(), QDir(a).absolutePath());
    QCOMPARE(d3->directory().absolutePath(), QDir(a).absolutePath());

    delete d3;
    QCOMPARE(group.count(), 2);
    // The file's directory, canonical.
    emit d2.currentChanged(b + "/x.tif");
    QCOMPARE(d1.directory().absolutePath(), QDir(b).canonicalPath());
}

QTEST_MAIN(TestSelectDataFiles)
#include "tst_selectdatafiles.moc"
