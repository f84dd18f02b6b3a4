// Body's main-view slots: the spectrum under the pointer and what goes with
// it (cross sections, values, the position fields), what is drawn over the
// image, and the memory of stored positions.
#include "app/Body.h"

#include "analysis/Analyzed2DRes.h"
#include "analysis/Analyzer.h"
#include "app/LineItems.h"
#include "app/TruncatedInt.h"
#include "images/Absorption.h"
#include "images/AbsorptionInput.h"
#include "images/SelectDataFiles.h"
#include "images/TiffData.h"
#include "ui_Body.h"
#include "view/ColorBar.h"
#include "view/CrossSView.h"
#include "view/ImgDispA.h"
#include "view/XafsView.h"

#include <QDebug>
#include <QPainter>
#include <QPushButton>
#include <QRegularExpression>
#include <QSemaphore>
#include <QThreadPool>

#include <cmath>

namespace {

// "[A00]   12   34" into its label and the two coordinates.
void splitPosItem(const QString &item, QString *label, QString *x, QString *y)
{
    QString rest = splitFirstItem(item, label);
    rest = splitFirstItem(rest, x);
    splitFirstItem(rest, y);
}

} // namespace

void Body::setupMainView()
{
    ui->VCross->vertical = true;
    connect(ui->dispA, &DispA::drawImage2, this, &Body::draw);
    connect(ui->dispA, &ImgDispA::mouseMoved, this, qOverload<double, double>(&Body::showXafsSpectrum));
    connect(ui->dispA, &DispA::mouseMoved0, this, &Body::onMouseMovedInDispA);
    connect(ui->dispA, &DispA::mousePressed0, this, &Body::onMousePressedInDispA);
    connect(ui->PosX, &QLineEdit::editingFinished, this, &Body::newCurPos);
    connect(ui->PosY, &QLineEdit::editingFinished, this, &Body::newCurPos);
    connect(ui->PosMem, &QPushButton::clicked, this, &Body::savePos);
    connect(ui->PosGo, &QPushButton::clicked, this, &Body::rememberPos);
    connect(ui->PosDel, &QPushButton::clicked, this, &Body::deletePos);
    connect(ui->CheckVals, &QPushButton::clicked, this, &Body::showAnalyzedVals);
}

int Body::viewHalfWidth() const
{
    return ui->vHWidth_->text().toInt();
}

int Body::viewHalfHeight() const
{
    return ui->vVWidth_->text().toInt();
}

double Body::currentEShift() const
{
    // The map is in detector pixels of the frames it was made with.
    return eShiftAt(imgX0 + curX - calibOffX, imgY0 + curY - calibOffY);
}

void Body::showXafsSpectrum(double x, double y)
{
    curX = truncatedInt(x);
    curY = truncatedInt(y);
    showXafsSpectrum();
}

void Body::showXafsSpectrum()
{
    const QVector<TiffData *> &frames = shownFrames();
    const int idx = shownPanel()->currentIndex();
    xafsView->setMarkE(idx >= 0 && idx < frames.size() ? frames.at(idx)->energy : -1.0);

    const double dE = currentEShift();
    const int hw = viewHalfWidth();
    const int vw = viewHalfHeight();
    // The raw curve comes from the same box sums: on a large stack the sums
    // are most of the pointer's cost.
    const XafsSpectrum x(absorptionSpectrumWithRaw(curX, curY, hw, vw), QStringLiteral("body-show"), targetLineType(), dE,
                         suggestElm());
    const double e = xafsView->setTarget(x);
    // The analysis window sees the same spectrum, analysed as a single one;
    // during a run the worker is the run's.
    if (!running2D)
        analyzer->analyzeAndShowSpectrum(x, suggestElm());

    ui->PosX->setText(QString::asprintf("% 4d", curX));
    ui->PosY->setText(QString::asprintf("% 4d", curY));
    ui->EShiftOnTbl->setText(QString::asprintf("%6.3f", dE));
    ui->EShiftFromStd->setText(QString::asprintf("%5.2f", e));
    xafsView->setRaw(rawSpec);
    emit currentPosition(curX, curY, hw, vw);
}

void Body::crossSections(int x, int y, bool asAbsorption)
{
    const AbsorptionInput in = absorptionInput();
    const int index = ui->SeekBar->value();
    const bool inI0 = !ui->ShowData->isChecked();
    const int hh = viewHalfHeight();
    const int hw = viewHalfWidth();
    auto horizontal = [&] { hCross.take(in, index, inI0, y, 1, hh, asAbsorption, hSection); };
    // The two read the same frames and write their own curves. On a wide
    // detector they cost more than the spectrum under the pointer, so the
    // horizontal one is taken on a pool thread meanwhile, when one is free.
    QSemaphore done;
    const bool apart = imgW + imgH >= 1024 && QThreadPool::globalInstance()->tryStart([&] {
        horizontal();
        done.release();
    });
    if (!apart)
        horizontal();
    vCross.take(in, index, inI0, x, 1, hw, asAbsorption, vSection);
    if (apart)
        done.acquire();
}

void Body::onMouseMovedInDispA()
{
    const ImgDispA *a = ui->dispA;
    const int ix = truncatedInt(a->cc.s2rx(a->m.x));
    const int iy = truncatedInt(a->cc.s2ry(a->m.y));
    const bool asAbsorption = ui->ShowData->isChecked();

    crossSections(ix, iy, asAbsorption);
    ui->HCross->setData(hSection);
    ui->HCross->pos = ix;
    ui->HCross->update();
    ui->VCross->setData(vSection);
    // The vertical section's abscissa is imgH - y, so that the cut stands
    // the right way up beside the image; its mark is put on the same scale.
    ui->VCross->pos = imgH - iy;
    ui->VCross->update();

    if (!ui->ShowResAnalysis->isChecked()) {
        const TiffData *f = a->data;
        if (f && ix >= 0 && iy >= 0 && qint64(ix) < qint64(f->width) && qint64(iy) < qint64(f->height))
            ui->Value->setText(QStringLiteral("%1").arg(f->pixel(ix, iy), 0, 'g', 4).trimmed());
    } else if (const Analyzed2DRes *m = analyzer->selectedMap()) {
        const double v = m->useProc ? m->procValueAt(ix, iy) : m->valueAt(ix, iy);
        ui->Value->setText(QStringLiteral("%1").arg(v, 0, 'g', 4).trimmed());
        ui->Value2->setText(QStringLiteral("%1").arg(m->surface.value(ix, iy), 0, 'g', 4).trimmed());
    }
    if (dark)
        ui->DarkValue->setText(QStringLiteral("%1").arg(dark->pixel(ix, iy), 0, 'g', 6));
}

void Body::onMousePressedInDispA()
{
    const ImgDispA *a = ui->dispA;
    qDebug().noquote() << "pressed" << a->m.x << a->m.y << MouseC::mode(a->m.pressButton, a->m.pressModifiers)
                       << MouseC::mode(a->m.button, a->m.modifiers);
}

QRect Body::screenBox(int x, int y, int hw, int vw) const
{
    // The size is a length in image pixels, so it goes to the screen as the
    // corner does: a screen-to-real conversion here would shrink the box on
    // a magnified image and leave the pointer outside it.
    const ChCoord &cc = ui->dispA->cc;
    return QRect(truncatedInt(cc.r2sx(x - hw)), truncatedInt(cc.r2sy(y - vw)), truncatedInt(cc.r2sdx(2 * hw + 1)),
                 truncatedInt(cc.r2sdy(2 * vw + 1)));
}

void Body::draw(QPainter *p)
{
    const ImgDispA *a = ui->dispA;
    const ChCoord &cc = a->cc;
    const int hw = std::abs(viewHalfWidth());
    const int vw = std::abs(viewHalfHeight());

    p->setPen(QPen(QColor(255, 0, 0), 2));
    p->drawRect(screenBox(curX, curY, hw, vw));

    p->setPen(QColor(192, 192, 0));
    const int sx = truncatedInt(cc.r2sx(curX));
    const int sy = truncatedInt(cc.r2sy(curY));
    p->drawLine(sx, truncatedInt(cc.r2sy(0)), sx, truncatedInt(cc.r2sy(imgH)));
    p->drawLine(truncatedInt(cc.r2sx(0)), sy, truncatedInt(cc.r2sx(imgW)), sy);

    if (a->hasSelection || a->selecting) {
        p->setPen(QColor(192, 192, 255));
        p->drawRect(truncatedInt(cc.r2sx(a->selX)), truncatedInt(cc.r2sy(a->selY)), truncatedInt(cc.r2sdx(a->selW)),
                    truncatedInt(cc.r2sdy(a->selH)));
        const int x = truncatedInt(a->selX);
        const int y = truncatedInt(a->selY);
        ui->BoxSize->setText(QString::asprintf("(% 4d, % 4d)-(% 4d, % 4d)", x, y, truncatedInt(a->selX + a->selW),
                                               truncatedInt(a->selY + a->selH)));
    }

    auto drawArea = [&](const QRectF &r, const QColor &c) {
        p->setPen(c);
        p->drawRect(truncatedInt(cc.r2sx(r.x())), truncatedInt(cc.r2sy(r.y())), truncatedInt(cc.r2sdx(r.width())),
                    truncatedInt(cc.r2sdy(r.height())));
    };
    if (useI0DarkArea)
        drawArea(i0DarkRect, QColor(192, 255, 192));
    if (useI1DarkArea)
        drawArea(i1DarkRect, QColor(255, 192, 192));

    ui->CBar->update();
    // The cells of a checked value range and the analysis area's frame are
    // drawn here once the analysis and its tools exist.
    drawStatsOverlay(p);
    drawStoredPositions(p, hw, vw);
}

void Body::drawStoredPositions(QPainter *p, int hw, int vw)
{
    const int n = ui->PosSelect->count();
    if (n == 0)
        return;
    const ChCoord &cc = ui->dispA->cc;
    p->save();
    p->setPen(QColor(200, 128, 0));
    p->setCompositionMode(QPainter::RasterOp_SourceXorDestination);
    QString label, xs, ys;
    for (int i = 0; i < n; ++i) {
        splitPosItem(ui->PosSelect->itemText(i), &label, &xs, &ys);
        const int x = xs.toInt();
        const int y = ys.toInt();
        p->drawRect(screenBox(x, y, hw, vw));
        const double sx = cc.r2sx(x);
        const double sy = cc.r2sy(y);
        posText.drawFitted(p, QRectF(sx - 1000, sy, 1000, 15), label, Qt::AlignCenter, 1, 15);
    }
    p->restore();
}

void Body::movePosition(int x, int y)
{
    // Aimed at the pixel's centre: the pointer lives in whole screen pixels,
    // and the corner of a magnified pixel would come back as its neighbour.
    ImgDispA *a = ui->dispA;
    a->setupCoords();
    a->setRealMousePos(x + 0.5, y + 0.5);
}

void Body::newCurPos()
{
    if (i1Frames.isEmpty())
        return;
    const TiffData *first = i1Frames.first();
    const int x = truncatedInt(ui->PosX->text().trimmed().toDouble());
    const int y = truncatedInt(ui->PosY->text().trimmed().toDouble());
    if (x >= 0 && qint64(x) < qint64(first->width))
        curX = x;
    if (y >= 0 && qint64(y) < qint64(first->height))
        curY = y;
    showXafsSpectrum();
}

void Body::savePos()
{
    ui->PosSelect->addItem(
        QStringLiteral("[%1] %2 %3").arg(ui->PosLbl->text(), ui->PosX->text(), ui->PosY->text()));
    updatePosLbl();
}

void Body::updatePosLbl()
{
    static const QRegularExpression counter(QStringLiteral("\\D*(\\d+)$"));
    const QString text = ui->PosLbl->text();
    const QRegularExpressionMatch m = counter.match(text);
    if (!m.hasMatch()) {
        ui->PosLbl->setText(text + QStringLiteral("01"));
        return;
    }
    const QString digits = m.captured(1);
    const qsizetype at = m.capturedStart(1);
    // Counting up keeps the width and grows past it: A99 becomes A100.
    const QString next = QStringLiteral("%1").arg(digits.toULongLong() + 1, int(digits.size()), 10, QLatin1Char('0'));
    ui->PosLbl->setText(text.left(at) + next);
}

void Body::rememberPos()
{
    if (i1Frames.isEmpty() || ui->PosSelect->currentIndex() < 0)
        return;
    QString label, xs, ys;
    splitPosItem(ui->PosSelect->currentText(), &label, &xs, &ys);
    const TiffData *first = i1Frames.first();
    bool ok = false;
    const int x = xs.toInt(&ok);
    if (ok && x >= 0 && qint64(x) < qint64(first->width))
        curX = x;
    const int y = ys.toInt(&ok);
    if (ok && y >= 0 && qint64(y) < qint64(first->height))
        curY = y;
    showXafsSpectrum();
}

void Body::deletePos()
{
    const int i = ui->PosSelect->currentIndex();
    if (i >= 0)
        ui->PosSelect->removeItem(i);
}

void Body::showAnalyzedVals()
{
    const Analyzed2DRes *m = analyzer->selectedMap();
    if (!m)
        return;
    qDebug().noquote() << "vals of " << m->name;
    for (int y = 0; y < m->height(); ++y)
        for (int x = 0; x < m->width(); ++x)
            qDebug().noquote() << QString::asprintf("%4d %4d %15.6f %15.6f", x, y, m->valueAt(x, y),
                                                    m->procValueAt(x, y));
}
