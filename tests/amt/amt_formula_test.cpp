// Formula conditions: the six comparisons with the six-decimal equality, values read from
// the host's "tblprofile" table, and how the three conditions combine on each side.
#include "amt/amt_formula.h"

#include "amt_fixture.h"

namespace amttest {
namespace {

TEST(AmtFormula, Comparisons) {
    struct Row {
        double value, against;
        int type;
        bool expected;
    };
    const Row rows[] = {
        {2, 1, 0, true},          {1, 1, 0, false},        {1, 1, 1, true},
        {0.5, 1, 2, true},        {1, 1, 2, false},        {1, 1, 3, true},
        {1.000004, 1, 4, true},   {0.999996, 1, 4, true},  {1.0000051, 1, 4, false},
        {0.9999949, 1, 4, false}, {1.000004, 1, 5, false}, {1.00001, 1, 5, true},
        {1, 1, 6, false},         {1, 1, -1, false},
    };
    for (const Row& r : rows)
        EXPECT_EQ(amt_formula::compare(r.value, r.against, r.type), r.expected)
            << r.value << " type " << r.type << " " << r.against;
}

TEST_F(AmtTest, ConditionsReadTheInstrumentsValues) {
    host.table = {{"IF2101|MA5", "5230.4"},
                  {"IF2101|MA20", "5228"},
                  {"IF2101|EMPTY", ""},
                  {"IF2101|WORD", "abc"}};
    CAMTFormulaReader reader;
    reader.bind(&host, "IF2101");
    struct Row {
        tagAMTFilter f;
        bool expected;
    };
    const Row rows[] = {
        {{1, "MA5", 0, 0, "", 5230}, true},   // constant
        {{1, "MA5", 0, 1, "MA20", 0}, true},  // second named value
        {{1, "MA20", 0, 1, "MA5", 0}, false}, {{1, "MA5", 4, 0, "", 5230.4000039}, true},
        {{1, "EMPTY", 3, 0, "", 1e9}, false},  // an empty text
        {{1, "WORD", 3, 0, "", 1e9}, false},   // no number
        {{1, "NONE", 3, 0, "", 1e9}, false},   // not in the table
        {{1, "MA5", 0, 1, "NONE", 0}, false},  // compare value missing
    };
    for (const Row& r : rows) EXPECT_EQ(reader.evaluate(r.f), r.expected) << r.f.strKey;
}

TEST_F(AmtTest, CombinationOfThreeConditions) {
    host.table = {{"IF2101|T", "1"}, {"IF2101|F", "0"}};
    CAMTFormulaReader reader;
    reader.bind(&host, "IF2101");
    auto cond = [](int on, bool truth) { return tagAMTFilter{on, truth ? "T" : "F", 4, 0, "", 1}; };
    struct Row {
        const char* name;
        int on1, on2, on3;
        bool v1, v2, v3;
        bool useOr;
        bool entry, exit;
    };
    const Row rows[] = {
        {"1 off: entry passes, no exit by formula", 0, 1, 1, false, false, false, false, true,
         false},
        {"AND all true", 1, 1, 1, true, true, true, false, true, true},
        {"AND third false", 1, 1, 1, true, true, false, false, false, false},
        {"AND: 2 off, so 3 is not looked at", 1, 0, 1, true, false, false, false, true, true},
        {"AND: 3 off", 1, 1, 0, true, true, false, false, true, true},
        {"OR: 1 true", 1, 1, 1, true, false, false, true, true, true},
        {"OR: only 3 true", 1, 1, 1, false, false, true, true, true, true},
        {"OR: 2 off, 3 true is ignored", 1, 0, 1, false, false, true, true, false, false},
        {"OR: none", 1, 1, 1, false, false, false, true, false, false},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(r.name);
        const std::array<tagAMTFilter, 3> f{cond(r.on1, r.v1), cond(r.on2, r.v2),
                                            cond(r.on3, r.v3)};
        EXPECT_EQ(reader.combine(f, r.useOr, true), r.entry);
        EXPECT_EQ(reader.combine(f, r.useOr, false), r.exit);
    }
}

}  // namespace
}  // namespace amttest
