// Recorded-tick parsing: good lines, malformed lines skipped and counted, real files.
#include <gtest/gtest.h>

#include <filesystem>

#include "sim/tick_file.h"
#include "sim_test_util.h"

namespace {

const char* kHeader =
    "date,time,last,bid,bid_vol,ask,ask_vol,volume,turnover,open_interest,open,high,low,"
    "upper_limit,lower_limit,pre_close,pre_settle,settle\n";

TEST(TickFile, ParsesGoodLines) {
    std::string text = std::string(kHeader) +
        "20210104,09:29:00.400,5230.0,5230.0,1,5230.8,2,240,376560000.0,90767,5230.0,5230.0,"
        "5230.0,5737.8,4694.6,5227.0,5216.2,0.0\r\n"
        "20210104,09:30:00.9,5231.8,5232.8,3,5234.8,1,398,0,0,0,0,0,0,0,0,0,0\n";
    std::vector<sim::TickRecord> out;
    sim::TickParseReport rep;
    sim::parseTickText(text, out, rep);
    EXPECT_EQ(rep.linesRead, 2u);
    EXPECT_EQ(rep.ticks, 2u);
    EXPECT_EQ(rep.skipped, 0u);
    ASSERT_EQ(out.size(), 2u);
    EXPECT_EQ(out[0].date, 20210104);
    EXPECT_EQ(out[0].timeMs, ((9 * 60 + 29) * 60) * 1000 + 400);
    EXPECT_DOUBLE_EQ(out[0].last, 5230.0);
    EXPECT_DOUBLE_EQ(out[0].ask, 5230.8);
    EXPECT_DOUBLE_EQ(out[0].askVol, 2);
    EXPECT_DOUBLE_EQ(out[0].upperLimit, 5737.8);
    EXPECT_DOUBLE_EQ(out[0].lowerLimit, 4694.6);
    EXPECT_DOUBLE_EQ(out[0].preSettle, 5216.2);
    EXPECT_EQ(out[1].timeMs, ((9 * 60 + 30) * 60) * 1000 + 900);
    EXPECT_DOUBLE_EQ(out[1].upperLimit, 0);
}

struct BadLine {
    const char* name;
    const char* line;
    const char* reason;
};

const BadLine kBadLines[] = {
    {"TooFewFields", "20210104,09:30:00.400,5230.8,5231.4,2", "too few fields"},
    {"TooManyFields", "20210104,09:30:00.400,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1", "too many fields"},
    {"BadDate", "2021x104,09:30:00.400,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1", "bad date"},
    {"ShortDate", "2021014,09:30:00.400,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1", "bad date"},
    {"Month13", "20211304,09:30:00.400,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1", "no such date"},
    {"February31", "20210231,09:30:00.400,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1", "no such date"},
    {"February29NotLeap", "21000229,09:30:00.400,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1",
     "no such date"},
    {"April31", "20210431,09:30:00.400,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1", "no such date"},
    {"Day0", "20210100,09:30:00.400,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1", "no such date"},
    {"BadTime", "20210104,9:30:00,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1", "bad time"},
    {"Hour25", "20210104,25:30:00.000,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1", "no such time"},
    {"Minute60", "20210104,09:60:00,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1", "no such time"},
    {"Second60", "20210104,09:30:60,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1", "no such time"},
    {"LetterInPrice", "20210104,09:30:00.400,52a0,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1",
     "field is not a number"},
    {"EmptyField", "20210104,09:30:00.400,,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1",
     "field is not a number"},
    {"NaN", "20210104,09:30:00.400,nan,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1", "field is not a number"},
    {"Negative", "20210104,09:30:00.400,-5,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1", "negative value"},
    {"Crossed", "20210104,09:30:00.400,5,6,1,5,1,1,1,1,1,1,1,1,1,1,1,1",
     "crossed book (bid above ask)"},
};

class TickBadLines : public ::testing::TestWithParam<BadLine> {};

TEST_P(TickBadLines, SkippedAndCounted) {
    const BadLine& c = GetParam();
    const char* good = "20210104,09:30:00.400,5230.8,5231.4,2,5231.6,1,311,0,0,0,0,0,0,0,0,0,0\n";
    std::string text = std::string(kHeader) + good + c.line + "\n" + good;
    std::vector<sim::TickRecord> out;
    sim::TickParseReport rep;
    sim::parseTickText(text, out, rep);
    EXPECT_EQ(rep.linesRead, 3u);
    EXPECT_EQ(rep.ticks, 2u);
    EXPECT_EQ(rep.skipped, 1u);
    ASSERT_EQ(rep.firstErrors.size(), 1u);
    EXPECT_EQ(rep.firstErrors[0], std::string("line 3: ") + c.reason);
    EXPECT_EQ(out.size(), 2u);
}

INSTANTIATE_TEST_SUITE_P(Sim, TickBadLines, ::testing::ValuesIn(kBadLines),
                         [](const auto& info) { return std::string(info.param.name); });

// The calendar's edges that are real days and times parse.
TEST(TickFile, LeapDayAndLastMillisecondAreGood) {
    std::string text;
    for (const char* dt : {"20200229,23:59:59.999", "20000229,00:00:00", "20211231,12:00:00.5"})
        text += std::string(dt) + ",1,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0\n";
    std::vector<sim::TickRecord> out;
    sim::TickParseReport rep;
    sim::parseTickText(text, out, rep);
    EXPECT_EQ(rep.ticks, 3u) << (rep.firstErrors.empty() ? "" : rep.firstErrors[0]);
    ASSERT_EQ(out.size(), 3u);
    EXPECT_EQ(out[0].timeMs, 86'399'999);
    EXPECT_EQ(out[2].timeMs, 43'200'500);
}

TEST(TickFile, ManyErrorsKeepOnlyTheFirstFew) {
    std::string text = kHeader;
    for (int i = 0; i < 50; ++i) text += "junk\n";
    text += "\n\n";  // blank lines are not counted
    std::vector<sim::TickRecord> out;
    sim::TickParseReport rep;
    sim::parseTickText(text, out, rep);
    EXPECT_EQ(rep.linesRead, 50u);
    EXPECT_EQ(rep.skipped, 50u);
    EXPECT_EQ(rep.firstErrors.size(), sim::TickParseReport::kMaxErrors);
    EXPECT_EQ(sim::skippedSummary(rep),
              "50 lines skipped (line 2: too few fields; line 3: too few fields; line 4: too few "
              "fields; …)");
}

TEST(TickFile, NoHeaderTruncatedLastLineAndMissingFile) {
    std::vector<sim::TickRecord> out;
    sim::TickParseReport rep;
    sim::parseTickText("20210104,09:30:00.400,5230.8,5231.4,2,5231.6,1,311,0,0,0,0,0,0,0,0,0,0\n"
                       "20210104,09:30:00.900,5231.8,52",
                       out, rep);
    EXPECT_EQ(rep.ticks, 1u);
    EXPECT_EQ(rep.skipped, 1u);
    EXPECT_FALSE(sim::parseTickFile("/nonexistent/x.csv", out, rep));
    EXPECT_FALSE(rep.opened);
    EXPECT_FALSE(rep.error.empty());
}

TEST(TickFile, SymbolFromPath) {
    EXPECT_EQ(sim::symbolCodeFromTickPath("/a/b/IF2101_20210104.csv"), "IF2101");
    EXPECT_EQ(sim::symbolCodeFromTickPath("RM705.csv"), "RM705");
}

// A second exchange's recording (the first is replayed in the exchange's own tests).
TEST(TickFile, RealFileParsesWhole) {
    const std::filesystem::path p = simtest::dataDir() / "ticks" / "RM705_20170320.csv";
    ASSERT_TRUE(std::filesystem::exists(p)) << testdata::missing(p);
    std::vector<sim::TickRecord> out;
    sim::TickParseReport rep;
    ASSERT_TRUE(sim::parseTickFile(p.string(), out, rep));
    EXPECT_EQ(rep.skipped, 0u) << (rep.firstErrors.empty() ? "" : rep.firstErrors[0]);
    EXPECT_EQ(out.size(), 16979u);
}

}  // namespace
