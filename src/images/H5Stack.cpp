#include "images/H5Stack.h"

#include "images/H5Handle.h"
#include "images/H5StackReader.h"

#include <QDebug>
#include <QFile>

#include <unistd.h>

#include <climits>
#include <vector>

namespace {

// What a dataset is, as far as a stack cares.
struct Shape {
    std::vector<hsize_t> dims;
    H5T_class_t typeClass = H5T_NO_CLASS;
    int pixelType = PixelNone;
};

bool shapeOf(hid_t dataset, Shape &out)
{
    const H5Handle space(H5Dget_space(dataset), H5Sclose);
    const H5Handle type(H5Dget_type(dataset), H5Tclose);
    if (!space || !type)
        return false;
    const int rank = H5Sget_simple_extent_ndims(space.get());
    if (rank < 0)
        return false;
    out.dims.assign(std::size_t(rank), 0);
    if (rank > 0 && H5Sget_simple_extent_dims(space.get(), out.dims.data(), nullptr) < 0)
        return false;
    out.typeClass = H5Tget_class(type.get());
    out.pixelType = H5StackReader::pixelTypeOf(type.get());
    return true;
}

bool isNumber(const Shape &s)
{
    return s.typeClass == H5T_INTEGER || s.typeClass == H5T_FLOAT;
}

QString typeText(const Shape &s)
{
    switch (s.typeClass) {
    case H5T_INTEGER:
        return QStringLiteral("integer");
    case H5T_FLOAT:
        return QStringLiteral("float");
    case H5T_STRING:
        return QStringLiteral("string");
    default:
        return QStringLiteral("class %1").arg(int(s.typeClass));
    }
}

QString dimsText(const Shape &s)
{
    QStringList parts;
    for (hsize_t d : s.dims)
        parts << QString::number(d);
    return parts.join(QLatin1String(" x "));
}

// The first filter of the dataset's pipeline that this library can't run,
// as "name (id)"; empty when every filter is there.
QString missingFilter(hid_t dataset)
{
    const H5Handle plist(H5Dget_create_plist(dataset), H5Pclose);
    const int n = plist ? H5Pget_nfilters(plist.get()) : 0;
    for (int i = 0; i < n; ++i) {
        unsigned flags = 0;
        size_t nValues = 0;
        char name[80] = {};
        const H5Z_filter_t id = H5Pget_filter2(plist.get(), unsigned(i), &flags, &nValues, nullptr, sizeof name,
                                               name, nullptr);
        if (id < 0 || H5Zfilter_avail(id) <= 0)
            return QStringLiteral("%1 (%2)").arg(QString::fromUtf8(name)).arg(id);
    }
    return QString();
}

herr_t collectLink(hid_t, const char *name, const H5L_info_t *info, void *data)
{
    if (info->type == H5L_TYPE_HARD)
        static_cast<QStringList *>(data)->append(QLatin1Char('/') + QString::fromUtf8(name));
    return 0;
}

// Every dataset of the file with its shape, in the library's name order.
QVector<QPair<QString, Shape>> datasetsOf(hid_t file)
{
    QStringList links;
    H5Lvisit(file, H5_INDEX_NAME, H5_ITER_INC, collectLink, &links);
    QVector<QPair<QString, Shape>> out;
    for (const QString &path : links) {
        const H5Handle object(H5Oopen(file, path.toUtf8().constData(), H5P_DEFAULT), H5Oclose);
        Shape s;
        if (object && H5Iget_type(object.get()) == H5I_DATASET && shapeOf(object.get(), s))
            out.append({path, s});
    }
    return out;
}

// The value of a text attribute "units" (or "unit") of an object; empty
// without one.
QString unitsOf(hid_t object)
{
    for (const char *key : {"units", "unit"}) {
        if (H5Aexists(object, key) <= 0)
            continue;
        const H5Handle attr(H5Aopen(object, key, H5P_DEFAULT), H5Aclose);
        const H5Handle type(attr ? H5Aget_type(attr.get()) : -1, H5Tclose);
        if (!type || H5Tget_class(type.get()) != H5T_STRING)
            return QString();
        if (H5Tis_variable_str(type.get()) > 0) {
            const H5Handle mem(H5Tcopy(H5T_C_S1), H5Tclose);
            H5Tset_size(mem.get(), H5T_VARIABLE);
            char *text = nullptr;
            if (H5Aread(attr.get(), mem.get(), &text) < 0 || !text)
                return QString();
            const QString units = QString::fromUtf8(text);
            H5free_memory(text);
            return units.trimmed();
        }
        const size_t size = H5Tget_size(type.get());
        if (size == 0 || size > 256)
            return QString();
        QByteArray text(qsizetype(size), '\0');
        if (H5Aread(attr.get(), type.get(), text.data()) < 0)
            return QString();
        return QString::fromUtf8(text.constData(), qsizetype(qstrnlen(text.constData(), uint(size)))).trimmed();
    }
    return QString();
}

// Reads a one-dimensional dataset of `count` numbers into eV.
bool readEnergies(hid_t file, const QString &path, int count, QVector<double> &out)
{
    const H5Handle dataset(H5Dopen2(file, path.toUtf8().constData(), H5P_DEFAULT), H5Dclose);
    if (!dataset)
        return false;
    QVector<double> values(count);
    if (H5Dread(dataset.get(), H5T_NATIVE_DOUBLE, H5S_ALL, H5S_ALL, H5P_DEFAULT, values.data()) < 0)
        return false;
    // Many beamlines write keV; a frame's energy is always in eV.
    if (unitsOf(dataset.get()).compare(QLatin1String("keV"), Qt::CaseInsensitive) == 0) {
        for (double &e : values)
            e *= 1000.0;
    }
    out = std::move(values);
    return true;
}

// The memory the system can still give, in bytes; -1 when unknown.
qint64 availableMemory()
{
    QFile meminfo(QStringLiteral("/proc/meminfo"));
    if (meminfo.open(QIODevice::ReadOnly | QIODevice::Text)) {
        for (QByteArray line = meminfo.readLine(); !line.isEmpty(); line = meminfo.readLine()) {
            if (line.startsWith("MemAvailable:"))
                return line.mid(13).trimmed().split(' ').value(0).toLongLong() * 1024;
        }
    }
    const long pages = sysconf(_SC_AVPHYS_PAGES);
    const long pageSize = sysconf(_SC_PAGESIZE);
    return pages > 0 && pageSize > 0 ? qint64(pages) * pageSize : -1;
}

} // namespace

bool H5Stack::isH5File(const QString &file)
{
    QFile f(file);
    return !file.isEmpty() && f.open(QIODevice::ReadOnly) && f.read(8) == QByteArray("\x89HDF\r\n\x1a\n", 8);
}

bool H5Stack::find(const QString &file, const QString &imagePath, const QString &energyPath, H5Stack &out)
{
    if (!isH5File(file)) {
        qDebug().noquote() << "Not an HDF5 file" << file;
        return false;
    }
    const auto lock = H5Handle::access();
    const H5Handle h5(H5Fopen(QFile::encodeName(file).constData(), H5F_ACC_RDONLY, H5P_DEFAULT), H5Fclose);
    if (!h5) {
        // Among others a file cut short: the library compares its recorded end.
        qDebug().noquote() << "Can not open HDF5 file" << file;
        return false;
    }

    H5Stack s;
    s.file = file;
    s.imagePath = imagePath;
    QVector<QPair<QString, Shape>> all;
    if (imagePath.isEmpty() || energyPath.isEmpty())
        all = datasetsOf(h5.get());
    if (s.imagePath.isEmpty()) {
        for (int rank : {3, 2}) {
            for (const auto &d : all) {
                if (s.imagePath.isEmpty() && int(d.second.dims.size()) == rank && d.second.pixelType != PixelNone)
                    s.imagePath = d.first;
            }
        }
        if (s.imagePath.isEmpty()) {
            qDebug().noquote() << "No image dataset in HDF5 file" << file;
            return false;
        }
    }

    const H5Handle image(H5Dopen2(h5.get(), s.imagePath.toUtf8().constData(), H5P_DEFAULT), H5Dclose);
    Shape shape;
    if (!image || !shapeOf(image.get(), shape)) {
        qDebug().noquote() << "HDF5 dataset not found" << s.imagePath << file;
        return false;
    }
    const int rank = int(shape.dims.size());
    if (rank != 2 && rank != 3) {
        qDebug().noquote() << "HDF5 dataset is no image stack, rank" << rank << s.imagePath << file;
        return false;
    }
    if (shape.pixelType == PixelNone) {
        qDebug().noquote() << "HDF5 dataset of a type a frame can't hold:" << typeText(shape) << s.imagePath
                           << file;
        return false;
    }
    const QString filter = missingFilter(image.get());
    if (!filter.isEmpty()) {
        qDebug().noquote() << "HDF5 filter not available:" << filter << s.imagePath << file;
        return false;
    }
    const hsize_t frames = rank == 3 ? shape.dims[0] : 1;
    const hsize_t height = shape.dims[std::size_t(rank) - 2];
    const hsize_t width = shape.dims[std::size_t(rank) - 1];
    if (frames == 0 || height == 0 || width == 0) {
        qDebug().noquote() << "HDF5 dataset holds no image:" << dimsText(shape) << s.imagePath << file;
        return false;
    }
    // Each factor is checked before the product, which could wrap.
    const hsize_t maxPixels = hsize_t(kMaxFrameBytes) / hsize_t(pixelBytes(shape.pixelType));
    if (frames > hsize_t(INT_MAX) || height > maxPixels || width > maxPixels || height * width > maxPixels) {
        qDebug().noquote() << "HDF5 dataset too large:" << dimsText(shape) << s.imagePath << file;
        return false;
    }
    s.frames = int(frames);
    s.height = quint32(height);
    s.width = quint32(width);
    s.pixelType = shape.pixelType;
    if (imagePath.isEmpty())
        qDebug().noquote() << "HDF5 image dataset" << s.imagePath << dimsText(shape) << typeText(shape) << file;

    s.energyPath = energyPath;
    if (s.energyPath.isEmpty()) {
        for (const auto &d : all) {
            if (s.energyPath.isEmpty() && d.second.dims.size() == 1 && d.second.dims[0] == frames
                && isNumber(d.second))
                s.energyPath = d.first;
        }
        if (s.energyPath.isEmpty()) {
            qDebug().noquote() << "No energies in HDF5 file, the panel gives them" << file;
            out = std::move(s);
            return true;
        }
        qDebug().noquote() << "HDF5 energy dataset" << s.energyPath << file;
    }
    const H5Handle energies(H5Dopen2(h5.get(), s.energyPath.toUtf8().constData(), H5P_DEFAULT), H5Dclose);
    Shape eShape;
    if (!energies || !shapeOf(energies.get(), eShape)) {
        qDebug().noquote() << "HDF5 dataset not found" << s.energyPath << file;
        return false;
    }
    if (eShape.dims.size() != 1 || eShape.dims[0] != frames || !isNumber(eShape)) {
        qDebug().noquote() << "HDF5 energies do not fit the frames:" << dimsText(eShape) << typeText(eShape)
                           << "for" << frames << "frames" << s.energyPath << file;
        return false;
    }
    if (!readEnergies(h5.get(), s.energyPath, int(frames), s.energies)) {
        qDebug().noquote() << "Error on reading HDF5 energies" << s.energyPath << file;
        return false;
    }
    out = std::move(s);
    return true;
}

QString H5Stack::sliceName(int i) const
{
    return QStringLiteral("%1:%2[%3]").arg(file, imagePath).arg(i);
}

QStringList H5Stack::sliceNames() const
{
    QStringList names;
    names.reserve(frames);
    for (int i = 0; i < frames; ++i)
        names << sliceName(i);
    return names;
}

qint64 H5Stack::memoryBytes(int skip, int cutFirst, int cutLast) const
{
    // The loader's walk: the slice at cutFirst, then every skip-th while
    // below frames - cutLast.
    const qint64 first = std::max(cutFirst, 0);
    const qint64 step = std::max(skip, 1);
    if (first >= frames)
        return 0;
    const qint64 span = qint64(frames) - std::max(cutLast, 0) - first;
    const qint64 count = 1 + std::max<qint64>(0, (span + step - 1) / step - 1);
    // Pixels, the grey image (rows padded to four bytes), and the row
    // pointers with the allocator's own share of each row.
    const qint64 perFrame =
        qint64(height) * (qint64(width) * pixelBytes(pixelType) + (qint64(width) + 3) / 4 * 4 + 32) + 1024;
    return count * perFrame;
}

bool H5Stack::fitsInMemory(int skip, int cutFirst, int cutLast, qint64 freed) const
{
    const qint64 need = memoryBytes(skip, cutFirst, cutLast);
    qint64 have = availableMemory();
    if (have >= 0)
        have += freed;
    if (have < 0 || need <= have)
        return true;
    qDebug().noquote() << QStringLiteral("HDF5 stack too large for memory: %1 MB needed, %2 MB available")
                              .arg(need >> 20)
                              .arg(have >> 20)
                       << file;
    return false;
}
