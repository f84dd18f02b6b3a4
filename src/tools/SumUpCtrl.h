#pragma once

#include "tools/SumUp.h"

#include <QFrame>
#include <QVector>

#include <memory>

namespace Ui {
class SumUpCtrl;
}

// The list of frame ranges that "Sum Up" adds into one map.
class SumUpCtrl : public QFrame
{
    Q_OBJECT
public:
    explicit SumUpCtrl(QWidget *parent = nullptr);
    ~SumUpCtrl() override;

    // Every range ever added, deleted ones included (see del()).
    QVector<SumUp::Range> sumUps;

public slots:
    // Appends the range of the two fields (text that does not parse is 0).
    void add();
    // Removes the chosen item from the list and chooses the one before.
    // Its range stays in sumUps and goes on counting: that is how the
    // control has always behaved, and existing sum-ups depend on it.
    void del();

private:
    std::unique_ptr<Ui::SumUpCtrl> ui;
};
