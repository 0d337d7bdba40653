#include "order/master_dialog.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "app/exports.h"
#include "app/helmsman_manage.h"
#include "host/price.h"
#include "order/order_strings.h"

namespace {

constexpr std::size_t kCodeBytes = 8;  // the module keeps at most 8 bytes of a code

bool sameAccount(const tagAccoutInfo& a, const tagAccoutInfo& b) {
    return a.strAccountID == b.strAccountID && a.strBrokerID == b.strBrokerID;
}

bool equalsIgnoreCase(const std::string& a, const std::string& b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c; };
        if (lower(a[i]) != lower(b[i])) return false;
    }
    return true;
}

// Whether two snapshots show the same thing (a registered ticket hears one quote twice: by
// its subscription and by the manager's forwarding).
bool sameQuote(const IModuleFutureTrader::ITickEx& a, const IModuleFutureTrader::ITickEx& b) {
    return a.tQuoteTime == b.tQuoteTime && a.dLast == b.dLast && a.dBid == b.dBid &&
           a.dBidVol == b.dBidVol && a.dAsk == b.dAsk && a.dAskVol == b.dAskVol &&
           a.dVolume == b.dVolume && a.dUpperLimit == b.dUpperLimit &&
           a.dLowerLimit == b.dLowerLimit && a.dPreSettle == b.dPreSettle;
}

tagSymbol normalised(const tagSymbol& s) {
    tagSymbol out = s;
    if (out.strCode.size() > kCodeBytes) out.strCode.resize(kCodeBytes);
    return out;
}

// Fixed-point text without the C locale's say: the Qt application sets the process locale
// from the environment, and a price must never show a decimal comma. No allocation.
template <std::size_t N>
void formatFixed(std::array<char, N>& out, double v, int decimals) {
    const auto r =
        std::to_chars(out.data(), out.data() + N - 1, v, std::chars_format::fixed, decimals);
    *(r.ec == std::errc() ? r.ptr : out.data()) = '\0';
}

template <std::size_t N>
void formatAbsent(std::array<char, N>& out) {
    std::snprintf(out.data(), N, "%s", order_text::kNoValue);
}

template <std::size_t N>
void formatPrice(std::array<char, N>& out, double v, int decimals) {
    if (isPricePresent(v))
        formatFixed(out, v, decimals);
    else
        formatAbsent(out);
}

template <std::size_t N>
void formatVolume(std::array<char, N>& out, double v) {
    if (isPricePresent(v))
        formatFixed(out, v, 0);
    else
        formatAbsent(out);
}

}  // namespace

CMasterDialog::CMasterDialog(CHelmsmanManage& manage)
    : m_manage(manage),
      m_hWnd(manage.createHandle(this, order_text::kTicketDialogId)),
      m_normal(*this) {
    // Registered: logon changes (2069) and order changes (2070) reach the ticket.
    m_manage.registerWindow(m_hWnd);
    formatQuote();
    formatPosition();
    formatOpenable();
    formatClosable();
}

CMasterDialog::~CMasterDialog() {
    if (!m_closed) {
        unsubscribe();
        m_manage.releaseHandle(m_hWnd);
    }
}

void CMasterDialog::open(const tagHelmsmanPrefill* prefill) {
    reloadAccounts();
    if (CSubscibeManage* facade = m_manage.facade()) {
        m_exchanges.clear();
        facade->GetAllExchanges(m_exchanges);
    }
    const HelmsmanSettings& s = m_manage.settings();
    m_normal.readSettings(s);
    m_useLocalTrigger = s.bUseLocalTrigger != 0;
    m_useAlgoTrigger = s.bUseAlgoTradingTrigger != 0;
    m_chartShown = s.bShowChartWnd != 0;

    if (prefill) applyPrefill(*prefill);
    // The saved symbol unless the opener named one (a refused named symbol is not replaced).
    if ((!prefill || prefill->symbol.empty()) && s.bLoadLastSymbol && !s.szSymbolCode.empty())
        selectSymbol(tagSymbol{s.wExchangeID, s.szSymbolCode});

    if (m_exchangeId < 0 && !m_exchanges.empty()) selectExchange(m_exchanges.front().nExchangeID);
    notify(kTicketAccounts | kTicketExchanges | kTicketSymbol | kTicketQuote | kTicketPosition |
           kTicketPage | kTicketChart);
}

void CMasterDialog::applyPrefill(const tagHelmsmanPrefill& block) {
    if (!block.account.strAccountID.empty()) {
        for (std::size_t i = 0; i < m_accounts.size(); ++i) {
            const tagAccoutInfo& a = m_accounts[i];
            if (a.strAccountID == block.account.strAccountID &&
                (block.account.strBrokerID.empty() || a.strBrokerID == block.account.strBrokerID)) {
                selectAccount(static_cast<int>(i));
                break;
            }
        }
    }
    if (!block.symbol.empty()) selectSymbol(block.symbol);

    CNormalOrder::Controls& c = m_normal.controls();
    if (isPricePresent(block.dPrice)) {
        // A given price is meant to be used: a checked bid/ask box would ignore it.
        c.price = block.dPrice;
        c.useBidAsk = false;
    }
    if (isPricePresent(block.dStopLoss)) {
        c.stopLoss = true;
        c.stopLossAuto = false;
        c.stopLossPrice = block.dStopLoss;
    }
    if (isPricePresent(block.dTakeProfit)) {
        c.takeProfit = true;
        c.takeProfitAuto = false;
        c.takeProfitPrice = block.dTakeProfit;
    }
    if (isPricePresent(block.dVolume)) c.volumeText = CNormalOrder::formatNumber(block.dVolume);
}

void CMasterDialog::close() {
    if (m_closed) return;
    m_closed = true;
    unsubscribe();
    m_manage.saveSettings(settingsOnClose());
    m_manage.releaseHandle(m_hWnd);
}

HelmsmanSettings CMasterDialog::settingsOnClose() const {
    HelmsmanSettings s = m_manage.settings();
    if (s.bLoadLastSymbol && !m_symbol.empty()) {
        s.wExchangeID = m_symbol.wExchangeID;
        s.szSymbolCode = m_symbol.strCode;
    }
    m_normal.writeSettings(s);
    s.bUseLocalTrigger = m_useLocalTrigger ? 1 : 0;
    s.bUseAlgoTradingTrigger = m_useAlgoTrigger ? 1 : 0;
    return s;
}

// ---- Account -----------------------------------------------------------------------------

void CMasterDialog::reloadAccounts() {
    tagAccoutInfo previous;
    bool hadChoice = false;
    if (const tagAccoutInfo* a = account()) {
        previous = *a;
        hadChoice = true;
    } else if (m_accountLost) {
        previous = m_lostAccount;
        hadChoice = true;
    }
    m_accounts.clear();
    if (CSubscibeManage* facade = m_manage.facade()) facade->GetAvailableAccounts(m_accounts);

    int choice = -1;
    for (std::size_t i = 0; i < m_accounts.size() && hadChoice && choice < 0; ++i)
        if (sameAccount(m_accounts[i], previous)) choice = static_cast<int>(i);
    if (hadChoice) {
        // Orders go where the box says; an account gone is never swapped for another.
        m_accountLost = choice < 0;
        m_lostAccount = m_accountLost ? previous : tagAccoutInfo{};
    } else {
        const HelmsmanSettings& s = m_manage.settings();
        for (std::size_t i = 0; i < m_accounts.size() && choice < 0; ++i)
            if (s.bUserDefaultAcct && m_accounts[i].strAccountID == s.strAccountID &&
                (s.strBrokerID.empty() || m_accounts[i].strBrokerID == s.strBrokerID))
                choice = static_cast<int>(i);
        if (choice < 0 && !m_accounts.empty()) choice = 0;
    }
    m_accountIndex = choice;
    readFunds();
    formatPosition();
    formatOpenable();
}

const tagAccoutInfo* CMasterDialog::account() const {
    if (m_accountIndex < 0 || m_accountIndex >= static_cast<int>(m_accounts.size())) return nullptr;
    return &m_accounts[static_cast<std::size_t>(m_accountIndex)];
}

void CMasterDialog::selectAccount(int index) {
    if (index < 0 || index >= static_cast<int>(m_accounts.size()) || index == m_accountIndex)
        return;
    m_accountIndex = index;
    m_accountLost = false;
    m_lostAccount = tagAccoutInfo{};
    refreshPosition();
    notify(kTicketAccounts | kTicketPosition);
}

std::string CMasterDialog::accountText(const tagAccoutInfo& a) {
    return a.strAccountID + "(" + a.strAccountName + ")";
}

// ---- Exchange and symbol -----------------------------------------------------------------

void CMasterDialog::selectExchange(int exchangeId) {
    if (exchangeId == m_exchangeId) return;
    m_exchangeId = exchangeId;
    m_exchangeSymbols.clear();
    if (CSubscibeManage* facade = m_manage.facade())
        facade->GetExchangeSymbols(exchangeId, m_exchangeSymbols, 0);
    notify(kTicketExchanges);
}

bool CMasterDialog::selectSymbol(const tagSymbol& wanted) { return switchSymbol(wanted, false); }

bool CMasterDialog::selectCode(const std::string& code) {
    if (code.empty()) return false;
    const auto find = [&](const std::vector<tagSymbol>& list, tagSymbol& out) {
        for (const tagSymbol& s : list)
            if (equalsIgnoreCase(s.strCode, code)) {
                out = s;
                return true;
            }
        return false;
    };
    tagSymbol found;
    bool known = find(m_exchangeSymbols, found);
    if (CSubscibeManage* facade = m_manage.facade(); !known && facade) {
        std::vector<tagSymbol> list;
        for (const tagExchangeInfo& ex : m_exchanges) {
            if (ex.nExchangeID == m_exchangeId) continue;
            list.clear();
            facade->GetExchangeSymbols(ex.nExchangeID, list, 0);
            if ((known = find(list, found))) break;
        }
    }
    if (!known) found = tagSymbol{static_cast<std::uint16_t>(std::max(0, m_exchangeId)), code};
    return selectSymbol(found);
}

bool CMasterDialog::switchSymbol(const tagSymbol& wanted, bool linked) {
    const tagSymbol s = normalised(wanted);
    if (s.empty()) return false;
    if (s == m_symbol) return true;
    CSubscibeManage* facade = m_manage.facade();
    if (!facade) return false;

    IModuleFutureTrader::ISpecDetailValue detail;
    // A code the host has no contract for (a typo) cannot be traded either.
    const bool hasDetail = facade->GetSymbolProperty(s, detail) != 0;
    if (!hasDetail || !detail.bTradable) {
        // A link reaches every ticket; one box says it for all of them.
        if (!linked || m_manage.claimLinkRefusal(s))
            m_manage.prompter().inform(order_text::kCaptionPrompt,
                                       order_text::kMsgSymbolNotTradableChoose);
        return false;
    }
    if (linked) m_manage.linkAccepted();

    unsubscribe();
    m_symbol = s;
    m_symbolText = s.strCode;
    m_detail = detail;
    m_hasDetail = true;
    m_decimals = price::decimals(m_detail.nMinMove, m_detail.fPriceUnit);
    subscribe(s);
    selectExchange(s.wExchangeID);

    m_tick = IModuleFutureTrader::ITickEx{};
    m_quoteValid = facade->GetMarketQuote(s, m_tick) != 0;
    m_tick.wExchangeID = s.wExchangeID;
    m_tick.strCode = s.strCode;
    formatQuote();
    m_normal.onSymbolChanged();

    m_hasPosition = false;
    refreshPosition();
    notify(kTicketSymbol | kTicketQuote | kTicketPosition | kTicketPage);
    return true;
}

double CMasterDialog::pointValue() const {
    // On the rounding's 1/10000 grid, free of the single-precision price unit's noise.
    return m_hasDetail ? price::pointOnGrid(m_detail.nMinMove, m_detail.fPriceUnit) : 0.0;
}

void CMasterDialog::subscribe(const tagSymbol& s) {
    m_subscription.bind(m_manage.facade(), m_hWnd);
    m_subscription.switchTo(s);
}

void CMasterDialog::unsubscribe() {
    m_subscription.release();
}

// ---- Quote -------------------------------------------------------------------------------

std::intptr_t CMasterDialog::onMessage(std::uint32_t msg, std::uintptr_t wParam,
                                       std::uintptr_t lParam) {
    switch (msg) {
        case kMsgDataChange:
            switch (eventKind(static_cast<std::uint32_t>(wParam))) {
                case kEventQuote:
                    onQuoteNotice();
                    break;
                case kEventOrderChanged:
                    if (lParam != 0)
                        onOrderChanged(*reinterpret_cast<const tagBrokerOrder*>(lParam));
                    break;
                default:
                    break;
            }
            return 1;
        case kMsgLogonState: {
            const bool wasLost = m_accountLost;
            reloadAccounts();
            refreshPosition();
            unsigned changes = kTicketAccounts | kTicketPosition;
            if (m_accountLost && !wasLost) {
                // Say at once why the account box went empty, not only at the next send.
                char text[256];
                std::snprintf(text, sizeof text, order_text::kMsgAccountLoggedOff,
                              accountText(m_lostAccount).c_str());
                m_statusText = text;
                m_statusError = true;
                changes |= kTicketStatus;
            }
            notify(changes);
            return 1;
        }
        case kMsgSymbolLink: {
            if (wParam != 1 || lParam == 0) return 0;
            const tagSymbol& linked = *reinterpret_cast<const tagSymbol*>(lParam);
            const tagSymbol s = normalised(linked);
            if (s.empty() || s == m_symbol) return 0;
            return switchSymbol(s, true) ? 1 : 0;
        }
        default:
            return 0;
    }
}

void CMasterDialog::onQuoteNotice() {
    CSubscibeManage* facade = m_manage.facade();
    if (m_symbol.empty() || !facade) return;
    if (facade->GetMarketQuote(m_symbol, m_snapshot) == 0) return;
    if (m_quoteValid && sameQuote(m_snapshot, m_tick)) return;
    onQuote(m_snapshot);
}

void CMasterDialog::onQuote(const IModuleFutureTrader::ITickEx& tick) {
    m_tick = tick;
    m_tick.wExchangeID = m_symbol.wExchangeID;
    m_tick.strCode = m_symbol.strCode;
    m_quoteValid = true;
    formatQuote();
    formatOpenable();
    notify(kTicketQuote | kTicketPosition);
}

void CMasterDialog::formatQuote() {
    const int d = m_decimals;
    const bool q = m_quoteValid;
    formatPrice(m_quoteTexts.last, q ? m_tick.dLast : 0, d);
    formatPrice(m_quoteTexts.bid, q ? m_tick.dBid : 0, d);
    formatVolume(m_quoteTexts.bidVol, q ? m_tick.dBidVol : 0);
    formatPrice(m_quoteTexts.ask, q ? m_tick.dAsk : 0, d);
    formatVolume(m_quoteTexts.askVol, q ? m_tick.dAskVol : 0);
    formatPrice(m_quoteTexts.upper, q ? m_tick.dUpperLimit : 0, d);
    formatPrice(m_quoteTexts.lower, q ? m_tick.dLowerLimit : 0, d);
}

double CMasterDialog::referencePrice() const {
    if (!m_quoteValid) return 0;
    if (isPricePresent(m_tick.dLast)) return m_tick.dLast;
    if (isPricePresent(m_tick.dAsk)) return m_tick.dAsk;
    if (isPricePresent(m_tick.dBid)) return m_tick.dBid;
    return 0;
}

// ---- Position and openable ---------------------------------------------------------------

void CMasterDialog::readFunds() {
    m_fundsKnown = false;
    m_available = 0;
    const tagAccoutInfo* a = account();
    CSubscibeManage* facade = m_manage.facade();
    if (!a || !facade) return;
    tagAccountSummary summary;
    if (facade->GetAccountSummary(summary, a->strAccountID, a->strBrokerID) != 0) {
        m_fundsKnown = true;
        m_available = summary.dAvailable;
    }
}

void CMasterDialog::refreshPosition() {
    const std::string before = std::string(positionText()) + "|" + std::string(openableText()) +
                               "|" + std::string(closableText());
    m_hasPosition = false;
    const tagAccoutInfo* a = account();
    CSubscibeManage* facade = m_manage.facade();
    if (a && facade && !m_symbol.empty()) {
        m_position = tagOpenedPosition{};
        m_hasPosition =
            facade->GetPosition(m_position, a->strAccountID, a->strBrokerID, m_symbol) != 0;
    }
    readFunds();
    readClosable();
    formatPosition();
    formatOpenable();
    formatClosable();
    if (before != std::string(positionText()) + "|" + std::string(openableText()) + "|" +
                      std::string(closableText()))
        notify(kTicketPosition);
}

void CMasterDialog::formatPosition() {
    const tagOpenedPosition& p = m_position;
    const bool any = m_hasPosition &&
                     (isPricePresent(std::fabs(p.dTotal)) || isPricePresent(std::fabs(p.dLong)) ||
                      isPricePresent(std::fabs(p.dShort)));
    if (any)
        std::snprintf(m_positionText.data(), m_positionText.size(), order_text::kPositionFormat,
                      p.dTotal, p.dLong, p.dShort);
    else
        std::snprintf(m_positionText.data(), m_positionText.size(), "%s",
                      order_text::kPositionNone);
}

void CMasterDialog::formatOpenable() {
    const double price = referencePrice();
    const double perLot = price * m_detail.dMultiplier * m_detail.dMarginRate;
    if (!account() || !m_fundsKnown || !m_hasDetail || !isPricePresent(m_detail.dMultiplier) ||
        !isPricePresent(m_detail.dMarginRate) || !isPricePresent(price) || !(perLot > 0)) {
        m_openable = -1;
        std::snprintf(m_openableText.data(), m_openableText.size(), "%s",
                      order_text::kOpenableUnknown);
        return;
    }
    double lots = m_available > 0 ? std::floor(m_available / perLot) : 0.0;
    if (lots > static_cast<double>(INT_MAX)) lots = static_cast<double>(INT_MAX);
    if (static_cast<int>(lots) == m_openable) return;  // most quotes change nothing here
    m_openable = static_cast<int>(lots);
    std::snprintf(m_openableText.data(), m_openableText.size(), order_text::kOpenableFormat,
                  m_openable);
}

// ---- Chart -------------------------------------------------------------------------------

void CMasterDialog::setChartShown(bool on) {
    if (on == m_chartShown) return;
    m_chartShown = on;
    notify(kTicketChart);
}
