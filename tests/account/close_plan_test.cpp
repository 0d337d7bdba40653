// What can still be closed, and how a close is split, by the exchanges' two closing rules.
#include <gtest/gtest.h>

#include "account/close_plan.h"

namespace {

using close_plan::Part;
using close_plan::SideLots;

tagBrokerOrder closing(std::int32_t direction, std::int32_t openClose, double volume, double filled = 0) {
    tagBrokerOrder o;
    o.strAccountID = "A";
    o.strBrokerID = "B";
    o.strCode = "x";
    o.nDirection = direction;
    o.nOpenClose = openClose;
    o.dVolume = volume;
    o.dFilledVolume = filled;
    return o;
}

TEST(ClosePlan, WorkingClosesAreBookedTheWayTheExchangeBooksThem) {
    struct Case {
        const char* name;
        std::int32_t exchange;
        tagBrokerOrder working;
        SideLots freeLong;
    } cases[] = {
        // Long: 3 yesterday, 2 today.
        {"平仓 off exchange 0: yesterday's first", 1, closing(kDirSell, kClose, 4), {0, 1}},
        {"平仓 on exchange 0: yesterday's only", 0, closing(kDirSell, kClose, 4), {0, 2}},
        {"平今 takes today's", 1, closing(kDirSell, kCloseToday, 1), {3, 1}},
        {"only the unfilled rest holds", 1, closing(kDirSell, kClose, 3, 2), {2, 2}},
        {"a buy close holds the short side", 1, closing(kDirBuy, kClose, 3), {3, 2}},
        {"an opening order holds nothing", 1, closing(kDirSell, kOpen, 3), {3, 2}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        tagOpenedPosition p;
        p.strAccountID = "A";
        p.strBrokerID = "B";
        p.strCode = "x";
        p.nExchangeID = c.exchange;
        p.dLong = 5;
        p.dLongToday = 2;
        tagBrokerOrder w = c.working;
        w.nExchangeID = c.exchange;
        const close_plan::Closable free = close_plan::closable(p, {w});
        EXPECT_DOUBLE_EQ(free.longSide.yesterday, c.freeLong.yesterday);
        EXPECT_DOUBLE_EQ(free.longSide.today, c.freeLong.today);
    }
}

TEST(ClosePlan, SplitFollowsTheExchange) {
    struct Case {
        std::int32_t exchange;
        SideLots free;
        double volume;
        std::vector<std::pair<std::int32_t, double>> parts;
    } cases[] = {
        {1, {3, 2}, 5, {{kClose, 5}}},
        {1, {3, 2}, 9, {{kClose, 5}}},  // never more than is free
        {0, {3, 2}, 5, {{kClose, 3}, {kCloseToday, 2}}},
        {0, {3, 2}, 2, {{kClose, 2}}},
        {0, {0, 2}, 2, {{kCloseToday, 2}}},
        {0, {0, 0}, 2, {}},
    };
    for (const Case& c : cases) {
        std::vector<std::pair<std::int32_t, double>> got;
        for (const Part& p : close_plan::split(c.exchange, c.free, c.volume)) got.emplace_back(p.openClose, p.volume);
        EXPECT_EQ(got, c.parts) << "exchange " << c.exchange << " volume " << c.volume;
    }
}

}  // namespace
