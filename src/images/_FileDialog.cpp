#include "images/_FileDialog.h"

#include "app/Globals.h"

_FileDialog::_FileDialog(QWidget *parent, bool single)
    : QFileDialog(parent)
{
    setFileMode(single ? QFileDialog::ExistingFile : QFileDialog::ExistingFiles);
    setAcceptMode(QFileDialog::AcceptOpen);
    setNameFilters({ tr("MQRS Files, IMG Files, Tiff Files (*.dat *.img *.tif *.tiff)"),
                     tr("HDF5 Files (*.h5 *.hdf5 *.nxs)"), tr("Any Files (* *.*)") });
    setDirectory(gDataRoot);
}
