#!/usr/bin/python3
"""Writes the element data resources of Tessarelle.

    resources/Victoreen1.txt   absorption edges (keV), edge wavelengths (A) and
                               Victoreen C/D coefficients, H..U, one row per element
    resources/xray-KLIII.txt   emission lines and edges in eV, Li..U

and, with --weights, prints the element list (z, symbol, standard atomic
weight) as C++ rows for src/spectrum/ElementTable.cpp.

The generated files are committed, so building Tessarelle never needs this
script or its inputs. To run it on Debian:

    apt-get install -y python3-xraylib python3-periodictable
    /usr/bin/python3 scripts/make-element-tables.py            # writes both files
    /usr/bin/python3 scripts/make-element-tables.py --weights  # prints the C++ rows

Sources: edge and line energies from xraylib (its tables follow the
published compilations of edge energies and of X-ray transition energies);
standard atomic weights from periodictable (IUPAC values; elements without a
standard weight carry the mass number of their longest-lived isotope).

Victoreen coefficients are not in either package. The rows of H, Cu and Pr
keep the values the program has always shipped (written out below, verbatim);
every other C/D field is "=", which the reader takes as "no value" (0).
The fifth edge column holds the M1 edge, the one below LIII that bounds the
range of the fifth coefficient pair; the three verbatim rows keep "=" there.
"""

import argparse
import os
import sys

import periodictable
import xraylib

# Energy (keV) times wavelength (angstrom).
HC_KEV_A = 12.398424360387684

# Rows that are kept exactly as they have always stood.
VERBATIM = {
    1: "H          1   =   =   0.0127  0.00000466  =  =  =  =  =  =  =  =  =  =  =  =  =  =  =",
    29: "Cu        29   8.98436029  1.38  176  48.3  1.1  11.27128836  15.6  0.779  0.954  12.99624444  =  =  0.935  13.26033925  =  =  =  =  =",
    59: "Pr        59  41.999  0.295207438  =  =  6.838  1.8108  176  50.2  6.447  1.924  149  32.7  5.966  2.077  71.7  11.5  =  26.1  2.83",
}

# Given values for the lightest elements; they stand in the table as written.
GIVEN_WEIGHTS = {1: 1.0079, 2: 4.0026, 3: 6.941, 4: 9.01218, 5: 10.81, 6: 12.011}


def edge_kev(z, shell):
    try:
        e = xraylib.EdgeEnergy(z, shell)
    except ValueError:
        return None
    return e if e > 0 else None


def line_kev(z, line):
    try:
        e = xraylib.LineEnergy(z, line)
    except ValueError:
        return None
    return e if e > 0 else None


def fmt_kev(e):
    return "=" if e is None else "{:.6g}".format(e)


def fmt_angstrom(e):
    return "=" if e is None else "{:.10g}".format(HC_KEV_A / e)


def victoreen_rows():
    heading = ("Elm  Z  K keV  K \u00c5  C1  D1  LI keV  LI \u00c5  C2  D2  "
               "LII keV  LII \u00c5  C3  D3  LIII keV  LIII \u00c5  C4  D4  M keV  C5  D5")
    rows = [heading]
    shells = (xraylib.K_SHELL, xraylib.L1_SHELL, xraylib.L2_SHELL, xraylib.L3_SHELL)
    for z in range(1, 93):
        if z in VERBATIM:
            rows.append(VERBATIM[z])
            continue
        fields = [xraylib.AtomicNumberToSymbol(z).ljust(8), "{:3d}".format(z)]
        for shell in shells:
            e = edge_kev(z, shell)
            fields += [fmt_kev(e), fmt_angstrom(e), "=", "="]
        fields += [fmt_kev(edge_kev(z, xraylib.M1_SHELL)), "=", "="]
        assert len(fields) == 21
        rows.append("  ".join(fields))
    return rows


def fmt_ev(e):
    return "0" if e is None else "{:.1f}".format(e * 1000.0)


def klIII_rows():
    columns = "Elm  Z  Ka2  Ka1  Kb  La2  La1  Lb1  Lb2  K  LIII  LII  LI"
    rows = [
        "#" + columns,
        "# X-ray emission lines and absorption edges, eV; 0 where there is none.",
        "# Ka2 = K-LII, Ka1 = K-LIII, Kb = Kb1 (K-MIII),",
        "# La2 = LIII-MIV, La1 = LIII-MV, Lb1 = LII-MIV, Lb2 = LIII-NV.",
        "# K, LIII, LII, LI: absorption edges.",
        "# One row per element, Li to U, in order of atomic number.",
        "# Written by scripts/make-element-tables.py; do not edit by hand.",
        "#",
        "#" + columns,
    ]
    lines = (xraylib.KL2_LINE, xraylib.KL3_LINE, xraylib.KB_LINE, xraylib.LA2_LINE,
             xraylib.LA1_LINE, xraylib.LB1_LINE, xraylib.LB2_LINE)
    edges = (xraylib.K_SHELL, xraylib.L3_SHELL, xraylib.L2_SHELL, xraylib.L1_SHELL)
    for z in range(3, 93):
        fields = [xraylib.AtomicNumberToSymbol(z).ljust(3), "{:3d}".format(z)]
        fields += [fmt_ev(line_kev(z, l)) for l in lines]
        fields += [fmt_ev(edge_kev(z, s)) for s in edges]
        rows.append("  ".join(f.rjust(8) if i > 1 else f for i, f in enumerate(fields)))
    return rows


def weight_rows():
    out = ['    {   0, " ", 0 },']
    for z in range(1, 110):
        el = periodictable.elements[z]
        if z in GIVEN_WEIGHTS:
            mass = GIVEN_WEIGHTS[z]
        elif z >= 105:
            mass = 0
        else:
            mass = el.mass
        out.append('    { %3d, "%s", %s },' % (z, el.symbol, repr(float(mass))))
    out.append('    { 110, "D", 2.01355321 },')
    return out


def write(path, rows):
    with open(path, "w", encoding="utf-8", newline="\n") as f:
        f.write("\n".join(rows) + "\n")
    print("wrote %s (%d lines)" % (path, len(rows)))


def main():
    ap = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    ap.add_argument("--weights", action="store_true",
                    help="print the element list as C++ rows instead of writing the files")
    ap.add_argument("--out", default=os.path.join(os.path.dirname(os.path.abspath(__file__)),
                                                   "..", "resources"),
                    help="folder to write the resources into")
    args = ap.parse_args()
    if args.weights:
        print("\n".join(weight_rows()))
        return 0
    write(os.path.join(args.out, "Victoreen1.txt"), victoreen_rows())
    write(os.path.join(args.out, "xray-KLIII.txt"), klIII_rows())
    return 0


if __name__ == "__main__":
    sys.exit(main())
