// The grid spread's orders: building and sending them, the journal, what each notification
// means for its pair, booking entries, and what the window shows of them.
#include <algorithm>
#include <cstdio>

#include "app/auto_kp.h"
#include "app/helmsman_manage.h"
#include "robots/grids_spread.h"
#include "robots/grids_spread_strings.h"

namespace t = grid_text;

namespace {

// After a refusal a pair waits before it places B again, so a host that refuses everything
// (no funds, a closed market) is not asked on every quote: a second, doubled with every
// further refusal in a row, up to a minute.
constexpr std::int64_t kRetryMs = 1000;
constexpr std::int64_t kRetryMaxMs = 60000;

std::string printfInt(const char* format, int v) {
    char text[128];
    std::snprintf(text, sizeof text, format, v);
    return text;
}

double fillPrice(const tagBrokerOrder& r) {
    return isPricePresent(r.dAvgPrice) ? r.dAvgPrice : r.dPrice;
}

std::string priceFormat(int decimals) {
    return "%." + std::to_string(decimals) + "f";
}

}  // namespace

// ---- Sending ---------------------------------------------------------------------------------

tagBrokerOrder CGridsSpread::makeOrder(bool legA, std::int32_t direction, double price,
                                       bool closing) {
    const GridsSpreadSettings& s = m_settings;
    const tagSymbol symbol = legA ? s.symbolA() : s.symbolB();
    tagBrokerOrder o;
    o.strAccountID = legA ? s.strAccountID1 : s.strAccountID2;
    o.strBrokerID = legA ? s.strBrokerID1 : s.strBrokerID2;
    o.nExchangeID = symbol.wExchangeID;
    o.strSymbolText = symbol.strCode;
    o.strCode = symbol.strCode;
    o.nPriceType = 0;
    o.nDirection = direction;
    o.tCreateTime = m_manager.clock().now();
    o.dVolume = legA ? m_sizes.a : m_sizes.b;
    o.dPrice = price;
    // A closing order closes what the robot opened today (close-today where the exchange
    // tells the days apart).
    o.nOpenClose = closing ? robotCloseFlag(m_manager.facade(), o) : kOpen;
    o.nHedge = kSpeculation;
    if (CSubscibeManage* host = m_manager.facade(); host && m_manager.settings().bAutoKP)
        applyAutoOpenClose(*host, o, m_manager.settings());
    return o;
}

void CGridsSpread::sendOrder(Pair& p, tagBrokerOrder& order, std::string tag, std::string reason,
                             std::vector<JournalFigure> figures) {
    int result = 0;
    const OrderSubmit submit = [this, &result](tagBrokerOrder& o) {
        result = m_manager.submitOrder(o, false, t::kToolName, nullptr,
                                       CHelmsmanManage::Recorder::Caller);
        return result;
    };
    const std::int32_t from = p.leg.state();
    if (!p.leg.send(order, tag, submit)) return;
    JournalEntry entry;
    entry.timeMs = m_manager.clock().nowMs();
    entry.tool = t::kToolName;
    entry.window = caption();
    entry.tag = std::move(tag);
    entry.order = order;
    entry.result = result;
    entry.reason = std::move(reason);
    entry.figures = std::move(figures);
    m_manager.journal().record(entry);
    // A refusal written back at once has already moved the leg (back to 0, or parked).
    if (result == 0 && from == kLegIdle && p.leg.state() == kLegIdle) onRefused(p);
    notify(kGridChangeState);
}

void CGridsSpread::placeB(Pair& p, const GridPlan& plan) {
    tagBrokerOrder o = makeOrder(false, plan.direction, plan.price, !p.opening);
    std::string tag = m_tags.make(p.opening ? "teb" : "txb", TagPrefix::Dollar);
    p.partFilled = false;
    p.booked = GridEntry{};
    const double filter = static_cast<double>(m_filter.state());
    sendOrder(p, o, std::move(tag),
              printfInt(p.opening ? t::kReasonOpenB : t::kReasonCloseB, plan.levelIndex + 1),
              {{"entries", static_cast<double>(m_entries.size())},
               {"levelIndex", static_cast<double>(plan.levelIndex)},
               {"level", plan.level},
               {"target", plan.target},
               {"realised", plan.realised},
               {"referenceA", plan.reference},
               {"filter", filter},
               {"vwapA", m_filter.vwap()},
               {"bidB", m_quoteB.bid},
               {"askB", m_quoteB.ask},
               {"priceB", plan.price}});
}

void CGridsSpread::hitA(Pair& p) {
    const std::int32_t directionA = p.leg.direction() == kDirBuy ? kDirSell : kDirBuy;
    const double price = hitPriceA(directionA, m_quoteA, m_tickA, m_settings.nFixupOffset);
    if (!isPricePresent(price)) return;  // no quote to hit yet: the next quote or pass tries
    tagBrokerOrder o = makeOrder(true, directionA, price, !p.opening);
    std::string tag = m_tags.make(p.opening ? "tea" : "txa", TagPrefix::None);
    p.booked.aTag = tag;
    const double spread =
        m_settings.nSpreadLots1 * price - m_settings.nSpreadLots2 * p.booked.bFill;
    sendOrder(p, o, std::move(tag), p.opening ? t::kReasonOpenA : t::kReasonCloseA,
              {{"fillB", p.booked.bFill},
               {"referenceA", directionA == kDirBuy ? m_quoteA.ask : m_quoteA.bid},
               {"fixupOffset", static_cast<double>(m_settings.nFixupOffset)},
               {"priceA", price},
               {"spread", spread},
               {"filter", static_cast<double>(m_filter.state())}});
}

// ---- Notifications ---------------------------------------------------------------------------

void CGridsSpread::afterStep(Pair& p, std::int32_t from, const tagBrokerOrder& record) {
    const std::int32_t to = p.leg.state();
    const bool onB = from >= 1 && from <= 3;
    if (onB && record.nStatus == kOrderPartFilled) p.partFilled = true;
    if (from == 1 && (to == 2 || to == 4)) p.refusals = 0;
    if (onB && to == 4) {
        p.booked.bFill = record.nStatus == kOrderFilled ? fillPrice(record) : p.leg.price();
        p.booked.bRepriced = p.repriced;
        hitA(p);  // at once: the spread is only as good as the speed of the second leg
    } else if (from == 5 && to == 6) {
        const bool filled = record.nStatus == kOrderFilled;
        p.booked.aFill = filled ? fillPrice(record) : 0;
        if (filled) p.booked.aTag.clear();
        book(p);
    } else if (onB && to == kLegIdle) {
        p.partFilled = false;
        if (from == 3) p.repriced = true;
        if (record.nStatus == kOrderRejected || record.nStatus == kOrderExpired) onRefused(p);
        decide();  // placed anew at once
    }
    notify(kGridChangeState);
}

void CGridsSpread::onRefused(Pair& p) {
    const std::int64_t wait = std::min(kRetryMaxMs, kRetryMs << std::min(p.refusals, 6));
    ++p.refusals;
    p.retryAtMs = m_manager.clock().nowMs() + wait;
}

void CGridsSpread::book(Pair& p) {
    GridEntry done = p.booked;
    done.aOrderId = p.leg.orderId();
    done.openedMs = m_manager.clock().nowMs();
    if (p.opening) {
        m_entries.push_back(std::move(done));
    } else if (!m_entries.empty()) {
        m_roundTrips.push_back({std::move(m_entries.back()), std::move(done)});
        m_entries.pop_back();
    }
    p.leg.finishCycle();
    p.booked = GridEntry{};
    p.partFilled = p.repriced = false;
    notify(kGridChangeState);
    decide();
}

// An A order booked while only acknowledged: its fill, when it comes, completes the price.
// An A order that ends without filling is no longer waited for (the trader settles it).
void CGridsSpread::learnLateFill(const tagBrokerOrder& record) {
    const std::int32_t st = record.nStatus;
    const bool ended = st == kOrderCancelled || st == kOrderRejected || st == kOrderPartCancelled ||
                       st == kOrderExpired;
    if (st != kOrderFilled && !ended) return;
    auto complete = [&](GridEntry& e) {
        if (e.aTag.empty() || !tagMatches(record.strRemark, e.aTag)) return false;
        if (st == kOrderFilled) e.aFill = fillPrice(record);
        e.aTag.clear();
        notify(kGridChangeState);
        decide();
        return true;
    };
    for (auto it = m_entries.rbegin(); it != m_entries.rend(); ++it)
        if (complete(*it)) return;
    for (auto it = m_roundTrips.rbegin(); it != m_roundTrips.rend(); ++it)
        if (complete(it->open) || complete(it->exit)) return;
}

bool CGridsSpread::newestAWorking() const {
    return !m_entries.empty() && !m_entries.back().aTag.empty();
}

// ---- The trader's hand -----------------------------------------------------------------------

bool CGridsSpread::overridePosition(int count) {
    if (count < 0) return false;
    m_manager.prompter().inform(t::kPrompt, t::kManualPosition);
    const auto n = static_cast<std::size_t>(count);
    if (n < m_entries.size()) m_entries.resize(n);
    while (m_entries.size() < n) {
        GridEntry e;
        e.openedMs = m_manager.clock().nowMs();
        m_entries.push_back(std::move(e));
    }
    m_open.leg.intervene();
    m_close.leg.intervene();
    notify(kGridChangeState);
    return true;
}

// ---- What the window shows -------------------------------------------------------------------

std::string CGridsSpread::pairStatus(bool opening) const {
    const Pair& p = opening ? m_open : m_close;
    return p.leg.statusText(m_quoteB.bid, m_quoteB.ask, m_decimalsB);
}

CSpreadExitInfo CGridsSpread::exitInfo() const {
    CSpreadExitInfo info(CSpreadExitInfo::Kind::TwoLegs);
    info.setLeg(0, priceFormat(m_decimalsA), m_settings.nSpreadLots1);
    info.setLeg(1, priceFormat(m_decimalsB), m_settings.nSpreadLots2);
    info.setDirection(m_settings.bLong ? 1 : 0);
    // "(R)" marks a B order that was re-priced before it filled.
    for (const GridEntry& e : m_entries) info.addOpen({{e.aFill, e.bFill}, {false, e.bRepriced}});
    for (const GridRoundTrip& r : m_roundTrips)
        info.addClosed({{r.open.aFill, r.open.bFill},
                        {false, r.open.bRepriced},
                        {r.exit.aFill, r.exit.bFill},
                        {false, r.exit.bRepriced}});
    return info;
}
