// The desk's look: a dark trading-floor palette with a CJK font, applied once to the whole
// application (the add-in's windows included, as inside the real platform).
#pragma once

class QApplication;

void applyDeskStyle(QApplication& app);
