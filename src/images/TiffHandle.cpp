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

#if TIFFLIB_VERSION >= 20221213 // 4.5.0: handlers per open file

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

#else // older libtiff: process-wide handlers, installed once

static void logTiffError(const char *module, const char *fmt, va_list ap)
{
    qDebug().noquote() << formatTiffMessage(module, fmt, ap);
}

static bool installTiffHandlers()
{
    TIFFSetErrorHandler(logTiffError);
    TIFFSetWarningHandler(nullptr);
    return true;
}

TiffHandle::TiffHandle(const QString &fileName, const char *mode)
{
    static const bool installed = installTiffHandlers();
    Q_UNUSED(installed);
    m_tif = TIFFOpen(QFile::encodeName(fileName).constData(), mode);
}

#endif

TiffHandle::~TiffHandle()
{
    if (m_tif)
        TIFFClose(m_tif);
}
