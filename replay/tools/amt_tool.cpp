// The conditional strategy under replay. Its section [AMTORDER] holds the strategy's own keys
// with its own defaults (szSymbolCode, bLong, nEveryLots, nMaxLots, nDelaySecs, the entry
// price line bEntryPriceCon / nEntryPriceCon / dEntryPrice, stop loss, take profit, trailing
// stop, the formula conditions...). The instrument must be replayed; its exchange is taken
// from it when left out, and the account is the run's when left out.
//
// The strategy runs on the quotes alone (no timer). Nobody sits before it: questions at the
// start are answered Yes (a start time already passed starts it at the first tick) and every
// order confirmation is accepted; a refusal stops the run with its box's text.
#include <cstdio>

#include "amt/amt_order.h"
#include "app/helmsman_manage.h"
#include "replay/replay_tool.h"
#include "replay/tools/headless.h"

namespace {

class AmtTool final : public replay::IReplayTool {
public:
    explicit AmtTool(CHelmsmanManage& manager) : seat(manager, prompter, &ui), amt(manager) {}
    int timerPeriodMs() const override { return 0; }
    void onTimer() override {}
    replay::ToolHoldings holdings() const override {
        replay::ToolHoldings h;
        const CAMTOrder::State& s = amt.state();
        const tagAMTParams& p = amt.params();
        h.positions[p.szSymbolCode] = p.bLong ? s.position : -s.position;
        if (s.position != 0) {
            char line[160];
            std::snprintf(line, sizeof line, "%s %s %d 手 均价 %.*f", p.szSymbolCode.c_str(),
                          p.bLong ? "多" : "空", s.position, amt.priceDecimals(), s.avgPrice);
            h.lines.push_back(line);
        }
        return h;
    }

    replay::ReplayPrompter prompter{true};
    replay::ConfirmingUi ui;
    replay::Seat seat;
    CAMTOrder amt;
};

std::unique_ptr<replay::IReplayTool> makeAmt(replay::ToolContext& ctx, std::string& error) {
    tagAMTParams p = readAMTDefault(ctx.settings);
    if (!replay::findReplayed(ctx, p.szSymbolCode, p.wExchangeID)) {
        error = "[AMTORDER] szSymbolCode: instrument " +
                (p.szSymbolCode.empty() ? std::string("(none)") : p.szSymbolCode) +
                " is not replayed";
        return nullptr;
    }
    if (p.strAccountID.empty()) {
        p.strAccountID = ctx.account;
        p.strBrokerID = replay::brokerOf(ctx.manager.facade(), ctx.account);
    }
    auto tool = std::make_unique<AmtTool>(ctx.manager);
    tool->amt.setParams(p);
    if (!tool->amt.start()) {
        error = "[AMTORDER] the strategy does not start: " + tool->prompter.last();
        return nullptr;
    }
    return tool;
}

const bool kRegistered = replay::registerTool("AMTORDER", &makeAmt);

}  // namespace
