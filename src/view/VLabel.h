#pragma once

#include <QLabel>

// A label whose text runs vertically (read top to bottom), sized from a
// hidden label with the same text, width and height exchanged.
class VLabel : public QLabel
{
    Q_OBJECT
public:
    explicit VLabel(QWidget *parent = nullptr);
    explicit VLabel(const QString &text, QWidget *parent = nullptr);

    // Hides QLabel::setText so that the measured label keeps in step.
    void setText(const QString &text);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *e) override;

private:
    QLabel inner; // never shown
};
