#include <gtest/gtest.h>

#include "spread/manual_tool.h"

namespace {

using Manual = tagManualSpreadTemplate;

Manual named(const std::string& name, int lots = 1) {
    Manual t;
    t.strName = name;
    t.nEveryLots = lots;
    return t;
}

struct ToolTemplates : ManualTemplatesTest {
    void seed(std::vector<Manual> list) { ASSERT_TRUE(templates.store().save(list)); }
    std::vector<std::string> names() { return templates.names(); }
};

TEST(TemplateMenu, CheckMarkIsCaseSensitive) {
    const auto items = templateMenuItems({"ABC", "abc", "ABC"}, "ABC");
    ASSERT_EQ(items.size(), 3u);
    EXPECT_EQ(items[2].id, 26782);
    EXPECT_EQ((std::vector<bool>{items[0].checked, items[1].checked, items[2].checked}),
              (std::vector<bool>{true, false, true}));
}

TEST_F(ToolTemplates, SavingANewNameAppendsAndSaysSo) {
    seed({named("A")});
    tool.settings = named("ignored", 5);
    EXPECT_EQ(templates.saveCurrent("B"), TemplateSaveResult::Added);
    EXPECT_EQ(names(), (std::vector<std::string>{"A", "B"}));
    EXPECT_EQ(templates.store().load()[1].nEveryLots, 5);
    EXPECT_EQ(tool.current, "B");
    EXPECT_EQ(tool.captionRefreshes, 1);
    EXPECT_EQ(prompter.lastText(), "已将当前设置成功保存到模板中！");
}

// abc over ABC: asked; Yes keeps the record's place with the new spelling, silently.
TEST_F(ToolTemplates, OverwriteKeepsThePlaceAndTakesTheNewSpelling) {
    seed({named("X"), named("ABC", 1), named("Y")});
    tool.settings = named("", 9);
    prompter.answers = {false};
    EXPECT_EQ(templates.saveCurrent("abc"), TemplateSaveResult::NotOverwritten);
    EXPECT_EQ(names(), (std::vector<std::string>{"X", "ABC", "Y"}));
    EXPECT_EQ(tool.current, "");

    prompter.answers = {true};
    EXPECT_EQ(templates.saveCurrent("abc"), TemplateSaveResult::Overwritten);
    EXPECT_EQ(names(), (std::vector<std::string>{"X", "abc", "Y"}));
    EXPECT_EQ(templates.store().load()[1].nEveryLots, 9);
    EXPECT_EQ(tool.current, "abc");
    ASSERT_EQ(prompter.boxes.size(), 2u);  // the two questions, nothing after
    EXPECT_EQ(prompter.lastText(), "已经存在同样名称的模板，是否要覆盖原模板！");
}

TEST_F(ToolTemplates, ApplyReadsTheFileAfreshAndIgnoresAGoneIndex) {
    seed({named("A", 2), named("B", 3)});
    tool.settings.bShowChart = 1;
    EXPECT_TRUE(templates.apply(1));
    EXPECT_EQ(tool.current, "B");
    EXPECT_EQ(tool.settings.nEveryLots, 3);
    EXPECT_EQ(tool.settings.bShowChart, 1);  // not in the file: the window's own state stays

    seed({named("A", 2)});
    EXPECT_FALSE(templates.apply(1));
    EXPECT_EQ(tool.settings.nEveryLots, 3);
}

TEST_F(ToolTemplates, DefaultTemplateGoesToProfileIniOnly) {
    tool.settings = named("T", 2);
    tool.settings.legs[0] = {1, "IF2406"};
    tool.settings.dSpreadUnit[1] = 0.5;
    tool.settings.bShowChart = 1;
    templates.setAsDefault();
    EXPECT_EQ(prompter.lastText(), "已将当前设置成功保存到默认模板中！");
    CProfileIni ini(dir / "Profile.ini");
    EXPECT_EQ(ini.getString("ManualSpread", "szSymbolCode1"), "IF2406");
    EXPECT_EQ(ini.getString("ManualSpread", "wExchangeID1"), "1");
    EXPECT_EQ(ini.getString("ManualSpread", "dSpreadUnit2"), "0.5");
    EXPECT_EQ(ini.getString("ManualSpread", "nEveryLots"), "2");
    EXPECT_EQ(ini.getString("ManualSpread", "bShowChart"), "1");
    EXPECT_FALSE(std::filesystem::exists(templates.store().path()));
}

// Deletes remove the first equal name; the selection goes to the row above.
TEST_F(ToolTemplates, ManagerCopyDeletesAndMoves) {
    seed({named("A"), named("b"), named("B"), named("C")});
    auto copy = templates.workingCopy();
    EXPECT_EQ(copy->removeNamed({"B"}), 0);  // removed "b" at 1
    EXPECT_EQ(copy->name(1), "B");
    EXPECT_EQ(copy->removeNamed({"A"}), 0);  // the first row: the new first is selected
    EXPECT_EQ(copy->moveUp(0), 0);           // top edge: stays
    EXPECT_EQ(copy->moveDown(0), 1);
    EXPECT_EQ(copy->name(0), "C");
    EXPECT_EQ(copy->moveDown(1), 1);  // bottom edge
    EXPECT_EQ(copy->removeNamed({"C", "b"}), -1);
    EXPECT_EQ(copy->size(), 0u);
    // The file changes only when the copy is saved.
    EXPECT_EQ(names().size(), 4u);
    ASSERT_TRUE(copy->save());
    EXPECT_TRUE(names().empty());
}

}  // namespace
