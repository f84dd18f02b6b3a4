#pragma once

class InnerProductStandard;
class XafsSpectrum;
struct SuggestElm;

// The edge position of one analysed spectrum relative to where the edge is
// expected, in eV: the map value of the edge ("dEdge") analysis.
//
// With isMidPoint: the spectrum's own midx at the ratio it was analysed with
// (so a point whose edge was out of its window or too noisy, and thus set to
// the suggested edge, shows as -eOffset), or findMidx(midRatio) at any other
// ratio, less eOffset and the suggested edge energy.
// Otherwise: the shift of best inner product against ref, searched over
// +-cwRangeEV from cwInitDEeV down to cwMinDEeV, less eOffset; the suggested
// edge is not subtracted, the search already gives a shift against ref.
// With refReading (ref.asStandard(), made once for a map) the search takes
// four candidates at a time, to the same bits.
double edgePosition(const XafsSpectrum &s, const SuggestElm &sElm, bool isMidPoint, double midRatio,
                    const XafsSpectrum &ref, double cwRangeEV, double cwInitDEeV, double cwMinDEeV,
                    const InnerProductStandard *refReading = nullptr);

// The step function an edge can be compared with: 0 below `at`, 1 from `at`
// on, sampled every `spacing` eV over a full width `width` centred on `at`
// (energies accumulated by repeated addition), analysed as "DEdge Step" with
// the default element. A spacing that does not advance the energy (0,
// negative, NaN or below its resolution) ends the sampling at once, and so
// does a count past MaxStepPoints: a script's typo must not hang the run.
XafsSpectrum dEdgeStep(double at, double width, double spacing);

inline constexpr int MaxStepPoints = 1 << 22;
