#include "spectrum/XafsSpectrum.h"

#include "spectrum/PhysConst.h"
#include "spectrum/VectorClones.h"

#include <QByteArray>
#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QList>
#include <QTextStream>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

// Spectrum files hold short lines of a few numbers. Longer lines are cut here
// so that a binary file without line breaks cannot be pulled into memory at
// once; what is cut off is skipped.
constexpr qint64 kMaxLineBytes = 4096;
// Real spectra have hundreds to a few thousand points. A file that claims
// more is not a spectrum, and refusing it keeps memory bounded.
constexpr int kMaxPoints = 1000000;
// Larger files are not spectra (a million points of text stay far below).
constexpr qint64 kMaxFileBytes = qint64(256) << 20;
// A search whose range is absurdly wide for its step would run for hours;
// a pass stops after this many candidates. Forms give ranges of a few
// hundred steps at most.
constexpr long kMaxCandidatesPerPass = 100000;

// Passes after the step has underflowed would repeat for ever with an
// infinite step; a finite one reaches 0 long before this many.
constexpr int kMaxPasses = 1100;

// The shifts a search tries, in order: passes from -range to range around
// centre, the range and step a tenth of the pass before, while the step is
// at least minStep. None when the step is below minStep from the start.
class ShiftCandidates
{
public:
    ShiftCandidates(double centre, double range, double step, double minStep)
        : centre(centre), range(range), step(step), minStep(minStep)
    {
    }

    bool next(double &shift)
    {
        while (!more) {
            if (passes > 0) {
                // With minStep <= 0 the step shrinks to 0 and would satisfy
                // the loop for ever.
                if (!(step > 0) || passes >= kMaxPasses)
                    return false;
                range *= 0.1;
                step *= 0.1;
            }
            if (!(step >= minStep))
                return false;
            ++passes;
            if (range >= 0 && std::isfinite(range)) {
                candidates = 0;
                d = -range;
                more = d <= range;
            }
        }
        shift = centre + d;
        const double after = d + step;
        // A step too small to move d, or an absurd candidate count, would
        // never end.
        if (!(after > d) || ++candidates >= kMaxCandidatesPerPass) {
            more = false;
        } else {
            d = after;
            more = d <= range;
        }
        return true;
    }

private:
    const double centre;
    double range;
    double step;
    const double minStep;
    double d = 0.0;
    bool more = false;
    long candidates = 0;
    int passes = 0;
};

// Reads the next line, line break included, into line; false at the end.
bool readBoundedLine(QFile &file, QByteArray &line)
{
    char buf[kMaxLineBytes + 1];
    const qint64 got = file.readLine(buf, sizeof buf);
    if (got <= 0)
        return false;
    line = QByteArray(buf, int(got));
    // Cut line: drop the rest up to and including its line break.
    for (qint64 n = got; buf[n - 1] != '\n';) {
        n = file.readLine(buf, sizeof buf);
        if (n <= 0)
            break;
    }
    return true;
}

// The blank-separated fields of a line after trimming and collapsing white
// space; an empty line has none.
QList<QByteArray> fieldsOf(const QByteArray &line)
{
    const QByteArray s = line.simplified();
    if (s.isEmpty())
        return {};
    return s.split(' ');
}

// Numbers that do not parse read as 0.
double number(const QByteArray &field)
{
    bool ok = false;
    const double v = field.toDouble(&ok);
    return ok ? v : 0.0;
}

void emptyCurve(Spectrum &s)
{
    s.points.clear();
    s.smoothY.clear();
    s.smoothValid = false;
    s.resetRange();
}

} // namespace

XafsSpectrum::XafsSpectrum() = default;

XafsSpectrum::XafsSpectrum(const Spectrum &source, const QString &nm, int lt, double offset,
                           const SuggestElm &elm)
    : Spectrum(source)
    , name(nm)
    , sElm(elm)
    , lineType(lt)
    , eOffset(offset)
{
    deriveRelRanges();
    analyze(lineType);
}

void XafsSpectrum::deriveRelRanges()
{
    preEndRel = sElm.use ? sElm.preEnd : -10;
    postStartRel = sElm.use ? sElm.postStart : 10;
}

void XafsSpectrum::setup(const QString &nm, const SuggestElm &elm)
{
    name = nm;
    sElm = elm;
    isMuteFormat = true;
    lineType = 1;
    preStartRel = -1000;
    postEndRel = 1000;
    deriveRelRanges();
    eOffset = 0;
    midxOutOfRange = false;
    midxNoisy = false;
    midx = 0;
    dMut = 0;
}

bool XafsSpectrum::load(const QString &fileName)
{
    if (!read(fileName))
        return false;
    analyze(lineType);
    return true;
}

bool XafsSpectrum::read(const QString &fileName)
{
    qDebug().noquote() << "loading in xafs spectrum" << fileName;
    QFile file(fileName);
    // Devices and pipes may never end; only regular files of a sane size
    // are read. Anything else fails in the reader like an unopenable file.
    const QFileInfo info(fileName);
    QByteArray firstLine;
    if (info.isFile() && info.size() <= kMaxFileBytes && file.open(QIODevice::ReadOnly)) {
        readBoundedLine(file, firstLine);
        file.seek(0);
    }
    if (firstLine.simplified().startsWith("9809")) {
        qDebug().noquote() << "9809";
        isMuteFormat = false;
        return read9809(file);
    }
    qDebug().noquote() << "mute";
    isMuteFormat = true;
    return readColumns(file);
}

bool XafsSpectrum::readColumns(QFile &file)
{
    emptyCurve(*this);
    if (!file.isOpen())
        return false;
    QByteArray line;
    while (readBoundedLine(file, line)) {
        const QList<QByteArray> f = fieldsOf(line);
        if (f.size() < 2 || f[0].startsWith('#'))
            continue;
        if (points.size() >= kMaxPoints) {
            qDebug().noquote() << "too many points in" << file.fileName();
            emptyCurve(*this);
            return false;
        }
        addPoint(number(f[0]), number(f[1]));
    }
    return !points.isEmpty();
}

bool XafsSpectrum::read9809(QFile &file)
{
    emptyCurve(*this);
    emptyCurve(i0Curve);
    emptyCurve(i1Curve);
    if (!file.isOpen())
        return false;
    // Lattice spacing of the monochromator crystal in angstrom, unless the
    // header names another.
    double d = 3.13553;
    bool inHeader = true;
    QByteArray line;
    while (readBoundedLine(file, line)) {
        const QList<QByteArray> f = fieldsOf(line);
        if (inHeader) {
            for (int k = 0; k + 1 < f.size(); ++k) {
                if (f[k] == "D=")
                    d = number(f[k + 1]);
            }
            if (!f.isEmpty() && f[0] == "Offset")
                inHeader = false;
            continue;
        }
        if (f.size() < 5)
            continue;
        if (points.size() >= kMaxPoints) {
            qDebug().noquote() << "too many points in" << file.fileName();
            emptyCurve(*this);
            emptyCurve(i0Curve);
            emptyCurve(i1Curve);
            return false;
        }
        const double theta = number(f[1]) * 3.1415926535 / 180.0;
        const double a = number(f[3]);
        const double b = number(f[4]);
        const double e = kHcEVAngstrom / (2 * d * std::sin(theta));
        // A dead or negative channel gives a flat 1 rather than a NaN.
        const double y = a * b > 0 ? std::log(a / b) : 1.0;
        addPoint(e, y);
        i0Curve.addPoint(e, a);
        i1Curve.addPoint(e, b);
    }
    return true;
}

void XafsSpectrum::renew(const QString &nm, int lt, double offset, const SuggestElm &elm, Curves curves)
{
    isMuteFormat = true;
    name = nm;
    sElm = elm;
    pre = VictLine();
    post = VictLine();
    lineType = lt;
    preStartRel = -1000;
    postEndRel = 1000;
    i0Curve.reset();
    i1Curve.reset();
    eOffset = offset;
    midxOutOfRange = false;
    midxNoisy = false;
    midx = 0;
    dMut = 0;
    midRatio = 0;
    deriveRelRanges();
    // An empty curve is not analysed, and keeps no curves of another.
    for (Spectrum *c : {&normPost, &doubleNormPost, &normPostPlus1, &doubleNormPre})
        c->reset();
    analyze(lineType, curves);
}

void XafsSpectrum::analyze(int lt)
{
    analyze(lt, Curves::All);
}

void XafsSpectrum::analyze(int lt, Curves curves)
{
    const int n = points.size();
    if (n < 1)
        return;
    smooth(2);

    // Window of the rough edge search: everything, or the points between the
    // suggested pre-edge end and post-edge start (compared in raw x).
    int start = 0;
    int end = n - 1;
    if (sElm.use) {
        const double shift = activeShift();
        const double from = sElm.edgeEV + sElm.preEnd + shift;
        const double to = sElm.edgeEV + sElm.postStart + shift;
        start = n - 1;
        end = n - 1;
        bool haveStart = false;
        bool haveEnd = false;
        const QPointF *p = points.constData();
        for (int i = 0; i + 1 < n && !(haveStart && haveEnd); ++i) {
            const double m = (p[i].x() + p[i + 1].x()) / 2;
            if (!haveStart && m > from) {
                start = i;
                haveStart = true;
            }
            if (!haveEnd && m > to) {
                end = i;
                haveEnd = true;
            }
        }
    }

    // Rough edge: the steepest rise of the smoothed curve, first of equals.
    int best = 0;
    double rise = 0.0;
    const double *sy = smoothY.constData();
    for (int i = start; i < end; ++i) {
        const double r = sy[i + 1] - sy[i];
        if (r > rise) {
            rise = r;
            best = i;
        }
    }

    const bool rising = xRising();
    fitLines(energyAt(best), lt, rising);
    midRatio = 0.5;
    midx = findMidx(0.5, rising);
    dMut = post.valueAt(midx) - pre.valueAt(midx);
    fillNormalised(curves);

    midxOutOfRange = false;
    midxNoisy = false;
    if (!sElm.use)
        return;
    midxOutOfRange = midx > sElm.edgeEV + sElm.postStart || midx < sElm.edgeEV + sElm.preEnd;
    midxNoisy = dMut < sElm.thJumpSigma * pre.rms && dMut < sElm.thJumpSigma * post.rms;
    // A failed point reports the suggested edge with no jump; the curves keep
    // what was computed, so that they can still be looked at.
    if (midxOutOfRange || midxNoisy) {
        midx = sElm.edgeEV;
        dMut = 0;
    }
}

void XafsSpectrum::fillNormalised(Curves which)
{
    Spectrum *curves[] = {&normPost, &doubleNormPost, &normPostPlus1, &doubleNormPre};
    const int n = points.size();
    for (Spectrum *c : curves) {
        // reset() keeps the capacity of the lists, so a spectrum analysed
        // again refills them without allocating.
        c->reset();
    }
    if (which == Curves::None)
        return;
    // Written in bulk and scanned for extremes afterwards: appending point by
    // point cost more than all the arithmetic of the analysis.
    const QPointF *p = points.constData();
    const double shift = activeShift();
    if (which == Curves::DoubleNormPre) {
        doubleNormPre.points.resize(n);
        QPointF *dnPre = doubleNormPre.points.data();
        for (int i = 0; i < n; ++i) {
            const double e = p[i].x() - shift;
            const double vPre = pre.valueAt(e);
            const double gap = post.valueAt(e) - vPre;
            dnPre[i] = QPointF(p[i].x(), (p[i].y() - vPre) / gap);
        }
        doubleNormPre.scanRange();
        return;
    }
    for (Spectrum *c : curves)
        c->points.resize(n);
    QPointF *nPost = normPost.points.data();
    QPointF *dnPost = doubleNormPost.points.data();
    QPointF *nPost1 = normPostPlus1.points.data();
    QPointF *dnPre = doubleNormPre.points.data();
    // No guard on purpose: a zero jump or touching lines give inf or NaN,
    // and the later analyses see them as they are.
    for (int i = 0; i < n; ++i) {
        const double x = p[i].x();
        const double y = p[i].y();
        const double e = x - shift;
        const double vPre = pre.valueAt(e);
        const double vPost = post.valueAt(e);
        const double gap = vPost - vPre;
        nPost[i] = QPointF(x, (y - vPost) / dMut);
        dnPost[i] = QPointF(x, (y - vPost) / gap);
        nPost1[i] = QPointF(x, (y - vPost) / dMut + 1);
        dnPre[i] = QPointF(x, (y - vPre) / gap);
    }
    for (Spectrum *c : curves)
        c->scanRange();
}

bool XafsSpectrum::fitLines(double x, int lt)
{
    return fitLines(x, lt, xRising());
}

bool XafsSpectrum::fitLines(double x, int lt, bool rising)
{
    const int n = points.size();
    const double first = n > 0 ? energyAt(0) : 0.0;
    const double last = n > 0 ? energyAt(n - 1) : 0.0;
    const bool okPre = pre.fit(*this, first, preEndRel + x, lt, rising);
    const bool okPost = post.fit(*this, postStartRel + x, last, lt, rising);
    // When a spectrum is analysed again, the corrected forms of the previous
    // analysis are still on here and take part in the gap; that is how
    // re-analysis has always behaved.
    const double gap = post.valueAt(x) - pre.valueAt(x);
    if (gap < 0) {
        // Intended: an inverted jump is widened, not repaired. Each line moves
        // by 0.55 of the gap away from the other, so the new gap is 2.1 times
        // the old one and stays negative; later code tells such points by it.
        pre.intercept += -0.55 * gap;
        post.intercept += 0.55 * gap;
    }
    pre.genCorrected(post);
    post.genCorrectedInPost(pre);
    return okPre && okPost;
}

namespace {

// The kernels of the edge search on rising energies, each one loop that
// runs several points at a time.

TESSARELLE_VECTOR_CLONES
void shiftedEnergies(const QPointF *p, int m, double shift, double *e)
{
    for (int j = 0; j < m; ++j)
        e[j] = p[j].x() - shift;
}

// Spectrum::smoothYAtPoint(k) for k = k0 .. k0 + c - 1, none the last point.
TESSARELLE_VECTOR_CLONES
void smoothAtPoints(const QPointF *p, const double *sy, int k0, int c, double *s)
{
    for (int j = 0; j < c; ++j) {
        const int k = k0 + j;
        const double x = p[k].x();
        s[j] = sy[k] + (x - x) * (sy[k + 1] - sy[k]);
    }
}

// Whether the level between the lines at ratio lies above the smoothed value
// before point j and below the one after it (s[j] and s[j + 2]).
TESSARELLE_VECTOR_CLONES
void markCrossings(const double *vPre, const double *vPost, const double *s, double ratio, int m,
                   unsigned char *cross)
{
    const double rest = 1 - ratio;
    for (int j = 0; j < m; ++j) {
        const double level = vPost[j] * ratio + vPre[j] * rest;
        cross[j] = (level > s[j]) & (s[j + 2] > level);
    }
}

} // namespace

double XafsSpectrum::findMidx(double ratio) const
{
    return findMidx(ratio, xRising());
}

double XafsSpectrum::findMidx(double ratio, bool rising) const
{
    const int n = points.size();
    const double shift = activeShift();
    auto smoothAt = [this, shift](double e) { return interpolateSmoothY(e + shift); };
    // Without a shift, point i's own energy reads its own segment: on a
    // strictly rising grid that needs no search.
    const bool ownSegment = shift == 0.0 && smoothY.size() >= n && rising;
    auto smoothAtPoint = [&](int i) { return ownSegment ? smoothYAtPoint(i) : smoothAt(energyAt(i)); };

    // The point where the smoothed curve passes the level between the lines
    // with the strongest rise over its two neighbours.
    double bestRise = 0.0;
    int best = 0;
    if (n >= 3 && ownSegment) {
        // The same test in another form: for a stretch of points at a time
        // the level and the crossings of it are worked out in loops that run
        // several points at once; only a crossing (rare) compares its rise.
        constexpr int Stretch = 512;
        double e[Stretch];
        double vPre[Stretch];
        double vPost[Stretch];
        double s[Stretch + 2];
        unsigned char cross[Stretch];
        const QPointF *p = points.constData();
        const double *sy = smoothY.constData();
        for (int from = 1; from <= n - 2; from += Stretch) {
            const int m = std::min(Stretch, n - 1 - from);
            shiftedEnergies(p + from, m, shift, e);
            pre.valuesAt(e, m, vPre);
            post.valuesAt(e, m, vPost);
            // s[j]: the smoothed curve at point from - 1 + j, up to from + m,
            // which may be the last point.
            const int inner = from + m < n - 1 ? m + 2 : m + 1;
            smoothAtPoints(p, sy, from - 1, inner, s);
            if (inner == m + 1)
                s[m + 1] = smoothYAtPoint(from + m);
            markCrossings(vPre, vPost, s, ratio, m, cross);
            // Eight marks at a time: most are all clear.
            std::fill(cross + m, cross + std::min(Stretch, (m + 7) / 8 * 8), 0);
            for (int j0 = 0; j0 < m; j0 += 8) {
                quint64 any = 0;
                std::memcpy(&any, cross + j0, sizeof any);
                if (any == 0)
                    continue;
                for (int j = j0; j < std::min(j0 + 8, m); ++j) {
                    if (cross[j] && s[j + 2] - s[j] > bestRise) {
                        bestRise = s[j + 2] - s[j];
                        best = from + j;
                    }
                }
            }
        }
    } else if (n >= 3) {
        double sPrev = smoothAtPoint(0);
        double sHere = smoothAtPoint(1);
        for (int i = 1; i <= n - 2; ++i) {
            const double sNext = smoothAtPoint(i + 1);
            // The level between the lines is the costly part, and it can
            // only matter to a rise above the best so far.
            const double r = sNext - sPrev;
            if (r > bestRise) {
                const double e = energyAt(i);
                const double level = post.valueAt(e) * ratio + pre.valueAt(e) * (1 - ratio);
                if (level > sPrev && sNext > level) {
                    bestRise = r;
                    best = i;
                }
            }
            sPrev = sHere;
            sHere = sNext;
        }
    }

    auto energyOr0 = [this, n](int i) { return i >= 0 && i < n ? energyAt(i) : 0.0; };
    // Always at half height, whatever ratio picked the point.
    auto diff = [this, &smoothAt](double e) {
        return 0.5 * (pre.valueAt(e) + post.valueAt(e)) - smoothAt(e);
    };
    const double a = energyOr0(best - 1);
    const double b = energyOr0(best);
    const double c = energyOr0(best + 1);
    const double da = diff(a);
    const double db = diff(b);
    const double dc = diff(c);
    const double m1 = a + da * (b - a) / (da - db);
    // Intended: the second estimate starts at a, not at b. The mean of the
    // three has always been taken so and results depend on it.
    const double m2 = a + db * (c - b) / (db - dc);
    const double m3 = a + da * (c - a) / (da - dc);
    return (m1 + m2 + m3) / 3.0;
}

double XafsSpectrum::innerProduct(double dE, const XafsSpectrum &standard) const
{
    return innerProduct(dE, standard, walksStandard(standard));
}

bool XafsSpectrum::walksStandard(const XafsSpectrum &standard) const
{
    // The energies read from the standard then never fall, and each finds
    // the segment the search would.
    return std::isfinite(standard.activeShift()) && xRising() && standard.doubleNormPre.xRising();
}

InnerProductStandard XafsSpectrum::asStandard() const
{
    return InnerProductStandard(doubleNormPre, xMin, xMax, activeShift());
}

double XafsSpectrum::innerProduct(double dE, const XafsSpectrum &standard, bool walk) const
{
    const int n = points.size();
    const int nNorm = doubleNormPre.points.size();
    if (walk)
        return innerProductAlong(points.constData(), n, doubleNormPre.points.constData(), nNorm,
                                 standard.doubleNormPre, standard.xMin, standard.xMax, standard.activeShift(), dE);
    const double stdShift = standard.activeShift();
    const Spectrum &norm = standard.doubleNormPre;
    return innerProductWith(points.constData(), n, doubleNormPre.points.constData(), nNorm, standard.xMin,
                            standard.xMax, dE, [&](double e) { return norm.interpolateY(e + stdShift); });
}

double XafsSpectrum::searchDE(const XafsSpectrum &standard, double range, double step,
                              double minStep) const
{
    return searchDE(standard, nullptr, range, step, minStep);
}

double XafsSpectrum::searchDE(const XafsSpectrum &standard, const InnerProductStandard &reading, double range,
                              double step, double minStep) const
{
    return searchDE(standard, &reading, range, step, minStep);
}

double XafsSpectrum::searchDE(const XafsSpectrum &standard, const InnerProductStandard *reading, double range,
                              double step, double minStep) const
{
    // Intended: every pass scans around this same centre, never around the
    // best point of the pass before; the best value of all passes wins. So
    // every candidate of every pass is known before any is weighed.
    ShiftCandidates shifts(midx - standard.midx, range, step, minStep);
    double best = -1e300;
    double bestDE = 0.0;
    auto weigh = [&best, &bestDE](double shift, double c) {
        if (c > best) {
            best = c;
            bestDE = shift;
        }
    };
    const bool walk = walksStandard(standard);
    if (!(walk && reading)) {
        double shift;
        while (shifts.next(shift))
            weigh(shift, innerProduct(shift, standard, walk));
        return bestDE;
    }
    // Many candidates at a time, their products taken together, then weighed
    // in the order they were stepped.
    constexpr int Batch = 64;
    double batch[Batch];
    double c[Batch];
    for (;;) {
        int m = 0;
        while (m < Batch && shifts.next(batch[m]))
            ++m;
        if (m == 0)
            break;
        innerProducts(points.constData(), points.size(), doubleNormPre.points.constData(),
                      doubleNormPre.points.size(), *reading, batch, c, m);
        for (int k = 0; k < m; ++k)
            weigh(batch[k], c[k]);
    }
    return bestDE;
}

void XafsSpectrum::writeText(QTextStream &out, bool subtractOffset) const
{
    out << "###Tessarelle::XafsSpectrum\n";
    out << "# midx    : " << midx << "\n";
    out << "# dMut    : " << dMut << "\n";
    out << "# pre   vic : " << pre.intercept << " " << pre.slope << " " << pre.c3 << " " << pre.c4
        << "\n";
    out << "# poste vic : " << post.intercept << " " << post.slope << " " << post.c3 << " "
        << post.c4 << "\n";
    out << "#\n";
    out << "# x  double-normalized-pre-base y pre post\n";
    const int n = points.size();
    const int nNorm = doubleNormPre.points.size();
    for (int i = 0; i < n; ++i) {
        const double e = energyAt(i);
        const double x = subtractOffset ? e - eOffset : e;
        const double norm = i < nNorm ? doubleNormPre.points[i].y() : 0.0;
        out << x << '\t' << norm << '\t' << points[i].y() << '\t' << pre.valueAt(e) << '\t'
            << post.valueAt(e) << '\n';
    }
}

void XafsSpectrum::writeTo(QByteArray &bytes, bool subtractOffset) const
{
    bytes.clear();
    QTextStream out(&bytes, QIODevice::WriteOnly);
    writeText(out, subtractOffset);
}

void XafsSpectrum::save(const QString &fileName, bool subtractOffset) const
{
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text))
        return;
    QTextStream out(&file);
    writeText(out, subtractOffset);
}
