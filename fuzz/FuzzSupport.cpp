#include "FuzzSupport.h"

#include "images/FrameLoad.h"
#include "images/TiffData.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

void quiet(QtMsgType, const QMessageLogContext &, const QString &)
{
}

QTemporaryDir *workDir()
{
    static QTemporaryDir *dir = [] {
        const QString base = QDir(QStringLiteral("/dev/shm")).exists() ? QStringLiteral("/dev/shm")
                                                                        : QDir::tempPath();
        return new QTemporaryDir(base + QStringLiteral("/tessarelle-fuzz-XXXXXX"));
    }();
    return dir;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    static QCoreApplication *app = nullptr;
    if (!app)
        app = new QCoreApplication(*argc, *argv);
    if (!qEnvironmentVariableIsSet("FUZZ_VERBOSE"))
        qInstallMessageHandler(quiet);
    std::atexit([] { delete workDir(); });
    return 0;
}

QString fuzzDir()
{
    return workDir()->path();
}

QString fuzzFile(const uint8_t *data, size_t size, const QString &name)
{
    const QString path = workDir()->filePath(name);
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate)
        || f.write(reinterpret_cast<const char *>(data), qint64(size)) != qint64(size)) {
        std::fprintf(stderr, "cannot write %s\n", qPrintable(path));
        std::abort();
    }
    return path;
}

void touchRows(const QVector<void *> &rows, quint32 width, quint32 height, int pixelType)
{
    if (quint32(rows.size()) != height) {
        std::fprintf(stderr, "%lld rows for a height of %u\n", qlonglong(rows.size()), height);
        std::abort();
    }
    const size_t rowBytes = size_t(width) * size_t(pixelBytes(pixelType));
    volatile unsigned char sink = 0;
    for (void *row : rows) {
        const unsigned char *p = static_cast<const unsigned char *>(row);
        unsigned char acc = 0;
        for (size_t i = 0; i < rowBytes; ++i)
            acc ^= p[i];
        sink ^= acc;
    }
    (void)sink;
}

void fuzzFrame(const uint8_t *data, size_t size)
{
    static ErrPoints mask = [] {
        ErrPoints m;
        m.inUse = true;
        m.points = {QPoint(0, 0), QPoint(1, 0), QPoint(2, 3), QPoint(-1, 5), QPoint(100000, 2)};
        return m;
    }();
    const QString path = fuzzFile(data, size);
    TiffData frame;
    if (!frame.read(path, &mask))
        return;
    touchRows(frame.rows, frame.width, frame.height, frame.pixelType);
    frame.render();
    volatile double s = frame.boxSum(int(frame.width) - 1, 0, 2, 2);
    (void)s;
}

int fuzzFrameStartingWith(const uint8_t *data, size_t size, std::initializer_list<const char *> magics)
{
    for (const char *magic : magics) {
        const size_t n = std::strlen(magic);
        if (size >= n && std::memcmp(data, magic, n) == 0) {
            fuzzFrame(data, size);
            return 0;
        }
    }
    return -1;
}
