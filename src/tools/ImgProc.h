#pragma once

#include "tools/ProcImage.h"

#include <QFrame>
#include <QImage>

#include <memory>

class TiffData;

namespace Ui {
class ImgProc;
}

// The "Image Processor": finds how far the frame on display is displaced
// against a reference frame. Both are edge-detected and binarised; the shift
// with the largest normalised scalar product of the two binary pictures is
// found by a hill climb from the shift in the fields, and can be recorded in
// the frame (Body does that on imgShift). Nothing happens while "Edge
// Detect" is off.
class ImgProc : public QFrame
{
    Q_OBJECT
public:
    explicit ImgProc(QWidget *parent = nullptr);
    ~ImgProc() override;

    // The frame whose picture is worked on; not owned. Null forgets it.
    void setImage(TiffData *frame);
    // Forgets the frame if it is among those about to go.
    void forgetFrames(const QVector<TiffData *> &frames);
    // Shows the window where it was last left (first time only; after that
    // it stays where the user puts it).
    void showWindow();

    const ProcImage *edgeImage() const { return edgeImg.get(); }
    const ProcImage *binImage() const { return binImg.get(); }
    const ProcImage *refImage() const { return refBin.get(); }
    double scalarProduct() const { return nsp; }
    // What the window's picture shows.
    const QImage &screenImage() const { return screen; }

signals:
    void askGiveData();
    void askClearAllShifts();
    void updateImg();
    void imgShift(int sx, int sy);

public slots:
    void movedBinThVSlider(int v);
    void newBinThV();
    void setBinThV();
    void setRefBin();
    void toggledEdgeDetect(bool f);
    void edgeDetect();
    void binarize();
    void drawOnImage();
    void shiftBinImg();
    void autoShiftBinImg();
    void autoShiftBinImg0();
    void setShift();
    void clearAllShifts();

private:
    int shiftX() const;
    int shiftY() const;
    void setShiftFields(int sx, int sy);
    // Both binary pictures exist and are of one size; otherwise logs why.
    bool comparable() const;
    void showScreen();

    std::unique_ptr<Ui::ImgProc> ui;
    TiffData *current = nullptr;
    int w = 0;
    int h = 0;
    std::unique_ptr<ProcImage> edgeImg;
    std::unique_ptr<ProcImage> binImg;
    std::unique_ptr<ProcImage> refBin;
    double nsp = 0;
    QImage screen;
    QSize lastSize;
};
