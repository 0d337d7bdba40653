// The realised profit of the day's fills as a daily statement marks it: today's lots against
// their opening price in order, yesterday's against the previous settlement, with yesterday's
// lots at the start of the day worked out from the position now.
#include <gtest/gtest.h>

#include "account/filled_statistics.h"
#include "app/helmsman_manage.h"
#include "support/fake_host.h"
#include "support/quote_builders.h"

namespace {

struct StatsHost : FakeHost {
    std::vector<tagBargainOrder> fills;
    int GetAllBargains(std::vector<tagBargainOrder>& out) override {
        out = fills;
        return 1;
    }
};

tagBargainOrder fill(std::int64_t t, std::int32_t dir, std::int32_t oc, double vol, double px) {
    tagBargainOrder b;
    b.strAccountID = "A1";
    b.strBrokerID = "B1";
    b.nExchangeID = 1;
    b.strCode = "m2501";
    b.nDirection = dir;
    b.nOpenClose = oc;
    b.dVolume = vol;
    b.dPrice = px;
    b.tTime = t;
    return b;
}

TEST(FilledStatistics, RealisedProfitByDay) {
    struct Case {
        const char* name;
        std::vector<tagBargainOrder> fills;
        double longNow, longToday, shortNow, shortToday;
        double profit;
    } cases[] = {
        {"today's lots first in, first out",
         {fill(1, kDirBuy, kOpen, 2, 100), fill(2, kDirBuy, kOpen, 1, 110), fill(3, kDirSell, kClose, 2, 120)},
         1, 1, 0, 0, (20 * 2) * 10.0},
        {"平仓 takes yesterday's first, at the settlement",
         {fill(1, kDirBuy, kOpen, 1, 105), fill(2, kDirSell, kClose, 2, 110)}, 1, 1, 0, 0, (10 * 2) * 10.0},
        {"平今 takes today's beside yesterday's",
         {fill(1, kDirBuy, kOpen, 1, 105), fill(2, kDirSell, kCloseToday, 1, 110)}, 2, 0, 0, 0, 5 * 10.0},
        {"a short from yesterday bought back",
         {fill(1, kDirBuy, kClose, 1, 95)}, 0, 0, 0, 0, 5 * 10.0},
        {"fills out of time order", {fill(2, kDirSell, kClose, 1, 104), fill(1, kDirBuy, kOpen, 1, 101)},
         0, 0, 0, 0, 3 * 10.0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        StatsHost host;
        host.accounts = {FakeHost::account("A1", "B1", "张三")};
        host.details["m2501"] = contractDetail(1.0f, 1, 10);
        host.quotes["m2501"] = TickBuilder(1, "m2501").preSettle(100);
        tagOpenedPosition p;
        p.strAccountID = "A1";
        p.strBrokerID = "B1";
        p.nExchangeID = 1;
        p.strCode = "m2501";
        p.dLong = c.longNow;
        p.dLongToday = c.longToday;
        p.dShort = c.shortNow;
        p.dShortToday = c.shortToday;
        host.positions = {p};
        host.fills = c.fills;
        CHelmsmanManage manage;
        manage.init(1, &host, "", "", 0);
        CFilledOrderStatistics stats(manage);
        ASSERT_EQ(stats.rows().size(), 3u);  // the group, its account, the grand total
        EXPECT_DOUBLE_EQ(stats.rows()[0].profit, c.profit);
        EXPECT_DOUBLE_EQ(stats.rows()[2].profit, c.profit);
        EXPECT_EQ(stats.cell(1, CFilledOrderStatistics::kColCommission), "-");  // no summary
    }
}

}  // namespace
