// The shared template menu and dialogs, offscreen, on the manual spread's records. With
// HELMSMAN_SCREENSHOT_DIR set the tests also save pictures of the menu and both dialogs.
#include <gtest/gtest.h>

#include <QAction>
#include <QLineEdit>
#include <QPushButton>

#include "host/ui/sort_list_ctrl.h"
#include "spread/manual_tool.h"
#include "spread/ui/template_manager_dialog.h"
#include "spread/ui/template_menu.h"
#include "spread/ui/template_name_dialog.h"
#include "support/qt_app.h"

namespace {

using Manual = tagManualSpreadTemplate;

Manual named(const std::string& name, const char* a, const char* b, bool butterfly = false) {
    Manual t;
    t.strName = name;
    t.legs = {{{1, a}, {1, b}, {1, "IH2406"}}};
    t.nSpreadLots = {1, 2, 1};
    t.bButterfly = butterfly;
    return t;
}

struct TemplateUi : ManualTemplatesTest {
    TemplateUi() { testApp(); }

    void seed() {
        ASSERT_TRUE(templates.store().save({named("跨期IF", "IF2406", "IF2409"),
                                            named("ABC", "rb2410", "rb2501"),
                                            named("蝶式", "IC2406", "IC2409", true)}));
    }
};

TEST_F(TemplateUi, MenuHasTheCommandsThenOneItemPerTemplate) {
    seed();
    tool.current = "ABC";
    TemplateMenu menu(templates);
    QList<QAction*> a = menu.actions();
    ASSERT_EQ(a.size(), 5);
    EXPECT_EQ(a[4]->text(), "设置0");  // the placeholder before the first pop-up

    menu.refill();
    a = menu.actions();
    ASSERT_EQ(a.size(), 7);
    const std::pair<int, const char*> fixed[] = {
        {26772, "模板管理器"}, {26771, "保存当前设置"}, {26774, "设为默认模板"}};
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(TemplateMenu::commandId(a[i]), fixed[i].first);
        EXPECT_EQ(a[i]->text(), QString::fromUtf8(fixed[i].second));
    }
    EXPECT_TRUE(a[3]->isSeparator());
    EXPECT_EQ(TemplateMenu::commandId(a[5]), 26781);
    EXPECT_EQ(a[5]->text(), "ABC");
    EXPECT_TRUE(a[5]->isChecked());
    EXPECT_FALSE(a[4]->isChecked());

    // Applying through the menu; a refill after the file changed drops the gone items.
    menu.run(26782);
    EXPECT_EQ(tool.current, "蝶式");
    ASSERT_TRUE(templates.store().save({}));
    menu.refill();
    EXPECT_EQ(menu.actions().size(), 4);

    seed();
    tool.current = "ABC";
    menu.refill();
    menu.popup(QPoint(0, 0));
    saveScreenshot(&menu, "template_menu.png");
    menu.hide();
}

TEST_F(TemplateUi, NameDialogStaysOpenOnAnEmptyName) {
    TemplateNameDialog dialog(prompter);
    EXPECT_EQ(dialog.windowTitle(), "请输入设置的名称");
    dialog.show();
    dialog.okButton()->click();
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(prompter.lastText(), "名称不能为空,请重新输入!");

    dialog.edit()->setText("价差模板 ");
    saveScreenshot(&dialog, "template_name_dialog.png");
    dialog.okButton()->click();
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(dialog.name(), "价差模板 ");
}

TEST_F(TemplateUi, ManagerEditsACopyUntilOk) {
    seed();
    const auto rowTexts = [](CSortListCtrl* list, int row) {
        std::vector<std::string> t;
        for (int c = 0; c < list->columnCount(); ++c)
            t.push_back(list->item(row, c)->text().toStdString());
        return t;
    };
    {
        TemplateManagerDialog dialog(templates);
        EXPECT_EQ(dialog.windowTitle(), "价差下单模板管理器");
        CSortListCtrl* list = dialog.list();
        ASSERT_EQ(list->rowCount(), 3);
        ASSERT_EQ(list->columnCount(), 7);
        EXPECT_EQ(list->horizontalHeaderItem(6)->text(), "数量C");
        EXPECT_EQ(rowTexts(list, 0),
                  (std::vector<std::string>{"跨期IF", "IF2406", "1", "IF2409", "2", "N/A", "N/A"}));
        EXPECT_EQ(rowTexts(list, 2)[5], "IH2406");
        EXPECT_TRUE(list->selectedItems().isEmpty());
        dialog.show();
        list->selectRow(1);
        saveScreenshot(&dialog, "template_manager.png");

        // Delete everything, then cancel: the file stays.
        for (int i = 0; i < 3; ++i) {
            if (list->selectedItems().isEmpty()) list->selectRow(0);
            dialog.removeSelected();
        }
        EXPECT_EQ(list->rowCount(), 0);
        dialog.reject();
    }
    EXPECT_EQ(templates.names().size(), 3u);

    TemplateManagerDialog dialog(templates);
    dialog.list()->selectRow(2);
    dialog.moveSelectedUp();
    EXPECT_EQ(dialog.list()->item(1, 0)->text(), "蝶式");
    EXPECT_TRUE(dialog.list()->item(1, 0)->isSelected());
    dialog.accept();
    EXPECT_EQ(templates.names(), (std::vector<std::string>{"跨期IF", "蝶式", "ABC"}));

    // A sorted list saves in the order shown, and a move works on the rows as shown.
    TemplateManagerDialog sorted(templates);
    sorted.list()->SortByColumn(1, true);  // IC2406, IF2406, rb2410
    sorted.list()->selectRow(2);
    sorted.moveSelectedUp();
    sorted.accept();
    EXPECT_EQ(templates.names(), (std::vector<std::string>{"蝶式", "ABC", "跨期IF"}));
}

}  // namespace
