// CMasterDialog, its orders: what can still be closed (the position less what working
// closing orders hold) and the status line that follows the orders this ticket sent.
#include <algorithm>
#include <cstdio>

#include "app/helmsman_manage.h"
#include "host/codes.h"
#include "order/master_dialog.h"
#include "order/order_strings.h"

namespace {

// Orders followed for the status line; older ones are forgotten first.
constexpr std::size_t kMaxFollowed = 64;

bool endedBadly(std::int32_t status) {
    return status == kOrderCancelled || status == kOrderRejected ||
           status == kOrderPartCancelled || status == kOrderExpired;
}

bool ended(std::int32_t status) { return endedBadly(status) || status == kOrderFilled; }

}  // namespace

// ---- Closable ----------------------------------------------------------------------------

void CMasterDialog::readClosable() {
    TicketClosable c;
    if (m_hasPosition) {
        const tagOpenedPosition& p = m_position;
        c.longToday = std::max(0.0, p.dLongToday);
        c.longYesterday = std::max(0.0, p.dLong - c.longToday);
        c.shortToday = std::max(0.0, p.dShortToday);
        c.shortYesterday = std::max(0.0, p.dShort - c.shortToday);
    }
    // Working closing orders already hold part of it, the way the exchange books them.
    const tagAccoutInfo* a = account();
    CSubscibeManage* facade = m_manage.facade();
    if (m_hasPosition && a && facade) {
        m_workingScratch.clear();
        facade->GetOpenOrders(m_workingScratch, a->strAccountID, a->strBrokerID, m_symbol);
        for (const tagBrokerOrder& o : m_workingScratch) {
            if (o.nOpenClose == kOpen || o.strCode != m_symbol.strCode) continue;
            const double left = std::max(0.0, o.dVolume - o.dFilledVolume);
            double& yd = o.nDirection == kDirSell ? c.longYesterday : c.shortYesterday;
            double& td = o.nDirection == kDirSell ? c.longToday : c.shortToday;
            double fromYd = 0, fromTd = 0;
            if (o.nOpenClose == kCloseToday)
                fromTd = left;
            else if (closesYesterdayOnly())
                fromYd = left;
            else {
                fromYd = std::min(left, yd);
                fromTd = left - fromYd;
            }
            yd = std::max(0.0, yd - fromYd);
            td = std::max(0.0, td - fromTd);
        }
    }
    m_closable = c;
}

void CMasterDialog::formatClosable() {
    const TicketClosable& c = m_closable;
    std::snprintf(m_closableText.data(), m_closableText.size(), order_text::kClosableFormat,
                  c.longYesterday, c.longToday, c.shortYesterday, c.shortToday);
}

std::string CMasterDialog::closableToolTip() const {
    const TicketClosable& c = m_closable;
    char buf[512];
    std::snprintf(buf, sizeof buf, order_text::kClosableTip, c.longYesterday, c.longToday,
                  c.shortYesterday, c.shortToday);
    std::string tip = buf;
    if (closesYesterdayOnly()) tip += order_text::kClosableTipYesterdayOnly;
    return tip;
}

// ---- Status line -------------------------------------------------------------------------

void CMasterDialog::setStatus(const tagBrokerOrder& o, std::string_view status, bool error) {
    const std::string direction(codes::directionText(o.nDirection));
    const std::string openClose(codes::openCloseText(o.nOpenClose));
    const std::string volume = CNormalOrder::formatNumber(o.dVolume);
    const std::string px = CNormalOrder::formatNumber(o.dPrice);
    char buf[512];
    std::snprintf(buf, sizeof buf, order_text::kStatusFormat, std::string(status).c_str(),
                  direction.c_str(), openClose.c_str(), o.strCode.c_str(), volume.c_str(),
                  px.c_str());
    std::string line = buf;
    if (error && !o.strStatusMsg.empty()) {
        std::snprintf(buf, sizeof buf, order_text::kStatusReason, o.strStatusMsg.c_str());
        line += buf;
    }
    m_statusText = std::move(line);
    m_statusError = error;
    notify(kTicketStatus);
}

void CMasterDialog::reportSubmitted(const tagBrokerOrder& order) {
    if (order.nStatus == kOrderRejected) {
        setStatus(order, codes::orderStatusText(kOrderRejected), true);
        return;
    }
    if (order.strOrderID.empty()) {
        setStatus(order, order_text::kStatusSent, false);
        return;
    }
    if (m_followed.size() >= kMaxFollowed) m_followed.erase(m_followed.begin());
    m_followed.emplace_back(order.strAccountID, order.strOrderID);
    setStatus(order, codes::orderStatusText(order.nStatus), false);
}

void CMasterDialog::reportNotSent(const tagBrokerOrder& order) {
    tagBrokerOrder o = order;
    if (o.strStatusMsg.empty()) o.strStatusMsg = order_text::kStatusNotTaken;
    setStatus(o, order_text::kStatusNotSent, true);
}

void CMasterDialog::onOrderChanged(const tagBrokerOrder& order) {
    if (order.strOrderID.empty()) return;
    // Identifiers are the host's, unique per account.
    const auto it = std::find(m_followed.begin(), m_followed.end(),
                              std::pair{order.strAccountID, order.strOrderID});
    if (it == m_followed.end()) return;
    if (ended(order.nStatus)) m_followed.erase(it);
    setStatus(order, codes::orderStatusText(order.nStatus), endedBadly(order.nStatus));
    refreshPosition();
}
