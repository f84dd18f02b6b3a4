#pragma once

// Loops over a spectrum's points that the compiler runs several points at a
// time are built twice, for AVX2 and for the baseline, and the processor's
// best is picked when the program loads: four lanes instead of two. AVX2
// brings no fused multiply-add (that is an extension of its own, left off),
// so every lane rounds exactly as the scalar code does and the numbers stay
// the same on any processor.
#if defined(__GNUC__) && !defined(__clang__) && defined(__x86_64__) && !defined(__SANITIZE_ADDRESS__)
#define TESSARELLE_VECTOR_CLONES __attribute__((target_clones("avx2", "default")))
#else
#define TESSARELLE_VECTOR_CLONES
#endif
