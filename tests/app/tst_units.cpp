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
    void conversions_data();
    void conversions();
    void unitFormats_data();
    void unitFormats();
};

// Rows named after a crystal use its spacing, set through the slot EOFSetup and
// the calibration window use; the others use the default D = 3.13553.
void TestUnits::conversions_data()
{
    QTest::addColumn<bool>("toEnergy");
    QTest::addColumn<double>("in");
    QTest::addColumn<double>("out");
    QTest::newRow("14 deg") << true << 14.0 << 8172.41409314261142386974;
    QTest::newRow("80 deg") << true << 80.0 << 2007.58564597990497585635;
    // an angle of 0 is not intercepted: the energy is infinite
    QTest::newRow("0 deg") << true << 0.0 << qInf();
    QTest::newRow("8000 eV") << false << 8000.0 << 14.3080844490703289202;
    // the reach of D = 3.13553 ends at HC / 2D = 1977.0859 eV
    QTest::newRow("just reachable") << false << 1978.0 << 88.2580490060717432228;
    QTest::newRow("just unreachable") << false << 1977.0 << -1.0;
    // HC / 0 is infinite, which is more than 1
    QTest::newRow("zero energy") << false << 0.0 << -1.0;
    // only |x| > 1 is refused: a negative energy gives a negative angle
    QTest::newRow("negative energy") << false << -8000.0 << -14.3080844490703289202;
    QTest::newRow("negative, unreachable") << false << -500.0 << -1.0;
    // at 30 degrees 2 sin(a) is (nearly) 1, so E is about HC / D
    QTest::newRow("Si(111)") << true << 30.0 << 3954.16980033276159302;
    QTest::newRow("Si(311)") << true << 30.0 << 7571.65858760182701092;
    QTest::newRow("Si(333)") << true << 30.0 << 11862.5094009982847790;
    QTest::newRow("Ge(111)") << true << 30.0 << 3795.76657033860412605;
    QTest::newRow("Ge(333)") << true << 30.0 << 11387.2993623946570707;
}

void TestUnits::conversions()
{
    QFETCH(bool, toEnergy);
    QFETCH(double, in);
    QFETCH(double, out);
    Units u;
    QCOMPARE(CrystalCount, 5);
    for (const Crystal &c : Crystals)
        if (QString(c.name) == QTest::currentDataTag())
            QVERIFY(QMetaObject::invokeMethod(&u, "setD", Q_ARG(double, c.d)));
    const bool known = u.D != Units::DefaultD;
    QCOMPARE(known, QString(QTest::currentDataTag()).contains('('));

    const double got = toEnergy ? u.a2e(in) : u.e2a(in);
    if (std::isinf(out))
        QVERIFY(std::isinf(got));
    else
        QVERIFY2(std::fabs(got - out) <= 1e-13 * std::fabs(out), qPrintable(QString::number(got, 'g', 17)));
    if (toEnergy && !known)
        QCOMPARE(Units::angleToEnergy(in, Units::DefaultD), got);
    for (double a = 2.0; known && a < 88.0; a += 3.7)
        QVERIFY2(std::fabs(u.e2a(u.a2e(a)) - a) < 1e-9, qPrintable(QString::number(a)));
}

void TestUnits::unitFormats_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<double>("v");
    QTest::addColumn<QString>("text");
    QTest::newRow("eV") << 0 << 8172.414093 << " 8172.41";
    QTest::newRow("keV") << 1 << 8.172414093 << " 8.17241";
    QTest::newRow("A") << 2 << 1.5171 << " 1.51710";
    QTest::newRow("deg") << 3 << -14.0 << "-14.00000";
}

void TestUnits::unitFormats()
{
    QFETCH(int, index);
    QFETCH(double, v);
    QFETCH(QString, text);
    QCOMPARE(UnitCount, 4);
    QCOMPARE(QString(UnitNames[index].name), QString(QTest::currentDataTag()));
    QCOMPARE(QString::asprintf(UnitNames[index].form, v), text);
}

QTEST_GUILESS_MAIN(TestUnits)
#include "tst_units.moc"
