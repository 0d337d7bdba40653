// QtModuleUi: the Qt side of the manager's UI seam. Modal confirmations are shown with
// exec() and only answer (the manager sends); the like-orders confirmation is modeless and
// sends itself on acceptance; the fill notice is one window, created on the first fill and
// redrawn and shown on every later one.
//
// No host window exists in this process, so windows are top-level; a modal confirmation is
// parented to the active window (normally the ticket that asked) so it opens over it.
// Orders for algorithmic execution go to the manager's algo centre; only when none can be
// built does handing them over come here, which tells the trader, through the manager's
// prompter, that those orders were not sent, and answers false.
//
// One instance lives as long as the library (the exports install it into the manager); it
// owns the fill notice. UI thread only.
#pragma once

#include <QPointer>

#include "app/module_ui.h"

#include "order/ui/bargain_window.h"
class CHelmsmanManage;

class QtModuleUi final : public IModuleUi {
public:
    // `manager` null: the process-wide manager.
    explicit QtModuleUi(CHelmsmanManage* manager = nullptr);
    ~QtModuleUi() override;
    QtModuleUi(const QtModuleUi&) = delete;
    QtModuleUi& operator=(const QtModuleUi&) = delete;

    bool confirmOrder(const tagBrokerOrder& order, const std::string& caller,
                      const tagAlgoSetting* algo) override;
    bool confirmBatch(std::vector<tagBrokerOrder>& orders, const std::string& caller,
                      const tagAlgoSetting* algo) override;
    bool confirmTriggerOrder(const tagTriggerOrder& order, const std::string& caller) override;
    void showSameConfirm(const std::vector<tagBrokerOrder>& orders,
                         const std::string& caller) override;
    void showFillNotice(const std::vector<tagBargainOrder>& fills) override;
    bool handToAlgoCentre(const std::vector<tagBrokerOrder>& orders,
                          const tagAlgoSetting& algo) override;

    // The fill notice, or null before the first fill.
    BargainWindow* fillNotice() const { return m_fillNotice.data(); }

private:
    CHelmsmanManage& manager() const;

    CHelmsmanManage* m_manager;
    QPointer<BargainWindow> m_fillNotice;
};
