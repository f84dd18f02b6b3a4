// Body's bulk export: the spectrum of every point of the analysis area, one
// text line per point, as normalised XAFS, raw XAFS or raw I1 box sums.
#include "app/Body.h"

#include "saving/FileNames.h"
#include "ui_Body.h"

#include <QDebug>
#include <QFile>
#include <QTextStream>

namespace {

const char *firstLine(int kind)
{
    static const char *const lines[] = {"# Tessarelle Save Normalized Xafs Spectra 1.0",
                                        "# Tessarelle Save Raw Xafs Spectra 1.0", "# Tessarelle Save Raw Spectra 1.0"};
    return lines[kind];
}

// The step counts are those of the walk's own end test, so that they equal
// the points that a reader finds in each row and column. The bin line gives
// the vertical half width first: readers of these files expect that order.
void writeHeader(QTextStream &out, int kind, const AnalyzeCond &c)
{
    out << firstLine(kind) << '\n'
        << "# X-Range (x0, x1), steps : " << c.xStart << ' ' << c.xEnd << ' '
        << (c.xEnd - (c.binX + c.xStart) - 1) / c.xStep + 1 << '\n'
        << "# Y-Range (y0, y1), steps : " << c.yStart << ' ' << c.yEnd << ' '
        << (c.yEnd - (c.binY + c.yStart) - 1) / c.yStep + 1 << '\n'
        << "# Full Width, Height      : " << c.areaW << ' ' << c.areaH << '\n'
        << "# Bin Half Width, Height  : " << c.binY << ' ' << c.binX << '\n'
        << "# Step dX, dY             : " << c.xStep << ' ' << c.yStep << '\n'
        << "# End of Header\n";
}

} // namespace

void Body::saveEachSpectrum(QString fname)
{
    // Each checked kind in turn; the radio buttons allow one, but a later
    // routine simply writes the same file again.
    if (ui->SaveAsNormalizedXAFS->isChecked())
        saveEachNormalizedXafsSpectrum(fname);
    if (ui->SaveAsRawXAFS->isChecked())
        saveEachRawXafsSpectrum(fname);
    if (ui->SaveAsRaw->isChecked())
        saveEachRawSpectrum(fname);
}

void Body::saveEachNormalizedXafsSpectrum(QString fname)
{
    saveEachSpectrumOf(SpectraKind::Normalized, fname);
}

void Body::saveEachRawXafsSpectrum(QString fname)
{
    saveEachSpectrumOf(SpectraKind::RawXafs, fname);
}

void Body::saveEachRawSpectrum(QString fname)
{
    saveEachSpectrumOf(SpectraKind::Raw, fname);
}

void Body::saveEachSpectrumOf(SpectraKind kind, const QString &fname)
{
    AnalyzeCond c;
    if (!askAnalyzeCond(c) || c.xStep <= 0 || c.yStep <= 0)
        return;
    const QString name = withExtension(fname, QStringLiteral("dat"), false);
    QFile f(name);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Text)) {
        qDebug().noquote() << "Can't open" << name;
        return;
    }
    QTextStream out(&f);
    writeHeader(out, int(kind), c);

    const int hw = viewHalfWidth();
    const int vw = viewHalfHeight();
    const SuggestElm sElm = suggestElm();
    // Straight background lines, as for the points of an analysis run.
    const int lineType = 1;
    // The export holds the window still while it runs; only the log shows
    // that it goes on.
    do {
        if (c.newLine)
            qDebug().noquote() << "Save Xafs Spectra : Progress"
                               << double(c.iy - c.yStart) / double(c.yEnd - c.yStart) * 100;
        if (kind == SpectraKind::Raw) {
            const Spectrum &s = rawSpectrum(c.ix, c.iy, hw, vw);
            out << c.ix << ' ' << c.iy;
            for (int i = 0; i < s.size(); ++i)
                out << ' ' << s.energyAt(i) << ' ' << s.points.at(i).y();
        } else {
            const double dE = pointEShift(c.ix, c.iy);
            const Spectrum &s = absorptionSpectrum(c.ix, c.iy, hw, vw);
            out << c.ix << ' ' << c.iy << ' ' << QString::number(dE, 'g', 6);
            if (kind == SpectraKind::RawXafs) {
                for (int i = 0; i < s.size(); ++i)
                    out << ' ' << s.energyAt(i) << ' ' << s.points.at(i).y();
            } else {
                const XafsSpectrum x(s, QStringLiteral("Body-SaveEach"), lineType, dE, sElm);
                const QVector<QPointF> &norm = x.doubleNormPre.points;
                for (int i = 0; i < x.size(); ++i)
                    out << ' ' << x.energyAt(i) << ' ' << (i < norm.size() ? norm.at(i).y() : 0.0);
            }
        }
        out << '\n';
    } while (c.next());
}
