#pragma once

#include <QButtonGroup>
#include <QMainWindow>
#include <QStringList>

#include <memory>

namespace Ui {
class Body;
}

// The main window and the hub of the program: it owns the image stacks, the
// windows and the workers, and every other part is reached through its
// signals and slots. Its slots are many; each subsystem declares its own in
// a block of this class and defines them in its own folder (for instance
// src/batch/BodyBatch.cpp), so that this file stays a table of contents.
class Body : public QMainWindow
{
    Q_OBJECT
public:
    explicit Body(QWidget *parent = nullptr);
    ~Body() override;

signals:
    // Ends the program: main() connects it to QApplication::closeAllWindows.
    void finishing();
    // A batch command that takes time answers with its id when it is done.
    void finishBatchExec(int id);
    void currentPosition(int ix, int iy, int hw, int vw);

private:
    // Construction, in the order the constructor calls them. The order
    // matters: the form must exist before any step connects to it, and the
    // configured batch runs only once every receiver of its commands is
    // there. A new subsystem adds its setupXxx() at its place in the list.
    static void registerMetaTypes();
    void setupForm();
    void setupSelectionGroup();
    void setupAnalyzer2();
    void feedConfiguredBatch(const QStringList &cmdLines);

    std::unique_ptr<Ui::Body> ui;
    // What the image area shows: ShowData 0, ShowI0 1, ShowShiftMap 2,
    // ShowResAnalysis 3.
    QButtonGroup selGroup;
};
