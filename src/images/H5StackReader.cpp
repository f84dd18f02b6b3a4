#include "images/H5StackReader.h"

#include "images/FrameLoad.h"

#include <QDebug>
#include <QFile>

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

namespace {

// The library's type for reading values of a pixel type in this machine's
// order; the library converts from the file's order while it reads.
hid_t memoryType(int pixelType)
{
    switch (pixelType) {
    case PixelU8:
        return H5T_NATIVE_UINT8;
    case PixelI8:
        return H5T_NATIVE_INT8;
    case PixelU16:
        return H5T_NATIVE_UINT16;
    case PixelI16:
        return H5T_NATIVE_INT16;
    case PixelU32:
        return H5T_NATIVE_UINT32;
    case PixelI32:
        return H5T_NATIVE_INT32;
    case PixelF32:
        return H5T_NATIVE_FLOAT;
    case PixelF64:
        return H5T_NATIVE_DOUBLE;
    default:
        return -1;
    }
}

// The chunk cache for reading slice after slice: room for every chunk that
// one slice touches, up to a limit; beyond it reading still works, only
// slower.
void setChunkCache(hid_t access, hid_t dataset, const H5Stack &s)
{
    const H5Handle create(H5Dget_create_plist(dataset), H5Pclose);
    if (!create || H5Pget_layout(create.get()) != H5D_CHUNKED)
        return;
    hsize_t chunk[3] = {1, 1, 1};
    const int rank = H5Pget_chunk(create.get(), 3, chunk);
    if (rank < 2)
        return;
    const hsize_t ch = chunk[rank - 2];
    const hsize_t cw = chunk[rank - 1];
    const hsize_t chunks = ((s.height + ch - 1) / ch) * ((s.width + cw - 1) / cw);
    const hsize_t chunkBytes = (rank == 3 ? chunk[0] : 1) * ch * cw * hsize_t(pixelBytes(s.pixelType));
    constexpr hsize_t kMaxCache = hsize_t(256) << 20;
    const hsize_t bytes = std::min(kMaxCache, chunks * chunkBytes);
    // The chunks of one layer have consecutive indices: as many slots as
    // chunks keep them from pushing each other out.
    H5Pset_chunk_cache(access, std::max<size_t>(521, size_t(2 * chunks + 1)), size_t(bytes), 0.75);
}

} // namespace

H5StackReader::~H5StackReader()
{
    close();
}

void H5StackReader::close()
{
    if (!file)
        return;
    const auto lock = H5Handle::access();
    memSpace.reset();
    fileSpace.reset();
    dataset.reset();
    file.reset();
}

int H5StackReader::pixelTypeOf(hid_t type)
{
    const H5T_class_t typeClass = H5Tget_class(type);
    const size_t size = H5Tget_size(type);
    if (typeClass == H5T_FLOAT)
        return size == 4 ? PixelF32 : size == 8 ? PixelF64 : PixelNone;
    if (typeClass != H5T_INTEGER)
        return PixelNone;
    const bool isSigned = H5Tget_sign(type) == H5T_SGN_2;
    switch (size) {
    case 1:
        return isSigned ? PixelI8 : PixelU8;
    case 2:
        return isSigned ? PixelI16 : PixelU16;
    case 4:
        return isSigned ? PixelI32 : PixelU32;
    default:
        return PixelNone;
    }
}

bool H5StackReader::open(const H5Stack &stack)
{
    if (failed)
        return false;
    close();
    stack_ = stack;
    const auto lock = H5Handle::access();
    file = H5Handle(H5Fopen(QFile::encodeName(stack.file).constData(), H5F_ACC_RDONLY, H5P_DEFAULT), H5Fclose);
    const H5Handle access(H5Pcreate(H5P_DATASET_ACCESS), H5Pclose);
    if (file && access) {
        // The layout is read from a first opening, which must be closed
        // again: while it is open, a second opening shares its chunk cache.
        H5Handle layout(H5Dopen2(file.get(), stack.imagePath.toUtf8().constData(), H5P_DEFAULT), H5Dclose);
        if (layout)
            setChunkCache(access.get(), layout.get(), stack);
        layout.reset();
        dataset = H5Handle(H5Dopen2(file.get(), stack.imagePath.toUtf8().constData(), access.get()), H5Dclose);
    }
    if (dataset) {
        fileSpace = H5Handle(H5Dget_space(dataset.get()), H5Sclose);
        const hsize_t frame[2] = {stack.height, stack.width};
        memSpace = H5Handle(H5Screate_simple(2, frame, nullptr), H5Sclose);
    }
    // The file must still hold the stack that was found in it.
    const H5Handle type(dataset ? H5Dget_type(dataset.get()) : -1, H5Tclose);
    const int rank = fileSpace ? H5Sget_simple_extent_ndims(fileSpace.get()) : -1;
    hsize_t dims[3] = {};
    const bool same = type && memSpace && (rank == 2 || rank == 3)
                   && H5Sget_simple_extent_dims(fileSpace.get(), dims, nullptr) == rank
                   && pixelTypeOf(type.get()) == stack.pixelType && dims[rank - 2] == stack.height
                   && dims[rank - 1] == stack.width && (rank == 2 ? 1 : dims[0]) == hsize_t(stack.frames);
    if (!same) {
        qDebug().noquote() << "Can not open HDF5 stack" << stack.imagePath << stack.file;
        memSpace.reset();
        fileSpace.reset();
        dataset.reset();
        file.reset();
        failed = true;
        return false;
    }
    return true;
}

template <typename T>
bool H5StackReader::copyRows(FrameLoad &load) const
{
    const std::size_t rowBytes = std::size_t(stack_.width) * sizeof(T);
    T lo = std::numeric_limits<T>::max();
    T hi = std::numeric_limits<T>::lowest();
    for (quint32 y = 0; y < stack_.height; ++y) {
        T *row = static_cast<T *>(load.appendRow(rowBytes));
        if (!row)
            return false;
        const T *src = reinterpret_cast<const T *>(buffer.data()) + std::size_t(y) * stack_.width;
        std::memcpy(row, src, rowBytes);
        for (quint32 x = 0; x < stack_.width; ++x) {
            // A NaN is in neither extreme, as std::min and max leave it.
            lo = std::min(lo, row[x]);
            hi = std::max(hi, row[x]);
        }
    }
    load.min = double(lo);
    load.max = double(hi);
    return true;
}

bool H5StackReader::readFrame(int i, FrameLoad &load)
{
    if (!isOpen() || i < 0 || i >= stack_.frames)
        return false;
    const std::size_t bytes = std::size_t(stack_.height) * stack_.width * std::size_t(pixelBytes(stack_.pixelType));
    bool read = false;
    {
        const auto lock = H5Handle::access();
        try {
            buffer.resize(bytes);
        } catch (const std::bad_alloc &) {
            buffer = std::vector<unsigned char>();
        }
        if (buffer.size() == bytes) {
            const int rank = H5Sget_simple_extent_ndims(fileSpace.get());
            const hsize_t start[3] = {hsize_t(i), 0, 0};
            const hsize_t count[3] = {1, stack_.height, stack_.width};
            // A two-dimensional dataset is its one frame, all of it.
            const hsize_t *from = rank == 3 ? start : start + 1;
            const hsize_t *size = rank == 3 ? count : count + 1;
            read = H5Sselect_hyperslab(fileSpace.get(), H5S_SELECT_SET, from, nullptr, size, nullptr) >= 0
                && H5Dread(dataset.get(), memoryType(stack_.pixelType), memSpace.get(), fileSpace.get(),
                           H5P_DEFAULT, buffer.data())
                       >= 0;
        }
    }
    load.begin(stack_.pixelType, stack_.height);
    const bool ok = read && withPixelType(stack_.pixelType, false, [&](auto tag) {
        return copyRows<typename decltype(tag)::type>(load);
    });
    if (!ok) {
        qDebug().noquote() << "Error on reading HDF5 frame" << i << stack_.imagePath << stack_.file;
        return false;
    }
    load.width = stack_.width;
    load.height = stack_.height;
    load.xOffset = 0;
    load.yOffset = 0;
    load.scanlineBytes = 0;
    return true;
}
