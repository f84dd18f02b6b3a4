#include "images/_FileDialog.h"

#include "app/Globals.h"

_FileDialog::_FileDialog(QWidget *parent, bool single)
    : QFileDialog(parent)
{
    setFileMode(single ? QFileDialog::ExistingFile : QFileDialog::ExistingFiles);
    setAcceptMode(QFileDialog::AcceptOpen);
    setNameFilters({ QStringLiteral("MQRS Files, IMG Files, Tiff Files (*.dat *.img *.tif *.tiff)"),
                     QStringLiteral("HDF5 Files (*.h5 *.hdf5 *.nxs)"), QStringLiteral("Any Files (* *.*)") });
    setDirectory(gDataRoot);
}
