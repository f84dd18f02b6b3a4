#!/usr/bin/env python3
"""Writes a synthetic transmission stack across the Cu K edge for trying out
Tessarelle: I1 and I0 frames as 16-bit grey TIFFs, the energy in each file
name (i1_08979.50.tif), and a batch file demo.bat that loads both stacks.

The sample: a copper disc (edge 8979 eV) and a copper-oxide disc (edge
shifted up by 4 eV, with a white line) on a thin support, under a beam that
is brighter in the middle and fades slowly with energy. I1 = I0 exp(-mu t)
with counting noise.

Python's standard library only, so that it runs on a bare Debian machine.

Usage: make-demo-data.py [directory]   (default: demo-data)
"""

import math
import os
import random
import struct
import sys

SIZE = 128
E_FIRST, E_LAST, E_STEP = 8900.0, 9100.0, 1.0
EDGE_CU = 8979.0
EDGE_OXIDE = 8983.0
CU_X, CU_Y = 48, 56  # centre of the copper disc, pixels
I0_COUNTS = 20000.0


def tiff16(width, height, pixels):
    """A little-endian, uncompressed, one-strip 16-bit grey TIFF."""
    data = struct.pack("<%dH" % (width * height), *pixels)
    entries = [
        (256, 4, 1, width),            # ImageWidth
        (257, 4, 1, height),           # ImageLength
        (258, 3, 1, 16),               # BitsPerSample
        (259, 3, 1, 1),                # Compression: none
        (262, 3, 1, 1),                # Photometric: black is zero
        (273, 4, 1, 0),                # StripOffsets, patched below
        (277, 3, 1, 1),                # SamplesPerPixel
        (278, 4, 1, height),           # RowsPerStrip
        (279, 4, 1, len(data)),        # StripByteCounts
        (284, 3, 1, 1),                # PlanarConfiguration: contiguous
    ]
    ifd_offset = 8
    ifd_size = 2 + 12 * len(entries) + 4
    strip_offset = ifd_offset + ifd_size
    out = bytearray(b"II*\x00" + struct.pack("<I", ifd_offset))
    out += struct.pack("<H", len(entries))
    for tag, typ, count, value in entries:
        if tag == 273:
            value = strip_offset
        # SHORT values sit left-justified in the 4-byte field.
        field = struct.pack("<HH", value, 0) if typ == 3 else struct.pack("<I", value)
        out += struct.pack("<HHI", tag, typ, count) + field
    out += struct.pack("<I", 0)
    out += data
    return bytes(out)


def edge_step(e, edge, width):
    """A smooth absorption step from 0 to 1 around the edge."""
    return 0.5 + math.atan((e - edge) / width) / math.pi


def mu_cu(e):
    """Absorption of the metal disc per unit thickness: falling pre-edge,
    the edge step, and a few damped oscillations above it."""
    pre = 0.25 * (EDGE_CU / e) ** 3
    k = math.sqrt(max(e - EDGE_CU, 0.0) / 3.81)
    osc = 0.06 * math.sin(2 * 2.55 * k) * math.exp(-0.02 * k * k) if e > EDGE_CU else 0.0
    return pre + 1.6 * edge_step(e, EDGE_CU, 1.5) * (1.0 + osc)


def mu_oxide(e):
    """The oxide: the edge 4 eV higher and a white line just above it."""
    pre = 0.22 * (EDGE_OXIDE / e) ** 3
    white = 0.9 * math.exp(-((e - (EDGE_OXIDE + 14.0)) / 4.0) ** 2)
    return pre + 1.3 * edge_step(e, EDGE_OXIDE, 2.0) + white


def thickness_maps():
    """Per pixel thickness of metal and oxide: two discs with soft rims."""
    cu = [0.0] * (SIZE * SIZE)
    ox = [0.0] * (SIZE * SIZE)
    for y in range(SIZE):
        for x in range(SIZE):
            i = y * SIZE + x
            r1 = math.hypot(x - CU_X, y - CU_Y)
            cu[i] = 1.0 / (1.0 + math.exp((r1 - 30.0) / 1.5))
            r2 = math.hypot(x - 92, y - 84)
            ox[i] = 0.8 / (1.0 + math.exp((r2 - 20.0) / 1.5))
    return cu, ox


def beam_profile():
    """The incident beam: brighter in the middle, a gentle slope across."""
    prof = [0.0] * (SIZE * SIZE)
    for y in range(SIZE):
        for x in range(SIZE):
            dx = (x - SIZE / 2) / SIZE
            dy = (y - SIZE / 2) / SIZE
            prof[y * SIZE + x] = math.exp(-(dx * dx + dy * dy) * 2.0) * (1.0 - 0.15 * dx)
    return prof


def clamp16(v):
    v = int(v)
    return 0 if v < 0 else 65535 if v > 65535 else v


def main():
    out_dir = os.path.abspath(sys.argv[1] if len(sys.argv) > 1 else "demo-data")
    os.makedirs(out_dir, exist_ok=True)
    rng = random.Random(7112)
    # Counting noise from a table of normal deviates, drawn at random
    # offsets: a few hundred thousand gauss() calls per frame would make the
    # script slow, and the demo needs no better statistics.
    noise = [rng.gauss(0.0, 1.0) for _ in range(1 << 16)]
    mask = (1 << 16) - 1

    cu, ox = thickness_maps()
    prof = beam_profile()
    support = 0.05
    n = int(round((E_LAST - E_FIRST) / E_STEP)) + 1
    for k in range(n):
        e = E_FIRST + k * E_STEP
        fade = I0_COUNTS * (1.0 - 0.1 * (e - E_FIRST) / (E_LAST - E_FIRST))
        m_cu, m_ox = mu_cu(e), mu_oxide(e)
        i0 = [0] * (SIZE * SIZE)
        i1 = [0] * (SIZE * SIZE)
        off = rng.randrange(1 << 16)
        for i in range(SIZE * SIZE):
            b = fade * prof[i]
            n0 = noise[(off + i) & mask]
            n1 = noise[(off + 7 * i + 12345) & mask]
            i0[i] = clamp16(b + math.sqrt(b) * n0)
            t = b * math.exp(-(m_cu * cu[i] + m_ox * ox[i] + support))
            i1[i] = clamp16(t + math.sqrt(t) * n1)
        name = "%08.2f" % e
        with open(os.path.join(out_dir, "i1_%s.tif" % name), "wb") as f:
            f.write(tiff16(SIZE, SIZE, i1))
        with open(os.path.join(out_dir, "i0_%s.tif" % name), "wb") as f:
            f.write(tiff16(SIZE, SIZE, i0))

    # The energy in the names reads "08979.50": the pattern takes the last
    # four integer digits and two decimals.
    with open(os.path.join(out_dir, "demo.bat"), "w") as f:
        f.write("set_i1_energy_pattern \\d\\d\\d\\d\\.\\d\\d\n")
        f.write("set_i0_energy_pattern \\d\\d\\d\\d\\.\\d\\d\n")
        f.write("load_I1_files_of_pattern new \"%s/\" *i1_*.tif\n" % out_dir)
        f.write("load_I0_files_of_pattern new \"%s/\" *i0_*.tif\n" % out_dir)
        f.write("seek_image %d\n" % int(round((EDGE_CU + 20 - E_FIRST) / E_STEP)))
        # The pointer on the copper disc: the plot shows its edge at once.
        f.write("move_position %d %d\n" % (CU_X, CU_Y))
    print("%d energies, %d x %d pixels, in %s" % (n, SIZE, SIZE, out_dir))


if __name__ == "__main__":
    main()
