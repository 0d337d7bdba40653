#include "order/confirm_dialog.h"

#include <cstdarg>
#include <cstdio>

#include "host/codes.h"
#include "host/number_text.h"
#include "host/price.h"
#include "order/confirm_strings.h"

namespace confirm_fmt {

std::string format(const char* fmt, ...) {
    va_list args;
    va_start(args, fmt);
    va_list copy;
    va_copy(copy, args);
    const int n = std::vsnprintf(nullptr, 0, fmt, copy);
    va_end(copy);
    std::string out;
    if (n > 0) {
        out.resize(static_cast<std::size_t>(n) + 1);
        std::vsnprintf(out.data(), out.size(), fmt, args);
        out.resize(static_cast<std::size_t>(n));
    }
    va_end(args);
    return out;
}

std::string price(double value, int decimals) {
    return number_text::format(value, decimals);
}

int contractDecimals(CSubscibeManage* facade, std::int32_t exchangeID, const std::string& code) {
    if (!facade || code.empty()) return -1;
    tagSymbol symbol{static_cast<std::uint16_t>(exchangeID), code};
    IModuleFutureTrader::ISpecDetailValue detail;
    if (!facade->GetSymbolProperty(symbol, detail)) return -1;
    if (price::stepUnits(detail.nMinMove, detail.fPriceUnit) <= 0) return -1;
    return price::decimals(detail.nMinMove, detail.fPriceUnit);
}

std::string symbolOf(const std::string& code, const std::string& displayText) {
    return code.empty() ? displayText : code;
}

}  // namespace confirm_fmt

using namespace confirm_text;

CConfirmDialog::CConfirmDialog(const tagBrokerOrder& order, const tagAlgoSetting* algo,
                               std::string caller, CSubscibeManage* facade)
    : m_isTrigger(false), m_order(order), m_caller(std::move(caller)) {
    if (algo) m_algo = *algo;
    m_decimals = confirm_fmt::contractDecimals(facade, order.nExchangeID, order.strCode);
}

CConfirmDialog::CConfirmDialog(const tagTriggerOrder& order, std::string caller,
                               CSubscibeManage* facade)
    : m_isTrigger(true), m_trigger(order), m_caller(std::move(caller)) {
    m_decimals = confirm_fmt::contractDecimals(facade, order.nExchangeID, order.strCode);
}

std::int32_t CConfirmDialog::direction() const {
    return m_isTrigger ? m_trigger.nDirection : m_order.nDirection;
}

std::string CConfirmDialog::symbol() const {
    return m_isTrigger ? confirm_fmt::symbolOf(m_trigger.strCode, m_trigger.strSymbolText)
                       : confirm_fmt::symbolOf(m_order.strCode, m_order.strSymbolText);
}

std::string CConfirmDialog::title() const {
    return confirm_fmt::format(kTitle, m_caller.c_str());
}

std::vector<std::string> CConfirmDialog::lines() const {
    // Both kinds of order carry the same pieces; read them once.
    const std::string& account = m_isTrigger ? m_trigger.strAccountID : m_order.strAccountID;
    const std::string symbol = this->symbol();
    const double volume = m_isTrigger ? m_trigger.dVolume : m_order.dVolume;
    const double orderPrice = m_isTrigger ? m_trigger.dPrice : m_order.dPrice;
    const double stop = m_isTrigger ? m_trigger.dStopLoss : m_order.dStopLoss;
    const double profit = m_isTrigger ? m_trigger.dTakeProfit : m_order.dTakeProfit;
    const std::string dirText(codes::directionText(direction()));

    std::vector<std::string> out;
    out.reserve(4);
    out.push_back(
        confirm_fmt::format(m_isTrigger ? kTriggerAccount : kPlainAccount, account.c_str()));

    std::string orderLine = confirm_fmt::format(openClose() == kOpen ? kOpenLine : kCloseLine,
                                                dirText.c_str(), symbol.c_str(), volume);
    if (m_isTrigger && !isPricePresent(orderPrice))
        orderLine += kMarketPrice;
    else
        orderLine += priceText(orderPrice);
    if (m_isTrigger) {
        orderLine += kTriggerPrice;
        orderLine += priceText(m_trigger.dTriggerPrice);
    }
    out.push_back(std::move(orderLine));

    out.push_back(isPricePresent(stop) ? kStopLoss + priceText(stop) : std::string(kStopLossNone));
    out.push_back(isPricePresent(profit) ? kTakeProfit + priceText(profit)
                                         : std::string(kTakeProfitNone));
    return out;
}

std::string CConfirmDialog::text() const {
    std::string out;
    for (const auto& line : lines()) {
        if (!out.empty()) out += '\n';
        out += line;
    }
    return out;
}
