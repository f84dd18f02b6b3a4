#pragma once

#include "spectrum/InnerProducts.h"
#include "spectrum/Spectrum.h"
#include "spectrum/SuggestElm.h"
#include "spectrum/VictLine.h"

#include <QMetaType>
#include <QString>

class QByteArray;
class QFile;
class QTextStream;

// One absorption spectrum with what the program derives from it: the
// pre-edge and post-edge lines, the edge position midx, the edge jump dMut and
// four normalised curves. Per-pixel spectra, reference spectra and calibration
// standards are all of this type.
//
// A plain value with no virtual functions: it is copied freely and travels by
// value through queued signals between threads.
//
// Energies are the curve's x minus xShift when xShiftOn (energyAt); the
// normalised curves keep the raw x of their points.
class XafsSpectrum : public Spectrum
{
public:
    // The normalised curves an analysis fills: all four, only doubleNormPre
    // (the one the edge comparison reads), or none. Those left out are empty.
    enum class Curves { All, DoubleNormPre, None };

    XafsSpectrum();
    // Copies the curve of source, keeps the arguments and analyses it at once:
    // the usual way to make one from a box of pixels.
    XafsSpectrum(const Spectrum &source, const QString &name, int lineType, double eOffset,
                 const SuggestElm &sElm);

    // Prepares the object for a file load: stores name and element, restores
    // the format, line type, ranges, offset, flags and results to their
    // defaults. The curve itself is left to read().
    void setup(const QString &name, const SuggestElm &sElm);

    // read(), then analyze(lineType) on success.
    bool load(const QString &fileName);
    // Reads a column file or a 9809 scan file, chosen by the first line.
    // On failure the curve is empty.
    bool read(const QString &fileName);

    // Smooths, finds the rough edge, fits the lines and sets midx, dMut, the
    // four normalised curves and the two flags. Does nothing without points.
    // Allocates only where the curves outgrow the capacity they already have.
    void analyze(int lineType);
    void analyze(int lineType, Curves curves);
    // For a curve just refilled in place (after Spectrum::reset()): every
    // other field back to what the constructor sets, then analysed as it
    // would, with only the curves asked for. The same numbers as
    // XafsSpectrum(curve, name, lineType, eOffset, sElm), without allocating
    // once the lists have their room.
    void renew(const QString &name, int lineType, double eOffset, const SuggestElm &sElm, Curves curves);
    // Fits pre below x + preEndRel and post above x + postStartRel, pulls an
    // inverted pair apart and generates the corrected forms. True when both
    // fits succeeded.
    bool fitLines(double x, int lineType);
    // Edge position where the smoothed spectrum crosses the level at ratio
    // between the lines with the strongest rise, refined at half height.
    double findMidx(double ratio) const;

    // Normalised inner product of doubleNormPre, moved by dE, with that of
    // standard over their overlap; 0 without overlap. The overlap is judged
    // on raw x; standard's curve is read at its own shifted energies.
    double innerProduct(double dE, const XafsSpectrum &standard) const;
    // The shift against standard with the largest inner product, scanned in
    // passes of shrinking step around midx - standard.midx. 0 when step is
    // below minStep. Ends on any input: a step that no longer advances stops
    // the pass, and so does an absurd number of candidates.
    double searchDE(const XafsSpectrum &standard, double range, double step,
                    double minStep) const;
    // The same shift to the bit, several candidates at a time, reading the
    // standard through reading = standard.asStandard(), made once for the
    // many searches of a map.
    double searchDE(const XafsSpectrum &standard, const InnerProductStandard &reading, double range,
                    double step, double minStep) const;
    // This spectrum as the standard of a several-at-a-time search.
    InnerProductStandard asStandard() const;

    // Replaces bytes with the written form of the spectrum: a header, then
    // per point energy (less eOffset when asked), doubleNormPre, y, pre, post.
    void writeTo(QByteArray &bytes, bool subtractOffset) const;
    // Writes the same into a file; an unopenable file is silently skipped.
    void save(const QString &fileName, bool subtractOffset) const;

    bool isMuteFormat = true;
    QString name = QStringLiteral("No Name");
    SuggestElm sElm;
    VictLine pre;
    VictLine post;
    int lineType = 1;           // 0 Victoreen, 1 straight line
    double preStartRel = -1000; // kept for the record; no fit reads it
    double preEndRel = -10;
    double postStartRel = 10;
    double postEndRel = 1000;   // kept for the record; no fit reads it
    Spectrum i0Curve;
    Spectrum i1Curve;
    Spectrum normPost;
    Spectrum doubleNormPost;
    Spectrum normPostPlus1;
    Spectrum doubleNormPre;
    double eOffset = 0;
    bool midxOutOfRange = false;
    bool midxNoisy = false;
    double midx = 0;
    double dMut = 0;
    double midRatio = 0;

private:
    // fitLines and findMidx told whether the energies strictly rise
    // (xRising()), which analyze() finds out once for both.
    bool fitLines(double x, int lineType, bool rising);
    double findMidx(double ratio, bool rising) const;
    void deriveRelRanges();
    // innerProduct with the standard read by walking along it (walk) or by
    // a search per point; the walk when walksStandard() allows it.
    double innerProduct(double dE, const XafsSpectrum &standard, bool walk) const;
    bool walksStandard(const XafsSpectrum &standard) const;
    // Both searches: several at a time when reading is given and the standard
    // can be walked, else one at a time.
    double searchDE(const XafsSpectrum &standard, const InnerProductStandard *reading, double range,
                    double step, double minStep) const;
    void fillNormalised(Curves curves);
    bool readColumns(QFile &file);
    bool read9809(QFile &file);
    void writeText(QTextStream &out, bool subtractOffset) const;
};

Q_DECLARE_METATYPE(XafsSpectrum)
