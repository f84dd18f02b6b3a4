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


def box_sums(stack, y0, y1, h):
    """Box sums (2h+1 square, pixels outside count 0) centred on rows y0..y1-1."""
    nf, side, _ = stack.shape
    a, b = max(y0 - h, 0), min(y1 + h, side)
    band = stack[:, a:b, :].astype(np.int64)
    cv = np.zeros((nf, b - a + 1, side), np.int64)
    np.cumsum(band, axis=1, out=cv[:, 1:, :])
    ys = np.arange(y0, y1)
    top = np.clip(ys - h, a, b) - a
    bottom = np.clip(ys + h + 1, a, b) - a
    rows = cv[:, bottom, :] - cv[:, top, :]
    ch = np.zeros((nf, y1 - y0, side + 1), np.int64)
    np.cumsum(rows, axis=2, out=ch[:, :, 1:])
    xs = np.arange(side)
    left = np.clip(xs - h, 0, side)
    right = np.clip(xs + h + 1, 0, side)
    return (ch[:, :, right] - ch[:, :, left]).astype(np.float64)


def line_fit(e, y, mask):
    """Least-squares straight lines over the masked points of each spectrum."""
    m = mask.astype(np.float64)
    n = m.sum(1)
    sx = (m * e).sum(1)
    sxx = (m * e * e).sum(1)
    sy = (m * y).sum(1)
    sxy = (m * e * y).sum(1)
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
    i = np.arange(n)
    lo = np.maximum(i - 2, 0)
    hi = np.minimum(i + 2, n - 1)
    s = (c[:, hi + 1] - c[:, lo]) / (hi - lo + 1)

    d = s[:, 1:] - s[:, :-1]
    best = np.argmax(d, axis=1)
    best[d[rows, best] <= 0] = 0
    x = e[best]
    ee = e[None, :]
    ps, pi = line_fit(ee, mu, ee < (x - 10)[:, None])
    qs, qi = line_fit(ee, mu, (ee >= (x + 10)[:, None]) & (ee < e[-1]))
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

    def pre(v):
        out = ps[:, None] * v + pi[:, None]
        dS = (qs - ps)[:, None]
        g = dS * pe2[:, None] + (qi - pi)[:, None]
        with np.errstate(all="ignore"):
            ra = -(2 * dS * pe2[:, None] + (qi - pi)[:, None]) / dS
            bent = qs[:, None] * v + qi[:, None] + (g * g / dS) / (v + ra)
        return np.where((v > pe2[:, None]) & bend_pre[:, None], bent, out)

    def post(v):
        out = qs[:, None] * v + qi[:, None]
        dS = (qs - ps)[:, None]
        g = dS * qe1[:, None] + (qi - pi)[:, None]
        with np.errstate(all="ignore"):
            ra = -(2 * dS * qe1[:, None] + (qi - pi)[:, None]) / dS
            bent = ps[:, None] * v + pi[:, None] - (g * g / dS) / (v + ra)
        return np.where((v < qe1[:, None]) & bend_post[:, None], bent, out)

    level = 0.5 * post(ee) + 0.5 * pre(ee)
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
    band = 32
    for y0 in range(0, side, band):
        y1 = min(y0 + band, side)
        s1 = box_sums(i1, y0, y1, half)
        s0 = box_sums(i0, y0, y1, half)
        with np.errstate(all="ignore"):
            mu = np.where(s1 * s0 > 0, np.log(s0 / s1), 1.0)
        mu = mu.reshape(nf, -1).T.copy()
        out[y0:y1, :] = edge_positions(mu, e).reshape(y1 - y0, side)
    print("%.3f" % (time.perf_counter() - t))
    out.tofile(outp)


if __name__ == "__main__":
    main()
