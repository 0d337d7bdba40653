// Records the host's data-and-trading module hands to Helmsman and takes back.
//
// Plain value types, UTF-8 strings in memory (files convert to GBK at their boundary).
// Only the fields Helmsman reads or writes are carried; the byte layout is ours, not the
// host's. Everything here is copyable and safe to keep in contiguous arrays, so a batch of
// orders is simply a std::vector<tagBrokerOrder> (or a pointer and a count).
#pragma once

#include <cstdint>
#include <string>

// Price and quote fields not above this count as absent everywhere in the module.
inline constexpr double kPriceEpsilon = 0.000001;

inline bool isPricePresent(double v) {
    return v > kPriceEpsilon;
}

// An instrument. An empty code means that no symbol is chosen.
struct tagSymbol {
    std::uint16_t wExchangeID = 0;
    std::string strCode;  // at most 8 bytes are significant

    bool empty() const { return strCode.empty(); }
    friend bool operator==(const tagSymbol&, const tagSymbol&) = default;
};

// Order direction.
enum : std::int32_t { kDirBuy = 1, kDirSell = 2 };
// Open/close flag.
enum : std::int32_t { kOpen = 0, kClose = 1, kCloseToday = 2 };
// Speculation/hedge flag.
enum : std::int32_t { kSpeculation = 0, kHedge = 1 };

// Order status codes of a tagBrokerOrder.
enum : std::int32_t {
    kOrderWaitTrigger = 0,
    kOrderQueued = 1,
    kOrderPartFilled = 2,
    kOrderFilled = 3,
    kOrderCancelled = 4,
    kOrderRejected = 5,
    kOrderPartCancelled = 6,
    kOrderCancelling = 7,
    kOrderExpired = 8,
    kOrderSending = 11,
};

// A plain (limit) order. Fields 1-17 in the order the module fills them; the identifier,
// status and fill fields are written back by the host.
struct tagBrokerOrder {
    std::string strAccountID;  // first account key
    std::string strBrokerID;   // second account key
    std::int32_t nExchangeID = 0;
    std::string strSymbolText;  // the text shown in the ticket's symbol box
    std::string strCode;
    std::string strAccountState;   // copied from the ticket's current account state
    std::int32_t nPriceType = 0;   // the ticket sets 0 (limit)
    std::int32_t nDirection = 0;   // kDirBuy / kDirSell
    std::int64_t tCreateTime = 0;  // calendar seconds
    double dVolume = 0;            // lots, > 0
    double dPrice = 0;             // limit price
    double dTriggerPrice = 0;      // further price fields the plain ticket leaves at 0
    double dAvgPrice = 0;
    double dStopLoss = 0;    // 0 = none
    double dTakeProfit = 0;  // 0 = none
    std::int32_t nOpenClose = kOpen;
    std::int32_t nHedge = kSpeculation;
    std::string strRemark;  // producing tool's name, or a robot's order tag

    // Written by the host.
    std::string strOrderID;
    std::int32_t nStatus = kOrderSending;
    double dFilledVolume = 0;
    std::string strStatusMsg;  // the exchange's reason for a reject, if any
    std::int64_t tUpdateTime = 0;
};

// Trigger type of a trigger order.
enum : std::int32_t {
    kTriggerBuyDip = 0,     // 吊买: buy when the price falls to the trigger
    kTriggerSellRise = 1,   // 吊卖: sell when the price rises to the trigger
    kTriggerBuyChase = 2,   // 追买: buy when the price rises to the trigger
    kTriggerSellChase = 3,  // 追卖: sell when the price falls to the trigger
};

// A server-side conditional order. Status codes are the host's own.
struct tagTriggerOrder {
    std::string strAccountID;
    std::string strBrokerID;
    std::int32_t nExchangeID = 0;
    std::string strSymbolText;
    std::string strCode;
    std::int32_t nDirection = 0;
    std::int32_t nOpenClose = kOpen;
    std::int32_t nHedge = kSpeculation;
    double dVolume = 0;
    double dPrice = 0;  // execution price, 0 = at market
    double dTriggerPrice = 0;
    std::int32_t nTriggerType = kTriggerBuyDip;
    double dStopLoss = 0;
    double dTakeProfit = 0;
    std::int64_t tExpiry = 0;  // calendar seconds, 0 = none
    std::int64_t tStart = 0;   // 0 = none; firing time once fired
    std::string strRemark;

    std::string strOrderID;
    std::int32_t nStatus = 0;
    std::int64_t tCreateTime = 0;
};

// Position of one account in one symbol.
struct tagOpenedPosition {
    std::string strAccountID;
    std::string strBrokerID;
    std::int32_t nExchangeID = 0;
    std::string strCode;
    double dTotal = 0;       // long + short
    double dLong = 0;        // total long quantity
    double dShort = 0;       // total short quantity
    double dLongToday = 0;   // today's part of dLong
    double dShortToday = 0;  // today's part of dShort
    double dLongAvgPrice = 0;
    double dShortAvgPrice = 0;
};

// A fill.
struct tagBargainOrder {
    std::string strAccountID;
    std::string strBrokerID;
    std::int32_t nExchangeID = 0;
    std::string strCode;
    std::int32_t nDirection = 0;
    std::int32_t nOpenClose = kOpen;
    double dVolume = 0;
    double dPrice = 0;
    std::string strContractNo;  // the order's contract number (its identifier)
    std::string strBargainNo;   // the fill's own number
    std::int64_t tTime = 0;
    std::string strRemark;  // the order's remark
};

// An account the user is logged on to.
struct tagAccoutInfo {
    std::string strAccountID;
    std::string strBrokerID;
    std::string strAccountName;
    std::int32_t nAccountType = 1;
};

// Funds of one account.
struct tagAccountSummary {
    std::string strAccountID;
    std::string strBrokerID;
    double dPreBalance = 0;
    double dBalance = 0;
    double dAvailable = 0;
    double dMargin = 0;
    double dFrozen = 0;
    double dCloseProfit = 0;
    double dPositionProfit = 0;
    double dCommission = 0;
};

struct tagExchangeInfo {
    std::int32_t nExchangeID = 0;
    std::string strName;
};

struct tagBrokerInfo {
    std::string strBrokerID;
    std::string strName;
};

namespace IModuleFutureTrader {

// Quote snapshot of one symbol. Field order matters to the local trigger engine: both
// pre-open fallbacks precede the last price, the second fallback before the first.
struct ITickEx {
    std::uint16_t wExchangeID = 0;
    std::string strCode;
    std::int64_t tQuoteTime = 0;  // milliseconds of calendar time
    double dPreOpenPrice2 = 0;    // second pre-open fallback
    double dPreOpenPrice1 = 0;    // first pre-open fallback (indicative open)
    double dLast = 0;
    double dBid = 0;
    double dBidVol = 0;
    double dAsk = 0;
    double dAskVol = 0;
    double dVolume = 0;  // cumulative traded volume of the day
    double dPreSettle = 0;
    double dUpperLimit = 0;
    double dLowerLimit = 0;
    double dOpen = 0;
    double dHigh = 0;
    double dLow = 0;
    double dPreClose = 0;
    double dOpenInterest = 0;
    double dTurnover = 0;
};

// Contract details. One tick (one point) = nMinMove * fPriceUnit.
struct ISpecDetailValue {
    float fPriceUnit = 0;       // the tick size
    std::int32_t nMinMove = 0;  // the point factor
    double dMultiplier = 0;
    double dMarginRate = 0;  // fraction of contract value held as margin
    bool bTradable = true;   // false: the host refuses orders in this symbol
    std::string strName;     // display name of the instrument
};

}  // namespace IModuleFutureTrader
