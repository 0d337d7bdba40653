// CBargainDialog: the fill notice's content — the fills shown so far, in arrival order, each
// with its title line and body text.
//
//   title: "[<account>]开仓买入成交" / 平仓买入 / 开仓卖出 / 平仓卖出 — direction 1 is a buy,
//          anything else a sell; a non-zero open/close flag is a close.
//   body:  "买入IF2406合约2张[合同号:1001],成交价格:3001.4"
// The bracket in the title names the account: the body says what was filled but not for
// whom, and a trader running several accounts must see at a glance whose position moved. The
// fill time stands beside each entry (time()) so the list also reads as a time line.
// The price has the contract's decimals (GetSymbolProperty, asked once per contract); for a
// contract the host does not know, up to four decimals with trailing zeros dropped.
//
// The manager keeps the fills and hands over the whole list each time; the single fill
// notice window owns one CBargainDialog. UI thread only.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "host/records.h"
#include "host/subscibe_manage.h"

class CBargainDialog {
public:
    struct Entry {
        std::string title;
        std::string body;
        std::string time;  // "%H:%M:%S" local time of the fill, "" when the host gave none
        bool buy = false;
    };

    explicit CBargainDialog(CSubscibeManage* facade) : m_facade(facade) {}

    // Replaces the list with `fills` (the manager's list, arrival order). Entries already
    // formatted for an unchanged prefix are kept, so a redraw after each fill formats only
    // the new one.
    void setFills(const std::vector<tagBargainOrder>& fills);
    // Appends one fill.
    void append(const tagBargainOrder& fill);

    const std::vector<tagBargainOrder>& fills() const { return m_fills; }
    const std::vector<Entry>& entries() const { return m_entries; }
    std::size_t size() const { return m_fills.size(); }

    // The texts of one fill.
    std::string titleOf(const tagBargainOrder& fill) const;
    std::string bodyOf(const tagBargainOrder& fill);

private:
    Entry entryOf(const tagBargainOrder& fill);
    int decimalsOf(std::int32_t exchangeID, const std::string& code);

    CSubscibeManage* m_facade;
    std::vector<tagBargainOrder> m_fills;
    std::vector<Entry> m_entries;
    std::map<std::pair<std::int32_t, std::string>, int> m_decimals;
};
