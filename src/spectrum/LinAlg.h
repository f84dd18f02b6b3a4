#pragma once

#include <cstdio>

// Small dense linear algebra: square matrices as arrays of n row pointers,
// vectors as arrays of n doubles. The systems solved here are 2x2 to about
// 10x10, so the code favours plain loops over anything clever.
//
// Every operation takes the size n first. n < 1 is a no-op; where a result
// exists it is true (or 0 zero pivots for invert).
//
// The LU solver pivots by rows without moving them: perm[k] names the stored
// row that plays row k. The matrices and vectors keep their original row
// order and all access goes through perm, so the k-th unknown of a solved
// system is x[perm[k]]. Failures (an exactly zero pivot) are reported through
// the bool result; the outputs then hold whatever the arithmetic reached.

// Storage. allocMat returns one block of n*n zeroed doubles behind n row
// pointers; release it with freeMat. n < 1 gives nullptr, which the free
// functions accept.
double **allocMat(int n);
void freeMat(int n, double **m);
double *allocVec(int n);
void freeVec(double *v);
int *allocIntVec(int n);
void freeIntVec(int *v);

void zeroMat(int n, double **m);
void unitMat(int n, double **m);
void zeroVec(int n, double *v);

// b = a
void copyMat(int n, const double *const *a, double **b);
void copyVec(int n, const double *a, double *b);

bool matHasNaN(int n, const double *const *m);
bool vecHasNaN(int n, const double *v);

// c = a b; c must not be a or b.
void matMul(int n, const double *const *a, const double *const *b, double **c);
// y = a x; y must not be x.
void matVec(int n, const double *const *a, const double *x, double *y);

// Decomposes a into l (unit lower) and u (upper), both stored in a's row
// order and read through perm. a stays intact. False when a pivot is exactly
// zero (that column is then left uneliminated; a NaN pivot is not zero);
// perm is a valid permutation either way.
bool luDecompose(int n, const double *const *a, double **l, double **u, int *perm);
// Solves l y = b. y may be b.
bool forwardSolve(int n, const double *const *l, const double *b, double *y, const int *perm);
// Solves u x = y. x may be y.
bool backSolve(int n, const double *const *u, const double *y, double *x, const int *perm);
// The three steps above in order with scratch storage; all three always run,
// and the result is true only if all three succeeded.
bool luSolve(int n, const double *const *a, const double *b, double *x, int *perm);
// Solves a x = b and returns the unknowns in b in their natural order.
bool solveInPlace(int n, const double *const *a, double *b);

// b = inverse of a by Gauss-Jordan sweeps on the diagonal, taking in each
// round the unused diagonal entry of largest magnitude. A round whose pivot is
// exactly zero is skipped; the result is the number of such rounds, so 0
// means b holds the inverse. a stays intact; b must not be a.
int invert(int n, const double *const *a, double **b);

// Debug dumps: "# name = " then the entries, one row a line, each line of the
// dump starting with "# ".
void printMat(int n, const double *const *m, const char *name, FILE *out = stdout);
void printVec(int n, const double *v, const char *name, FILE *out = stdout);
void printIntMat(int n, const int *const *m, const char *name, FILE *out = stdout);
void printIntVec(int n, const int *v, const char *name, FILE *out = stdout);
