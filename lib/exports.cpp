// The exported entry points. Each one catches everything: nothing may throw into the host.
//
// This is the add-in's composition root: it may reach every tool's window to open it, while
// the manager in app/ knows tools only through narrow interfaces (IModuleUi), never the
// reverse.
#include "app/exports.h"

#include <cstring>
#include <string_view>

#include "account/ui/batch_trader_window.h"
#include "account/ui/fast_delete_all_window.h"
#include "account/ui/fast_exit_all_window.h"
#include "account/ui/fast_exit_window.h"
#include "account/ui/filled_statistics_window.h"
#include "app/helmsman_manage.h"
#include "app/ui/qt_prompter.h"
#include "app/ui/trade_option_page.h"
#include "app/ui/window_placement.h"
#include "order/ui/order_modify_dialog.h"
#include "order/ui/order_ticket_window.h"
#include "order/ui/qt_module_ui.h"
#include "order/ui/stop_trigger_dialog.h"
#include "robots/ui/robot_launcher_window.h"
#include "trigger/ui/local_trigger_window.h"

namespace {

CHelmsmanManage& manager() { return CHelmsmanManage::instance(); }

std::string text(const char* s) { return s ? std::string(s) : std::string(); }

// Runs `f`, turning any escaping exception into `fallback`.
template <class F, class R>
R guarded(F&& f, R fallback) noexcept {
    try {
        return f();
    } catch (...) {
        return fallback;
    }
}

QtPrompter& qtPrompter() {
    static QtPrompter prompter;
    return prompter;
}

QtModuleUi& qtUi() {
    static QtModuleUi ui;
    return ui;
}

// Exports whose tool this build opens. The others answer with their neutral value.
constexpr std::string_view kAvailable[] = {
    "InitHelmsman",     "HelmsmanDataChange", "HelmsmanLogonStateChange", "OpenHelmsman",
    "ShowConfirmOrder", "ShowMultiConfirm",   "ShowMultiConfirm_Same",    "OpenLocalTrigger",
    "OpenRobotLauncher", "OpenStopTrigger",  "HelmsmanModifyOrder",
    "OpenFastExit",     "OpenFastExitAll",    "OpenFastDeleteAll",        "DeleteTriggerOrders",
    "FilledOrderStatistics", "OpenBatchTrader",
};

}  // namespace

extern "C" {

void InitHelmsman(std::uint32_t hParent, CSubscibeManage* facade, const char* rootDir,
                  const char* userName, std::uint32_t hostValue) {
    guarded(
        [&] {
            manager().setPrompter(&qtPrompter());
            manager().setUi(&qtUi());
            manager().init(hParent, facade, text(rootDir), text(userName), hostValue);
            manager().setLocalTriggerFactory([] { return new LocalTriggerWindow(manager()); });
            window_placement::adoptHostWindow(hParent);
            return 0;
        },
        0);
}

int HelmsmanDataChange(std::uint32_t code, std::uintptr_t data) {
    return guarded([&] { return manager().dataChange(code, data); }, 0);
}

int HelmsmanLogonStateChange(std::uint32_t code, std::uintptr_t data) {
    return guarded([&] { return manager().logonStateChange(code, data); }, 0);
}

int OpenHelmsman(const tagHelmsmanPrefill* block) {
    return guarded([&] { return manager().initialised() ? openOrderTicket(block) : 0; }, 0);
}

int ShowConfirmOrder(tagBrokerOrder* order, int bShowConfirm, const char* caller,
                     const tagAlgoSetting* algo) {
    if (!order) return 0;
    return guarded(
        [&] { return manager().submitOrder(*order, bShowConfirm != 0, text(caller), algo); }, 0);
}

int ShowMultiConfirm(tagBrokerOrder* orders, int count, int bShowConfirm, const char* caller,
                     const tagAlgoSetting* algo) {
    if (!orders || count <= 0) return 0;
    return guarded(
        [&] {
            std::vector<tagBrokerOrder> batch(orders, orders + count);
            int r = manager().submitBatch(batch, bShowConfirm != 0, text(caller), algo);
            // Hand back what was sent: remarks, in-place edits and the host's identifiers.
            std::copy(batch.begin(), batch.end(), orders);
            return r;
        },
        0);
}

int ShowMultiConfirm_Same(tagBrokerOrder* orders, int count, const char* caller) {
    if (!orders || count <= 0) return 0;
    return guarded(
        [&] {
            std::vector<tagBrokerOrder> batch(orders, orders + count);
            const std::string name = text(caller);
            for (auto& o : batch)
                if (o.strRemark.empty()) o.strRemark = name;
            std::copy(batch.begin(), batch.end(), orders);
            manager().ui().showSameConfirm(batch, name);
            return 1;
        },
        0);
}

int OpenBatchTrader(const tagHelmsmanPrefill* block) {
    return guarded(
        [&] { return manager().initialised() ? openBatchTrader(block ? &block->symbol : nullptr) : 0; }, 0);
}
int OpenFastExit(const tagOpenedPosition* position, const char* text) {
    return guarded([&] { return manager().initialised() ? openFastExit(position, text) : 0; }, 0);
}
// Tools built by later work: neutral values, nothing opened.
int OpenSpreadTrader() { return 0; }
int OpenManualSpread() { return 0; }
int OpenStopTrigger(const tagOpenedPosition* position, int number, const char* text) {
    return guarded(
        [&] { return manager().initialised() ? openStopTrigger(position, number, text) : 0; }, 0);
}
int OpenLocalTrigger() {
    return guarded([] { return manager().openLocalTrigger() ? 1 : 0; }, 0);
}
int DeleteTriggerOrders(const void* block) {
    return guarded(
        [&] {
            return manager().initialised()
                       ? openDeleteTriggerOrders(static_cast<const tagAccoutInfo*>(block))
                       : 0;
        },
        0);
}
int OpenAMTOrder() { return 0; }
int FilledOrderStatistics() {
    return guarded([] { return manager().initialised() ? openFilledOrderStatistics() : 0; }, 0);
}
int OpenFastExitAll() {
    return guarded([] { return manager().initialised() ? openFastExitAll() : 0; }, 0);
}
int OpenFastDeleteAll() {
    return guarded([] { return manager().initialised() ? openFastDeleteAll() : 0; }, 0);
}
int OpenAlgoSet(tagAlgoSetting*, int) { return 0; }
int OpenRobotLauncher() {
    return guarded([] { return openRobotLauncher() ? 1 : 0; }, 0);
}

std::intptr_t HelmsmanSendMessage(std::uint32_t hWnd, std::uint32_t msg, std::uintptr_t wParam,
                                  std::uintptr_t lParam) {
    return guarded([&] { return manager().sendMessage(hWnd, msg, wParam, lParam); },
                   std::intptr_t{0});
}

int HelmsmanEnumWindows(int dialogId, std::uint32_t* handles, int capacity) {
    return guarded(
        [&] {
            const auto all = manager().handlesOf(dialogId);
            const int n = static_cast<int>(all.size());
            for (int i = 0; handles && i < n && i < capacity; ++i) handles[i] = all[i];
            return n;
        },
        0);
}

void HelmsmanUseClock(IClock* clock) {
    guarded(
        [&] {
            manager().setClock(clock);
            return 0;
        },
        0);
}

int HelmsmanModifyOrder(const tagBrokerOrder* order) {
    return guarded([&] { return manager().initialised() ? openOrderModify(order) : 0; }, 0);
}

int HelmsmanToolAvailable(const char* exportName) {
    if (!exportName) return 0;
    for (std::string_view name : kAvailable)
        if (name == exportName) return 1;
    return 0;
}

QWidget* HelmsmanCreateOptionPage(QWidget* parent) {
    return guarded([&]() -> QWidget* { return new CTradeOptionPage(parent); },
                   static_cast<QWidget*>(nullptr));
}

int HelmsmanApplyOptionPage(QWidget* page) {
    return guarded(
        [&] {
            auto* p = qobject_cast<CTradeOptionPage*>(page);
            return p && p->onApply() ? 1 : 0;
        },
        0);
}

}  // extern "C"
