#include "images/H5Handle.h"

QMutexLocker<QMutex> H5Handle::access()
{
    static QMutex mutex;
    QMutexLocker<QMutex> lock(&mutex);
    H5Eset_auto2(H5E_DEFAULT, nullptr, nullptr);
    return lock;
}
