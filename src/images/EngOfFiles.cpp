#include "images/EngOfFiles.h"

#include "images/RefEnergies.h"

EngOfFiles::Source EngOfFiles::source() const
{
    if (fromFileName)
        return ByName;
    if (fromRefFile && !fromFileNum)
        return ByRefFile;
    return ByNumber;
}

double EngOfFiles::energyOf(const QString &fileName, int fNo, int totalFiles,
                            const RefEnergies &ref, double d) const
{
    switch (source()) {
    case ByName:
        return byName.energy(fileName, fNo);
    case ByRefFile:
        return ref.energy(fNo, totalFiles, correspondFromEnd);
    case ByNumber:
        break;
    }
    return calc.fromNumber(fNo, d);
}
