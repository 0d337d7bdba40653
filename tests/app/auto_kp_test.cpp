#include "app/auto_kp.h"

#include <gtest/gtest.h>

#include "support/fake_host.h"

namespace {

tagBrokerOrder makeOrder(std::int32_t direction, std::int32_t flag = kOpen,
                         std::string code = "rb2410", std::int32_t status = kOrderQueued) {
    tagBrokerOrder o;
    o.strAccountID = "8001";
    o.strBrokerID = "B1";
    o.nExchangeID = 3;
    o.strCode = std::move(code);
    o.nDirection = direction;
    o.nOpenClose = flag;
    o.dVolume = 1;
    o.nStatus = status;
    return o;
}

tagOpenedPosition position(double dLong, double dShort) {
    return {"8001", "B1", 3, "rb2410", dLong + dShort, dLong, dShort};
}

HelmsmanSettings autoKp(int minPos) {
    HelmsmanSettings s;
    s.bAutoKP = 1;
    s.nMinAutoKPPos = minPos;
    return s;
}

TEST(AutoOpenClose, ChoosesFromTheOppositeSide) {
    struct {
        const char* name;
        int minPos;
        std::int32_t direction;
        std::vector<tagOpenedPosition> positions;
        std::int32_t expected;
        int positionResult = 1;
    } cases[] = {
        {"buy, short at the threshold opens", 2, kDirBuy, {position(9, 2)}, kOpen},
        {"buy, short above the threshold closes", 2, kDirBuy, {position(0, 3)}, kClose},
        {"sell looks at the long side", 2, kDirSell, {position(3, 0)}, kClose},
        {"sell with no long opens", 2, kDirSell, {position(0, 9)}, kOpen},
        {"fractions are truncated", 2, kDirBuy, {position(0, 2.9)}, kOpen},
        {"failed position read (or none) opens", 2, kDirBuy, {position(0, 9)}, kOpen, 0},
        {"neither buy nor sell opens", 2, 0, {position(9, 9)}, kOpen},
        {"threshold 1 takes a single lot as open", 1, kDirBuy, {position(0, 1)}, kOpen},
        {"threshold 0, two lots close", 0, kDirBuy, {position(0, 2)}, kClose},
        {"negative threshold closes even on a failed read", -1, kDirBuy, {}, kClose, 0},
    };
    for (const auto& c : cases) {
        FakeHost host;
        host.positions = c.positions;
        host.positionResult = c.positionResult;
        EXPECT_EQ(chooseOpenClose(host, makeOrder(c.direction, kCloseToday), autoKp(c.minPos)),
                  c.expected)
            << c.name;
        // Only the one-lot case reads working orders.
        EXPECT_TRUE(host.callsStartingWith("GetOpenOrders").empty()) << c.name;
    }
}

// One lot opposite, below a threshold of 1: a working same-direction order already closing it
// means that lot is taken, so the new order opens.
TEST(AutoOpenClose, OneLotLooksAtWorkingOrders) {
    struct {
        const char* name;
        std::int32_t direction;
        std::vector<tagBrokerOrder> working;
        std::int32_t expected;
    } cases[] = {
        {"no working orders: close", kDirBuy, {}, kClose},
        {"same direction closing: open", kDirBuy, {makeOrder(kDirBuy, kClose)}, kOpen},
        {"closing today: open", kDirSell, {makeOrder(kDirSell, kCloseToday)}, kOpen},
        {"same direction opening: close", kDirBuy, {makeOrder(kDirBuy, kOpen)}, kClose},
        {"opposite direction closing: close", kDirBuy, {makeOrder(kDirSell, kClose)}, kClose},
        {"another symbol: close", kDirBuy, {makeOrder(kDirBuy, kClose, "ag2412")}, kClose},
        {"filled, no longer working: close",
         kDirBuy,
         {makeOrder(kDirBuy, kClose, "rb2410", kOrderFilled)},
         kClose},
        {"one match among others: open",
         kDirBuy,
         {makeOrder(kDirSell, kClose), makeOrder(kDirBuy, kOpen), makeOrder(kDirBuy, kClose)},
         kOpen},
    };
    for (const auto& c : cases) {
        FakeHost host;
        host.positions = {c.direction == kDirBuy ? position(0, 1.5) : position(1, 0)};
        host.orders = c.working;
        EXPECT_EQ(chooseOpenClose(host, makeOrder(c.direction), autoKp(0)), c.expected) << c.name;
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
    tagBrokerOrder order = makeOrder(kDirBuy, kOpen);
    EXPECT_EQ(applyAutoOpenClose(host, order, autoKp(2)), kClose);
    EXPECT_EQ(order.nOpenClose, kClose);
    EXPECT_EQ(host.calls, std::vector<std::string>{"GetPosition 8001 rb2410"});
}

}  // namespace
