// Body's slots for the suggested element: the panel that names the element,
// edge and fit window handed to every spectrum analysis.
#include "app/Body.h"

#include "spectrum/ElementTable.h"
#include "spectrum/ElmEdges.h"
#include "ui_Body.h"

#include <QDebug>

void Body::setupSuggestElm()
{
    connect(ui->SuggestingEdge, &QComboBox::currentIndexChanged, this, &Body::newEdgeSuggested);
    connect(ui->SuggestingElm, &QLineEdit::editingFinished, this, &Body::newElmSuggested);
}

void Body::newEdgeSuggested(int /*edge*/)
{
    // The combo's own index is what counts, whichever signal called: the
    // element field and the edge selector together name one table entry.
    newElmSuggested();
}

void Body::newElmSuggested()
{
    const int z = elementNumber(ui->SuggestingElm->text());
    const int edge = ui->SuggestingEdge->currentIndex();
    // Symbols beyond the edge table (or unknown ones) leave the field as the
    // user wrote it: a hand-written energy is never overwritten by nothing.
    if (z <= 0 || z >= ElmEdgesMax || edge < 0 || edge >= 5)
        return;
    const QString eV = QString::number(elmEdges[z].edge[edge] * 1000.0, 'g', 6);
    ui->SuggestingEeV->setText(eV);
    qDebug().noquote() << QString("suggested edge %1 %2 : %3 eV")
                              .arg(ui->SuggestingElm->text(), ui->SuggestingEdge->currentText(), eV);
}

SuggestElm Body::suggestElm() const
{
    SuggestElm s;
    s.use = ui->UseSuggestElm->isChecked();
    s.z = elementNumber(ui->SuggestingElm->text());
    s.edge = ui->SuggestingEdge->currentIndex();
    // Text that does not parse reads as 0, as every numeric field does.
    s.edgeEV = ui->SuggestingEeV->text().toDouble();
    s.preEnd = ui->DPreE->text().toDouble();
    s.postStart = ui->DPostS->text().toDouble();
    s.thJumpSigma = ui->ThJumpSigma->text().toDouble();
    return s;
}
