// The viewer's texts of an entry.
#include <gtest/gtest.h>

#include <cmath>

#include "host/clock.h"
#include "journal/journal_view.h"

namespace {

TEST(JournalView, RowCellsSayWhatWasSentAndWhatBecameOfIt) {
    JournalEntry sent;
    sent.timeMs = 1609725600999;  // the viewer shows whole seconds
    sent.tool = "本地触发";
    sent.window = "本地触发单中心";
    sent.tag = "本地触发单";
    sent.order.strAccountID = "880001";
    sent.order.strCode = "IF2101";
    sent.order.nDirection = kDirSell;
    sent.order.nOpenClose = kCloseToday;
    sent.order.dVolume = 2;
    sent.order.dPrice = 5228.2;
    sent.order.strOrderID = "1001";
    sent.result = 1;
    sent.reason = "吊卖：最新价5228.2涨到或涨破触发价5228.0";
    EXPECT_EQ(journal_view::rowCells(sent),
              (std::vector<std::string>{formatDateTime(1609725600), "本地触发", "880001", "IF2101",
                                        "卖出", "平今仓", "2", "5228.2", "已发出", sent.reason,
                                        "本地触发单", "1001", "本地触发单中心"}));

    JournalEntry refused;
    refused.order.strStatusMsg = "资金不足";
    EXPECT_EQ(journal_view::rowCells(refused)[journal_view::kColResult], "未发出：资金不足");
}

TEST(JournalView, FiguresReadBackAsTheSameNumber) {
    const std::pair<double, const char*> cases[] = {
        {3, "3"}, {3.4, "3.4"}, {0.1 + 0.2, "0.30000000000000004"}, {-1e300, "-1e+300"},
        {std::nan(""), "-"}};
    for (auto [value, text] : cases) EXPECT_EQ(journal_view::figureText(value), text);
}

}  // namespace
