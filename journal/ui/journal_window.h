// JournalWindow ("委托日志"): the audit journal's viewer. Filters (a day or all days, the tool,
// the account, the instrument, text in the tag) choose what the list shows, newest first, one
// page at a time ("更多" adds the next); the list sorts by any column; the selected order's
// reason and figures show below it. "刷新" reads again, also what was recorded since.
//
// It reads through the journal's page queries, each a short indexed read of at most one page,
// so the UI thread never waits long. Without a journal it says why and shows nothing.
//
// One viewer per process (openOrderJournal shows the existing one); owned by the host's
// window and deleted on close. UI thread only.
#pragma once

#include <QWidget>
#include <string>
#include <vector>

#include "journal/sqlite_order_journal.h"

class CSortListCtrl;
class QCheckBox;
class QComboBox;
class QDateEdit;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;

class JournalWindow : public QWidget {
    Q_OBJECT
public:
    // `journal` may be null; `notice` is what became of the journal file at start-up (empty
    // when nothing happened); the user directory keeps the lists' column layouts.
    JournalWindow(SqliteOrderJournal* journal, const std::string& notice,
                  const std::string& userDir, QWidget* parent = nullptr);

    static constexpr int kPageSize = 200;

    // Reads the first page again with the filters as they are.
    void refresh();
    // Appends the next page.
    void loadMore();
    JournalFilter filter() const;

    CSortListCtrl* list() const { return m_list; }
    CSortListCtrl* figureList() const { return m_figures; }
    QPlainTextEdit* reasonView() const { return m_reason; }
    QLabel* statusLabel() const { return m_status; }
    QCheckBox* allDaysBox() const { return m_allDays; }
    QDateEdit* dayEdit() const { return m_day; }
    QComboBox* toolBox() const { return m_tool; }
    QLineEdit* accountEdit() const { return m_account; }
    QLineEdit* codeEdit() const { return m_code; }
    QLineEdit* tagEdit() const { return m_tag; }
    QPushButton* moreButton() const { return m_more; }

private:
    void readPage(bool append);
    void fillTools();
    void showSelected();
    void updateStatus(const std::string& error);

    SqliteOrderJournal* m_journal;
    std::string m_notice;
    std::vector<JournalRecord> m_rows;  // list row data = index + 1
    JournalCursor m_cursor;
    bool m_hasMore = false;

    QCheckBox* m_allDays;
    QDateEdit* m_day;
    QComboBox* m_tool;
    QLineEdit* m_account;
    QLineEdit* m_code;
    QLineEdit* m_tag;
    QPushButton* m_refresh;
    QPushButton* m_more;
    QLabel* m_noticeLabel;
    CSortListCtrl* m_list;
    QPlainTextEdit* m_reason;
    CSortListCtrl* m_figures;
    QLabel* m_status;
};

// Shows the viewer, creating it on first use centred on the host's window; a viewer already
// open is raised and refreshed.
JournalWindow* openOrderJournal(SqliteOrderJournal* journal, const std::string& notice,
                                const std::string& userDir);
