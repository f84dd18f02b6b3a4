#pragma once

#include "app/Units.h"
#include "images/EngOfFiles.h"
#include "images/RefEnergies.h"

#include <QFrame>
#include <QString>
#include <QVector>

#include <memory>

class QAbstractButton;
class QFileDialog;

namespace Ui {
class EOFSetup;
}

// The energy-of-files window of one file panel: decides each frame's energy
// from its file name, a reference file or a scan recipe. The fields are read
// when a frame asks, so a change applies to the next frame that loads.
class EOFSetup : public QFrame
{
    Q_OBJECT
public:
    explicit EOFSetup(QWidget *parent = nullptr);
    ~EOFSetup() override;

    // Crystal spacing for every angle this window converts.
    Units units;

    // The energy in eV of frame fNo, of totalFiles selected files, read from
    // fileName.
    double energyOf(const QString &fileName, int fNo, int totalFiles) const;
    // The fields as they stand, parsed (what does not parse is 0).
    EngOfFiles settings() const;
    const QVector<double> &refEnergies() const { return ref.energies; }

    // Names the panel in the window title and in the log lines.
    void setTitle(const QString &title);
    QFileDialog *refFileDialog() const { return refDialog; }

public slots:
    void setEngByName(bool f);
    void setEngByCalc(bool f);
    void setEngCalcStart(double start);
    void setEngCalcDelta(double delta);
    void setEngCalcEnd(double end);
    void setEngCalcNum(int num);
    void setEvenInEng(bool f);
    void setEvenInDeg(bool f);
    void setDispUnit(int idx);
    // Sets the pattern as a finished edit does: the factor follows (1000
    // for a keV pattern, else 1) and the list selects it, adding it first
    // when it is new.
    void setEngByNameRegExp(const QString &pattern);
    void setEngByNameFactor(double factor);
    // Chooses the reference file as the source exactly when fname is not
    // empty, shows the name, and reads the file when there is one.
    void setEngByRef(const QString &fname);
    // Reads a reference file into the energies; false when it can't be
    // opened, and the energies stay as they were.
    bool readRefFile(const QString &fname);

    // The linked recipe fields, on the user's edits: a new start or delta
    // moves the end, a new end or number of points moves the delta.
    void newStart();
    void newDelta();
    void newEnd();
    void newNumOfPoints();

private slots:
    void newPattern();
    void patternChosen(int idx);
    void sourceToggled(QAbstractButton *button, bool checked);

private:
    void writeEnd();
    void writeDelta();

    std::unique_ptr<Ui::EOFSetup> ui;
    RefEnergies ref;
    QFileDialog *refDialog = nullptr;
    // Names the panel in log lines until setTitle gives the real name.
    QString title = QStringLiteral("EOFSetup");
};
