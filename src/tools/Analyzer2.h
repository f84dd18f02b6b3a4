#pragma once

#include "analysis/AnalyzeCond.h"

#include <QFrame>

#include <memory>

namespace Ui {
class Analyzer2;
}

// The expert window for detector defects: the dark check of the I1 stack,
// the switch of the global bad-pixel mask, the Fourier comparison, and
// "Collect Q Info", which is wired through Body and has nothing behind it
// yet. Values are read from the fields when they are used; text that does
// not parse is 0.
class Analyzer2 : public QFrame
{
    Q_OBJECT
public:
    explicit Analyzer2(QWidget *parent = nullptr);
    ~Analyzer2() override;

    double darkTh() const;
    double histgMax() const;
    int histgBins() const;

signals:
    void startCollectQInfo();
    void askedDarkCheck();
    void askedFourierA();
    void useErrPMaskToggled(bool f);

public slots:
    void doCollectQInfo(AnalyzeCond ac);
    void setUseErrPMaskEnabled(bool f);
    void setUseErrPMaskChecked(bool f);
    bool useErrPMask();
    void setErrPMaskFileName(QString fname);

private:
    std::unique_ptr<Ui::Analyzer2> ui;
};
