// CBatchTrader: the multi-account batch order ("多帐户批量下单", dialog 25009) without widgets.
// One order (instrument, direction, open/close, price) is sent to many accounts at once, each
// account's volume either its multiple of a base volume (Multiple.csv) or its volume in a
// named volume set (CustomVol.csv); see batch_csv.h for the files.
//
// The volume of an account: by multiple, base x multiple rounded down to whole lots (an
// account without a line trades the base once); by set, the set's volume for the account (0
// when it has none). Accounts with 0 lots and unchecked accounts send nothing. The batch goes
// through the batch confirmation (the trader may still edit prices and volumes there), then
// the manager's batch submission; each order sent is recorded in the journal.
//
// The price is the typed one, or with "对价" the opposite touch (a buy at the ask, a sell at
// the bid), kept inside the limit band and rounded to the tick for the direction.
//
// It has a window handle and answers message 2065 like the ticket: with a first parameter 1
// it switches to the linked symbol and returns 1, or returns 0 when the symbol is the one it
// has; any other first parameter returns 0. Message 2070 with an order notice returns 1.
//
// Owned by its window. Thread contract: UI thread only.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "account/batch_csv.h"
#include "account/fast_delete_all.h"
#include "host/records.h"
#include "host/window.h"

class CHelmsmanManage;

class CBatchTrader : public IWndTarget {
public:
    enum class Mode { Multiple, CustomSet };
    enum class Result { Refused, Cancelled, Sent };

    CBatchTrader(CHelmsmanManage& manage, const tagSymbol* symbol);
    ~CBatchTrader() override;
    CBatchTrader(const CBatchTrader&) = delete;
    CBatchTrader& operator=(const CBatchTrader&) = delete;

    WndHandle handle() const { return m_handle; }
    std::intptr_t onMessage(std::uint32_t msg, std::uintptr_t wParam, std::uintptr_t lParam) override;

    // ---- Instrument and quote ------------------------------------------------------------
    // False for an unknown instrument (nothing changes).
    bool selectSymbol(const tagSymbol& symbol);
    const tagSymbol& symbol() const { return m_symbol; }
    void refreshQuote();
    const IModuleFutureTrader::ITickEx& tick() const { return m_tick; }
    int priceDecimals() const { return m_decimals; }
    double tickSize() const;
    // Called after a symbol switch (a link or the instrument box), for the window to redraw.
    void setOnSymbolChanged(std::function<void()> f) { m_onSymbol = std::move(f); }

    // ---- The order ---------------------------------------------------------------------------
    std::int32_t openClose = kOpen;
    double price = 0;        // the typed price
    bool touchPrice = true;  // "对价": the opposite touch instead of the typed price
    double baseVolume = 1;
    Mode mode = Mode::Multiple;
    std::string set;  // the chosen volume set

    // ---- Accounts and their volumes ----------------------------------------------------------
    AccountChoice& accounts() { return m_accounts; }
    void reloadAccounts();
    // The multiple or set volume shown for an account, and the lots it would trade.
    double factorOf(const tagAccoutInfo& account) const;
    double volumeOf(const tagAccoutInfo& account) const;
    void setMultiple(const tagAccoutInfo& account, double multiple);
    void setSetVolume(const tagAccoutInfo& account, double volume);
    std::vector<std::string> setNames() const;

    // ---- Files ---------------------------------------------------------------------------------
    // Loads both files; the messages of anything not understood (empty when all loaded).
    std::vector<std::string> loadFiles();
    // Saves both; the messages of files not saved.
    std::vector<std::string> saveFiles() const;
    const batch_csv::MultipleTable& multiples() const { return m_multiples; }
    const batch_csv::CustomVolTable& customVolumes() const { return m_custom; }

    // Builds the orders, confirms and sends them (see the header comment).
    Result send(std::int32_t direction);
    const std::vector<tagBrokerOrder>& lastOrders() const { return m_last; }

private:
    double orderPrice(std::int32_t direction) const;

    CHelmsmanManage& m_manage;
    WndHandle m_handle = 0;
    tagSymbol m_symbol;
    IModuleFutureTrader::ISpecDetailValue m_detail;
    bool m_hasDetail = false;
    int m_decimals = 2;
    IModuleFutureTrader::ITickEx m_tick;
    AccountChoice m_accounts;
    batch_csv::MultipleTable m_multiples;
    batch_csv::CustomVolTable m_custom;
    std::vector<tagBrokerOrder> m_last;
    std::function<void()> m_onSymbol;
};
