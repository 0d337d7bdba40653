// Shared pieces of the algo tests: orders built from a settings block, quotes, a manager on
// the fake host with a manual clock, and a journal that keeps what it is given.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "algo/algo_engine.h"
#include "algo/algo_order.h"
#include "app/helmsman_manage.h"
#include "support/fake_host.h"
#include "support/quote_builders.h"
#include "support/recording_journal.h"
#include "support/temp_dir.h"
#include "support/test_day.h"

namespace algotest {

using testday::localMs;

// A buy (or sell) of `total` lots of XX on exchange 7 (no sessions), tick 1.
inline CAlgoOrder order(const tagAlgoSetting& s, int direction = kDirBuy, int total = 10,
                        int filled = 0, int pacing = kPaceNormal) {
    tagBrokerOrder o = brokerOrder("880001", "XX", direction, total, 100);
    o.nExchangeID = 7;
    CAlgoOrder a(1, o, s, contractDetail(1.0f, 1, 10));
    a.m_dDoneFilled = filled;
    a.m_nPacing = pacing;
    a.m_dBasePrice = 100;
    return a;
}

inline IModuleFutureTrader::ITickEx quote(double bid, double bidVol, double ask, double askVol,
                                          double last) {
    return TickBuilder(7, "XX").bid(bid, bidVol).ask(ask, askVol).last(last);
}

// A manager on the fake host at 10:00 with one engine; XX trades all day.
class EngineTest : public ::testing::Test {
protected:
    EngineTest() {
        host.details["XX"] = contractDetail(1.0f, 1, 10);
        host.quotes["XX"] = quote(99, 10, 100, 10, 100);
        manager.setClock(&clock);
        manager.setJournal(&journal);
        manager.init(1, &host, root.string(), "demo", 0);
        engine = std::make_unique<CAlgoEngine>(manager);
    }
    ~EngineTest() override {
        engine.reset();
        manager.setClock(nullptr);
        manager.setJournal(nullptr);
    }

    tagBrokerOrder parent(int volume = 10, int direction = kDirBuy) {
        tagBrokerOrder o = brokerOrder("880001", "XX", direction, volume, 100);
        o.nExchangeID = 7;
        return o;
    }
    // The host's report of a sent order with a new status.
    tagBrokerOrder report(std::size_t sentIndex, int status, double filled = 0) {
        tagBrokerOrder r = host.sent.at(sentIndex);
        r.nStatus = status;
        r.dFilledVolume = filled;
        for (auto& o : host.orders)
            if (o.strOrderID == r.strOrderID) o = r;
        return r;
    }
    void after(std::int64_t ms) {
        clock.advanceMs(ms);
        engine->pass();
    }

    TempDir root{"algo"};
    FakeHost host;
    ManualClock clock{localMs(10, 0)};
    RecordingJournal journal;
    CHelmsmanManage manager;
    std::unique_ptr<CAlgoEngine> engine;
};

}  // namespace algotest
