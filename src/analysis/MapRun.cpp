#include "analysis/MapRun.h"

#include "analysis/EdgeAnalysis.h"
#include "analysis/FeatureSearch.h"
#include "analysis/ResidualAbsorption.h"
#include "images/BoxRowSums.h"

#include <algorithm>
#include <limits>

namespace {

// The number of lists of ElemsOutcome that the maps record, in its order
// from elemDMut on.
constexpr int ElemKinds = 7;

} // namespace

void PointAnalyses::layOut()
{
    usedRefs = 0;
    for (const LcfRefInput &r : std::as_const(lcfRefs))
        usedRefs += r.inUse ? 1 : 0;
    int at = 0;
    auto take = [&at](bool on, int n) {
        if (!on)
            return -1;
        const int here = at;
        at += n;
        return here;
    };
    lcfAt = take(lcf, 2 + 2 * usedRefs);
    dEdgeAt = take(dEdge, 1);
    elemsAt = take(elems, ElemKinds * int(elemConds.size()));
    raAt = take(ra, 2);
    fvAt = take(fv, 3);
    calibAt = take(calib, 1);
    width = at;
}

void PointAnalyses::prepareReadings()
{
    if (dEdge && !dEdgeIsMid)
        dEdgeReading = dEdgeRef.asStandard();
    if (calib && calibInnerP)
        calibReading = calibStd.asStandard();
}

struct MapRun::Worker
{
    BoxRowSums i1;
    BoxRowSums i0;
    BoxRowSums dark;
    XafsSpectrum point; // the box's spectrum, refilled in place
    XafsSpectrum limited;
    LcfOutcome lcf;
    ElemsOutcome elems;
};

MapRun::MapRun(const AbsorptionInput &in, const PointAnalyses &job, const AnalyzeCond &walk,
               std::vector<double> shifts, int threads, QObject *parent)
    : QObject(parent)
    , m_walk(in)
    , m_job(job)
    , m_shifts(std::move(shifts))
{
    m_job.layOut();
    m_job.prepareReadings();
    AnalyzeCond c = walk;
    c.restart();
    do {
        if (c.newLine)
            m_ys.push_back(c.iy);
        if (m_ys.size() == 1)
            m_xs.push_back(c.ix);
    } while (c.next());
    m_threads = std::clamp(threads, 1, int(m_xs.size()));
    m_slots.assign(size_t(m_ring) * m_xs.size() * size_t(std::max(m_job.width, 1)), 0.0);
    m_done.assign(size_t(m_ring), 0);
}

MapRun::~MapRun()
{
    stop();
    for (std::thread &t : m_pool)
        t.join();
}

void MapRun::start()
{
    for (int t = 0; t < m_threads; ++t)
        m_pool.emplace_back(&MapRun::work, this, t);
}

void MapRun::stop()
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_stop = true;
    }
    m_cv.notify_all();
}

const double *MapRun::readyRow(int row)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    if (row != m_released || row >= int(m_ys.size()))
        return nullptr;
    const int slot = row % m_ring;
    if (m_done[size_t(slot)] < m_threads)
        return nullptr;
    return m_slots.data() + size_t(slot) * m_xs.size() * size_t(std::max(m_job.width, 1));
}

void MapRun::releaseRow()
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_done[size_t(m_released % m_ring)] = 0;
        ++m_released;
    }
    m_cv.notify_all();
}

void MapRun::work(int t)
{
    const PointAnalyses &job = m_job;
    const size_t cols = m_xs.size();
    const size_t p0 = cols * size_t(t) / size_t(m_threads);
    const size_t p1 = cols * size_t(t + 1) / size_t(m_threads);
    const size_t width = size_t(std::max(job.width, 1));
    const AbsorptionInput &in = m_walk.in;
    static const QVector<TiffData *> none;
    const QVector<TiffData *> &i1 = in.i1Frames ? *in.i1Frames : none;
    const QVector<TiffData *> &i0 = in.i0Frames ? *in.i0Frames : none;
    const bool withI0 = m_walk.needsI0();
    const QVector<TiffData *> dark{const_cast<TiffData *>(in.dark)};

    auto w = std::make_unique<Worker>();
    w->i1.setUp(i1, job.hw, job.vw, m_xs[p0], m_xs[p1 - 1]);
    if (withI0)
        w->i0.setUp(i0, job.hw, job.vw, m_xs[p0], m_xs[p1 - 1]);
    if (in.dark)
        w->dark.setUp(dark, job.hw, job.vw, m_xs[p0], m_xs[p1 - 1]);
    w->lcf.makeFitted = false;
    // The point's own analysis only where an analysis reads its results;
    // the element analysis reads the points, the fits a part of them.
    const bool analysed = job.dEdge || job.ra || job.fv || job.calib;
    // The comparisons with a standard read the doubly normalised curve.
    const bool compares = (job.dEdge && !job.dEdgeIsMid) || (job.calib && job.calibInnerP);
    const XafsSpectrum::Curves curves = compares ? XafsSpectrum::Curves::DoubleNormPre : XafsSpectrum::Curves::None;
    const QString name = job.calib ? QStringLiteral("Body-Calib") : QStringLiteral("Body-AaP");

    for (size_t r = 0; r < m_ys.size(); ++r) {
        {
            std::unique_lock<std::mutex> lock(m_mutex);
            m_cv.wait(lock, [&] { return m_stop || int(r) < m_released + m_ring; });
            if (m_stop)
                return;
        }
        const int y = m_ys[r];
        w->i1.moveTo(y);
        if (withI0)
            w->i0.moveTo(y);
        if (in.dark)
            w->dark.moveTo(y);
        double *row = m_slots.data() + size_t(int(r) % m_ring) * cols * width;
        for (size_t p = p0; p < p1; ++p) {
            if (m_stop)
                return;
            const int x = m_xs[p];
            const double *i0Sums = withI0 ? w->i0.sums(x) : nullptr;
            const double darkSum = in.dark ? w->dark.sum(0, x) : 0.0;
            XafsSpectrum &s = w->point;
            // No analysis of a map reads the point's extremes.
            m_walk.spectrum(x, y, job.hw, job.vw, w->i1.sums(x), i0Sums, darkSum, s, false);
            const double shift = m_shifts[r * cols + p];
            if (analysed)
                s.renew(name, job.lineType, shift, job.sElm, curves);
            else
                s.eOffset = shift;

            double *v = row + p * width;
            if (job.lcf) {
                limitedSpectrum(s, job.lcfR1, job.lcfR2, w->limited);
                analyzeLcf(w->limited, job.lcfRefs, job.lcfForm, job.lcfR1, job.lcfR2, job.sElm, true, w->lcf);
                double *l = v + job.lcfAt;
                l[0] = double(int(w->lcf.action));
                l[1] = w->lcf.z;
                for (int j = 0; j < job.usedRefs; ++j) {
                    const bool have = j < w->lcf.lcfAmps.size() && j < w->lcf.lcfCoefs.size();
                    l[2 + j] = have ? w->lcf.lcfAmps[j] : 0.0;
                    l[2 + job.usedRefs + j] = have ? w->lcf.lcfCoefs[j] : 0.0;
                }
            }
            if (job.dEdge)
                v[job.dEdgeAt] = edgePosition(s, job.sElm, job.dEdgeIsMid, job.dEdgeMidRatio, job.dEdgeRef,
                                              job.dEdgeRange, job.dEdgeInit, job.dEdgeMin, &job.dEdgeReading);
            if (job.elems) {
                analyzeElems(s, job.elemConds, job.elemsBg, job.mainT, w->elems);
                const QVector<double> *lists[ElemKinds] = {&w->elems.elemDMut,     &w->elems.elemNDMut,
                                                           &w->elems.elemMutPlus,  &w->elems.elemMutMinus,
                                                           &w->elems.elemDE,       &w->elems.elemROI,
                                                           &w->elems.elemNROI};
                const int n = int(job.elemConds.size());
                for (int kind = 0; kind < ElemKinds; ++kind)
                    for (int j = 0; j < n; ++j)
                        v[job.elemsAt + kind * n + j] = j < lists[kind]->size() ? lists[kind]->at(j) : 0.0;
            }
            if (job.ra) {
                const RaResult a = analyzeRA(s, job.raFactor, job.raAtEV);
                v[job.raAt] = a.raDMut;
                v[job.raAt + 1] = a.raRest;
            }
            if (job.fv) {
                const FeatureValue f = analyzeFV(s, job.sElm, job.fvElimReg);
                v[job.fvAt] = f.dM;
                v[job.fvAt + 1] = f.e1;
                v[job.fvAt + 2] = f.e2;
            }
            if (job.calib)
                v[job.calibAt] = job.calibInnerP
                                     ? s.searchDE(job.calibStd, job.calibReading, job.calibDEw, job.calibDEs,
                                                  job.calibMinDEs)
                                     : s.midx - job.calibStd.midx;
        }
        bool complete;
        {
            std::lock_guard<std::mutex> lock(m_mutex);
            complete = ++m_done[size_t(int(r) % m_ring)] == m_threads;
        }
        if (complete)
            emit rowsReady();
    }
}
