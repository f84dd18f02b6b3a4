#pragma once

#include <QMetaType>
#include <QPoint>
#include <QString>
#include <QVector>

// A bad-pixel mask: detector pixels whose values are replaced by the mean of
// their good neighbours when a frame is read.
//
// Mask files are text: a line "# Size W H" gives the detector size and starts
// the list afresh; every other line holds "x y" in detector coordinates (a
// '#' starts a comment, further items are ignored, a line with one item is
// passed over, a number that does not parse counts as 0).
class ErrPoints
{
public:
    bool inUse = false;
    QString fileName;       // canonical path of the loaded file
    QVector<QPoint> points; // detector coordinates
    int width = 0;          // the "# Size" of the file
    int height = 0;

    // Linear search; masks hold a few hundred points at most.
    bool contains(int x, int y) const;

    // Reads a mask file. On success fileName is set and true is returned; the
    // mask is marked in use only when `keep` is set (points then add to those
    // already held) and no "# Size" line follows, so without `keep` it is the
    // caller who decides whether the mask applies. On failure the mask is
    // emptied and left unused.
    bool load(const QString &path, bool keep);
};
// A load job carries the asking panel's mask to the loader thread.
Q_DECLARE_METATYPE(ErrPoints *)

// The program's mask, chosen in the main file panels.
extern ErrPoints gErrPoints;
