// The simulated exchange's value types: its event sink, event and status codes, reject texts,
// contracts, demo accounts, options and counters.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "host/records.h"

// Where SimExchange delivers events (see the header comment).
class ISimEventSink {
public:
    virtual ~ISimEventSink() = default;
    // -> HelmsmanDataChange
    virtual void onDataChange(std::uint32_t code, std::uintptr_t data) = 0;
    // -> HelmsmanLogonStateChange
    virtual void onLogonStateChange(std::uint32_t code, std::uintptr_t data) = 0;
    // An OS-style message to one window handle.
    virtual void onWindowMessage(std::uint32_t hWnd, std::uint32_t msg, std::uintptr_t wParam,
                                 std::uintptr_t lParam) = 0;
};

// Logon-state codes (onLogonStateChange; data -> tagAccoutInfo of the account).
inline constexpr std::uint32_t kSimLogonOff = 0;        // logged off by request
inline constexpr std::uint32_t kSimLogonOn = 1;         // logged on
inline constexpr std::uint32_t kSimLogonForcedOff = 2;  // disconnected (forceLogoff)

// Desk-only event: a server trigger order changed (data -> tagTriggerOrder).
inline constexpr std::uint32_t kSimEventTriggerChanged = 3;

// Status codes of a tagTriggerOrder in this host.
enum : std::int32_t {
    kSimTriggerWaiting = 0,   // 等待触发
    kSimTriggerReleased = 1,  // 已触发: the plain order was sent
    kSimTriggerDeleted = 2,   // 已删除
    kSimTriggerExpired = 3,   // 已过期
};
// Display text of a trigger status ("等待触发", "已触发", "已删除", "已过期", else "未知").
const char* simTriggerStatusText(std::int32_t status);

// Reject reasons written into tagBrokerOrder::strStatusMsg.
namespace simtext {
inline constexpr const char* kNotLoggedOn = "未登录交易帐户";
inline constexpr const char* kUnknownAccount = "交易帐户不存在";
inline constexpr const char* kUnknownContract = "合约不存在";
inline constexpr const char* kNotTradable = "合约不可交易";
inline constexpr const char* kBadVolume = "委托数量错误";
inline constexpr const char* kBadDirection = "买卖方向错误";
inline constexpr const char* kBadOpenClose = "开平标志错误";
inline constexpr const char* kPriceOutOfBand = "报单价格超出涨跌停板";
inline constexpr const char* kPriceOffTick = "报单价格不是最小变动价位的整数倍";
inline constexpr const char* kCloseExceeds = "平仓数量超出可平持仓";
inline constexpr const char* kCloseTodayExceeds = "平今数量超出今仓";
inline constexpr const char* kNoFunds = "可用资金不足";
inline constexpr const char* kInjectedReject = "模拟拒单";
}  // namespace simtext

// One contract of the catalogue.
struct SimContract {
    tagSymbol symbol;
    IModuleFutureTrader::ISpecDetailValue detail;  // price unit, min move, multiplier, ...
    double preSettle = 0;
    double preClose = 0;
    double limitPct = 0;             // limit band: preSettle * (1 ± limitPct), inward to the tick
    double commissionPerLot = 0;     // fixed commission per lot, or
    double commissionRate = 0;       // a fraction of the traded value (whichever is non-zero)
    double typicalTouchVolume = 20;  // scale of the random walk's bid/ask volumes
    bool expired = false;            // past its last trading day: listed, never ticks
    bool night = false;              // also trades its product's night session
};

// One demo account.
struct SimAccount {
    tagAccoutInfo info;
    std::string password;
    double preBalance = 0;
};

struct SimOptions {
    std::uint64_t seed = 20210104;
    bool logonAtStart = true;        // both demo accounts logged on at construction
    bool randomWalk = true;          // step() moves contracts that are not replaying
    bool yesterdayPositions = true;  // 880002 starts with yesterday's positions
};

// Counters, for the desk's status bar and for tests.
struct SimStats {
    std::uint64_t quoteRounds = 0;
    std::uint64_t ordersSent = 0;
    std::uint64_t ordersRejected = 0;
    std::uint64_t fills = 0;
    std::uint64_t eventsQueued = 0;
    std::uint64_t eventsDelivered = 0;
    std::uint64_t eventsDropped = 0;
    std::size_t pendingEvents = 0;
    std::size_t restingOrders = 0;
};
