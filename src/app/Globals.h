#pragma once

#include "app/ConfigTable.h"

#include <QString>

class ColorScale;

// The process-wide objects. They are plain statics, set once by InitGlobals()
// and by main() while it reads the command line and the configuration, before
// any other thread exists.

// The command line and config.cfg.
extern ConfigTable gConfig;
// Never loaded: the keys read from it (USE_STARS, USE_TCP, TcpTarget_IP,
// TcpTarget_PORT) always give their defaults, which is how the program has
// always behaved.
extern ConfigTable gAuxConfig;
// Start directory of the file dialogs, $DataRoot$ in batches.
extern QString gDataRoot;
// Root directory of batch files.
extern QString gBatchRoot;
// Whether the ShowAnalyzer2 button is visible.
extern bool gShowAnalyzer2Button;
// Set by -dbg; nothing reads it.
extern bool gDebugFlag;
// The main window's colour bar (a ColorBar), which every frame and map renders
// through; null until the main window is built. Held as its widget-free
// ColorScale so that the core can render without linking widgets.
extern ColorScale *gColorBar;

inline constexpr const char *DefaultRoot = "C:/Data";

void InitGlobals();
