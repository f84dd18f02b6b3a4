#include "tools/ImgProc.h"

#include "images/TiffData.h"
#include "tools/EdgeAlign.h"
#include "ui_ImgProc.h"

#include <QDebug>

namespace {
QString g6(double v)
{
    return QString::number(v, 'g', 6);
}
} // namespace

ImgProc::ImgProc(QWidget *parent)
    : QFrame(parent)
    , ui(new Ui::ImgProc)
{
    ui->setupUi(this);
    ui->DispA->setImage(&screen);
    connect(ui->EdgeDetect, &QCheckBox::toggled, this, &ImgProc::toggledEdgeDetect);
    connect(ui->BinThVSlider, &QSlider::valueChanged, this, &ImgProc::movedBinThVSlider);
    connect(ui->BinThV, &QLineEdit::editingFinished, this, &ImgProc::newBinThV);
    connect(ui->BinaryImage, &QCheckBox::toggled, this, [this] {
        binarize();
        drawOnImage();
    });
    connect(ui->SetRef, &QPushButton::clicked, this, &ImgProc::setRefBin);
    connect(ui->Compare, &QCheckBox::toggled, this, &ImgProc::drawOnImage);
    connect(ui->ShiftX, &QLineEdit::editingFinished, this, &ImgProc::drawOnImage);
    connect(ui->ShiftY, &QLineEdit::editingFinished, this, &ImgProc::drawOnImage);
    for (QPushButton *b : {ui->ShiftU, ui->ShiftD, ui->ShiftL, ui->ShiftR})
        connect(b, &QPushButton::clicked, this, &ImgProc::shiftBinImg);
    connect(ui->ShiftAuto, &QPushButton::clicked, this, &ImgProc::autoShiftBinImg);
    connect(ui->SetShift, &QPushButton::clicked, this, &ImgProc::setShift);
    connect(ui->ClearAllShifts, &QPushButton::clicked, this, &ImgProc::clearAllShifts);
    connect(ui->CBar, &ColorBar::cBarUpdating, this, &ImgProc::drawOnImage);
    connect(ui->CBar, &ColorBar::cBarUpdated, this, &ImgProc::drawOnImage);
}

ImgProc::~ImgProc() = default;

void ImgProc::showWindow()
{
    show();
    raise();
}

void ImgProc::setImage(TiffData *frame)
{
    if (!ui->EdgeDetect->isChecked())
        return;
    current = frame;
    w = frame ? int(frame->width) : 0;
    h = frame ? int(frame->height) : 0;
    if (!frame)
        return;
    edgeDetect();
    if (ui->BinaryImage->isChecked())
        binarize();
    drawOnImage();
}

void ImgProc::forgetFrames(const QVector<TiffData *> &frames)
{
    if (current && frames.contains(current)) {
        current = nullptr;
        w = h = 0;
    }
}

void ImgProc::toggledEdgeDetect(bool)
{
    emit askGiveData();
}

void ImgProc::edgeDetect()
{
    if (!current)
        return;
    auto img = std::make_unique<ProcImage>();
    if (!EdgeAlign::edgeDetect(*current, w, h, *img)) {
        qDebug().noquote() << "edge detect: no picture of" << w << "x" << h;
        return;
    }
    edgeImg = std::move(img);
    ui->MinEdgeV->setText(g6(edgeImg->min));
    ui->MaxEdgeV->setText(g6(edgeImg->max));
    setBinThV();
}

void ImgProc::setBinThV()
{
    const double mn = ui->MinEdgeV->text().toDouble();
    const double mx = ui->MaxEdgeV->text().toDouble();
    ui->BinThV->setText(g6(mn + (mx - mn) * (ui->BinThVSlider->value() / 1000.0)));
}

void ImgProc::movedBinThVSlider(int)
{
    setBinThV();
    binarize();
    drawOnImage();
}

void ImgProc::newBinThV()
{
    binarize();
    drawOnImage();
}

void ImgProc::binarize()
{
    if (!current || !edgeImg)
        return;
    if (!binImg)
        binImg = std::make_unique<ProcImage>();
    EdgeAlign::binarize(*edgeImg, ui->BinThV->text().toDouble(), *binImg);
}

void ImgProc::setRefBin()
{
    if (!binImg)
        return;
    refBin = std::make_unique<ProcImage>(*binImg);
    drawOnImage();
}

int ImgProc::shiftX() const
{
    return ui->ShiftX->text().toInt();
}

int ImgProc::shiftY() const
{
    return ui->ShiftY->text().toInt();
}

void ImgProc::setShiftFields(int sx, int sy)
{
    ui->ShiftX->setText(QString::number(sx));
    ui->ShiftY->setText(QString::number(sy));
}

bool ImgProc::comparable() const
{
    if (!binImg) {
        qDebug().noquote() << "no bin image";
        return false;
    }
    if (!refBin) {
        qDebug().noquote() << "no ref bin image";
        return false;
    }
    if (!binImg->sameSize(*refBin)) {
        qDebug().noquote() << "size mis-match";
        return false;
    }
    return true;
}

void ImgProc::drawOnImage()
{
    if (!ui->Compare->isChecked()) {
        const ProcImage *src = ui->BinaryImage->isChecked() ? binImg.get() : edgeImg.get();
        if (!src)
            return;
        screen = EdgeAlign::render(*src, *ui->CBar);
        showScreen();
        return;
    }
    if (!comparable())
        return;
    if (ui->AAutoShift->isChecked())
        autoShiftBinImg0();
    const int sx = shiftX(), sy = shiftY();
    screen = EdgeAlign::compare(*refBin, *binImg, sx, sy);
    nsp = EdgeAlign::normScalarProduct(*refBin, *binImg, sx, sy);
    ui->NormScolarP->setText(g6(nsp).left(6));
    showScreen();
}

void ImgProc::showScreen()
{
    // A picture of a new size resets the view; otherwise the zoom stays.
    if (screen.size() != lastSize)
        ui->DispA->setImage(&screen);
    else
        ui->DispA->update();
    lastSize = screen.size();
    emit updateImg();
}

void ImgProc::shiftBinImg()
{
    const QObject *s = sender();
    int sx = shiftX(), sy = shiftY();
    if (s == ui->ShiftU)
        --sy;
    else if (s == ui->ShiftD)
        ++sy;
    else if (s == ui->ShiftR)
        ++sx;
    else if (s == ui->ShiftL)
        --sx;
    setShiftFields(sx, sy);
    drawOnImage();
}

void ImgProc::autoShiftBinImg0()
{
    if (!comparable())
        return;
    int sx = shiftX(), sy = shiftY();
    double best = nsp;
    EdgeAlign::climb(*refBin, *binImg, sx, sy, best);
    setShiftFields(sx, sy);
    if (ui->ASetShift->isChecked())
        emit imgShift(sx, sy);
}

void ImgProc::autoShiftBinImg()
{
    autoShiftBinImg0();
    drawOnImage();
}

void ImgProc::setShift()
{
    emit imgShift(shiftX(), shiftY());
}

void ImgProc::clearAllShifts()
{
    emit askClearAllShifts();
}
