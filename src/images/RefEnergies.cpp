#include "images/RefEnergies.h"

#include "app/Units.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <QTextStream>

bool RefEnergies::read(const QString &path, double d)
{
    const QFileInfo info(path);
    QFile file(path);
    // A device or a directory would never give a line end, or nothing at all.
    if (!info.isFile() || info.size() > MaxFileSize
        || !file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        qDebug().noquote() << "Can't open ref file" << path;
        return false;
    }

    QTextStream in(&file);
    QString line;
    in.readLineInto(&line);
    const QStringList head = line.simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts);

    int angleCol = 0;
    energies.clear();
    if (!head.isEmpty() && head.first() == QLatin1String("9809")) {
        angleCol = 1;
        // The header runs up to and including the "Offset" line.
        while (in.readLineInto(&line)) {
            if (line.simplified().startsWith(QLatin1String("Offset")))
                break;
        }
    }
    qDebug().noquote() << "reading simple";

    while (in.readLineInto(&line)) {
        const QStringList words = line.simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts);
        if (words.size() <= angleCol || words.first().startsWith(QLatin1Char('#')))
            continue;
        energies.append(Units::angleToEnergy(words.at(angleCol).toDouble(), d));
    }
    return true;
}

double RefEnergies::energy(int fNo, int totalFiles, bool fromEnd) const
{
    if (energies.isEmpty())
        return StandBy + fNo;
    const qsizetype i = rowOf(fNo, totalFiles, energies.size(), fromEnd);
    if (i < 0)
        return energies.first();
    if (i >= energies.size())
        return energies.last();
    return energies.at(i);
}
