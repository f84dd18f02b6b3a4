#pragma once

#include <QFrame>

#include <memory>

namespace Ui {
class SaveDataCfg;
}

// The choices for saving a map: as 16-bit TIFF (a fixed scale or the map's
// own range, the analysed points only or the whole image) or as text
// (comma or blank separated, one point per line or one row per line).
class SaveDataCfg : public QFrame
{
    Q_OBJECT
public:
    explicit SaveDataCfg(QWidget *parent = nullptr);
    ~SaveDataCfg() override;

    bool saveAsTiff() const;
    bool tiffFixedScale() const;
    double tiffScaleMin() const;
    double tiffScaleMax() const;
    bool tiffAsAnalyzed() const;
    bool commaSeparated() const;
    bool xyVal() const;

public slots:
    // TIFF on: its options are enabled and the text options disabled, and
    // the reverse.
    void toggledSaveAs(bool f);
    void setSaveAsTiff();
    void setSaveAsText();
    void setSaveTiffScaleFixed(bool f);
    void setSaveTiffScaleMin(double min);
    void setSaveTiffScaleMax(double max);
    void setSaveTiffAsAnalyzed(bool f);
    void setSaveTextAsCSV();
    void setSaveTextAsSSV();
    void setSaveTextAsXYVal();
    void setSaveTextAsValValVal();

private:
    std::unique_ptr<Ui::SaveDataCfg> ui;
};
