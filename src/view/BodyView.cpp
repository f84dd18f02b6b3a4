// Body's view slots: which frame the image area shows, the navigation
// through a stack, what follows a change of the colour bar, and the batch
// commands of the box sizes, the display and the image view; the spectrum
// views.
#include "app/Body.h"

#include "analysis/Analyzed2DRes.h"
#include "app/Globals.h"
#include "app/WindowPlaces.h"
#include "batch/CmdArgs.h"
#include "images/SelectDataFiles.h"
#include "tools/ImgProc.h"
#include "ui_Body.h"
#include "view/ColorBar.h"
#include "view/ImgDispA.h"
#include "view/XafsView.h"

#include <QDebug>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QSignalBlocker>
#include <QTimer>

void Body::setupNavigation()
{
    connect(ui->Prev, &QPushButton::clicked, this, &Body::prev);
    connect(ui->Next, &QPushButton::clicked, this, &Body::next);
    // Only a drag of the handle shows another frame; "<", ">" and the number
    // field are the keyboard's way through the stack.
    connect(ui->SeekBar, &QSlider::sliderMoved, this, &Body::sliderMoved);
    connect(ui->ImgNo, &QSpinBox::valueChanged, this, &Body::newImageNo);
    ui->SeekBar->setRange(0, 0);
    ui->ImgNo->setRange(0, 0);

    connect(ui->ZoomIn, &QPushButton::clicked, ui->dispA, &ImgDispA::setViewWAsSelectedArea);
    connect(ui->ResetScale, &QPushButton::clicked, ui->dispA, &ImgDispA::resetImageViewWindow);
    connect(ui->resetMax_, &QCheckBox::toggled, ui->dispA, &ImgDispA::setResetMax);
    ui->dispA->setResetMax(ui->resetMax_->isChecked());
    connect(ui->SelAreaFull, &QPushButton::clicked, this, &Body::selAreaFull);
}

bool Body::showsI1() const
{
    return ui->ShowData->isChecked();
}

const QVector<TiffData *> &Body::shownFrames() const
{
    return showsI1() ? i1Frames : i0Frames;
}

SelectDataFiles *Body::shownPanel() const
{
    return showsI1() ? ui->SelectI1Files : ui->SelectI0Files;
}

void Body::showData(int no)
{
    ui->dispA->setShowOverLayer(false);
    const QVector<TiffData *> &frames = shownFrames();
    {
        // The range follows the stack shown, which may be the other one
        // since the last load.
        const QSignalBlocker seek(ui->SeekBar);
        const QSignalBlocker number(ui->ImgNo);
        const int last = qMax(0, int(frames.size()) - 1);
        ui->SeekBar->setMaximum(last);
        ui->ImgNo->setMaximum(last);
        ui->SeekBar->setValue(no);
        ui->ImgNo->setValue(no);
    }
    if (no < 0 || no >= frames.size()) {
        // Nothing new to show; but a frame of the stack not chosen must not
        // stay on screen as if it belonged to this one.
        if (ui->dispA->data && !frames.contains(ui->dispA->data))
            ui->dispA->setData(nullptr);
        return;
    }
    TiffData *f = frames.at(no);
    ui->dispA->setData(f);
    if (imgProc)
        imgProc->setImage(f);
    ui->dispA->setToolTip(f->fileName);
    ui->ImgNo->setToolTip(f->fileName);
    qDebug().noquote() << QStringLiteral("show %1 frame %2: %3 eV")
                              .arg(showsI1() ? QStringLiteral("I1") : QStringLiteral("I0"))
                              .arg(no)
                              .arg(f->energy, 0, 'f', 2);
    ui->dispA->update();
}

void Body::sliderMoved(int idx)
{
    SelectDataFiles *panel = shownPanel();
    panel->select(idx);
    spectrumOnFrameSelected(panel->energyAt(idx));
    showData(idx);
}

void Body::prev()
{
    const int i = shownPanel()->currentIndex();
    if (i > 0)
        sliderMoved(i - 1);
}

void Body::next()
{
    const int i = shownPanel()->currentIndex();
    if (i + 1 < shownFrames().size())
        sliderMoved(i + 1);
}

void Body::seekImage(int imgNo)
{
    sliderMoved(imgNo);
}

void Body::newImageNo()
{
    seekImage(ui->ImgNo->value());
}

void Body::dispImgSelected(bool checked)
{
    // Each change toggles two buttons; the one switched on acts.
    if (!checked)
        return;
    if (ui->ShowData->isChecked() || ui->ShowI0->isChecked())
        showData(shownPanel()->currentIndex());
    else if (ui->ShowResAnalysis->isChecked())
        showSelectedMap();
    else if (ui->ShowShiftMap->isChecked()) {
        // A map without an image yet leaves the frame on show.
        ui->dispA->overLayer = shiftMap;
        ui->dispA->setShowOverLayer(true);
        ui->dispA->update();
    }
}

void Body::selAreaFull()
{
    ui->dispA->setSelectedArea(0, 0, imgW - 1, imgH - 1);
}

void Body::rerenderShown(qsizetype from, qsizetype to)
{
    const QVector<TiffData *> &frames = shownFrames();
    for (qsizetype i = from; i < to && i < frames.size(); ++i)
        frames.at(i)->render();
}

bool Body::framesFollowColorBar() const
{
    // What the bar recolours, in this order: the shift map when it is shown
    // and has data, the analysis map when it is shown, else the current
    // stack's frames. So with "Eng. Shift" on and no map the frames follow.
    return !shiftMapFollowsColorBar() && !ui->ShowResAnalysis->isChecked();
}

void Body::cBarUpdating()
{
    // While an end is dragged only the current frame follows, so that the
    // drag stays smooth on a stack of hundreds of frames.
    if (shiftMapFollowsColorBar()) {
        shiftMap->genImg();
    } else if (framesFollowColorBar()) {
        const int idx = shownPanel()->currentIndex();
        if (idx >= 0 && idx < shownFrames().size())
            shownFrames().at(idx)->render();
    } else {
        setupResAnalysisImage();
    }
    ui->dispA->update();
}

void Body::cBarUpdated()
{
    qDebug().noquote() << "cBarUpdated" << ui->CBar->lo() << ui->CBar->hi();
    if (shiftMapFollowsColorBar()) {
        shiftMap->genImg();
    } else if (!framesFollowColorBar()) {
        setupResAnalysisImage();
    } else {
        const int idx = shownPanel()->currentIndex();
        if (idx >= 0 && idx < shownFrames().size())
            rerenderShown(0, shownFrames().size());
    }
    ui->dispA->update();
}

void Body::execViewCmd(EX_CMD_ID id, const CmdLine &cmd)
{
    const QString n = QString::number(CmdArgs::toInt(cmd, 0));
    switch (id) {
    case SET_BAND_W:
        ui->vHWidth_->setText(n);
        ui->aHWidth_->setText(n);
        break;
    case SET_BAND_H:
        ui->vVWidth_->setText(n);
        ui->aVWidth_->setText(n);
        break;
    case SET_VIEW_W:
        ui->vHWidth_->setText(n);
        break;
    case SET_VIEW_H:
        ui->vVWidth_->setText(n);
        break;
    case SET_ANALYZE_W:
        ui->aHWidth_->setText(n);
        break;
    case SET_ANALYZE_H:
        ui->aVWidth_->setText(n);
        break;
    case SELECT_DISP_IMAGE:
        if (QAbstractButton *b = selGroup.button(CmdArgs::toInt(cmd, 0)))
            b->setChecked(true);
        break;
    case SELECT_DISP_IMAGE_I1:
        ui->ShowData->setChecked(true);
        break;
    case SELECT_DISP_IMAGE_I0:
        ui->ShowI0->setChecked(true);
        break;
    case SELECT_DISP_IMAGE_ESHIFT:
        ui->ShowShiftMap->setChecked(true);
        break;
    case SELECT_DISP_IMAGE_ANALYZED:
        ui->ShowResAnalysis->setChecked(true);
        break;
    case SEEK_IMAGE:
        seekImage(CmdArgs::toInt(cmd, 0));
        break;
    case SELECT_REGION:
        ui->dispA->setSelectedArea(CmdArgs::toInt(cmd, 0), CmdArgs::toInt(cmd, 1), CmdArgs::toInt(cmd, 2),
                                   CmdArgs::toInt(cmd, 3));
        break;
    case SCALE_RESET:
        ui->dispA->resetImageViewWindow();
        break;
    case ZOOM_IN:
        ui->dispA->setViewWAsSelectedArea();
        break;
    default:
        break;
    }
}

void Body::setupXafsView()
{
    // Children with a window of their own: they close with the main window
    // instead of keeping the program alive.
    xafsView = new XafsView(this);
    xafsView->setWindowFlags(Qt::Window);
    xafsView->setWindowTitle(tr("Spectrum at the position"));
    xafsView->setSendVisible(gConfig.value(QStringLiteral("SHOW_SEND_TO_STARS_ON_XAFS_VIEW"), QStringLiteral("0")).toInt()
                             == 1);
    connect(this, &Body::currentPosition, xafsView, &XafsView::currentPosition);
    connect(xafsView, &XafsView::sendXafsDataToStars, this, &Body::sendXafsDataToStars);
    // A saved spectrum is announced, and the image area is saved beside it
    // as a picture of the screen.
    connect(xafsView, &XafsView::savedXafsData, this, &Body::savedXafsData);
    connect(xafsView, &XafsView::saveScreenAs, this, &Body::saveScreenAs);

    // The plot is what the pointer over the image is for, so it is there
    // from the start; the button brings it back once it has been closed.
    auto *showView = new QPushButton(tr("Spectrum"), ui->centralwidget);
    showView->setObjectName(QStringLiteral("ShowXafsView"));
    showView->setToolTip(tr("Show the spectrum at the position"));
    ui->toolsLayout->addWidget(showView);
    connect(showView, &QPushButton::clicked, xafsView, [this]() {
        xafsView->show();
        xafsView->raise();
        xafsView->activateWindow();
    });
    xafsView->resize(640, 440);
    // Shown once the event loop runs, that is after main() has shown this
    // window, so that the plot comes up on top of it; a main window that is
    // never shown (a test) brings up no plot.
    // A place kept from the last session wins over all this.
    QTimer::singleShot(0, xafsView, [this]() {
        if (!isVisible() || (places && places->restored(xafsView)))
            return;
        // Beside the main window where the screen has room, so that the plot
        // does not hide the image it belongs to, and as tall as the main
        // window, so that the two stand as one block.
        const QRect main = frameGeometry();
        const QScreen *s = screen();
        if (s && s->availableGeometry().contains(QRect(main.right() + 1, main.top(), xafsView->width(), main.height()))) {
            xafsView->move(main.right() + 1, main.top());
            xafsView->resize(xafsView->width(), height());
        }
        xafsView->show();
    });

    bgView = new XafsView(this);
    bgView->setWindowFlags(Qt::Window);
    bgView->setWindowTitle(tr("BG Specturm"));
}

void Body::execXafsViewCmd(EX_CMD_ID id, const CmdLine &cmd)
{
    switch (id) {
    case SAVE_SPECTRA:
        xafsView->saveData(CmdArgs::str(cmd, 0));
        break;
    case XAFS_VIEW_NORMALIZE:
        xafsView->setNormalize(CmdArgs::toBool(cmd, 0));
        break;
    case XAFS_VIEW_ENERUGY_CORRECTION:
        xafsView->setEnergyCorrection(CmdArgs::toBool(cmd, 0));
        break;
    default:
        break;
    }
}
