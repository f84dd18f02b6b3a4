// Body's absorption slots: the dark image, the dark areas of the two stacks,
// the total-I0 and BG spectra, the bad-pixel mask, and the box spectra that
// everything else is built on.
#include "app/Body.h"

#include "app/Globals.h"
#include "images/Absorption.h"
#include "images/AbsorptionInput.h"
#include "images/SelectDataFiles.h"
#include "images/SelectDataFilesAdditionalSetup.h"
#include "images/XafsFileSelect.h"
#include "images/_FileDialog.h"
#include "tools/Analyzer2.h"
#include "ui_Body.h"
#include "view/ImgDispA.h"
#include "view/XafsView.h"

#include <QDebug>
#include <QPushButton>
#include <QFileInfo>
#include <QGroupBox>
#include <QVBoxLayout>

namespace {

QString rectText(const QRectF &r)
{
    return SelectDataFilesAdditionalSetup::darkAreaText(r.x(), r.y(), r.width(), r.height());
}

// Every row of a freshly read spectrum goes to the log, so that the user can
// see what the file gave.
void logRows(const QString &title, const Spectrum &s)
{
    qDebug().noquote() << title << s.size() << "points";
    for (const QPointF &p : s.points)
        qDebug().noquote() << p.x() << p.y();
}

} // namespace

void Body::setupAbsorption()
{
    darkDialog = new _FileDialog(this, true);
    darkDialog->setObjectName(QStringLiteral("darkDialog"));
    connect(ui->SelectDark, &QPushButton::clicked, darkDialog, &QWidget::show);
    connect(darkDialog, &QFileDialog::fileSelected, this, &Body::selectedDark);
    connect(ui->ClearDark, &QPushButton::clicked, this, &Body::clearDark);

    connect(ui->SelectI1Files, &SelectDataFiles::setDarkArea, this, &Body::setI1DarkArea);
    connect(ui->SelectI1Files, &SelectDataFiles::updateDarkArea, this, &Body::updateI1DarkArea);
    connect(ui->SelectI1Files, &SelectDataFiles::clearDarkArea, this, &Body::clearI1DarkArea);
    connect(ui->SelectI0Files, &SelectDataFiles::setDarkArea, this, &Body::setI0DarkArea);
    connect(ui->SelectI0Files, &SelectDataFiles::updateDarkArea, this, &Body::updateI0DarkArea);
    connect(ui->SelectI0Files, &SelectDataFiles::clearDarkArea, this, &Body::clearI0DarkArea);

    // The two total-I0 selectors sit under the dark controls; the form has
    // no place for them, so they are made here.
    auto *box = new QGroupBox(tr("Total I0"), this);
    box->setObjectName(QStringLiteral("TotalI0Box"));
    auto *layout = new QVBoxLayout(box);
    totalI0ofI1Select = new XafsFileSelect(box);
    totalI0ofI1Select->setObjectName(QStringLiteral("TotalI0ofI1XAFS"));
    totalI0ofI1Select->setTitle(tr("Total I0 of I1"));
    totalI0ofI0Select = new XafsFileSelect(box);
    totalI0ofI0Select->setObjectName(QStringLiteral("TotalI0ofI0XAFS"));
    totalI0ofI0Select->setTitle(tr("Total I0 of I0"));
    layout->addWidget(totalI0ofI1Select);
    layout->addWidget(totalI0ofI0Select);
    ui->sideLayout->insertWidget(ui->sideLayout->indexOf(ui->DarkBox) + 1, box);
    connect(totalI0ofI1Select, &XafsFileSelect::newFile, this, &Body::newTotalI0ofI1File);
    connect(totalI0ofI0Select, &XafsFileSelect::newFile, this, &Body::newTotalI0ofI0File);
}

void Body::setupBGSelect()
{
    bgSelect = new XafsFileSelect(this);
    bgSelect->setObjectName(QStringLiteral("SelectBG"));
    bgSelect->setTitle(tr("BG File"));
    ui->sideLayout->insertWidget(ui->sideLayout->indexOf(ui->DarkBox) + 2, bgSelect);
    connect(bgSelect, &XafsFileSelect::newFile, this, &Body::selectedBG);
    connect(bgSelect, &XafsFileSelect::cleared, this, &Body::clearedBG);
    // The BG plot, once closed, comes back by this button.
    auto *showBG = new QPushButton(tr("Show BG"), this);
    showBG->setObjectName(QStringLiteral("ShowBG"));
    showBG->setToolTip(tr("Show the background spectrum"));
    ui->sideLayout->insertWidget(ui->sideLayout->indexOf(bgSelect) + 1, showBG);
    connect(showBG, &QPushButton::clicked, bgView, &QWidget::show);
}

void Body::setupErrPoints()
{
    const QString fname = gConfig.value(QStringLiteral("ErrPoints"));
    if (!fname.isEmpty()) {
        // Loaded without `keep`, so the mask is switched on here, and
        // Analyzer2's check box shows it.
        if (gErrPoints.load(fname, false)) {
            gErrPoints.inUse = true;
            analyzer2->setUseErrPMaskEnabled(true);
            analyzer2->setUseErrPMaskChecked(true);
            analyzer2->setErrPMaskFileName(gErrPoints.fileName);
            qDebug().noquote() << QStringLiteral("Err Points mask in use: %1 (%2 points)")
                                      .arg(gErrPoints.fileName)
                                      .arg(gErrPoints.points.size());
        } else {
            analyzer2->setUseErrPMaskEnabled(false);
            qDebug().noquote() << QStringLiteral("Err Points mask not in use: %1").arg(fname);
        }
    }
}

void Body::useErrPMaskToggled(bool f)
{
    gErrPoints.inUse = f;
}

// The dark image

void Body::selectedDark(QString fname)
{
    clearDark();
    auto frame = std::make_unique<TiffData>();
    if (!frame->read(fname, nullptr))
        return;
    dark = std::move(frame);
    ui->DarkFileName->setText(QFileInfo(fname).fileName());
    ui->DarkExpTime->setText(QString::number(dark->exposureMs, 'g', 6));
}

void Body::clearDark()
{
    stopRunBeforeFramesGo();
    dark.reset();
    ui->DarkFileName->clear();
}

// Dark areas

QRectF Body::selectedArea() const
{
    return ui->dispA->selectedArea();
}

void Body::setI1DarkArea()
{
    useI1DarkArea = true;
    i1DarkRect = selectedArea();
    ui->SelectI1Files->darkArea(rectText(i1DarkRect));
    // The dark area was chosen by a fresh selection; the one before it comes
    // back, so the area of interest is not lost.
    ui->dispA->recallOldSelectedArea();
    i1DarkList.clear();
    updateI1DarkArea();
}

void Body::setI0DarkArea()
{
    useI0DarkArea = true;
    i0DarkRect = selectedArea();
    ui->SelectI0Files->darkArea(rectText(i0DarkRect));
    // The dark area was chosen by a fresh selection; the one before it comes
    // back, so the area of interest is not lost.
    ui->dispA->recallOldSelectedArea();
    i0DarkList.clear();
    updateI0DarkArea();
}

void Body::updateI1DarkArea()
{
    Absorption::updateDarkList(i1Frames, dark.get(), i1DarkRect, i1DarkList);
}

void Body::updateI0DarkArea()
{
    Absorption::updateDarkList(i0Frames, dark.get(), i0DarkRect, i0DarkList);
}

void Body::clearUpdateI1DarkArea()
{
    if (!useI1DarkArea)
        return;
    i1DarkList.clear();
    updateI1DarkArea();
}

void Body::clearUpdateI0DarkArea()
{
    if (!useI0DarkArea)
        return;
    i0DarkList.clear();
    updateI0DarkArea();
}

void Body::clearI1DarkArea()
{
    useI1DarkArea = false;
    i1DarkList.clear();
}

void Body::clearI0DarkArea()
{
    useI0DarkArea = false;
    i0DarkList.clear();
}

// Total I0 and BG spectra

void Body::newTotalI0ofI1File(QString fname)
{
    totalI0ofI1.setup(QStringLiteral("Total I0 of I1"), suggestElm());
    const bool ok = totalI0ofI1.load(fname);
    totalI0ofI1Select->fileNameValid(ok);
    logRows(totalI0ofI1.name, totalI0ofI1);
}

void Body::newTotalI0ofI0File(QString fname)
{
    totalI0ofI0.setup(QStringLiteral("Total I0 of I0"), suggestElm());
    const bool ok = totalI0ofI0.load(fname);
    totalI0ofI0Select->fileNameValid(ok);
    logRows(totalI0ofI0.name, totalI0ofI0);
}

void Body::selectedBG(QString fname)
{
    bg.setup(QStringLiteral("BG"), suggestElm());
    useBG = bg.load(fname);
    bgSelect->fileNameValid(useBG);
    if (useBG) {
        bgView->setTarget(bg);
        bgView->show();
    }
}

void Body::clearedBG()
{
    useBG = false;
}

// Box spectra

AbsorptionInput Body::absorptionInput()
{
    AbsorptionInput in;
    in.i1Frames = &i1Frames;
    in.i0Frames = &i0Frames;
    in.dark = dark.get();
    // What doesn't parse, the empty field included, is 0.
    in.darkExpTime = ui->DarkExpTime->text().toDouble();
    in.i1ExpTime = ui->SelectI1Files->expTimeMS();
    in.i0ExpTime = ui->SelectI0Files->expTimeMS();
    in.useI0 = ui->UseI0->isChecked();
    in.fluoType = ui->FluoType->isChecked();
    in.useI1DarkArea = useI1DarkArea;
    in.i1DarkRect = i1DarkRect;
    in.i1DarkList = &i1DarkList;
    in.useI0DarkArea = useI0DarkArea;
    in.i0DarkRect = i0DarkRect;
    in.i0DarkList = &i0DarkList;
    in.totalI0ofI1 = &totalI0ofI1;
    return in;
}

const Spectrum &Body::absorptionSpectrum(int x, int y, int hw, int vw)
{
    Absorption::absorptionSpectrum(absorptionInput(), x, y, hw, vw, absSpectrum);
    return absSpectrum;
}

const Spectrum &Body::absorptionSpectrumWithRaw(int x, int y, int hw, int vw)
{
    Absorption::absorptionSpectrum(absorptionInput(), x, y, hw, vw, absSpectrum, &rawSpec, &pointerSums);
    return absSpectrum;
}

const Spectrum &Body::absorptionSpectrumByCorners(int x0, int y0, int x1, int y1)
{
    Absorption::absorptionSpectrumByCorners(absorptionInput(), x0, y0, x1, y1, absSpectrum);
    return absSpectrum;
}

const Spectrum &Body::rawSpectrum(int x, int y, int hw, int vw)
{
    Absorption::rawSpectrum(absorptionInput(), x, y, hw, vw, rawSpec);
    return rawSpec;
}

const Spectrum &Body::horizontalSection(int y, int hw, int vw, bool asAbsorption)
{
    Absorption::horizontalSection(absorptionInput(), ui->SeekBar->value(), !ui->ShowData->isChecked(), y, hw, vw,
                                  asAbsorption, hSection);
    return hSection;
}

const Spectrum &Body::verticalSection(int x, int hw, int vw, bool asAbsorption)
{
    Absorption::verticalSection(absorptionInput(), ui->SeekBar->value(), !ui->ShowData->isChecked(), x, hw, vw,
                                asAbsorption, vSection);
    return vSection;
}
