#pragma once

#include "spectrum/FourierWork.h"
#include "spectrum/Spectrum.h"
#include "spectrum/XafsSpectrum.h"
#include "view/ChCoord.h"
#include "view/DrawText.h"

#include <QByteArray>
#include <QFrame>
#include <QList>
#include <QPen>
#include <QPolygonF>
#include <QString>
#include <QVector>

#include <memory>

class LCFReference;
class QPainter;

namespace Ui {
class XafsView;
}

// The spectrum plot: the spectrum under the pointer (the target) with its
// pre-edge and post-edge lines, the calibration standard and further spectra,
// or, with "Raw", the raw box sums or their Fourier magnitudes. It saves what
// it shows and sends the target to the network.
//
// The x range follows each new target (autoX, which nothing turns off): a
// wheel zoom holds until the next target arrives, that is until the pointer
// moves over the image; "S.R." returns to the target's full range.
class XafsView : public QFrame
{
    Q_OBJECT
public:
    explicit XafsView(QWidget *parent = nullptr);
    ~XafsView() override;

    // Shows s and returns its midx minus the standard's midx (the standard's
    // midx is 0 while none is set).
    double setTarget(const XafsSpectrum &s);
    void setRaw(const Spectrum &s);
    void setStd(const XafsSpectrum &s);
    // Energy of the current frame, marked in green; -1 for none.
    void setMarkE(double e);
    // Further spectra, owned by the caller, which must keep them alive while
    // they are set; those with kind 0 are not drawn (but saved). pens[i]
    // draws list[i]; a spectrum without a pen takes colorOfIndex(i).
    void setOthers(const QVector<XafsSpectrum *> &list, const QVector<QPen> &penList);
    // The reference panels whose energies are marked; null for none.
    void setMarks(const QList<LCFReference *> *panels);
    // Shows or hides "To Network".
    void setSendVisible(bool f);

    const XafsSpectrum &currentTarget() const { return target; }

    // A target's curves are cut where neighbouring energies lie further
    // apart than this, in eV.
    static constexpr double MaxEnergyGap = 50.0;

signals:
    void updated();
    void saveScreenAs(QString fname);
    void savedXafsData(QString fname);
    void sendXafsDataToStars(QByteArray data);

public slots:
    void draw(QPainter *p);
    void onMouseMoved();
    void onWheelMoved();
    void resetXScale();
    // Repaints the plot. Hides QWidget::update(), which repaints the frame
    // around it.
    void update();
    // Writes the target, the standard and the others next to fname, with the
    // last position in their names, then asks for a picture of the screen.
    void saveData(QString fname);
    void setNormalize(bool f);
    void setEnergyCorrection(bool f);
    void toStars();
    void currentPosition(int nix, int niy, int nhw, int nvw);

private slots:
    void askSaveFile();

private:
    struct RefMark {
        double e;
        QString name;
    };
    enum class Curve { Y, Pre, Post, Norm };

    // cc's window is the plot (y up) and its plot region the margins inside,
    // less CurveInset pixels at the top and the bottom, so that a curve's
    // highest and lowest points are drawn clear of the frame. frameRect is
    // the region the margins give.
    void setupCoords();
    // The y range the pointer is read in: the target's, or that of its
    // normalised curve.
    void setPointerYRange();
    void drawPlain(QPainter *p, double e);
    void drawNormalized(QPainter *p, double e);
    void drawMarks(QPainter *p, const QVector<RefMark> &refs);
    void drawAxes(QPainter *p);
    // Draws an axis label unless it would overlap one drawn before it in this
    // paint (labelRects); the one that comes later gives way.
    void drawLabel(QPainter *p, const QRectF &box, const QString &text, int flags, int fit);
    void drawMarkNames(QPainter *p, const QVector<RefMark> &refs);
    void drawRaw(QPainter *p);
    void verticalLine(QPainter *p, double x);
    QVector<RefMark> refMarks() const;
    QPen penOfOther(int i) const;
    // Fills realPts with one curve of s at its energies less e.
    void fillCurve(const XafsSpectrum &s, double e, Curve c);
    // Draws realPts as polylines, cut at gaps wider than maxGap (<= 0: none).
    void drawReal(QPainter *p, double maxGap);

    std::unique_ptr<Ui::XafsView> ui;
    ChCoord cc;
    DrawText dt;
    Spectrum raw;
    XafsSpectrum target;
    double xMinV = 0;
    double xMaxV = 1;
    double xMinFull = 0;
    double xMaxFull = 1;
    bool autoX = true;
    XafsSpectrum stdSpec;
    QVector<XafsSpectrum *> others;
    QVector<QPen> pens;
    FourierWork fft;
    double markE = -1;
    const QList<LCFReference *> *marks = nullptr;
    int ix = 0;
    int iy = 0;
    int hw = 0;
    int vw = 0;

    QRectF frameRect;

    // Scratch of the painting, kept so that a repaint does not allocate.
    QPolygonF realPts;
    QVector<QPolygonF> screenLines;
    QVector<QRectF> labelRects;
};
