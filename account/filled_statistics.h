// CFilledOrderStatistics: the day's fills grouped by account and instrument ("成交统计",
// dialog 25032), without widgets.
//
// Per group: lots bought and sold with their average prices, the turnover (price x lots x
// multiplier, both sides), and the realised profit of the closing fills, marked the way a
// daily statement marks it: lots opened today close against their opening price (first in,
// first out), lots held from yesterday against the previous settlement. Which lots a close
// takes follows the exchange's rule (close_plan): 平今 today's, 平仓 on exchange 0
// yesterday's, elsewhere yesterday's first. Yesterday's lots at the start of the day are
// worked out from the position now: today's closes took what the day's opens left.
//
// The host reports commission per account, not per fill, so commission is shown on each
// account's total row (GetAccountSummary) and added up in the grand total.
//
// The rows come in account order, then instrument order, each account followed by its total
// row, the grand total last. CSV export writes the rows as shown (GBK, CRLF).
//
// Owned by its window. Thread contract: UI thread only.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "host/records.h"

class CHelmsmanManage;

class CFilledOrderStatistics {
public:
    enum Column { kColAccount, kColSymbol, kColBuyLots, kColBuyAvg, kColSellLots, kColSellAvg,
                  kColTurnover, kColCommission, kColProfit, kColCount };
    enum class Kind { Group, AccountTotal, GrandTotal };

    struct Row {
        Kind kind = Kind::Group;
        std::string account;  // display text
        std::string accountID, brokerID;
        tagSymbol symbol;
        int decimals = 2;
        double buyLots = 0, buyAmount = 0;  // amount: price x lots
        double sellLots = 0, sellAmount = 0;
        double turnover = 0;
        double commission = 0;  // account and grand totals only
        bool hasCommission = false;
        double profit = 0;
        double buyAvg() const { return buyLots > 0 ? buyAmount / buyLots : 0; }
        double sellAvg() const { return sellLots > 0 ? sellAmount / sellLots : 0; }
    };

    explicit CFilledOrderStatistics(CHelmsmanManage& manage);

    void refresh();
    const std::vector<Row>& rows() const { return m_rows; }
    std::string cell(std::size_t row, int column) const;
    // The value a column sorts by (text columns sort by their text).
    double sortValue(std::size_t row, int column) const;

    // The whole table as CSV text (UTF-8; the file is written in GBK).
    std::string csv() const;
    bool exportCsv(const std::filesystem::path& path) const;

private:
    CHelmsmanManage& m_manage;
    std::vector<Row> m_rows;
};
