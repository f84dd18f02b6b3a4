#pragma once

#include <QMetaType>

// Two landmarks on the smoothed spectrum above an edge: the white-line fall at
// e1 with its height dM over the pre-edge line, and the rise that follows at
// e2. Crosses from the worker to the window by value, so it stays a record.
// All three are 0 until found.
struct FeatureValue
{
    double dM = 0;
    double e1 = 0;
    double e2 = 0;
};

Q_DECLARE_METATYPE(FeatureValue)
