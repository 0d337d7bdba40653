// What the manager asks of the window layer. The Qt library installs an implementation that
// shows real dialogs; without one (tests, headless drivers) the manager uses a null UI that
// confirms nothing and shows nothing, so no order is ever sent unconfirmed by accident.
#pragma once

#include <string>
#include <vector>

#include "algo/algo_setting.h"
#include "host/records.h"

class IModuleUi {
public:
    virtual ~IModuleUi() = default;

    // The modal single-order confirmation. True when the user accepted.
    virtual bool confirmOrder(const tagBrokerOrder& order, const std::string& caller,
                              const tagAlgoSetting* algo) = 0;
    // The modal batch confirmation; the user may edit prices and volumes in place.
    virtual bool confirmBatch(std::vector<tagBrokerOrder>& orders, const std::string& caller,
                              const tagAlgoSetting* algo) = 0;
    // The modal confirmation of one server trigger order.
    virtual bool confirmTriggerOrder(const tagTriggerOrder& order, const std::string& caller) = 0;
    // The modeless confirmation of a batch of like orders.
    virtual void showSameConfirm(const std::vector<tagBrokerOrder>& orders,
                                 const std::string& caller) = 0;
    // The single fill notice: create it if needed, redraw its list, show it.
    virtual void showFillNotice(const std::vector<tagBargainOrder>& fills) = 0;
    // Hands orders to the algorithmic execution centre (opened hidden if needed). False when
    // there is no centre to take them; then nothing was sent.
    virtual bool handToAlgoCentre(const std::vector<tagBrokerOrder>& orders,
                                  const tagAlgoSetting& algo) = 0;
};

class NullModuleUi final : public IModuleUi {
public:
    bool confirmOrder(const tagBrokerOrder&, const std::string&, const tagAlgoSetting*) override {
        return false;
    }
    bool confirmBatch(std::vector<tagBrokerOrder>&, const std::string&,
                      const tagAlgoSetting*) override {
        return false;
    }
    bool confirmTriggerOrder(const tagTriggerOrder&, const std::string&) override {
        return false;
    }
    void showSameConfirm(const std::vector<tagBrokerOrder>&, const std::string&) override {}
    void showFillNotice(const std::vector<tagBargainOrder>&) override {}
    bool handToAlgoCentre(const std::vector<tagBrokerOrder>&, const tagAlgoSetting&) override {
        return false;
    }
};
