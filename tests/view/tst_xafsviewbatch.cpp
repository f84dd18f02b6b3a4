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
    const QString exe = E2eRun::executable();
    if (exe.isEmpty() || !QFileInfo(exe).isExecutable())
        QSKIP("TESSARELLE_EXE does not name the built program");
}

void TestXafsViewBatch::saveSpectra()
{
    E2eRun run;
    QVERIFY(run.isValid());
    const QString d = run.dir() + QLatin1Char('/');
    const E2eResult r = run.runBatch(
        {":end"},
        {"xafs_view_normalize 1", "xafs_view_enerugy_correction 1", "save_spectra " + d + "sp.dat", "quit"}, 30000);
    QVERIFY(r.started);
    QVERIFY2(!r.crashed, qPrintable(r.debug));
    QVERIFY2(r.finished, qPrintable(r.debug));
    QCOMPARE(r.exitCode, 0);

    // A command without an action would be reported as "cmd <line>".
    QVERIFY2(!r.debug.contains("cmd xafs_view"), qPrintable(r.debug));
    QVERIFY2(!r.debug.contains("cmd save_spectra"), qPrintable(r.debug));

    // Nothing moved the pointer: position (0, 0), box 0 x 0.
    const QString tName = d + "sp0-0-0x0T.dat";
    QVERIFY2(r.debug.contains("xafs view : save data " + d + "sp.dat " + tName), qPrintable(r.debug));
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
