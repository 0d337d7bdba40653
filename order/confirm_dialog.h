// CConfirmDialog: the single-order confirmation. It holds a copy of one order — a plain
// order with the caller's algorithm threshold block (or none), or a server trigger order —
// the flag telling which, and the caller name, and builds the title and the text block the
// trader reads before the order leaves.
//
// The confirmation decides nothing and sends nothing: the window shows title() and lines(),
// and whoever asked for the confirmation (the manager) sends when the user accepts.
//
// Text block, one piece per line so that each number stands on its own:
//   普通单,帐户:8001
//   开仓买入IF2406合约2张,价格:3001.4          (trigger: ...,价格:3001.4,触发价:3000.0)
//   止损价:2990.0        or  止损价:无
//   获利价:无            or  获利价:3020.0
// The symbol is the contract code (what the exchange trades), falling back to the display
// text when an order carries no code. Prices use the contract's decimals when its properties
// are known (price::decimals), otherwise up to four decimals with trailing zeros dropped, so
// no digit of the price is ever hidden.
//
// Owned by the window that shows it (or a test); UI thread only.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "algo/algo_setting.h"
#include "host/records.h"
#include "host/subscibe_manage.h"

namespace confirm_fmt {

// printf into a std::string.
std::string format(const char* fmt, ...)
#if defined(__GNUC__)
    __attribute__((format(printf, 1, 2)))
#endif
    ;

// A price with `decimals` places; a negative count means "unknown": up to four places with
// trailing zeros (and a trailing point) removed. Locale-free (number_text::format).
std::string price(double value, int decimals);

// The contract's price decimals read through the facade, or -1 when the facade or the
// contract's properties are not available.
int contractDecimals(CSubscibeManage* facade, std::int32_t exchangeID, const std::string& code);

// The symbol as the confirmations name it: the code, else the display text.
std::string symbolOf(const std::string& code, const std::string& displayText);

}  // namespace confirm_fmt

class CConfirmDialog {
public:
    // A plain order. `algo` may be null; the block is copied. `facade` (may be null) is asked
    // once for the contract's decimals.
    CConfirmDialog(const tagBrokerOrder& order, const tagAlgoSetting* algo, std::string caller,
                   CSubscibeManage* facade);
    // A server trigger order.
    CConfirmDialog(const tagTriggerOrder& order, std::string caller, CSubscibeManage* facade);

    bool isTrigger() const { return m_isTrigger; }
    const tagBrokerOrder& order() const { return m_order; }
    const tagTriggerOrder& triggerOrder() const { return m_trigger; }
    const tagAlgoSetting* algoSetting() const { return m_algo ? &*m_algo : nullptr; }
    const std::string& caller() const { return m_caller; }
    // kDirBuy / kDirSell of whichever order is held (the window colours by it).
    std::int32_t direction() const;
    // The open/close flag and the symbol as the text block names them.
    std::int32_t openClose() const {
        return m_isTrigger ? m_trigger.nOpenClose : m_order.nOpenClose;
    }
    std::string symbol() const;
    // Decimals the prices are shown with (-1: contract unknown).
    int decimals() const { return m_decimals; }

    // "委托确认[<caller>]".
    std::string title() const;
    // The four lines of the text block, in order.
    std::vector<std::string> lines() const;
    // The lines joined by "\n".
    std::string text() const;

private:
    std::string priceText(double p) const { return confirm_fmt::price(p, m_decimals); }

    bool m_isTrigger;
    tagBrokerOrder m_order;
    tagTriggerOrder m_trigger;
    std::optional<tagAlgoSetting> m_algo;
    std::string m_caller;
    int m_decimals = -1;
};
