// The ladder robot under replay. Its section [Blader] holds the robot's own keys with its own
// defaults (szSymbolCode, bLong, nMaxPos, nGridInterval, nWinPoint, nTimeExit). The
// instrument must be replayed (its exchange is taken from it when left out); the robot trades
// the run's account, as the window's account list would have it chosen. Its timer runs every
// CBlader::kTimerMs of virtual time; a refusal at the start stops the run with its box's text.
#include <cstdio>

#include "app/helmsman_manage.h"
#include "replay/replay_tool.h"
#include "replay/tools/headless.h"
#include "robots/blader.h"

namespace {

class BladerTool final : public replay::IReplayTool {
public:
    explicit BladerTool(CHelmsmanManage& manager)
        : manager(manager), seat(manager, prompter), blader(manager) {
        manager.registerWindow(blader.handle());
    }
    ~BladerTool() override { manager.unregisterWindow(blader.handle()); }
    int timerPeriodMs() const override { return CBlader::kTimerMs; }
    void onTimer() override { blader.timerStep(); }
    replay::ToolHoldings holdings() const override {
        replay::ToolHoldings h;
        const tagBladerSetting& s = blader.setting();
        h.positions[s.szSymbolCode] = s.bLong ? blader.held() : -blader.held();
        if (blader.held() != 0) {
            char line[160];
            std::snprintf(line, sizeof line, "%s %s %d 手 基准价 %.*f", s.szSymbolCode.c_str(),
                          s.bLong ? "多" : "空", blader.held(), blader.priceDecimals(),
                          blader.basePrice());
            h.lines.push_back(line);
        }
        return h;
    }

    CHelmsmanManage& manager;
    replay::ReplayPrompter prompter{false};
    replay::Seat seat;
    CBlader blader;
};

std::unique_ptr<replay::IReplayTool> makeBlader(replay::ToolContext& ctx, std::string& error) {
    tagBladerSetting s = loadBladerDefault(ctx.settings);
    if (!replay::findReplayed(ctx, s.szSymbolCode, s.wExchangeID)) {
        error = "[Blader] szSymbolCode: instrument " +
                (s.szSymbolCode.empty() ? std::string("(none)") : s.szSymbolCode) +
                " is not replayed";
        return nullptr;
    }
    tagAccoutInfo account;
    std::vector<tagAccoutInfo> accounts;
    if (ctx.manager.facade()) ctx.manager.facade()->GetAvailableAccounts(accounts);
    for (const tagAccoutInfo& a : accounts)
        if (a.strAccountID == ctx.account) account = a;
    auto tool = std::make_unique<BladerTool>(ctx.manager);
    tool->blader.setAccount(account);
    if (!tool->blader.setSetting(s) || !tool->blader.start()) {
        error = "[Blader] the robot does not start: " + tool->prompter.last();
        return nullptr;
    }
    return tool;
}

const bool kRegistered = replay::registerTool("Blader", &makeBlader);

}  // namespace
