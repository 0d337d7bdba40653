// The viewer, offscreen: pages, the tool filter, the selected order's detail, and a viewer
// without a journal.
#include "journal/ui/journal_window.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateTime>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>

#include "host/ui/sort_list_ctrl.h"
#include "journal/journal_view.h"
#include "support/qt_app.h"
#include "support/temp_dir.h"

namespace {

TEST(JournalWindow, PagesFiltersAndShowsTheSelectedOrder) {
    testApp();
    TempDir dir{"journal_ui"};
    auto journal = SqliteOrderJournal::open(dir / "journal.db", nullptr);
    const std::int64_t today = QDateTime(QDate::currentDate(), QTime(9, 30)).toMSecsSinceEpoch();
    for (int i = 0; i < JournalWindow::kPageSize + 50; ++i) {
        JournalEntry e;
        e.timeMs = today + i * 1000;
        e.tool = i % 2 ? "本地触发" : "舵手";
        e.tag = "#" + std::to_string(i);
        e.reason = "原因" + std::to_string(i);
        e.figures = {{"触发价", 5228.0 + i}};
        journal->record(e);
    }
    JournalEntry yesterday;
    yesterday.timeMs = today - 86400000;
    yesterday.tool = "舵手";
    journal->record(yesterday);

    JournalWindow w(journal.get(), "", dir.string());
    EXPECT_EQ(w.list()->rowCount(), JournalWindow::kPageSize);
    EXPECT_TRUE(w.moreButton()->isEnabled());
    // The newest is selected, its reason and figures below the list.
    EXPECT_EQ(w.reasonView()->toPlainText(), "原因249");
    ASSERT_EQ(w.figureList()->rowCount(), 1);
    EXPECT_EQ(w.figureList()->item(0, 1)->text(), "5477");

    w.loadMore();
    EXPECT_EQ(w.list()->rowCount(), JournalWindow::kPageSize + 50);
    EXPECT_FALSE(w.moreButton()->isEnabled());
    w.allDaysBox()->setChecked(true);  // refreshes
    EXPECT_EQ(w.list()->rowCount(), JournalWindow::kPageSize);

    ASSERT_EQ(w.toolBox()->count(), 3);  // 全部, then the tools on record
    w.allDaysBox()->setChecked(false);
    w.toolBox()->setCurrentText("本地触发");
    w.refresh();
    EXPECT_EQ(w.list()->rowCount(), 125);
    EXPECT_EQ(w.list()->item(0, journal_view::kColTag)->text(), "#249");
    w.list()->selectRow(1);
    EXPECT_EQ(w.reasonView()->toPlainText(), "原因247");
}

TEST(JournalWindow, WithoutAJournalSaysWhy) {
    testApp();
    JournalWindow w(nullptr, "无法打开委托日志文件x", "");
    EXPECT_EQ(w.list()->rowCount(), 0);
    EXPECT_FALSE(w.toolBox()->isEnabled());
    EXPECT_EQ(w.findChild<QLabel*>("notice")->text(), "无法打开委托日志文件x");
}

}  // namespace
