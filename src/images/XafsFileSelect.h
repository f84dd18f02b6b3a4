#pragma once

#include <QFrame>
#include <QString>

#include <memory>

class QFileDialog;

namespace Ui {
class XafsFileSelect;
}

// The small frame through which a spectrum file is chosen: a total-I0 file,
// a background, a reference, a standard. It only names the file; the owner
// reads it on newFile and reports the outcome through fileNameValid.
class XafsFileSelect : public QFrame
{
    Q_OBJECT
public:
    explicit XafsFileSelect(QWidget *parent = nullptr);
    ~XafsFileSelect() override;

    // False until a file has come through load or fileSelected. clear() does
    // not reset it on purpose: a reference whose name was cleared keeps
    // taking part in a fit with the spectrum it had.
    bool hasFile = false;

    QString fileName() const;
    bool isUsed() const;
    // The text of the Use box, which serves as the frame's title.
    void setTitle(const QString &title);
    // The text of the Select button ("Select Ref1" on a reference panel).
    void setSelectText(const QString &text);
    QFileDialog *fileDialog() const { return dialog; }

signals:
    void changedUse(bool f);
    void newFile(QString fname);
    void cleared();

public slots:
    void load(const QString &fname);
    void fileSelected(const QString &fname);
    void fileNameValid(bool f);
    void clear();
    void setUse(bool f);
    void showUse(bool f);
    void setMaxSelectBW(int max);
    void setMaxClearBW(int max);

private:
    std::unique_ptr<Ui::XafsFileSelect> ui;
    QFileDialog *dialog = nullptr;
};
