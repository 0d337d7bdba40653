#include "order/bargain_dialog.h"

#include <gtest/gtest.h>

#include "host/clock.h"
#include "support/fake_host.h"
#include "support/quote_builders.h"

namespace {

tagBargainOrder fill(std::string code, int dir, int openClose, double vol, double price,
                     std::string contract, std::string account = "8001") {
    tagBargainOrder b;
    b.strAccountID = std::move(account);
    b.strBrokerID = "9999";
    b.nExchangeID = 1;
    b.strCode = std::move(code);
    b.nDirection = dir;
    b.nOpenClose = openClose;
    b.dVolume = vol;
    b.dPrice = price;
    b.strContractNo = std::move(contract);
    return b;
}

FakeHost hostWithContracts() {
    FakeHost host;
    host.details["IF2406"] = contractDetail(0.2f, 1, 10);
    host.details["au2412"] = contractDetail(0.02f, 1, 10);
    host.details["rb2410"] = contractDetail(1.0f, 1, 10);
    return host;
}

TEST(BargainDialog, TitleAndBodyByDirectionAndOpenClose) {
    FakeHost host = hostWithContracts();
    struct Case {
        tagBargainOrder fill;
        const char* title;
        const char* body;
    } cases[] = {
        {fill("IF2406", kDirBuy, kOpen, 2, 3001.4, "1001"), "[8001]开仓买入成交",
         "买入IF2406合约2张[合同号:1001],成交价格:3001.4"},
        {fill("IF2406", kDirBuy, kClose, 1, 3000, "1002"), "[8001]平仓买入成交",
         "买入IF2406合约1张[合同号:1002],成交价格:3000.0"},
        {fill("au2412", kDirSell, kOpen, 3, 560.4, "1003", "8002"), "[8002]开仓卖出成交",
         "卖出au2412合约3张[合同号:1003],成交价格:560.40"},
        // Anything but 1 is a sell; any non-zero flag is a close.
        {fill("rb2410", 0, 7, 1, 3651, "1005"), "[8001]平仓卖出成交",
         "卖出rb2410合约1张[合同号:1005],成交价格:3651"},
        // A contract the host cannot describe: every digit, no padding.
        {fill("ZZ1", kDirBuy, kOpen, 1, 12.3450, "1006"), "[8001]开仓买入成交",
         "买入ZZ1合约1张[合同号:1006],成交价格:12.345"},
    };
    for (const auto& c : cases) {
        CBargainDialog dlg(&host);
        dlg.append(c.fill);
        ASSERT_EQ(dlg.entries().size(), 1u);
        EXPECT_EQ(dlg.entries()[0].title, c.title) << c.body;
        EXPECT_EQ(dlg.entries()[0].body, c.body);
        EXPECT_EQ(dlg.entries()[0].buy, c.fill.nDirection == kDirBuy);
    }
}

TEST(BargainDialog, GrowingListKeepsArrivalOrderAndAsksThePrecisionOncePerContract) {
    FakeHost host = hostWithContracts();
    CBargainDialog dlg(&host);
    std::vector<tagBargainOrder> fills = {fill("IF2406", kDirBuy, kOpen, 1, 3001.4, "A"),
                                          fill("au2412", kDirSell, kOpen, 2, 560.5, "B"),
                                          fill("IF2406", kDirSell, kClose, 1, 3002, "C")};
    std::tm at{};
    at.tm_year = 124;
    at.tm_mon = 5;
    at.tm_mday = 3;
    at.tm_hour = 9;
    at.tm_min = 30;
    at.tm_sec = 5;
    fills[0].tTime = fromLocalTm(at);  // 09:30:05 local
    // The manager hands over its whole, growing list each time.
    std::vector<tagBargainOrder> shown;
    for (const auto& f : fills) {
        shown.push_back(f);
        dlg.setFills(shown);
    }
    ASSERT_EQ(dlg.size(), 3u);
    EXPECT_EQ(dlg.entries()[0].body, "买入IF2406合约1张[合同号:A],成交价格:3001.4");
    EXPECT_EQ(dlg.entries()[1].body, "卖出au2412合约2张[合同号:B],成交价格:560.50");
    EXPECT_EQ(dlg.entries()[2].body, "卖出IF2406合约1张[合同号:C],成交价格:3002.0");
    EXPECT_EQ(dlg.entries()[0].time, "09:30:05");
    EXPECT_EQ(dlg.entries()[1].time, "");  // no time from the host
    EXPECT_EQ(host.callsStartingWith("GetSymbolProperty").size(), 2u);

    // A list that is not an extension of the shown one replaces it.
    dlg.setFills({fills[2]});
    ASSERT_EQ(dlg.size(), 1u);
    EXPECT_EQ(dlg.entries()[0].body, "卖出IF2406合约1张[合同号:C],成交价格:3002.0");
}

}  // namespace
