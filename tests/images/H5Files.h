#pragma once

#include <QString>
#include <QVector>

#include <hdf5.h>

#include <utility>

// Writes HDF5 files for the tests through the library's C interface, so
// that the reader under test meets files as other programs write them.
namespace H5Files {

struct Dataset {
    Dataset() = default;
    Dataset(QString path, hid_t type, QVector<hsize_t> dims, QVector<double> values = {},
            QVector<hsize_t> chunk = {}, int gzip = 0)
        : path(std::move(path)), type(type), dims(std::move(dims)), values(std::move(values)),
          chunk(std::move(chunk)), gzip(gzip)
    {
    }
    // A dataset of strings of this shape.
    static Dataset strings(const QString &path, QVector<hsize_t> dims)
    {
        Dataset d(path, H5T_NATIVE_CHAR, std::move(dims));
        d.text = true;
        return d;
    }

    QString path;                // groups on the way are made
    hid_t type = H5T_STD_U16LE;  // the type in the file; values convert to it
    QVector<hsize_t> dims;
    QVector<double> values;      // row after row; empty writes nothing
    QVector<hsize_t> chunk;      // empty: contiguous
    int gzip = 0;                // deflate level, chunked only
    QString units;               // a "units" text attribute when not empty
    bool text = false;           // a dataset of 8-character strings instead
    bool missingFilter = false;  // names an optional filter (LZ4's id) this library lacks
};

// False when the library refuses any step.
bool write(const QString &file, const QVector<Dataset> &sets);

// Where in the file the chunk at `coords` of a chunked dataset starts, and
// its size in bytes; -1 when unknown.
qint64 chunkOffset(const QString &file, const QString &path, const QVector<hsize_t> &coords, qint64 *size);

} // namespace H5Files
