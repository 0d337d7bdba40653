// A conditional strategy on the fake host at 10:00 on 2021-01-04, with a formula table the
// test fills, the confirmation accepted and a journal that keeps every entry.
// Instruments: IF2101 on exchange 3 (tick 0.2) and XX on exchange 7 (tick 1, always
// trading).
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <memory>

#include "amt/amt_order.h"
#include "app/helmsman_manage.h"
#include "support/fake_host.h"
#include "support/quote_builders.h"
#include "support/recording_journal.h"
#include "support/scripted.h"
#include "support/temp_dir.h"
#include "support/test_day.h"

namespace amttest {

// Calendar seconds of 2021-01-04 hh:mm:ss local time.
inline std::int64_t localSec(int hh, int mm, int ss) { return testday::localMs(hh, mm, ss) / 1000; }

// The fake host with a "tblprofile" table: section|key -> text.
struct FormulaHost : FakeHost {
    std::map<std::string, std::string> table;
    int lookups = 0;
    bool GetConfigFileProperty(const std::string& file, const std::string& section,
                               const std::string& key, std::string& value) override {
        ++lookups;
        if (file != "tblprofile") return false;
        auto it = table.find(section + "|" + key);
        if (it == table.end()) return false;
        value = it->second;
        return true;
    }
};

class AmtTest : public ::testing::Test {
protected:
    AmtTest() {
        host.details["IF2101"] = contractDetail(0.2f, 1, 300);
        host.details["XX"] = contractDetail(1.0f, 1, 10);
        host.accounts = {FakeHost::account("880001", "9999", "模拟账户一")};
        manager.setClock(&clock);
        manager.setPrompter(&prompter);
        manager.setUi(&ui);
        manager.setJournal(&journal);
        manager.init(1, &host, root.string(), "demo", 0);
        core = std::make_unique<CAMTOrder>(manager);
        params.wExchangeID = 3;
        params.szSymbolCode = "IF2101";
        params.strAccountID = "880001";
        params.strBrokerID = "9999";
        params.nMaxLots = 3;
        core->setParams(params);
    }
    ~AmtTest() override {
        core.reset();
        manager.setClock(nullptr);
        manager.setPrompter(nullptr);
        manager.setUi(nullptr);
        manager.setJournal(nullptr);
    }

    void at(int hh, int mm, int ss) { clock.setNowMs(localSec(hh, mm, ss) * 1000); }
    // Takes `params` (after a test changed them).
    void apply() { core->setParams(params); }
    // A quote of the strategy's instrument, as the host notifies it.
    void quote(double last, double bid, double ask, double bidVol = 10, double askVol = 10,
               double upper = -1, double lower = -1) {
        if (upper < 0) upper = upperLimit;
        if (lower < 0) lower = lowerLimit;
        IModuleFutureTrader::ITickEx t = TickBuilder(params.wExchangeID, params.szSymbolCode)
                                             .last(last)
                                             .bid(bid, bidVol)
                                             .ask(ask, askVol);
        t.dUpperLimit = upper;
        t.dLowerLimit = lower;
        core->onMessage(kMsgDataChange, kEventQuote, reinterpret_cast<std::uintptr_t>(&t));
    }
    int enter() { return core->entryAttempt(clock.nowMs()); }
    int leave() { return core->exitAttempt(clock.nowMs()); }

    TempDir root{"amt"};
    FormulaHost host;
    ManualClock clock{localSec(10, 0, 0) * 1000};
    ScriptedPrompter prompter;
    ScriptedUi ui;
    RecordingJournal journal;
    CHelmsmanManage manager;
    tagAMTParams params;
    std::unique_ptr<CAMTOrder> core;
    double upperLimit = 6000, lowerLimit = 4000;  // the quotes' limits unless given
};

}  // namespace amttest
