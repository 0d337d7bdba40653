// BargainWindow (dialog 25006): the single fill notice. The top shows the newest fill large
// and in its direction's colour (title line and body); below, every fill shown so far in
// arrival order — time, title line, body — with the newest selected and scrolled into view.
// showFills() redraws from the manager's list and brings the window forward without taking
// the keyboard from the ticket the trader is typing in. The list sorts by a click on a
// heading and keeps the user's column layout in `userDir`.
//
// One per process, kept by QtModuleUi; closing only hides it, so later fills reuse it.
// UI thread only.
#pragma once

#include <QWidget>

#include "order/bargain_dialog.h"

class QLabel;
class CSortListCtrl;

class BargainWindow : public QWidget {
    Q_OBJECT
public:
    static constexpr int kDialogId = 25006;

    BargainWindow(CSubscibeManage* facade, const std::string& userDir, QWidget* parent = nullptr);

    // Redraws the list from `fills` (arrival order) and shows the window.
    void showFills(const std::vector<tagBargainOrder>& fills);

    const CBargainDialog& core() const { return m_core; }
    CSortListCtrl* list() const { return m_list; }
    QLabel* latestTitle() const { return m_latestTitle; }
    QLabel* latestBody() const { return m_latestBody; }

private:
    void redraw();

    CBargainDialog m_core;
    QLabel* m_latestTitle;
    QLabel* m_latestBody;
    CSortListCtrl* m_list;
};
