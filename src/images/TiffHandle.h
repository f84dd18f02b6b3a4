#pragma once

#include <QString>

typedef struct tiff TIFF;

// An open libtiff file that closes itself. libtiff's errors go to the debug
// stream and its warnings (mostly unknown vendor tags) are dropped, instead
// of reaching stderr; its own single allocations are capped so that a
// garbage header cannot make it reserve gigabytes.
class TiffHandle
{
public:
    TiffHandle(const QString &fileName, const char *mode);
    ~TiffHandle();
    TiffHandle(const TiffHandle &) = delete;
    TiffHandle &operator=(const TiffHandle &) = delete;

    TIFF *get() const { return m_tif; }
    explicit operator bool() const { return m_tif != nullptr; }

private:
    TIFF *m_tif = nullptr;
};
