#include "view/MouseC.h"

#include <Qt>

MouseC::MouseC(QObject *parent)
    : QObject(parent)
{
}

int MouseC::mode(int button, int modifiers)
{
    int base;
    if (button == Qt::LeftButton)
        base = 0;
    else if (button == Qt::RightButton)
        base = 8;
    else
        return 16;

    const bool shift = modifiers & Qt::ShiftModifier;
    const bool control = modifiers & Qt::ControlModifier;
    const bool alt = modifiers & Qt::AltModifier;
    // Single keys count 1..3, pairs 4..6, all three 7.
    int keys;
    if (shift && control && alt)
        keys = 7;
    else if (control && alt)
        keys = 6;
    else if (shift && alt)
        keys = 5;
    else if (shift && control)
        keys = 4;
    else if (alt)
        keys = 3;
    else if (control)
        keys = 2;
    else if (shift)
        keys = 1;
    else
        keys = 0;
    return base + keys;
}

void MouseC::moveTo(int nx, int ny, int nbutton, int nmodifiers)
{
    prevX = x;
    prevY = y;
    x = nx;
    y = ny;
    button = nbutton;
    modifiers = nmodifiers;
}

// Press and release keep the previous position: it belongs to moves.
void MouseC::press(int nx, int ny, int nbutton, int nmodifiers)
{
    x = pressX = nx;
    y = pressY = ny;
    button = pressButton = nbutton;
    modifiers = pressModifiers = nmodifiers;
    pressed = true;
}

void MouseC::release(int nx, int ny, int nbutton, int nmodifiers)
{
    x = releaseX = nx;
    y = releaseY = ny;
    button = releaseButton = nbutton;
    modifiers = releaseModifiers = nmodifiers;
    pressed = false;
}

void MouseC::doubleClick(int nx, int ny, int nbutton, int nmodifiers)
{
    dblClickX = nx;
    dblClickY = ny;
    dblClickButton = nbutton;
    dblClickModifiers = nmodifiers;
}
