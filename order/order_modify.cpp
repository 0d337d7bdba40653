#include "order/order_modify.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "app/helmsman_manage.h"
#include "host/number_text.h"
#include "host/price.h"
#include "order/order_strings.h"

namespace {

constexpr double kVolEps = 1e-9;

tagSymbol symbolOf(const tagBrokerOrder& o) {
    return tagSymbol{static_cast<std::uint16_t>(o.nExchangeID), o.strCode};
}

bool isWorking(std::int32_t status) {
    return status == kOrderQueued || status == kOrderPartFilled;
}

}  // namespace

COrderModify::COrderModify(CHelmsmanManage& manage, const tagBrokerOrder& working)
    : m_manage(manage), m_original(working), m_filledAtStart(working.dFilledVolume) {
    m_handle = m_manage.createHandle(this, order_text::kOrderModifyDialogId);
    m_manage.registerWindow(m_handle);
    m_controls.price = working.dPrice;
    m_controls.volumeText =
        number_text::format(std::max(0.0, working.dVolume - working.dFilledVolume));
    refresh();
}

COrderModify::~COrderModify() {
    m_manage.releaseHandle(m_handle);
}

void COrderModify::refresh() {
    CSubscibeManage* facade = m_manage.facade();
    if (!facade) return;
    const tagSymbol symbol = symbolOf(m_original);
    IModuleFutureTrader::ISpecDetailValue detail;
    if (facade->GetSymbolProperty(symbol, detail) != 0)
        m_decimals = price::decimals(detail.nMinMove, detail.fPriceUnit);
    IModuleFutureTrader::ITickEx t;
    if (facade->GetMarketQuote(symbol, t) != 0) m_tick = t;
    tagOpenedPosition p;
    if (facade->GetPosition(p, m_original.strAccountID, m_original.strBrokerID, symbol) != 0)
        m_position = p;
    else
        m_position = tagOpenedPosition{};
}

std::string COrderModify::positionText() const {
    char text[128];
    std::snprintf(text, sizeof text, order_text::kModifyPositionFormat, m_position.dTotal,
                  m_position.dLong, m_position.dShort);
    return text;
}

std::string COrderModify::sidesText() const {
    char text[128];
    std::snprintf(text, sizeof text, order_text::kModifySidesFormat, order_text::kModifyLongToday,
                  m_position.dLongToday, order_text::kModifyShortToday, m_position.dShortToday);
    return text;
}

void COrderModify::inform(const char* caption, const char* text) const {
    m_manage.prompter().inform(caption, text, PromptIcon::Information);
}

void COrderModify::finish(State state, std::string status) {
    m_state = state;
    m_status = std::move(status);
    if (onChanged) onChanged();
}

COrderModify::Result COrderModify::submit() {
    using namespace order_text;
    if (m_state != State::Editing) return Result::Refused;
    CSubscibeManage* facade = m_manage.facade();
    if (!facade) return Result::Refused;
    refresh();
    const bool buy = m_original.nDirection == kDirBuy;

    // The volume; a closing order against the side it closes.
    double volume = number_text::parseLeading(m_controls.volumeText).value_or(0);
    if (m_original.nOpenClose != kOpen) {
        // A buy closes the short side, a sell the long side.
        const double held = buy ? m_position.dShort : m_position.dLong;
        const char* message = nullptr;
        if (!(volume > kVolEps))
            message = buy ? kMsgCloseShortNotPositive : kMsgCloseLongNotPositive;
        else if (volume > held + kVolEps)
            message = buy ? kMsgCloseShortAbove : kMsgCloseLongAbove;
        if (message) {
            if (!(held > kVolEps)) {
                inform(kCaptionPrompt, kMsgModifyNoPosition);
                return Result::Refused;
            }
            m_controls.volumeText = number_text::format(held);
            if (onChanged) onChanged();
            inform(kCaptionPrompt, message);
            return Result::Corrected;
        }
    } else if (!(volume > kVolEps)) {
        inform(kCaptionPrompt, kMsgVolumeNotPositive);
        return Result::Refused;
    }
    if (std::fabs(volume - std::round(volume)) > kVolEps) {
        inform(kCaptionPrompt, kMsgVolumeNotWhole);
        return Result::Refused;
    }

    // The price, inside the day's band.
    double px = m_controls.price;
    if (!isPricePresent(px)) {
        inform(kCaptionPrompt, kMsgPriceNotPositive);
        return Result::Refused;
    }
    const double lower = m_tick.dLowerLimit;
    const double upper = m_tick.dUpperLimit;
    if (isPricePresent(lower) && isPricePresent(upper) && lower < upper &&
        (px > upper || px < lower)) {
        const bool above = px > upper;
        const double quote = above ? m_tick.dAsk : m_tick.dBid;
        if (!isPricePresent(quote)) {
            inform(kCaptionPromptBlank, kMsgQuoteInvalid);
            return Result::Refused;
        }
        m_controls.price = quote;
        if (onChanged) onChanged();
        inform(kCaptionPrompt, above ? kMsgModifyToAsk : kMsgModifyToBid);
        return Result::Corrected;
    }
    IModuleFutureTrader::ISpecDetailValue detail;
    if (facade->GetSymbolProperty(symbolOf(m_original), detail) != 0)
        px = price::roundForDirection(px, m_original.nDirection, detail.nMinMove,
                                      detail.fPriceUnit);

    // The old order as the host has it now.
    tagBrokerOrder now;
    if (facade->GetOrder(now, m_original.strAccountID, m_original.strBrokerID,
                         m_original.strOrderID) == 0 ||
        !isWorking(now.nStatus)) {
        inform(kCaptionPrompt, kMsgModifyNotWorking);
        return Result::Refused;
    }
    const double remaining = m_original.dVolume - m_filledAtStart;
    if (std::fabs(px - m_original.dPrice) < kPriceEpsilon && std::fabs(volume - remaining) < kVolEps) {
        inform(kCaptionPrompt, kMsgModifyUnchanged);
        return Result::Refused;
    }

    m_pending = m_original;
    m_pending.dPrice = px;
    m_pending.dVolume = volume;
    m_pending.strOrderID.clear();
    m_pending.nStatus = kOrderSending;
    m_pending.dFilledVolume = 0;
    m_pending.strStatusMsg.clear();

    if (facade->DeleteOrder(m_original.strAccountID, m_original.strBrokerID,
                            m_original.strOrderID) == 0) {
        finish(State::Failed, kModifyCancelFailed);
        return Result::Refused;
    }
    finish(State::Cancelling, kModifyCancelling);
    return Result::Cancelling;
}

void COrderModify::poll() {
    if (m_state != State::Cancelling) return;
    CSubscibeManage* facade = m_manage.facade();
    tagBrokerOrder now;
    if (facade && facade->GetOrder(now, m_original.strAccountID, m_original.strBrokerID,
                                   m_original.strOrderID) != 0)
        onOrder(now);
}

std::intptr_t COrderModify::onMessage(std::uint32_t msg, std::uintptr_t wParam,
                                      std::uintptr_t lParam) {
    if (msg != kMsgDataChange || eventKind(static_cast<std::uint32_t>(wParam)) != kEventOrderChanged)
        return 1;
    if (lParam) onOrder(*reinterpret_cast<const tagBrokerOrder*>(lParam));
    return 0;
}

void COrderModify::onOrder(const tagBrokerOrder& order) {
    using namespace order_text;
    if (m_state != State::Cancelling) return;
    if (order.strOrderID != m_original.strOrderID ||
        order.strAccountID != m_original.strAccountID)
        return;
    switch (order.nStatus) {
        case kOrderFilled:
            finish(State::Done, kModifyFilled);
            return;
        case kOrderCancelled:
        case kOrderPartCancelled:
            break;
        case kOrderRejected:
        case kOrderExpired:
            finish(State::Failed, kMsgModifyNotWorking);
            return;
        default:
            return;  // still working or being cancelled
    }
    // Fills that raced the cancel count against the new volume.
    const double filledSince = std::max(0.0, order.dFilledVolume - m_filledAtStart);
    m_pending.dVolume -= filledSince;
    if (!(m_pending.dVolume > kVolEps)) {
        finish(State::Done, kModifyGone);
        return;
    }
    m_pending.tCreateTime = m_manage.clock().now();
    m_replacement = m_pending;
    const int r = m_manage.sendOrder(m_replacement, nullptr, {kOrderModifyCaption});
    m_sent = r != 0 && m_replacement.nStatus != kOrderRejected;
    char text[512];
    if (m_sent) {
        std::snprintf(text, sizeof text, kModifySent,
                      number_text::format(m_replacement.dVolume).c_str(),
                      number_text::format(m_replacement.dPrice, m_decimals).c_str());
        finish(State::Done, text);
    } else {
        std::snprintf(text, sizeof text, kModifySendFailed,
                      m_replacement.strStatusMsg.empty() ? kStatusNotTaken
                                                         : m_replacement.strStatusMsg.c_str());
        finish(State::Failed, text);
    }
}
