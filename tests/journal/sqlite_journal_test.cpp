// The SQLite journal on real files: what goes in comes back (Chinese text, exact figures,
// every order field), the viewer's filters and pages, reopening, and files that cannot be a
// journal being set aside.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <cmath>

#include "journal/sqlite_order_journal.h"
#include "support/temp_dir.h"

namespace {

JournalEntry entry(std::int64_t timeMs, std::string tool, std::string account, std::string code,
                   std::string tag) {
    JournalEntry e;
    e.timeMs = timeMs;
    e.tool = std::move(tool);
    e.window = "窗口";
    e.tag = std::move(tag);
    e.order.strAccountID = std::move(account);
    e.order.strCode = std::move(code);
    e.result = 1;
    e.reason = "原因";
    return e;
}

std::vector<std::string> tags(const std::vector<JournalRecord>& rows) {
    std::vector<std::string> out;
    for (const auto& r : rows) out.push_back(r.entry.tag);
    return out;
}

class JournalTest : public ::testing::Test {
protected:
    std::unique_ptr<SqliteOrderJournal> open() {
        std::string error;
        auto j = SqliteOrderJournal::open(file, &error);
        EXPECT_TRUE(j) << error;
        EXPECT_EQ(error, "");
        return j;
    }

    TempDir dir{"journal"};
    std::filesystem::path file = dir / "user" / "demo" / "journal.db";
};

TEST_F(JournalTest, EntriesComeBackWholeAfterReopening) {
    JournalEntry e = entry(1609725600123, "价差格", "880001", "IF2101", "h|65537|te|42");
    e.window = "价差格 IF2101-IF2102";
    tagBrokerOrder& o = e.order;
    o.strBrokerID = "9999";
    o.nExchangeID = 3;
    o.strSymbolText = "IF2101 沪深300";
    o.strAccountState = "正常";
    o.nPriceType = 2;
    o.nDirection = kDirSell;
    o.tCreateTime = 1609725600;
    o.dVolume = 2;
    o.dPrice = 5228.2;
    o.dTriggerPrice = 5230;
    o.dAvgPrice = 0.1 + 0.2;  // not a short decimal: must come back bit for bit
    o.dStopLoss = 5240;
    o.dTakeProfit = 5200;
    o.nOpenClose = kCloseToday;
    o.nHedge = kHedge;
    o.strRemark = "h|65537|te|42";
    o.strOrderID = "000123";
    o.nStatus = kOrderRejected;
    o.dFilledVolume = 1;
    o.strStatusMsg = "资金不足";
    o.tUpdateTime = 1609725601;
    e.result = 0;
    e.reason = "第3格：价差回到3.4，低于进场线";
    e.figures = {{"格", 3}, {"参考价差", 3.4}, {"无值", std::nan("")}, {"", -1e300}};
    JournalEntry plain = entry(1609725600000, "舵手", "880002", "cu2102", "舵手");

    {
        auto j = open();
        j->record(e);
        j->record(plain);
        EXPECT_EQ(j->failedWrites(), 0);
    }
    auto j = open();
    const auto rows = j->query({}, 10);
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[1].entry.tag, "舵手");  // newest first
    EXPECT_TRUE(rows[1].entry.figures.empty());
    const JournalEntry& got = rows[0].entry;
    EXPECT_EQ(got.timeMs, e.timeMs);
    EXPECT_EQ(got.tool, e.tool);
    EXPECT_EQ(got.window, e.window);
    EXPECT_EQ(got.tag, e.tag);
    EXPECT_EQ(got.result, 0);
    EXPECT_EQ(got.reason, e.reason);
    const tagBrokerOrder& g = got.order;
    EXPECT_EQ(std::tie(g.strAccountID, g.strBrokerID, g.strSymbolText, g.strCode,
                       g.strAccountState, g.strRemark, g.strOrderID, g.strStatusMsg),
              std::tie(o.strAccountID, o.strBrokerID, o.strSymbolText, o.strCode,
                       o.strAccountState, o.strRemark, o.strOrderID, o.strStatusMsg));
    EXPECT_EQ(std::tie(g.nExchangeID, g.nPriceType, g.nDirection, g.tCreateTime, g.nOpenClose,
                       g.nHedge, g.nStatus, g.tUpdateTime),
              std::tie(o.nExchangeID, o.nPriceType, o.nDirection, o.tCreateTime, o.nOpenClose,
                       o.nHedge, o.nStatus, o.tUpdateTime));
    EXPECT_EQ(std::tie(g.dVolume, g.dPrice, g.dTriggerPrice, g.dAvgPrice, g.dStopLoss,
                       g.dTakeProfit, g.dFilledVolume),
              std::tie(o.dVolume, o.dPrice, o.dTriggerPrice, o.dAvgPrice, o.dStopLoss,
                       o.dTakeProfit, o.dFilledVolume));
    ASSERT_EQ(got.figures.size(), 4u);
    EXPECT_EQ(got.figures[0].name, "格");
    EXPECT_EQ(got.figures[1].value, 3.4);
    EXPECT_TRUE(std::isnan(got.figures[2].value));
    EXPECT_EQ(got.figures[3].name, "");
    EXPECT_EQ(got.figures[3].value, -1e300);
    EXPECT_EQ(j->tools(), (std::vector<std::string>{"价差格", "舵手"}));  // by their bytes
}

TEST_F(JournalTest, FiltersAndPagesNewestFirst) {
    auto j = open();
    constexpr std::int64_t kDay = 86400000;
    // tag = a name per entry; three share one millisecond to test the page edge.
    j->record(entry(1 * kDay + 100, "舵手", "880001", "IF2101", "a"));
    j->record(entry(1 * kDay + 200, "本地触发", "880001", "cu2102", "b 本地触发单"));
    j->record(entry(2 * kDay + 100, "价差格", "880002", "IF2102", "c h|1|te|5"));
    j->record(entry(2 * kDay + 100, "舵手", "880002", "if%2101", "d"));
    j->record(entry(2 * kDay + 100, "本地触发", "880001", "IF2101", "e 本地触发单"));
    j->record(entry(3 * kDay, "舵手", "880001", "IF2101", "f"));

    struct Case {
        const char* name;
        JournalFilter filter;
        std::vector<std::string> expected;
    };
    auto day = [&](int d) {
        JournalFilter f;
        f.fromMs = d * kDay;
        f.toMs = (d + 1) * kDay;
        return f;
    };
    auto with = [](JournalFilter f, auto field, std::string value) {
        f.*field = std::move(value);
        return f;
    };
    const Case cases[] = {
        {"everything", {}, {"f", "e 本地触发单", "d", "c h|1|te|5", "b 本地触发单", "a"}},
        {"oneDay", day(2), {"e 本地触发单", "d", "c h|1|te|5"}},
        {"dayEndExcluded", day(0), {}},
        {"tool", with({}, &JournalFilter::tool, "舵手"), {"f", "d", "a"}},
        {"toolOnADay", with(day(1), &JournalFilter::tool, "本地触发"), {"b 本地触发单"}},
        {"account", with({}, &JournalFilter::account, "880002"), {"d", "c h|1|te|5"}},
        {"codePrefixAnyCase", with({}, &JournalFilter::code, "if21"), {"f", "e 本地触发单", "c h|1|te|5", "a"}},
        {"codeWildcardLiteral", with({}, &JournalFilter::code, "IF%"), {"d"}},
        {"tagText", with({}, &JournalFilter::tagText, "触发单"), {"e 本地触发单", "b 本地触发单"}},
        {"nothingMatches", with({}, &JournalFilter::account, "8800"), {}},
    };
    for (const Case& c : cases) EXPECT_EQ(tags(j->query(c.filter, 100)), c.expected) << c.name;

    // Pages of two: the cursor separates entries of the same millisecond by recording order.
    std::vector<std::string> paged;
    JournalCursor cursor;
    for (int page = 0; page < 4; ++page) {
        const auto rows = j->query({}, 2, cursor);
        for (const auto& r : rows) paged.push_back(r.entry.tag);
        if (rows.empty()) break;
        cursor = {rows.back().entry.timeMs, rows.back().id};
    }
    EXPECT_EQ(paged, tags(j->query({}, 100)));
}

// Makes a SQLite file with `sql` run in it.
void makeDatabase(const std::filesystem::path& path, const std::string& sql) {
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open(path.string().c_str(), &db), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(db);
}

TEST_F(JournalTest, FilesThatCannotBeAJournalAreSetAside) {
    struct Case {
        const char* name;
        std::function<void(const std::filesystem::path&)> make;
        const char* says;
    };
    const Case cases[] = {
        {"text file",
         [](const auto& p) { writeFileBytes(p, "帐户,商品,数量\n880001,IF2101,1\n"); },
         "无法识别"},
        {"other program's database",
         [](const auto& p) { makeDatabase(p, "CREATE TABLE notes(t TEXT); INSERT INTO notes VALUES('x');"); },
         "其他程序"},
        {"newer journal",
         [](const auto& p) {
             makeDatabase(p, "CREATE TABLE orders(x); PRAGMA application_id=" +
                                 std::to_string(SqliteOrderJournal::kApplicationId) +
                                 "; PRAGMA user_version=7;");
         },
         "格式版本7"},
        {"journal of other tables",
         [](const auto& p) {
             makeDatabase(p, "CREATE TABLE orders(x); PRAGMA application_id=" +
                                 std::to_string(SqliteOrderJournal::kApplicationId) +
                                 "; PRAGMA user_version=1;");
         },
         "已损坏"},
        {"unknown schema format",
         [](const auto& p) {
             makeDatabase(p, "CREATE TABLE notes(t TEXT);");
             std::string bytes = readFileBytes(p);
             bytes[47] = 99;  // the header's schema format number
             writeFileBytes(p, bytes);
         },
         "已损坏"},
        {"damaged pages",
         [](const auto& p) {
             {
                 auto j = SqliteOrderJournal::open(p, nullptr);
                 for (int i = 0; i < 300; ++i)
                     j->record(entry(i, "舵手", "880001", "IF2101", std::string(100, 'x')));
             }
             std::string bytes = readFileBytes(p);
             ASSERT_GT(bytes.size(), 8192u);
             for (std::size_t i = 4096 + 8; i < 8192; ++i) bytes[i] = static_cast<char>(i * 7);
             writeFileBytes(p, bytes);
         },
         "已损坏"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        TempDir here{"journal_bad"};
        const auto path = here / "journal.db";
        c.make(path);
        const std::string before = readFileBytes(path);
        // Twice: the second bad file must not replace the first one set aside.
        for (const char* moved : {"journal.db.bad", "journal.db.bad.2"}) {
            if (std::string(moved) == "journal.db.bad.2") writeFileBytes(path, before);
            std::string error;
            auto j = SqliteOrderJournal::open(path, &error);
            ASSERT_TRUE(j);
            EXPECT_NE(error.find(c.says), std::string::npos) << error;
            EXPECT_NE(error.find(moved), std::string::npos) << error;
            EXPECT_TRUE(readFileBytes(here / moved) == before);  // untouched
            EXPECT_TRUE(j->query({}, 10).empty());
            j->record(entry(5, "舵手", "880001", "IF2101", "new"));
            EXPECT_EQ(tags(j->query({}, 10)), std::vector<std::string>{"new"});
        }
    }
}

TEST_F(JournalTest, NoJournalWhereNoFileCanBeWritten) {
    std::filesystem::create_directories(file);  // a folder where the file should be
    std::string error;
    EXPECT_FALSE(SqliteOrderJournal::open(file, &error));
    EXPECT_NE(error.find("无法"), std::string::npos) << error;
    EXPECT_TRUE(std::filesystem::is_directory(file));
}

TEST_F(JournalTest, WritesAheadSoReadersNeverWait) {
    EXPECT_EQ(open()->journalMode(), "wal");
}

}  // namespace
