#pragma once

// Energy of a frame from its number in the stack, by a scan recipe: start,
// delta, end and number of points, given in eV, keV or degrees, and evenly
// spaced either in energy or in monochromator angle.
struct EngCalc
{
    // Indices of the unit selector. It offers eV, keV and deg only, so 2
    // means degrees here, unlike the index of the shared unit table.
    enum DispUnit { DispEV = 0, DispKeV = 1, DispDeg = 2 };

    double start = 8000;
    double delta = 1;
    double end = 9000;
    double num = 1000;
    int unit = DispEV;
    bool evenInEnergy = false; // false: even in angle

    // The energy in eV of frame i, with crystal spacing d. Even in angle
    // with eV or keV, frame i sits at i/num of the way from the angle of
    // start to the angle of end, so delta is not used there, and num = 0
    // divides by zero without being caught. An energy the crystal cannot
    // reach has the angle -1 and the arithmetic goes on with it. Unknown
    // unit indices count as eV.
    double fromNumber(int i, double d) const;

    // The linked recipe fields: a new start or delta moves the end, a new
    // end or number of points moves the delta. The delta is (start - end) /
    // num, so it comes out negative for a rising scan; that sign is how the
    // program has always behaved.
    static double endOf(double start, double delta, double num) { return num * delta + start; }
    static double deltaOf(double start, double end, double num) { return (start - end) / num; }
};
