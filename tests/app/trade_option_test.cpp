#include "app/trade_option.h"

#include <gtest/gtest.h>

#include "support/fake_host.h"

namespace {

FakeHost twoAccounts() {
    FakeHost host;
    host.accounts = {FakeHost::account("880001", "9999", "模拟一", 1),
                     FakeHost::account("880002", "8888", "模拟二", 2)};
    return host;
}

TEST(TradeOptionFill, SelectsTheSavedAccountAndShowsTheRecord) {
    FakeHost host = twoAccounts();
    HelmsmanSettings s;
    s.strAccountID = "880002";
    s.strAccountName = "模拟二";
    s.dDefaultVolume = 3;
    s.bUseSingleLimit = 1;
    s.dMaxSingleLimitVol = 50;
    s.bShowFilledOrder = 1;
    TradeOptionState page = CTradeOption::fill(s, &host);
    EXPECT_EQ(page.accountItems, (std::vector<std::string>{"880001(模拟一)", "880002(模拟二)"}));
    EXPECT_EQ(page.accountIndex, 1);
    EXPECT_FALSE(page.accountListEnabled());
    EXPECT_TRUE(page.defaultVolumeEnabled());
    EXPECT_EQ(page.defaultVolumeText, "3");
    EXPECT_TRUE(page.maxSingleEnabled());
    EXPECT_EQ(page.maxSingleText, "50");
    EXPECT_TRUE(page.showFilled);
    EXPECT_TRUE(page.showNormalConfirm);  // the default is on

    s.strAccountName = "其他";  // no entry matches: nothing selected
    s.bSaveVolume = 1;
    s.bUseSingleLimit = 0;
    page = CTradeOption::fill(s, &host);
    EXPECT_EQ(page.accountIndex, -1);
    EXPECT_FALSE(page.defaultVolumeEnabled());
    EXPECT_FALSE(page.maxSingleEnabled());
}

TEST(TradeOptionAccept, TakesTheChosenAccountAndTheNumbers) {
    FakeHost host = twoAccounts();
    HelmsmanSettings current;
    current.bAutoKP = 1;
    current.szSymbolCode = "IF2101";
    TradeOptionState page = CTradeOption::fill(current, &host);
    page.defaultAccount = true;
    page.accountIndex = 1;
    page.defaultVolumeText = "2.5";
    page.useSingleLimit = false;
    page.maxSingleText = "abc";
    HelmsmanSettings s = CTradeOption::accept(page, current, &host);
    EXPECT_EQ(s.bUserDefaultAcct, 1);
    EXPECT_EQ(s.strAccountID, "880002");
    EXPECT_EQ(s.strAccountName, "模拟二");
    EXPECT_EQ(s.strBrokerID, "8888");
    EXPECT_EQ(s.nAccountType, 2);
    EXPECT_EQ(s.bSaveVolume, 0);
    EXPECT_DOUBLE_EQ(s.dDefaultVolume, 2.5);    // written with "%.f", whole after a reload
    EXPECT_DOUBLE_EQ(s.dMaxSingleLimitVol, 0);  // not a number: 0, even with the cap off
    EXPECT_EQ(s.bAutoKP, 1);                    // keys the page does not show are kept
    EXPECT_EQ(s.szSymbolCode, "IF2101");

    // Saving the last volume instead keeps the stored default, whatever the box says.
    current.dDefaultVolume = 4;
    page.useDefaultVolume = false;
    page.defaultVolumeText = "9";
    s = CTradeOption::accept(page, current, &host);
    EXPECT_EQ(s.bSaveVolume, 1);
    EXPECT_DOUBLE_EQ(s.dDefaultVolume, 4);
}

TEST(TradeOptionAccept, NoAccountsKeepsTheSavedOne) {
    FakeHost host;  // logged off
    HelmsmanSettings current;
    current.strAccountID = "880001";
    current.strAccountName = "模拟一";
    current.strBrokerID = "9999";
    TradeOptionState page = CTradeOption::fill(current, &host);
    EXPECT_TRUE(page.accountItems.empty());
    HelmsmanSettings s = CTradeOption::accept(page, current, &host);
    EXPECT_EQ(s.strAccountID, "880001");
    EXPECT_EQ(s.strBrokerID, "9999");
}

// The boxes hold volumes: anything that is not a finite volume in range reads 0.
TEST(TradeOptionNumbers, DecimalReading) {
    const std::pair<const char*, double> cases[] = {
        {"3", 3},     {"2.5", 2.5}, {" 7", 7},          {"12abc", 12},    {"abc", 0},
        {"", 0},      {"-1", 0},    {"inf", 0},         {"nan", 0},       {"Infinity", 0},
        {"1e300", 0}, {"1e400", 0}, {"100000000", 1e8}, {"100000001", 0},
    };
    for (auto [text, v] : cases) EXPECT_DOUBLE_EQ(CTradeOption::readNumber(text), v) << text;
    // Numbers are shown whole and in full, however large.
    EXPECT_EQ(CTradeOption::formatWhole(2.5), "2");
    EXPECT_EQ(CTradeOption::formatWhole(1e59).size(), 59u);  // 9.99...e58 in binary
}

}  // namespace
