// The market the spread robots' benchmarks run on: a fake host with two logged-on accounts
// (880001, 880002) and IF2101 (5216.0 / 5216.2) and IH2101 (3645.4 / 3645.6), and a manager
// on it at 10:00 of the tests' trading day. The benchmark makes its robot on `manager`.
#pragma once

#include "app/helmsman_manage.h"
#include "support/fake_host.h"
#include "support/quote_builders.h"
#include "support/test_day.h"

// A quote of a CFFEX contract with five lots on each side.
inline IModuleFutureTrader::ITickEx benchTick(const char* code, double bid, double ask) {
    IModuleFutureTrader::ITickEx t = TickBuilder(3, code).bid(bid, 5).ask(ask, 5).last(bid);
    t.dVolume = 1000;
    t.tQuoteTime = 1;
    return t;
}

struct TwoLegDesk {
    FakeHost host;
    ManualClock clock{testday::localMs(10, 0)};
    CHelmsmanManage manager;

    TwoLegDesk() {
        host.accounts = {FakeHost::account("880001", "9999", "一"),
                         FakeHost::account("880002", "9999", "二")};
        host.details["IF2101"] = contractDetail(0.2f, 1, 300);
        host.details["IH2101"] = contractDetail(0.2f, 1, 300);
        host.quotes["IF2101"] = benchTick("IF2101", 5216.0, 5216.2);
        host.quotes["IH2101"] = benchTick("IH2101", 3645.4, 3645.6);
        manager.setClock(&clock);
        manager.init(1, &host, "/nonexistent-helmsman-bench", "demo", 0);
    }
};
