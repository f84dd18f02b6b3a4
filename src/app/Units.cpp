#include "app/Units.h"

#include <cmath>

Units::Units(QObject *parent)
    : QObject(parent)
{
}

double Units::angleToEnergy(double deg, double d)
{
    const double s = std::sin(deg / DEG * PI);
    return HC / ((s + s) * d);
}

double Units::energyToAngle(double eV, double d)
{
    const double x = (HC / eV) / (2 * d);
    if (std::fabs(x) > 1)
        return NoAngle;
    return std::asin(x) / PI * DEG;
}

void Units::setD(double d)
{
    D = d;
}
