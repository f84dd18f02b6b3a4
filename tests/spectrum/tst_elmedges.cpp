#include "spectrum/ElementTable.h"
#include "spectrum/ElmEdges.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <array>
#include <cmath>

using Five = std::array<double, 5>;
Q_DECLARE_METATYPE(Five)

class TestElmEdges : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void resourceRows();
    void kEdgesRiseWithZ();
    void knownEdges_data();
    void knownEdges();
    void malformedTables_data();
    void malformedTables();
    void columnLayout();

private:
    QString writeTable(const QByteArray &content);

    QTemporaryDir tmp;
    int fileCount = 0;
};

static Five edgeOf(const ElmEdge &r) { return {r.edge[0], r.edge[1], r.edge[2], r.edge[3], r.edge[4]}; }
static Five cOf(const ElmEdge &r) { return {r.c[0], r.c[1], r.c[2], r.c[3], r.c[4]}; }
static Five dOf(const ElmEdge &r) { return {r.d[0], r.d[1], r.d[2], r.d[3], r.d[4]}; }

QString TestElmEdges::writeTable(const QByteArray &content)
{
    const QString path = tmp.filePath(QStringLiteral("table%1.txt").arg(++fileCount));
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly) || f.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(path));
    return path;
}

// Every test starts from the shipped table; the tests of the reader replace it.
void TestElmEdges::init()
{
    QVERIFY(loadElmEdges());
}

// The resource is reached under ":Victoreen1.txt" from an executable that links
// only the core library: heading row 0, then H (1) to U (92), row number == z.
void TestElmEdges::resourceRows()
{
    QVERIFY(QFile::exists(QStringLiteral(":Victoreen1.txt")));
    QCOMPARE(elmEdgeRows, 93);
    for (int i = 0; i < elmEdgeRows; ++i)
        QCOMPARE(elmEdges[i].z, i);
    QCOMPARE(edgeOf(elmEdges[0]), Five{});
}

// A row out of place would show as a K edge lower than the one before it.
void TestElmEdges::kEdgesRiseWithZ()
{
    for (int z = 3; z < elmEdgeRows; ++z)
        QVERIFY2(elmEdges[z].edge[0] > elmEdges[z - 1].edge[0], qPrintable(QString::number(z)));
}

void TestElmEdges::knownEdges_data()
{
    QTest::addColumn<QString>("symbol");
    QTest::addColumn<QString>("edgeName");
    QTest::addColumn<double>("keV");

    // Edge energies as every X-ray data booklet gives them; within 0.5 %.
    QTest::newRow("Fe K") << "Fe" << "K" << 7.112;
    QTest::newRow("Ce LIII") << "Ce" << "LIII" << 5.723;
    QTest::newRow("Au LI") << "Au" << "L1" << 14.353;
    QTest::newRow("Au LII") << "Au" << "L2" << 13.734;
    QTest::newRow("U K") << "U" << "K" << 115.606;
}

void TestElmEdges::knownEdges()
{
    QFETCH(QString, symbol);
    QFETCH(QString, edgeName);
    QFETCH(double, keV);
    const int z = elementNumber(symbol);
    QVERIFY(z > 0 && z < elmEdgeRows);
    const double got = elmEdges[z].edge[edgeNumber(edgeName)];
    QVERIFY2(std::abs(got - keV) <= 0.005 * keV, qPrintable(QString::number(got)));
}

void TestElmEdges::malformedTables_data()
{
    QTest::addColumn<QByteArray>("content"); // null: no file at all
    QTest::addColumn<QByteArray>("rows");    // z,kEdge of each row read
    QTest::newRow("missing file clears the table") << QByteArray() << QByteArray();
    QTest::newRow("empty file") << QByteArray("") << QByteArray();
    QTest::newRow("comments take no row")
        << QByteArray("# heading\nA 1 2.5\n   # indented\n#B 2 3\n#\nC 2 3.5\n") << QByteArray("1,2.5 2,3.5");
    QTest::newRow("heading becomes row 0") << QByteArray("Elm Z K keV\nH 1 0.5\n") << QByteArray("0,0 1,0.5");
    QTest::newRow("blank line takes a row") << QByteArray("A 1 1\n\n   \nB 4 2\n") << QByteArray("1,1 0,0 0,0 4,2");
    QTest::newRow("tabs, runs of blanks, CRLF") << QByteArray("  A\t 5 \t  1.5  \r\nB 6 2\r\n")
                                                << QByteArray("5,1.5 6,2");
    QTest::newRow("short line: missing fields read 0") << QByteArray("Fe 26 7.112\nX\n") << QByteArray("26,7.112 0,0");
    QTest::newRow("z that is no integer") << QByteArray("A abc 1\nB 2.5 2\nC -3 3\n") << QByteArray("0,1 0,2 -3,3");
    QTest::newRow("clamped at 0") << QByteArray("A 1 -1\nB 2 =\nC 3 nan\nD 4 inf\nE 5 1e400\nF 6 0x10\nG 7 1e-3\n")
                                  << QByteArray("1,0 2,0 3,0 4,0 5,0 6,0 7,0.001");
    QTest::newRow("no final newline") << QByteArray("A 1 1\nB 2 2") << QByteArray("1,1 2,2");
    // Fields: garbage, "7", garbage, "9": z 7, a K edge that reads 0.
    QTest::newRow("binary garbage") << QByteArray("\x00\x01\xff\xfe 7 \x80\x00 9", 12) << QByteArray("7,0");
    // Rows past the table's 100 are dropped, not written past its end.
    QByteArray many, read;
    for (int i = 0; i < 150; ++i) {
        many += "E " + QByteArray::number(i) + ' ' + QByteArray::number(i + 1) + '\n';
        if (i < ElmEdgesMax)
            read += QByteArray::number(i) + ',' + QByteArray::number(i + 1) + ' ';
    }
    QTest::newRow("150 rows") << many << read;
}

void TestElmEdges::malformedTables()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, rows);
    const QList<QByteArray> read = rows.split(' ');
    const int n = rows.isEmpty() ? 0 : read.size() - rows.endsWith(' ');
    if (content.isNull()) {
        QTest::ignoreMessage(QtDebugMsg, "Cannot open [Victoreen1.txt]\n");
        QVERIFY(!loadElmEdges(tmp.filePath(QStringLiteral("no-such-file.txt"))));
    } else {
        QVERIFY(loadElmEdges(writeTable(content)));
    }
    QCOMPARE(elmEdgeRows, n);
    // Rows not read stay cleared, whatever the shipped table held there.
    for (int i = 0; i < ElmEdgesMax; ++i) {
        const QList<QByteArray> zk = i < n ? read[i].split(',') : QList<QByteArray>{"0", "0"};
        QCOMPARE(elmEdges[i].z, zk[0].toInt());
        QCOMPARE(elmEdges[i].edge[0], zk[1].toDouble());
        if (i >= n)
            QCOMPARE(edgeOf(elmEdges[i]), Five{});
    }
}

// Fields numbered 1..21: symbol, z, then K energy, K wavelength, C1, D1 and so
// on; the fifth edge has no wavelength. Wavelengths (4, 8, 12, 16) go nowhere.
void TestElmEdges::columnLayout()
{
    QByteArray line = "S";
    for (int i = 2; i <= 21; ++i)
        line += ' ' + QByteArray::number(i);
    QVERIFY(loadElmEdges(writeTable(line + '\n')));
    QCOMPARE(elmEdgeRows, 1);
    QCOMPARE(elmEdges[0].z, 2);
    QCOMPARE(edgeOf(elmEdges[0]), (Five{3, 7, 11, 15, 19}));
    QCOMPARE(cOf(elmEdges[0]), (Five{5, 9, 13, 17, 20}));
    QCOMPARE(dOf(elmEdges[0]), (Five{6, 10, 14, 18, 21}));
}

QTEST_GUILESS_MAIN(TestElmEdges)
#include "tst_elmedges.moc"
