// Body's picture saves: the shown image with its colour bar and view, every
// map of the reference rows, the image area as on screen, and the neutral
// flat and dark frames.
#include "app/Body.h"

#include "analysis/Analyzed2DRes.h"
#include "analysis/Analyzer.h"
#include "analysis/LCFReference.h"
#include "app/Globals.h"
#include "images/TiffWriter.h"
#include "saving/FileNames.h"
#include "ui_Body.h"
#include "view/ColorBar.h"
#include "view/ImgDispA.h"

#include <QAbstractButton>
#include <QDebug>
#include <QFile>
#include <QFileDialog>
#include <QPainter>
#include <QPixmap>
#include <QTextStream>

#include <vector>

namespace {

// Pictures take their format from the suffix. A failed write changes nothing
// else (the announcement still goes out): it is only logged.
template <typename Picture>
void savePicture(const Picture &picture, const QString &path)
{
    if (!picture.save(path))
        qDebug().noquote() << "Can't write" << path;
}

} // namespace

void Body::setupSavePictures()
{
    const QStringList pictures{tr("Picture (*.png *.jpg *.tif)"), tr("Any Files (* *.*)")};
    connect(ui->SaveImage, &QPushButton::clicked, this, [this, pictures] { askSaveName(pictures, &Body::saveImage); });
    connect(ui->SaveFlatDark, &QPushButton::clicked, this, &Body::saveFlatDark);
    connect(ui->SaveEachSpectrum, &QPushButton::clicked, this, [this] {
        askSaveName({tr("Data File (*.dat)"), tr("Any Files (* *.*)")},
                    &Body::saveEachSpectrum);
    });
}

void Body::askSaveName(const QStringList &filters, void (Body::*onChosen)(QString))
{
    QFileDialog *d = new QFileDialog(this, QString(), gDataRoot);
    d->setAttribute(Qt::WA_DeleteOnClose);
    d->setAcceptMode(QFileDialog::AcceptSave);
    d->setNameFilters(filters);
    connect(d, &QFileDialog::fileSelected, this, onChosen);
    d->show();
}

void Body::saveImage(QString fname)
{
    const QString path = withExtension(fname, QStringLiteral("png"), true);
    savePicture(ui->dispA->viewedImage(), path);
    savePicture(ui->CBar->cbar, withSuffix(path, QStringLiteral("cBar")));
    announceSaved(QStringLiteral("SavedImage"), path);
    saveImageInfo(path);
}

void Body::saveImageInfo(QString fname)
{
    // Where the picture lies in the image, for whoever reads it back.
    QFile f(withExtension(fname, QStringLiteral("info"), false));
    if (!f.open(QIODevice::WriteOnly | QIODevice::Text))
        return;
    const ImgDispA *a = ui->dispA;
    QTextStream out(&f);
    out << "###Tessarelle::ImgInfo\n"
        << "VIEWING Xs          : \t" << a->viewX << '\n'
        << "VIEWING Ys          : \t" << a->viewY << '\n'
        << "VIEWING Xe          : \t" << a->viewX + a->viewW << '\n'
        << "VIEWING Ye          : \t" << a->viewY + a->viewH << '\n';
}

void Body::saveImageWNum(QString fname, QString num)
{
    saveImage(withSuffix(fname, num));
}

void Body::saveAllImages(QString fname)
{
    // Result j of every row before result j + 1 of any, as scripts that read
    // these files in order expect.
    qsizetype results = 0;
    for (const LCFReference *r : std::as_const(analyzer->lcfrs))
        results = qMax(results, r->maps.size());
    for (qsizetype j = 0; j < results; ++j) {
        for (qsizetype i = 0; i < analyzer->lcfrs.size(); ++i) {
            const LCFReference *r = analyzer->lcfrs.at(i);
            const QAbstractButton *show = r->showButton();
            const Analyzed2DRes *map = r->maps.value(j);
            if (!show->isChecked() || !show->isEnabled() || !map || !map->img())
                continue;
            savePicture(*map->img(), withSuffix(fname, QStringLiteral("%1-%2").arg(i).arg(j)));
        }
    }
}

void Body::saveScreenAs(QString fname)
{
    const QString path = withExtension(fname, QStringLiteral("png"), false);
    ImgDispA *a = ui->dispA;
    QPixmap screen(a->size());
    if (!screen.isNull()) {
        // As a paint of the area draws it: white, the image, then the marks.
        screen.fill(Qt::white);
        QPainter p(&screen);
        a->drawImage(&p);
        draw(&p);
    }
    savePicture(screen, path);
    announceSaved(QStringLiteral("SavedScreen"), path);
}

void Body::saveFlatDark()
{
    if (imgW <= 0 || imgH <= 0) {
        qDebug().noquote() << "saveFlatDark: no image to take the size from";
        return;
    }
    // Relative names: the files go to the working folder, as the image
    // pipeline that reads them expects.
    std::vector<quint16> px(std::size_t(imgW) * std::size_t(imgH), 1);
    if (!writeTiff16(QStringLiteral("flat.dat"), quint32(imgW), quint32(imgH), px.data()))
        qDebug().noquote() << "Can't write flat.dat";
    std::fill(px.begin(), px.end(), quint16(0));
    if (!writeTiff16(QStringLiteral("dark.dat"), quint32(imgW), quint32(imgH), px.data()))
        qDebug().noquote() << "Can't write dark.dat";
}

void Body::savedXafsData(QString fname)
{
    qDebug().noquote() << "saved xafs data" << fname;
    announceSaved(QStringLiteral("SavedXafsData"), fname);
}
