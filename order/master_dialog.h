// CMasterDialog: the order ticket's frame, without any widget. It holds the chosen account,
// exchange and symbol, the contract, the last quote and the quote subscription, the position,
// closable and openable texts, the status line, the chart switch and the ticket's algorithm
// settings block, and it owns the immediate page (CNormalOrder). The Qt window
// (order/ui/order_ticket_window) draws what this object holds and forwards the user's
// commands; it decides nothing.
//
// Handle and messages: the constructor takes a window handle from the manager (dialog 25001)
// and registers it, so the host's messages reach onMessage():
// - 2070 with event code 1000: a quote notice. The ticket reads its own symbol's snapshot with
//   GetMarketQuote; the notice's data is never read as a quote (a registered window also
//   hears notices of other windows' symbols). A snapshot equal to the one shown changes
//   nothing. Returns 1 for every 2070.
// - 2070 with event code 2: an order changed (lParam -> tagBrokerOrder). An order this ticket
//   sent updates the status line: its status, and the host's status message when the order
//   was refused, cancelled or expired, so a rejection is explained where it was sent from.
// - 2069 (logon state): the account list is read again (see reloadAccounts); a chosen
//   account that logged off is named on the status line at once. Returns 1.
// - 2065 (symbol link): wParam 1 and lParam -> tagSymbol switch the ticket and return 1; the
//   same exchange and code, an empty code, a symbol refused as untradable, or wParam other
//   than 1 return 0. A link reaches every open ticket; a refused one is announced once, by
//   the first ticket (see CHelmsmanManage::claimLinkRefusal).
// The handle is released when the object goes; after that nothing reaches it.
//
// Accounts: the account box always shows the account an order would go to. When the accounts
// change the chosen one is kept if it is still logged on; one that logged off is not replaced
// by another (the box shows no choice and a send is refused, naming it) until it logs on
// again or the user picks one. A ticket that had no choice takes the default account.
//
// Subscription: at most one symbol is subscribed at a time. Choosing a new symbol unsubscribes
// the old one first; the flag of a held subscription makes sure nothing is unsubscribed twice,
// and a symbol with an empty code is never sent to the facade.
//
// Position text: "持仓:%.f(%.f/%.f)" with the total, long and short quantities of GetPosition;
// "持仓:0" when the read fails or every quantity is 0. Beside it, what can be closed: each
// side's yesterday's and today's quantity less what working closing orders already hold
// (a 平仓 on exchange 0 holds yesterday's position only, elsewhere yesterday's first).
//
// Openable quantity "可开:%d": how many lots the account's free funds can margin at the
// current price:
//     floor(dAvailable / (price × dMultiplier × dMarginRate))
// with dAvailable from GetAccountSummary, dMultiplier and dMarginRate from the contract and
// price the last price (the ask, then the bid, when there is no last price yet). Free funds
// read successfully but not above 0 show "可开:0" (nothing can be opened, and that is known);
// "可开:N/A" when there is no account, the funds cannot be read, or the multiplier, margin
// rate or price is not above 0.000001. Funds are read when the account, the symbol or the
// position is refreshed; each quote only re-divides, so a quote costs no facade call beyond
// the snapshot read.
//
// Fills change position and funds, so the window calls refreshPosition() on a timer and
// after a send, and an order change of this ticket's own orders refreshes them too.
//
// Closing (close()): unsubscribe if subscribed, then save the settings (a copy of the
// in-memory record with the ticket's state written into it, see CNormalOrder::writeSettings
// and settingsOnClose()) and release the handle. Destroying without close() only unsubscribes
// and releases the handle: nothing is written that the user did not close.
//
// Thread contract: UI thread only, like every window of the module. The quote path
// (onMessage 2070/1000) formats into fixed buffers and allocates nothing.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "algo/algo_setting.h"
#include "app/settings.h"
#include "host/quote_subscription.h"
#include "host/records.h"
#include "host/window.h"
#include "order/normal_order.h"

class CHelmsmanManage;
struct tagHelmsmanPrefill;

// What changed, passed to the listener (a bit set).
enum TicketChange : unsigned {
    kTicketAccounts = 1u << 0,   // account list or choice
    kTicketExchanges = 1u << 1,  // exchange list or choice, symbol list of the exchange
    kTicketSymbol = 1u << 2,     // the chosen symbol and its contract
    kTicketQuote = 1u << 3,      // quote texts
    kTicketPosition = 1u << 4,   // position and openable texts
    kTicketPage = 1u << 5,       // immediate page values set by the core (prefill, hotkeys)
    kTicketChart = 1u << 6,      // chart shown or hidden
    kTicketStatus = 1u << 7,     // the status line
};

// What can be closed on each side: yesterday's and today's position, less what working
// closing orders hold. A sell closes the long side, a buy the short side.
struct TicketClosable {
    double longYesterday = 0, longToday = 0, shortYesterday = 0, shortToday = 0;
    double yesterday(std::int32_t direction) const {
        return direction == kDirSell ? longYesterday : shortYesterday;
    }
    double today(std::int32_t direction) const {
        return direction == kDirSell ? longToday : shortToday;
    }
};

// Quote texts in the contract's price precision, "-" for an absent value.
struct TicketQuoteTexts {
    using Text = std::array<char, 32>;
    Text last{}, bid{}, bidVol{}, ask{}, askVol{}, upper{}, lower{};
};

class CMasterDialog final : public IWndTarget {
public:
    explicit CMasterDialog(CHelmsmanManage& manage);
    ~CMasterDialog() override;
    CMasterDialog(const CMasterDialog&) = delete;
    CMasterDialog& operator=(const CMasterDialog&) = delete;

    CHelmsmanManage& manage() const { return m_manage; }
    WndHandle handle() const { return m_hWnd; }
    // Called after every change the core makes, with TicketChange bits.
    void setListener(std::function<void(unsigned)> listener) { m_listener = std::move(listener); }

    // Reads accounts and exchanges, sets the page from the settings, then takes account,
    // symbol and prices from the pre-fill block (when given) or, with bLoadLastSymbol, the
    // saved symbol; the chart is shown by bShowChartWnd.
    void open(const tagHelmsmanPrefill* prefill);
    // Unsubscribes, saves the ticket's state into the settings, releases the handle. Once.
    void close();
    bool closed() const { return m_closed; }
    // The record close() saves: a copy of the in-memory settings with the ticket's state.
    HelmsmanSettings settingsOnClose() const;

    // ---- Account -----------------------------------------------------------------------
    // Reads the logged-on accounts again: keeps the chosen account while it is logged on,
    // marks it logged off (no choice) when it is not, takes the default when there was none.
    void reloadAccounts();
    const std::vector<tagAccoutInfo>& accounts() const { return m_accounts; }
    int accountIndex() const { return m_accountIndex; }
    const tagAccoutInfo* account() const;
    // The chosen account logged off and nothing was chosen since: it is not replaced.
    bool accountLoggedOff() const { return m_accountLost; }
    const tagAccoutInfo& loggedOffAccount() const { return m_lostAccount; }
    void selectAccount(int index);
    // "%s(%s)": identifier and name, as every account list of the module shows it.
    static std::string accountText(const tagAccoutInfo& a);

    // ---- Exchange and symbol -----------------------------------------------------------
    const std::vector<tagExchangeInfo>& exchanges() const { return m_exchanges; }
    int exchangeId() const { return m_exchangeId; }
    // Chooses an exchange and reads its symbols (the current symbol stays until another is
    // chosen).
    void selectExchange(int exchangeId);
    const std::vector<tagSymbol>& exchangeSymbols() const { return m_exchangeSymbols; }

    // Switches to a symbol: refuses one the host marks untradable, or has no contract for,
    // with "当前商品不能进行交易，请重新选择商品！" (keeping the current symbol), moves the
    // subscription, reads contract, quote snapshot and position. True when the ticket now shows
    // `symbol` (also when it already did).
    bool selectSymbol(const tagSymbol& symbol);
    // A code the user typed: looked up (case-insensitively) in the shown exchange's list, then
    // in every other exchange's, so the exchange list follows the code; a code no list holds
    // is tried on the shown exchange (and refused when the host has no contract for it).
    bool selectCode(const std::string& code);
    const tagSymbol& symbol() const { return m_symbol; }
    const std::string& symbolText() const { return m_symbolText; }
    bool hasDetail() const { return m_hasDetail; }
    const IModuleFutureTrader::ISpecDetailValue& detail() const { return m_detail; }
    // One point of price (minimum move × price unit, on the 1/10000 grid); 0 without a contract.
    double pointValue() const;
    int priceDecimals() const { return m_decimals; }
    bool subscribed() const { return m_subscription.held(); }

    // ---- Quote, position ---------------------------------------------------------------
    const IModuleFutureTrader::ITickEx& tick() const { return m_tick; }
    bool quoteValid() const { return m_quoteValid; }
    const TicketQuoteTexts& quoteTexts() const { return m_quoteTexts; }
    // The price the openable quantity is computed at (0 when none).
    double referencePrice() const;
    std::string_view positionText() const { return m_positionText.data(); }
    std::string_view openableText() const { return m_openableText.data(); }
    const TicketClosable& closable() const { return m_closable; }
    std::string_view closableText() const { return m_closableText.data(); }
    // The closable quantities spelled out, with the exchange's closing rule.
    std::string closableToolTip() const;
    // Whether 平仓 closes only yesterday's position in the chosen symbol (exchange 0).
    bool closesYesterdayOnly() const { return !m_symbol.empty() && m_symbol.wExchangeID == 0; }
    // -1 when not computable ("可开:N/A").
    int openable() const { return m_openable; }
    // Reads position and funds again; notifies only when a text changed.
    void refreshPosition();

    // ---- Chart, trigger-page options, algorithm block -------------------------------
    bool chartShown() const { return m_chartShown; }
    void setChartShown(bool on);
    // The trigger page's two options; remembered in the settings on close.
    bool useLocalTrigger() const { return m_useLocalTrigger; }
    void setUseLocalTrigger(bool on) { m_useLocalTrigger = on; }
    bool useAlgoTrigger() const { return m_useAlgoTrigger; }
    void setUseAlgoTrigger(bool on) { m_useAlgoTrigger = on; }
    tagAlgoSetting& algoSetting() { return m_algoSetting; }
    const tagAlgoSetting& algoSetting() const { return m_algoSetting; }

    // ---- Status line: what became of the last order this ticket sent ------------------
    const std::string& statusText() const { return m_statusText; }
    bool statusIsError() const { return m_statusError; }
    // After a submission: the line for `order` (refused when the host refused it), and the
    // order is followed by its identifier from now on.
    void reportSubmitted(const tagBrokerOrder& order);
    // An order the host did not take (SendOrder failed).
    void reportNotSent(const tagBrokerOrder& order);

    CNormalOrder& normalOrder() { return m_normal; }
    const CNormalOrder& normalOrder() const { return m_normal; }

    // Tells the listener; used by the page after it changed its own values.
    void notify(unsigned changes) const {
        if (m_listener) m_listener(changes);
    }

    std::intptr_t onMessage(std::uint32_t msg, std::uintptr_t wParam,
                            std::uintptr_t lParam) override;

private:
    void applyPrefill(const tagHelmsmanPrefill& block);
    bool switchSymbol(const tagSymbol& symbol, bool linked);
    void onQuoteNotice();
    void onOrderChanged(const tagBrokerOrder& order);
    void setStatus(const tagBrokerOrder& order, std::string_view status, bool error);
    void readClosable();
    void formatClosable();
    void subscribe(const tagSymbol& symbol);
    void unsubscribe();
    void onQuote(const IModuleFutureTrader::ITickEx& tick);
    void formatQuote();
    void readFunds();
    void formatPosition();
    void formatOpenable();

    CHelmsmanManage& m_manage;
    WndHandle m_hWnd = 0;
    bool m_closed = false;
    std::function<void(unsigned)> m_listener;

    std::vector<tagAccoutInfo> m_accounts;
    int m_accountIndex = -1;
    bool m_accountLost = false;
    tagAccoutInfo m_lostAccount;

    std::vector<tagExchangeInfo> m_exchanges;
    int m_exchangeId = -1;
    std::vector<tagSymbol> m_exchangeSymbols;

    tagSymbol m_symbol;
    std::string m_symbolText;
    IModuleFutureTrader::ISpecDetailValue m_detail;
    bool m_hasDetail = false;
    int m_decimals = 2;

    CQuoteSubscription m_subscription;

    IModuleFutureTrader::ITickEx m_tick;
    IModuleFutureTrader::ITickEx m_snapshot;  // scratch for the quote read, reused
    bool m_quoteValid = false;
    TicketQuoteTexts m_quoteTexts;

    tagOpenedPosition m_position;
    bool m_hasPosition = false;
    bool m_fundsKnown = false;
    double m_available = 0;
    int m_openable = -1;
    std::array<char, 64> m_positionText{};
    std::array<char, 32> m_openableText{};
    TicketClosable m_closable;
    std::array<char, 96> m_closableText{};
    std::vector<tagBrokerOrder> m_workingScratch;

    std::string m_statusText;
    bool m_statusError = false;
    // Account and identifier of the orders this ticket sent that have not ended yet (most
    // recent last).
    std::vector<std::pair<std::string, std::string>> m_followed;

    bool m_chartShown = false;
    bool m_useLocalTrigger = false;
    bool m_useAlgoTrigger = false;
    tagAlgoSetting m_algoSetting;

    CNormalOrder m_normal;
};
