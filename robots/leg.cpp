#include "robots/leg.h"

#include <cstdio>

#include "host/window.h"
#include "robots/order_tag.h"
#include "robots/robot_strings.h"

namespace t = robot_text;

namespace {

// The failure messages of one machine.
struct LegMessages {
    const char* sendFailed;
    const char* externalCancel;
    const char* cancelFailed;  // nullptr: a cancelling leg only refreshes on the unexpected
    const char* aRejected;
    const char* aFailed;
};

const LegMessages& messagesOf(LegMachine m) {
    static const LegMessages singleOpen{t::kOpenSendFailed, t::kExternalCancel, t::kCancelFailed,
                                        nullptr, nullptr};
    static const LegMessages singleClose{t::kCloseSendFailed, t::kExternalCancel, nullptr, nullptr,
                                         nullptr};
    static const LegMessages pairOpen{t::kGridOpenSendFailed, t::kGridOpenExternalCancel,
                                      t::kGridOpenCancelFailed, t::kGridOpenARejected,
                                      t::kGridOpenAFailed};
    static const LegMessages pairClose{t::kGridCloseSendFailed, t::kGridCloseExternalCancel,
                                       t::kGridCloseCancelFailed, t::kGridCloseARejected,
                                       t::kGridCloseAFailed};
    switch (m) {
        case LegMachine::SingleOpen:
        case LegMachine::SpreadLeg:
            return singleOpen;
        case LegMachine::SingleClose:
            return singleClose;
        case LegMachine::PairOpen:
            return pairOpen;
        case LegMachine::PairClose:
            return pairClose;
    }
    return singleOpen;
}

}  // namespace

bool CLeg::canSend() const {
    return m_state == kLegIdle || (!single() && m_state == 4);
}

bool CLeg::send(tagBrokerOrder& order, std::string tag, const OrderSubmit& submit) {
    if (!canSend() || tag.empty() || !submit) return false;
    m_state = m_state == kLegIdle ? base() + 1 : 5;
    m_tag = std::move(tag);
    m_orderId.clear();
    m_price = order.dPrice;
    m_direction = order.nDirection;
    m_account = order.strAccountID;
    m_broker = order.strBrokerID;
    m_lastStatus = -1;
    m_lastHeard = m_clock->tickCount();
    order.strRemark = m_tag;
    const int result = submit(order);
    if (!order.strOrderID.empty()) m_orderId = order.strOrderID;
    // A refusal written back at once would otherwise wait for a notification the host may
    // never send (an account that is not logged on books nothing).
    if (result == 0) {
        tagBrokerOrder refused = order;
        if (refused.nStatus != kOrderRejected && refused.nStatus != kOrderExpired)
            refused.nStatus = kOrderRejected;
        onOrder(refused);
    }
    return true;
}

bool CLeg::cancel(CSubscibeManage& host) {
    const std::int32_t queued = base() + 2;
    if (m_state != queued || m_orderId.empty()) return false;
    m_state = queued + 1;
    m_lastHeard = m_clock->tickCount();
    host.DeleteOrder(m_account, m_broker, m_orderId);
    return true;
}

bool CLeg::finishCycle() {
    const bool final = single() ? m_state == base() + 4 : m_state == 6;
    if (!final) return false;
    m_state = kLegIdle;
    m_tag.clear();
    return true;
}

bool CLeg::intervene() {
    if (m_state != kLegParked) return false;
    m_state = kLegIdle;
    m_tag.clear();
    return true;
}

bool CLeg::halt() {
    if (m_state != kLegIdle) return false;
    m_state = kLegParked;
    return true;
}

LegStep CLeg::onOrder(const tagBrokerOrder& record) {
    LegStep step{m_state, m_state, false};
    if (!record.strOrderID.empty()) m_orderId = record.strOrderID;
    if (record.dPrice >= kPriceEpsilon) m_price = record.dPrice;
    m_lastStatus = record.nStatus;
    m_lastHeard = m_clock->tickCount();
    const std::string tag = m_tag;
    const std::int32_t next = single() ? stepSingle(record.nStatus) : stepPair(record.nStatus);
    // A message box runs the event loop: a newer notification taken meanwhile (and what the
    // robot sent on it) stands over the status the box was about.
    if (m_state == step.from && m_tag == tag) m_state = next;
    step.to = m_state;
    step.parked = m_state == kLegParked && step.from != kLegParked;
    return step;
}

std::int32_t CLeg::park(const char* format, std::int32_t status) {
    char text[256];
    std::snprintf(text, sizeof text, format, status);
    m_prompter->inform(t::kPrompt, text, PromptIcon::Exclamation);
    return kLegParked;
}

// Statuses the host reports before the exchange has the order (11) or while it fills in
// parts (2) say nothing new about where a leg stands: a sending order is accepted once it
// is queued or partly filled, and a queued one stays queued.
std::int32_t CLeg::stepSingle(std::int32_t status) {
    const LegMessages& msg = messagesOf(m_machine);
    const std::int32_t s = m_state, b = base();
    if (m_machine == LegMachine::SpreadLeg && status == kOrderPartCancelled && s >= 1 && s <= 3)
        return kLegIdle;
    if (s == b + 1) {
        switch (status) {
            case kOrderQueued:
            case kOrderPartFilled:
                return b + 2;
            case kOrderFilled:
                return b + 4;
            case kOrderCancelled:
            case kOrderRejected:
            case kOrderExpired:
                return kLegIdle;
            case kOrderSending:
                return s;
            default:
                return park(msg.sendFailed, status);
        }
    }
    if (s == b + 2) {
        switch (status) {
            case kOrderFilled:
                return b + 4;
            case kOrderCancelled:
                return kLegIdle;
            case kOrderQueued:
            case kOrderPartFilled:
            case kOrderSending:
                return s;
            default:
                return park(msg.externalCancel, status);
        }
    }
    if (s == b + 3) {
        switch (status) {
            case kOrderCancelled:
                return kLegIdle;
            case kOrderFilled:
                return b + 4;  // the fill won the race against the cancel
            case kOrderQueued:
            case kOrderPartFilled:
            case kOrderCancelling:
            case kOrderSending:
                return s;
            default:
                return msg.cancelFailed ? park(msg.cancelFailed, status) : s;
        }
    }
    return s;
}

std::int32_t CLeg::stepPair(std::int32_t status) {
    const LegMessages& msg = messagesOf(m_machine);
    if (m_state >= 1 && m_state <= 3) return stepSingle(status);
    if (m_state != 5) return m_state;
    switch (status) {
        case kOrderQueued:
        case kOrderPartFilled:
        case kOrderFilled:
            return 6;
        case kOrderSending:
            return 5;
        case kOrderRejected:
        case kOrderExpired:
            return park(msg.aRejected, status);
        default:
            return park(msg.aFailed, status);
    }
}

bool CLeg::waiting() const {
    const std::int32_t b = base();
    if (single()) return m_state >= b + 1 && m_state <= b + 3;
    return (m_state >= 1 && m_state <= 3) || m_state == 5;
}

bool CLeg::overdue(std::uint64_t quietMs) const {
    return waiting() && m_clock->tickCount() - m_lastHeard >= quietMs;
}

LegStep CLeg::reconcile(CSubscibeManage& host, tagBrokerOrder* seen) {
    LegStep none{m_state, m_state, false};
    if (!waiting() || m_orderId.empty()) return none;
    tagBrokerOrder record;
    if (host.GetOrder(record, m_account, m_broker, m_orderId) != 1) return none;
    m_lastHeard = m_clock->tickCount();
    if (record.nStatus == m_lastStatus || !tagMatches(record.strRemark, m_tag)) return none;
    if (seen) *seen = record;
    return onOrder(record);
}

int routeOrderNotification(bool stopping, std::uint32_t eventCode, const tagBrokerOrder* record,
                           std::span<CLeg* const> legs, CLeg** matched) {
    if (matched) *matched = nullptr;
    if (stopping) return -1;
    if (eventKind(eventCode) != kEventOrderChanged) return 1;
    if (!record || record->strRemark.empty()) return -1;
    for (CLeg* leg : legs) {
        if (leg && tagMatches(record->strRemark, leg->tag())) {
            leg->onOrder(*record);
            if (matched) *matched = leg;
            break;
        }
    }
    return 1;
}
