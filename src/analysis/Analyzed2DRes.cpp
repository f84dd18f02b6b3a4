#include "analysis/Analyzed2DRes.h"

#include "app/Globals.h"
#include "view/ColorMaps.h"
#include "view/ColorScale.h"
#include "view/PixelMapper.h"

#include <QDateTime>
#include <QDebug>
#include <QFile>
#include <QTextStream>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace {

// A double truncated toward zero and taken modulo 2^16, as storing an
// integer conversion in 16 bits does; NaN gives 0, and values beyond what
// 64 bits hold are pinned first, where a plain conversion would be undefined.
quint16 wrappedU16(double x)
{
    if (std::isnan(x))
        return 0;
    const double lim = 9.0e18;
    const qint64 k = qint64(std::clamp(x, -lim, lim));
    return quint16(quint64(k) & 0xffffu);
}

int strideOf(int width, int format)
{
    const qint64 bytes = qint64(width) * (format == ColorMaps::FormatRgb ? 3 : 1);
    return int((bytes + 3) / 4 * 4);
}

} // namespace

Analyzed2DRes::Analyzed2DRes(const QString &mapName, QObject *parent)
    : QObject(parent)
    , name(mapName)
{
}

Analyzed2DRes::~Analyzed2DRes() = default;

void Analyzed2DRes::setUp(const AnalyzeCond &c)
{
    cond = c;
    reset();
}

void Analyzed2DRes::clear()
{
    cond = AnalyzeCond();
    reset();
}

void Analyzed2DRes::reset()
{
    procMin = 0;
    procMax = 1;
    dataMin = 1e300;
    dataMax = -1e300;
    image.reset();
    std::vector<uchar>().swap(imgBuf);
    std::vector<double>().swap(data);
    std::vector<double>().swap(procData);
    const qint64 n = qint64(cond.areaW) * qint64(cond.areaH);
    if (cond.areaW > 0 && cond.areaH > 0) {
        if (n > MaxPixels) {
            qDebug().noquote() << "map" << name << "too large to hold:" << cond.areaW << "x" << cond.areaH;
        } else {
            data.assign(std::size_t(n), 0.0);
            procData.assign(std::size_t(n), 0.0);
        }
    }
    imgValid = false;
    surface.clear();
}

void Analyzed2DRes::assignFrom(const Analyzed2DRes *src)
{
    if (!src || src == this)
        return;
    no = src->no;
    name = src->name;
    cond = src->cond;
    imgValid = src->imgValid;
    minPosX = src->minPosX;
    minPosY = src->minPosY;
    maxPosX = src->maxPosX;
    maxPosY = src->maxPosY;
    dataMin = src->dataMin;
    dataMax = src->dataMax;
    procMin = src->procMin;
    procMax = src->procMax;
    scaleMin = src->scaleMin;
    scaleMax = src->scaleMax;
    fixedScale = src->fixedScale;
    useUpperLimit = src->useUpperLimit;
    upperLimit = src->upperLimit;
    useProc = src->useProc;
    imgFormat = src->imgFormat;
    tiffCount = src->tiffCount;
    deglitchF = src->deglitchF;
    deglitchR = src->deglitchR;
    surface = src->surface;

    image.reset();
    std::vector<uchar>().swap(imgBuf);
    std::vector<double>().swap(data);
    std::vector<double>().swap(procData);
    if (!src->imgValid)
        return;
    data = src->data;
    procData = src->procData;
    imgBuf = src->imgBuf;
    if (src->image && !imgBuf.empty())
        image = std::make_unique<QImage>(imgBuf.data(), src->image->width(), src->image->height(),
                                         src->image->bytesPerLine(), src->image->format());
}

double Analyzed2DRes::valueAt(int x, int y) const
{
    if (data.empty() || x < 0 || y < 0 || x >= cond.areaW || y >= cond.areaH)
        return 0.0;
    return data[std::size_t(y) * cond.areaW + x];
}

double Analyzed2DRes::procValueAt(int x, int y) const
{
    if (procData.empty() || x < 0 || y < 0 || x >= cond.areaW || y >= cond.areaH)
        return 0.0;
    return procData[std::size_t(y) * cond.areaW + x];
}

void Analyzed2DRes::setData(int ix, int iy, int xw, int yw, double t)
{
    if (t > dataMax) {
        dataMax = t;
        maxPosX = ix;
        maxPosY = iy;
    }
    if (t < dataMin) {
        dataMin = t;
        minPosX = ix;
        minPosY = iy;
    }
    if (!data.empty()) {
        const qint64 w = std::abs(qint64(xw));
        const qint64 v = std::abs(qint64(yw));
        const qint64 x0 = std::max<qint64>(qint64(ix) - w, 0);
        const qint64 x1 = std::min<qint64>(qint64(ix) + w, cond.areaW - 1);
        const qint64 y0 = std::max<qint64>(qint64(iy) - v, 0);
        const qint64 y1 = std::min<qint64>(qint64(iy) + v, cond.areaH - 1);
        for (qint64 y = y0; y <= y1; ++y) {
            double *row = data.data() + y * cond.areaW;
            for (qint64 x = x0; x <= x1; ++x)
                row[x] = t;
        }
    }
    surface.add(ix, iy, t);
}

void Analyzed2DRes::setRowData(const int *xs, int count, int iy, int xw, int yw, const double *values,
                               qsizetype stride)
{
    if (count <= 0)
        return;
    const qint64 w = std::abs(qint64(xw));
    const qint64 v = std::abs(qint64(yw));
    const qint64 y0 = std::max<qint64>(qint64(iy) - v, 0);
    const qint64 y1 = std::min<qint64>(qint64(iy) + v, cond.areaH - 1);
    // The blocks of the row, where they meet or overlap without a gap, leave
    // each column the value of the last centre whose block holds it: one
    // line of those, copied down the block's rows, is the whole row.
    bool joined = true;
    qint64 lo = 0;
    qint64 hi = -1;
    if (!data.empty() && y0 <= y1) {
        rowLine.resize(size_t(cond.areaW));
        for (int i = 0; i < count && joined; ++i) {
            const qint64 x0 = std::max<qint64>(qint64(xs[i]) - w, 0);
            const qint64 x1 = std::min<qint64>(qint64(xs[i]) + w, cond.areaW - 1);
            if (x0 > x1)
                continue;
            if (hi >= lo && (x0 > hi + 1 || x0 < lo))
                joined = false;
            if (hi < lo)
                lo = x0;
            hi = std::max(hi, x1);
            std::fill(rowLine.begin() + x0, rowLine.begin() + x1 + 1, values[i * stride]);
        }
    }
    if (!joined) {
        for (int i = 0; i < count; ++i)
            setData(xs[i], iy, xw, yw, values[i * stride]);
        return;
    }
    for (int i = 0; i < count; ++i) {
        const double t = values[i * stride];
        if (t > dataMax) {
            dataMax = t;
            maxPosX = xs[i];
            maxPosY = iy;
        }
        if (t < dataMin) {
            dataMin = t;
            minPosX = xs[i];
            minPosY = iy;
        }
        surface.add(xs[i], iy, t);
    }
    if (data.empty() || hi < lo)
        return;
    for (qint64 y = y0; y <= y1; ++y)
        std::copy(rowLine.begin() + lo, rowLine.begin() + hi + 1, data.begin() + y * cond.areaW + lo);
}

double Analyzed2DRes::sumInBlock(int x, int y, int hw, int hv) const
{
    double s = 0;
    if (data.empty())
        return s;
    const qint64 w = std::abs(qint64(hw));
    const qint64 v = std::abs(qint64(hv));
    const qint64 x0 = std::max<qint64>(qint64(x) - w, 0);
    const qint64 x1 = std::min<qint64>(qint64(x) + w, cond.areaW - 1);
    const qint64 y0 = std::max<qint64>(qint64(y) - v, 0);
    const qint64 y1 = std::min<qint64>(qint64(y) + v, cond.areaH - 1);
    for (qint64 yy = y0; yy <= y1; ++yy)
        for (qint64 xx = x0; xx <= x1; ++xx)
            s += data[std::size_t(yy * cond.areaW + xx)];
    return s;
}

double Analyzed2DRes::effectiveMin() const
{
    return fixedScale ? scaleMin : (useProc ? procMin : dataMin);
}

double Analyzed2DRes::effectiveMax() const
{
    return fixedScale ? scaleMax : (useProc ? procMax : dataMax);
}

void Analyzed2DRes::genImg()
{
    image.reset();
    imgValid = false;
    const std::vector<double> &src = useProc ? procData : data;
    if (!src.empty() && (imgFormat == ColorMaps::FormatGray || imgFormat == ColorMaps::FormatRgb)) {
        // A run makes every map's image again once a row: the buffer keeps
        // its memory instead of handing megabytes back and taking them again.
        const int w = cond.areaW;
        const int h = cond.areaH;
        const int stride = strideOf(w, imgFormat);
        imgBuf.assign(std::size_t(stride) * h, 0);
        const ColorScale::Ends ends = gColorBar ? gColorBar->ends() : ColorScale::Ends();
        const PixelMapper mapper(effectiveMin(), effectiveMax(), ends, imgFormat);
        for (int y = 0; y < h; ++y)
            mapper.mapRow(src.data() + std::size_t(y) * w, w, imgBuf.data() + std::size_t(y) * stride);
        image = std::make_unique<QImage>(imgBuf.data(), w, h, stride, QImage::Format(imgFormat));
        imgValid = true;
    } else {
        std::vector<uchar>().swap(imgBuf);
    }
    surface.solve();
}

std::vector<quint16> Analyzed2DRes::tiffDataForSave(bool fixed, double sMin, double sMax, bool asAnalyzed)
{
    std::vector<quint16> out;
    const double lo = fixed ? sMin : (useProc ? procMin : dataMin);
    const double hi = fixed ? sMax : (useProc ? procMax : dataMax);
    const std::vector<double> &src = useProc ? procData : data;
    if (src.empty())
        return out;
    out.assign(src.size(), 0);
    if (!asAnalyzed) {
        for (std::size_t i = 0; i < src.size(); ++i)
            out[i] = wrappedU16((src[i] - lo) / (hi - lo) * 65535.0);
        tiffCount = int(src.size());
        return out;
    }
    AnalyzeCond c = cond;
    c.restart();
    std::size_t k = 0;
    do {
        if (k >= out.size())
            break; // a walk that reaches past the image has more points than pixels
        double v = (c.ix >= 0 && c.iy >= 0 && c.ix < cond.areaW && c.iy < cond.areaH)
                       ? src[std::size_t(c.iy) * cond.areaW + c.ix]
                       : 0.0;
        if (v < lo)
            v = lo;
        if (v > hi)
            v = hi;
        out[k++] = wrappedU16((v - lo) / (hi - lo) * 65535.0);
    } while (c.next());
    tiffCount = int(k);
    return out;
}

void Analyzed2DRes::fillProcBlock(int x, int y, double v)
{
    const qint64 n = qint64(procData.size());
    const qint64 bx = std::abs(qint64(cond.binX));
    const qint64 by = std::abs(qint64(cond.binY));
    for (qint64 yy = qint64(y) - by; yy <= qint64(y) + by; ++yy) {
        for (qint64 xx = qint64(x) - bx; xx <= qint64(x) + bx; ++xx) {
            const qint64 idx = yy * cond.areaW + xx;
            if (idx >= 0 && idx < n)
                procData[std::size_t(idx)] = v;
        }
    }
}

void Analyzed2DRes::deglitch()
{
    if (data.empty() || procData.empty())
        return;
    const int W = cond.areaW;
    const int H = cond.areaH;
    const int dx = cond.xStep;
    const int dy = cond.yStep;
    auto inX = [W](qint64 x) { return x >= 0 && x < W; };
    auto inY = [H](qint64 y) { return y >= 0 && y < H; };

    AnalyzeCond c = cond;
    c.restart();
    double sum = 0;
    qint64 count = 0;
    do {
        const int x = c.ix;
        const int y = c.iy;
        if (c.newLine)
            qDebug() << "deglitch" << y;
        const double cc = 2 * valueAt(x, y);
        double r = 0;
        int k = 0;
        if (inX(qint64(x) - dx) && inX(qint64(x) + dx)) {
            r = std::fabs(cc - valueAt(x - dx, y) - valueAt(x + dx, y));
            k = 1;
        }
        if (inY(qint64(y) - dy) && inY(qint64(y) + dy)) {
            r += std::fabs(cc - valueAt(x, y - dy) - valueAt(x, y + dy));
            k += 1;
        }
        r /= (k > 0 ? double(k) : 1.0);
        fillProcBlock(x, y, r);
        sum += r;
        ++count;
    } while (c.next());

    const double T = (sum / double(count)) * deglitchF;
    procMin = 1e300;
    procMax = -1e300;

    c.restart();
    do {
        const int x = c.ix;
        const int y = c.iy;
        if (c.newLine)
            qDebug() << "deglitch 2" << y;
        double v = valueAt(x, y);
        const double span = (dataMax - dataMin) * deglitchR;
        if (procValueAt(x, y) > T && (v < dataMin + span || v > dataMax - span)) {
            double s = 0;
            int n = 0;
            const qint64 nb[4][2] = {{qint64(x) - dx, y}, {qint64(x) + dx, y}, {x, qint64(y) - dy}, {x, qint64(y) + dy}};
            for (const auto &p : nb) {
                if (inX(p[0]) && inY(p[1])) {
                    s += valueAt(int(p[0]), int(p[1]));
                    ++n;
                }
            }
            if (n > 0)
                v = s / n;
        }
        if (v < procMin)
            procMin = v;
        if (v > procMax)
            procMax = v;
        fillProcBlock(x, y, v);
    } while (c.next());

    if (useProc)
        genImg();
}

void Analyzed2DRes::deglitch2(double limit)
{
    if (data.empty() || procData.empty())
        return;
    const int W = cond.areaW;
    const int H = cond.areaH;
    const int dx = cond.xStep;
    const int dy = cond.yStep;

    AnalyzeCond c = cond;
    c.restart();
    double sum = 0;
    qint64 n = 0;
    do {
        if (c.newLine)
            qDebug() << "deglitch2" << c.iy;
        const double v = valueAt(c.ix, c.iy);
        if (std::fabs(v) < limit) {
            sum += v;
            ++n;
        }
    } while (c.next());
    const double m = n > 0 ? sum / double(n) : sum;
    procMin = 1e300;
    procMax = -1e300;

    static const int offsets[8][2] = {{-1, -1}, {-1, 0}, {-1, 1}, {0, -1}, {0, 1}, {1, -1}, {1, 0}, {1, 1}};
    c.restart();
    do {
        const int x = c.ix;
        const int y = c.iy;
        if (c.newLine)
            qDebug() << "deglitch 2" << y;
        double v = valueAt(x, y);
        if (std::fabs(v - m) > limit) {
            double s = 0;
            int k = 0;
            for (const auto &o : offsets) {
                const qint64 nx = qint64(x) + qint64(dx) * o[0];
                const qint64 ny = qint64(y) + qint64(dy) * o[1];
                if (nx < 0 || ny < 0 || nx >= W || ny >= H)
                    continue;
                const double nv = valueAt(int(nx), int(ny));
                if (std::fabs(nv - m) < limit) {
                    s += nv;
                    ++k;
                }
            }
            v = k > 0 ? s / k : 0.0;
        }
        if (v < procMin)
            procMin = v;
        if (v > procMax)
            procMax = v;
        fillProcBlock(x, y, v);
    } while (c.next());

    if (useProc)
        genImg();
}

void Analyzed2DRes::setDeglitchConds(double f, double r)
{
    deglitchF = f;
    deglitchR = r;
}

void Analyzed2DRes::selectProcImg(bool f)
{
    useProc = f;
    genImg();
}

void Analyzed2DRes::copyProc2Data()
{
    if (data.empty() || procData.empty())
        return;
    data = procData;
    dataMin = procMin;
    dataMax = procMax;
}

void Analyzed2DRes::setUpperLimit(bool useLimit, double limitVal)
{
    useUpperLimit = useLimit;
    upperLimit = limitVal;
    genImg();
}

void Analyzed2DRes::passRangeToColorBar() const
{
    if (gColorBar)
        gColorBar->setValueRange(effectiveMin(), effectiveMax());
}

void Analyzed2DRes::setFixedScale(bool f)
{
    fixedScale = f;
    genImg();
    passRangeToColorBar();
}

void Analyzed2DRes::setScale(double min, double max)
{
    scaleMin = min;
    scaleMax = max;
    genImg();
    passRangeToColorBar();
}

QString Analyzed2DRes::writeText(const QString &fileName, bool csv, bool xyz) const
{
    QFile f(fileName);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Text)) {
        qDebug().noquote() << "Can't open" << fileName;
        return QString();
    }
    QTextStream out(&f);
    // A step of 0 can only come from a caller that passed it; the count
    // then says one, rather than dividing by zero.
    const int xNum = cond.xStep != 0 ? (cond.xEnd - cond.xStart) / cond.xStep + 1 : 1;
    const int yNum = cond.yStep != 0 ? (cond.yEnd - cond.yStart) / cond.yStep + 1 : 1;
    out << "## 240301\n"
        << "## Tessarelle Analyzed 2D Result\n"
        << "# Date    : " << QDateTime::currentDateTime().toString(QStringLiteral("yyyy/MM/dd hh:mm:ss.zzz")) << "\n"
        << "## Energy : \n"
        << "# Format1 : " << (xyz ? "XYZ" : "VVV") << "\n"
        << "# Format2 : " << (csv ? "CSV" : "SPACE-Separated") << "\n"
        << "# X-NUM " << xNum << "\n"
        << "# Y-NUM " << yNum << "\n"
        << "## End of Header ##\n";

    const QString sepChar = csv ? QStringLiteral(",") : QStringLiteral(" ");
    AnalyzeCond c = cond;
    c.restart();
    QString sep;
    do {
        const QString v = QStringLiteral("%1").arg(valueAt(c.ix, c.iy), 0, 'g', -1, QLatin1Char(' '));
        if (xyz) {
            out << c.ix << sepChar << c.iy << sepChar << v << "\n";
        } else {
            if (c.newLine) {
                out << "\n";
                sep.clear();
            }
            out << sep << v;
            sep = sepChar;
        }
    } while (c.next());
    if (!xyz)
        out << "\n";
    return f.fileName();
}
