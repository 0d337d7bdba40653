// LocalTriggerWindow (dialog 25013, "本地触发单中心"): the single local trigger centre. It
// holds the centre's core object and drives its 600 ms step with a timer, so triggers are
// watched from the moment the manager builds the window (hidden) for the first trigger,
// whether or not the trader ever opens it. Closing the window only hides it; the triggers
// live until the window is destroyed with its owner, and then every quote subscription is
// given back.
//
// The list shows the triggers by the display options (which statuses, which optional
// columns); it is rebuilt after every add, after a command, and every fifth step while the
// window is visible, keeping the remembered selection.
//
// Built by the manager's factory; owned by the host's window (Qt parent). UI thread only:
// adds from another thread reach the list through a queued call.
#pragma once

#include <QWidget>
#include <atomic>
#include <memory>

#include "app/local_trigger_centre.h"
#include "trigger/local_trigger.h"

class QCheckBox;
class QComboBox;
class QPushButton;
class QTimer;
class CSortListCtrl;
class CHelmsmanManage;

class LocalTriggerWindow : public QWidget, public ILocalTriggerCentre {
    Q_OBJECT
public:
    explicit LocalTriggerWindow(CHelmsmanManage& manager, QWidget* parent = nullptr);
    ~LocalTriggerWindow() override;

    // ILocalTriggerCentre
    bool addTrigger(const tagTriggerOrder& trigger, const tagAlgoSetting* options) override;
    bool addTriggers(const std::vector<tagTriggerOrder>& triggers,
                     const tagAlgoSetting* options) override;
    void showCentre() override;

    CLocalTrigger& core() { return *m_core; }
    CSortListCtrl* list() const { return m_list; }
    QTimer* timer() const { return m_timer; }

    // The commands of the buttons.
    void cancelSelected();
    void cancelAll();
    void exportList();
    // Rebuilds the list now.
    void rebuild();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void onStep();
    void scheduleRebuild();
    void applyDisplayControls();
    void syncDisplayControls();
    std::vector<int> selectedIndices() const;

    CHelmsmanManage& m_manager;
    std::unique_ptr<CLocalTrigger> m_core;
    CSortListCtrl* m_list;
    QComboBox* m_showType;
    QCheckBox* m_showExpiry;
    QCheckBox* m_showEntryFlag;
    QCheckBox* m_showHedge;
    QCheckBox* m_showComment;
    QPushButton* m_cancelSelected;
    QPushButton* m_cancelAll;
    QPushButton* m_export;
    QTimer* m_timer;
    std::string m_headings;
    std::atomic<bool> m_rebuildQueued{false};  // set from adding threads
    bool m_placed = false;
};
