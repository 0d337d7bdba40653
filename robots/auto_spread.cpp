// The auto spread's running: settings and templates, start, pause and close, host events,
// the decision pass and what the window shows. Orders, notifications and booking are in
// auto_spread_round.cpp.
#include "robots/auto_spread.h"

#include <cstdio>

#include "app/helmsman_manage.h"
#include "app/profile_ini.h"
#include "host/price.h"
#include "robots/auto_spread_strings.h"
#include "spread/spread_strings.h"

namespace t = auto_spread_text;
using IModuleFutureTrader::ITickEx;

namespace {

constexpr int kDialogId = 25015;

bool carriesPrice(const ITickEx& q) {
    return isPricePresent(q.dLast) || isPricePresent(q.dBid) || isPricePresent(q.dAsk);
}

bool sameQuote(const ITickEx& a, const ITickEx& b) {
    return a.tQuoteTime == b.tQuoteTime && a.dBid == b.dBid && a.dAsk == b.dAsk &&
           a.dLast == b.dLast && a.dBidVol == b.dBidVol && a.dAskVol == b.dAskVol &&
           a.dVolume == b.dVolume;
}

}  // namespace

CAutoSpread::CAutoSpread(CHelmsmanManage& manager)
    : m_manager(manager),
      m_handle(manager.createHandle(this, kDialogId)),
      m_tags(m_handle, manager.clock()),
      m_legs{{Leg(manager.prompter(), manager.clock()), Leg(manager.prompter(), manager.clock()),
              Leg(manager.prompter(), manager.clock())}} {
    TemplateToolHooks<tagAutoSpreadTemplate> hooks{
        [this] { return m_settings; },
        [this](const tagAutoSpreadTemplate& r) { applyTemplate(r); },
        [this] { return m_templateName; },
        [this](const std::string& name) {
            m_templateName = name;
            notify(kAutoSpreadChangeSettings);
        },
        writeAutoSpreadDefault,
        [](const tagAutoSpreadTemplate& r) { return spreadTemplateRow(r); }};
    m_templates = std::make_unique<CToolTemplates<tagAutoSpreadTemplate>>(
        m_manager.userDir(), template_files::kAutoSpread,
        TemplateManagerLayout{spread_text::kAutoSpreadManager, spread_text::kSpreadColumns,
                              "AutoSpreadTemplates"},
        std::move(hooks), m_manager.prompter());
    if (m_manager.initialised())
        m_settings = readAutoSpreadDefault(CProfileIni(m_manager.profilePath()));
    readLegs();
}

CAutoSpread::~CAutoSpread() {
    m_closing = true;
    m_changed = nullptr;
    for (Leg& l : m_legs) l.sub.release();
    m_manager.releaseHandle(m_handle);
}

std::string CAutoSpread::caption() const {
    char text[128];
    const auto& n = m_settings.nSpreadLots;
    if (m_settings.bButterfly)
        std::snprintf(text, sizeof text, t::kCaptionThreeLegs, n[0], n[1], n[2]);
    else
        std::snprintf(text, sizeof text, t::kCaptionTwoLegs, n[0], n[1]);
    return text;
}

// ---- Settings --------------------------------------------------------------------------------

bool CAutoSpread::setSettings(const tagAutoSpreadTemplate& s) {
    if (m_running || roundOpen() || m_closing) return false;
    m_settings = s;
    readLegs();
    notify(kAutoSpreadChangeSettings | kAutoSpreadChangeQuote);
    return true;
}

void CAutoSpread::applyTemplate(const tagAutoSpreadTemplate& r) {
    if (m_running || roundOpen()) {
        m_manager.prompter().inform(t::kPrompt, t::kBusy);
        return;
    }
    tagAutoSpreadTemplate next = r;
    next.nStayMilliSeconds = m_settings.nStayMilliSeconds;  // kept in Profile.ini only
    m_templateName = r.strName;
    setSettings(next);
}

void CAutoSpread::readLegs() {
    CSubscibeManage* host = m_manager.facade();
    for (int i = 0; i < kLegs; ++i) {
        Leg& l = m_legs[i];
        const tagSymbol symbol = i < legCount() ? tagSymbol{m_settings.legs[i].wExchangeID,
                                                            m_settings.legs[i].szSymbolCode}
                                                : tagSymbol{};
        l.symbol = symbol;
        l.tick = ITickEx{};
        l.valid = false;
        l.step = SpreadLegStep{};
        l.decimals = 0;
        l.sub.bind(host, m_handle);
        l.sub.switchTo(symbol);
        if (!host || symbol.empty()) continue;
        IModuleFutureTrader::ISpecDetailValue detail;
        if (host->GetSymbolProperty(symbol, detail) == 1 && detail.nMinMove > 0 &&
            detail.fPriceUnit > 0) {
            l.step = SpreadLegStep{detail.nMinMove, detail.fPriceUnit};
            l.decimals = price::decimals(detail.nMinMove, detail.fPriceUnit);
        }
        if (host->GetMarketQuote(symbol, l.tick) == 1) l.valid = carriesPrice(l.tick);
    }
    recompute();
}

void CAutoSpread::recompute() {
    const ITickEx* quotes[kLegs] = {&m_legs[0].tick, &m_legs[1].tick, &m_legs[2].tick};
    bool valid = true;
    for (int i = 0; i < legCount(); ++i) valid = valid && m_legs[i].valid;
    m_prices = valid ? computeSpreadPrices(std::span(quotes, static_cast<std::size_t>(legCount())),
                                           m_settings.dSpreadUnit)
                     : SpreadPrices{};
}

double CAutoSpread::stepDistance() const {
    const SpreadLegStep& s = m_legs[0].step;
    return m_settings.nGridOffset * s.count * static_cast<double>(s.unit);
}

// ---- Running ---------------------------------------------------------------------------------

bool CAutoSpread::start() {
    if (m_running || m_closing) return m_running;
    IPrompter& prompter = m_manager.prompter();
    if (const char* error = autoSpreadSettingsError(m_settings)) {
        prompter.inform(t::kPrompt, error);
        return false;
    }
    CSubscibeManage* host = m_manager.facade();
    std::vector<tagAccoutInfo> accounts;
    if (host) host->GetAvailableAccounts(accounts);
    for (int i = 0; i < legCount(); ++i) {
        const tagTemplateAccount& want = accountOf(i);
        bool found = false;
        for (const tagAccoutInfo& a : accounts)
            found =
                found || (a.strAccountID == want.strAccountID && a.strBrokerID == want.strBrokerID);
        if (!found) {
            prompter.inform(t::kPrompt, t::kNotLoggedOn);
            return false;
        }
    }
    readLegs();
    for (int i = 0; i < legCount(); ++i) {
        IModuleFutureTrader::ISpecDetailValue detail;
        if (host->GetSymbolProperty(m_legs[i].symbol, detail) != 1) {
            prompter.inform(t::kPrompt, t::kUnknownSymbol);
            return false;
        }
    }
    for (Leg& l : m_legs) {
        // A start is the trader's word that parked legs are dealt with: what a parked order
        // was heard to fill is the round's, and is completed like any other fill.
        if (l.leg.intervene()) {
            l.filled += l.working;
            l.cost += l.working * l.workingPrice;
            l.working = l.workingPrice = 0;
        }
        l.refusals = 0;
        l.retryAtMs = 0;
    }
    m_running = true;
    m_started = true;
    notify(kAutoSpreadChangeState);
    decide();
    return true;
}

void CAutoSpread::pause() {
    m_running = false;
    // A resting A is withdrawn: what it filled before the cancel is still completed.
    CSubscibeManage* host = m_manager.facade();
    if (host && roundOpen() && !m_round.hedging) m_legs[0].leg.cancel(*host);
    notify(kAutoSpreadChangeState);
}

bool CAutoSpread::requestClose() {
    if (m_closing) return true;
    if (m_running || roundOpen()) {
        // The question's box runs the event loop: a round begun under it would be cut off
        // by the answer.
        m_asking = true;
        const bool yes = m_manager.prompter().ask(t::kConfirm, t::kAskClose);
        m_asking = false;
        if (!yes) return false;
    }
    m_running = false;
    cancelWorking();
    m_closing = true;
    for (Leg& l : m_legs) l.sub.release();
    return true;
}

void CAutoSpread::cancelWorking() {
    CSubscibeManage* host = m_manager.facade();
    if (!host) return;
    for (int i = 0; i < legCount(); ++i) {
        CLeg& leg = m_legs[i].leg;
        // An order the exchange has not yet said it queued is withdrawn by its identifier:
        // once closing, no notice reaches the leg to cancel it later.
        if (!leg.cancel(*host) && leg.state() == 1 && !leg.orderId().empty())
            host->DeleteOrder(accountOf(i).strAccountID, accountOf(i).strBrokerID, leg.orderId());
    }
}

bool CAutoSpread::overridePosition(std::int32_t units) {
    for (const Leg& l : m_legs) {
        const std::int32_t st = l.leg.state();
        if (st != kLegIdle && st != kLegParked) {
            m_manager.prompter().inform(t::kPrompt, t::kOrderWorking);
            return false;
        }
    }
    if (units == 0 || (units > 0) != (m_position > 0)) m_averageSpread = 0;
    m_position = units;
    m_round = Round{};
    for (Leg& l : m_legs) {
        l.leg.intervene();
        l.target = l.filled = l.cost = l.working = l.workingPrice = 0;
        l.refusals = 0;
    }
    notify(kAutoSpreadChangeState);
    // The warning comes once the figure is taken: its box runs the event loop, and a round
    // started meanwhile must not be forgotten by an edit made after it.
    m_manager.prompter().inform(t::kPrompt, t::kManualPosition);
    return true;
}

// ---- Host events -----------------------------------------------------------------------------

std::intptr_t CAutoSpread::onMessage(std::uint32_t msg, std::uintptr_t wParam,
                                     std::uintptr_t lParam) {
    if (msg == kMsgDataChange) {
        const auto code = static_cast<std::uint32_t>(wParam);
        if (eventKind(code) == kEventQuote) {
            if (lParam == 0) return -1;
            onQuote(*reinterpret_cast<const ITickEx*>(lParam));
            return 1;
        }
        return onOrder(code, reinterpret_cast<const tagBrokerOrder*>(lParam));
    }
    if (msg == kMsgLogonState) notify(kAutoSpreadChangeState);
    return 1;
}

void CAutoSpread::onQuote(const ITickEx& tick) {
    if (m_closing) return;
    bool fresh = false;
    for (int i = 0; i < legCount(); ++i) {
        Leg& l = m_legs[i];
        if (l.symbol.empty() || tick.wExchangeID != l.symbol.wExchangeID ||
            tick.strCode != l.symbol.strCode)
            continue;
        // The host may deliver one quote both to the registered windows and to the
        // subscribed handle: a repeat is taken once.
        if (l.valid && sameQuote(tick, l.tick)) continue;
        l.tick = tick;
        l.valid = carriesPrice(tick);
        fresh = true;
    }
    if (!fresh) return;
    recompute();
    decide();
    notify(kAutoSpreadChangeQuote);
}

void CAutoSpread::timerPass() {
    if (m_closing) return;
    for (int i = 0; i < legCount(); ++i) lookUp(i);
    decide();
}

// ---- The decision pass -----------------------------------------------------------------------

AutoSpreadPlan CAutoSpread::plan() const {
    return planAutoSpread(m_settings, m_position, m_prices, stepDistance());
}

void CAutoSpread::decide() {
    // A send may show a modal box whose event loop delivers further events: one pass at a
    // time, and one more when something moved meanwhile (a round booked, a notice taken).
    if (m_closing) return;
    if (m_deciding) {
        m_again = true;
        return;
    }
    m_deciding = true;
    for (int pass = 0; pass < 4 && !m_closing; ++pass) {
        m_again = false;
        decidePass();
        if (!m_again) break;
    }
    m_deciding = false;
}

void CAutoSpread::decidePass() {
    if (roundOpen()) {
        if (m_round.hedging)
            stepHedge();
        else
            stepFirst();
        return;
    }
    const Leg& a = m_legs[0];
    const std::int64_t now = m_manager.clock().nowMs();
    if (!m_running || m_asking || a.leg.state() != kLegIdle || now < m_nextRoundMs ||
        now < a.retryAtMs)
        return;
    const AutoSpreadPlan p = plan();
    if (p.send()) startRound(p);
}

// ---- What the window shows -------------------------------------------------------------------

std::string CAutoSpread::statusText() const {
    char text[160];
    for (int i = 0; i < legCount(); ++i)
        if (m_legs[i].leg.state() == kLegParked) return t::kStatusParked;
    if (roundOpen()) {
        const char* action = spreadActionText(m_round.action);
        if (!m_round.hedging) {
            std::snprintf(text, sizeof text, t::kStatusFirstLeg, action, m_round.units);
            return text;
        }
        std::string legs;
        for (int i = 0; i < legCount(); ++i)
            if (m_legs[i].filled + 1e-9 < m_legs[i].target) legs += static_cast<char>('A' + i);
        std::snprintf(text, sizeof text, t::kStatusHedging, action, m_round.units, legs.c_str());
        return text;
    }
    if (!m_running) return m_started ? t::kStatusPaused : t::kStatusStopped;
    if (m_manager.clock().nowMs() < m_nextRoundMs) return t::kStatusDelay;
    return t::kStatusWatching;
}

std::string CAutoSpread::legStatus(int i) const {
    const Leg& l = m_legs[i];
    return l.leg.statusText(l.tick.dBid, l.tick.dAsk, l.decimals);
}

void CAutoSpread::notify(unsigned what) {
    if (m_changed) m_changed(what);
}
