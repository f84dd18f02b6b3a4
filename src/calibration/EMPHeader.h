#pragma once

// The header of an energy map file (.emp): where the map lies on the
// detector, the walk that made it, and the two numbers that turn its angle
// differences back into energies.
//
// valid is true only when the separator line was reached and the width,
// height, edge energy and spacing were all given; the other fields then hold
// what the file said (0 for what it did not say or could not be read).
struct EMPHeader
{
    bool valid = false;
    int xOffset = 0;  // frame offsets of the map
    int yOffset = 0;
    int width = 0;    // image size of the map
    int height = 0;
    int binHalfW = 0; // half width and height of a cell
    int binHalfH = 0;
    int areaX0 = 0;   // the calibrated area
    int areaX1 = 0;
    int areaY0 = 0;
    int areaY1 = 0;
    double stdEdgeE = 0; // edge energy of the standard, eV
    double spacing = 0;  // lattice spacing of the crystal, angstrom
};
