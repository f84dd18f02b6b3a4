#include "images/TiffWriter.h"
#include "support/E2eRun.h"

#include <QtTest>

#include <vector>

// The whole program with a bad-pixel mask named in the configuration and a
// script that loads a stack and then uses every absorption control word. A
// word without an action would leave "cmd <line>" in the debug stream; the
// final ":echo" proves that each word answered and the batch went on.
class TestAbsorptionRun : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void words_data();
    void words();
};

void TestAbsorptionRun::initTestCase()
{
    E2E_REQUIRE_EXECUTABLE();
}

void TestAbsorptionRun::words_data()
{
    QTest::addColumn<bool>("maskExists");
    QTest::addColumn<QString>("maskLine");
    // "@" stands for the run folder; the mask file holds two points.
    QTest::newRow("mask read at start") << true << "Err Points mask in use: @/mask.txt (2 points)";
    QTest::newRow("missing mask") << false << "Err Points mask not in use: @/mask.txt";
}

void TestAbsorptionRun::words()
{
    QFETCH(bool, maskExists);
    QFETCH(QString, maskLine);

    E2eRun run;
    QVERIFY(run.isValid());
    // The mask's name is canonical once read, so the folder is too.
    const QString dir = QFileInfo(run.dir()).canonicalFilePath();
    maskLine.replace('@', dir);
    if (maskExists)
        run.writeFile("mask.txt", "# bad pixels\n1 1\n2 0\n");
    const std::vector<quint16> px(12, 1000);
    QVERIFY(writeTiff16(dir + "/a.tif", 4, 3, px.data()));

    const QStringList words{"Use_I0 0", "set_fluo_type 1", "set_i0_dark_area", "set_i1_dark_area",
                            "clear_i0_dark_area", "clear_i1_dark_area"};
    QStringList batch{"load_I1_files new " + dir + "/a.tif"};
    batch << words << ":echo done" << "quit";
    const E2eResult r = run.runBatch({":end"}, batch, 30000, {"ErrPoints " + dir + "/mask.txt"});
    E2E_VERIFY_RUN(r, true);
    QStringList absent;
    for (const QString &w : words)
        absent << "cmd " + w.section(' ', 0, 0);
    E2E_VERIFY_LINES(r.debug, (QStringList{maskLine, "echo done"}), absent);
}

QTEST_GUILESS_MAIN(TestAbsorptionRun)
#include "tst_absorptionrun.moc"
