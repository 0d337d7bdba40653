#include "amt/amt_order.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "amt/amt_strings.h"
#include "app/helmsman_manage.h"
#include "host/clock.h"
#include "host/price.h"
#include "host/trading_session.h"

namespace {

// Prices on a tick grid compare with this much slack, so a line computed from points
// (3001.4 - 3 x 0.2) still meets a last price printed on the grid.
constexpr double kPriceSlack = 1e-7;

bool atLeast(double a, double b) {
    return a >= b - kPriceSlack;
}
bool atMost(double a, double b) {
    return a <= b + kPriceSlack;
}

}  // namespace

CAMTOrder::CAMTOrder(CHelmsmanManage& manager) : m_manager(manager) {
    m_hWnd = m_manager.createHandle(this, kDialogId);
    m_subscription.bind(m_manager.facade(), m_hWnd);
}

CAMTOrder::~CAMTOrder() {
    m_subscription.release();
    m_manager.releaseHandle(m_hWnd);
}

// ---- Parameters --------------------------------------------------------------------------

void CAMTOrder::setParams(const tagAMTParams& params) {
    const bool newSymbol = params.symbol() != m_params.symbol() || !instrumentValid();
    m_params = params;
    if (newSymbol) selectSymbol(params.symbol());
}

bool CAMTOrder::selectSymbol(const tagSymbol& symbol) {
    m_params.wExchangeID = symbol.wExchangeID;
    m_params.szSymbolCode = symbol.strCode;
    m_detail = {};
    m_point = 0;
    m_quote = {};
    CSubscibeManage* host = m_manager.facade();
    m_formula.bind(host, symbol.strCode);
    if (!host || symbol.empty()) {
        m_subscription.release();
        return false;
    }
    if (host->GetSymbolProperty(symbol, m_detail)) {
        m_point = price::pointOnGrid(m_detail.nMinMove, m_detail.fPriceUnit);
        m_decimals = price::decimals(m_detail.nMinMove, m_detail.fPriceUnit);
    }
    m_subscription.bind(host, m_hWnd);
    m_subscription.switchTo(symbol);
    refreshQuote();
    return instrumentValid();
}

// ---- Events ------------------------------------------------------------------------------

std::intptr_t CAMTOrder::onMessage(std::uint32_t msg, std::uintptr_t wParam,
                                   std::uintptr_t lParam) {
    if (msg == kMsgDataChange && eventKind(static_cast<std::uint32_t>(wParam)) == kEventQuote &&
        lParam != 0)
        onQuote(*reinterpret_cast<const IModuleFutureTrader::ITickEx*>(lParam));
    return 1;
}

void CAMTOrder::onQuote(const IModuleFutureTrader::ITickEx& t) {
    if (t.wExchangeID != m_params.wExchangeID || t.strCode != m_params.szSymbolCode) return;
    m_quote.last = t.dLast;
    m_quote.bid = t.dBid;
    m_quote.bidVol = t.dBidVol;
    m_quote.ask = t.dAsk;
    m_quote.askVol = t.dAskVol;
    m_quote.upper = t.dUpperLimit;
    m_quote.lower = t.dLowerLimit;
    m_quote.timeMs = t.tQuoteTime;
    trackExtreme();
    step();
    notify();
}

void CAMTOrder::refreshQuote() {
    CSubscibeManage* host = m_manager.facade();
    IModuleFutureTrader::ITickEx t;
    if (!host || m_params.szSymbolCode.empty() || !host->GetMarketQuote(m_params.symbol(), t))
        return;
    m_quote = {t.dLast,   t.dBid,        t.dBidVol,     t.dAsk,
               t.dAskVol, t.dUpperLimit, t.dLowerLimit, t.tQuoteTime};
}

void CAMTOrder::trackExtreme() {
    if (m_state.position <= 0 || !isPricePresent(m_quote.last)) return;
    const double last = m_quote.last;
    if (m_state.extreme < 0.01 ||
        (m_params.bLong ? last > m_state.extreme : last < m_state.extreme))
        m_state.extreme = last;
}

bool CAMTOrder::tradingNow(std::int64_t nowMs) {
    if (nowMs < m_dayStartMs || nowMs >= m_dayEndMs) {
        std::tm tm = toLocalTm(nowMs / 1000);
        tm.tm_hour = tm.tm_min = tm.tm_sec = 0;
        m_dayStartMs = fromLocalTm(tm) * 1000;
        m_dayEndMs = (endOfDay(nowMs / 1000) + 1) * 1000;
    }
    const auto msOfDay = static_cast<std::int32_t>(nowMs - m_dayStartMs);
    return session::isTrading(m_params.wExchangeID, msOfDay);
}

void CAMTOrder::step() {
    if (!m_state.running || !instrumentValid() || m_inStep) return;
    const std::int64_t nowMs = m_manager.clock().nowMs();
    if (nowMs < m_params.tStartTime * 1000) return;
    if (m_state.lastOrderMs != 0 &&
        nowMs < m_state.lastOrderMs + static_cast<std::int64_t>(m_params.nDelaySecs) * 1000)
        return;
    m_inStep = true;
    m_state.entryResult = entryAttempt(nowMs);
    m_state.exitResult = exitAttempt(nowMs);
    m_inStep = false;
}

// ---- The attempts ------------------------------------------------------------------------

int CAMTOrder::entryAttempt(std::int64_t nowMs) {
    const tagAMTParams& p = m_params;
    const Quote& q = m_quote;
    const bool isLong = p.bLong != 0;
    if (m_state.suspended || m_state.position >= p.nMaxLots) return kEntryBlocked;
    // No entry against a market locked at the opposite limit.
    if (isLong ? isPricePresent(q.lower) && std::fabs(q.ask - q.lower) < kPriceSlack
               : isPricePresent(q.upper) && std::fabs(q.bid - q.upper) < kPriceSlack)
        return kEntryLimitLocked;
    if (!tradingNow(nowMs)) return kEntryNotTrading;
    double line = 0;
    if (p.bEntryPriceCon) {
        line = p.dEntryPrice;
        const bool up = p.nEntryPriceCon == 0;
        if (!isPricePresent(q.last) || !(up ? atLeast(q.last, line) : atMost(q.last, line)))
            return kEntryPrice;
        if (p.bEntryRangeFilter &&
            !(up ? atMost(q.last, p.dEntryRangeFilter) : atLeast(q.last, p.dEntryRangeFilter)))
            return kEntryRange;
    }
    if (p.bEntryVolFilter && !(p.nEntryVolFilter <= (isLong ? q.askVol : q.bidVol)))
        return kEntryVolume;
    if (!m_formula.combine(p.entryFilters, p.bEntryFilterOR != 0, true)) return kEntryFormula;
    const std::int32_t lots = std::min(p.nEveryLots, p.nMaxLots - m_state.position);
    if (lots < 1) return kEntryNoLots;

    const double offset = p.nOrderOffset * m_point;
    double px = 0;
    if (isLong) {
        px = price::roundBuy((isPricePresent(q.ask) ? q.ask : q.bid) + offset, m_detail.nMinMove,
                             m_detail.fPriceUnit);
        if (isPricePresent(q.upper)) px = std::min(px, q.upper);
    } else {
        px = price::roundSell((isPricePresent(q.bid) ? q.bid : q.ask) - offset, m_detail.nMinMove,
                              m_detail.fPriceUnit);
        if (isPricePresent(q.lower)) px = std::max(px, q.lower);
    }
    if (!sendOrder(isLong, true, lots, px, nowMs, {amt_text::kReasonEntry, line}))
        return kEntryDeclined;
    const std::int32_t old = m_state.position;
    if (!isPricePresent(m_state.firstPrice)) m_state.firstPrice = px;
    if (old == 0 && m_state.extreme < 0.01) m_state.extreme = m_state.firstPrice;
    m_state.avgPrice = (lots * px + old * m_state.avgPrice) / (old + lots);
    m_state.position = old + lots;
    m_state.cumulative += lots;
    m_state.lastOrderMs = nowMs;
    return kEntrySent;
}

int CAMTOrder::exitAttempt(std::int64_t nowMs) {
    const tagAMTParams& p = m_params;
    const double last = m_quote.last;
    const bool hasLast = isPricePresent(last);
    if (m_state.position < 1) return kExitFlat;
    if (!tradingNow(nowMs)) return kExitNotTrading;
    if (p.bExitPriceCon && hasLast &&
        (p.nExitPriceCon == 0 ? atLeast(last, p.dExitPrice) : atMost(last, p.dExitPrice)))
        return closeOrder(nowMs, {amt_text::kReasonExitPrice, p.dExitPrice});
    if (p.bExitAtTime && nowMs / 1000 >= p.tExitTime)
        return closeOrder(nowMs, {amt_text::kReasonExitTime, 0});
    const double base = basePrice();
    if (base < kPriceEpsilon) return kExitNoBase;

    if (hasLast) {
        const double pt = m_point;
        const double ext = m_state.extreme;
        // sign +1 for a long: losses lie below the base, the best price above.
        const double s = p.bLong ? 1.0 : -1.0;
        auto against = [&](double level) {
            return p.bLong ? atMost(last, level) : atLeast(last, level);
        };
        if (p.bStopLoss) {
            const double level = base - s * p.nStopLossPoint * pt;
            if (against(level)) return closeOrder(nowMs, {amt_text::kReasonStopLoss, level});
        }
        if (p.bTakeProfit) {
            const double level = base + s * p.nTakeProfitPoint * pt;
            if (p.bLong ? atLeast(last, level) : atMost(last, level))
                return closeOrder(nowMs, {amt_text::kReasonTakeProfit, level});
        }
        if (p.bTrailingStop && isPricePresent(ext)) {
            const double best = s * (ext - base);
            if (atLeast(best, p.nTrailingStart * pt)) {
                const double giveBack = p.nTrailingStopType == 1 ? p.nTrailingStopSet * best * 0.01
                                                                 : p.nTrailingStopSet * pt;
                const double level = ext - s * giveBack;
                if (against(level)) return closeOrder(nowMs, {amt_text::kReasonTrailing, level});
            }
        }
    }
    if (m_formula.combine(p.exitFilters, p.bExitFilterOR != 0, false))
        return closeOrder(nowMs, {amt_text::kReasonExitFormula, 0});
    return kExitNone;
}

int CAMTOrder::closeOrder(std::int64_t nowMs, const Reason& why) {
    const tagAMTParams& p = m_params;
    const Quote& q = m_quote;
    const bool isLong = p.bLong != 0;
    if (p.bExitVolFilter && (isLong ? q.bidVol : q.askVol) < p.nExitVolFilter) return kExitVolume;
    const std::int32_t lots = p.nEveryLots >= m_state.position ? m_state.position : p.nEveryLots;
    if (lots < 1) return kExitNoLots;
    const double offset = p.nOrderOffset * m_point;
    double px = 0;
    if (isLong) {
        px = price::roundSell((isPricePresent(q.bid) ? q.bid : q.ask) - offset, m_detail.nMinMove,
                              m_detail.fPriceUnit);
        if (isPricePresent(q.lower)) px = std::max(px, q.lower);
    } else {
        px = price::roundBuy((isPricePresent(q.ask) ? q.ask : q.bid) + offset, m_detail.nMinMove,
                             m_detail.fPriceUnit);
        if (isPricePresent(q.upper)) px = std::min(px, q.upper);
    }
    if (!sendOrder(!isLong, false, lots, px, nowMs, why)) return kExitNone;
    m_state.position -= lots;
    m_state.lastOrderMs = nowMs;
    m_state.suspended = true;
    if (m_state.position == 0) endRoundTrip();
    return kExitSent;
}

bool CAMTOrder::sendOrder(bool buy, bool open, std::int32_t lots, double px, std::int64_t nowMs,
                          const Reason& why) {
    const tagAMTParams& p = m_params;
    tagBrokerOrder o;
    o.strAccountID = p.strAccountID;
    o.strBrokerID = p.strBrokerID;
    o.nExchangeID = p.wExchangeID;
    o.strSymbolText = p.szSymbolCode;
    o.strCode = p.szSymbolCode;
    o.nDirection = buy ? kDirBuy : kDirSell;
    o.tCreateTime = nowMs / 1000;
    o.dVolume = lots;
    o.dPrice = px;
    o.nOpenClose = open ? kOpen : kClose;
    o.nHedge = p.bHedge ? kHedge : kSpeculation;
    o.strRemark = amt_text::kToolName;
    const bool confirm = m_manager.settings().bShowNormalOrderConfirm != 0;
    const int r = m_manager.submitOrder(o, confirm, amt_text::kToolName, nullptr,
                                        CHelmsmanManage::Recorder::Caller);
    if (confirm && r == 0) {
        // Declined: nothing went out. The next order waits like after a sent one.
        m_state.lastOrderMs = nowMs;
        return false;
    }
    JournalEntry e;
    e.timeMs = nowMs;
    e.tool = amt_text::kToolName;
    e.window = std::to_string(m_hWnd);
    e.tag = o.strRemark;
    e.order = o;
    e.result = confirm ? (!o.strOrderID.empty() && o.nStatus != kOrderRejected ? 1 : 0) : r;
    e.reason = why.words;
    e.figures = {{"last", m_quote.last},
                 {"bid", m_quote.bid},
                 {"ask", m_quote.ask},
                 {"price", px},
                 {"lots", static_cast<double>(lots)},
                 {"position", static_cast<double>(m_state.position)},
                 {"base", basePrice()},
                 {"extreme", m_state.extreme},
                 {"level", why.threshold}};
    m_manager.journal().record(e);
    return true;
}

void CAMTOrder::endRoundTrip() {
    m_state.firstPrice = 0;
    m_state.avgPrice = 0;
    m_state.extreme = 0;
}

// ---- Commands ----------------------------------------------------------------------------

void CAMTOrder::stop() {
    m_state.running = false;
    notify();
}

void CAMTOrder::resumeEntries() {
    m_state.suspended = false;
    notify();
}

bool CAMTOrder::setPositionByHand(std::int32_t lots) {
    lots = std::max(lots, 0);
    if (lots == m_state.position) return false;
    m_manager.prompter().inform(amt_text::kInfo, amt_text::kPositionEdited);
    m_state.position = lots;
    if (lots == 0) endRoundTrip();
    notify();
    return true;
}

bool CAMTOrder::confirmClose() {
    if (!m_state.running) return true;
    if (!m_manager.prompter().ask(amt_text::kConfirm, amt_text::kAskClose)) return false;
    m_state.running = false;
    return true;
}

void CAMTOrder::notify() {
    if (m_changed) m_changed();
}

// ---- Reading -----------------------------------------------------------------------------

double CAMTOrder::basePrice() const {
    return m_params.nStopBasePriceType == 1 ? m_state.avgPrice : m_state.firstPrice;
}

std::string CAMTOrder::caption() const {
    char buf[160];
    if (m_state.entryResult != kNotRun)
        std::snprintf(buf, sizeof buf, amt_text::kCaptionCodes, m_state.entryResult,
                      m_state.exitResult);
    else if (!m_params.strName.empty())
        return std::string(amt_text::kCaptionTemplate) + m_params.strName;
    else
        return amt_text::kToolName;
    return buf;
}

const char* CAMTOrder::entryLabel(bool isLong, int condition) {
    if (isLong) return condition == 0 ? amt_text::kEntryChaseBuy : amt_text::kEntryDipBuy;
    return condition == 0 ? amt_text::kEntryDipSell : amt_text::kEntryChaseSell;
}

const char* CAMTOrder::exitLabel(bool isLong, int condition) {
    // A long leaves by selling, a short by buying.
    if (isLong) return condition == 0 ? amt_text::kExitDipSell : amt_text::kExitChaseSell;
    return condition == 0 ? amt_text::kExitChaseBuy : amt_text::kExitDipBuy;
}
