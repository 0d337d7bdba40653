// A manager on the fake host and a manual clock, with one centre core, for the local trigger
// tests. Instruments: cu2102 on exchange 0 (tick 10), IF2101 on exchange 3 (tick 0.2) and
// XX on exchange 7 (no trading period: always trading).
#pragma once

#include <gtest/gtest.h>

#include <ctime>
#include <functional>
#include <memory>

#include "app/helmsman_manage.h"
#include "support/fake_host.h"
#include "support/quote_builders.h"
#include "support/scripted.h"
#include "support/temp_dir.h"
#include "trigger/local_trigger.h"

namespace trigtest {

// Calendar seconds of 2021-01-04 hh:mm:ss local time.
inline std::int64_t localSec(int hh, int mm, int ss) {
    std::tm tm{};
    tm.tm_year = 121;
    tm.tm_mday = 4;
    tm.tm_hour = hh;
    tm.tm_min = mm;
    tm.tm_sec = ss;
    tm.tm_isdst = -1;
    return fromLocalTm(tm);
}

inline tagTriggerOrder trigger(int exchange, const char* code, int direction, int type,
                               double triggerPrice, double price = 0, double volume = 1) {
    tagTriggerOrder t;
    t.strAccountID = "880001";
    t.strBrokerID = "9999";
    t.nExchangeID = exchange;
    t.strCode = code;
    t.strSymbolText = code;
    t.nDirection = direction;
    t.nTriggerType = type;
    t.dTriggerPrice = triggerPrice;
    t.dPrice = price;
    t.dVolume = volume;
    t.strRemark = "条件单";
    return t;
}

// The fake host with a hook after each sent order, as a host that notifies (or shows a box)
// inside SendOrder would behave.
struct HookedHost : FakeHost {
    std::function<void()> afterSend;
    int SendOrder(tagBrokerOrder& o) override {
        const int r = FakeHost::SendOrder(o);
        if (afterSend) afterSend();
        return r;
    }
};

class TriggerTest : public ::testing::Test {
protected:
    TriggerTest() {
        host.details["cu2102"] = contractDetail(10.0f, 1, 5);
        host.details["IF2101"] = contractDetail(0.2f, 1, 300);
        host.details["XX"] = contractDetail(1.0f, 1, 10);
        manager.setClock(&clock);
        manager.setPrompter(&prompter);
        manager.setUi(&ui);
        manager.init(1, &host, root.string(), "demo", 0);
        centre = std::make_unique<CLocalTrigger>(manager);
    }
    ~TriggerTest() override {
        centre.reset();
        manager.setClock(nullptr);
        manager.setPrompter(nullptr);
        manager.setUi(nullptr);
    }

    void at(int hh, int mm, int ss) { clock.setNowMs(localSec(hh, mm, ss) * 1000); }
    // A quote as the host would notify it.
    void quote(const IModuleFutureTrader::ITickEx& tick) {
        centre->dataChange(kEventQuote, reinterpret_cast<std::uintptr_t>(&tick));
    }

    TempDir root{"trigger"};
    HookedHost host;
    ManualClock clock{localSec(10, 0, 0) * 1000};
    ScriptedPrompter prompter;
    ScriptedUi ui;
    CHelmsmanManage manager;
    std::unique_ptr<CLocalTrigger> centre;
};

}  // namespace trigtest
