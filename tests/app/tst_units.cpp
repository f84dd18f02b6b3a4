#include "app/Units.h"

#include <QtTest>

#include <cmath>

// Expected energies and angles were worked out to 30 digits with mpmath from
// E = 12398.424360387684 / (2 sin(a / 180 * 3.1415926535) D). The tolerance
// of 1e-13 (relative) is tight enough to tell the ten-decimal pi from the full
// one, which moves 14 degrees by 2.8e-11 relative.
class TestUnits : public QObject
{
    Q_OBJECT
private slots:
    void angleToEnergy_data();
    void angleToEnergy();
    void energyToAngle_data();
    void energyToAngle();
    void crystals_data();
    void crystals();
    void unitFormats_data();
    void unitFormats();
};

static bool closeRel(double got, double expected, double rel)
{
    return std::fabs(got - expected) <= rel * std::fabs(expected);
}

void TestUnits::angleToEnergy_data()
{
    QTest::addColumn<double>("deg");
    QTest::addColumn<double>("eV");
    QTest::newRow("14 deg") << 14.0 << 8172.41409314261142386974;
    QTest::newRow("5 deg") << 5.0 << 22684.5167823735724950702;
    QTest::newRow("80 deg") << 80.0 << 2007.58564597990497585635;
}

void TestUnits::angleToEnergy()
{
    QFETCH(double, deg);
    QFETCH(double, eV);
    Units u;
    const double got = u.a2e(deg);
    QVERIFY2(closeRel(got, eV, 1e-13), qPrintable(QString::number(got, 'g', 17)));
    QVERIFY(closeRel(Units::angleToEnergy(deg, Units::DefaultD), eV, 1e-13));
}

void TestUnits::energyToAngle_data()
{
    QTest::addColumn<double>("eV");
    QTest::addColumn<double>("deg");
    QTest::newRow("8000 eV") << 8000.0 << 14.3080844490703289202;
    QTest::newRow("30000 eV") << 30000.0 << 3.77869458069617735582;
    QTest::newRow("2000 eV") << 2000.0 << 81.3186059932191896851;
    // the reach of D = 3.13553 ends at HC / 2D = 1977.0859 eV
    QTest::newRow("just reachable") << 1978.0 << 88.2580490060717432228;
    QTest::newRow("just unreachable") << 1977.0 << -1.0;
    // HC / 0 is infinite, which is more than 1
    QTest::newRow("zero energy") << 0.0 << -1.0;
    // only |x| > 1 is refused: a negative energy gives a negative angle
    QTest::newRow("negative energy") << -8000.0 << -14.3080844490703289202;
    QTest::newRow("negative, unreachable") << -500.0 << -1.0;
}

void TestUnits::energyToAngle()
{
    QFETCH(double, eV);
    QFETCH(double, deg);
    Units u;
    const double got = u.e2a(eV);
    QVERIFY2(closeRel(got, deg, 1e-12), qPrintable(QString::number(got, 'g', 17)));
}

// Each crystal's spacing, set through the slot EOFSetup and the calibration
// window use: at 30 degrees 2 sin(a) is (nearly) 1, so E is about HC / D.
void TestUnits::crystals_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("name");
    QTest::addColumn<double>("eVAt30");
    QTest::newRow("Si(111)") << 0 << "Si(111)" << 3954.16980033276159302;
    QTest::newRow("Si(311)") << 1 << "Si(311)" << 7571.65858760182701092;
    QTest::newRow("Si(333)") << 2 << "Si(333)" << 11862.5094009982847790;
    QTest::newRow("Ge(111)") << 3 << "Ge(111)" << 3795.76657033860412605;
    QTest::newRow("Ge(333)") << 4 << "Ge(333)" << 11387.2993623946570707;
}

void TestUnits::crystals()
{
    QFETCH(int, index);
    QFETCH(QString, name);
    QFETCH(double, eVAt30);
    QCOMPARE(CrystalCount, 5);
    QCOMPARE(QString(Crystals[index].name), name);
    Units u;
    QVERIFY(QMetaObject::invokeMethod(&u, "setD", Q_ARG(double, Crystals[index].d)));
    QVERIFY(closeRel(u.a2e(30.0), eVAt30, 1e-13));
    for (double a = 2.0; a < 88.0; a += 3.7) {
        const double back = u.e2a(u.a2e(a));
        QVERIFY2(std::fabs(back - a) < 1e-9, qPrintable(QString("%1 -> %2").arg(a).arg(back, 0, 'g', 17)));
    }
    // an angle of 0 is not intercepted: the energy is infinite
    QVERIFY(std::isinf(u.a2e(0.0)));
}

void TestUnits::unitFormats_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("name");
    QTest::addColumn<double>("v");
    QTest::addColumn<QString>("text");
    QTest::newRow("eV") << 0 << "eV" << 8172.414093 << " 8172.41";
    QTest::newRow("keV") << 1 << "keV" << 8.172414093 << " 8.17241";
    QTest::newRow("A") << 2 << "A" << 1.5171 << " 1.51710";
    QTest::newRow("deg") << 3 << "deg" << -14.0 << "-14.00000";
}

void TestUnits::unitFormats()
{
    QFETCH(int, index);
    QFETCH(QString, name);
    QFETCH(double, v);
    QFETCH(QString, text);
    QCOMPARE(UnitCount, 4);
    QCOMPARE(QString(UnitNames[index].name), name);
    QCOMPARE(QString::asprintf(UnitNames[index].form, v), text);
}

QTEST_GUILESS_MAIN(TestUnits)
#include "tst_units.moc"
