#include "analysis/Analyzer.h"
#include "app/Body.h"
#include "app/Globals.h"
#include "images/TiffData.h"
#include "network/Stars.h"
#include "network/StarsTestServer.h"
#include "support/E2eRun.h"

#include <QFile>
#include <QLineEdit>
#include <QProcess>
#include <QSignalSpy>
#include <QtTest>

// Long runs that must neither crash nor grow: each is done once short and
// once long, and the long one may not need noticeably more memory. A leak of
// a few dozen bytes per pass, frame, restart or connection shows up as
// megabytes here. The figures go to the test log (qInfo).
class TestLongRun : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { InitGlobals(); }
    void program_data();
    void program();
    void runRestarts();
    void starsReconnects();
};

namespace {

// Kilobytes of a "VmRSS:" or "VmHWM:" line of /proc/<pid>/status; 0 when
// the process is gone.
qint64 statusKb(qint64 pid, const char *field)
{
    QFile f(QStringLiteral("/proc/%1/status").arg(pid));
    if (!f.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : f.readAll().split('\n'))
        if (line.startsWith(field))
            return line.mid(qstrlen(field)).trimmed().split(' ').first().toLongLong();
    return 0;
}

// Runs the program on a batch of lines and returns its peak resident size
// in kB, read until it ends; 0 when it did not end with "echo done" within
// the limit.
qint64 peakOfBatch(const E2eRun &run, const QStringList &batch, QString *debug)
{
    run.writeFile("config.cfg", "batch :end\n");
    run.writeFile("script.bat", batch.join('\n') + "\n:echo done\nquit\n");
    QProcess p;
    p.setWorkingDirectory(run.dir());
    p.setStandardOutputFile(QProcess::nullDevice());
    p.setStandardErrorFile(run.dir() + "/debug.txt");
    p.start(E2eRun::executable(), {"-e", "-c", "config.cfg", "-b", "script.bat", "-x", "-platform", "offscreen"});
    if (!p.waitForStarted())
        return 0;
    qint64 peak = 0;
    QElapsedTimer t;
    t.start();
    while (!p.waitForFinished(20) && t.elapsed() < 150000)
        peak = qMax(peak, statusKb(p.processId(), "VmHWM:"));
    QFile d(run.dir() + "/debug.txt");
    *debug = d.open(QIODevice::ReadOnly) ? QString::fromUtf8(d.readAll()) : QString();
    if (p.state() != QProcess::NotRunning || p.exitStatus() != QProcess::NormalExit || !debug->contains("\necho done"))
        return 0;
    return peak;
}

// Twenty frames of w x h with an edge that moves across x.
void loadFrames(Body &b, int w, int h)
{
    const int nf = 20;
    for (int k = 0; k < nf; ++k) {
        auto *f = new TiffData;
        f->allocate(w, h, PixelU16);
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x)
                f->setPixel(x, y, 30000 * std::exp(k > 8 + x % 5 ? -1.0 : -0.3) + (x + y + k) % 7);
        b.loadedI1(f, k, nf);
    }
    b.finishedLoadI1Files();
}

} // namespace

// The short and the long form of a batch differ only in `count`; growth is
// the most their peaks may differ (kB).
void TestLongRun::program_data()
{
    QTest::addColumn<QStringList>("batch"); // %1 is replaced by count
    QTest::addColumn<int>("shortCount");
    QTest::addColumn<int>("longCount");
    QTest::addColumn<int>("frames");        // small .img files written first
    QTest::addColumn<qint64>("growthKb");

    // Every pass goes through the main window and back.
    QTest::newRow("100 000 loop passes") << QStringList{":for a $k$ 1 %1", "set_band_w $k$", ":next a"} << 10000
                                         << 100000 << 0 << qint64(6000);
    // 5 000 frames loaded once, or three times (each load replaces the
    // stack, some 7 MB): the later loads must give back what they replace.
    // Frames are not shown as they arrive, which would redo the spectrum for
    // each.
    QTest::newRow("5000 frames") << QStringList{"show_latest_i1 0", ":for a $k$ 1 %1",
                                                "load_I1_files_of_pattern new @/frames/ f*.img", ":next a"}
                                 << 1 << 3 << 5000 << qint64(8000);
}

void TestLongRun::program()
{
    E2E_REQUIRE_EXECUTABLE();
    QFETCH(QStringList, batch);
    QFETCH(int, shortCount);
    QFETCH(int, longCount);
    QFETCH(int, frames);
    QFETCH(qint64, growthKb);

    E2eRun run;
    QVERIFY(QDir(run.dir()).mkdir("frames"));
    // ".img": "IM", comment length, 16 x 16, offsets, a 64-byte head, pixels.
    QByteArray img(64 + 16 * 16 * 2, '\0');
    img.replace(0, 8, QByteArray("IM\0\0\x10\0\x10\0", 8));
    for (int k = 0; k < frames; ++k) {
        QFile f(run.dir() + QStringLiteral("/frames/f%1.img").arg(k, 5, 10, QLatin1Char('0')));
        img[64] = char(k);
        QVERIFY(f.open(QIODevice::WriteOnly) && f.write(img) == img.size());
    }
    batch.replaceInStrings("@", run.dir());
    QString debug;
    const qint64 shortPeak = peakOfBatch(run, batch.join('\n').arg(shortCount).split('\n'), &debug);
    QVERIFY2(shortPeak > 0, qPrintable(debug.right(2000)));
    const qint64 longPeak = peakOfBatch(run, batch.join('\n').arg(longCount).split('\n'), &debug);
    QVERIFY2(longPeak > 0, qPrintable(debug.right(2000)));
    if (frames)
        QVERIFY2(debug.count(QStringLiteral("I1 load finished: %1 frames").arg(frames)) == longCount,
                 qPrintable(debug.right(1000)));
    qInfo("peak %lld kB for %d, %lld kB for %d", shortPeak, shortCount, longPeak, longCount);
    QVERIFY2(longPeak - shortPeak < growthKb, qPrintable(QString::number(longPeak - shortPeak)));
}

// A run over 512 x 512 at step 1, stopped after a few rows and started again
// ten times, then let run to its end.
void TestLongRun::runRestarts()
{
    Body b;
    loadFrames(b, 512, 512);
    auto *a = b.findChild<Analyzer *>();
    b.findChild<QLineEdit *>("aHWidth_")->setText("0");
    b.findChild<QLineEdit *>("aVWidth_")->setText("0");
    qint64 rss2 = 0, rss10 = 0;
    for (int run = 1; run <= 10; ++run) {
        b.start2DAnalysis();
        // Three rows recorded: the run's maps start empty at every start.
        QTRY_VERIFY_WITH_TIMEOUT(a->dEdgeMap.valueAt(5, 2) != 0.0, 60000);
        b.stop2DAnalysis();
        QVERIFY(!a->contAccess);
        QVERIFY(a->dEdgeMap.valueAt(5, 1) != 0.0);
        if (run == 2)
            rss2 = statusKb(QCoreApplication::applicationPid(), "VmRSS:");
    }
    rss10 = statusKb(QCoreApplication::applicationPid(), "VmRSS:");
    qInfo("resident %lld kB after two runs, %lld kB after ten", rss2, rss10);
    QVERIFY2(rss10 - rss2 < 16000, qPrintable(QString::number(rss10 - rss2)));
}

// The server drops the program a hundred times during a run; each time the
// connection is made again, and the run goes on meanwhile.
void TestLongRun::starsReconnects()
{
    QTemporaryDir dir;
    QVERIFY(QDir::setCurrent(dir.path()));
    QFile k("Tess.key");
    QVERIFY(k.open(QIODevice::WriteOnly) && k.write("alpha\nbeta\n") > 0);
    k.close();
    StarsTestServer server(dir.path());
    QVERIFY(server.listen());
    gConfig = ConfigTable();
    for (const auto &[key, value] : {std::pair{"STARS_IP", QString("127.0.0.1")},
                                     {"STARS_PORT", QString::number(server.port())},
                                     {"NAME_ON_STARS", QString("Tess")}, {"KEY_ON_STARS", QString("Tess.key")}})
        gConfig.add(key, value, value, QString());
    Body b;
    Stars *s = b.stars();
    loadFrames(b, 512, 512);
    auto *a = b.findChild<Analyzer *>();
    int points = 0;
    connect(a, &Analyzer::finished, &b, [&] { ++points; });
    QSignalSpy finished(&b, &Body::finishBatchExec);
    b.findChild<QLineEdit *>("aHWidth_")->setText("0");
    b.findChild<QLineEdit *>("aVWidth_")->setText("0");
    // One point at a time, so that the run is sure to outlast the drops and
    // its points can be counted.
    qputenv("TESSARELLE_SERIAL_RUN", "1");
    b.start2DAnalysis();
    qunsetenv("TESSARELLE_SERIAL_RUN");
    qint64 rss10 = 0;
    for (int i = 1; i <= 100; ++i) {
        QTRY_VERIFY_WITH_TIMEOUT(s->isConnected(), 10000);
        QVERIFY(server.dropAll() == 1);
        QTRY_VERIFY_WITH_TIMEOUT(!s->isConnected(), 10000);
        s->connectToStars();
        if (i == 10)
            rss10 = statusKb(QCoreApplication::applicationPid(), "VmRSS:");
    }
    QTRY_VERIFY(s->isConnected());
    QVERIFY(points > 0 && finished.isEmpty()); // still running, and not stalled
    const int before = points;
    QTRY_VERIFY(points > before);
    b.stop2DAnalysis();
    const qint64 rss100 = statusKb(QCoreApplication::applicationPid(), "VmRSS:");
    qInfo("resident %lld kB after 10 reconnections, %lld kB after 100", rss10, rss100);
    QVERIFY2(rss100 - rss10 < 4000, qPrintable(QString::number(rss100 - rss10)));
    QCOMPARE(server.loggedIn.count(QStringLiteral("Tess")), 101);
}

QTEST_MAIN(TestLongRun)
#include "tst_longrun.moc"
