#pragma once

#include <QString>
#include <QVector>

// Energies of a scan as recorded by the acquisition program in a reference
// file, one row a frame, converted from monochromator angle to eV.
//
// Two layouts are read. A file whose first line starts with the word "9809"
// is a scan file: its header ends at the line beginning with "Offset", and
// the angle is in column 1. Any other file is a plain table: everything
// after the first line is data, and the angle is in column 0. Rows whose
// first word begins with "#", or that lack the angle column, are passed
// over; an angle that does not parse counts as 0 (and gives infinity).
class RefEnergies
{
public:
    // Energy used for every frame while no energies are known; frame fNo
    // then gets StandBy + fNo.
    static constexpr double StandBy = 8000;
    // Reference files are small tables; anything larger is not one.
    static constexpr qint64 MaxFileSize = 64 * 1024 * 1024;

    QVector<double> energies;

    // Reads the file with crystal spacing d. Returns false, logs "Can't open
    // ref file" and leaves the energies unchanged when the file can't be
    // opened (or is no regular file, or too large to be a reference file).
    bool read(const QString &path, double d);

    // The energy for frame fNo of a stack of totalFiles frames. With
    // fromEnd the last frame takes the last row, so that rows recorded
    // before the first kept frame are skipped. Indices before the first
    // row take the first row, beyond the last take the last.
    double energy(int fNo, int totalFiles, bool fromEnd) const;

    // The row that frame fNo corresponds to, before it is clamped.
    static qsizetype rowOf(int fNo, int totalFiles, qsizetype rows, bool fromEnd)
    {
        return fromEnd ? fNo + rows - totalFiles : fNo;
    }
};
