#include "H5Files.h"
#include "LogCapture.h"

#include "images/LoadTiff.h"
#include "images/TiffWriter.h"

#include <QScopeGuard>
#include <QSemaphore>
#include <QThread>
#include <QtTest>

#include <climits>
#include <memory>
#include <optional>
#include <vector>

// The stack loader on a thread of its own, driven by queued signals as the
// main window drives it. Every frame is recorded on the test's thread as
// "fNo:file name" and deleted there; a finish is recorded as "end<id>".
//
// Test files: the i-th name of a list is a 16-bit TIFF of (2 + i) x
// (1 + i % 3) pixels, all of value 100 + i, so that each delivered frame shows
// which file it came from. A name that starts with '!' is a broken TIFF, one
// that starts with '?' is never written.

namespace {

struct JobSpec {
    QString prefix; // file names prefix0.tif, prefix1.tif, ...
    int nFiles = 0;
    int cutFirst = 0;
    int id = 0;
    bool late = false; // asked for while the first job is held in a frame
};

// Holds the loader inside the reading of one file until the test lets it go.
class GatedLoadTiff : public LoadTiff
{
public:
    QString gateFile;
    QSemaphore reached;
    QSemaphore go;

protected:
    TiffData *readFrame(const QString &file, ErrPoints *errPs) override
    {
        TiffData *frame = LoadTiff::readFrame(file, errPs);
        if (file == gateFile) {
            reached.release();
            go.acquire();
        }
        return frame;
    }
};

QStringList plainNames(const QString &prefix, int n)
{
    QStringList names;
    for (int i = 0; i < n; ++i)
        names << QStringLiteral("%1%2.tif").arg(prefix).arg(i);
    return names;
}

} // namespace

Q_DECLARE_METATYPE(JobSpec)

class TestLoadTiff : public QObject
{
    Q_OBJECT
signals:
    void requestLoad(QStringList files, bool ignoreLive, int skip, int cutFirst, int cutLast, ErrPoints *errPs,
                     EX_CMD_ID id);
    void requestStack(H5Stack stack, int skip, int cutFirst, int cutLast, ErrPoints *errPs, EX_CMD_ID id);

private slots:
    void initTestCase();
    void cleanup();
    void sequence_data();
    void sequence();
    void jobs_data();
    void jobs();
    void longList();

private:
    void startLoader(LoadTiff *l);
    QStringList makeFiles(const QStringList &names, const QString &sub = QString());
    void drain();

    QTemporaryDir m_dir;
    int m_dirNo = 0;
    ErrPoints m_mask;
    QThread *m_thread = nullptr;
    LoadTiff *m_loader = nullptr;
    QStringList m_events;
    QStringList m_badFrames; // what was wrong with a delivered frame
};

void TestLoadTiff::initTestCase()
{
    QVERIFY(m_dir.isValid());
    qRegisterMetaType<TiffData *>("TiffData*");
    qRegisterMetaType<ErrPoints *>("ErrPoints*");
    qRegisterMetaType<EX_CMD_ID>("EX_CMD_ID");
    qRegisterMetaType<H5Stack>("H5Stack");
}

void TestLoadTiff::startLoader(LoadTiff *l)
{
    m_events.clear();
    m_badFrames.clear();
    m_thread = new QThread;
    m_thread->setObjectName(QStringLiteral("test loader"));
    m_loader = l;
    m_loader->moveToThread(m_thread);
    connect(this, &TestLoadTiff::requestLoad, m_loader, &LoadTiff::loadTiffs);
    connect(this, &TestLoadTiff::requestStack, m_loader, &LoadTiff::loadStack);
    connect(m_loader, &LoadTiff::loaded, this, [this](TiffData *f, int fNo, int total) {
        std::unique_ptr<TiffData> frame(f);
        const QString name = QFileInfo(frame->fileName).fileName();
        m_events << QStringLiteral("%1:%2").arg(fNo).arg(name);
        // The file's content must match its place in the list (see above);
        // slice i of a stack is 3 x 2 of 100 + i at 9000 + i eV.
        const bool slice = name.endsWith(']');
        const int i = name.startsWith(QLatin1Char('z')) ? 0 : fNo;
        if (frame->width != quint32(slice ? 3 : 2 + i) || frame->height != quint32(slice ? 2 : 1 + i % 3)
            || frame->pixel(frame->width - 1, frame->height - 1) != 100.0 + i
            || (slice && (!frame->energyFromFile || frame->energy != 9000.0 + i)))
            m_badFrames << name + QStringLiteral(" has the wrong pixels");
        if (frame->errPoints != &m_mask)
            m_badFrames << name + QStringLiteral(" lacks the job's mask");
        if (total <= fNo)
            m_badFrames << name + QStringLiteral(" total %1 <= fNo %2").arg(total).arg(fNo);
    });
    connect(m_loader, &LoadTiff::finishLoadFiles, this,
            [this](EX_CMD_ID id) { m_events << QStringLiteral("end%1").arg(int(id)); });
    m_thread->start();
}

void TestLoadTiff::cleanup()
{
    if (!m_thread)
        return;
    m_thread->quit();
    QVERIFY(m_thread->wait(10000));
    delete m_loader;
    delete m_thread;
    m_loader = nullptr;
    m_thread = nullptr;
    // Frames still on their way to a receiver that is gone would leak; the
    // sanitizer build reports it.
    QCoreApplication::processEvents();
}

// Writes the files of a list in a fresh folder and gives their paths.
QStringList TestLoadTiff::makeFiles(const QStringList &names, const QString &sub)
{
    const QString dir = m_dir.filePath(sub.isEmpty() ? QString::number(++m_dirNo) : sub);
    QStringList paths;
    for (int i = 0; i < names.size(); ++i) {
        QString name = names.at(i);
        const QChar mark = name.isEmpty() ? QChar() : name.at(0);
        if (mark == QLatin1Char('!') || mark == QLatin1Char('?'))
            name.remove(0, 1);
        const QString path = dir + QLatin1Char('/') + name;
        QDir().mkpath(QFileInfo(path).absolutePath());
        paths << path;
        if (mark == QLatin1Char('?'))
            continue;
        if (mark == QLatin1Char('!')) {
            QFile f(path);
            if (f.open(QIODevice::WriteOnly))
                f.write(QByteArray("II*\0\x40\0\0\0", 8) + QByteArray(24, '\x5a'));
            continue;
        }
        const quint32 w = 2 + i;
        const quint32 h = 1 + i % 3;
        const std::vector<quint16> px(std::size_t(w) * h, quint16(100 + i));
        if (!writeTiff16(path, w, h, px.data()))
            qWarning("cannot write %s", qPrintable(path));
    }
    return paths;
}

// Lets every event the loader has queued run, then delivers what it sent
// here. Two rounds: the first lets a queued job be taken up, the second
// lets a step that the job scheduled run.
void TestLoadTiff::drain()
{
    for (int round = 0; round < 2; ++round)
        QMetaObject::invokeMethod(m_loader, [] {}, Qt::BlockingQueuedConnection);
    QCoreApplication::processEvents();
}

void TestLoadTiff::sequence_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QVector<int>>("options"); // ignoreLive, skip, cutFirst, cutLast
    QTest::addColumn<QList<int>>("fNos");      // the frames delivered
    QTest::addColumn<bool>("finish");

    const auto row = [](const char *name, const QStringList &names, QVector<int> options, QList<int> fNos,
                        bool finish = true) { QTest::newRow(name) << names << options << fNos << finish; };
    const QStringList ten = plainNames("f", 10);
    const QStringList four = plainNames("f", 4);
    row("skip 3 of 10", ten, {0, 3, 0, 0}, {0, 3, 6, 9});
    // Indices below 10 - 2 = 8; with skip 2 from 3: 3, 5, 7.
    row("cutLast 2 of 10", ten, {0, 1, 0, 2}, {0, 1, 2, 3, 4, 5, 6, 7});
    row("cuts with skip", ten, {0, 2, 3, 2}, {3, 5, 7});
    row("cutFirst at the count", four, {0, 1, 4, 0}, {});
    row("cutFirst beyond the count: no finish", four, {0, 1, 5, 0}, {}, false);
    // The file at cutFirst is read before the end test; 3 < 4 - 3 fails.
    row("cuts past the count", four, {0, 1, 2, 3}, {2});
    row("cutLast equal to the count", four, {0, 1, 0, 4}, {0});
    row("skip beyond the list", plainNames("f", 5), {0, 10, 0, 0}, {0});
    row("skip 0 read as 1", plainNames("f", 3), {0, 0, 0, 0}, {0, 1, 2});
    row("negative cuts read as 0", plainNames("f", 3), {0, 1, -2, -5}, {0, 1, 2});
    row("negative skip read as 1", plainNames("f", 3), {0, -4, 0, 0}, {0, 1, 2});
    // The index must not wrap: 1 + INT_MAX is past the end, not negative.
    row("skip INT_MAX", plainNames("f", 3), {0, INT_MAX, 0, 0}, {0});
    row("skip INT_MAX after a cut", plainNames("f", 3), {0, INT_MAX, 1, 0}, {1});
    row("skip INT_MAX, both cuts", plainNames("f", 4), {0, INT_MAX, 2, 1}, {2});
    row("cutLast INT_MAX", plainNames("f", 3), {0, 2, 0, INT_MAX}, {0});
    row("cutFirst INT_MAX: no finish", plainNames("f", 3), {0, 1, INT_MAX, 0}, {}, false);

    // "Live" anywhere in the path, case-sensitive.
    const QStringList live{"a0.tif", "b_Live.tif", "c2.tif", "Live/d3.tif", "e4_live.tif", "fLive5.tif"};
    row("Live passed over", live, {1, 1, 0, 0}, {0, 2, 4});
    row("Live read when not ignored", live, {0, 1, 0, 0}, {0, 1, 2, 3, 4, 5});
    row("only Live files", {"x_Live.tif", "yLive.tif"}, {1, 1, 0, 0}, {});
    row("skip onto Live files only", live, {1, 3, 0, 0}, {0});

    // '!': a broken TIFF; '?': no file at all.
    row("unreadable in the middle", {"a0.tif", "!b1.tif", "c2.tif", "?d3.tif", "e4.tif"}, {0, 1, 0, 0}, {0, 2, 4});
    row("unreadable last", {"a0.tif", "!b1.tif"}, {0, 1, 0, 0}, {0});
    row("nothing readable", {"!a0.tif", "?b1.tif"}, {0, 1, 0, 0}, {});
    row("empty list", {}, {0, 1, 0, 0}, {});

    // Names "d[i]": the slices of one HDF5 stack (a single one is a 2-D
    // dataset), which walk as files do; with '?' the file goes before the load.
    const auto slices = [](int n, const char *mark = "") {
        QStringList names;
        for (int i = 0; i < n; ++i)
            names << QStringLiteral("%1d[%2]").arg(i ? "" : mark).arg(i);
        return names;
    };
    row("slices, skip 3 of 10", slices(10), {0, 3, 0, 0}, {0, 3, 6, 9});
    row("slices, cuts with skip", slices(10), {0, 2, 3, 2}, {3, 5, 7});
    row("slices, cutFirst beyond: no finish", slices(4), {0, 1, 5, 0}, {}, false);
    row("one slice", slices(1), {0, 1, 0, 0}, {0});
    row("slices of a file gone", slices(5, "?"), {0, 1, 0, 0}, {});
}

void TestLoadTiff::sequence()
{
    QFETCH(QStringList, names);
    QFETCH(QVector<int>, options);
    QFETCH(QList<int>, fNos);
    QFETCH(bool, finish);

    startLoader(new LoadTiff);
    const bool isStack = names.value(0).endsWith(']');
    std::optional<LogCapture> log; // only the loader's thread logs meanwhile
    if (isStack) {
        log.emplace();
        const int n = int(names.size());
        const QString file = m_dir.filePath(QStringLiteral("s%1.h5").arg(++m_dirNo));
        QVector<double> px, energies;
        for (int i = 0; i < n; ++i)
            px << QVector<double>(6, 100 + i), energies << 9000 + i;
        const QVector<hsize_t> dims = n == 1 ? QVector<hsize_t>{2, 3} : QVector<hsize_t>{hsize_t(n), 2, 3};
        H5Stack stack;
        QVERIFY(H5Files::write(file, {H5Files::Dataset("/d", H5T_STD_U16LE, dims, px),
                                      H5Files::Dataset("/e", H5T_IEEE_F64LE, {hsize_t(n)}, energies)}));
        QVERIFY(H5Stack::find(file, "/d", "/e", stack));
        QVERIFY(!names[0].startsWith('?') || QFile::remove(file));
        emit requestStack(stack, options[1], options[2], options[3], &m_mask, LOAD_I0_FILES);
    } else {
        emit requestLoad(makeFiles(names), options[0], options[1], options[2], options[3], &m_mask, LOAD_I0_FILES);
    }
    if (finish)
        QTRY_VERIFY_WITH_TIMEOUT(m_events.contains("end5"), 10000);
    drain();
    QStringList expected;
    for (int n : fNos)
        expected << QStringLiteral("%1:%2").arg(n).arg(QFileInfo(names.at(n)).fileName());
    if (finish)
        expected << "end5";
    QCOMPARE(m_events, expected);
    QCOMPARE(m_badFrames, QStringList());
    QCOMPARE(m_loader->isBusy(), false);
    // A stack file that can't be opened says so once, not once a slice.
    if (isStack)
        QCOMPARE(log->lines().filter("Can not open HDF5 stack").size(), names[0].startsWith('?') ? 1 : 0);
}

void TestLoadTiff::jobs_data()
{
    QTest::addColumn<QList<JobSpec>>("jobs");
    QTest::addColumn<bool>("waitEach");
    QTest::addColumn<int>("stopAt"); // frame of the first job in progress at stop(), -1 for none
    QTest::addColumn<QStringList>("expected");

    // Queued together: the jobs run in order and only the queue's end is
    // reported, with the id of the job that ended last.
    QTest::newRow("three jobs, one finish")
        << QList<JobSpec>{{"a", 2, 0, 4}, {"b", 1, 0, 5}, {"c", 2, 1, 6}} << false << -1
        << QStringList{"0:a0.tif", "1:a1.tif", "0:b0.tif", "1:c1.tif", "end6"};
    QTest::newRow("dropped last job") << QList<JobSpec>{{"a", 2, 0, 4}, {"b", 1, 3, 5}} << false << -1
                                      << QStringList{"0:a0.tif", "1:a1.tif", "end4"};
    QTest::newRow("empty job in the middle") << QList<JobSpec>{{"a", 1, 0, 4}, {"e", 0, 0, 5}, {"c", 1, 0, 6}}
                                             << false << -1 << QStringList{"0:a0.tif", "0:c0.tif", "end6"};
    QTest::newRow("nothing to read at the end") << QList<JobSpec>{{"a", 1, 0, 4}, {"b", 2, 2, 5}} << false << -1
                                                << QStringList{"0:a0.tif", "end5"};
    QTest::newRow("one after another") << QList<JobSpec>{{"a", 2, 0, 4}, {"b", 1, 0, 5}} << true << -1
                                       << QStringList{"0:a0.tif", "1:a1.tif", "end4", "0:b0.tif", "end5"};

    // stop() from this thread while the loader is inside a frame: the frame is
    // still delivered, nothing else of the stopped jobs follows, not even
    // their finish. A job asked for after the stop ("z", id 1) runs normally.
    const JobSpec f6{"f", 6, 0, 3};
    QTest::newRow("stop at the first frame") << QList<JobSpec>{f6} << false << 0 << QStringList{"0:f0.tif"};
    QTest::newRow("stop mid-list") << QList<JobSpec>{f6} << false << 3
                                   << QStringList{"0:f0.tif", "1:f1.tif", "2:f2.tif", "3:f3.tif"};
    QTest::newRow("stop at the last frame") << QList<JobSpec>{{"f", 3, 0, 3}} << false << 2
                                            << QStringList{"0:f0.tif", "1:f1.tif", "2:f2.tif"};
    QTest::newRow("stop drops queued jobs too") << QList<JobSpec>{f6, {"q", 2, 0, 5}, {"q", 2, 0, 5}} << false << 2
                                                << QStringList{"0:f0.tif", "1:f1.tif", "2:f2.tif"};
    // A request still in the event queue is no job yet when stop() comes: it
    // runs. Callers stop first and ask for the new load after.
    QTest::newRow("stop: request on its way runs") << QList<JobSpec>{f6, {"r", 2, 0, 5, true}} << false << 1
                                                   << QStringList{"0:f0.tif", "1:f1.tif", "0:r0.tif", "1:r1.tif"};
}

void TestLoadTiff::jobs()
{
    QFETCH(QList<JobSpec>, jobs);
    QFETCH(bool, waitEach);
    QFETCH(int, stopAt);
    QFETCH(QStringList, expected);

    auto *gated = new GatedLoadTiff;
    startLoader(gated);
    QList<QStringList> paths;
    for (const JobSpec &j : jobs)
        paths << makeFiles(plainNames(j.prefix, j.nFiles), j.prefix + QString::number(++m_dirNo));
    if (stopAt >= 0)
        gated->gateFile = paths[0].at(stopAt);
    auto openGate = qScopeGuard([gated] { gated->go.release(); });
    // Hold the loader until every job is queued, so they meet in its queue.
    QSemaphore hold;
    auto releaseHold = qScopeGuard([&hold] { hold.release(); });
    if (!waitEach)
        QMetaObject::invokeMethod(m_loader, [&hold] { hold.acquire(); }, Qt::QueuedConnection);
    const auto request = [&](int k) {
        emit requestLoad(paths[k], false, 1, jobs[k].cutFirst, 0, &m_mask, EX_CMD_ID(jobs[k].id));
    };
    for (int k = 0; k < jobs.size(); ++k) {
        if (jobs[k].late)
            continue;
        request(k);
        if (waitEach)
            QTRY_VERIFY_WITH_TIMEOUT(m_events.contains(QStringLiteral("end%1").arg(jobs[k].id)), 10000);
    }
    releaseHold.dismiss();
    hold.release();
    if (stopAt >= 0) {
        QVERIFY(gated->reached.tryAcquire(1, 10000));
        for (int k = 0; k < jobs.size(); ++k)
            if (jobs[k].late)
                request(k);
        QVERIFY(m_loader->isBusy());
        m_loader->stop();
        QVERIFY(!m_loader->isBusy());
        emit requestLoad(makeFiles({"z0.tif"}), false, 1, 0, 0, &m_mask, CLEAR_I0_FILES);
        openGate.dismiss();
        gated->go.release();
        expected << QStringLiteral("0:z0.tif") << QStringLiteral("end1");
    }
    QTRY_VERIFY_WITH_TIMEOUT(m_events.size() >= expected.size(), 10000);
    drain();
    QCOMPARE(m_events, expected);
    QCOMPARE(m_badFrames, QStringList());
}

// Thousands of files: one queued step each, so the loader's stack stays flat
// (a chain of direct calls overflows it), and every frame arrives in order.
void TestLoadTiff::longList()
{
    startLoader(new LoadTiff);
    const QString file = makeFiles({"z0.tif"}).first();
    const int n = 30000;
    const QStringList files(n, file);
    int count = 0;
    int lastFNo = -1;
    bool inOrder = true;
    const QMetaObject::Connection c = connect(m_loader, &LoadTiff::loaded, this, [&](TiffData *, int fNo, int) {
        inOrder = inOrder && fNo == lastFNo + 1;
        lastFNo = fNo;
        ++count;
    });
    const auto disconnectAtEnd = qScopeGuard([c] { QObject::disconnect(c); });
    emit requestLoad(files, false, 1, 0, 0, &m_mask, LOAD_I1_FILES);
    QTRY_VERIFY_WITH_TIMEOUT(m_events.contains("end4"), 120000);
    QCOMPARE(count, n);
    QCOMPARE(lastFNo, n - 1);
    QVERIFY(inOrder);
    QCOMPARE(m_badFrames, QStringList());
}

QTEST_GUILESS_MAIN(TestLoadTiff)
#include "tst_loadtiff.moc"
