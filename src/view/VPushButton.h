#pragma once

#include <QPushButton>

// A push button whose text runs vertically (read top to bottom). A second,
// hidden button with the same text is measured for the size hints, with
// width and height exchanged.
class VPushButton : public QPushButton
{
    Q_OBJECT
public:
    explicit VPushButton(QWidget *parent = nullptr);
    explicit VPushButton(const QString &text, QWidget *parent = nullptr);

    // Hides QPushButton::setText so that the measured button keeps in step;
    // call it on a VPushButton (uic does).
    void setText(const QString &text);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *e) override;

private:
    QPushButton inner; // never shown
};
