// The add-in's entry points without a user interface (tests, the Windows build of the core):
// nothing is installed, so the manager keeps its silent prompter and null module UI and every
// window export answers 0.
#include "app/module_windows.h"

void installModuleUi(CHelmsmanManage&, CModuleWindows&) {}
