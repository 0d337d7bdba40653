// The parameters as a template of "AMTOrder.dat" and as the default template in
// Profile.ini: every field comes back, and the file starts as its layout says.
#include "amt/amt_params.h"

#include <gtest/gtest.h>

#include "app/profile_ini.h"
#include "spread/template_store.h"
#include "support/temp_dir.h"

namespace {

tagAMTParams unusual() {
    tagAMTParams p;
    p.strName = "突破 A";
    p.wExchangeID = 3;
    p.szSymbolCode = "IF2101";
    p.bLong = 0;
    p.bHedge = 1;
    p.tStartTime = 4'102'444'800;  // beyond 2038
    p.nDelaySecs = 7;
    p.nEveryLots = 2;
    p.nMaxLots = 6;
    p.nOrderOffset = 3;
    p.bEntryPriceCon = 1;
    p.nEntryPriceCon = 1;
    p.dEntryPrice = 5231.4;
    p.bEntryRangeFilter = 1;
    p.dEntryRangeFilter = 5199.8;
    p.bEntryVolFilter = 1;
    p.nEntryVolFilter = 12;
    p.bEntryFilterOR = 1;
    p.entryFilters[1] = {1, "MA5", 5, 1, "MA20", 0.25};
    p.bExitPriceCon = 1;
    p.dExitPrice = 5300.2;
    p.nStopBasePriceType = 1;
    p.bStopLoss = 1;
    p.nStopLossPoint = 11;
    p.bTrailingStop = 1;
    p.nTrailingStopType = 1;
    p.nTrailingStopSet = 45;
    p.bExitAtTime = 1;
    p.tExitTime = 1'609'741'800;
    p.exitFilters[2] = {1, "VOL1M", 1, 0, "", 300};
    p.strAccountID = "880002";
    p.strBrokerID = "9999";
    p.strAccountName = "模拟账户二";
    return p;
}

TEST(AmtParams, TemplateFileKeepsEveryField) {
    TempDir dir("amtparams");
    CTemplateStore<tagAMTParams> store(std::filesystem::path(dir.string()),
                                       template_files::kAmtOrder);
    tagAMTParams b;
    b.strName = "b";
    ASSERT_TRUE(store.save({unusual(), b}).ok);
    TemplateLoadInfo info;
    const auto list = store.load(&info);
    EXPECT_TRUE(info.exact);
    ASSERT_EQ(list.size(), 2u);
    EXPECT_EQ(list[0], unusual());
    EXPECT_EQ(list[1], b);
    // Magic with its nine-character length byte, the count, then the first name.
    const std::string bytes = readFileBytes(store.path());
    EXPECT_EQ(bytes.substr(0, 10), std::string("\x09QXAMT_1.0", 10));
    EXPECT_EQ(bytes.substr(10, 4), std::string("\x02\0\0\0", 4));
}

TEST(AmtParams, DefaultTemplateKeepsEveryFieldButTheName) {
    TempDir dir("amtparams");
    CProfileIni ini(dir / "Profile.ini");
    writeAMTDefault(ini, unusual());
    ASSERT_TRUE(ini.save().ok);
    tagAMTParams expected = unusual();
    expected.strName.clear();
    EXPECT_EQ(readAMTDefault(CProfileIni(dir / "Profile.ini")), expected);
    EXPECT_EQ(ini.getString(kAMTSection, "dEntryPrice"), "5231.4");
    EXPECT_EQ(ini.keys(kAMTSection).front(), "wExchangeID");
}

}  // namespace
