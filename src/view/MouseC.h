#pragma once

#include <QObject>

// The state of the mouse over one drawing surface: where it is, where it was
// before the last event, and where and how it was last pressed, released and
// double-clicked. Buttons and modifiers are kept as the ints of Qt's flags.
class MouseC : public QObject
{
    Q_OBJECT
public:
    explicit MouseC(QObject *parent = nullptr);

    // One number for a button and the Shift, Control and Alt keys: 0..7 for
    // the left button, 8..15 for the right (Shift +1, Control +2, Alt +3,
    // Shift Control +4, Shift Alt +5, Control Alt +6, all three +7), 16 for
    // any other button. Other modifier bits (keypad, meta) are ignored.
    static int mode(int button, int modifiers);

    // The current position becomes the previous one.
    void moveTo(int nx, int ny, int nbutton, int nmodifiers);
    void press(int nx, int ny, int nbutton, int nmodifiers);
    void release(int nx, int ny, int nbutton, int nmodifiers);
    void doubleClick(int nx, int ny, int nbutton, int nmodifiers);

    int prevX = 0, prevY = 0;
    int x = 0, y = 0;
    int pressX = 0, pressY = 0;
    int releaseX = 0, releaseY = 0;
    int dblClickX = 0, dblClickY = 0;
    bool pressed = false;
    int button = 0, pressButton = 0, releaseButton = 0, dblClickButton = 0;
    int modifiers = 0, pressModifiers = 0, releaseModifiers = 0, dblClickModifiers = 0;
};
