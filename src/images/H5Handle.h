#pragma once

#include <QMutex>
#include <QMutexLocker>

#include <hdf5.h>

#include <utility>

// One identifier of the HDF5 library (file, dataset, dataspace, type,
// property list, attribute), closed by the function that matches its kind
// when the handle goes. An identifier below 0 is the library's failure value,
// and the handle is then false.
class H5Handle
{
public:
    using Close = herr_t (*)(hid_t);

    H5Handle() = default;
    H5Handle(hid_t id, Close close) : id_(id), close_(close) {}
    ~H5Handle() { reset(); }
    H5Handle(H5Handle &&o) noexcept : id_(std::exchange(o.id_, -1)), close_(o.close_) {}
    H5Handle &operator=(H5Handle &&o) noexcept
    {
        if (this != &o) {
            reset();
            id_ = std::exchange(o.id_, -1);
            close_ = o.close_;
        }
        return *this;
    }
    H5Handle(const H5Handle &) = delete;
    H5Handle &operator=(const H5Handle &) = delete;

    hid_t get() const { return id_; }
    explicit operator bool() const { return id_ >= 0; }
    void reset()
    {
        if (id_ >= 0 && close_)
            close_(id_);
        id_ = -1;
    }

    // Every use of the library holds this lock: the two loaders and the main
    // thread may all reach it, and a build without its own thread safety
    // must see one caller at a time. The library's error stack printing is
    // turned off for the calling thread as well (it is kept per thread):
    // failures are reported by our own log lines.
    [[nodiscard]] static QMutexLocker<QMutex> access();

private:
    hid_t id_ = -1;
    Close close_ = nullptr;
};
