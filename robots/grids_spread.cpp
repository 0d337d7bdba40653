// The grid spread's running: settings, start and pause, host events and the decision pass.
// Sending, booking and the figures shown live in grids_spread_orders.cpp.
#include "robots/grids_spread.h"

#include <cstdio>

#include "app/helmsman_manage.h"
#include "host/price.h"
#include "robots/grids_spread_strings.h"

namespace t = grid_text;

namespace {

bool sameSymbol(const IModuleFutureTrader::ITickEx& tick, std::uint16_t exchange,
                const std::string& code) {
    return !code.empty() && tick.wExchangeID == exchange && tick.strCode == code;
}

GridQuote toQuote(const IModuleFutureTrader::ITickEx& tick) {
    return {tick.dBid, tick.dAsk, tick.dLast, tick.dVolume, tick.dUpperLimit, tick.dLowerLimit};
}

bool sameQuote(const GridQuote& a, const GridQuote& b) {
    return a.bid == b.bid && a.ask == b.ask && a.last == b.last && a.volume == b.volume &&
           a.upper == b.upper && a.lower == b.lower;
}

}  // namespace

CGridsSpread::CGridsSpread(CHelmsmanManage& manager)
    : m_manager(manager),
      m_handle(manager.createHandle(this)),
      m_tags(m_handle, manager.clock()),
      m_open(LegMachine::PairOpen, manager.prompter(), manager.clock()),
      m_close(LegMachine::PairClose, manager.prompter(), manager.clock()) {
    m_close.opening = false;
    m_filter.reset(m_settings.nFilterLength, 0);
}

CGridsSpread::~CGridsSpread() {
    m_closing = true;
    m_subA.release();
    m_subB.release();
    m_manager.releaseHandle(m_handle);
}

std::string CGridsSpread::captionOf(const GridsSpreadSettings& s) {
    char text[96];
    std::snprintf(text, sizeof text, t::kCaptionFormat, s.nSpreadLots1, s.nSpreadLots2);
    return text;
}

// ---- Settings --------------------------------------------------------------------------------

bool CGridsSpread::setSettings(const GridsSpreadSettings& s) {
    // A pair still waiting on an order finishes it with the instruments it was sent for.
    auto busy = [](const CLeg& leg) {
        return leg.state() != kLegIdle && leg.state() != kLegParked;
    };
    if (m_running || busy(m_open.leg) || busy(m_close.leg)) return false;
    m_settings = s;
    readContracts();
    follow();
    notify(kGridChangeSettings | kGridChangeQuote);
    return true;
}

void CGridsSpread::readContracts() {
    CSubscibeManage* host = m_manager.facade();
    m_tickA = m_tickB = GridTick{};
    m_decimalsA = m_decimalsB = 0;
    m_quoteA = m_quoteB = GridQuote{};
    m_timeA = m_timeB = -1;
    if (!host) return;
    IModuleFutureTrader::ISpecDetailValue detail;
    IModuleFutureTrader::ITickEx tick;
    const tagSymbol a = m_settings.symbolA(), b = m_settings.symbolB();
    if (!a.empty() && host->GetSymbolProperty(a, detail) == 1) {
        m_tickA = gridTick(detail.nMinMove, detail.fPriceUnit);
        m_decimalsA = price::decimals(detail.nMinMove, detail.fPriceUnit);
    }
    if (!b.empty() && host->GetSymbolProperty(b, detail) == 1) {
        m_tickB = gridTick(detail.nMinMove, detail.fPriceUnit);
        m_decimalsB = price::decimals(detail.nMinMove, detail.fPriceUnit);
    }
    if (!a.empty() && host->GetMarketQuote(a, tick) == 1) m_quoteA = toQuote(tick);
    if (!b.empty() && host->GetMarketQuote(b, tick) == 1) m_quoteB = toQuote(tick);
}

void CGridsSpread::follow() {
    m_subA.bind(m_manager.facade(), m_handle);
    m_subB.bind(m_manager.facade(), m_handle);
    m_subA.switchTo(m_settings.symbolA());
    m_subB.switchTo(m_settings.symbolB());
}

// ---- Running ---------------------------------------------------------------------------------

bool CGridsSpread::start() {
    if (m_running || m_closing) return m_running;
    IPrompter& prompter = m_manager.prompter();
    CSubscibeManage* host = m_manager.facade();
    const GridsSpreadSettings& s = m_settings;
    std::vector<tagAccoutInfo> accounts;
    if (host) host->GetAvailableAccounts(accounts);
    auto loggedOn = [&](const std::string& id, const std::string& broker) {
        for (const tagAccoutInfo& a : accounts)
            if (a.strAccountID == id && a.strBrokerID == broker) return true;
        return false;
    };
    if (!loggedOn(s.strAccountID1, s.strBrokerID1) || !loggedOn(s.strAccountID2, s.strBrokerID2)) {
        prompter.inform(t::kPrompt, t::kNotLoggedOn);
        return false;
    }
    if (s.nEveryLots < 1 || s.nMaxLots < 1) {
        prompter.inform(t::kPrompt, t::kBadLots);
        return false;
    }
    if (s.nMonitorEdge < 1 || s.nMonitorThreshold < 1) {
        prompter.inform(t::kPrompt, t::kBadMonitor);
        return false;
    }
    IModuleFutureTrader::ISpecDetailValue detailA, detailB;
    if (s.symbolA().empty() || s.symbolB().empty() || s.nSpreadLots1 < 1 || s.nSpreadLots2 < 1 ||
        host->GetSymbolProperty(s.symbolA(), detailA) != 1 ||
        host->GetSymbolProperty(s.symbolB(), detailB) != 1) {
        prompter.inform(t::kPrompt, t::kNoSymbols);
        return false;
    }
    readContracts();
    follow();
    m_sizes = gridSizes(s, detailA.dMultiplier, detailB.dMultiplier);
    m_filter.reset(s.nFilterLength, s.nFilterOffset * m_tickA.tick);
    m_running = true;
    notify(kGridChangeState);
    decide();
    return true;
}

bool CGridsSpread::pause() {
    if (!m_running) return true;
    for (const Pair* p : {&m_open, &m_close}) {
        const std::int32_t st = p->leg.state();
        // A B order that has traded in part is between states too: cancelling its rest would
        // leave the traded part without its A.
        if (st == 1 || st == 3 || st == 4 || (st == 2 && p->partFilled)) {
            m_manager.prompter().inform(t::kPrompt, t::kCannotPause);
            return false;
        }
    }
    m_running = false;
    // Through the leg, so a fill that wins the race against the cancel is still booked.
    CSubscibeManage* host = m_manager.facade();
    for (Pair* p : {&m_open, &m_close})
        if (p->leg.state() == 2 && host) p->leg.cancel(*host);
    notify(kGridChangeState);
    return true;
}

bool CGridsSpread::requestClose() {
    if (m_closing) return true;
    if (m_running && !m_manager.prompter().ask(t::kConfirm, t::kAskClose)) return false;
    m_running = false;
    CSubscibeManage* host = m_manager.facade();
    for (Pair* p : {&m_open, &m_close})
        if (p->leg.state() == 2 && host) p->leg.cancel(*host);
    m_closing = true;
    m_subA.release();
    m_subB.release();
    return true;
}

// ---- Host events -----------------------------------------------------------------------------

std::intptr_t CGridsSpread::onMessage(std::uint32_t msg, std::uintptr_t wParam,
                                      std::uintptr_t lParam) {
    if (msg == kMsgDataChange) {
        const auto code = static_cast<std::uint32_t>(wParam);
        if (eventKind(code) == kEventQuote) {
            if (lParam == 0) return -1;
            onQuote(*reinterpret_cast<const IModuleFutureTrader::ITickEx*>(lParam));
            return 1;
        }
        return onOrder(code, reinterpret_cast<const tagBrokerOrder*>(lParam));
    }
    if (msg == kMsgLogonState) notify(kGridChangeState);
    return 1;
}

void CGridsSpread::onQuote(const IModuleFutureTrader::ITickEx& tick) {
    if (m_closing) return;
    bool fresh = false;
    // The host may deliver one quote both to the registered windows and to the subscribed
    // handle: a repeat of the same quote is taken once.
    if (sameSymbol(tick, m_settings.wExchangeID1, m_settings.szSymbolCode1)) {
        const GridQuote q = toQuote(tick);
        if (tick.tQuoteTime != m_timeA || !sameQuote(q, m_quoteA)) {
            m_quoteA = q;
            m_timeA = tick.tQuoteTime;
            if (isPricePresent(q.last)) m_filter.feed(q.volume, q.last);
            fresh = true;
        }
    }
    if (sameSymbol(tick, m_settings.wExchangeID2, m_settings.szSymbolCode2)) {
        const GridQuote q = toQuote(tick);
        if (tick.tQuoteTime != m_timeB || !sameQuote(q, m_quoteB)) {
            m_quoteB = q;
            m_timeB = tick.tQuoteTime;
            fresh = true;
        }
    }
    if (!fresh) return;
    decide();
    notify(kGridChangeQuote);
}

int CGridsSpread::onOrder(std::uint32_t code, const tagBrokerOrder* record) {
    const std::int32_t fromOpen = m_open.leg.state(), fromClose = m_close.leg.state();
    CLeg* legs[] = {&m_open.leg, &m_close.leg};
    CLeg* matched = nullptr;
    const int r = routeOrderNotification(m_closing, code, record, legs, &matched);
    if (r != 1 || eventKind(code) != kEventOrderChanged) return r;
    if (matched == &m_open.leg)
        afterStep(m_open, fromOpen, *record);
    else if (matched == &m_close.leg)
        afterStep(m_close, fromClose, *record);
    else
        learnLateFill(*record);
    return 1;
}

void CGridsSpread::timerPass() {
    if (m_closing) return;
    lookUp(m_open);
    lookUp(m_close);
    lookUpNewestA();
    decide();
}

void CGridsSpread::lookUpNewestA() {
    CSubscibeManage* host = m_manager.facade();
    const std::int64_t now = m_manager.clock().nowMs();
    if (!host || !newestAWorking() || now < m_nextEntryLookupMs) return;
    m_nextEntryLookupMs = now + static_cast<std::int64_t>(kLookupMs);
    tagBrokerOrder record;
    if (host->GetOrder(record, m_settings.strAccountID1, m_settings.strBrokerID1,
                       m_entries.back().aOrderId) == 1)
        learnLateFill(record);
}

void CGridsSpread::lookUp(Pair& p) {
    CSubscibeManage* host = m_manager.facade();
    const CLeg& leg = p.leg;
    if (!host || leg.orderId().empty() || !leg.overdue(kLookupMs)) return;
    const bool legA = leg.state() == 5;
    tagBrokerOrder record;
    if (host->GetOrder(record, legA ? m_settings.strAccountID1 : m_settings.strAccountID2,
                       legA ? m_settings.strBrokerID1 : m_settings.strBrokerID2,
                       leg.orderId()) != 1)
        return;
    if (!tagMatches(record.strRemark, leg.tag())) return;
    // Taken as if the host had said it: the machine ignores a status it already holds.
    onOrder(kEventOrderChanged, &record);
}

// ---- The decision pass -----------------------------------------------------------------------

void CGridsSpread::decide() {
    // A send may show a modal box whose event loop delivers further quotes: one pass at a time.
    if (m_closing || m_deciding) return;
    m_deciding = true;
    stepPair(m_open);
    stepPair(m_close);
    m_deciding = false;
}

GridPlan CGridsSpread::plan(const Pair& p) const {
    if (p.opening)
        return planOpening(m_settings, m_entries.size(), m_quoteA, m_quoteB, m_tickB,
                           m_filter.state());
    GridEntryPrices newest;
    if (!m_entries.empty()) newest = {m_entries.back().bFill, m_entries.back().aFill};
    return planClosing(m_settings, m_entries.size(), newest, m_quoteA, m_quoteB, m_tickB,
                       m_filter.state());
}

void CGridsSpread::stepPair(Pair& p) {
    switch (p.leg.state()) {
        case kLegIdle: {
            if (!m_running || m_manager.clock().nowMs() < p.retryAtMs) return;
            if (!p.opening && newestAWorking()) return;
            const GridPlan pl = plan(p);
            if (pl.send()) placeB(p, pl);
            return;
        }
        case 2: {
            // A B order that has traded in part is left to fill: cancelling it would leave
            // part of an entry without its A.
            if (!m_running || p.partFilled) return;
            CSubscibeManage* host = m_manager.facade();
            if (host &&
                !keepResting(plan(p), p.leg.price(), m_tickB, m_settings.nMonitorThreshold)) {
                p.leg.cancel(*host);
                notify(kGridChangeState);
            }
            return;
        }
        case 4:
            hitA(p);
            return;
        case 6:
            book(p);
            return;
        default:
            return;
    }
}

void CGridsSpread::notify(unsigned what) {
    if (m_changed) m_changed(what);
}
