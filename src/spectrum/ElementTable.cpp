#include "spectrum/ElementTable.h"

// Standard atomic weights (IUPAC); elements without a standard weight carry
// the mass number of their longest-lived isotope, and Db..Mt carry 0. H to C
// keep the shorter values the program has always shown.
// The rows 1..109 are printed by scripts/make-element-tables.py --weights.
const ElementRow elementList[ElementRowCount] = {
    {   0, " ", 0 },
    {   1, "H", 1.0079 },
    {   2, "He", 4.0026 },
    {   3, "Li", 6.941 },
    {   4, "Be", 9.01218 },
    {   5, "B", 10.81 },
    {   6, "C", 12.011 },
    {   7, "N", 14.0067 },
    {   8, "O", 15.9994 },
    {   9, "F", 18.9984032 },
    {  10, "Ne", 20.1797 },
    {  11, "Na", 22.98977 },
    {  12, "Mg", 24.305 },
    {  13, "Al", 26.981538 },
    {  14, "Si", 28.0855 },
    {  15, "P", 30.973761 },
    {  16, "S", 32.065 },
    {  17, "Cl", 35.453 },
    {  18, "Ar", 39.948 },
    {  19, "K", 39.0983 },
    {  20, "Ca", 40.078 },
    {  21, "Sc", 44.95591 },
    {  22, "Ti", 47.867 },
    {  23, "V", 50.9415 },
    {  24, "Cr", 51.9961 },
    {  25, "Mn", 54.938049 },
    {  26, "Fe", 55.845 },
    {  27, "Co", 58.9332 },
    {  28, "Ni", 58.6934 },
    {  29, "Cu", 63.546 },
    {  30, "Zn", 65.409 },
    {  31, "Ga", 69.723 },
    {  32, "Ge", 72.64 },
    {  33, "As", 74.9216 },
    {  34, "Se", 78.96 },
    {  35, "Br", 79.904 },
    {  36, "Kr", 83.798 },
    {  37, "Rb", 85.4678 },
    {  38, "Sr", 87.62 },
    {  39, "Y", 88.90585 },
    {  40, "Zr", 91.224 },
    {  41, "Nb", 92.90638 },
    {  42, "Mo", 95.94 },
    {  43, "Tc", 98.0 },
    {  44, "Ru", 101.07 },
    {  45, "Rh", 102.9055 },
    {  46, "Pd", 106.42 },
    {  47, "Ag", 107.8682 },
    {  48, "Cd", 112.411 },
    {  49, "In", 114.818 },
    {  50, "Sn", 118.71 },
    {  51, "Sb", 121.76 },
    {  52, "Te", 127.6 },
    {  53, "I", 126.90447 },
    {  54, "Xe", 131.293 },
    {  55, "Cs", 132.90545 },
    {  56, "Ba", 137.327 },
    {  57, "La", 138.9055 },
    {  58, "Ce", 140.116 },
    {  59, "Pr", 140.90765 },
    {  60, "Nd", 144.24 },
    {  61, "Pm", 145.0 },
    {  62, "Sm", 150.36 },
    {  63, "Eu", 151.964 },
    {  64, "Gd", 157.25 },
    {  65, "Tb", 158.92534 },
    {  66, "Dy", 162.5 },
    {  67, "Ho", 164.93032 },
    {  68, "Er", 167.259 },
    {  69, "Tm", 168.93421 },
    {  70, "Yb", 173.04 },
    {  71, "Lu", 174.967 },
    {  72, "Hf", 178.49 },
    {  73, "Ta", 180.9479 },
    {  74, "W", 183.84 },
    {  75, "Re", 186.207 },
    {  76, "Os", 190.23 },
    {  77, "Ir", 192.217 },
    {  78, "Pt", 195.078 },
    {  79, "Au", 196.96655 },
    {  80, "Hg", 200.59 },
    {  81, "Tl", 204.3833 },
    {  82, "Pb", 207.2 },
    {  83, "Bi", 208.98038 },
    {  84, "Po", 209.0 },
    {  85, "At", 210.0 },
    {  86, "Rn", 222.0 },
    {  87, "Fr", 223.0 },
    {  88, "Ra", 226.0 },
    {  89, "Ac", 227.0 },
    {  90, "Th", 232.0381 },
    {  91, "Pa", 231.03588 },
    {  92, "U", 238.02891 },
    {  93, "Np", 237.0 },
    {  94, "Pu", 244.0 },
    {  95, "Am", 243.0 },
    {  96, "Cm", 247.0 },
    {  97, "Bk", 247.0 },
    {  98, "Cf", 251.0 },
    {  99, "Es", 252.0 },
    { 100, "Fm", 257.0 },
    { 101, "Md", 258.0 },
    { 102, "No", 259.0 },
    { 103, "Lr", 262.0 },
    { 104, "Rf", 261.0 },
    { 105, "Db", 0.0 },
    { 106, "Sg", 0.0 },
    { 107, "Bh", 0.0 },
    { 108, "Hs", 0.0 },
    { 109, "Mt", 0.0 },
    { 110, "D", 2.01355321 },
};

const char *const edgeNames[EdgeNameCount] = {"K", "LI", "LII", "LIII"};

int elementNumber(const QString &symbol)
{
    for (const ElementRow &row : elementList) {
        if (symbol == QLatin1String(row.symbol))
            return row.z;
    }
    return -1;
}

int edgeNumber(const QString &name)
{
    const QString upper = name.toUpper();
    if (upper == QLatin1String("L1") || upper == QLatin1String("LI"))
        return 1;
    if (upper == QLatin1String("L2") || upper == QLatin1String("LII"))
        return 2;
    if (upper == QLatin1String("L3") || upper == QLatin1String("LIII"))
        return 3;
    return 0; // "K" and everything unknown
}
