#include "analysis/Analyzed2DRes.h"
#include "calibration/EmpFile.h"
#include "images/LogCapture.h"

#include <QBuffer>
#include <QtTest>

#include <cmath>

// The energy map file without windows: a map written and read back, and
// hand-made files with every kind of damage. Expected shifts come from the
// angle formulas worked out here.
class TestEmpFile : public QObject
{
    Q_OBJECT
private slots:
    void roundTrip();
    void read_data();
    void read();
};

namespace {
const double D = 3.1355316, E0 = 8979.0;

double angle(double e, double d = D) // degrees; -1 where the crystal can't reach e
{
    const double x = 12398.424360387684 / e / (2 * d);
    return std::fabs(x) > 1 ? -1.0 : std::asin(x) / 3.1415926535 * 180.0;
}

double shiftOf(double v, double e, double d = D) // the shift a stored value means
{
    return e - 12398.424360387684 / (2 * d * std::sin((v + angle(e, d)) / 180.0 * 3.1415926535));
}

QString key(const QString &k)
{
    return k.leftJustified(24) + ": ";
}

// A 3 x 2 map file: the magic, the header lines given, then the body.
QByteArray file(const QString &magic, const QStringList &head, const QString &body)
{
    QString t = magic + "\n" + key("Record Date") + "24/03/01 10:00:00.000\n";
    for (const QString &l : head)
        t += l + "\n";
    return (t + "##-----------------\n" + body).toUtf8();
}

const QStringList Good{key("Std Edge Energy [eV]") + "8979", key("Spacing [nm]") + "3.1355316",
                       key("Width [pix]") + "3", key("Height [pix]") + "2", key("X Offset [pix]") + "4",
                       key("Bin Half Width [pix]") + "1", key("Area X1") + "3", key("Area Y1") + "2"};
} // namespace

void TestEmpFile::roundTrip()
{
    // A 5 x 4 walk of 3 x 3 cells over the first 5 x 3 pixels; saved over a
    // larger image of 6 x 5, whose pixels off the map are written as shift 0.
    Analyzed2DRes map;
    AnalyzeCond c;
    c.setUp(5, 4, 1, 1, QRectF(0, 0, 5, 3), -1, -1);
    map.setUp(c);
    map.setData(1, 1, 1, 1, 1.25);
    map.setData(4, 1, 1, 1, -0.5);
    EmpFile::Source src{"24/03/01 10:00:00.000", E0, D, 7, -2, "std.dat"};
    QBuffer buf;
    buf.open(QIODevice::ReadWrite);
    LogCapture log;
    QVERIFY(EmpFile::write(buf, src, map, 6, 5));

    const QStringList lines = QString::fromUtf8(buf.data()).split('\n');
    QCOMPARE(lines.mid(0, 22), (QStringList{"###Tessarelle::TSRL", key("Record Date") + src.recordDate,
                                            key("Std Edge Energy [eV]") + "8979", key("Spacing [nm]") + "3.13553",
                                            key("X Offset [pix]") + "7", key("Y Offset [pix]") + "-2",
                                            key("Width [pix]") + "5", key("Height [pix]") + "4",
                                            key("Bin Half Width [pix]") + "1", key("Bin Half Height [pix]") + "1",
                                            key("Area X0") + "0", key("Area X1") + "5", key("Area Y0") + "0",
                                            key("Area Y1") + "3", key("Std File Name") + "std.dat",
                                            key("Map Height") + "4", key("Map Width") + "0 5",
                                            key("Map Width") + "1 5", key("Map Width") + "2 5",
                                            key("Map Width") + "3 5", "##-----------------", lines.at(21)}));
    QCOMPARE(lines.size(), 21 + 5 + 1);
    QCOMPARE(log.lines(), (QStringList{"EMap Write Start :", "EMap Write End   :"}));
    for (int y = 0; y < 5; ++y) {
        const QStringList v = lines.at(21 + y).split(' ');
        QCOMPARE(v.size(), 7); // six values, each with its blank
        for (int x = 0; x < 6; ++x) {
            const double dE = x < 5 && y < 3 ? (x < 3 ? 1.25 : -0.5) : 0.0;
            QCOMPARE(v[x].toDouble(), angle(E0 - dE) - angle(E0)); // to the last bit
        }
    }

    // Read back: the header as written, each pixel its own sample.
    buf.seek(0);
    const EMPHeader h = EmpFile::readHeader(buf);
    QVERIFY(h.valid);
    QCOMPARE(QList<int>({h.xOffset, h.yOffset, h.width, h.height, h.binHalfW, h.binHalfH, h.areaX0, h.areaX1,
                         h.areaY0, h.areaY1}),
             QList<int>({7, -2, 5, 4, 1, 1, 0, 5, 0, 3}));
    QVERIFY(EmpFile::bodyFits(h, buf.size() - buf.pos()));
    Analyzed2DRes back;
    EmpFile::readBody(buf, h, h.stdEdgeE, back);
    QCOMPARE(back.cond.text(), c.text());
    QCOMPARE(back.surface.n, 20.0);
    // 5 x 4 values read row by row from a body written 6 to a row; the
    // spacing comes back with the six digits of the header.
    QCOMPARE(h.spacing, 3.13553);
    for (int i = 0; i < 20; ++i) {
        const int sx = i % 6, sy = i / 6;
        const double dE = sx < 5 && sy < 3 ? (sx < 3 ? 1.25 : -0.5) : 0.0;
        const double want = shiftOf(angle(E0 - dE) - angle(E0), E0, h.spacing);
        QVERIFY2(std::fabs(back.valueAt(i % 5, i / 5) - want) < 1e-9, qPrintable(QString::number(i)));
        QVERIFY(std::fabs(want - dE) < 1e-6); // what the six digits cost
    }
}

void TestEmpFile::read_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<QList<double>>("head");   // width, height, x offset, bin x, area x0, x1, edge, spacing
    QTest::addColumn<QList<double>>("values"); // stored values of the six pixels read
    QTest::addColumn<QString>("logged");       // a line the reading leaves, with its count
    QTest::addColumn<int>("times");

    const QList<double> v{0, 0.001, -0.002, 0.25, 0, 1e-5};
    const QList<double> g{3, 2, 4, 1, 0, 3, E0, D};
    const QList<double> none;
    const QString body = "0 0.001 -0.002\n0.25 0 1e-05\n";
    QTest::newRow("long magic, longer body") << file("###Tessarelle::TSRL", Good, body + "9 9 9\n") << true << g << v
                                             << "run out!" << 0;
    QTest::newRow("short magic") << file("###TSRL", Good, body) << true << g << v << "Not a emp file." << 0;
    QTest::newRow("short body") << file("###TSRL", Good, "0 0.001 ") << true << g << QList<double>{0, 0.001, 0, 0, 0, 0}
                                << "run out!" << 4;
    QTest::newRow("no body") << file("###TSRL", Good, "") << true << g << QList<double>(6, 0.0) << "run out!" << 6;
    QTest::newRow("not a number") << file("###TSRL", Good, "0.001 +0.002x 5 5 5 5") << true << g
                                  << QList<double>{0.001, 0.002, 0, 0, 0, 0} << "not a number in the energy map at (2, 0)"
                                  << 1;
    QTest::newRow("repeated key: last wins") << file("###TSRL", QStringList{key("Width [pix]") + "9"} + Good, body)
                                             << true << g << v << QString("emp W " + key("Width [pix]") + "3") << 1;
    QTest::newRow("int key not a number: 0")
        << file("###TSRL", Good + QStringList{key("Area X1") + "ab", key("X Offset [pix]") + "1.5"}, body) << true
        << QList<double>{3, 2, 0, 1, 0, 0, E0, D} << v << QString("emp H " + key("Height [pix]") + "2") << 1;
    QTest::newRow("no spacing") << file("###TSRL", Good.mid(0, 1) + Good.mid(2), body) << false << none << none
                                << "" << 0;
    QTest::newRow("no separator") << file("###TSRL", Good, body).replace("##----", "#") << false << none << none
                                  << "" << 0;
    QTest::newRow("wrong magic") << file("##Tessarelle::TSRL", Good, body) << false << none << none
                                 << "Not a emp file." << 1;
    QTest::newRow("magic cut short") << file("###TSR", Good, body) << false << none << none << "Not a emp file."
                                     << 1;
    QTest::newRow("empty file") << QByteArray() << false << none << none << "Not a emp file." << 1;
    // Sizes that the body can't hold are refused before anything is made.
    const QString refused = "Energy map of %1 x %2 refused: a body of %3 bytes can not hold it";
    QStringList huge = Good;
    huge[2] = key("Width [pix]") + "1000000";
    huge[3] = key("Height [pix]") + "1000000";
    QTest::newRow("absurd size") << file("###TSRL", huge, body) << false << none << none
                                 << refused.arg(1000000).arg(1000000).arg(body.size()) << 1;
    huge[2] = key("Width [pix]") + "300";
    huge[3] = key("Height [pix]") + "219"; // 65700 values: 65536 more than 28 bytes allow
    QTest::newRow("just too large") << file("###TSRL", huge, body) << false << none << none
                                    << refused.arg(300).arg(219).arg(body.size()) << 1;
    huge[2] = key("Width [pix]") + "-3";
    QTest::newRow("negative size") << file("###TSRL", huge, body) << false << none << none
                                   << refused.arg(-3).arg(219).arg(body.size()) << 1;
}

void TestEmpFile::read()
{
    QFETCH(QByteArray, text);
    QFETCH(bool, valid);
    QFETCH(QList<double>, head);
    QFETCH(QList<double>, values);
    QFETCH(QString, logged);
    QFETCH(int, times);

    QBuffer buf(&text);
    buf.open(QIODevice::ReadOnly);
    LogCapture log;
    const EMPHeader h = EmpFile::readHeader(buf);
    const bool fits = h.valid && EmpFile::bodyFits(h, buf.size() - buf.pos());
    QCOMPARE(fits, valid);
    if (valid) {
        QCOMPARE(QList<double>({double(h.width), double(h.height), double(h.xOffset), double(h.binHalfW),
                                double(h.areaX0), double(h.areaX1), h.stdEdgeE, h.spacing}),
                 head);
        Analyzed2DRes map;
        EmpFile::readBody(buf, h, 8990.0, map); // read against another edge
        for (int i = 0; i < 6; ++i)
            QVERIFY2(std::fabs(map.valueAt(i % 3, i / 3) - shiftOf(values[i], 8990.0)) < 1e-9, qPrintable(QString::number(i)));
    }
    if (!logged.isEmpty())
        QCOMPARE(log.lines().count(logged), times);
}

QTEST_GUILESS_MAIN(TestEmpFile)
#include "tst_empfile.moc"
