#!/usr/bin/python3
"""The edge-position map of an I1/I0 stack, vectorised with numpy, for the
comparison in bench_edgemap: box sums through running sums, absorption,
smoothing, the two background lines with their rational bend, and the
half-height crossing, all over a band of rows at a time.

  numpy_edgemap.py I1.raw I0.raw side frames e0 de half out.raw

The raw files hold the frames one after the other, 16-bit little endian;
frame k lies at energy e0 + k de for both stacks. The map (one double per
pixel, walk step 1) goes to out.raw; the seconds of the computation, stacks
already in memory, go to standard output.
"""
import sys
import time

import numpy as np

SUGGESTED_EDGE = 0.0  # the suggested edge subtracted from midx: none in the bench configuration


def box_sums(padded, y0, y1, h):
    """Box sums (2h+1 square, pixels outside count 0) centred on rows y0..y1-1,
    from the stack padded with h zeros on every side: running sums down the
    band and along its rows, differences of slices (views, no gathers). In
    32-bit integers: a 16-bit frame's running sum along a row of column sums
    stays below 2**31 up to 1500 columns at this box size."""
    w = 2 * h + 1
    band = padded[:, y0:y1 + 2 * h, :]
    nf, r, width = band.shape
    cv = np.empty((nf, r + 1, width), np.int32)
    cv[:, 0, :] = 0
    np.cumsum(band, axis=1, dtype=np.int32, out=cv[:, 1:, :])
    rows = cv[:, w:, :] - cv[:, :-w, :]
    ch = np.empty((nf, rows.shape[1], width + 1), np.int32)
    ch[:, :, 0] = 0
    np.cumsum(rows, axis=2, out=ch[:, :, 1:])
    return ch[:, :, w:] - ch[:, :, :-w]


def line_fit_ranges(e, y, cy, cey, lo, hi):
    """Least-squares straight lines over points lo..hi-1 of each spectrum,
    from running sums: cy, cey over the spectra, e over the energies."""
    rows = np.arange(y.shape[0])
    ce = np.concatenate(([0.0], np.cumsum(e)))
    cee = np.concatenate(([0.0], np.cumsum(e * e)))
    n = (hi - lo).astype(np.float64)
    sx = ce[hi] - ce[lo]
    sxx = cee[hi] - cee[lo]
    sy = cy[rows, hi] - cy[rows, lo]
    sxy = cey[rows, hi] - cey[rows, lo]
    det = sxx * n - sx * sx
    slope = (sxy * n - sx * sy) / det
    icpt = (sxx * sy - sx * sxy) / det
    return slope, icpt


def edge_positions(mu, e):
    """mu: spectra x energies (energies rising)."""
    p, n = mu.shape
    rows = np.arange(p)
    c = np.zeros((p, n + 1))
    np.cumsum(mu, axis=1, out=c[:, 1:])
    # Five-point means from the running sums: slices inside, the two points
    # at each end over the points they have.
    s = np.empty((p, n))
    s[:, 2:n - 2] = c[:, 5:] - c[:, :n - 4]
    s[:, 2:n - 2] /= 5
    for i in (0, 1, n - 2, n - 1):
        lo, hi = max(i - 2, 0), min(i + 2, n - 1)
        s[:, i] = (c[:, hi + 1] - c[:, lo]) / (hi - lo + 1)

    d = s[:, 1:] - s[:, :-1]
    best = np.argmax(d, axis=1)
    best[d[rows, best] <= 0] = 0
    x = e[best]
    ee = e[None, :]
    # Energies rise: the pre-edge points are a leading run, the post-edge
    # ones a run that stops before the last point.
    cy = c
    cey = np.zeros((p, n + 1))
    np.cumsum(mu * ee, axis=1, out=cey[:, 1:])
    pre_hi = np.searchsorted(e, x - 10, side="left")
    post_lo = np.searchsorted(e, x + 10, side="left")
    post_hi = np.maximum(np.searchsorted(e, e[-1], side="left"), post_lo)
    ps, pi = line_fit_ranges(e, mu, cy, cey, np.zeros_like(pre_hi), pre_hi)
    qs, qi = line_fit_ranges(e, mu, cy, cey, post_lo, post_hi)
    gap = (qs * x + qi) - (ps * x + pi)
    widen = np.where(gap < 0, 0.55 * gap, 0.0)
    pi = pi - widen
    qi = qi + widen
    pe2 = x - 10
    qe1 = x + 10
    # Each line bends toward the other beyond its own range, where it is
    # the steeper of the two.
    bend_pre = ps > qs
    bend_post = qs > ps

    # Per spectrum, the constants of the bends; then each line over the
    # energies with in-place operations, the bend put in where it applies.
    dS = qs - ps
    with np.errstate(all="ignore"):
        g_pre = dS * pe2 + (qi - pi)
        ra_pre = -(2 * dS * pe2 + (qi - pi)) / dS
        k_pre = g_pre * g_pre / dS
        g_post = dS * qe1 + (qi - pi)
        ra_post = -(2 * dS * qe1 + (qi - pi)) / dS
        k_post = g_post * g_post / dS

    def line(v, slope, icpt, other_slope, other_icpt, k, ra, where, sign):
        """slope v + icpt, and where `where` holds, the other line's
        other_slope v + other_icpt + sign k / (v + ra)."""
        v = np.broadcast_to(v, (len(slope), v.shape[1]))
        out = slope[:, None] * v
        out += icpt[:, None]
        with np.errstate(all="ignore"):
            bent = v + ra[:, None]
            np.divide(k[:, None], bent, out=bent)
            if sign < 0:
                np.negative(bent, out=bent)
            bent += other_icpt[:, None]
            bent += other_slope[:, None] * v
        np.copyto(out, bent, where=where)
        return out

    def pre(v):
        where = (v > pe2[:, None]) & bend_pre[:, None]
        return line(v, ps, pi, qs, qi, k_pre, ra_pre, where, 1)

    def post(v):
        where = (v < qe1[:, None]) & bend_post[:, None]
        return line(v, qs, qi, ps, pi, k_post, ra_post, where, -1)

    level = post(ee)
    level *= 0.5
    level += 0.5 * pre(ee)
    ok = (level[:, 1:-1] > s[:, :-2]) & (s[:, 2:] > level[:, 1:-1])
    rise = np.where(ok, s[:, 2:] - s[:, :-2], 0.0)
    b = np.argmax(rise, axis=1) + 1
    b[rise[rows, b - 1] <= 0] = 0

    def at(k):
        inside = (k >= 0) & (k < n)
        return np.where(inside, e[np.clip(k, 0, n - 1)], 0.0)

    def smooth_at(v):
        k = np.clip(np.searchsorted(e, v, side="right") - 1, 0, n - 2)
        x0, x1 = e[k], e[k + 1]
        y0, y1 = s[rows, k], s[rows, k + 1]
        return y0 + (v - x0) * (y1 - y0) / (x1 - x0)

    ea, eb, ec = at(b - 1), at(b), at(b + 1)
    with np.errstate(all="ignore"):
        da, db, dc = [0.5 * (pre(v[:, None])[:, 0] + post(v[:, None])[:, 0]) - smooth_at(v) for v in (ea, eb, ec)]
        m1 = ea + da * (eb - ea) / (da - db)
        m2 = ea + db * (ec - eb) / (db - dc)
        m3 = ea + da * (ec - ea) / (da - dc)
    return (m1 + m2 + m3) / 3.0 - SUGGESTED_EDGE


def main():
    i1p, i0p, side, nf, e0, de, half, outp = sys.argv[1:9]
    side, nf, half = int(side), int(nf), int(half)
    e = float(e0) + float(de) * np.arange(nf)
    i1 = np.fromfile(i1p, dtype="<u2").reshape(nf, side, side)
    i0 = np.fromfile(i0p, dtype="<u2").reshape(nf, side, side)
    out = np.empty((side, side))
    t = time.perf_counter()
    pad = ((0, 0), (half, half), (half, half))
    i1 = np.pad(i1, pad)
    i0 = np.pad(i0, pad)
    band = 32
    for y0 in range(0, side, band):
        y1 = min(y0 + band, side)
        s1 = box_sums(i1, y0, y1, half)
        s0 = box_sums(i0, y0, y1, half)
        # Sums of unsigned pixels: their product is positive when both are.
        ok = (s1 > 0) & (s0 > 0)
        with np.errstate(all="ignore"):
            mu = np.where(ok, np.log(s0 / s1), 1.0)
        mu = mu.reshape(nf, -1).T.copy()
        out[y0:y1, :] = edge_positions(mu, e).reshape(y1 - y0, side)
    print("%.3f" % (time.perf_counter() - t))
    out.tofile(outp)


if __name__ == "__main__":
    main()
