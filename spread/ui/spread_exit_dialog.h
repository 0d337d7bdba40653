// SpreadExitDialog: the read-only window of a spread robot's round trips — "价差平仓信息"
// for two-leg tools, "鸢翼平仓信息" for four-leg tools.
//
// The owning robot builds a CSpreadExitInfo (legs, direction, open and closed entries) and
// shows it modally:
//
//   SpreadExitDialog dialog(std::move(info), manager.userDir(), this);
//   dialog.exec();
//
// Two sortable lists, the spreads still open above and the round trips closed again below,
// each ending in its totals row when there is one. The totals row stays last whichever
// column the user sorts by. The column layouts the user makes are kept in the user
// directory, separately for the two-leg and the four-leg window.
//
// Owned by its caller; UI thread only.
#pragma once

#include <QDialog>
#include <string>

#include "spread/spread_exit.h"

class CSortListCtrl;

class SpreadExitDialog : public QDialog {
    Q_OBJECT
public:
    // `userDir` is where the column layouts are kept ("" keeps none).
    SpreadExitDialog(CSpreadExitInfo info, const std::string& userDir, QWidget* parent = nullptr);

    const CSpreadExitInfo& info() const { return m_info; }
    CSortListCtrl* openList() const { return m_open; }
    CSortListCtrl* closedList() const { return m_closed; }

    // The item data of a totals row (entry rows carry their entry's index).
    static constexpr quint64 kTotalsRow = ~quint64{0};

private:
    CSortListCtrl* makeList(const SpreadExitList& list, const std::string& userDir,
                            const char* listName);
    static void fill(CSortListCtrl* list, const SpreadExitList& content);
    // Moves the totals row back to the bottom after a sort.
    static void keepTotalsLast(CSortListCtrl* list);
    static void styleTotalsRow(CSortListCtrl* list, int row);

    CSpreadExitInfo m_info;
    CSortListCtrl* m_open = nullptr;
    CSortListCtrl* m_closed = nullptr;
};
