// The grid spread robot under replay. Its section [GridsSpread] holds the robot's own keys
// with its own defaults (szSymbolCode1 / szSymbolCode2 for legs A and B, nSpreadLots1,
// nSpreadLots2, bLong, nEveryLots, nMaxLots, nGridLots, dFirstGrid, dGridInterval, dWinGrid,
// nMonitorEdge, nMonitorThreshold, nFixupOffset, nFilterLength, nFilterOffset, and the legs'
// accounts strAccountID1 / strBrokerID1 / strAccountID2 / strBrokerID2). Both legs must be
// among the replayed instruments. What a trader's session would fill in is taken from the
// run when left out: a leg's exchange from its replayed instrument, an account from the run's
// account (and its broker from the exchange's list).
//
// The robot is started before the first tick; a refusal (its box) stops the run.
#include <cstdio>

#include "app/helmsman_manage.h"
#include "app/profile_ini.h"
#include "replay/replay_tool.h"
#include "replay/tools/headless.h"
#include "robots/grids_spread.h"

namespace {

class GridsSpreadTool final : public replay::IReplayTool {
public:
    explicit GridsSpreadTool(CHelmsmanManage& manager)
        : manager(manager), seat(manager, prompter), grid(manager) {
        manager.registerWindow(grid.handle());
    }
    ~GridsSpreadTool() override { manager.unregisterWindow(grid.handle()); }
    int timerPeriodMs() const override { return CGridsSpread::kTimerMs; }
    void onTimer() override { grid.timerPass(); }
    // Each open entry holds sizes().a of A and sizes().b of B the way the spread was taken:
    // a bought spread is A long and B short.
    replay::ToolHoldings holdings() const override {
        replay::ToolHoldings h;
        const GridsSpreadSettings& s = grid.settings();
        const double sign = s.bLong ? 1 : -1;
        const auto n = static_cast<double>(grid.entries().size());
        h.positions[s.szSymbolCode1] += sign * n * grid.sizes().a;
        h.positions[s.szSymbolCode2] -= sign * n * grid.sizes().b;
        for (std::size_t i = 0; i < grid.entries().size(); ++i) {
            const GridEntry& e = grid.entries()[i];
            char line[160];
            std::snprintf(line, sizeof line, "第%zu格 %s %.*f %s %.*f", i + 1,
                          s.szSymbolCode1.c_str(), grid.decimalsA(), e.aFill,
                          s.szSymbolCode2.c_str(), grid.decimalsB(), e.bFill);
            h.lines.push_back(line);
        }
        return h;
    }

    CHelmsmanManage& manager;
    replay::ReplayPrompter prompter{false};
    replay::Seat seat;
    CGridsSpread grid;
};

std::unique_ptr<replay::IReplayTool> makeGridsSpread(replay::ToolContext& ctx, std::string& error) {
    GridsSpreadSettings s = readGridsSpreadSettings(ctx.settings);
    const struct {
        const char* key;
        const std::string& code;
        std::uint16_t& exchange;
    } legs[] = {{"szSymbolCode1", s.szSymbolCode1, s.wExchangeID1},
                {"szSymbolCode2", s.szSymbolCode2, s.wExchangeID2}};
    for (const auto& leg : legs)
        if (!replay::findReplayed(ctx, leg.code, leg.exchange)) {
            error = std::string("[GridsSpread] ") + leg.key + ": instrument " +
                    (leg.code.empty() ? "(none)" : leg.code) + " is not replayed";
            return nullptr;
        }
    const std::string broker = replay::brokerOf(ctx.manager.facade(), ctx.account);
    for (auto [id, brokerId] : {std::pair{&s.strAccountID1, &s.strBrokerID1},
                                std::pair{&s.strAccountID2, &s.strBrokerID2}}) {
        if (id->empty()) *id = ctx.account;
        if (brokerId->empty() && *id == ctx.account) *brokerId = broker;
    }

    auto tool = std::make_unique<GridsSpreadTool>(ctx.manager);
    if (!tool->grid.setSettings(s) || !tool->grid.start()) {
        error = "[GridsSpread] the robot does not start: " + tool->prompter.last();
        return nullptr;
    }
    return tool;
}

const bool kRegistered = replay::registerTool("GridsSpread", &makeGridsSpread);

}  // namespace
