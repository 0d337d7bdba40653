#include "app/auto_kp.h"

#include <gtest/gtest.h>

#include "support/fake_host.h"

namespace {

tagBrokerOrder makeOrder(std::int32_t direction, std::int32_t flag = kOpen,
                         std::string code = "rb2410") {
    tagBrokerOrder o;
    o.strAccountID = "8001";
    o.strBrokerID = "B1";
    o.nExchangeID = 3;
    o.strCode = std::move(code);
    o.nDirection = direction;
    o.nOpenClose = flag;
    o.dVolume = 1;
    o.nStatus = kOrderQueued;
    return o;
}

tagOpenedPosition position(double dLong, double dShort, std::string account = "8001") {
    tagOpenedPosition p;
    p.strAccountID = std::move(account);
    p.strBrokerID = "B1";
    p.nExchangeID = 3;
    p.strCode = "rb2410";
    p.dLong = dLong;
    p.dShort = dShort;
    p.dTotal = dLong + dShort;
    return p;
}

struct Case {
    const char* name;
    int minPos;
    std::int32_t direction;
    std::vector<tagOpenedPosition> positions;
    std::vector<tagBrokerOrder> working;
    std::int32_t expected;
    int positionResult = 1;
};

TEST(AutoOpenClose, ChoosesFromTheOppositeSide) {
    const std::vector<Case> cases = {
        {"buy, short at the threshold opens", 2, kDirBuy, {position(9, 2)}, {}, kOpen},
        {"buy, short above the threshold closes", 2, kDirBuy, {position(0, 3)}, {}, kClose},
        {"sell looks at the long side", 2, kDirSell, {position(3, 0)}, {}, kClose},
        {"sell with no long opens", 2, kDirSell, {position(0, 9)}, {}, kOpen},
        {"fractions are truncated", 2, kDirBuy, {position(0, 2.9)}, {}, kOpen},
        {"failed position read opens", 2, kDirBuy, {position(0, 9)}, {}, kOpen, 0},
        {"no position at all opens", 2, kDirBuy, {}, {}, kOpen},
        {"another account's position does not count", 2, kDirBuy, {position(0, 9, "X")}, {}, kOpen},
        {"neither buy nor sell opens", 2, 0, {position(9, 9)}, {}, kOpen},
        {"threshold 1 takes a single lot as open", 1, kDirBuy, {position(0, 1)}, {}, kOpen},
        {"threshold 0, nothing opposite opens", 0, kDirBuy, {position(5, 0)}, {}, kOpen},
        {"threshold 0, two lots close", 0, kDirBuy, {position(0, 2)}, {}, kClose},
        {"negative threshold closes even on a failed read", -1, kDirBuy, {}, {}, kClose, 0},
    };
    for (const auto& c : cases) {
        FakeHost host;
        host.positions = c.positions;
        host.positionResult = c.positionResult;
        HelmsmanSettings s;
        s.bAutoKP = 1;
        s.nMinAutoKPPos = c.minPos;
        EXPECT_EQ(chooseOpenClose(host, makeOrder(c.direction, kCloseToday), s), c.expected)
            << c.name;
        // Only the one-lot case reads working orders, and only below a threshold of 1.
        EXPECT_TRUE(host.callsStartingWith("GetOpenOrders").empty()) << c.name;
    }
}

TEST(AutoOpenClose, OneLotLooksAtWorkingOrders) {
    auto closing = [](std::int32_t dir, std::int32_t flag, std::string code = "rb2410",
                      std::int32_t status = kOrderQueued) {
        tagBrokerOrder o = makeOrder(dir, flag, std::move(code));
        o.nStatus = status;
        return o;
    };
    const std::vector<Case> cases = {
        {"no working orders: close", 0, kDirBuy, {position(0, 1)}, {}, kClose},
        {"same direction closing: open",
         0,
         kDirBuy,
         {position(0, 1)},
         {closing(kDirBuy, kClose)},
         kOpen},
        {"same direction closing today: open",
         0,
         kDirSell,
         {position(1, 0)},
         {closing(kDirSell, kCloseToday)},
         kOpen},
        {"same direction opening: close",
         0,
         kDirBuy,
         {position(0, 1)},
         {closing(kDirBuy, kOpen)},
         kClose},
        {"opposite direction closing: close",
         0,
         kDirBuy,
         {position(0, 1)},
         {closing(kDirSell, kClose)},
         kClose},
        {"closing order in another symbol: close",
         0,
         kDirBuy,
         {position(0, 1)},
         {closing(kDirBuy, kClose, "ag2412")},
         kClose},
        {"a filled closing order is no longer working: close",
         0,
         kDirBuy,
         {position(0, 1)},
         {closing(kDirBuy, kClose, "rb2410", kOrderFilled)},
         kClose},
        {"one match among others: open",
         -5,
         kDirBuy,
         {position(0, 1.5)},
         {closing(kDirSell, kClose), closing(kDirBuy, kOpen), closing(kDirBuy, kClose)},
         kOpen},
    };
    for (const auto& c : cases) {
        FakeHost host;
        host.positions = c.positions;
        host.orders = c.working;
        HelmsmanSettings s;
        s.bAutoKP = 1;
        s.nMinAutoKPPos = c.minPos;
        EXPECT_EQ(chooseOpenClose(host, makeOrder(c.direction), s), c.expected) << c.name;
        EXPECT_EQ(host.callsStartingWith("GetOpenOrders"),
                  std::vector<std::string>{"GetOpenOrders 8001 rb2410"})
            << c.name;
    }
}

TEST(AutoOpenClose, OffKeepsTheOrdersFlagWithoutAskingTheHost) {
    for (std::int32_t flag : {kOpen, kClose, kCloseToday}) {
        FakeHost host;
        host.positions = {position(9, 9)};
        tagBrokerOrder order = makeOrder(kDirBuy, flag);
        EXPECT_EQ(applyAutoOpenClose(host, order, HelmsmanSettings{}), flag);
        EXPECT_EQ(order.nOpenClose, flag);
        EXPECT_TRUE(host.calls.empty());
    }
    // Switched on, apply writes the choice into the order.
    FakeHost host;
    host.positions = {position(0, 4)};
    HelmsmanSettings s;
    s.bAutoKP = 1;
    tagBrokerOrder order = makeOrder(kDirBuy, kOpen);
    EXPECT_EQ(applyAutoOpenClose(host, order, s), kClose);
    EXPECT_EQ(order.nOpenClose, kClose);
    EXPECT_EQ(host.calls, std::vector<std::string>{"GetPosition 8001 rb2410"});
}

}  // namespace
