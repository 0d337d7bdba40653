// CStopTrigger: the close-position trigger order ("平仓触发单", dialog 25045) without widgets.
// Opened from one position and one side of it (1 long, 2 short); it sends a server trigger
// order that closes that side: a sell for a long position, a buy for a short one.
//
// Sending checks and builds in this order; a refusal is announced and sends nothing:
//   1. the account of the position is still logged on ("请先登录交易帐户！"), the host still
//      trades the symbol ("当前商品不能进行交易！");
//   2. a quote can be read that carries a price ("当前商品行情无效或现价为0，不能进行触发单交易！");
//   3. a volume above 0 ("输入错误，交易数量必须大于0！") and no more than the side holds;
//   4. a trigger price above 0 ("触发价无效，请重新输入价格！", caption "提示 ");
//   5. the reference price: the last price, else the previous settlement, else
//      "当前商品现价为0并且昨结算价为0，不能进行触发单交易！"; the trigger type follows from
//      the trigger price against it (autoType);
//   6. the expiry: none, or one later than today 23:59:59, asks the next-day question; No
//      cuts it to today 23:59:59;
//   7. local: asks whether to hand it to the local trigger centre (which keeps it at most
//      until today 23:59:59); No sends nothing;
//   8. otherwise submitted with bShowTriggerOrderConfirm as the confirmation flag and "舵手"
//      as the caller name, then SendTriggerOrder.
// A closing order carries no stop-loss or take-profit, so the local variant's refusal of
// them cannot arise here.
//
// Owned by its window. Thread contract: UI thread only.
#pragma once

#include <cstdint>
#include <string>

#include "host/records.h"

class CHelmsmanManage;

class CStopTrigger {
public:
    struct Controls {
        double triggerPrice = 0;
        double price = 0;  // execution price; 0 = at market when triggered
        std::string volumeText;
        std::int32_t openClose = kClose;  // kClose or kCloseToday
        bool hasExpiry = true;            // the expiry box holds a time
        std::int64_t expiry = 0;          // calendar seconds
        bool local = false;               // hand to the local trigger centre
    };

    enum class SendResult { Refused, Cancelled, Sent, Failed };

    // `side` 1 protects the long side, anything else the short side; `code` names the
    // instrument when the position block does not.
    CStopTrigger(CHelmsmanManage& manage, const tagOpenedPosition& position, int side,
                 const std::string& code);

    Controls& controls() { return m_controls; }
    const Controls& controls() const { return m_controls; }

    bool isLong() const { return m_long; }
    const char* sideText() const;
    // "%s[%s@%s]": instrument name (the code when the host has none), code, exchange name.
    const std::string& symbolText() const { return m_symbolText; }
    const tagSymbol& symbol() const { return m_symbol; }
    const tagOpenedPosition& position() const { return m_position; }
    // The side's quantity as last read.
    double sideVolume() const;
    // Direction of the closing order.
    std::int32_t direction() const { return m_long ? kDirSell : kDirBuy; }
    int priceDecimals() const { return m_decimals; }

    // Reads quote and position afresh; true when the quote carries a price.
    bool refresh();
    const IModuleFutureTrader::ITickEx& tick() const { return m_tick; }
    bool quoteValid() const { return m_quoteValid; }

    // The trigger type a trigger price gives against the reference price; the equal case
    // is the 吊 type of either direction.
    static std::int32_t autoType(std::int32_t direction, double triggerPrice, double reference);
    // The last price when present, else the previous settlement, else 0.
    static double referencePrice(const IModuleFutureTrader::ITickEx& tick);

    SendResult send();
    // The order last built by send() (what was sent, or what the confirmation showed).
    const tagTriggerOrder& lastOrder() const { return m_last; }

private:
    void inform(const char* caption, const char* text) const;

    CHelmsmanManage& m_manage;
    tagOpenedPosition m_position;
    bool m_long;
    tagSymbol m_symbol;
    std::string m_symbolText;
    IModuleFutureTrader::ISpecDetailValue m_detail;
    int m_decimals = 2;
    IModuleFutureTrader::ITickEx m_tick;
    bool m_quoteValid = false;
    Controls m_controls;
    tagTriggerOrder m_last;
};
