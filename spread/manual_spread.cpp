#include "spread/manual_spread.h"

#include <algorithm>
#include <cstdio>

#include "app/helmsman_manage.h"
#include "app/profile_ini.h"
#include "spread/manual_spread_strings.h"
#include "spread/spread_strings.h"

namespace t = manual_spread_text;
using IModuleFutureTrader::ITickEx;

namespace {

// A quote is valid once it carries any price.
bool carriesPrice(const ITickEx& q) {
    return isPricePresent(q.dLast) || isPricePresent(q.dBid) || isPricePresent(q.dAsk);
}

bool sameAccount(const tagAccoutInfo& a, const tagAccoutInfo& b) {
    return a.strAccountID == b.strAccountID && a.strBrokerID == b.strBrokerID &&
           a.strAccountName == b.strAccountName && a.nAccountType == b.nAccountType;
}

// What the host wrote back says whether it took the order.
int hostTook(const tagBrokerOrder& o) {
    return !o.strOrderID.empty() && o.nStatus != kOrderRejected ? 1 : 0;
}

}  // namespace

CManualSpread::CManualSpread(CHelmsmanManage& manager) : m_manager(manager) {
    m_hWnd = m_manager.createHandle(this);
    TemplateToolHooks<tagManualSpreadTemplate> hooks{
        [this] { return m_settings; },
        [this](const tagManualSpreadTemplate& r) { applyTemplate(r); },
        [this] { return m_templateName; },
        [this](const std::string& name) {
            m_templateName = name;
            notify(kChangeSettings);
        },
        writeManualSpreadDefault,
        [](const tagManualSpreadTemplate& r) { return spreadTemplateRow(r); }};
    m_templates = std::make_unique<CToolTemplates<tagManualSpreadTemplate>>(
        m_manager.userDir(), template_files::kManualSpread,
        TemplateManagerLayout{spread_text::kManualSpreadManager, spread_text::kSpreadColumns,
                              "ManualSpreadTemplates"},
        std::move(hooks), m_manager.prompter());

    if (m_manager.initialised()) {
        const CProfileIni ini(m_manager.profilePath());
        const tagManualSpreadTemplate defaults = readManualSpreadDefault(ini);
        m_settings = defaults;
        for (int i = 0; i < kLegs; ++i)
            setLeg(i, tagSymbol{defaults.legs[i].wExchangeID, defaults.legs[i].szSymbolCode});
        reloadAccounts();
    }
    m_lotsConfirmed = false;
}

CManualSpread::~CManualSpread() {
    m_listener = nullptr;
    for (int i = 0; i < kLegs; ++i) setLeg(i, tagSymbol{});
    m_manager.releaseHandle(m_hWnd);
}

// ---- Settings and legs ---------------------------------------------------------------------

void CManualSpread::settingsEdited() {
    recompute(false);
    notify(kChangeQuote);
}

tagSymbol CManualSpread::leg(int i) const {
    return m_legs[i].symbol;
}

void CManualSpread::subscribe(const tagSymbol& symbol, bool on) {
    CSubscibeManage* facade = m_manager.facade();
    if (!facade || symbol.empty()) return;
    // Legs may share an instrument; the host keeps one subscription per window and symbol.
    for (const Leg& other : m_legs)
        if (other.symbol == symbol) return;
    tagSubscribeBlock block{1, &symbol};
    facade->QueryInterface(kQuerySubscribeQuote, m_hWnd, on ? 1 : 0, &block);
}

bool CManualSpread::setLeg(int i, const tagSymbol& symbol) {
    if (i < 0 || i >= kLegs) return false;
    Leg& leg = m_legs[i];
    tagSymbol s = symbol;
    if (s.strCode.size() > kTemplateCodeBytes) s.strCode.resize(kTemplateCodeBytes);
    if (s == leg.symbol) return false;

    const tagSymbol old = leg.symbol;
    leg.symbol = tagSymbol{};
    subscribe(old, false);
    subscribe(s, true);
    leg.symbol = s;
    leg.tick = ITickEx{};
    leg.valid = false;
    leg.step = SpreadLegStep{};
    m_settings.legs[i] = tagTemplateLeg{s.wExchangeID, s.strCode};

    CSubscibeManage* facade = m_manager.facade();
    if (facade && !s.empty()) {
        IModuleFutureTrader::ISpecDetailValue detail;
        if (facade->GetSymbolProperty(s, detail) && detail.nMinMove > 0 && detail.fPriceUnit > 0)
            leg.step = SpreadLegStep{detail.nMinMove, detail.fPriceUnit};
        ITickEx tick;
        if (facade->GetMarketQuote(s, tick)) {
            leg.tick = tick;
            leg.valid = carriesPrice(tick);
        }
    }
    // The quantities were confirmed for other instruments; the points, if the leg is in
    // use, belong to another spread.
    m_lotsConfirmed = false;
    const bool inUse = i < legCount();
    if (inUse) m_history.clear();
    recompute(inUse && allLegsValid());
    notify(kChangeQuote);
    return true;
}

void CManualSpread::applyTemplate(const tagManualSpreadTemplate& r) {
    const bool wasButterfly = m_settings.bButterfly != 0;
    tagManualSpreadTemplate next = r;
    next.bShowChart = m_settings.bShowChart;  // the window keeps its own chart state
    next.legs = m_settings.legs;              // taken over leg by leg below
    m_settings = std::move(next);
    m_templateName = r.strName;
    for (int i = 0; i < kLegs; ++i)
        setLeg(i, tagSymbol{r.legs[i].wExchangeID, r.legs[i].szSymbolCode});
    if (wasButterfly != (m_settings.bButterfly != 0)) m_history.clear();
    recompute(false);
    notify(kChangeSettings | kChangeQuote);
}

void CManualSpread::setButterfly(bool on) {
    if ((m_settings.bButterfly != 0) == on) return;
    m_settings.bButterfly = on ? 1 : 0;
    m_history.clear();
    recompute(allLegsValid());
    notify(kChangeQuote);
}

// ---- Market --------------------------------------------------------------------------------

bool CManualSpread::allLegsValid() const {
    for (int i = 0; i < legCount(); ++i)
        if (m_legs[i].symbol.empty() || !m_legs[i].valid) return false;
    return true;
}

void CManualSpread::recompute(bool addPoint) {
    const ITickEx* quotes[kLegs] = {&m_legs[0].tick, &m_legs[1].tick, &m_legs[2].tick};
    m_prices = computeSpreadPrices(std::span(quotes, static_cast<std::size_t>(legCount())),
                                   m_settings.dSpreadUnit);
    if (addPoint) m_history.add(SpreadPoint{m_prices.bid, m_prices.ask});
}

bool CManualSpread::onQuote(const ITickEx& tick) {
    bool matched = false;
    for (Leg& leg : m_legs) {
        if (leg.symbol.empty() || leg.symbol.wExchangeID != tick.wExchangeID ||
            leg.symbol.strCode != tick.strCode)
            continue;
        leg.tick = tick;  // same code: the copy reuses the leg's own string
        leg.valid = leg.valid || carriesPrice(tick);
        matched = true;
    }
    if (!matched) return false;
    recompute(allLegsValid());
    notify(kChangeQuote);
    return true;
}

std::intptr_t CManualSpread::onMessage(std::uint32_t msg, std::uintptr_t wParam,
                                       std::uintptr_t lParam) {
    if (msg == kMsgDataChange && eventKind(static_cast<std::uint32_t>(wParam)) == kEventQuote) {
        if (lParam) return onQuote(*reinterpret_cast<const ITickEx*>(lParam)) ? 1 : 0;
        return 0;
    }
    if (msg == kMsgLogonState) {
        if (reloadAccounts()) notify(kChangeAccounts);
        return 1;
    }
    return 0;
}

std::string CManualSpread::caption() const {
    return manualSpreadCaption(m_templateName, m_legs[0].valid, m_legs[0].tick.tQuoteTime,
                               m_legs[1].valid, m_legs[1].tick.tQuoteTime);
}

// ---- Accounts and instruments --------------------------------------------------------------

bool CManualSpread::reloadAccounts() {
    std::vector<tagAccoutInfo> now;
    if (CSubscibeManage* facade = m_manager.facade()) facade->GetAvailableAccounts(now);
    const bool same = now.size() == m_accounts.size() &&
                      std::equal(now.begin(), now.end(), m_accounts.begin(), sameAccount);
    if (same) return false;
    m_accounts = std::move(now);
    return true;
}

std::string CManualSpread::accountText(const tagAccoutInfo& account) {
    return account.strAccountID + "(" + account.strAccountName + ")";
}

int CManualSpread::defaultAccount() const {
    const HelmsmanSettings& s = m_manager.settings();
    if (s.bUserDefaultAcct) {
        for (std::size_t i = 0; i < m_accounts.size(); ++i)
            if (m_accounts[i].strAccountID == s.strAccountID &&
                m_accounts[i].strBrokerID == s.strBrokerID)
                return static_cast<int>(i);
    }
    return m_accounts.size() == 1 ? 0 : -1;
}

std::vector<tagExchangeInfo> CManualSpread::exchanges() const {
    std::vector<tagExchangeInfo> out;
    if (CSubscibeManage* facade = m_manager.facade()) facade->GetAllExchanges(out);
    return out;
}

std::vector<tagSymbol> CManualSpread::symbols(int exchangeId) const {
    std::vector<tagSymbol> out;
    if (CSubscibeManage* facade = m_manager.facade())
        facade->GetExchangeSymbols(exchangeId, out, 0);
    return out;
}

// ---- Sending -------------------------------------------------------------------------------

CManualSpread::SendResult CManualSpread::send(bool buySpread,
                                              const std::vector<tagAccoutInfo>& accounts,
                                              const std::array<bool, kLegs>& hedge) {
    IPrompter& prompter = m_manager.prompter();
    const int n = legCount();
    const tagManualSpreadTemplate& s = m_settings;
    if (accounts.empty()) {
        prompter.inform(t::kInfo, t::kNoAccount);
        return SendResult::Refused;
    }
    if (s.nEveryLots < 1) {
        prompter.inform(t::kInfo, t::kBadEveryLots);
        return SendResult::Refused;
    }
    if (!allLegsValid()) {
        prompter.inform(t::kInfo, n == 3 ? t::kNoQuote3 : t::kNoQuote2, PromptIcon::Warning);
        return SendResult::Refused;
    }
    std::array<std::int64_t, kLegs> lots{};
    for (int i = 0; i < kLegs; ++i)
        lots[i] = static_cast<std::int64_t>(s.nSpreadLots[i]) * s.nEveryLots;
    if (s.bFirstLotsConfirm && !m_lotsConfirmed) {
        char text[256];
        if (n == 3)
            std::snprintf(text, sizeof text, t::kAskLots3, static_cast<int>(lots[0]),
                          static_cast<int>(lots[1]), static_cast<int>(lots[2]));
        else
            std::snprintf(text, sizeof text, t::kAskLots2, static_cast<int>(lots[0]),
                          static_cast<int>(lots[1]));
        if (!prompter.ask(t::kLotsCaption, text)) return SendResult::Declined;
        m_lotsConfirmed = true;
    }
    for (int i = 0; i < n; ++i)
        if (!spreadLegTradable(m_legs[i].tick)) return SendResult::Skipped;

    // A calendar roll moves a position from A's month into B's: A closes, B opens.
    const bool roll = s.bChange && n == 2;
    const std::int64_t now = m_manager.clock().now();
    std::array<double, kLegs> quoted{};
    std::vector<tagBrokerOrder> batch;
    batch.reserve(accounts.size() * static_cast<std::size_t>(n));
    for (const tagAccoutInfo& account : accounts) {
        for (int i = 0; i < n; ++i) {
            const Leg& leg = m_legs[i];
            const bool buy = (i == 0) == buySpread;
            tagBrokerOrder o;
            o.strAccountID = account.strAccountID;
            o.strBrokerID = account.strBrokerID;
            o.strAccountState = account.strAccountName;
            o.nExchangeID = leg.symbol.wExchangeID;
            o.strSymbolText = leg.symbol.strCode;
            o.strCode = leg.symbol.strCode;
            o.nPriceType = 0;
            o.nDirection = buy ? kDirBuy : kDirSell;
            o.tCreateTime = now;
            o.dVolume = static_cast<double>(lots[i]);
            const auto bound = roll && i == 1 ? SpreadLimitBound::Opposite : SpreadLimitBound::Own;
            o.dPrice = spreadLegOrderPrice(o.nDirection, leg.tick, s.nOrderOffset, leg.step, bound);
            if (roll)
                o.nOpenClose = i == 0 ? kClose : kOpen;
            else
                o.nOpenClose = s.bExit ? kClose : kOpen;
            o.nHedge = hedge[i] ? kHedge : kSpeculation;
            batch.push_back(std::move(o));
            quoted[i] = buy ? leg.tick.dAsk : leg.tick.dBid;
        }
    }
    const double spread = buySpread ? m_prices.ask : m_prices.bid;
    const int accepted = m_manager.submitBatch(batch, s.bConfirmOrder != 0, t::kName, nullptr,
                                               CHelmsmanManage::Recorder::Caller);
    m_lastBatch = batch;
    if (!accepted) return SendResult::Cancelled;
    journal(batch, buySpread, spread, quoted);
    return SendResult::Sent;
}

void CManualSpread::journal(const std::vector<tagBrokerOrder>& batch, bool buySpread, double spread,
                            const std::array<double, kLegs>& legPrices) {
    static constexpr const char* kLegFigures[kLegs] = {"legA", "legB", "legC"};
    JournalEntry entry;
    entry.timeMs = m_manager.clock().nowMs();
    entry.tool = t::kName;
    entry.window = caption();
    entry.reason = buySpread ? t::kReasonBuy : t::kReasonSell;
    entry.figures.push_back({"spread", spread});
    for (int i = 0; i < legCount(); ++i) entry.figures.push_back({kLegFigures[i], legPrices[i]});
    entry.figures.push_back({"offset", static_cast<double>(m_settings.nOrderOffset)});
    for (const tagBrokerOrder& o : batch) {
        entry.tag = o.strRemark;
        entry.order = o;
        entry.result = hostTook(o);
        m_manager.journal().record(entry);
    }
}
