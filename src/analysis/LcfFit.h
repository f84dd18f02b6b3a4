#pragma once

#include "analysis/CurveWalker.h"
#include "spectrum/Spectrum.h"
#include "spectrum/SuggestElm.h"
#include "spectrum/XafsSpectrum.h"

#include <QMetaType>
#include <QVector>

#include <vector>

// Linear combination fits of one spectrum against reference spectra, as pure
// functions: the worker thread hands in a snapshot of the reference panels
// and gets back everything it must store, emit and write to the panels.

// One reference panel as the fit sees it, copied on the main thread. The
// spectrum's lists are implicitly shared, so a list of these is cheap to pass
// through a queued signal.
struct LcfRefInput
{
    // The panel's reference: xShiftOn true, xShift and eOffset both the
    // panel's dE, so that its energies read as x - dE.
    XafsSpectrum spectrum;
    // Use checked and a file chosen. A reference whose file failed to load is
    // still in use; its empty curve leaves no point in range.
    bool inUse = false;
    // The ratio the panel holds, from its last single-spectrum fit (0 if none).
    double ratio = 0;
};

enum class LcfForm {
    New,  // LCF that skips a spectrum whose jump is not positive
    Old,  // the "as Old" LCF: fits whatever the jump
    Mlcf, // raw spectrum = line + sum of references' doubleNormPost
};

// Scratch of one fit, kept with the outcome so that a caller refilling the
// same outcome point after point does not allocate once the sizes are known.
struct LcfWorkspace
{
    // Sizes everything for an m x m system and zeroes the matrix and the
    // right side.
    void prepare(int m);

    std::vector<double> store;  // A, L, U, each m x m
    std::vector<double *> rows; // their row pointers: A, then L, then U
    std::vector<double> vecs;   // b, t, x and the basis values v, each m
    std::vector<int> perm;
    // One walker per used reference over the curve the fit reads, one over
    // its doubleNormPre for the fitted curve, one over the fitted curve.
    std::vector<CurveWalker> fitRefs;
    std::vector<CurveWalker> curveRefs;
    CurveWalker fittedWalker;
    Spectrum curve;             // the fitted curve before it is analysed
    int m = 0;

    double **a() { return rows.data(); }
    double **l() { return rows.data() + m; }
    double **u() { return rows.data() + 2 * m; }
    double *b() { return vecs.data(); }
    double *t() { return vecs.data() + m; }
    double *x() { return vecs.data() + 2 * m; }
    double *v() { return vecs.data() + 3 * m; }
};

// What one call leaves behind. Keep one outcome and pass it in again: the
// lists are cleared, not replaced, and keep their room. Read them in place;
// a copy shares them, and the next refill then has to allocate.
struct LcfOutcome
{
    enum class Action {
        None,           // emit nothing: no points, or fewer than two panels
        FinishedOnly,   // new LCF on a jump <= 0: finished() alone
        NewZAndFinished // newZ(z), then finished()
    };

    Action action = Action::None;
    // Action::None leaves every field below as it was. FinishedOnly sets both
    // lists to zeros, one per panel (used or not), and leaves z and fitted as
    // they were. NewZAndFinished sets all of them: one entry per used panel.
    QVector<double> lcfCoefs;
    QVector<double> lcfAmps;
    double z = 0;
    XafsSpectrum fitted; // named "anal-LCF" or "anal-MLCF"
    // Index in the panel list of each used panel, in panel order; entry j of
    // lcfCoefs and lcfAmps belongs to panel usedPanels[j].
    QVector<int> usedPanels;
    // True after a fit outside a run (contAccess false): panel usedPanels[j]
    // takes lcfCoefs[j] as its ratio (R) and lcfAmps[j] as its amplitude (T).
    // The fitted curve has already been built with these ratios.
    bool writePanels = false;
    // False in a run, where nobody looks at the fitted curve: it is then
    // left as it was and only z is computed from it.
    bool makeFitted = true;

    LcfWorkspace work;
};

// The spectrum the fits work on: the points of point whose raw x lies in
// [r1, r2], analysed afresh as "limited-S" with line type 1, the point's
// eOffset and a default SuggestElm, whatever element the point had.
XafsSpectrum limitedSpectrum(const XafsSpectrum &point, double r1, double r2);
// The same into a spectrum kept from call to call (out must not be point),
// with only the doubleNormPre curve that the fits read.
void limitedSpectrum(const XafsSpectrum &point, double r1, double r2, XafsSpectrum &out);

// Fits s (usually limitedSpectrum()) against the used references over
// [sE0, eE0], builds the fitted curve over the references' common range with
// the panels' ratios, and computes the residual z. contAccess is true during
// a run: the panels are then left alone and the curve uses their old ratios.
// A singular system is not detected: its numbers are used as they come.
void analyzeLcf(const XafsSpectrum &s, const QVector<LcfRefInput> &refs, LcfForm form,
                double sE0, double eE0, const SuggestElm &sElm, bool contAccess,
                LcfOutcome &out);

Q_DECLARE_METATYPE(LcfRefInput)
