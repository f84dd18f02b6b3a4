#pragma once

// hc in eV times angstrom: wavelength = kHcEVAngstrom / energy. Every
// conversion between energy and wavelength in the program uses this value.
constexpr double kHcEVAngstrom = 12398.424360387684;
