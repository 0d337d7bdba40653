// A manager on the fake host at 10:00 with a manual spread core, for the manual spread's core
// and window tests. Instruments: rb2105 and rb2110 on exchange 0 (tick 1), i2105 and j2105 on
// exchange 1 (tick 0.5); accounts 880001 and 880002. Orders the tool sends land in a recording
// journal.
#pragma once

#include <gtest/gtest.h>

#include <memory>

#include "app/helmsman_manage.h"
#include "spread/manual_spread.h"
#include "support/fake_host.h"
#include "support/quote_builders.h"
#include "support/recording_journal.h"
#include "support/scripted.h"
#include "support/temp_dir.h"
#include "support/test_day.h"

namespace mstest {

using testday::localMs;

// A two-sided quote with the day's limits.
inline IModuleFutureTrader::ITickEx tick(std::uint16_t ex, const char* code, double bid, double ask,
                                         double last = 0, double lower = 0, double upper = 0,
                                         std::int64_t timeMs = 0) {
    IModuleFutureTrader::ITickEx q =
        TickBuilder(ex, code).bid(bid, 10).ask(ask, 10).last(last).limits(lower, upper);
    q.tQuoteTime = timeMs;
    return q;
}

class ManualSpreadTest : public ::testing::Test {
protected:
    ManualSpreadTest() {
        host.exchanges = {{0, "上海期货交易所"}, {1, "大连商品交易所"}};
        host.symbolsByExchange[0] = {{0, "rb2105"}, {0, "rb2110"}};
        host.symbolsByExchange[1] = {{1, "i2105"}, {1, "j2105"}};
        host.details["rb2105"] = contractDetail(1.0f, 1, 10);
        host.details["rb2110"] = contractDetail(1.0f, 1, 10);
        host.details["i2105"] = contractDetail(0.5f, 1, 100);
        host.details["j2105"] = contractDetail(0.5f, 1, 100);
        host.quotes["rb2105"] = tick(0, "rb2105", 4400, 4401, 4400, 4180, 4620);
        host.quotes["rb2110"] = tick(0, "rb2110", 4350, 4352, 4351, 4130, 4570);
        host.quotes["i2105"] = tick(1, "i2105", 1006, 1006.5, 1006, 926, 1087);
        host.quotes["j2105"] = tick(1, "j2105", 2801, 2801.5, 2801, 2577, 3025);
        host.accounts = {FakeHost::account("880001", "9999", "模拟账户一"),
                         FakeHost::account("880002", "9999", "模拟账户二")};
        manager.setClock(&clock);
        manager.setPrompter(&prompter);
        manager.setUi(&ui);
        manager.setJournal(&journal);
        manager.init(1, &host, root.string(), "demo", 0);
    }
    ~ManualSpreadTest() override {
        spread.reset();
        manager.setClock(nullptr);
        manager.setPrompter(nullptr);
        manager.setUi(nullptr);
        manager.setJournal(nullptr);
    }

    // The tool on rb2105 - rb2110 (and i2105 as leg C), one spread unit per click.
    CManualSpread& open() {
        spread = std::make_unique<CManualSpread>(manager);
        spread->setLeg(0, {0, "rb2105"});
        spread->setLeg(1, {0, "rb2110"});
        spread->setLeg(2, {1, "i2105"});
        return *spread;
    }
    void quote(const IModuleFutureTrader::ITickEx& q) {
        manager.sendMessage(spread->handle(), kMsgDataChange, kEventQuote,
                            reinterpret_cast<std::uintptr_t>(&q));
    }

    TempDir root{"mspread"};
    FakeHost host;
    ManualClock clock{localMs(10, 0, 0)};
    ScriptedPrompter prompter;
    ScriptedUi ui;
    RecordingJournal journal;
    CHelmsmanManage manager;
    std::unique_ptr<CManualSpread> spread;
};

}  // namespace mstest
