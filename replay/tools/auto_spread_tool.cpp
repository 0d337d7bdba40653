// The auto spread robot under replay. Its section [SpreadOrder] is the robot's default
// template with its own keys and defaults (szSymbolCode1..3 for legs A, B, C, dSpreadUnit1..3,
// nSpreadLots1..3, nEveryLots, nMaxLots, the four switches and lines bLongEntry /
// dLongEntryPrice ..., nOrderOffset, nUnstayedOffset, nStayMilliSeconds, nOrderDelaySeconds,
// the steps, and the legs' accounts strAccountID1 / strBrokerID1 ...). Every leg in use must
// be among the replayed instruments. A leg's exchange is taken from its replayed instrument
// and an account left out from the run's account (with its broker).
//
// The robot is started before the first tick; a refusal (its box) stops the run.
#include <cstdio>
#include <cstdlib>

#include "app/helmsman_manage.h"
#include "app/profile_ini.h"
#include "replay/replay_tool.h"
#include "replay/tools/headless.h"
#include "robots/auto_spread.h"

namespace {

class AutoSpreadTool final : public replay::IReplayTool {
public:
    explicit AutoSpreadTool(CHelmsmanManage& manager)
        : manager(manager), seat(manager, prompter), robot(manager) {
        manager.registerWindow(robot.handle());
    }
    ~AutoSpreadTool() override { manager.unregisterWindow(robot.handle()); }
    int timerPeriodMs() const override { return CAutoSpread::kTimerMs; }
    void onTimer() override { robot.timerPass(); }
    // The units held, leg by leg: a bought spread is A long and B (and C) short.
    replay::ToolHoldings holdings() const override {
        replay::ToolHoldings h;
        const tagAutoSpreadTemplate& s = robot.settings();
        for (int i = 0; i < robot.legCount(); ++i) {
            const double sign = i == 0 ? 1 : -1;
            h.positions[s.legs[i].szSymbolCode] += sign * robot.position() * s.nSpreadLots[i];
        }
        if (robot.position() != 0) {
            char line[160];
            std::snprintf(line, sizeof line, "%s%d份 均价差%.4g",
                          robot.position() > 0 ? "多" : "空", std::abs(robot.position()),
                          robot.averageSpread());
            h.lines.push_back(line);
        }
        return h;
    }

    CHelmsmanManage& manager;
    replay::ReplayPrompter prompter{false};
    replay::Seat seat;
    CAutoSpread robot;
};

std::unique_ptr<replay::IReplayTool> makeAutoSpread(replay::ToolContext& ctx, std::string& error) {
    tagAutoSpreadTemplate s = readAutoSpreadDefault(ctx.settings);
    const int legs = s.bButterfly ? 3 : 2;
    for (int i = 0; i < legs; ++i) {
        tagTemplateLeg& leg = s.legs[i];
        if (!replay::findReplayed(ctx, leg.szSymbolCode, leg.wExchangeID)) {
            error = "[SpreadOrder] szSymbolCode" + std::to_string(i + 1) + ": instrument " +
                    (leg.szSymbolCode.empty() ? "(none)" : leg.szSymbolCode) + " is not replayed";
            return nullptr;
        }
    }
    const std::string broker = replay::brokerOf(ctx.manager.facade(), ctx.account);
    for (tagTemplateAccount& a : s.accounts) {
        if (a.strAccountID.empty()) a.strAccountID = ctx.account;
        if (a.strBrokerID.empty() && a.strAccountID == ctx.account) a.strBrokerID = broker;
    }

    auto tool = std::make_unique<AutoSpreadTool>(ctx.manager);
    if (!tool->robot.setSettings(s) || !tool->robot.start()) {
        error = "[SpreadOrder] the robot does not start: " + tool->prompter.last();
        return nullptr;
    }
    return tool;
}

const bool kRegistered = replay::registerTool("SpreadOrder", &makeAutoSpread);

}  // namespace
