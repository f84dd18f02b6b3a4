#pragma once

// Natural logarithms of a run of numbers, y[i] = std::log(x[i]) to the bit.
//
// A map takes some three hundred logarithms per point, a sixth of its time
// when each is a call into the C library. On x86-64 processors with AVX2 and
// FMA the library's own method (a 128-entry table and a short polynomial,
// with fused multiply-adds in fixed places) is carried out here four numbers
// at a time with the same table, the same constants and the same operations
// in the same order, so every result is the library's. Numbers the library
// treats apart (near 1, zero, negative, subnormal, infinite, NaN) are handed
// to std::log one by one.
//
// The four-at-a-time path is switched on only after it has matched
// std::log over every table entry and the bounds of the special ranges, the
// first time it is asked for; otherwise (another library, another processor)
// every number goes to std::log.
void logarithms(const double *x, double *y, int n);

// Whether logarithms() runs four at a time on this machine.
bool logarithmsVectorised();
