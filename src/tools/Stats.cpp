#include "tools/Stats.h"

#include "analysis/Analyzed2DRes.h"
#include "app/TruncatedInt.h"
#include "ui_Stats.h"

#include <QDebug>
#include <QPainter>

#include <cmath>

namespace {
QString g6(double v)
{
    return QString::number(v, 'g', 6);
}
} // namespace

Stats::Stats(QWidget *parent)
    : QFrame(parent)
    , ui(new Ui::Stats)
{
    ui->setupUi(this);
    const QString ro = QStringLiteral("background-color: rgb(255, 252, 200);");
    for (QLineEdit *e : {ui->Num, ui->Mean, ui->Sigma, ui->SelMin, ui->SelMax, ui->SelMean, ui->SelSigma, ui->X, ui->Val})
        e->setStyleSheet(ro);
    ui->DA->zoomEnabled = false;
    ui->DA->setMouseTracking(true);
    connect(ui->DA, &DispA::drawImage1, this, &Stats::draw);
    connect(ui->DA, &DispA::mouseMoved0, this, &Stats::mouseMoved);
    connect(ui->DA, &DispA::mousePressed0, this, &Stats::mousePressed);
    connect(ui->DA, &DispA::mouseReleased0, this, &Stats::mouseReleased);
    connect(ui->ShowOverImage, &QCheckBox::toggled, this, &Stats::toggledShowOverImage);
    connect(ui->ShowStatsInSelectedArea, &QCheckBox::toggled, ui->DA, qOverload<>(&QWidget::update));
    connect(ui->Bins, &QLineEdit::editingFinished, this, &Stats::compute);
}

Stats::~Stats() = default;

void Stats::showWindow()
{
    show();
    raise();
}

bool Stats::showOverImage() const
{
    return ui->ShowOverImage->isChecked();
}

void Stats::setMap(Analyzed2DRes *m, const AnalyzeCond &a)
{
    if (!m)
        return;
    map = m;
    area = a;
    compute();
}

void Stats::compute()
{
    if (!map)
        return;
    hist.fill(*map, area, ui->Bins->text().toInt());
    qDebug().noquote() << QStringLiteral("stats %1: n %2 mean %3 sigma %4 min %5 max %6 bins %7")
                              .arg(map->name)
                              .arg(hist.count)
                              .arg(g6(hist.mean), g6(hist.sigma), g6(hist.min), g6(hist.max))
                              .arg(hist.bins);
    QStringList counts;
    for (int c : std::as_const(hist.counts))
        counts << QString::number(c);
    qDebug().noquote() << "stats counts:" << counts.join(' ');
    selectionChanged();
}

void Stats::selectionChanged()
{
    // The numbers were computed with the range of the previous call; the
    // log shows the range they belong to.
    qDebug().noquote() << QStringLiteral("stats selection: n %1 mean %2 sigma %3 next range %4 %5")
                              .arg(hist.selCount)
                              .arg(g6(hist.selMean), g6(hist.selSigma), g6(hist.selLo), g6(hist.selHi));
    emit rangeSelected();
    ui->DA->update();
}

void Stats::draw(QPainter *p)
{
    DispA *da = ui->DA;
    ChCoord &cc = da->cc;
    const int W = da->width(), H = da->height();
    p->fillRect(0, 0, W, H, Qt::white);
    cc.setWindow(0, H, W, 0);
    // With y running up, the "top" margin lies at the bottom: room for the
    // ticks and their labels.
    cc.marginT = 40.0 / std::max(H, 80);
    cc.applyMargins();
    const int top = hist.maxCount();
    cc.setRealRange(hist.min, 0, hist.max, top > 0 ? top : 1);
    showNumbers();
    if (hist.counts.isEmpty())
        return;
    auto vLine = [&](double x, double y0, double y1) {
        p->drawLine(QPointF(cc.r2sx(x), cc.r2sy(y0)), QPointF(cc.r2sx(x), cc.r2sy(y1)));
    };
    const double fullH = top > 0 ? top : 1;

    p->setPen(QPen(Qt::black, 3));
    for (int i = 0; i < hist.counts.size(); ++i)
        vLine(hist.min + (i + 0.5) * hist.binWidth, 0, hist.counts[i]);

    // Ticks and labels every fifth of the bins; with fewer than five bins,
    // at every bin.
    p->setPen(Qt::black);
    QFont f = p->font();
    f.setPixelSize(16);
    p->setFont(f);
    const int step = std::max(1, hist.bins / 5);
    const double y0 = cc.r2sy(0);
    for (int i = 0; i <= hist.bins; i += step) {
        const double v = hist.min + i * hist.binWidth;
        const double x = cc.r2sx(v);
        p->drawLine(QPointF(x, y0), QPointF(x, y0 + 10));
        p->drawText(QRectF(x - 50, y0 + 10, 100, 20), Qt::AlignHCenter | Qt::AlignTop, QString::number(v, 'g', 4));
    }

    auto meanLines = [&](double mean, double sigma) {
        p->setPen(QColor(255, 0, 0));
        vLine(mean, 0, fullH);
        p->setPen(QColor(200, 200, 0));
        vLine(mean - sigma, 0, fullH);
        vLine(mean + sigma, 0, fullH);
    };
    meanLines(hist.mean, hist.sigma);
    if (ui->ShowStatsInSelectedArea->isChecked())
        meanLines(hist.selMean, hist.selSigma);

    const double mx = cc.s2rx(da->m.x);
    p->setPen(QColor(0, 200, 200));
    p->drawLine(QPointF(da->m.x, 0), QPointF(da->m.x, H));
    ui->X->setText(g6(mx));
    const int mb = hist.binOf(mx);
    ui->Val->setText(QStringLiteral("%1/%2").arg(mb >= 0 ? hist.counts[mb] : 0).arg(top));

    p->setPen(QColor(0, 0, 255));
    vLine(hist.rangeLo, 0, fullH);
    vLine(hist.rangeHi, 0, fullH);

    const int pb = hist.binOf(pointedValue);
    p->setPen(QPen(QColor(0, 200, 0), 5));
    vLine(hist.min + (pb + 0.5) * hist.binWidth, 0, hist.counts[pb]);
}

void Stats::showNumbers()
{
    ui->Num->setText(QString::number(hist.count));
    ui->Mean->setText(g6(hist.mean));
    ui->Sigma->setText(g6(hist.sigma));
    ui->SelMin->setText(g6(hist.rangeLo));
    ui->SelMax->setText(g6(hist.rangeHi));
    ui->SelMean->setText(g6(hist.selMean));
    ui->SelSigma->setText(g6(hist.selSigma));
}

void Stats::mousePressed()
{
    const ChCoord &cc = ui->DA->cc;
    const double x = ui->DA->m.x;
    dragged = nullptr;
    if (std::fabs(cc.r2sx(hist.rangeLo) - x) < 20)
        dragged = &hist.rangeLo;
    if (std::fabs(cc.r2sx(hist.rangeHi) - x) < 20)
        dragged = &hist.rangeHi;
}

void Stats::mouseMoved()
{
    if (dragged) {
        *dragged = ui->DA->cc.s2rx(ui->DA->m.x);
        hist.selectionStats();
        selectionChanged();
        return;
    }
    ui->DA->update();
}

void Stats::mouseReleased()
{
    dragged = nullptr;
    if (hist.rangeLo > hist.rangeHi)
        std::swap(hist.rangeLo, hist.rangeHi);
    ui->DA->update();
}

void Stats::toggledShowOverImage(bool)
{
    emit rangeSelected();
}

void Stats::pointedAt(double rx, double ry)
{
    pointedValue = map ? map->valueAt(truncatedInt(rx), truncatedInt(ry)) : 0.0;
    ui->DA->update();
}

void Stats::setBins(int bins)
{
    ui->Bins->setText(QString::number(bins));
    compute();
}

void Stats::setOverImage(bool f)
{
    ui->ShowOverImage->setChecked(f);
}

void Stats::setCalcInSelectedRegion(bool f)
{
    ui->ShowStatsInSelectedArea->setChecked(f);
}
