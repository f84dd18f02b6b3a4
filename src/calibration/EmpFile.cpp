#include "calibration/EmpFile.h"

#include "analysis/Analyzed2DRes.h"
#include "app/Units.h"

#include <QByteArray>
#include <QDebug>
#include <QIODevice>
#include <QLocale>
#include <QRectF>
#include <QTextStream>

#include <charconv>

namespace {

const char *const LongMagic = "###Tessarelle::TSRL";
const char *const ShortMagic = "###TSRL";
const char *const Separator = "##-----------------";

// A header line longer than this is read in pieces; none of them can be a
// key, so a damaged file cannot make one line fill the memory.
const qint64 MaxHeaderLine = 4096;
// Missing values that a body may lack and still be read as a truncated map.
const qint64 BodySlack = 65536;
const qint64 BodyChunk = 1 << 20;
// A run of text this long without a blank is no number; it is parsed as it
// stands instead of being gathered further.
const qsizetype MaxToken = 4096;

// Each key is its text padded with blanks to 24 characters, then ": ".
QString key(const char *text)
{
    return QString::fromLatin1(text).leftJustified(24, QLatin1Char(' ')) + QStringLiteral(": ");
}

bool isBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v';
}

// The numbers of a body, read from the device in large chunks. A number is
// taken where it starts and ends where the parse stops, so "1.5x" gives 1.5
// and then a "x" that is no number, as a text stream reads it.
class BodyNumbers
{
public:
    enum Result { Number, End, NotANumber };

    explicit BodyNumbers(QIODevice &device)
        : in(device)
    {
    }

    Result next(double *v)
    {
        if (broken)
            return NotANumber;
        for (;;) {
            while (pos < buf.size() && isBlank(buf.at(pos)))
                ++pos;
            if (pos < buf.size()) {
                qsizetype end = pos;
                while (end < buf.size() && !isBlank(buf.at(end)))
                    ++end;
                if (end == buf.size() && !eof && end - pos < MaxToken) {
                    refill();
                    continue;
                }
                const char *first = buf.constData() + pos;
                const char *last = buf.constData() + end;
                // from_chars takes no plus sign; a text stream does.
                if (*first == '+' && last - first > 1 && first[1] != '-' && first[1] != '+')
                    ++first;
                const std::from_chars_result r = std::from_chars(first, last, *v);
                if (r.ec == std::errc::invalid_argument) {
                    broken = true;
                    return NotANumber;
                }
                // A number beyond the range of a double is left alone by
                // from_chars; Qt's parser gives it its limit instead.
                if (r.ec == std::errc::result_out_of_range)
                    *v = QByteArray(first, r.ptr - first).toDouble();
                pos = r.ptr - buf.constData();
                return Number;
            }
            if (eof)
                return End;
            refill();
        }
    }

private:
    void refill()
    {
        buf.remove(0, pos);
        pos = 0;
        const QByteArray more = in.read(BodyChunk);
        if (more.isEmpty())
            eof = true;
        else
            buf += more;
    }

    QIODevice &in;
    QByteArray buf;
    qsizetype pos = 0;
    bool eof = false;
    bool broken = false;
};

} // namespace

double EmpFile::shiftOf(double v, double edgeE, double a0, double spacing)
{
    return edgeE - Units::angleToEnergy(v + a0, spacing);
}

bool EmpFile::write(QIODevice &out, const Source &src, const Analyzed2DRes &map, int imgW, int imgH)
{
    const AnalyzeCond &c = map.cond;
    QString head;
    QTextStream h(&head);
    h << LongMagic << '\n';
    h << key("Record Date") << src.recordDate << '\n';
    h << key("Std Edge Energy [eV]") << src.stdEdgeE << '\n';
    // The value is in angstrom; the key's unit has always read so.
    h << key("Spacing [nm]") << src.spacing << '\n';
    h << key("X Offset [pix]") << src.xOffset << '\n';
    h << key("Y Offset [pix]") << src.yOffset << '\n';
    h << key("Width [pix]") << c.areaW << '\n';
    h << key("Height [pix]") << c.areaH << '\n';
    h << key("Bin Half Width [pix]") << c.binX << '\n';
    h << key("Bin Half Height [pix]") << c.binY << '\n';
    h << key("Area X0") << c.xStart << '\n';
    h << key("Area X1") << c.xEnd << '\n';
    h << key("Area Y0") << c.yStart << '\n';
    h << key("Area Y1") << c.yEnd << '\n';
    h << key("Std File Name") << src.stdFileName << '\n';
    h << key("Map Height") << map.height() << '\n';
    for (int y = 0; y < map.height(); ++y)
        h << key("Map Width") << y << ' ' << map.width() << '\n';
    h << Separator << '\n';
    h.flush();
    bool ok = out.write(head.toUtf8()) >= 0;

    qDebug().noquote() << "EMap Write Start :";
    const double a0 = Units::energyToAngle(src.stdEdgeE, src.spacing);
    QByteArray row;
    row.reserve(qsizetype(qMax(imgW, 0)) * 24 + 1);
    for (int y = 0; y < imgH && ok; ++y) {
        row.clear();
        for (int x = 0; x < imgW; ++x) {
            // a(E - dE) - a(E), with a(E) taken once.
            const double v = Units::energyToAngle(src.stdEdgeE - map.valueAt(x, y), src.spacing) - a0;
            row += QByteArray::number(v, 'g', QLocale::FloatingPointShortest);
            row += ' ';
        }
        row += '\n';
        ok = out.write(row) == row.size();
    }
    qDebug().noquote() << "EMap Write End   :";
    return ok;
}

EMPHeader EmpFile::readHeader(QIODevice &in)
{
    EMPHeader h;
    const QByteArray first = in.readLine(MaxHeaderLine);
    if (!first.startsWith(ShortMagic) && !first.startsWith(LongMagic)) {
        qDebug().noquote() << "Not a emp file.";
        return h;
    }
    struct IntKey
    {
        QString key;
        int *field;
    };
    const IntKey ints[] = {
        {key("X Offset [pix]"), &h.xOffset},         {key("Y Offset [pix]"), &h.yOffset},
        {key("Width [pix]"), &h.width},              {key("Height [pix]"), &h.height},
        {key("Bin Half Width [pix]"), &h.binHalfW},  {key("Bin Half Height [pix]"), &h.binHalfH},
        {key("Area X0"), &h.areaX0},                 {key("Area X1"), &h.areaX1},
        {key("Area Y0"), &h.areaY0},                 {key("Area Y1"), &h.areaY1},
    };
    const QString edgeKey = key("Std Edge Energy [eV]");
    const QString spacingKey = key("Spacing [nm]");
    bool separator = false, haveW = false, haveH = false, haveE = false, haveS = false;
    while (!in.atEnd()) {
        QString line = QString::fromUtf8(in.readLine(MaxHeaderLine));
        while (line.endsWith(QLatin1Char('\n')) || line.endsWith(QLatin1Char('\r')))
            line.chop(1);
        if (line.startsWith(QLatin1String(Separator))) {
            separator = true;
            break;
        }
        for (const IntKey &k : ints) {
            if (!line.startsWith(k.key))
                continue;
            *k.field = line.mid(k.key.size()).trimmed().toInt();
            if (k.field == &h.width) {
                haveW = true;
                qDebug().noquote() << "emp W" << line;
            } else if (k.field == &h.height) {
                haveH = true;
                qDebug().noquote() << "emp H" << line;
            }
        }
        if (line.startsWith(edgeKey)) {
            h.stdEdgeE = line.mid(edgeKey.size()).trimmed().toDouble();
            haveE = true;
        } else if (line.startsWith(spacingKey)) {
            h.spacing = line.mid(spacingKey.size()).trimmed().toDouble();
            haveS = true;
        }
    }
    h.valid = separator && haveW && haveH && haveE && haveS;
    return h;
}

bool EmpFile::bodyFits(const EMPHeader &h, qint64 bodyBytes)
{
    const qint64 values = qint64(h.width) * qint64(h.height);
    if (h.width < 0 || h.height < 0 || values > Analyzed2DRes::MaxPixels || values > bodyBytes + BodySlack) {
        qDebug().noquote() << QStringLiteral("Energy map of %1 x %2 refused: a body of %3 bytes can not hold it")
                                  .arg(h.width)
                                  .arg(h.height)
                                  .arg(bodyBytes);
        return false;
    }
    return true;
}

void EmpFile::readBody(QIODevice &in, const EMPHeader &h, double edgeE, Analyzed2DRes &map)
{
    AnalyzeCond c;
    c.setUp(h.width, h.height, h.binHalfW, h.binHalfH,
            QRectF(h.areaX0, h.areaY0, h.areaX1 - h.areaX0, h.areaY1 - h.areaY0), -1, -1);
    map.setUp(c);
    const double a0 = Units::energyToAngle(edgeE, h.spacing);
    BodyNumbers numbers(in);
    bool toldBroken = false;
    for (int y = 0; y < h.height; ++y) {
        for (int x = 0; x < h.width; ++x) {
            double v = 0.0;
            const BodyNumbers::Result r = numbers.next(&v);
            if (r == BodyNumbers::End) {
                v = 0.0;
                qDebug().noquote() << "run out!";
            } else if (r == BodyNumbers::NotANumber) {
                v = 0.0;
                if (!toldBroken)
                    qDebug().noquote() << QStringLiteral("not a number in the energy map at (%1, %2)").arg(x).arg(y);
                toldBroken = true;
            }
            map.setData(x, y, 0, 0, shiftOf(v, edgeE, a0, h.spacing));
        }
    }
}
