// The auto spread's rounds: sending each leg's orders, what a notification means for the
// round, withdrawing and chasing resting orders, refusals, and booking a finished round.
#include <algorithm>
#include <cmath>
#include <cstdio>

#include "app/auto_kp.h"
#include "app/helmsman_manage.h"
#include "robots/auto_spread.h"
#include "robots/auto_spread_strings.h"

namespace t = auto_spread_text;

namespace {

// Lots are whole numbers held in doubles: compare with room for rounding.
constexpr double kLotEpsilon = 1e-9;
// After a refusal a leg waits before it sends again: a second, doubled with every further
// refusal in a row, up to a minute.
constexpr std::int64_t kRetryMs = 1000;
constexpr std::int64_t kRetryMaxMs = 60000;

const char* const kLegTags[] = {"sa", "sb", "sc"};
const char* const kLegNames[] = {"A", "B", "C"};

double fillPrice(const tagBrokerOrder& r) {
    return isPricePresent(r.dAvgPrice) ? r.dAvgPrice : r.dPrice;
}

}  // namespace

// ---- Starting a round and stepping it ------------------------------------------------------

void CAutoSpread::startRound(const AutoSpreadPlan& p) {
    m_round = Round{p.action, p.units, p.level, false, m_manager.clock().nowMs()};
    for (int i = 0; i < kLegs; ++i) {
        Leg& l = m_legs[i];
        l.target = i < legCount() ? static_cast<double>(p.units) * m_settings.nSpreadLots[i] : 0;
        l.filled = l.cost = l.working = l.workingPrice = 0;
    }
    sendLeg(0, m_legs[0].target, m_settings.nOrderOffset, m_settings.bConfirmOrder != 0);
    // Nothing went out (no price on A, or the confirmation was declined): no round.
    if (m_legs[0].leg.state() == kLegIdle && roundOpen() && !m_round.hedging) endFirst();
}

void CAutoSpread::stepFirst() {
    Leg& a = m_legs[0];
    // A released from a park has ended: its round completes what it filled, or is over.
    if (a.leg.state() == kLegIdle) {
        endFirst();
        return;
    }
    CSubscibeManage* host = m_manager.facade();
    if (!host || a.leg.state() != 2) return;
    const std::int64_t waited = m_manager.clock().nowMs() - a.sentMs;
    if (!m_running || waited >= m_settings.nStayMilliSeconds ||
        !autoSpreadLineHolds(m_round.action, m_round.level, m_prices)) {
        a.leg.cancel(*host);
        notify(kAutoSpreadChangeState);
    }
}

void CAutoSpread::stepHedge() {
    CSubscibeManage* host = m_manager.facade();
    const std::int64_t now = m_manager.clock().nowMs();
    bool done = true;
    for (int i = 0; i < legCount(); ++i) {
        Leg& l = m_legs[i];
        const double rest = l.target - l.filled;
        const std::int32_t st = l.leg.state();
        if (rest > kLotEpsilon || st != kLegIdle) done = false;
        if (st == kLegIdle) {
            if (rest > kLotEpsilon && now >= l.retryAtMs && l.refusals < kMaxRefusals)
                sendLeg(i, rest, m_settings.nUnstayedOffset, false);
        } else if (st == 2 && host && now - l.sentMs >= m_settings.nStayMilliSeconds) {
            // Chased: cancelled, and what is left sent again at the new best once confirmed.
            l.leg.cancel(*host);
            notify(kAutoSpreadChangeState);
        }
    }
    if (done) bookRound();
}

// ---- Orders ----------------------------------------------------------------------------------

std::int32_t CAutoSpread::legDirection(int i) const {
    const bool buysSpread = spreadSide(m_round.action) > 0;
    // Buying the spread buys A and sells B and C.
    return (i == 0) == buysSpread ? kDirBuy : kDirSell;
}

std::int32_t CAutoSpread::openCloseFlag(int i, const tagBrokerOrder& o) const {
    bool opens = isEntry(m_round.action);
    // A roll closes A and opens B on entry, and the reverse on exit.
    if (m_settings.bChange) opens = (i == 0) != opens;
    return opens ? kOpen : robotCloseFlag(m_manager.facade(), o);
}

void CAutoSpread::sendLeg(int i, double lots, std::int32_t offset, bool confirm) {
    Leg& l = m_legs[i];
    const std::int32_t direction = legDirection(i);
    const double price = spreadLegOrderPrice(direction, l.tick, offset, l.step);
    // The price is made from the opposite best: without one there is no price to trade at
    // (an offset alone would make one near zero, raised to the day's limit).
    const double best = direction == kDirBuy ? l.tick.dAsk : l.tick.dBid;
    if (!l.valid || !isPricePresent(best) || !isPricePresent(price) || lots < kLotEpsilon)
        return;  // the next quote tries
    const tagTemplateAccount& account = accountOf(i);
    tagBrokerOrder o;
    o.strAccountID = account.strAccountID;
    o.strBrokerID = account.strBrokerID;
    o.nExchangeID = l.symbol.wExchangeID;
    o.strSymbolText = l.symbol.strCode;
    o.strCode = l.symbol.strCode;
    o.nPriceType = 0;
    o.nDirection = direction;
    o.tCreateTime = m_manager.clock().now();
    o.dVolume = lots;
    o.dPrice = price;
    o.nHedge = kSpeculation;
    o.nOpenClose = openCloseFlag(i, o);
    if (CSubscibeManage* host = m_manager.facade(); host && m_manager.settings().bAutoKP)
        applyAutoOpenClose(*host, o, m_manager.settings());

    int result = 0;
    bool declined = false;
    const OrderSubmit submit = [&](tagBrokerOrder& order) {
        result = m_manager.submitOrder(order, confirm, t::kToolName, nullptr,
                                       CHelmsmanManage::Recorder::Caller);
        declined = confirm && result == 0;
        return result;
    };
    l.working = l.workingPrice = 0;
    std::string tag = m_tags.make(kLegTags[i]);
    if (!l.leg.send(o, tag, submit)) return;
    // The wait runs from when the order left, not from before its confirmation.
    l.sentMs = m_manager.clock().nowMs();

    if (declined) {
        m_running = false;  // the trader said no: the robot stops asking
    } else {
        char reason[160];
        const char* action = spreadActionText(m_round.action);
        if (!m_round.hedging)
            std::snprintf(reason, sizeof reason, t::kReasonFirst, action, m_round.units);
        else
            std::snprintf(reason, sizeof reason, t::kReasonHedge, action, m_round.units,
                          kLegNames[i]);
        JournalEntry entry;
        entry.timeMs = m_manager.clock().nowMs();
        entry.tool = t::kToolName;
        entry.window = caption();
        entry.tag = std::move(tag);
        entry.order = o;
        entry.result = result;
        entry.reason = reason;
        entry.figures = {{"position", static_cast<double>(m_position)},
                         {"units", static_cast<double>(m_round.units)},
                         {"level", m_round.level},
                         {"spreadBid", m_prices.bid},
                         {"spreadAsk", m_prices.ask},
                         {"bid", l.tick.dBid},
                         {"ask", l.tick.dAsk},
                         {"offset", static_cast<double>(offset)},
                         {"filled", l.filled},
                         {"target", l.target}};
        m_manager.journal().record(entry);
        if (result == 0 && l.leg.state() == kLegIdle) onRefused(i);
    }
    notify(kAutoSpreadChangeState);
}

// ---- Notifications ---------------------------------------------------------------------------

int CAutoSpread::onOrder(std::uint32_t code, const tagBrokerOrder* record) {
    std::array<std::int32_t, kLegs> from{};
    CLeg* legs[kLegs];
    for (int i = 0; i < kLegs; ++i) {
        from[i] = m_legs[i].leg.state();
        legs[i] = &m_legs[i].leg;
    }
    CLeg* matched = nullptr;
    const int r = routeOrderNotification(m_closing, code, record,
                                         std::span<CLeg* const>(legs, legCount()), &matched);
    if (r != 1 || eventKind(code) != kEventOrderChanged || !matched) return r;
    // A leg that moved on to a new order while the notice was taken (its message box ran the
    // event loop) does not take that earlier order's fills as the new one's.
    if (!tagMatches(record->strRemark, matched->tag())) return 1;
    for (int i = 0; i < legCount(); ++i)
        if (matched == &m_legs[i].leg) afterNotice(i, {from[i], matched->state(), false}, *record);
    return 1;
}

void CAutoSpread::afterNotice(int i, const LegStep& step, const tagBrokerOrder& record) {
    Leg& l = m_legs[i];
    double traded = record.dFilledVolume;
    if (record.nStatus == kOrderFilled) traded = std::max(traded, record.dVolume);
    // A late notice never takes back what a newer one said.
    if (traded > l.working + kLotEpsilon) {
        l.working = traded;
        l.workingPrice = fillPrice(record);
    } else if (traded > kLotEpsilon && isPricePresent(record.dAvgPrice)) {
        l.workingPrice = record.dAvgPrice;
    }
    const bool ended = step.to == 4 || (step.to == kLegIdle && step.from != kLegIdle);
    if (ended) {
        l.filled += l.working;
        l.cost += l.working * l.workingPrice;
        l.working = l.workingPrice = 0;
        if (step.to == 4) l.leg.finishCycle();
        const bool refused = record.nStatus == kOrderRejected || record.nStatus == kOrderExpired;
        if (refused)
            onRefused(i);
        else
            l.refusals = 0;
        if (i == 0 && roundOpen() && !m_round.hedging) endFirst();
    }
    notify(kAutoSpreadChangeState);
    decide();
}

void CAutoSpread::endFirst() {
    Leg& a = m_legs[0];
    if (a.filled < kLotEpsilon) {
        // Nothing traded: no round. A fresh quote may start the next one at its price.
        m_round = Round{};
        for (Leg& l : m_legs) l.target = 0;
        notify(kAutoSpreadChangeState);
        return;
    }
    // What A filled in part is made up to whole units: the rest of the last unit is sent on A
    // like any following order.
    const double lotsA = m_settings.nSpreadLots[0];
    const auto units = static_cast<std::int32_t>(std::ceil(a.filled / lotsA - kLotEpsilon));
    m_round.units = std::clamp(units, 1, m_round.units);
    m_round.hedging = true;
    for (int i = 0; i < legCount(); ++i)
        m_legs[i].target = static_cast<double>(m_round.units) * m_settings.nSpreadLots[i];
    notify(kAutoSpreadChangeState);
}

void CAutoSpread::onRefused(int i) {
    Leg& l = m_legs[i];
    ++l.refusals;
    const std::int64_t wait = std::min(kRetryMaxMs, kRetryMs << std::min(l.refusals - 1, 6));
    l.retryAtMs = m_manager.clock().nowMs() + wait;
    if (m_round.hedging && l.refusals == kMaxRefusals) {
        m_running = false;
        char text[256];
        std::snprintf(text, sizeof text, t::kHedgeRefused, kLegNames[i], kMaxRefusals);
        m_manager.prompter().inform(t::kPrompt, text);
    }
}

void CAutoSpread::lookUp(int i) {
    CSubscibeManage* host = m_manager.facade();
    Leg& l = m_legs[i];
    if (!host || !l.leg.overdue(kLookupMs)) return;
    const std::int32_t from = l.leg.state();
    tagBrokerOrder record;
    const LegStep step = l.leg.reconcile(*host, &record);
    // Taken as if the host had said it; a status the leg already held moves nothing.
    if (step.changed() || record.dFilledVolume > l.working + kLotEpsilon)
        afterNotice(i, {from, l.leg.state(), step.parked}, record);
    else if (from == 3 && l.leg.state() == 3 && !l.leg.orderId().empty())
        // Still cancelling with nothing heard: a cancel the host refused or lost (its account
        // away for a moment) would leave the order working for good. Ask again.
        host->DeleteOrder(accountOf(i).strAccountID, accountOf(i).strBrokerID, l.leg.orderId());
}

// ---- Booking ---------------------------------------------------------------------------------

void CAutoSpread::bookRound() {
    AutoSpreadRound r;
    r.action = m_round.action;
    r.units = m_round.units;
    r.level = m_round.level;
    r.startMs = m_round.startMs;
    r.endMs = m_manager.clock().nowMs();
    for (int i = 0; i < legCount(); ++i) {
        const Leg& l = m_legs[i];
        r.fill[i] = l.filled > kLotEpsilon ? l.cost / l.filled : 0;
        r.spread += (i == 0 ? 1 : -1) * m_settings.dSpreadUnit[i] * r.fill[i];
    }
    const std::int32_t held = std::abs(m_position);
    if (isEntry(r.action)) {
        m_averageSpread = (m_averageSpread * held + r.spread * r.units) / (held + r.units);
        m_position += spreadSide(r.action) * r.units;
    } else {
        const double sign = r.action == SpreadAction::LongExit ? 1 : -1;
        m_realised += sign * (r.spread - m_averageSpread) * r.units;
        m_position += spreadSide(r.action) * std::min(r.units, held);
        if (m_position == 0) m_averageSpread = 0;
    }
    m_rounds.push_back(r);
    m_round = Round{};
    for (Leg& l : m_legs) l.target = l.filled = l.cost = 0;
    m_nextRoundMs = r.endMs + static_cast<std::int64_t>(m_settings.nOrderDelaySeconds) * 1000;
    m_again = true;  // the next round may start at once
    notify(kAutoSpreadChangeState);
}
