// CFastExit: fast exit ("快速平仓", dialog 25019) without widgets. It closes part or all of one
// account's long or short position in one instrument with one click: closeLong() sells out of
// the long side, closeShort() buys back the short side.
//
// A close, in this order (every correction is announced in a box and then applied; only a
// missing price, a missing account or an empty side stop it):
//   1. the account is logged on ("请先登录交易帐户！"), the side holds lots;
//   2. the price: the typed price, or with bUseBidAskPrice the touch (the bid for a sell, the
//      ask for a buy) moved nOffsetPoint points through the market when bUserBidAskOffset is
//      on; an absent touch falls back to the other side's price without offset; no price at
//      all stops with "买卖价无效，请手工输入价格！" (caption "提示 ");
//   3. a price outside the day's limit band (when the quote has a sane one) becomes that
//      limit;
//   4. a volume above the side by more than 0.01 becomes the side; lots that working closing
//      orders already hold are taken off too;
//   5. the price is rounded to the tick (sells down, buys up);
//   6. the close is split the way the exchange books closes (close_plan::split): one order,
//      or on exchange 0 平仓 for yesterday's lots and 平今 for today's;
//   7. submitted through the manager with bShowNormalOrderConfirm as the confirmation flag:
//      one order through the single confirmation, a split through the batch confirmation;
//      with bUseAlgoTrading the orders carry a threshold block every volume reaches, so the
//      manager hands them to algorithmic execution. Each order is recorded in the journal.
//
// Options live in section "FastExit" of Profile.ini (defaults 1, 1, 1, 0).
//
// Owned by its window. Thread contract: UI thread only.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "account/close_plan.h"
#include "host/records.h"

class CHelmsmanManage;

struct FastExitOptions {
    std::int32_t bUseBidAskPrice = 1;
    std::int32_t bUserBidAskOffset = 1;
    std::int32_t nOffsetPoint = 1;
    std::int32_t bUseAlgoTrading = 0;

    static FastExitOptions load(const std::filesystem::path& profile);
    bool save(const std::filesystem::path& profile) const;
};

class CFastExit {
public:
    enum class Result { Stopped, Cancelled, Sent, Failed };

    // Opens on `position` (its account and instrument) when given; `code` names the
    // instrument when the block does not. Without a position: the first account and its
    // first position.
    CFastExit(CHelmsmanManage& manage, const tagOpenedPosition* position, const std::string& code);

    // ---- Account and instrument --------------------------------------------------------
    const std::vector<tagAccoutInfo>& accounts() const { return m_accounts; }
    int accountIndex() const { return m_account; }
    const tagAccoutInfo* account() const;
    // Reads the logged-on accounts again, keeping the chosen one when it is still there.
    void reloadAccounts();
    void selectAccount(int index);
    // Instruments the chosen account holds a position in, in the host's order.
    const std::vector<tagSymbol>& heldSymbols() const { return m_held; }
    void selectSymbol(const tagSymbol& symbol);
    const tagSymbol& symbol() const { return m_symbol; }

    // ---- What the window shows -----------------------------------------------------------
    // Reads quote, position and working orders again; true when the quote carries a price.
    bool refresh();
    const IModuleFutureTrader::ITickEx& tick() const { return m_tick; }
    const tagOpenedPosition& position() const { return m_position; }
    const close_plan::Closable& closable() const { return m_closable; }
    int priceDecimals() const { return m_decimals; }
    double point() const;
    std::string positionText() const;

    FastExitOptions& options() { return m_options; }
    const FastExitOptions& options() const { return m_options; }
    void saveOptions() const;
    double volume = 0;       // the volume box
    double manualPrice = 0;  // the price box, used when bUseBidAskPrice is off

    Result closeLong() { return close(kDirSell); }
    Result closeShort() { return close(kDirBuy); }
    Result close(std::int32_t direction);
    // The orders of the last close, as the host wrote them back (empty when it stopped).
    const std::vector<tagBrokerOrder>& lastOrders() const { return m_last; }
    // The window that records in the journal (its caption or handle).
    void setWindowName(std::string name) { m_windowName = std::move(name); }

private:
    void inform(const char* caption, const char* text) const;
    void readPosition();

    CHelmsmanManage& m_manage;
    std::vector<tagAccoutInfo> m_accounts;
    int m_account = -1;
    std::vector<tagSymbol> m_held;
    tagSymbol m_symbol;
    IModuleFutureTrader::ISpecDetailValue m_detail;
    bool m_hasDetail = false;
    int m_decimals = 2;
    IModuleFutureTrader::ITickEx m_tick;
    bool m_quoteValid = false;
    tagOpenedPosition m_position;
    close_plan::Closable m_closable;
    FastExitOptions m_options;
    std::vector<tagBrokerOrder> m_last;
    std::string m_windowName = "快速平仓";
};
