// A stand-in for a tool with templates: its settings are one manual spread record and its
// caption is the current template name.
#pragma once

#include <gtest/gtest.h>

#include "spread/spread_templates.h"
#include "spread/template_commands.h"
#include "support/scripted.h"
#include "support/temp_dir.h"

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

// The manual spread's template commands on a throw-away folder, with a scripted prompter.
struct ManualTemplatesTest : ::testing::Test {
    TempDir dir;
    ScriptedPrompter prompter;
    ManualTool tool;
    CToolTemplates<tagManualSpreadTemplate> templates{
        dir / "",
        template_files::kManualSpread,
        {spread_text::kManualSpreadManager, spread_text::kSpreadColumns, ""},
        tool.hooks(),
        prompter};
};
