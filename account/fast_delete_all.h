// CFastDeleteAll: cancel-all ("一键全撤", dialog 25040) and CDeleteTriggerOrders: the
// multi-account trigger cancel ("多帐户撤触发单", dialog 25023), without widgets.
//
// Cancel-all lists the working orders (已报, 部分成交, 发送中) of the chosen accounts, narrowed
// by instrument and side, and cancels every listed order in one action: one DeleteOrder per
// order, one result line per order. Orders already being cancelled are not asked again.
//
// The trigger cancel lists the waiting server trigger orders (host status 0) of the chosen
// accounts with a check box each (unchecked at first) and deletes the checked ones, one
// result line per order.
//
// Both ask before they act (caption "确认"), record each request in the journal, and follow
// order notices through onOrderChanged / refresh so the list shows what is still working.
//
// Owned by their windows. Thread contract: UI thread only.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "account/account_choice.h"
#include "host/records.h"

class CHelmsmanManage;

class CFastDeleteAll {
public:
    enum Column { kColAccount, kColSymbol, kColSide, kColOpenClose, kColPrice, kColVolume,
                  kColFilled, kColStatus, kColOrderID, kColCount };

    explicit CFastDeleteAll(CHelmsmanManage& manage);

    AccountChoice& accounts() { return m_accounts; }
    // Filters: an empty code shows every instrument; side 0 both, else kDirBuy / kDirSell.
    void setSymbolFilter(const std::string& code) { m_code = code; }
    void setSideFilter(std::int32_t side) { m_side = side; }
    // Codes of the working orders of the chosen accounts, for the filter box.
    std::vector<std::string> codes() const;

    void refresh();
    // An order notice: the row follows it (and leaves the list once the order is done).
    void onOrderChanged(const tagBrokerOrder& order);
    const std::vector<tagBrokerOrder>& rows() const { return m_rows; }
    std::string cell(std::size_t row, int column) const;

    // Asks, then cancels every listed order not already being cancelled. Returns how many
    // requests the host took; results() says order by order.
    int cancelAll();
    const std::vector<std::string>& results() const { return m_results; }
    const std::string& summary() const { return m_summary; }
    void setWindowName(std::string name) { m_windowName = std::move(name); }

private:
    bool shown(const tagBrokerOrder& o) const;

    CHelmsmanManage& m_manage;
    AccountChoice m_accounts;
    std::string m_code;
    std::int32_t m_side = 0;
    std::vector<tagBrokerOrder> m_all;  // working orders of the chosen accounts
    std::vector<tagBrokerOrder> m_rows;
    std::vector<std::string> m_results;
    std::string m_summary;
    std::string m_windowName = "一键全撤";
};

class CDeleteTriggerOrders {
public:
    enum Column { kColAccount, kColSymbol, kColType, kColSide, kColOpenClose, kColTrigger,
                  kColPrice, kColVolume, kColOrderID, kColCount };

    // `preselect` (may be null) checks only that account at first.
    CDeleteTriggerOrders(CHelmsmanManage& manage, const tagAccoutInfo* preselect);

    AccountChoice& accounts() { return m_accounts; }
    void refresh();
    const std::vector<tagTriggerOrder>& rows() const { return m_rows; }
    bool checked(std::size_t row) const { return m_checked.at(row); }
    void setChecked(std::size_t row, bool on) { m_checked.at(row) = on; }
    void checkAll(bool on);
    std::string cell(std::size_t row, int column) const;

    // Asks, then deletes the checked orders; returns how many the host deleted.
    int deleteChecked();
    const std::vector<std::string>& results() const { return m_results; }
    const std::string& summary() const { return m_summary; }

private:
    int decimalsOf(const tagTriggerOrder& t) const;

    CHelmsmanManage& m_manage;
    AccountChoice m_accounts;
    std::vector<tagTriggerOrder> m_rows;
    std::vector<bool> m_checked;
    std::vector<std::string> m_results;
    std::string m_summary;
};
