#include "tools/FVView.h"

#include "analysis/FeatureValueLists.h"
#include "tools/FVMaps.h"
#include "ui_FVView.h"

#include <QPainter>

namespace {
FVMaps::Points pointsOf(const FeatureValueLists *l)
{
    FVMaps::Points p;
    if (!l)
        return p;
    p.xs = &l->dM.values;
    p.ys = &l->dE12.values;
    p.x0 = l->dM.min;
    p.x1 = l->dM.max;
    p.y0 = l->dE12.min;
    p.y1 = l->dE12.max;
    return p;
}

// The picture scaled into r, its sides kept in proportion.
void drawFitted(QPainter *p, const QImage &img, const QRectF &r)
{
    if (img.isNull())
        return;
    const double s = std::min(r.width() / img.width(), r.height() / img.height());
    const QSizeF size(img.width() * s, img.height() * s);
    p->drawImage(QRectF(r.center() - QPointF(size.width() / 2, size.height() / 2), size), img);
}
} // namespace

FVView::FVView(const FeatureValueLists *pts, int mSize, int hSize, QWidget *parent)
    : QFrame(parent)
    , ui(new Ui::FVView)
    , points(pts)
    , mapSize(mSize)
    , hMapSize(hSize)
{
    ui->setupUi(this);
    connect(ui->dispA_, &DispA::drawImage1, this, &FVView::draw);
    connect(ui->reDraw_, &QPushButton::clicked, this, &FVView::updateMap);
}

FVView::~FVView() = default;

void FVView::showWindow()
{
    show();
    raise();
}

void FVView::updateMap()
{
    updateVMap();
    updateVHMap();
    ui->dispA_->update();
}

void FVView::updateVMap()
{
    fvMap = FVMaps::scatter(pointsOf(points), mapSize);
    fvMap.save(QStringLiteral("fvMap.png"));
}

void FVView::updateVHMap()
{
    fvHMap = FVMaps::density(pointsOf(points), hMapSize, ui->kernelHW_->text().toInt(),
                             ui->kernelBVal_->text().toDouble(), ui->cRange_->text().toDouble());
    fvHMap.save(QStringLiteral("fvHMap.png"));
}

void FVView::draw(QPainter *p)
{
    const QRectF all(0, 0, ui->dispA_->width(), ui->dispA_->height());
    const double half = all.width() / 2;
    drawFitted(p, fvHMap, QRectF(0, 0, half, all.height()));
    drawFitted(p, fvMap, QRectF(half, 0, half, all.height()));
}
