#pragma once

#include "images/AbsorptionInput.h"
#include "images/BoxColumnSums.h"
#include "images/BoxRowSums.h"
#include "images/FrameStamp.h"
#include "spectrum/Spectrum.h"

#include <vector>

class TiffData;

// A section along a row (horizontal) or down a column (vertical) of one
// frame, as Absorption::horizontalSection and verticalSection describe it,
// for the pointer: the box sums along the section are kept and slid as the
// pointer moves across it, and a section whose inputs are all as last time
// is handed back without being taken again. Same sums, same numbers.
class CrossSection
{
public:
    explicit CrossSection(bool horizontal)
        : m_horizontal(horizontal)
    {
    }

    // `at` is the row of a horizontal section, the column of a vertical one.
    void take(const AbsorptionInput &in, int index, bool inI0Stack, int at, int hw, int vw, bool asAbsorption,
              Spectrum &out);

private:
    // What a frame's sums depend on; the energy too, for the interpolation.
    struct FrameKey
    {
        FrameStamp stamp;
        double energy = 0;
        bool operator==(const FrameKey &o) const;
    };
    // Everything a section is made from but the place along the other axis.
    struct Key
    {
        std::vector<FrameKey> frames;
        int hw = 0;
        int vw = 0;
        qint64 along = 0;
        qint64 across = 0;
        bool asAbsorption = false;
        bool fluoType = false;
        qsizetype i0Count = 0;
        bool operator==(const Key &o) const;
    };

    bool m_horizontal;
    BoxRowSums m_rowSums;
    BoxColumnSums m_colSums;
    bool m_set = false; // the sums are set up for m_key
    Key m_key;
    bool m_have = false; // m_last is the section at m_at
    int m_at = 0;
    Spectrum m_last;
};
