#include "saving/FileNames.h"

#include <QDir>
#include <QtTest>

// The file-name helpers of the save code. Relative names are made absolute
// against the current directory, which the expected values name as CWD.
class TestFileNames : public QObject
{
    Q_OBJECT
private slots:
    void names_data();
    void names();
};

void TestFileNames::names_data()
{
    QTest::addColumn<QString>("fn");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("arg");
    QTest::addColumn<bool>("flag1");
    QTest::addColumn<bool>("flag2");
    QTest::addColumn<QString>("expected");

    // insertBeforeSuffix: text between the complete base name and the suffix.
    QTest::newRow("insert") << "insert" << "/d/sp.dat" << "10-20-3x3" << false << false << "/d/sp10-20-3x3.dat";
    QTest::newRow("insert, last dot only") << "insert" << "/d/a.b.dat" << "T" << false << false << "/d/a.bT.dat";
    QTest::newRow("insert, no suffix") << "insert" << "sp" << "T" << false << false << "spT";
    QTest::newRow("insert, dot in directory") << "insert" << "/d.x/sp" << "T" << false << false << "/d.x/spT";
    QTest::newRow("insert, relative kept") << "insert" << "out/sp.dat" << "std" << false << false << "out/spstd.dat";

    // setSuffix(name, suffix, force, absolute)
    QTest::newRow("suffix added") << "setSuffix" << "/d/spT" << ".dat" << false << false << "/d/spT.dat";
    QTest::newRow("suffix kept") << "setSuffix" << "/d/spT.txt" << ".dat" << false << false << "/d/spT.txt";
    QTest::newRow("suffix forced") << "setSuffix" << "/d/spT.txt" << "dat" << true << false << "/d/spT.dat";
    QTest::newRow("suffix, absolute") << "setSuffix" << "sp" << "dat" << false << true << "CWD/sp.dat";
    QTest::newRow("suffix, relative kept") << "setSuffix" << "out/sp" << "dat" << false << false << "out/sp.dat";

    // withExtension(fname, ext, keep): always absolute.
    QTest::newRow("ext replaced") << "withExtension" << "/d/m.png" << "tif" << false << false << "/d/m.tif";
    QTest::newRow("ext kept") << "withExtension" << "/d/m.png" << "tif" << true << false << "/d/m.png";
    QTest::newRow("ext, none to keep") << "withExtension" << "/d/m" << "tif" << true << false << "/d/m.tif";
    QTest::newRow("ext, relative") << "withExtension" << "m.x.png" << "dat" << false << false << "CWD/m.x.dat";

    // withSuffix(fname, s): a dash; twice gives the doubled dash of "-cBar".
    QTest::newRow("dash") << "withSuffix" << "/d/m.tif" << "0" << false << false << "/d/m-0.tif";
    QTest::newRow("dash twice") << "withSuffix2" << "/d/m.tif" << "0" << false << false << "/d/m-0--cBar.tif";
    QTest::newRow("dash, no suffix") << "withSuffix" << "/d/m" << "1" << false << false << "/d/m-1";
}

void TestFileNames::names()
{
    QFETCH(QString, fn);
    QFETCH(QString, name);
    QFETCH(QString, arg);
    QFETCH(bool, flag1);
    QFETCH(bool, flag2);
    QFETCH(QString, expected);

    expected.replace(QLatin1String("CWD"), QDir::currentPath());
    QString got;
    if (fn == "insert")
        got = insertBeforeSuffix(name, arg);
    else if (fn == "setSuffix")
        got = setSuffix(name, arg, flag1, flag2);
    else if (fn == "withExtension")
        got = withExtension(name, arg, flag1);
    else if (fn == "withSuffix")
        got = withSuffix(name, arg);
    else
        got = withSuffix(withSuffix(name, arg), QStringLiteral("-cBar"));
    QCOMPARE(got, expected);
}

QTEST_GUILESS_MAIN(TestFileNames)
#include "tst_filenames.moc"
