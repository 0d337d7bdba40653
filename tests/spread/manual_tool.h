// A stand-in for a tool with templates: its settings are one manual spread record and its
// caption is the current template name.
#pragma once

#include "spread/spread_templates.h"
#include "spread/template_commands.h"

struct ManualTool {
    tagManualSpreadTemplate settings;
    std::string current;
    int captionRefreshes = 0;

    TemplateToolHooks<tagManualSpreadTemplate> hooks() {
        return {[this] { return settings; },
                [this](const tagManualSpreadTemplate& t) {
                    const int chart = settings.bShowChart;  // not stored: the window keeps its own
                    settings = t;
                    settings.bShowChart = chart;
                    current = t.strName;
                },
                [this] { return current; },
                [this](const std::string& n) {
                    current = n;
                    ++captionRefreshes;
                },
                writeManualSpreadDefault,
                [](const tagManualSpreadTemplate& t) { return spreadTemplateRow(t); }};
    }
};
