#include "app/settings.h"

#include <gtest/gtest.h>

#include <cstdio>

#include "app/profile_ini.h"
#include "support/temp_dir.h"

namespace fs = std::filesystem;

namespace {

class SettingsTest : public ::testing::Test {
protected:
    void put(const std::string& bytes) const { writeFileBytes(m_file, bytes); }
    std::string disk() const { return readFileBytes(m_file); }

    TempDir m_dir{"helmsman_settings"};
    fs::path m_file = m_dir / "Profile.ini";
};

// Every written key in the order the file lists them after a fresh save.
const std::vector<std::string> kWrittenKeys = {
    "bUserDefaultAcct",
    "strAccountID",
    "strAccountName",
    "strBrokerID",
    "nAccountType",
    "bLoadLastSymbol",
    "wExchangeID",
    "szSymbolCode",
    "bSaveVolume",
    "dLastVolume",
    "dDefaultVolume",
    "bUseSingleLimit",
    "dMaxSingleLimitVol",
    "bShowChartWnd",
    "bShowNormalOrderConfirm",
    "bShowTriggerOrderConfirm",
    "bShowHotkeyOrderConfirm",
    "bShowFilledOrder",
    "bUseBidAskPrice",
    "bUserBidAskOffset",
    "nOffsetPoint",
    "bUseAlgoTrading",
    "bUseLocalTrigger",
    "bUseAlgoTradingTrigger",
    "bAutoFillStopLoss",
    "nAFStopLossPoint",
    "bAutoFillTakeProfit",
    "nAFTakeProfitPoint",
};

HelmsmanSettings nonDefault() {
    HelmsmanSettings s;
    s.bUserDefaultAcct = 1;
    s.strAccountID = "8001";
    s.strAccountName = "模拟账户";
    s.strBrokerID = "B1";
    s.nAccountType = 3;
    s.bLoadLastSymbol = 1;
    s.wExchangeID = 65535;
    s.szSymbolCode = "rb2410";
    s.bSaveVolume = 1;
    s.dLastVolume = 7;
    s.dDefaultVolume = 12;
    s.bUseSingleLimit = 1;
    s.dMaxSingleLimitVol = 50;
    s.bShowChartWnd = 1;
    s.bShowNormalOrderConfirm = 0;
    s.bShowTriggerOrderConfirm = 0;
    s.bShowHotkeyOrderConfirm = 0;
    s.bShowFilledOrder = 1;
    s.bUseBidAskPrice = 1;
    s.bUserBidAskOffset = 1;
    s.nOffsetPoint = -3;
    s.bUseAlgoTrading = 1;
    s.bUseLocalTrigger = 1;
    s.bUseAlgoTradingTrigger = 1;
    s.bAutoFillStopLoss = 1;
    s.nAFStopLossPoint = 15;
    s.bAutoFillTakeProfit = 1;
    s.nAFTakeProfitPoint = 30;
    return s;
}

TEST_F(SettingsTest, AbsentFileOrSectionGivesTheDefaults) {
    const HelmsmanSettings defaults;
    EXPECT_EQ(loadSettings(m_dir / "missing.ini"), defaults);
    put("[Other]\r\nbAutoKP=1\r\nnAccountType=5\r\n");
    EXPECT_EQ(loadSettings(m_file), defaults);
    // The defaults that are not zero, spelled out.
    EXPECT_EQ(defaults.nAccountType, 1);
    EXPECT_EQ(defaults.bShowNormalOrderConfirm, 1);
    EXPECT_EQ(defaults.bShowTriggerOrderConfirm, 1);
    EXPECT_EQ(defaults.bShowHotkeyOrderConfirm, 1);
    EXPECT_EQ(defaults.nAFStopLossPoint, 20);
    EXPECT_EQ(defaults.nAFTakeProfitPoint, 20);
    EXPECT_EQ(defaults.nMinAutoKPPos, 2);
}

TEST_F(SettingsTest, FreshSaveWritesEveryKeyInTableOrderAndRoundTrips) {
    const HelmsmanSettings s = nonDefault();
    saveSettings(m_file, s);
    const CProfileIni ini(m_file);
    EXPECT_EQ(ini.keys(kHelmsmanSection), kWrittenKeys);
    EXPECT_EQ(loadSettings(m_file), s);
    EXPECT_NE(disk().find("strAccountName=\xC4\xA3\xC4\xE2\xD5\xCB\xBB\xA7\r\n"),
              std::string::npos);
    EXPECT_NE(disk().find("wExchangeID=65535\r\n"), std::string::npos);
}

TEST_F(SettingsTest, DoublesAreWrittenWholeAndReloadAsIntegers) {
    // The written text is whatever "%.f" prints (the C library picks the rounding of a half);
    // what matters is that it reloads as exactly that whole number.
    struct Case {
        double value;
        double low, high;  // the acceptable reloaded values
    } cases[] = {{2.5, 2, 3}, {3.7, 4, 4}, {0.4, 0, 0}, {-1.6, -2, -2}, {100, 100, 100}};
    for (const auto& c : cases) {
        char text[64];
        std::snprintf(text, sizeof text, "%.f", c.value);
        HelmsmanSettings s;
        s.dDefaultVolume = c.value;
        s.dLastVolume = c.value;
        s.dMaxSingleLimitVol = c.value;
        saveSettings(m_file, s);
        const CProfileIni ini(m_file);
        EXPECT_EQ(ini.getString(kHelmsmanSection, "dDefaultVolume"), text) << c.value;
        const HelmsmanSettings back = loadSettings(m_file);
        EXPECT_EQ(back.dDefaultVolume, std::stod(text)) << c.value;
        EXPECT_GE(back.dDefaultVolume, c.low) << c.value;
        EXPECT_LE(back.dDefaultVolume, c.high) << c.value;
        EXPECT_EQ(back.dLastVolume, back.dDefaultVolume);
        EXPECT_EQ(back.dMaxSingleLimitVol, back.dDefaultVolume);
    }
}

TEST_F(SettingsTest, HandEditedValuesReadAsTheirLeadingInteger) {
    put("[helmsman]\r\n"
        "dLastVolume=3.9\r\n"
        "dDefaultVolume = \"2.5\"\r\n"
        "dMaxSingleLimitVol=abc\r\n"
        "nOffsetPoint=12abc\r\n"
        "nAccountType=\r\n"
        "wExchangeID=70000\r\n"
        "szSymbolCode=ABCDEFGHIJK\r\n"
        "strAccountID=  8001  \r\n");
    const HelmsmanSettings s = loadSettings(m_file);
    EXPECT_EQ(s.dLastVolume, 3);
    EXPECT_EQ(s.dDefaultVolume, 2);
    EXPECT_EQ(s.dMaxSingleLimitVol, 0);
    EXPECT_EQ(s.nOffsetPoint, 12);
    EXPECT_EQ(s.nAccountType, 1);  // empty: the default
    EXPECT_EQ(s.wExchangeID, 70000 % 65536);
    EXPECT_EQ(s.szSymbolCode, "ABCDEFGH");
    EXPECT_EQ(s.strAccountID, "8001");
}

TEST_F(SettingsTest, LongTextsAreReadUpTo259Bytes) {
    put("[Helmsman]\r\nstrAccountName=" + std::string(400, 'n') + "\r\n");
    EXPECT_EQ(loadSettings(m_file).strAccountName, std::string(259, 'n'));
}

TEST_F(SettingsTest, SavingNeverCreatesOrChangesTheHandEditedKeys) {
    HelmsmanSettings s;
    s.bAutoKP = 1;
    s.nMinAutoKPPos = 0;
    saveSettings(m_file, s);
    const CProfileIni fresh(m_file);
    EXPECT_FALSE(fresh.hasKey(kHelmsmanSection, "bAutoKP"));
    EXPECT_FALSE(fresh.hasKey(kHelmsmanSection, "nMinAutoKPPos"));

    const std::string userLines = "bAutoKP = 1\r\nnMinAutoKPPos=0\r\n";
    put("; my settings\r\n[Helmsman]\r\n" + userLines + "bShowChartWnd=0\r\n\r\n[Tool]\r\nx=1\r\n");
    HelmsmanSettings loaded = loadSettings(m_file);
    EXPECT_EQ(loaded.bAutoKP, 1);
    EXPECT_EQ(loaded.nMinAutoKPPos, 0);
    loaded.bAutoKP = 0;
    loaded.nMinAutoKPPos = 9;
    loaded.bShowChartWnd = 1;
    saveSettings(m_file, loaded);

    const std::string after = disk();
    EXPECT_EQ(after.rfind("; my settings\r\n[Helmsman]\r\n" + userLines + "bShowChartWnd=1\r\n", 0),
              0u);
    EXPECT_NE(after.find("\r\n\r\n[Tool]\r\nx=1\r\n"), std::string::npos);
    const HelmsmanSettings reloaded = loadSettings(m_file);
    EXPECT_EQ(reloaded.bAutoKP, 1);
    EXPECT_EQ(reloaded.nMinAutoKPPos, 0);
    EXPECT_EQ(reloaded.bShowChartWnd, 1);
}

}  // namespace
