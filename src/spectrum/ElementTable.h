#pragma once

#include <QString>

// The element list: z, symbol and standard atomic weight. Row i holds z == i,
// so a symbol's row number is its atomic number. Row 0 is the blank symbol
// " " and the last row is deuterium "D", which has no place in the periodic
// order and is given z 110 by convention.
struct ElementRow
{
    int z;
    const char *symbol;
    double mass; // standard atomic weight; 0 where none is known
};

constexpr int ElementRowCount = 111;
extern const ElementRow elementList[ElementRowCount];

// Edge names in the order of the edge index used by every analysis.
constexpr int EdgeNameCount = 4;
extern const char *const edgeNames[EdgeNameCount];

// The row's z for an exact, case-sensitive symbol match ("Cu" but not "cu"),
// or -1 when the list has no such symbol.
int elementNumber(const QString &symbol);

// Edge index of a name, case-insensitive: "K" 0, "L1"/"LI" 1, "L2"/"LII" 2,
// "L3"/"LIII" 3. Anything else is taken as the K edge (0), so an unknown
// name still gives a usable index.
int edgeNumber(const QString &name);
