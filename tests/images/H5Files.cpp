#include "H5Files.h"

#include <QFile>

#include <vector>

namespace H5Files {

namespace {
struct Id {
    hid_t id;
    herr_t (*close)(hid_t);
    ~Id()
    {
        if (id >= 0)
            close(id);
    }
};
} // namespace

bool write(const QString &file, const QVector<Dataset> &sets)
{
    H5Eset_auto2(H5E_DEFAULT, nullptr, nullptr);
    const Id f{H5Fcreate(QFile::encodeName(file).constData(), H5F_ACC_TRUNC, H5P_DEFAULT, H5P_DEFAULT), H5Fclose};
    const Id links{H5Pcreate(H5P_LINK_CREATE), H5Pclose};
    if (f.id < 0 || H5Pset_create_intermediate_group(links.id, 1) < 0)
        return false;
    for (const Dataset &d : sets) {
        const Id space{H5Screate_simple(int(d.dims.size()), d.dims.constData(), nullptr), H5Sclose};
        const Id create{H5Pcreate(H5P_DATASET_CREATE), H5Pclose};
        const Id text{H5Tcopy(H5T_C_S1), H5Tclose};
        H5Tset_size(text.id, 8);
        if (!d.chunk.isEmpty()) {
            H5Pset_chunk(create.id, int(d.chunk.size()), d.chunk.constData());
            if (d.gzip > 0)
                H5Pset_deflate(create.id, unsigned(d.gzip));
            if (d.missingFilter)
                H5Pset_filter(create.id, 32004, H5Z_FLAG_OPTIONAL, 0, nullptr);
        }
        const Id set{H5Dcreate2(f.id, d.path.toUtf8().constData(), d.text ? text.id : d.type, space.id, links.id,
                                create.id, H5P_DEFAULT),
                     H5Dclose};
        if (set.id < 0)
            return false;
        if (d.text) {
            // One 8-byte word per element of every dimension, not of the first only.
            std::size_t n = 1;
            for (hsize_t dim : d.dims)
                n *= std::size_t(dim);
            std::vector<char> words(8 * n, 'a');
            if (H5Dwrite(set.id, text.id, H5S_ALL, H5S_ALL, H5P_DEFAULT, words.data()) < 0)
                return false;
        } else if (!d.values.isEmpty()
                   && H5Dwrite(set.id, H5T_NATIVE_DOUBLE, H5S_ALL, H5S_ALL, H5P_DEFAULT, d.values.constData()) < 0) {
            return false;
        }
        if (!d.units.isEmpty()) {
            const Id scalar{H5Screate(H5S_SCALAR), H5Sclose};
            const QByteArray u = d.units.toUtf8();
            H5Tset_size(text.id, std::size_t(u.size()));
            const Id attr{H5Acreate2(set.id, "units", text.id, scalar.id, H5P_DEFAULT, H5P_DEFAULT), H5Aclose};
            if (attr.id < 0 || H5Awrite(attr.id, text.id, u.constData()) < 0)
                return false;
        }
    }
    return true;
}

qint64 chunkOffset(const QString &file, const QString &path, const QVector<hsize_t> &coords, qint64 *size)
{
    H5Eset_auto2(H5E_DEFAULT, nullptr, nullptr);
    const Id f{H5Fopen(QFile::encodeName(file).constData(), H5F_ACC_RDONLY, H5P_DEFAULT), H5Fclose};
    const Id set{f.id < 0 ? -1 : H5Dopen2(f.id, path.toUtf8().constData(), H5P_DEFAULT), H5Dclose};
    unsigned mask = 0;
    haddr_t addr = 0;
    hsize_t bytes = 0;
    if (set.id < 0 || H5Dget_chunk_info_by_coord(set.id, coords.constData(), &mask, &addr, &bytes) < 0)
        return -1;
    *size = qint64(bytes);
    return qint64(addr);
}

} // namespace H5Files
