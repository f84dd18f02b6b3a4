#pragma once

#include "images/EngByName.h"
#include "images/EngCalc.h"

#include <QString>

class RefEnergies;

// The settings that decide each frame's energy, as one value: the three
// energy sources with their parameters. The setup window builds one from its
// fields at the moment a frame asks, so what the user typed last counts.
struct EngOfFiles
{
    enum Source { ByName, ByRefFile, ByNumber };

    // The three choices of the window. They are checked in this order and
    // the first that applies is the only one used: the name when chosen;
    // the reference file when chosen and the number is not; else the number.
    bool fromFileName = true;
    bool fromRefFile = false;
    bool fromFileNum = false;

    EngByName byName{ EngByName::knownPatterns().first(), 1 };
    bool correspondFromEnd = true;
    EngCalc calc;

    Source source() const;

    // Energy in eV of frame fNo (its index in the selected list of
    // totalFiles files) read from fileName, with crystal spacing d.
    double energyOf(const QString &fileName, int fNo, int totalFiles, const RefEnergies &ref,
                    double d) const;
};
