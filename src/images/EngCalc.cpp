#include "images/EngCalc.h"

#include "app/Units.h"

double EngCalc::fromNumber(int i, double d) const
{
    if (unit == DispDeg)
        return Units::angleToEnergy(start + delta * i, d);

    const double scale = unit == DispKeV ? KEV : 1.0;
    if (evenInEnergy)
        return (start + delta * i) * scale;

    const double a0 = Units::energyToAngle(start * scale, d);
    const double a1 = Units::energyToAngle(end * scale, d);
    return Units::angleToEnergy(a0 + i * (a1 - a0) / num, d);
}
