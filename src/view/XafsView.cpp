#include "view/XafsView.h"

#include "app/Globals.h"
#include "saving/FileNames.h"
#include "ui_XafsView.h"
#include "view/CurveLines.h"
#include "view/GraphColors.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QDebug>
#include <QFileDialog>
#include <QPainter>
#include <QPushButton>

#include <algorithm>
#include <cfloat>
#include <cmath>

namespace {

const QColor StdLineColor(220, 192, 0);
const QColor StdColor(255, 0, 0);
const QColor PreColor(0, 192, 220);
const QColor PostColor(0, 220, 192);
const QColor MarkEColor(0, 224, 0);
const QColor RefMarkColor(255, 0, 0);
const QColor RefNameColor(192, 192, 0);
const QColor MidxColor(255, 0, 0);
const QColor FrameColor(192, 192, 192);
const QColor RawColor(192, 0, 0);
const QColor FftColor(0, 192, 0);
constexpr qreal AxisMaxPt = 12;
// Pixels between the frame and the data's extremes: half the target's pen
// and the frame's inner half, and one to spare.
constexpr double CurveInset = 3;
// A range that would need more ticks than this draws none: it is absurd,
// and stepping through it would stall the paint.
constexpr double MaxTicks = 1000;

QPen dashed(QPen pen, const QVector<qreal> &pattern)
{
    pen.setDashPattern(pattern);
    return pen;
}

QString statusLine(const XafsSpectrum &s)
{
    return QCoreApplication::translate("XafsView", "dMut = %1, Edge %2 [eV] : %3 %4")
        .arg(QString::asprintf("% 6.3e", s.dMut), QString::number(s.midx, 'g', 6).trimmed(),
             s.midxOutOfRange ? QCoreApplication::translate("XafsView", "Out of Range midx") : QString(),
             s.midxNoisy ? QCoreApplication::translate("XafsView", "Noizy to decide midx") : QString());
}

// The ticks of niceRange as a count and a start, so that the caller steps by
// index and never accumulates rounding; false when there are none to draw.
// A range the wrong way round has none: that is the empty spectrum's
// (1e300 .. -1e300), which has nothing to label.
bool ticksOf(double a, double b, double *step, double *first, int *count)
{
    double last = 0;
    if (!ChCoord::niceRange(a, b, step, first, &last))
        return false;
    const double k = std::round((last - *first) / *step);
    if (!(k >= 0) || k > MaxTicks)
        return false;
    *count = int(k) + 1;
    return true;
}

// A tick value as a label; the rounding dust of first + i * step is dropped
// so that the zero tick reads 0.
QString tickLabel(double v, double step)
{
    if (std::fabs(v) < std::fabs(step) * 1e-9)
        v = 0;
    return QString::number(v, 'g', 6);
}

} // namespace

XafsView::XafsView(QWidget *parent)
    : QFrame(parent)
    , ui(new Ui::XafsView)
{
    ui->setupUi(this);
    connect(ui->Xafs, &DispA::drawImage1, this, &XafsView::draw);
    connect(ui->Xafs, &DispA::mouseMoved0, this, &XafsView::onMouseMoved);
    connect(ui->Xafs, &DispA::wheelMoved0, this, &XafsView::onWheelMoved);
    connect(ui->ResetXScale, &QPushButton::clicked, this, &XafsView::resetXScale);
    connect(ui->Save, &QPushButton::clicked, this, &XafsView::askSaveFile);
    connect(ui->toStars_, &QPushButton::clicked, this, &XafsView::toStars);
    for (QCheckBox *b : {ui->Normalized, ui->ECorrect, ui->ShowRaw, ui->ShowFFT})
        connect(b, &QCheckBox::toggled, this, &XafsView::update);
}

XafsView::~XafsView() = default;

double XafsView::setTarget(const XafsSpectrum &s)
{
    target = s;
    if (autoX) {
        xMinV = xMinFull = target.xMin;
        xMaxV = xMaxFull = target.xMax;
    }
    update();
    emit updated();
    return target.midx - stdSpec.midx;
}

void XafsView::setRaw(const Spectrum &s)
{
    raw = s;
    update();
}

void XafsView::setStd(const XafsSpectrum &s)
{
    stdSpec = s;
    update();
}

void XafsView::setMarkE(double e)
{
    markE = e;
    update();
}

void XafsView::setOthers(const QVector<XafsSpectrum *> &list, const QVector<QPen> &penList)
{
    others = list;
    pens = penList;
    update();
}

void XafsView::setMarks(const QList<LCFReference *> *panels)
{
    marks = panels;
    update();
}

void XafsView::setSendVisible(bool f)
{
    ui->toStars_->setVisible(f);
}

void XafsView::update()
{
    ui->Xafs->update();
}

void XafsView::resetXScale()
{
    xMinV = xMinFull;
    xMaxV = xMaxFull;
    update();
    emit updated();
}

void XafsView::setNormalize(bool f)
{
    ui->Normalized->setChecked(f);
    update();
}

void XafsView::setEnergyCorrection(bool f)
{
    ui->ECorrect->setChecked(f);
    update();
}

void XafsView::currentPosition(int nix, int niy, int nhw, int nvw)
{
    ix = nix;
    iy = niy;
    hw = nhw;
    vw = nvw;
}

void XafsView::setupCoords()
{
    cc.setWindow(0, ui->Xafs->height(), ui->Xafs->width(), 0);
    cc.applyMargins();
    // y runs up: sY0 is the bottom edge on the screen, sY1 the top one.
    frameRect = QRectF(QPointF(cc.sX0, cc.sY1), QPointF(cc.sX1, cc.sY0)).normalized();
    const double inset = std::min(CurveInset, frameRect.height() / 4);
    cc.setPlotRegion(cc.sX0, cc.sY0 - inset, cc.sX1, cc.sY1 + inset);
}

void XafsView::setPointerYRange()
{
    const Spectrum &ys = ui->Normalized->isChecked() ? static_cast<const Spectrum &>(target.doubleNormPre)
                                                     : static_cast<const Spectrum &>(target);
    cc.setRealY(ys.yMin, ys.yMax);
}

void XafsView::fillCurve(const XafsSpectrum &s, double e, Curve c)
{
    realPts.clear();
    int n = s.size();
    if (c == Curve::Norm)
        n = std::min(n, s.doubleNormPre.size());
    realPts.reserve(n);
    for (int i = 0; i < n; ++i) {
        // The lines are evaluated at the energy itself; only the place on
        // the axis moves by e.
        const double en = s.energyAt(i);
        double y = 0;
        switch (c) {
        case Curve::Y:
            y = s.points[i].y();
            break;
        case Curve::Pre:
            y = s.pre.valueAt(en);
            break;
        case Curve::Post:
            y = s.post.valueAt(en);
            break;
        case Curve::Norm:
            y = s.doubleNormPre.points[i].y();
            break;
        }
        realPts.append(QPointF(en - e, y));
    }
}

void XafsView::drawReal(QPainter *p, double maxGap)
{
    curvePolylines(realPts, cc, maxGap, screenLines);
    for (const QPolygonF &line : std::as_const(screenLines))
        p->drawPolyline(line);
}

QPen XafsView::penOfOther(int i) const
{
    return i < pens.size() ? pens.at(i) : QPen(colorOfIndex(i));
}

void XafsView::draw(QPainter *p)
{
    setupCoords();
    const double e = ui->ECorrect->isChecked() ? target.eOffset : 0.0;
    const QVector<RefMark> refs = refMarks();

    p->save();
    // Zoomed curves stay inside the frame instead of running over the axis
    // labels.
    const QRectF region = frameRect;
    p->setClipRect(region);
    if (!ui->ShowRaw->isChecked()) {
        if (ui->Normalized->isChecked())
            drawNormalized(p, e);
        else
            drawPlain(p, e);
    }
    drawMarks(p, refs);
    p->setClipping(false);
    drawAxes(p);
    drawMarkNames(p, refs);
    if (ui->ShowRaw->isChecked()) {
        p->setClipRect(region);
        drawRaw(p);
    }
    p->restore();

    ui->ExtMsg->setText(statusLine(target));
}

void XafsView::drawPlain(QPainter *p, double e)
{
    cc.setRealRange(xMinV, target.yMin, xMaxV, target.yMax);

    if (stdSpec.size() > 0) {
        cc.setRealY(stdSpec.yMin, stdSpec.yMax);
        p->setPen(dashed(QPen(StdLineColor), {6, 2}));
        fillCurve(stdSpec, 0, Curve::Pre);
        drawReal(p, 0);
        fillCurve(stdSpec, 0, Curve::Post);
        drawReal(p, 0);
        p->setPen(QPen(StdColor));
        fillCurve(stdSpec, 0, Curve::Y);
        drawReal(p, 0);
    }

    for (int i = 0; i < others.size(); ++i) {
        const XafsSpectrum *o = others.at(i);
        if (!o || o->kind == 0)
            continue;
        cc.setRealY(o->yMin, o->yMax);
        const QPen pen = penOfOther(i);
        p->setPen(dashed(pen, {6, 2}));
        fillCurve(*o, 0, Curve::Pre);
        drawReal(p, 0);
        fillCurve(*o, 0, Curve::Post);
        drawReal(p, 0);
        p->setPen(pen);
        fillCurve(*o, 0, Curve::Y);
        drawReal(p, 0);
    }

    cc.setRealY(target.yMin, target.yMax);
    p->setPen(dashed(QPen(PreColor), {8, 3}));
    fillCurve(target, e, Curve::Pre);
    drawReal(p, MaxEnergyGap);
    p->setPen(dashed(QPen(PostColor), {8, 3, 3, 3}));
    fillCurve(target, e, Curve::Post);
    drawReal(p, MaxEnergyGap);
    p->setPen(QPen(Qt::black, 2));
    fillCurve(target, e, Curve::Y);
    drawReal(p, MaxEnergyGap);
}

void XafsView::drawNormalized(QPainter *p, double e)
{
    cc.setRealRange(xMinV, target.doubleNormPre.yMin, xMaxV, target.doubleNormPre.yMax);
    p->setPen(QPen(StdColor));
    fillCurve(stdSpec, 0, Curve::Norm);
    drawReal(p, 0);
    for (int i = 0; i < others.size(); ++i) {
        const XafsSpectrum *o = others.at(i);
        if (!o || o->kind == 0)
            continue;
        p->setPen(penOfOther(i));
        fillCurve(*o, 0, Curve::Norm);
        drawReal(p, 0);
    }
    p->setPen(QPen(Qt::black, 2));
    fillCurve(target, e, Curve::Norm);
    drawReal(p, MaxEnergyGap);
}

void XafsView::verticalLine(QPainter *p, double x)
{
    const double sx = cc.r2sx(x);
    if (std::isfinite(sx))
        p->drawLine(QPointF(sx, frameRect.top()), QPointF(sx, frameRect.bottom()));
}

void XafsView::drawMarks(QPainter *p, const QVector<RefMark> &refs)
{
    if (markE > 0) {
        p->setPen(QPen(MarkEColor));
        verticalLine(p, markE);
    }
    p->setPen(QPen(RefMarkColor));
    for (const RefMark &r : refs)
        verticalLine(p, r.e);
    p->setPen(QPen(MidxColor, 2));
    verticalLine(p, target.midx);
}

void XafsView::drawAxes(QPainter *p)
{
    const QRectF &f = frameRect;
    p->setPen(QPen(FrameColor, 2));
    p->drawRect(f);

    const QPen gridPen(FrameColor, 1);
    const QPen textPen(Qt::black);
    const double labelH = std::max(0.0, cc.winY0 - f.bottom());
    labelRects.clear();

    double step = 0;
    double first = 0;
    int count = 0;
    if (ticksOf(cc.rX0, cc.rX1, &step, &first, &count)) {
        const double w = std::fabs(cc.r2sdx(step));
        for (int i = 0; i < count; ++i) {
            const double v = first + i * step;
            const double sx = cc.r2sx(v);
            p->setPen(gridPen);
            p->drawLine(QPointF(sx, f.top()), QPointF(sx, f.bottom()));
            p->setPen(textPen);
            // Centred on its tick, but kept inside the window, so that the
            // last label is not cut by the narrow right margin.
            const double boxLeft = std::max(0.0, std::min(sx - w / 2, cc.winX1 - w));
            const QRectF box(boxLeft, f.bottom(), w, labelH);
            const QString label = tickLabel(v, step);
            drawLabel(p, box, label, Qt::AlignCenter, 1);
            // The ends once more in the plain font: only where that copy
            // finds room of its own, which beside its fitted twin it lacks.
            if (i == 0 || i == count - 1)
                drawLabel(p, box, label, Qt::AlignCenter, 0);
        }
    }
    if (ticksOf(cc.rY0, cc.rY1, &step, &first, &count)) {
        const double h = std::fabs(cc.r2sdy(step));
        for (int i = 0; i < count; ++i) {
            const double v = first + i * step;
            const double sy = cc.r2sy(v);
            p->setPen(gridPen);
            p->drawLine(QPointF(f.left(), sy), QPointF(f.right(), sy));
            p->setPen(textPen);
            const QRectF box(0, sy - h / 2, std::max(0.0, f.left() - 3), h);
            const QString label = tickLabel(v, step);
            drawLabel(p, box, label, Qt::AlignRight | Qt::AlignVCenter, 1);
            if (i == 0 || i == count - 1)
                drawLabel(p, box, label, Qt::AlignRight | Qt::AlignVCenter, 0);
        }
    }
}

void XafsView::drawLabel(QPainter *p, const QRectF &box, const QString &text, int flags, int fit)
{
    // Text is clipped to its box, so what it covers is no more than the box.
    const QRectF r = dt.fittedBounds(p, box, text, flags, fit, AxisMaxPt).intersected(box);
    // One pixel of air, so that labels never touch either.
    const QRectF guard = r.adjusted(-1, -1, 1, 1);
    for (const QRectF &taken : std::as_const(labelRects)) {
        if (taken.intersects(guard))
            return;
    }
    labelRects.append(r);
    dt.drawFitted(p, box, text, flags, fit, AxisMaxPt);
}

void XafsView::drawMarkNames(QPainter *p, const QVector<RefMark> &refs)
{
    p->setPen(QPen(RefNameColor));
    const double top = frameRect.top();
    const double height = frameRect.height();
    for (const RefMark &r : refs) {
        const double sx = cc.r2sx(r.e);
        if (!std::isfinite(sx))
            continue;
        // A tall box just right of the mark: rotated by 90 degrees the name
        // runs down along the line.
        dt.drawRotated(p, QRectF(sx + 2, top, 16, height / 2), r.name, 90, Qt::AlignLeft | Qt::AlignVCenter, 1, 12);
    }
}

QVector<XafsView::RefMark> XafsView::refMarks() const
{
    // The reference panels of the analysis window give their energies and
    // names here once that window exists; until then nothing sets marks.
    Q_UNUSED(marks);
    return {};
}

void XafsView::drawRaw(QPainter *p)
{
    const int n = raw.size();
    realPts.clear();
    if (ui->ShowFFT->isChecked()) {
        fft.setSize(n);
        fft.forwardOf(raw);
        const double *mag = fft.magnitudes();
        const int m = n / 10;
        double lo = DBL_MAX;
        double hi = -DBL_MAX;
        if (n >= 30 && mag) {
            for (int i = 1; i <= std::max(m, 3) - 2; ++i) {
                lo = std::min(lo, mag[i]);
                hi = std::max(hi, mag[i]);
            }
        }
        // The x range counts points while the curve is placed at raw's x
        // (energies): only energies below m land on the plot. Intended: the
        // view has always shown it so.
        cc.setRealRange(0, lo, m, hi);
        if (n >= 10 && mag) {
            realPts.reserve(m);
            for (int i = 0; i < m; ++i)
                realPts.append(QPointF(raw.points[i].x(), mag[i]));
            p->setPen(QPen(FftColor));
            drawReal(p, 0);
        }
    } else {
        // As above: a range in points, a curve in energies.
        cc.setRealRange(0, raw.yMin, n, raw.yMax);
        realPts.reserve(n);
        for (const QPointF &pt : std::as_const(raw.points))
            realPts.append(pt);
        p->setPen(QPen(RawColor));
        drawReal(p, 0);
    }
}

void XafsView::onMouseMoved()
{
    if (target.points.isEmpty())
        return;
    setupCoords();
    cc.setRealX(xMinV, xMaxV);
    setPointerYRange();
    ui->XVal->setText(QString::number(cc.s2rx(ui->Xafs->m.x), 'f', 1));
    ui->YVal->setText(QString::number(cc.s2ry(ui->Xafs->m.y), 'g', 6));
    update();
}

void XafsView::onWheelMoved()
{
    if (target.points.isEmpty())
        return;
    setupCoords();
    cc.setRealX(xMinV, xMaxV);
    setPointerYRange();
    const double zf = ui->Xafs->zoomFactor;
    const double c = cc.s2rx(ui->Xafs->m.x);
    xMinV = (xMinV - c) * zf + c;
    xMaxV = (xMaxV - c) * zf + c;
    // autoX stays: the zoom holds until the next spectrum brings its range.
    cc.setRealX(xMinV, xMaxV);
    ui->XVal->setText(QString::number(c, 'g', 6));
    ui->YVal->setText(QString::number(cc.s2ry(ui->Xafs->m.y), 'g', 6));
    update();
    emit updated();
}

void XafsView::askSaveFile()
{
    const QString fname = QFileDialog::getSaveFileName(this, tr("Save"), gDataRoot,
                                                       tr("Data File (*.dat);;Any Files (* *.*)"));
    if (!fname.isEmpty())
        saveData(fname);
}

void XafsView::saveData(QString fname)
{
    // The position goes straight after the base name: "sp.dat" at (10, 20)
    // with a 3 x 3 box gives sp10-20-3x3T.dat and so on.
    const QString base = insertBeforeSuffix(fname, QStringLiteral("%1-%2-%3x%4").arg(ix).arg(iy).arg(hw).arg(vw));
    auto nameOf = [&base](const QString &what) {
        return setSuffix(insertBeforeSuffix(base, what), QStringLiteral("dat"), true, false);
    };
    const QString targetName = nameOf(QStringLiteral("T"));
    target.save(targetName, true);
    stdSpec.save(nameOf(QStringLiteral("std")), false);
    for (int i = 0; i < others.size(); ++i) {
        if (others.at(i))
            others.at(i)->save(nameOf(QStringLiteral("other%1").arg(i)), false);
    }
    qDebug().noquote() << "xafs view : save data" << fname << targetName;
    emit savedXafsData(targetName);
    emit saveScreenAs(base);
}

void XafsView::toStars()
{
    QByteArray bytes;
    target.writeTo(bytes, false);
    emit sendXafsDataToStars(bytes);
}
