#pragma once

#include "images/FrameLoad.h"

#include <QMetaType>
#include <QString>
#include <QStringList>
#include <QVector>

// An image stack in an HDF5 file: the dataset whose slices along its first
// axis are the frames (a two-dimensional dataset is one frame), and the
// energies of the frames when the file has them. A plain value: Body finds
// the stack on the main thread, the loader reads its slices on its own.
struct H5Stack {
    QString file;
    QString imagePath;  // the frames' dataset, from the file's root
    QString energyPath; // empty when the energies come from the panel
    int frames = 0;
    quint32 height = 0;
    quint32 width = 0;
    int pixelType = PixelNone; // PixelU16 for 16-bit unsigned, not PixelTiffU16
    QVector<double> energies;  // eV, one a frame, or empty

    bool isValid() const { return pixelType != PixelNone && frames > 0; }

    // True when the file starts with the HDF5 signature.
    static bool isH5File(const QString &file);

    // Looks the stack up. An empty imagePath takes the first dataset of rank
    // 3 (or, failing that, 2) that holds numbers of a kind a frame can hold;
    // an empty energyPath takes the first one-dimensional numeric dataset as
    // long as the frames, if any; the choices are logged. Energies given in
    // keV (a "units" attribute) are turned into eV. Reads the energies but no
    // pixel. False with a log line, and out unchanged, for anything that
    // would not load: a file that is not HDF5 or is cut short, a missing
    // dataset, a rank other than 2 or 3, a type that is no number or that a
    // frame can't hold, a filter the library lacks, energies that are not
    // one a frame, a frame above kMaxFrameBytes.
    static bool find(const QString &file, const QString &imagePath, const QString &energyPath, H5Stack &out);

    // The name a frame of slice i goes by: "file:dataset[i]".
    QString sliceName(int i) const;
    QStringList sliceNames() const;

    // Bytes the frames that a load with these options reads would take in
    // memory: their pixels, and the grey image each keeps for the screen.
    qint64 memoryBytes(int skip, int cutFirst, int cutLast) const;
    // False, with a log line, when memoryBytes is more than the machine has
    // available now plus `freed`, the bytes the load will free first.
    bool fitsInMemory(int skip, int cutFirst, int cutLast, qint64 freed = 0) const;
};

Q_DECLARE_METATYPE(H5Stack)
