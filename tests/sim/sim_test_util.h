// Helpers shared by the SimExchange tests: an exchange at a fixed local time with a quiet
// market, quotes, orders, and a sink that records every delivery as a line of text.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "host/clock.h"
#include "host/window.h"
#include "sim/sim_exchange.h"
#include "support/data_dir.h"
#include "support/quote_builders.h"

namespace simtest {

// The shared data folder (see support/data_dir.h).
inline std::filesystem::path dataDir() { return testdata::dataDir(); }

// Calendar milliseconds of 2021-01-04 hh:mm:ss local time.
inline std::int64_t localMs(int hh, int mm, int ss, int ms = 0) {
    std::tm tm{};
    tm.tm_year = 121;
    tm.tm_mday = 4;
    tm.tm_hour = hh;
    tm.tm_min = mm;
    tm.tm_sec = ss;
    tm.tm_isdst = -1;
    return fromLocalTm(tm) * 1000 + ms;
}

inline SimOptions quietOptions() {
    SimOptions o;
    o.randomWalk = false;
    return o;
}

inline const tagSymbol kIF{3, "IF2101"};
inline const tagSymbol kRB{0, "rb2105"};

inline IModuleFutureTrader::ITickEx quote(const tagSymbol& s, double bid, double bidVol, double ask,
                                          double askVol, double last) {
    return TickBuilder(s.wExchangeID, s.strCode).bid(bid, bidVol).ask(ask, askVol).last(last);
}

inline tagBrokerOrder order(const tagSymbol& s, int dir, int oc, double vol, double price,
                            const std::string& account = "880001") {
    tagBrokerOrder o;
    o.strAccountID = account;
    o.strBrokerID = "9999";
    o.nExchangeID = s.wExchangeID;
    o.strSymbolText = o.strCode = s.strCode;
    o.nDirection = dir;
    o.nOpenClose = oc;
    o.dVolume = vol;
    o.dPrice = price;
    o.strRemark = "test";
    return o;
}

// An IF2101 server trigger order of 880001 for one lot; price 0 is at market.
inline tagTriggerOrder trigger(int type, int dir, double trig, double px) {
    tagTriggerOrder t;
    t.strAccountID = "880001";
    t.strBrokerID = "9999";
    t.nExchangeID = 3;
    t.strSymbolText = t.strCode = "IF2101";
    t.nDirection = dir;
    t.nOpenClose = kOpen;
    t.dVolume = 1;
    t.dPrice = px;
    t.dTriggerPrice = trig;
    t.nTriggerType = type;
    t.strRemark = "server trigger";
    return t;
}

inline std::string fmt(double v) {
    char buf[32];
    std::snprintf(buf, sizeof buf, "%g", v);
    return buf;
}

// Records deliveries: "2 <id> <status> <filled>", "4 <contract> <vol>@<price>",
// "1000 <code> <last>", "W <hWnd> <msg> <wParam> <code>", "L <code> <account>",
// "T <id> <status>"; and the deepest nesting of handler calls seen.
class RecordingSink : public ISimEventSink {
public:
    std::vector<std::string> lines;
    std::vector<tagBrokerOrder> orders;
    std::vector<tagBargainOrder> fills;
    int depth = 0;
    int maxDepth = 0;

    void onDataChange(std::uint32_t code, std::uintptr_t data) override {
        Enter e(*this);
        if (code == kEventOrderChanged) {
            const auto& o = *reinterpret_cast<const tagBrokerOrder*>(data);
            orders.push_back(o);
            lines.push_back("2 " + o.strOrderID + " " + std::to_string(o.nStatus) + " " +
                            fmt(o.dFilledVolume));
        } else if (code == kEventNewFill) {
            const auto& b = *reinterpret_cast<const tagBargainOrder*>(data);
            fills.push_back(b);
            lines.push_back("4 " + b.strContractNo + " " + fmt(b.dVolume) + "@" + fmt(b.dPrice));
        } else if (code == kEventQuote) {
            const auto& t = *reinterpret_cast<const IModuleFutureTrader::ITickEx*>(data);
            lines.push_back("1000 " + t.strCode + " " + fmt(t.dLast));
        } else if (code == kSimEventTriggerChanged) {
            const auto& t = *reinterpret_cast<const tagTriggerOrder*>(data);
            lines.push_back("T " + t.strOrderID + " " + std::to_string(t.nStatus));
        } else {
            lines.push_back("? " + std::to_string(code));
        }
        afterData(code, data);
    }
    void onLogonStateChange(std::uint32_t code, std::uintptr_t data) override {
        Enter e(*this);
        lines.push_back("L " + std::to_string(code) + " " +
                        reinterpret_cast<const tagAccoutInfo*>(data)->strAccountID);
    }
    void onWindowMessage(std::uint32_t hWnd, std::uint32_t msg, std::uintptr_t wParam,
                         std::uintptr_t lParam) override {
        Enter e(*this);
        lines.push_back("W " + std::to_string(hWnd) + " " + std::to_string(msg) + " " +
                        std::to_string(wParam) + " " +
                        reinterpret_cast<const IModuleFutureTrader::ITickEx*>(lParam)->strCode);
    }
    std::vector<std::string> with(const std::string& prefix) const {
        std::vector<std::string> out;
        for (const auto& l : lines)
            if (l.rfind(prefix, 0) == 0) out.push_back(l);
        return out;
    }

protected:
    virtual void afterData(std::uint32_t, std::uintptr_t) {}

private:
    struct Enter {
        RecordingSink& s;
        explicit Enter(RecordingSink& r) : s(r) { s.maxDepth = std::max(s.maxDepth, ++s.depth); }
        ~Enter() { --s.depth; }
    };
};

// An exchange at 10:00 with no random walk, delivering to `sink`.
struct Rig {
    ManualClock clock{localMs(10, 0, 0)};
    SimExchange ex{clock, quietOptions()};
    RecordingSink sink;
    Rig() { ex.setEventSink(&sink); }

    // "L<long>/<today> S<short>/<today>" of an account's position.
    std::string position(const tagSymbol& s, const std::string& account = "880001") {
        tagOpenedPosition p;
        if (ex.GetPosition(p, account, "9999", s) != 1) return "none";
        return "L" + fmt(p.dLong) + "/" + fmt(p.dLongToday) + " S" + fmt(p.dShort) + "/" +
               fmt(p.dShortToday);
    }
    tagAccountSummary summary() {
        tagAccountSummary s;
        EXPECT_EQ(ex.GetAccountSummary(s, "880001", "9999"), 1);
        return s;
    }
    std::vector<tagBrokerOrder> allOrders() {
        std::vector<tagBrokerOrder> v;
        ex.GetAllOrders(v);
        return v;
    }
    tagTriggerOrder triggerOf(const std::string& id) {
        tagTriggerOrder t;
        EXPECT_EQ(ex.GetTriggerOrder(t, "880001", "9999", id), 1) << id;
        return t;
    }
};

}  // namespace simtest
