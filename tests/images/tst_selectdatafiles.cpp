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

// Applies "setter argument" steps to a panel, in the batch's manner.
void apply(SelectDataFiles &p, const QStringList &steps)
{
    for (const QString &step : steps) {
        const QString word = step.section(' ', 0, 0);
        const QString arg = step.section(' ', 1);
        if (word == "name")
            p.setEngByName(arg == "1");
        else if (word == "calc")
            p.setEngByCalc(arg == "1");
        else if (word == "regexp")
            p.setEngByNameRegExp(arg);
        else if (word == "factor")
            p.setEngByNameFactor(arg.toDouble());
        else if (word == "start")
            p.setEngCalcStart(arg.toDouble());
        else if (word == "delta")
            p.setEngCalcDelta(arg.toDouble());
        else if (word == "end")
            p.setEngCalcEnd(arg.toDouble());
        else if (word == "num")
            p.setEngCalcNum(arg.toInt());
        else if (word == "evenEng")
            p.setEvenInEng(arg == "1");
        else if (word == "evenDeg")
            p.setEvenInDeg(arg == "1");
        else if (word == "unit")
            p.setDispUnit(arg.toInt());
        else if (word == "ref")
            p.setEngByRef(arg);
        else
            QFAIL(qPrintable("unknown step " + step));
    }
}

template <class T>
T *child(QObject &parent, const char *name)
{
    T *w = parent.findChild<T *>(QLatin1String(name));
    if (!w)
        qWarning("no child %s", name);
    return w;
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
    void loadOptions_data();
    void loadOptions();
    void registerFrames();
    void followOnlyWhenShowLatest();
    void stepping_data();
    void stepping();
    void linkedFields_data();
    void linkedFields();
    void patternList_data();
    void patternList();
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

    // Default: by name with the first pattern, which wants four decimals.
    QTest::newRow("default pattern") << QStringList() << "/d/s_7112_5000.tif" << 0 << 1 << 7112.5;
    QTest::newRow("default no match") << QStringList() << "/d/s_7112_50.tif" << 3 << 9 << 3.0;
    QTest::newRow("pattern set") << QStringList{ "regexp \\d\\d\\d\\d_\\d\\d" } << "/d/s_7112_50.tif" << 3 << 9
                                 << 7112.5;
    // A keV pattern brings the factor 1000 with it: 12.345678 keV.
    QTest::newRow("keV pattern sets factor") << QStringList{ "regexp \\d\\d_\\d\\d\\d\\d\\d\\dKeV" }
                                             << "a_12_345678KeV.tif" << 0 << 1 << 12345.678;
    // The factor set after the pattern stands.
    QTest::newRow("factor after pattern") << QStringList{ "regexp \\d\\d_\\d\\d\\d\\d\\d\\dKeV", "factor 1" }
                                          << "a_12_345678KeV.tif" << 0 << 1 << 12.345678;
    // ... and a pattern set after the factor resets it.
    QTest::newRow("pattern after factor") << QStringList{ "factor 1000", "regexp \\d\\d\\d\\d_\\d\\d" }
                                          << "s_7112_50.tif" << 0 << 1 << 7112.5;
    QTest::newRow("no match times factor") << QStringList{ "factor 1000" } << "frame.tif" << 5 << 9 << 5000.0;
    // Recipe in eV, even in energy: 7000 + 2 * 10.
    QTest::newRow("calc eV") << QStringList{ "calc 1", "evenEng 1", "start 7000", "delta 2" } << "s_7112_5000.tif"
                             << 10 << 20 << 7020.0;
    // keV: (7 + 0.002 * 5) * 1000.
    QTest::newRow("calc keV") << QStringList{ "calc 1", "evenEng 1", "unit 1", "start 7", "delta 0.002" }
                              << "f.tif" << 5 << 20 << 7010.0;
    // Degrees: index 2 of the selector; 14 - 0.1 * 3 = 13.7 degrees.
    QTest::newRow("calc deg") << QStringList{ "calc 1", "unit 2", "start 14", "delta -0.1" } << "f.tif" << 3 << 20
                              << angleToEV(13.7);
    // An index beyond the list is ignored: still degrees.
    QTest::newRow("unit beyond list") << QStringList{ "calc 1", "unit 2", "unit 3", "start 14", "delta -0.1" }
                                      << "f.tif" << 3 << 20 << angleToEV(13.7);
    // Default recipe even in angle: frame 0 is the start.
    QTest::newRow("calc even angle first") << QStringList{ "calc 1" } << "f.tif" << 0 << 20 << 8000.0;
    QTest::newRow("back to name") << QStringList{ "calc 1", "name 1" } << "s_7112_5000.tif" << 0 << 1 << 7112.5;
    // Reference file of three rows, matched from the end: of 2 frames,
    // frame 0 takes row 1 (14.1 deg).
    QTest::newRow("ref from end") << QStringList{ "ref REF" } << "f.tif" << 0 << 2 << angleToEV(14.1);
    QTest::newRow("ref last row") << QStringList{ "ref REF" } << "f.tif" << 1 << 2 << angleToEV(14.2);
    // The recipe wins over the file when both are chosen in turn: the
    // file's radio is then off.
    QTest::newRow("calc after ref") << QStringList{ "ref REF", "calc 1", "evenEng 1" } << "f.tif" << 1 << 2 << 8001.0;
    // A file that can't be read: the source is still the file, and with no
    // rows the frames count from 8000.
    QTest::newRow("ref unreadable") << QStringList{ "ref /no/such/ref.dat" } << "f.tif" << 4 << 9 << 8004.0;
    // Switching a chosen radio off does not turn another on.
    QTest::newRow("calc off keeps name") << QStringList{ "calc 0" } << "s_7112_5000.tif" << 0 << 1 << 7112.5;
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

void TestSelectDataFiles::loadOptions_data()
{
    QTest::addColumn<int>("skip");
    QTest::addColumn<int>("cutF");
    QTest::addColumn<int>("cutL");
    QTest::addColumn<int>("expSkip");
    QTest::addColumn<int>("expCutF");
    QTest::addColumn<int>("expCutL");

    QTest::newRow("as given") << 3 << 4 << 5 << 3 << 4 << 5;
    QTest::newRow("stride below 2") << 0 << 0 << 0 << 1 << 0 << 0;
    QTest::newRow("negative") << -2 << -3 << -1 << 1 << 0 << 0;
    QTest::newRow("stride 2") << 2 << 1 << 0 << 2 << 1 << 0;
}

void TestSelectDataFiles::loadOptions()
{
    QFETCH(int, skip);
    QFETCH(int, cutF);
    QFETCH(int, cutL);
    QFETCH(int, expSkip);
    QFETCH(int, expCutF);
    QFETCH(int, expCutL);

    SelectDataFiles panel;
    panel.setSkip(skip);
    panel.setCutF(cutF);
    panel.setCutL(cutL);
    QCOMPARE(panel.skip(), expSkip);
    QCOMPARE(panel.cutFirst(), expCutF);
    QCOMPARE(panel.cutLast(), expCutL);
}

// Each loaded frame is listed with its energy; the count follows.
void TestSelectDataFiles::registerFrames()
{
    SelectDataFiles panel;
    panel.setEngByNameRegExp("\\d\\d\\d\\d_\\d\\d");
    auto *count = child<QLabel>(panel, "Count");
    auto *list = child<QComboBox>(panel, "Selected");
    QVERIFY(count && list);

    QCOMPARE(panel.registerFrame("/d/a_7112_50.tif", 0, 3), 7112.5);
    QCOMPARE(panel.registerFrame("/d/a_7113_25.tif", 1, 3), 7113.25);
    QCOMPARE(panel.registerFrame("/d/a_dark.tif", 2, 3), 2.0);
    QCOMPARE(count->text(), QStringLiteral("3"));
    QCOMPARE(list->itemText(1), QStringLiteral("/d/a_7113_25.tif"));
    QCOMPARE(panel.energyAt(1), 7113.25);
    QCOMPARE(panel.energyAt(3), 0.0);

    panel.clearFiles();
    QCOMPARE(count->text(), QStringLiteral("0"));
    QCOMPARE(panel.count(), 0);
}

// The panel reports a new current frame only while it follows the loading.
void TestSelectDataFiles::followOnlyWhenShowLatest()
{
    SelectDataFiles panel;
    QSignalSpy spy(&panel, &SelectDataFiles::currentIndexChanged);
    panel.registerFrame("a.tif", 0, 3);
    panel.registerFrame("b.tif", 1, 3);
    panel.select(1);
    QCOMPARE(spy.count(), 2); // the first item became current, then 1
    QCOMPARE(spy.last().at(0).toInt(), 1);

    panel.setShowLatest(false);
    panel.select(0);
    QCOMPARE(spy.count(), 2);
    QCOMPARE(panel.currentIndex(), 0);
}

void TestSelectDataFiles::stepping_data()
{
    QTest::addColumn<int>("start");
    QTest::addColumn<QString>("op");
    QTest::addColumn<int>("expected");

    // Three frames.
    QTest::newRow("next") << 0 << "next" << 1;
    QTest::newRow("next at end") << 2 << "next" << 2;
    QTest::newRow("prev") << 2 << "prev" << 1;
    QTest::newRow("prev at start") << 0 << "prev" << 0;
    QTest::newRow("select beyond") << 1 << "select3" << 1;
    QTest::newRow("select negative") << 1 << "select-1" << 1;
    QTest::newRow("select last") << 0 << "select2" << 2;
}

void TestSelectDataFiles::stepping()
{
    QFETCH(int, start);
    QFETCH(QString, op);
    QFETCH(int, expected);

    SelectDataFiles panel;
    for (int i = 0; i < 3; ++i)
        panel.registerFrame(QStringLiteral("f%1.tif").arg(i), i, 3);
    panel.select(start);
    if (op == "next")
        panel.next();
    else if (op == "prev")
        panel.prev();
    else
        panel.select(op.mid(6).toInt());
    QCOMPARE(panel.currentIndex(), expected);
}

void TestSelectDataFiles::linkedFields_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("other");
    QTest::addColumn<QString>("expected");

    // Defaults: start 8000, end 9000, delta 1, num 1000.
    QTest::newRow("start moves end") << "Start" << "7000" << "End" << "8000";     // 1000*1+7000
    QTest::newRow("delta moves end") << "Delta" << "2" << "End" << "10000";       // 1000*2+8000
    QTest::newRow("end turns delta") << "End" << "8500" << "Delta" << "-0.5";     // (8000-8500)/1000
    QTest::newRow("rising end, negative delta") << "End" << "9500" << "Delta" << "-1.5"; // (8000-9500)/1000
    QTest::newRow("num moves delta") << "NumOfPoints" << "3" << "Delta" << "-333.333"; // -1000/3, 6 digits
    QTest::newRow("num zero") << "NumOfPoints" << "0" << "Delta" << "-inf";           // -1000/0
}

void TestSelectDataFiles::linkedFields()
{
    QFETCH(QString, field);
    QFETCH(QString, typed);
    QFETCH(QString, other);
    QFETCH(QString, expected);

    EOFSetup eof;
    auto *edit = eof.findChild<QLineEdit *>(field);
    auto *linked = eof.findChild<QLineEdit *>(other);
    QVERIFY(edit && linked);
    edit->selectAll();
    QTest::keyClicks(edit, typed);
    QCOMPARE(edit->text(), typed);
    QCOMPARE(linked->text(), expected);
}

void TestSelectDataFiles::patternList_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("factor");
    QTest::addColumn<bool>("marked");
    QTest::addColumn<bool>("typed");

    QTest::newRow("known") << "\\d\\d\\d\\d\\.\\d" << 7 << 10 << "1" << false << false;
    QTest::newRow("known keV") << "\\d_\\d\\d\\d\\d\\d\\dKeV" << 9 << 10 << "1000" << false << false;
    QTest::newRow("new one appended") << "E(\\d+)" << 10 << 11 << "1" << false << false;
    QTest::newRow("new keV") << "\\d+kev" << 10 << 11 << "1000" << false << false;
    QTest::newRow("invalid marked") << "(\\d" << 10 << 11 << "1" << true << false;
    // Typed by the user: one new item when the edit is done, not one per key.
    QTest::newRow("typed new") << "E(\\d+)" << 10 << 11 << "1" << false << true;
    QTest::newRow("typed keV") << "\\d+KeV" << 10 << 11 << "1000" << false << true;
    QTest::newRow("typed known") << "\\d\\d\\d\\d\\.\\d" << 7 << 10 << "1" << false << true;
}

void TestSelectDataFiles::patternList()
{
    QFETCH(QString, pattern);
    QFETCH(int, index);
    QFETCH(int, count);
    QFETCH(QString, factor);
    QFETCH(bool, marked);
    QFETCH(bool, typed);

    EOFSetup eof;
    auto *list = eof.findChild<QComboBox *>("PatternList");
    auto *factorEdit = eof.findChild<QLineEdit *>("Factor");
    auto *patternEdit = eof.findChild<QLineEdit *>("Pattern");
    QVERIFY(list && factorEdit && patternEdit);
    eof.setEngByNameFactor(7);
    if (typed) {
        patternEdit->selectAll();
        QTest::keyClicks(patternEdit, pattern);
        QTest::keyClick(patternEdit, Qt::Key_Return);
    } else {
        eof.setEngByNameRegExp(pattern);
    }
    QCOMPARE(list->currentIndex(), index);
    QCOMPARE(list->count(), count);
    QCOMPARE(factorEdit->text(), factor);
    QCOMPARE(!patternEdit->styleSheet().isEmpty(), marked);

    // Choosing a list item writes it back to the field.
    list->setCurrentIndex(8);
    emit list->activated(8);
    QCOMPARE(patternEdit->text(), list->itemText(8));
    QCOMPARE(factorEdit->text(), QStringLiteral("1000"));
}

void TestSelectDataFiles::errPointsMask_data()
{
    QTest::addColumn<bool>("use");
    QTest::addColumn<bool>("good");
    QTest::addColumn<bool>("inUse");

    QTest::newRow("used") << true << true << true;
    QTest::newRow("not used") << false << true << false;
    QTest::newRow("bad file") << true << false << false;
}

void TestSelectDataFiles::errPointsMask()
{
    QFETCH(bool, use);
    QFETCH(bool, good);
    QFETCH(bool, inUse);

    const QString mask = tmp.filePath("mask.txt");
    QVERIFY(writeText(mask, "# Size 8 8\n1 2\n3 4\n"));

    SelectDataFilesAdditionalSetup add;
    auto *useBox = add.findChild<QCheckBox *>("UseErrPs");
    auto *name = add.findChild<QLineEdit *>("ErrPsFile");
    QVERIFY(useBox && name);
    QVERIFY(add.loadErrPs(mask));
    useBox->setChecked(use);
    QCOMPARE(add.errPs.inUse, use);

    const bool loaded = add.loadErrPs(good ? mask : tmp.filePath("none.txt"));
    QCOMPARE(loaded, good);
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
