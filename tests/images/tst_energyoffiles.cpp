#include "images/EngByName.h"
#include "images/EngCalc.h"
#include "images/EngOfFiles.h"
#include "images/RefEnergies.h"
#include "LogCapture.h"

#include <QtTest>

#include <cmath>

// The energy of a frame from its file name, a scan recipe or a reference
// file. Expected energies are worked out by hand or with the conversion
// written out again below, not with the program's own converter.
namespace {
constexpr double D0 = 3.13553;
constexpr double Hc = 12398.424360387684;
constexpr double Pi10 = 3.1415926535;

double angleToEV(double deg, double d = D0)
{
    return Hc / (2 * std::sin(deg * Pi10 / 180) * d);
}

double eVToAngle(double e, double d = D0)
{
    const double x = Hc / e / (2 * d);
    return std::fabs(x) > 1 ? -1.0 : std::asin(x) * 180 / Pi10;
}
}

class TestEnergyOfFiles : public QObject
{
    Q_OBJECT
private slots:
    void byName_data();
    void byName();
    void fromNumber_data();
    void fromNumber();
    void readRef_data();
    void readRef();
    void refRow_data();
    void refRow();
    void source_data();
    void source();
};

void TestEnergyOfFiles::byName_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<double>("factor");
    QTest::addColumn<int>("fNo");
    QTest::addColumn<double>("expected");
    QTest::addColumn<bool>("keV"); // the pattern asks for the factor 1000

    const QStringList p = EngByName::knownPatterns();
    QCOMPARE(p.size(), 10);
    // "7112_50" -> "7112.50"
    QTest::newRow("underscore as point") << "/d/sample_7112_50.tif" << p.at(2) << 1.0 << 0 << 7112.50 << false;
    // "12_345678KeV" -> "12_345678KEV" -> "12.345678KEV" -> 12.345678, x1000
    QTest::newRow("keV name") << "a_12_345678KeV.tif" << p.at(8) << 1000.0 << 0 << 12345.678 << true;
    // No match: the frame number times the factor.
    QTest::newRow("no match") << "frame.tif" << p.at(2) << 1000.0 << 5 << 5000.0 << false;
    // The full path is searched, and the directory comes first: "2024_01".
    QTest::newRow("directory matches first") << "/data/2024_0112/s_7112_50.tif" << p.at(2) << 1.0 << 0 << 2024.01
                                             << false;
    // The optional fifth digit: "17112_5000" -> 17112.5
    QTest::newRow("five integer digits") << "s_17112_5000.tif" << p.at(0) << 1.0 << 0 << 17112.5 << false;
    QTest::newRow("eV suffix removed") << "x_7112_50eV.tif" << p.at(3) << 1.0 << 0 << 7112.50 << false;
    QTest::newRow("one decimal") << "s_8333.7_02.tif" << p.at(7) << 1.0 << 0 << 8333.7 << false;
    // Upper-casing: "12_5kev" -> "12.5KEV" -> 12.5; the factor asked for is the caller's to set.
    QTest::newRow("lower-case kev") << "b_12_5kev.tif" << "\\d\\d_\\dkev" << 1.0 << 0 << 12.5 << true;
    QTest::newRow("k and eV apart") << "frame.tif" << "k\\d+eV" << 1.0 << 2 << 2.0 << false;
    // "d8000" -> "D8000" -> "8000"
    QTest::newRow("D removed") << "d8000.tif" << "d\\d\\d\\d\\d" << 1.0 << 0 << 8000.0 << false;
    // A factor that is not positive is not applied (0 the boundary).
    QTest::newRow("factor zero") << "sample_7112_50.tif" << p.at(2) << 0.0 << 0 << 7112.50 << false;
    QTest::newRow("factor scales") << "sample_7112_50.tif" << p.at(2) << 0.5 << 0 << 3556.25 << false;
    // An invalid expression matches nothing: frame number 3.
    QTest::newRow("invalid expression") << "sample_7112_50.tif" << "(\\d" << 2.0 << 3 << 6.0 << false;
    // The empty expression matches the empty text, which reads as 0.
    QTest::newRow("empty pattern") << "sample_7112_50.tif" << "" << 1.0 << 4 << 0.0 << false;
    QTest::newRow("match not a number") << "sample_abc.tif" << "abc" << 1.0 << 4 << 0.0 << false;
}

void TestEnergyOfFiles::byName()
{
    QFETCH(QString, fileName);
    QFETCH(QString, pattern);
    QFETCH(double, factor);
    QFETCH(int, fNo);
    QFETCH(double, expected);
    QFETCH(bool, keV);

    const EngByName n{ pattern, factor };
    QCOMPARE(n.energy(fileName, fNo), expected);
    QCOMPARE(EngByName::factorFor(pattern), keV ? 1000.0 : 1.0);
}

void TestEnergyOfFiles::fromNumber_data()
{
    QTest::addColumn<QVector<double>>("recipe"); // unit, even in energy, start, delta, end, points
    QTest::addColumn<int>("i");
    QTest::addColumn<double>("d");
    QTest::addColumn<double>("expected");

    // Even in energy: start + delta * i, in eV or keV.
    QTest::newRow("eV even energy") << QVector<double>{0, 1, 8000, 1, 9000, 1000} << 5 << D0 << 8005.0;
    QTest::newRow("keV even energy") << QVector<double>{1, 1, 8, 0.001, 9, 1000} << 5 << D0 << 8005.0;

    // Even in angle between the angles of start and end.
    const QVector<double> angle{0, 0, 8000, 1, 9000, 1000};
    const double a0 = eVToAngle(8000);
    const double a1 = eVToAngle(9000);
    QTest::newRow("eV even angle last") << angle << 1000 << D0 << 9000.0;
    // Half-way in angle is not half-way in energy.
    const double mid = angleToEV(a0 + 500 * (a1 - a0) / 1000);
    QVERIFY(std::fabs(mid - 8500) > 1);
    QTest::newRow("eV even angle middle") << angle << 500 << D0 << mid;
    QTest::newRow("even angle: delta unused") << QVector<double>{0, 0, 8000, 7, 9000, 1000} << 500 << D0 << mid;
    QTest::newRow("keV even angle middle") << QVector<double>{1, 0, 8, 0.001, 9, 1000} << 500 << D0 << mid;
    // The crystal spacing is the one given.
    const double dSi311 = 1.637478;
    const double b0 = eVToAngle(8000, dSi311);
    const double b1 = eVToAngle(9000, dSi311);
    QTest::newRow("other crystal") << QVector<double>{0, 0, 8000, 1, 9000, 100} << 30 << dSi311
                                   << angleToEV(b0 + 30 * (b1 - b0) / 100, dSi311);
    // Below 1977 eV the crystal has no angle: -1 is carried on as a number.
    QTest::newRow("unreachable start") << QVector<double>{0, 0, 1000, 1, 9000, 10} << 2 << D0
                                       << angleToEV(-1.0 + 2 * (a1 + 1.0) / 10);
    // Degrees, whatever the spacing: the energy of start + delta * i.
    QTest::newRow("deg step") << QVector<double>{2, 0, 14, -0.01, 12, 100} << 30 << D0 << angleToEV(13.7);
    QTest::newRow("deg even energy") << QVector<double>{2, 1, 14, -0.01, 12, 100} << 30 << D0 << angleToEV(13.7);
    // Angle 0 divides by zero: infinity, not caught.
    QTest::newRow("deg zero") << QVector<double>{2, 1, 0, 1, 12, 100} << 0 << D0 << qInf();
    // No points: 0 * (a1 - a0) / 0 is NaN.
    QTest::newRow("no points first") << QVector<double>{0, 0, 8000, 1, 9000, 0} << 0 << D0 << qQNaN();
}

void TestEnergyOfFiles::fromNumber()
{
    QFETCH(QVector<double>, recipe);
    QFETCH(int, i);
    QFETCH(double, d);
    QFETCH(double, expected);

    EngCalc c;
    c.unit = int(recipe[0]);
    c.evenInEnergy = recipe[1] != 0;
    c.start = recipe[2];
    c.delta = recipe[3];
    c.end = recipe[4];
    c.num = recipe[5];
    const double got = c.fromNumber(i, d);
    if (std::isnan(expected))
        QVERIFY2(std::isnan(got), qPrintable(QString::number(got)));
    else
        QCOMPARE(got, expected); // fuzzy: the angles are worked out again along another path
}

void TestEnergyOfFiles::readRef_data()
{
    QTest::addColumn<QByteArray>("text"); // "<missing>" and "<dir>": no file to read
    QTest::addColumn<QList<double>>("angles");

    QTest::newRow("plain") << QByteArray("angle I0 I1\n14.0 1 2\n14.5\n# note\n15.0 3\n")
                           << QList<double>{ 14.0, 14.5, 15.0 };
    // The first line is always the header, even when it looks like data.
    QTest::newRow("plain first line dropped") << QByteArray("13.0\n14.0\n") << QList<double>{ 14.0 };
    QTest::newRow("plain hash word") << QByteArray("h\n#14.0 1\n  14.2  \n\n") << QList<double>{ 14.2 };
    QTest::newRow("plain CRLF") << QByteArray("h\r\n14.0\r\n14.5\r\n") << QList<double>{ 14.0, 14.5 };
    // Not the word "9809": a plain table.
    QTest::newRow("98090 is plain") << QByteArray("98090 scan\n14.0 13.0\n") << QList<double>{ 14.0 };
    // Scan files: header up to "Offset", angle in column 1; rows without
    // column 1 are passed over.
    QTest::newRow("9809") << QByteArray("9809  scan\nD= 3.1 A\n1 2 3\nOffset 0 0 0\n1 14.0 5 6\n7\n2 14.5 5 6\n")
                          << QList<double>{ 14.0, 14.5 };
    QTest::newRow("9809 blanks") << QByteArray("   9809\tscan\n   Offset:\n0  14.0\n# 1 2\n")
                                 << QList<double>{ 14.0 };
    QTest::newRow("9809 without Offset") << QByteArray("9809\n1 14.0\n2 14.5\n") << QList<double>{};
    // An angle that does not read is 0, and 0 degrees is infinity.
    QTest::newRow("angle not a number") << QByteArray("h\nabc\n14.0\n") << QList<double>{ 0.0, 14.0 };
    QTest::newRow("empty file") << QByteArray() << QList<double>{};
    QTest::newRow("binary garbage") << QByteArray("\x00\x01\xff\xfe\n\x80\x81", 8) << QList<double>{ 0.0 };
    // Unreadable: the rows of the earlier file stay.
    QTest::newRow("missing") << QByteArray("<missing>") << QList<double>{};
    QTest::newRow("directory") << QByteArray("<dir>") << QList<double>{};
}

void TestEnergyOfFiles::readRef()
{
    QFETCH(QByteArray, text);
    QFETCH(QList<double>, angles);

    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const bool readable = !text.startsWith('<');
    const QString path = dir.filePath(readable ? "ref.dat" : "sub");
    if (text == "<dir>")
        QVERIFY(QDir(dir.path()).mkdir("sub"));
    QFile f(path);
    if (readable) {
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(text);
        f.close();
    }

    RefEnergies ref;
    ref.energies = { 9000.0, 9001.0 }; // rows from an earlier file
    LogCapture log;
    QCOMPARE(ref.read(path, D0), readable);
    if (!readable) {
        QCOMPARE(log.lines(), QStringList{ "Can't open ref file " + path });
        QCOMPARE(ref.energies, (QVector<double>{ 9000.0, 9001.0 }));
        return;
    }
    QVERIFY(log.lines().contains("reading simple"));
    QCOMPARE(ref.energies.size(), angles.size());
    for (int i = 0; i < angles.size(); ++i)
        QCOMPARE(ref.energies.at(i), angleToEV(angles.at(i)));
}

void TestEnergyOfFiles::refRow_data()
{
    QTest::addColumn<int>("rows");
    QTest::addColumn<int>("totalFiles");
    QTest::addColumn<int>("fNo");
    QTest::addColumn<bool>("fromEnd");
    QTest::addColumn<double>("expected");

    // Row r holds 9000 + r.
    QTest::newRow("from end first") << 100 << 90 << 0 << true << 9010.0;
    QTest::newRow("from end last") << 100 << 90 << 89 << true << 9099.0;
    QTest::newRow("from start first") << 100 << 90 << 0 << false << 9000.0;
    QTest::newRow("from start last") << 100 << 90 << 89 << false << 9089.0;
    // More frames than rows: 0 + 10 - 20 < 0 takes the first row.
    QTest::newRow("before first row") << 10 << 20 << 0 << true << 9000.0;
    QTest::newRow("from end middle") << 10 << 20 << 15 << true << 9005.0;
    QTest::newRow("just past the last row") << 10 << 20 << 10 << false << 9009.0;
    // No rows: the stand-by 8000 + fNo.
    QTest::newRow("no rows") << 0 << 20 << 7 << true << 8007.0;
}

void TestEnergyOfFiles::refRow()
{
    QFETCH(int, rows);
    QFETCH(int, totalFiles);
    QFETCH(int, fNo);
    QFETCH(bool, fromEnd);
    QFETCH(double, expected);

    RefEnergies ref;
    for (int r = 0; r < rows; ++r)
        ref.energies.append(9000 + r);
    QCOMPARE(ref.energy(fNo, totalFiles, fromEnd), expected);
}

void TestEnergyOfFiles::source_data()
{
    QTest::addColumn<QString>("chosen"); // sources ticked: name, file, number
    QTest::addColumn<double>("expected");

    // Name gives 1111.25, the file 7777, the recipe 3333 + 2 (frame 2).
    QTest::newRow("name") << "name" << 1111.25;
    QTest::newRow("name before file") << "name file" << 1111.25;
    QTest::newRow("name before all") << "name file number" << 1111.25;
    QTest::newRow("file") << "file" << 7777.0;
    QTest::newRow("number before file") << "file number" << 3335.0;
    QTest::newRow("number") << "number" << 3335.0;
    QTest::newRow("nothing chosen") << "" << 3335.0;
}

void TestEnergyOfFiles::source()
{
    QFETCH(QString, chosen);
    QFETCH(double, expected);

    EngOfFiles s;
    s.fromFileName = chosen.contains("name");
    s.fromRefFile = chosen.contains("file");
    s.fromFileNum = chosen.contains("number");
    s.byName = { EngByName::knownPatterns().at(2), 1 };
    s.calc.evenInEnergy = true;
    s.calc.start = 3333;
    RefEnergies ref;
    ref.energies = { 7777 };
    QCOMPARE(s.energyOf("/d/x_1111_25.tif", 2, 1, ref, D0), expected);
}

QTEST_GUILESS_MAIN(TestEnergyOfFiles)
#include "tst_energyoffiles.moc"
