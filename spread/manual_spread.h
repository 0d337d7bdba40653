// CManualSpread: the manual spread order ("价差下单") without widgets. The trader picks two
// legs (A, B) or, with the butterfly switch, three (A, B, C); the tool shows the spread's
// live prices and its recent history, and on buy-spread or sell-spread builds one order per
// leg and per chosen account and hands the batch to the manager's batch submission, with or
// without the batch confirmation.
//
// Quotes: each leg's instrument is subscribed with the tool's own window handle; every quote
// notice for a leg replaces that leg's snapshot and recomputes the spread, and once every
// leg in use holds a valid quote it adds a point to the history. The quote path allocates
// nothing (bench_spread).
//
// Sending, in this order; a refusal says why and sends nothing:
//   1. at least one account ("请选择至少一个交易帐户！");
//   2. at least one spread unit per click ("交易数量必须大于等于1，请重新设置数量！");
//   3. a valid quote on every leg in use (warning, "商品A或商品B中存在无效的行情，…");
//   4. with bFirstLotsConfirm, a Yes to the quantity question ("交易数量") until the next
//      change of a leg's instrument; No ends the click;
//   5. silently: every leg in use has a bid and an ask, and none is locked at a limit;
//   6. per account, per leg: buying the spread buys A and sells B (and C), selling it the
//      reverse; volume lots x units; priced from the opposite side with the offset, rounded to
//      the step and bounded by the day's limit; every leg opens, or closes with bExit; in a
//      calendar roll (bChange, two legs only) A closes and B opens whatever bExit says, and
//      B's price is bounded on the other side; each order carries its leg's hedge toggle and
//      the click's time;
//   7. the batch goes to the manager (caller "价差下单", bConfirmOrder deciding the
//      confirmation); each order sent is recorded in the audit journal.
// Once handed over, the tool keeps no record of the orders.
//
// Settings: read from Profile.ini section "ManualSpread" when the tool opens; named
// templates in ManualSpread.dat through the shared template commands. Closing writes nothing.
//
// Owned by its window (or a test or a replay adapter); UI thread only.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host/records.h"
#include "host/window.h"
#include "spread/manual_spread_calc.h"
#include "spread/spread_templates.h"
#include "spread/template_commands.h"

class CHelmsmanManage;

class CManualSpread final : public IWndTarget {
public:
    static constexpr int kLegs = 3;

    // What changed, for the window's listener.
    enum Change : unsigned {
        kChangeQuote = 1u << 0,     // prices, history, caption
        kChangeSettings = 1u << 1,  // settings or template (show them again)
        kChangeAccounts = 1u << 2,
    };

    enum class SendResult {
        Refused,    // a message said why
        Declined,   // the trader answered No to the quantity question
        Skipped,    // a leg without a two-sided quote or locked at a limit: nothing said
        Cancelled,  // the batch confirmation was cancelled
        Sent,
    };

    explicit CManualSpread(CHelmsmanManage& manager);
    ~CManualSpread() override;
    CManualSpread(const CManualSpread&) = delete;
    CManualSpread& operator=(const CManualSpread&) = delete;

    WndHandle handle() const { return m_hWnd; }
    void setListener(std::function<void(unsigned)> listener) { m_listener = std::move(listener); }

    // ---- Settings ---------------------------------------------------------------------
    const tagManualSpreadTemplate& settings() const { return m_settings; }
    // The fields the window edits directly (multipliers, lots, offset, switches). Call
    // settingsEdited() after a change of the multipliers, which moves the prices.
    tagManualSpreadTemplate& editSettings() { return m_settings; }
    void settingsEdited();
    // Switches the third leg on or off; the history starts afresh.
    void setButterfly(bool on);
    int legCount() const { return m_settings.bButterfly ? 3 : 2; }
    const std::string& templateName() const { return m_templateName; }

    // ---- Legs -------------------------------------------------------------------------
    // Chooses leg i's instrument (an empty code clears it): subscribes its quotes, reads its
    // step and current quote, clears the history and asks the quantities again. False when
    // the instrument was already that one.
    bool setLeg(int i, const tagSymbol& symbol);
    tagSymbol leg(int i) const;
    bool hasQuote(int i) const { return m_legs[i].valid; }
    const IModuleFutureTrader::ITickEx& quote(int i) const { return m_legs[i].tick; }
    const SpreadLegStep& step(int i) const { return m_legs[i].step; }
    bool quantitiesConfirmed() const { return m_lotsConfirmed; }

    // ---- Market -----------------------------------------------------------------------
    // A quote notice; true when it was for one of the legs.
    bool onQuote(const IModuleFutureTrader::ITickEx& tick);
    std::intptr_t onMessage(std::uint32_t msg, std::uintptr_t wParam,
                            std::uintptr_t lParam) override;
    const SpreadPrices& prices() const { return m_prices; }
    const CSpreadHistory& history() const { return m_history; }
    std::string rowText(SpreadRow row) const { return spreadRowText(m_prices, row); }
    std::string caption() const;

    // ---- Accounts and instruments -----------------------------------------------------
    const std::vector<tagAccoutInfo>& accounts() const { return m_accounts; }
    // Reads the logged-on accounts again; true when the list changed.
    bool reloadAccounts();
    // "%s(%s)": identifier and name, as every account list shows it.
    static std::string accountText(const tagAccoutInfo& account);
    // The account preselected when the tool opens: the default account of the settings when
    // it is logged on, else the only account; -1 for none.
    int defaultAccount() const;
    std::vector<tagExchangeInfo> exchanges() const;
    std::vector<tagSymbol> symbols(int exchangeId) const;

    // ---- Sending ----------------------------------------------------------------------
    // Buys (or sells) the spread for `accounts`; `hedge[i]` is leg i's hedge toggle now.
    SendResult send(bool buySpread, const std::vector<tagAccoutInfo>& accounts,
                    const std::array<bool, kLegs>& hedge);
    // The batch last built (what was confirmed and sent, as the host wrote it back).
    const std::vector<tagBrokerOrder>& lastBatch() const { return m_lastBatch; }

    // ---- Templates --------------------------------------------------------------------
    ITemplateCommands& templates() { return *m_templates; }
    // Takes a template (its name too), keeping the window's chart switch.
    void applyTemplate(const tagManualSpreadTemplate& t);

private:
    struct Leg {
        tagSymbol symbol;
        IModuleFutureTrader::ITickEx tick;
        bool valid = false;
        SpreadLegStep step;
    };

    // Subscribes or unsubscribes a symbol unless another leg still holds it.
    void subscribe(const tagSymbol& symbol, bool on);
    void recompute(bool addPoint);
    bool allLegsValid() const;
    void notify(unsigned what) {
        if (m_listener) m_listener(what);
    }
    void journal(const std::vector<tagBrokerOrder>& batch, bool buySpread, double spread,
                 const std::array<double, kLegs>& legPrices);

    CHelmsmanManage& m_manager;
    WndHandle m_hWnd = 0;
    tagManualSpreadTemplate m_settings;
    std::string m_templateName;
    std::array<Leg, kLegs> m_legs;
    SpreadPrices m_prices;
    CSpreadHistory m_history;
    bool m_lotsConfirmed = false;
    std::vector<tagAccoutInfo> m_accounts;
    std::vector<tagBrokerOrder> m_lastBatch;
    std::unique_ptr<CToolTemplates<tagManualSpreadTemplate>> m_templates;
    std::function<void(unsigned)> m_listener;
};
