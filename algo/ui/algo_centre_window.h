// AlgoCentreWindow ("算法交易中心"): the single algorithmic execution centre. It owns the algo
// engine and its worker thread, so orders are worked from the moment the manager builds the
// window (hidden) for the first order routed to it, whether or not the trader looks. The list
// shows every order with its progress; the buttons create, start, pause, cancel, delete and
// reset orders, and set the pacing of the selected ones. Closing the window only hides it.
//
// The list is rebuilt from the engine's snapshot when the engine's revision moved (checked
// every 500 ms, when the journal entries are also written). Built by the manager's factory;
// owned by the host's window (Qt parent). UI thread only.
#pragma once

#include <QWidget>
#include <memory>
#include <vector>

#include "algo/algo_engine.h"
#include "algo/algo_worker.h"
#include "app/algo_centre.h"

class QLabel;
class QPushButton;
class QTimer;
class CSortListCtrl;
class CHelmsmanManage;

class AlgoCentreWindow : public QWidget, public IAlgoCentre {
    Q_OBJECT
public:
    // `runWorker` false: nobody steps the engine but the caller (tests).
    explicit AlgoCentreWindow(CHelmsmanManage& manager, QWidget* parent = nullptr,
                              bool runWorker = true);
    ~AlgoCentreWindow() override;

    // IAlgoCentre
    int addAlgoOrders(const std::vector<tagBrokerOrder>& orders,
                      const tagAlgoSetting& setting) override;
    void setDefaultSetting(const tagAlgoSetting& setting) override;
    void showCentre() override;

    CAlgoEngine& engine() { return *m_engine; }
    CSortListCtrl* list() const { return m_list; }
    const tagAlgoSetting& defaultSetting() const { return m_defaults; }

    // The commands of the buttons, on the selected orders.
    void newOrder();
    void startSelected();
    void pauseSelected();
    void cancelSelected();
    void deleteSelected();
    void resetSelected();
    void pacingSelected(int pacing);
    void editDefaults();
    // Order numbers of the selected rows.
    std::vector<int> selectedSerials() const;
    void selectSerial(int serial);
    // Rebuilds the list now; refresh() only when something changed.
    void rebuild();
    void refresh();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    template <class F>
    void forSelected(F&& f);

    CHelmsmanManage& m_manager;
    std::unique_ptr<CAlgoEngine> m_engine;
    std::unique_ptr<CAlgoWorker> m_worker;
    tagAlgoSetting m_defaults;
    CSortListCtrl* m_list;
    QLabel* m_summary;
    QTimer* m_timer;
    std::uint64_t m_shownRevision = ~0ull;
    bool m_placed = false;
};
