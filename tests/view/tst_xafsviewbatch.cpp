#include "support/E2eRun.h"

#include <QtTest>

// The spectrum view's batch commands in the built program. No stack is
// loaded, so the spectra saved are empty: their files hold the header only.
class TestXafsViewBatch : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void saveSpectra();
};

void TestXafsViewBatch::initTestCase()
{
    E2E_REQUIRE_EXECUTABLE();
}

void TestXafsViewBatch::saveSpectra()
{
    E2eRun run;
    QVERIFY(run.isValid());
    const QString d = run.dir() + QLatin1Char('/');
    const E2eResult r = run.runBatch(
        {":end"},
        {"xafs_view_normalize 1", "xafs_view_enerugy_correction 1", "save_spectra " + d + "sp.dat", "quit"}, 30000);
    E2E_VERIFY_RUN(r, true);
    // Nothing moved the pointer: position (0, 0), box 0 x 0. A command
    // without an action would be reported as "cmd <line>".
    const QString tName = d + "sp0-0-0x0T.dat";
    E2E_VERIFY_LINES(r.debug, QStringList{"xafs view : save data " + d + "sp.dat " + tName},
                     (QStringList{"cmd xafs_view", "cmd save_spectra"}));
    for (const QString &name : QStringList{tName, d + "sp0-0-0x0std.dat"}) {
        QFile f(name);
        QVERIFY2(f.open(QIODevice::ReadOnly | QIODevice::Text), qPrintable(name));
        const QStringList lines = QString::fromUtf8(f.readAll()).split('\n', Qt::SkipEmptyParts);
        QVERIFY(!lines.isEmpty());
        QCOMPARE(lines.first(), QStringLiteral("###Tessarelle::XafsSpectrum"));
        for (const QString &l : lines)
            QVERIFY2(l.startsWith('#'), qPrintable(l));
    }
}

QTEST_GUILESS_MAIN(TestXafsViewBatch)
#include "tst_xafsviewbatch.moc"
