#include "app/Globals.h"

#include "batch/ExCmdId.h"
#include "view/GraphColors.h"

ConfigTable gConfig;
ConfigTable gAuxConfig;
QString gDataRoot = DefaultRoot;
QString gBatchRoot = DefaultRoot;
bool gShowAnalyzer2Button = false;
bool gDebugFlag = false;
ColorScale *gColorBar = nullptr;

void InitGlobals()
{
    gDataRoot = DefaultRoot;
    gBatchRoot = DefaultRoot;
    gShowAnalyzer2Button = false;
    gDebugFlag = false;

    // The static tables are built here, each by the code that owns it:
    initGraphColors();
    initExCmdTable();
}
