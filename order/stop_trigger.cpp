#include "order/stop_trigger.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <vector>

#include "app/helmsman_manage.h"
#include "host/number_text.h"
#include "host/price.h"
#include "order/order_strings.h"

namespace {

bool hasAnyPrice(const IModuleFutureTrader::ITickEx& t) {
    return isPricePresent(t.dLast) || isPricePresent(t.dBid) || isPricePresent(t.dAsk) ||
           isPricePresent(t.dPreSettle);
}

}  // namespace

CStopTrigger::CStopTrigger(CHelmsmanManage& manage, const tagOpenedPosition& position, int side,
                           const std::string& code)
    : m_manage(manage), m_position(position), m_long(side == 1) {
    if (m_position.strCode.empty()) m_position.strCode = code;
    m_symbol.wExchangeID = static_cast<std::uint16_t>(m_position.nExchangeID);
    m_symbol.strCode = m_position.strCode;

    std::string exchangeName = std::to_string(m_position.nExchangeID);
    if (CSubscibeManage* facade = m_manage.facade()) {
        if (facade->GetSymbolProperty(m_symbol, m_detail) != 0)
            m_decimals = price::decimals(m_detail.nMinMove, m_detail.fPriceUnit);
        std::vector<tagExchangeInfo> exchanges;
        facade->GetAllExchanges(exchanges);
        for (const auto& e : exchanges)
            if (e.nExchangeID == m_position.nExchangeID && !e.strName.empty())
                exchangeName = e.strName;
    }
    const std::string& name = m_detail.strName.empty() ? m_symbol.strCode : m_detail.strName;
    char text[256];
    std::snprintf(text, sizeof text, order_text::kStopTriggerSymbolFormat, name.c_str(),
                  m_symbol.strCode.c_str(), exchangeName.c_str());
    m_symbolText = text;

    refresh();
    // A new window offers to close the whole side, at the last price, valid for today.
    m_controls.volumeText = number_text::format(sideVolume());
    m_controls.triggerPrice = referencePrice(m_tick);
    m_controls.expiry = endOfDay(m_manage.clock().now());
}

const char* CStopTrigger::sideText() const {
    return m_long ? order_text::kSideLong : order_text::kSideShort;
}

double CStopTrigger::sideVolume() const {
    return m_long ? m_position.dLong : m_position.dShort;
}

bool CStopTrigger::refresh() {
    CSubscibeManage* facade = m_manage.facade();
    m_quoteValid = false;
    if (!facade) return false;
    IModuleFutureTrader::ITickEx t;
    if (facade->GetMarketQuote(m_symbol, t) != 0) {
        m_tick = t;
        m_quoteValid = hasAnyPrice(t);
    }
    tagOpenedPosition p;
    if (facade->GetPosition(p, m_position.strAccountID, m_position.strBrokerID, m_symbol) != 0) {
        m_position.dTotal = p.dTotal;
        m_position.dLong = p.dLong;
        m_position.dShort = p.dShort;
        m_position.dLongToday = p.dLongToday;
        m_position.dShortToday = p.dShortToday;
    }
    return m_quoteValid;
}

std::int32_t CStopTrigger::autoType(std::int32_t direction, double triggerPrice,
                                    double reference) {
    if (direction == kDirBuy) return triggerPrice <= reference ? kTriggerBuyDip : kTriggerBuyChase;
    return triggerPrice < reference ? kTriggerSellChase : kTriggerSellRise;
}

double CStopTrigger::referencePrice(const IModuleFutureTrader::ITickEx& tick) {
    if (isPricePresent(tick.dLast)) return tick.dLast;
    if (isPricePresent(tick.dPreSettle)) return tick.dPreSettle;
    return 0;
}

void CStopTrigger::inform(const char* caption, const char* text) const {
    m_manage.prompter().inform(caption, text, PromptIcon::Information);
}

CStopTrigger::SendResult CStopTrigger::send() {
    using namespace order_text;
    const Controls& c = m_controls;
    CSubscibeManage* facade = m_manage.facade();

    // 1. Account and symbol.
    std::vector<tagAccoutInfo> accounts;
    if (facade) facade->GetAvailableAccounts(accounts);
    const auto account = std::find_if(accounts.begin(), accounts.end(), [&](const auto& a) {
        return a.strAccountID == m_position.strAccountID &&
               a.strBrokerID == m_position.strBrokerID;
    });
    if (account == accounts.end()) {
        inform(kCaptionPrompt, kMsgLogin);
        return SendResult::Refused;
    }
    IModuleFutureTrader::ISpecDetailValue detail;
    if (facade->GetSymbolProperty(m_symbol, detail) == 0 || !detail.bTradable) {
        inform(kCaptionPrompt, kMsgSymbolNotTradable);
        return SendResult::Refused;
    }

    // 2. A quote, read afresh with the position.
    if (!refresh()) {
        inform(kCaptionPrompt, kMsgStopTriggerQuoteInvalid);
        return SendResult::Refused;
    }

    // 3. Whole lots of what the side holds.
    const double volume = number_text::parseLeading(c.volumeText).value_or(0);
    if (!(volume > 0)) {
        inform(kCaptionPrompt, kMsgVolumeNotPositive);
        return SendResult::Refused;
    }
    if (std::fabs(volume - std::round(volume)) > 1e-9) {
        inform(kCaptionPrompt, kMsgVolumeNotWhole);
        return SendResult::Refused;
    }
    const double held = c.openClose == kCloseToday
                            ? (m_long ? m_position.dLongToday : m_position.dShortToday)
                            : sideVolume();
    if (volume > held + 1e-9) {
        char text[256];
        std::snprintf(text, sizeof text, kMsgStopTriggerExceeds, volume, held);
        inform(kCaptionPrompt, text);
        return SendResult::Refused;
    }

    // 4. The trigger price.
    if (!isPricePresent(c.triggerPrice)) {
        inform(kCaptionPromptBlank, kMsgTriggerPriceInvalid);
        return SendResult::Refused;
    }

    // 5. Reference price and type.
    const double reference = referencePrice(m_tick);
    if (!isPricePresent(reference)) {
        inform(kCaptionPrompt, kMsgNoReferencePrice);
        return SendResult::Refused;
    }
    tagTriggerOrder order;
    order.strAccountID = m_position.strAccountID;
    order.strBrokerID = m_position.strBrokerID;
    order.nExchangeID = m_position.nExchangeID;
    order.strSymbolText = m_symbol.strCode;
    order.strCode = m_symbol.strCode;
    order.nDirection = direction();
    order.nOpenClose = c.openClose;
    order.nHedge = kSpeculation;
    order.dVolume = volume;
    order.dTriggerPrice = price::roundForDirection(c.triggerPrice, order.nDirection,
                                                   detail.nMinMove, detail.fPriceUnit);
    order.dPrice = isPricePresent(c.price)
                       ? price::roundForDirection(c.price, order.nDirection, detail.nMinMove,
                                                  detail.fPriceUnit)
                       : 0.0;
    order.nTriggerType = autoType(order.nDirection, order.dTriggerPrice, reference);
    order.tCreateTime = m_manage.clock().now();
    order.strRemark = kCallerName;

    // 6. Expiry.
    const std::int64_t endOfToday = endOfDay(order.tCreateTime);
    order.tExpiry = c.hasExpiry ? std::max<std::int64_t>(c.expiry, 0) : 0;
    if (order.tExpiry == 0 || order.tExpiry > endOfToday) {
        if (!m_manage.prompter().ask(kCaptionPrompt, kMsgNextDayExpiry, PromptIcon::Question))
            order.tExpiry = endOfToday;
    }
    m_last = order;

    // 7. Local.
    if (c.local) {
        if (!m_manage.prompter().ask(kCaptionConfirm, kMsgLocalTriggerAsk, PromptIcon::Question))
            return SendResult::Cancelled;
        if (order.tExpiry == 0 || order.tExpiry > endOfToday) order.tExpiry = endOfToday;
        m_last = order;
        if (m_manage.addLocalTrigger(order, nullptr)) return SendResult::Sent;
        inform(kCaptionPrompt, kMsgLocalTriggerUnavailable);
        return SendResult::Failed;
    }

    // 8. Server trigger.
    if (m_manage.settings().bShowTriggerOrderConfirm != 0 &&
        !m_manage.ui().confirmTriggerOrder(order, kCallerName))
        return SendResult::Cancelled;
    const int r = facade->SendTriggerOrder(order);
    m_last = order;
    return r != 0 ? SendResult::Sent : SendResult::Failed;
}
