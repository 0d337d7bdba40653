#include "app/settings.h"

#include <gtest/gtest.h>

#include <cmath>
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

TEST_F(SettingsTest, AbsentFileOrSectionGivesTheDefaults) {
    const HelmsmanSettings defaults;
    EXPECT_EQ(loadSettings(m_dir / "missing.ini"), defaults);
    put("[Other]\r\nbAutoKP=1\r\nnAccountType=5\r\n");
    EXPECT_EQ(loadSettings(m_file), defaults);
    // The defaults that are not zero: confirmations on, 20-point stops, two-lot threshold.
    EXPECT_EQ(defaults.nAccountType, 1);
    EXPECT_TRUE(defaults.bShowNormalOrderConfirm && defaults.bShowTriggerOrderConfirm &&
                defaults.bShowHotkeyOrderConfirm);
    EXPECT_EQ(defaults.nAFStopLossPoint, 20);
    EXPECT_EQ(defaults.nAFTakeProfitPoint, 20);
    EXPECT_EQ(defaults.nMinAutoKPPos, 2);
}

// The key names are what users' existing files hold: a misspelt one would silently lose a
// setting, which a round trip alone cannot see.
TEST_F(SettingsTest, FreshSaveWritesEveryKeyInTableOrderAndRoundTrips) {
    HelmsmanSettings s;
    s.bUserDefaultAcct = s.bLoadLastSymbol = s.bSaveVolume = s.bUseSingleLimit = 1;
    s.bShowChartWnd = s.bShowFilledOrder = s.bUseBidAskPrice = s.bUserBidAskOffset = 1;
    s.bUseAlgoTrading = s.bUseLocalTrigger = s.bUseAlgoTradingTrigger = 1;
    s.bAutoFillStopLoss = s.bAutoFillTakeProfit = 1;
    s.bShowNormalOrderConfirm = s.bShowTriggerOrderConfirm = s.bShowHotkeyOrderConfirm = 0;
    s.strAccountID = "8001";
    s.strAccountName = "模拟账户";
    s.strBrokerID = "B1";
    s.szSymbolCode = "rb2410";
    s.nAccountType = 3;
    s.wExchangeID = 65535;
    s.dLastVolume = 7;
    s.dDefaultVolume = 12;
    s.dMaxSingleLimitVol = 50;
    s.nOffsetPoint = -3;
    s.nAFStopLossPoint = 15;
    s.nAFTakeProfitPoint = 30;
    saveSettings(m_file, s);
    std::string keys;
    for (const auto& k : CProfileIni(m_file).keys(kHelmsmanSection)) keys += k + " ";
    EXPECT_EQ(keys,
              "bUserDefaultAcct strAccountID strAccountName strBrokerID nAccountType "
              "bLoadLastSymbol wExchangeID szSymbolCode bSaveVolume dLastVolume dDefaultVolume "
              "bUseSingleLimit dMaxSingleLimitVol bShowChartWnd bShowNormalOrderConfirm "
              "bShowTriggerOrderConfirm bShowHotkeyOrderConfirm bShowFilledOrder bUseBidAskPrice "
              "bUserBidAskOffset nOffsetPoint bUseAlgoTrading bUseLocalTrigger "
              "bUseAlgoTradingTrigger bAutoFillStopLoss nAFStopLossPoint bAutoFillTakeProfit "
              "nAFTakeProfitPoint ");
    EXPECT_EQ(loadSettings(m_file), s);
    EXPECT_NE(disk().find("strAccountName=\xC4\xA3\xC4\xE2\xD5\xCB\xBB\xA7\r\n"),
              std::string::npos);
    EXPECT_NE(disk().find("wExchangeID=65535\r\n"), std::string::npos);
}

// The written text is whatever "%.f" prints (the C library picks the rounding of a half);
// what matters is that it reloads as exactly that whole number.
TEST_F(SettingsTest, DoublesAreWrittenWholeAndReloadAsIntegers) {
    for (double value : {2.5, 3.7, -1.6}) {
        char text[64];
        std::snprintf(text, sizeof text, "%.f", value);
        HelmsmanSettings s;
        s.dDefaultVolume = s.dLastVolume = s.dMaxSingleLimitVol = value;
        saveSettings(m_file, s);
        EXPECT_EQ(CProfileIni(m_file).getString(kHelmsmanSection, "dDefaultVolume"), text);
        const HelmsmanSettings back = loadSettings(m_file);
        EXPECT_EQ(back.dDefaultVolume, std::stod(text)) << value;
        EXPECT_LE(std::abs(back.dDefaultVolume - value), 0.5) << value;
        EXPECT_EQ(back.dLastVolume, back.dDefaultVolume);
        EXPECT_EQ(back.dMaxSingleLimitVol, back.dDefaultVolume);
    }
}

TEST_F(SettingsTest, HandEditedValues) {
    put("[helmsman]\r\ndLastVolume=3.9\r\ndDefaultVolume = \"2.5\"\r\ndMaxSingleLimitVol=abc\r\n"
        "nOffsetPoint=12abc\r\nnAccountType=\r\nwExchangeID=70000\r\n"
        "szSymbolCode=ABCDEFGHIJK\r\nstrAccountID=  8001  \r\nstrAccountName=" +
        std::string(400, 'n') + "\r\n");
    const HelmsmanSettings s = loadSettings(m_file);
    EXPECT_EQ(s.dLastVolume, 3);
    EXPECT_EQ(s.dDefaultVolume, 2);
    EXPECT_EQ(s.dMaxSingleLimitVol, 0);
    EXPECT_EQ(s.nOffsetPoint, 12);
    EXPECT_EQ(s.nAccountType, 1);  // empty: the default
    EXPECT_EQ(s.wExchangeID, 70000 % 65536);
    EXPECT_EQ(s.szSymbolCode, "ABCDEFGH");
    EXPECT_EQ(s.strAccountID, "8001");
    EXPECT_EQ(s.strAccountName, std::string(259, 'n'));
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
}

// A failed save leaves the file as it was and says which file and why; reporting it is the
// caller's choice.
TEST_F(SettingsTest, AFailedSaveChangesNothingAndSaysWhy) {
    const std::string before = "[Helmsman]\r\nbShowChartWnd=0\r\n";
    put(before);
    std::filesystem::permissions(m_file, std::filesystem::perms::owner_read);
    HelmsmanSettings s;
    s.bShowChartWnd = 1;
    const FileWriteResult result = saveSettings(m_file, s);
    EXPECT_FALSE(result.ok);
    EXPECT_EQ(result.file, m_file);
    EXPECT_NE(result.message().find("本次修改只在舵手关闭前有效"), std::string::npos);
    EXPECT_EQ(disk(), before);
}

}  // namespace
