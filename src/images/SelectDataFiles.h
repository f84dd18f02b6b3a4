#pragma once

#include <QFrame>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

class EOFSetup;
class ErrPoints;
class SelectDataFilesAdditionalSetup;
class _FileDialog;

namespace Ui {
class SelectDataFiles;
}

// The file panel of one image stack (I1 or I0): the user picks the files and
// how they load here, the panel lists the loaded frames with their energies,
// and its energy window gives each frame its energy as it arrives.
//
// Body asks it for the energy of a loaded frame with
// registerFrame(fileName, fNo, totalFiles), which also lists the frame; the
// loading options are read with skip(), cutFirst(), cutLast(),
// ignoreLive(), errPs() when a load starts.
class SelectDataFiles : public QFrame
{
    Q_OBJECT
public:
    explicit SelectDataFiles(QWidget *parent = nullptr);
    ~SelectDataFiles() override;

    void setTitle(const QString &title);
    QString title() const;

    // The loading options, parsed at the moment of use. A stride below 2 or
    // not a number is 1; negative cuts are 0.
    int skip() const;
    int cutFirst() const;
    int cutLast() const;
    bool ignoreLive() const;
    // The datasets an HDF5 stack loads from; empty lets the file choose.
    QString h5ImagePath() const;
    QString h5EnergyPath() const;
    bool showLatest() const;
    bool loadNewFiles() const;
    double expTimeMS() const;
    // The panel's own mask, to be handed to its load jobs.
    ErrPoints *errPs() const;

    // The loaded frames: count, current index, and the energy of frame idx
    // (0 for an index outside the list).
    int count() const;
    int currentIndex() const;
    double energyAt(int idx) const;

    // The energy of frame fNo of a selection of totalFiles files, without
    // listing it.
    double energyOf(const QString &fileName, int fNo, int totalFiles) const;
    // What Body calls for every loaded frame: the frame's energy, which is
    // also listed with the file name and returned.
    // A frame whose file gave its energy (fileEnergy) is listed with that
    // energy, and the energy window is not asked.
    double registerFrame(const QString &fileName, int fNo, int totalFiles,
                         std::optional<double> fileEnergy = std::nullopt);

    EOFSetup *eofSetup() const { return eof; }
    SelectDataFilesAdditionalSetup *additionalSetup() const { return addSetup; }
    _FileDialog *fileDialog() const { return dialog; }

signals:
    void currentIndexChanged(int idx);
    void filesSelected(QStringList files, bool newFile);
    void clear();
    void setDarkArea();
    void updateDarkArea();
    void clearDarkArea();

public slots:
    void setSkip(int skip);
    void setCutF(int cutF);
    void setCutL(int cutL);
    void setShowLatest(bool f);
    void setEngByName(bool f);
    void setEngByCalc(bool f);
    void setEngCalcStart(double start);
    void setEngCalcDelta(double delta);
    void setEngCalcEnd(double end);
    void setEngCalcNum(int num);
    void setEvenInEng(bool f);
    void setEvenInDeg(bool f);
    void setDispUnit(int idx);
    void setEngByNameRegExp(const QString &pattern);
    void setEngByNameFactor(double factor);
    void setEngByRef(const QString &fname);

    // Shows the exposure of the loaded stack; a red field when the frames
    // disagree.
    void setExpTimeMS(double ms, bool ok);
    void darkArea(const QString &area);

    void prev();
    void next();
    void select(int idx);
    void clearFiles();

private slots:
    void newImageSelected(int i);
    void dialogFilesSelected(const QStringList &files);

private:
    std::unique_ptr<Ui::SelectDataFiles> ui;
    _FileDialog *dialog = nullptr;
    EOFSetup *eof = nullptr;
    SelectDataFilesAdditionalSetup *addSetup = nullptr;
};
