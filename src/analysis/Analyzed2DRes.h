#pragma once

#include "analysis/AnalyzeCond.h"
#include "spectrum/QuadSurf.h"

#include <QImage>
#include <QObject>
#include <QString>

#include <memory>
#include <vector>

// One two-dimensional result: a map of doubles as large as the image,
// filled block by block as a walk goes over it, with a processed copy of the
// same size (deglitching), an image made through the colour bar, and its
// values handed out as 16-bit integers or text for saving.
//
// The arrays exist (are non-empty) exactly when the walk's area has a size;
// an empty map answers every operation that needs them with nothing.
// Maps belong to the main thread.
class Analyzed2DRes : public QObject
{
    Q_OBJECT
public:
    explicit Analyzed2DRes(const QString &name = QString(), QObject *parent = nullptr);
    ~Analyzed2DRes() override;

    // Takes the walk of a run and clears the map for it (see reset()).
    void setUp(const AnalyzeCond &c);
    // Back to the extremes' start values with zero-filled arrays of the
    // walk's area (none for an empty area, or for one too large to hold),
    // no image and empty surface sums. The scale, the deglitch conditions
    // and the extremes' positions stay.
    void reset();

    // Copies another map: everything but the arrays and the image always;
    // those only when the source's image was generated, so that a map never
    // drawn copies as an empty one of the same size. Nothing for a null source.
    void assignFrom(const Analyzed2DRes *src);

    // setData(xs[i], iy, xw, yw, values[i * stride]) for i = 0 .. count - 1
    // in turn, with the same extremes, positions, sums and data, for a row
    // of centres xs in rising order: a block overlapped by the next is
    // written once per row rather than once per centre.
    void setRowData(const int *xs, int count, int iy, int xw, int yw, const double *values, qsizetype stride);

    // Sum of the data over x +- |hw|, y +- |hv|; points off the map count 0.
    double sumInBlock(int x, int y, int hw, int hv) const;

    // The value at (x, y) of data (or of the processed copy); 0 off the map
    // or without data.
    double valueAt(int x, int y) const;
    double procValueAt(int x, int y) const;

    // The 16-bit values to save: with asAnalyzed one per point of the walk,
    // packed from the start of an array of the full map size (tiffCount of
    // them), clamped to the range; otherwise every pixel, unclamped, wrapped
    // as an integer conversion wraps. Empty without data.
    std::vector<quint16> tiffDataForSave(bool fixedScale, double scaleMin, double scaleMax, bool asAnalyzed);

    // Writes the map as text (XYZ lines or a value matrix, comma or blank
    // separated) after a fixed header; returns the file's name, or an empty
    // string when it can't be opened (logged).
    QString writeText(const QString &fileName, bool csv, bool xyz) const;

    // The range the image and the colour bar use: the fixed scale, else the
    // processed copy's extremes when it is shown, else the data's.
    double effectiveMin() const;
    double effectiveMax() const;

    int width() const { return cond.areaW; }
    int height() const { return cond.areaH; }
    bool hasData() const { return !data.empty(); }

    int no = 0;
    QString name;
    AnalyzeCond cond;
    bool imgValid = false;
    std::unique_ptr<QImage> image; // draws on imgBuf
    std::vector<uchar> imgBuf;
    std::vector<double> data;       // row-major, areaW x areaH
    std::vector<double> rowLine;    // setRowData's line of one row
    double dataMin = 1e300;
    double dataMax = -1e300;
    int minPosX = 0, minPosY = 0;
    int maxPosX = 0, maxPosY = 0;
    double scaleMin = 1e300;
    double scaleMax = -1e300;
    bool fixedScale = false;
    bool useUpperLimit = false;
    double upperLimit = 1.7976931348623157e308;
    int imgFormat = 24; // 24 grey, 13 RGB; anything else makes no image
    int tiffCount = 0;
    double procMin = 0;
    double procMax = 1;
    std::vector<double> procData;   // same size as data
    double deglitchF = 2.0;
    double deglitchR = 0.9;
    bool useProc = false;
    QuadSurf surface;

    // Largest map held, in pixels: a size beyond it (from a damaged file,
    // say) leaves the map without arrays rather than exhausting memory.
    static constexpr qint64 MaxPixels = qint64(1) << 28;

public slots:
    // Resets the walk to its default and clears everything, so that a size
    // of 0 frees the arrays.
    void clear();
    void setNo(int n) { no = n; }
    // Every pixel of the block ix +- |xw|, iy +- |yw| that lies on the map
    // takes t; the extremes follow t (strictly, so NaN changes nothing), and
    // (ix, iy, t) is one sample of the surface.
    void setData(int ix, int iy, int xw, int yw, double t);
    // Makes the image from data (or the processed copy) through the colour
    // bar, over the effective range, and solves the surface.
    void genImg();
    QImage *img() const { return image.get(); }
    void deglitch();
    void setDeglitchConds(double f, double r);
    void selectProcImg(bool f);
    void deglitch2(double limit);
    void copyProc2Data();
    // Kept and regenerated with, but no value, scale or pixel depends on it.
    void setUpperLimit(bool useLimit, double limitVal);
    void setFixedScale(bool f);
    void setScale(double min, double max);

private:
    qsizetype pixels() const { return qsizetype(cond.areaW) * cond.areaH; }
    // Fills the block of a point in procData like the deglitch passes do:
    // linear indices, so a block past the right edge runs on into the next
    // row; only indices off the array are skipped.
    void fillProcBlock(int x, int y, double v);
    void passRangeToColorBar() const;
};
