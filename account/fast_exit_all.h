// CFastExitAll: exit-all ("一键全平", dialog 25033) without widgets. It lists every position
// side of the chosen accounts, each with a check box (checked when listed), and closes the
// checked ones in one batch: every side at its touch moved the offset through the market
// (a sell at the bid less the offset, a buy at the ask plus it; the other side's price when
// that one is absent), kept inside the day's limit band and rounded to the tick, split the
// way the exchange books closes (close_plan::split). The batch always goes through the batch
// confirmation, where the trader may still change a price or a volume; sides without any
// price are left out and named in a box. Each order sent is recorded in the journal.
//
// The offset is kept in section "FastExitAll" of Profile.ini (nOffsetPoint, default 1).
//
// Owned by its window. Thread contract: UI thread only.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "account/account_choice.h"
#include "account/close_plan.h"
#include "host/records.h"

class CHelmsmanManage;

class CFastExitAll {
public:
    struct Row {
        tagAccoutInfo account;
        tagSymbol symbol;
        std::int32_t direction = kDirSell;  // of the closing order: a sell closes a long side
        close_plan::SideLots held;
        close_plan::SideLots free;  // less what working closing orders hold
        double price = 0;           // the touch with the offset, 0 when there is none
        int decimals = 2;
        bool checked = true;
    };
    enum class Result { Nothing, Cancelled, Sent };

    explicit CFastExitAll(CHelmsmanManage& manage);

    // The logged-on accounts, each with its check box (all checked at first); refresh()
    // after a change.
    AccountChoice& accounts() { return m_accounts; }

    int offsetPoints() const { return m_offset; }
    void setOffsetPoints(int points);
    void saveOptions() const;

    // Reads accounts, positions, working orders and quotes again. Rows keep their check box
    // when they are still there.
    void refresh();
    // Prices again from the quotes (a quote notice), nothing else.
    void reprice();
    const std::vector<Row>& rows() const { return m_rows; }
    void setChecked(std::size_t row, bool on) { m_rows.at(row).checked = on; }
    // "共5笔持仓，选中3笔，合计12张".
    std::string summary() const;
    std::string cell(std::size_t row, int column) const;

    // Closes the checked rows (see the header comment).
    Result closeChecked();
    const std::vector<tagBrokerOrder>& lastOrders() const { return m_last; }
    void setWindowName(std::string name) { m_windowName = std::move(name); }

private:
    struct Contract {
        IModuleFutureTrader::ISpecDetailValue detail;
        bool known = false;
    };
    const Contract& contractOf(const tagSymbol& symbol);
    double priceOf(const Row& row, const IModuleFutureTrader::ITickEx& tick);

    CHelmsmanManage& m_manage;
    AccountChoice m_accounts;
    std::vector<Row> m_rows;
    std::vector<std::pair<tagSymbol, Contract>> m_contracts;
    int m_offset = 1;
    std::vector<tagBrokerOrder> m_last;
    std::string m_windowName = "一键全平";
};
