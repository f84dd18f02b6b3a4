#include "spectrum/ElementTable.h"

#include <QSet>
#include <QtTest>

class TestElementTable : public QObject
{
    Q_OBJECT

private slots:
    void elementNumber_data();
    void elementNumber();
    void rowsInAtomicOrder();
    void mass_data();
    void mass();
    void edgeNumber_data();
    void edgeNumber();
    void edgeNamesReadBack();
};

void TestElementTable::elementNumber_data()
{
    QTest::addColumn<QString>("symbol");
    QTest::addColumn<int>("z");

    QTest::newRow("Cu") << "Cu" << 29;
    QTest::newRow("lower case is another symbol") << "cu" << -1;
    QTest::newRow("blank row") << " " << 0;
    QTest::newRow("empty") << "" << -1;
    QTest::newRow("trailing blank") << "Cu " << -1;
    QTest::newRow("first") << "H" << 1;
    QTest::newRow("U") << "U" << 92;
    QTest::newRow("last element") << "Mt" << 109;
    QTest::newRow("deuterium after the elements") << "D" << 110;
    QTest::newRow("unknown") << "Xx" << -1;
    QTest::newRow("newer symbol not in the list") << "Ds" << -1;
}

void TestElementTable::elementNumber()
{
    QFETCH(QString, symbol);
    QFETCH(int, z);
    QCOMPARE(::elementNumber(symbol), z);
}

// Lookups elsewhere take a row's index for its z; a shifted or repeated row
// would hand out the wrong element.
void TestElementTable::rowsInAtomicOrder()
{
    QSet<QString> seen;
    for (int i = 0; i < ElementRowCount; ++i) {
        QCOMPARE(elementList[i].z, i);
        const QString symbol = QLatin1String(elementList[i].symbol);
        QVERIFY2(!seen.contains(symbol), qPrintable(symbol));
        seen.insert(symbol);
    }
}

void TestElementTable::mass_data()
{
    QTest::addColumn<int>("z");
    QTest::addColumn<double>("mass");
    QTest::addColumn<double>("tolerance");

    // The lightest elements carry the values the program has always shown.
    QTest::newRow("H") << 1 << 1.0079 << 0.0;
    QTest::newRow("B") << 5 << 10.81 << 0.0;
    QTest::newRow("C") << 6 << 12.011 << 0.0;
    // Standard atomic weights as any periodic table gives them.
    QTest::newRow("Cu") << 29 << 63.546 << 0.002;
    QTest::newRow("Au") << 79 << 196.967 << 0.002;
    QTest::newRow("U") << 92 << 238.029 << 0.002;
    QTest::newRow("no weight: Mt") << 109 << 0.0 << 0.0;
    QTest::newRow("deuterium") << 110 << 2.01355321 << 0.0;
    QTest::newRow("blank row") << 0 << 0.0 << 0.0;
}

void TestElementTable::mass()
{
    QFETCH(int, z);
    QFETCH(double, mass);
    QFETCH(double, tolerance);
    const double got = elementList[z].mass;
    QVERIFY2(std::abs(got - mass) <= tolerance,
             qPrintable(QStringLiteral("%1: %2").arg(elementList[z].symbol).arg(got, 0, 'g', 10)));
}

void TestElementTable::edgeNumber_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("edge");

    QTest::newRow("K") << "K" << 0;
    QTest::newRow("LI") << "LI" << 1;
    QTest::newRow("L1") << "L1" << 1;
    QTest::newRow("LII") << "LII" << 2;
    QTest::newRow("l2") << "l2" << 2;
    QTest::newRow("LIII") << "LIII" << 3;
    QTest::newRow("l3") << "l3" << 3;
    QTest::newRow("Liii") << "Liii" << 3;
    // Everything else falls back to K.
    QTest::newRow("X") << "X" << 0;
    QTest::newRow("empty") << "" << 0;
    QTest::newRow("L4") << "L4" << 0;
    QTest::newRow("no trimming") << " L3" << 0;
}

void TestElementTable::edgeNumber()
{
    QFETCH(QString, name);
    QFETCH(int, edge);
    QCOMPARE(::edgeNumber(name), edge);
}

// The names shown for the edges must read back as their own index.
void TestElementTable::edgeNamesReadBack()
{
    for (int i = 0; i < EdgeNameCount; ++i)
        QCOMPARE(::edgeNumber(QLatin1String(edgeNames[i])), i);
}

QTEST_APPLESS_MAIN(TestElementTable)
#include "tst_elementtable.moc"
