#include "images/TiffHandle.h"

#include "images/FrameLoad.h"

#include <QDebug>
#include <QFile>

#include <tiffio.h>

#include <cstdarg>
#include <cstdio>

static QString formatTiffMessage(const char *module, const char *fmt, va_list ap)
{
    char text[512];
    std::vsnprintf(text, sizeof text, fmt, ap);
    return QString::fromLatin1(module ? module : "libtiff") + QStringLiteral(": ")
        + QString::fromLocal8Bit(text);
}

// Handlers and limits per open file came with libtiff 4.5; with them two
// loader threads never share a handler.
#if TIFFLIB_VERSION < 20221213
#error "libtiff 4.5 or later is needed"
#endif

static int logTiffError(TIFF *, void *, const char *module, const char *fmt, va_list ap)
{
    qDebug().noquote() << formatTiffMessage(module, fmt, ap);
    return 1; // handled: the global handler is not called
}

static int dropTiffWarning(TIFF *, void *, const char *, const char *, va_list)
{
    return 1;
}

TiffHandle::TiffHandle(const QString &fileName, const char *mode)
{
    TIFFOpenOptions *options = TIFFOpenOptionsAlloc();
    TIFFOpenOptionsSetErrorHandlerExtR(options, logTiffError, nullptr);
    TIFFOpenOptionsSetWarningHandlerExtR(options, dropTiffWarning, nullptr);
    TIFFOpenOptionsSetMaxSingleMemAlloc(options, tmsize_t(kMaxFrameBytes));
    m_tif = TIFFOpenExt(QFile::encodeName(fileName).constData(), mode, options);
    TIFFOpenOptionsFree(options);
}

TiffHandle::~TiffHandle()
{
    if (m_tif)
        TIFFClose(m_tif);
}
