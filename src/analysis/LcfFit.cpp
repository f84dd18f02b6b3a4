#include "analysis/LcfFit.h"

#include "spectrum/LinAlg.h"

#include <algorithm>

namespace {

// Reference j read at the energy E of the sample: its curve at E + dE, plus
// the curve's own shift should it carry one. The sample's energies rise, so
// each reference is walked rather than searched.
double refAt(const LcfRefInput &r, const Spectrum &curve, CurveWalker &walker, double e)
{
    return walker.at(r.spectrum.activeShift() + e + curve.activeShift());
}

// Energy of point i of s on the corrected scale of the references.
double energyOf(const XafsSpectrum &s, int i)
{
    return s.points[i].x() - s.activeShift() - s.eOffset;
}

void assemble(const XafsSpectrum &s, const QVector<LcfRefInput> &refs,
              const QVector<int> &used, bool mlcf, double sE, double eE, LcfWorkspace &w)
{
    const int n = s.points.size();
    const int nNorm = s.doubleNormPre.points.size();
    const int nRef = used.size();
    const int first = mlcf ? 2 : 0;
    double **a = w.a();
    double *b = w.b();
    double *v = w.v();
    for (int j = 0; j < nRef; ++j) {
        const XafsSpectrum &r = refs[used[j]].spectrum;
        w.fitRefs[j].reset(mlcf ? r.doubleNormPost : r.doubleNormPre);
    }
    for (int i = 0; i < n; ++i) {
        const double e = energyOf(s, i);
        if (!(sE <= e && e <= eE))
            continue;
        double y;
        if (mlcf) {
            // A straight line takes up the background; the references enter
            // through their (y - post) / (post - pre) curves.
            y = s.points[i].y();
            v[0] = 1.0;
            v[1] = e;
            for (int j = 0; j < nRef; ++j) {
                const LcfRefInput &r = refs[used[j]];
                v[first + j] = refAt(r, r.spectrum.doubleNormPost, w.fitRefs[j], e);
            }
        } else {
            y = i < nNorm ? s.doubleNormPre.points[i].y() : 0.0;
            for (int j = 0; j < nRef; ++j) {
                const LcfRefInput &r = refs[used[j]];
                v[j] = refAt(r, r.spectrum.doubleNormPre, w.fitRefs[j], e);
            }
        }
        for (int j = 0; j < w.m; ++j) {
            double *row = a[j];
            const double vj = v[j];
            for (int k = 0; k < w.m; ++k)
                row[k] += vj * v[k];
            b[j] += vj * y;
        }
    }
}

// Mean squared relative misfit of the fitted curve against s's
// doubleNormPre inside [sE, eE], both end points left out, divided again by
// the number of points of s. The curve lies on the corrected scale while the
// comparison runs on raw x: a spectrum with an energy offset never fits
// exactly, and that is how the residual has always been defined.
double zansa(const XafsSpectrum &s, const Spectrum &fitted, double sE, double eE,
             CurveWalker &walker)
{
    walker.reset(fitted);
    const Spectrum &d = s.doubleNormPre;
    const int m = d.points.size();
    double sum = 0.0;
    int c = 0;
    for (int i = 1; i <= m - 2; ++i) {
        const double e = d.points[i].x() - d.activeShift();
        if (!(sE <= e && e <= eE))
            continue;
        const double y = d.points[i].y();
        // A point at exactly 0 cannot give a relative error: it counts as 1.
        const double r = y == 0 ? 1.0
                                : (walker.at(e + fitted.activeShift()) - y) / y;
        sum += r * r;
        ++c;
    }
    const double z = c > 0 ? sum / c : 0.0;
    return z / s.points.size();
}

} // namespace

void LcfWorkspace::prepare(int size)
{
    m = size;
    // resize() never gives back capacity: once warm, nothing is allocated.
    store.resize(3 * size_t(m) * m);
    rows.resize(3 * size_t(m));
    vecs.resize(4 * size_t(m));
    perm.resize(size_t(m));
    for (int r = 0; r < 3 * m; ++r)
        rows[r] = store.data() + size_t(r) * m;
    std::fill(store.begin(), store.begin() + size_t(m) * m, 0.0);
    std::fill(vecs.begin(), vecs.begin() + m, 0.0);
}

void limitedSpectrum(const XafsSpectrum &point, double r1, double r2, XafsSpectrum &out)
{
    out.Spectrum::reset();
    out.reserve(point.points.size());
    for (const QPointF &p : point.points) {
        if (r1 <= p.x() && p.x() <= r2)
            out.addPoint(p.x(), p.y());
    }
    out.renew(QStringLiteral("limited-S"), 1, point.eOffset, SuggestElm(), XafsSpectrum::Curves::DoubleNormPre);
}

XafsSpectrum limitedSpectrum(const XafsSpectrum &point, double r1, double r2)
{
    Spectrum part;
    part.reserve(point.points.size());
    for (const QPointF &p : point.points) {
        if (r1 <= p.x() && p.x() <= r2)
            part.addPoint(p.x(), p.y());
    }
    return XafsSpectrum(part, QStringLiteral("limited-S"), 1, point.eOffset, SuggestElm());
}

void analyzeLcf(const XafsSpectrum &s, const QVector<LcfRefInput> &refs, LcfForm form,
                double sE0, double eE0, const SuggestElm &sElm, bool contAccess,
                LcfOutcome &out)
{
    out.action = LcfOutcome::Action::None;
    out.writePanels = false;
    if (s.points.isEmpty() || refs.size() < 2)
        return;
    if (form == LcfForm::New && s.dMut <= 0) {
        // The only difference between the two LCF forms: a point without a
        // positive jump reports zeros and keeps the last curve and residual.
        out.lcfCoefs.fill(0.0, refs.size());
        out.lcfAmps.fill(0.0, refs.size());
        out.usedPanels.clear();
        out.action = LcfOutcome::Action::FinishedOnly;
        return;
    }

    out.usedPanels.clear();
    for (int k = 0; k < refs.size(); ++k) {
        if (refs[k].inUse)
            out.usedPanels.append(k);
    }
    const int nRef = out.usedPanels.size();
    const bool mlcf = form == LcfForm::Mlcf;

    // Narrow range: the fit and the residual. Wide range: the fitted curve,
    // which may run beyond [sE0, eE0] wherever all references reach.
    double sE = sE0, eE = eE0, wS = 0.0, wE = 1e300;
    for (int k : out.usedPanels) {
        const XafsSpectrum &r = refs[k].spectrum;
        const double lo = r.xMin - r.activeShift();
        const double hi = r.xMax - r.activeShift();
        sE = std::max(sE, lo);
        eE = std::min(eE, hi);
        wS = std::max(wS, lo);
        wE = std::min(wE, hi);
    }

    LcfWorkspace &w = out.work;
    w.prepare(mlcf ? nRef + 2 : nRef);
    w.fitRefs.resize(size_t(nRef));
    w.curveRefs.resize(size_t(nRef));
    assemble(s, refs, out.usedPanels, mlcf, sE, eE, w);
    // A zero pivot is skipped by the solver and its unknown left as reached;
    // the fit takes those numbers as they are, so the results are not checked.
    luDecompose(w.m, w.a(), w.l(), w.u(), w.perm.data());
    forwardSolve(w.m, w.l(), w.b(), w.t(), w.perm.data());
    backSolve(w.m, w.u(), w.t(), w.x(), w.perm.data());

    const double *x = w.x();
    const int *perm = w.perm.data();
    out.lcfCoefs.clear();
    out.lcfAmps.fill(0.0, nRef);
    if (mlcf) {
        // The line's two terms are dropped. A negative coefficient is cut to
        // zero after it has entered the sum, so the rest need not add to 1;
        // a sum <= 0 leaves infinities or NaN, recorded as they are.
        double sum = 0.0;
        for (int j = 0; j < nRef; ++j) {
            double c = x[perm[j + 2]];
            sum += c;
            if (c < 0)
                c = 0;
            out.lcfCoefs.append(c);
        }
        const double d = std::max(0.0, sum);
        for (int j = 0; j < nRef; ++j) {
            out.lcfAmps[j] = out.lcfCoefs[j]; // in the units of the raw spectrum
            out.lcfCoefs[j] /= d;
        }
    } else {
        const double jump = std::max(0.0, s.dMut);
        for (int j = 0; j < nRef; ++j) {
            out.lcfCoefs.append(x[perm[j]]);
            out.lcfAmps[j] = out.lcfCoefs[j] * jump;
        }
    }

    // Outside a run the panels take the new ratios before the curve is built,
    // so the curve uses them; in a run the panels keep the ratios of the last
    // single fit, and the curve and z measure the misfit against those.
    // The curve sums doubleNormPre curves for MLCF as well.
    for (int j = 0; j < nRef; ++j)
        w.curveRefs[j].reset(refs[out.usedPanels[j]].spectrum.doubleNormPre);
    Spectrum &curve = w.curve;
    curve.reset();
    curve.reserve(s.points.size());
    for (int i = 0; i < s.points.size(); ++i) {
        const double e = energyOf(s, i);
        if (!(wS <= e && e <= wE))
            continue;
        double value = 0.0;
        for (int j = 0; j < nRef; ++j) {
            const LcfRefInput &r = refs[out.usedPanels[j]];
            const double ratio = contAccess ? r.ratio : out.lcfCoefs[j];
            value += ratio * refAt(r, r.spectrum.doubleNormPre, w.curveRefs[j], e);
        }
        curve.addPoint(e, value);
    }
    // The curve's analysis changes none of its points: z reads the same
    // numbers from the bare curve when nobody wants the analysed form.
    if (out.makeFitted) {
        out.fitted = XafsSpectrum(curve, mlcf ? QStringLiteral("anal-MLCF") : QStringLiteral("anal-LCF"),
                                  1, 0, sElm);
        out.z = zansa(s, out.fitted, sE, eE, w.fittedWalker);
    } else {
        out.z = zansa(s, curve, sE, eE, w.fittedWalker);
    }
    out.writePanels = !contAccess;
    out.action = LcfOutcome::Action::NewZAndFinished;
}
