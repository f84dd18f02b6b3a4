// Body's view slots: what follows a change of the colour bar, and the
// spectrum views.
#include "app/Body.h"

#include "app/Globals.h"
#include "batch/CmdArgs.h"
#include "ui_Body.h"
#include "view/ColorBar.h"
#include "view/XafsView.h"

#include <QDebug>
#include <QPushButton>
#include <QTimer>

void Body::cBarUpdating()
{
    // TODO: rebuild the display image of what is shown (the shift map, the
    // Analyzer's current map, or the current frame of the I1 or I0 stack)
    // once the stacks and the image area exist. Until then only the area is
    // repainted.
    ui->dispA->update();
}

void Body::cBarUpdated()
{
    qDebug().noquote() << "cBarUpdated" << ui->CBar->lo() << ui->CBar->hi();
    // TODO: as cBarUpdating, but rebuild every frame of the shown stack.
    ui->dispA->update();
}

void Body::setupXafsView()
{
    // Children with a window of their own: they close with the main window
    // instead of keeping the program alive.
    xafsView = new XafsView(this);
    xafsView->setWindowFlags(Qt::Window);
    xafsView->setWindowTitle(QStringLiteral("Spectrum at the position"));
    xafsView->setSendVisible(gConfig.value(QStringLiteral("SHOW_SEND_TO_STARS_ON_XAFS_VIEW"), QStringLiteral("0")).toInt()
                             == 1);
    connect(this, &Body::currentPosition, xafsView, &XafsView::currentPosition);
    // saveScreenAs, savedXafsData and sendXafsDataToStars have no receiver
    // yet: the picture of the screen, the announcement of a saved file and the
    // network come with the saving and network code.

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
    QTimer::singleShot(0, xafsView, [this]() {
        if (isVisible())
            xafsView->show();
    });

    bgView = new XafsView(this);
    bgView->setWindowFlags(Qt::Window);
    bgView->setWindowTitle(QStringLiteral("BG Specturm"));
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
