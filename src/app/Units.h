#pragma once

#include <QObject>

// Beamline data come either as monochromator angle (degrees) or as photon
// energy (eV); the program works in eV and converts at its edges.

// eV times angstrom.
constexpr double HC = 12398.424360387684;
// Pi to ten decimals on purpose: angles in existing files were converted with
// this value, and using the full-precision one would move every energy.
constexpr double PI = 3.1415926535;
constexpr double DEG = 180.0;
// Factor from keV to eV.
constexpr double KEV = 1000.0;

// Mark for an energy that the crystal cannot reach. Callers carry it on as a
// number, so it stays a plain value and not an error.
constexpr double NoAngle = -1.0;

// The units a value may be shown in, with the printf format for each.
struct UnitName
{
    const char *name;
    const char *form;
};
enum UnitIndex { UnitEV = 0, UnitKeV = 1, UnitA = 2, UnitDeg = 3 };
inline constexpr UnitName UnitNames[] = {
    { "eV", "% 8.2f" },
    { "keV", "% 8.5f" },
    { "A", "% 8.5f" },
    { "deg", "% 8.5f" },
};
inline constexpr int UnitCount = sizeof(UnitNames) / sizeof(UnitNames[0]);

// Monochromator crystals and their lattice spacing in angstrom. Si(111) here
// (3.1355316) is not the 3.13553 that Units starts with; both are kept as
// they have always been.
struct Crystal
{
    const char *name;
    double d;
};
inline constexpr Crystal Crystals[] = {
    { "Si(111)", 3.1355316 },
    { "Si(311)", 1.637478 },
    { "Si(333)", 1.0451772 },
    { "Ge(111)", 3.2663822 },
    { "Ge(333)", 1.0887941 },
};
inline constexpr int CrystalCount = sizeof(Crystals) / sizeof(Crystals[0]);

// Holder of the crystal spacing with the angle/energy conversions.
class Units : public QObject
{
    Q_OBJECT
public:
    static constexpr double DefaultD = 3.13553;

    explicit Units(QObject *parent = nullptr);

    double D = DefaultD;

    double a2e(double deg) const { return angleToEnergy(deg, D); }
    double e2a(double eV) const { return energyToAngle(eV, D); }

    // E = HC / (2 sin(a) D). The sine is taken once and doubled by adding it
    // to itself, then multiplied by D: this order reproduces the energies of
    // existing files to the last bit. An angle of 0 gives infinity, as it
    // always has.
    static double angleToEnergy(double deg, double d);
    // a = asin(HC / E / 2D); NoAngle (-1.0) when |HC / E / 2D| > 1.
    static double energyToAngle(double eV, double d);

public slots:
    void setD(double d);
};
