// The Qt user interface of the add-in: installs the Qt prompter and module UI into the
// manager at InitHelmsman and registers the window of every export this build opens. The
// only file of the add-in library that includes window headers; the entry points themselves
// (lib/exports.cpp) stay free of Qt.
#include "app/exports.h"
#include "app/helmsman_manage.h"
#include "app/module_windows.h"
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

QtPrompter& qtPrompter() {
    static QtPrompter prompter;
    return prompter;
}

QtModuleUi& qtUi() {
    static QtModuleUi ui;
    return ui;
}

template <class T>
const T* blockOf(const WindowRequest& r) {
    return static_cast<const T*>(r.block);
}

}  // namespace

void installModuleUi(CHelmsmanManage& manager, CModuleWindows& windows) {
    manager.setPrompter(&qtPrompter());
    manager.setUi(&qtUi());
    manager.setLocalTriggerFactory([&manager] { return new LocalTriggerWindow(manager); });
    window_placement::adoptHostWindow(manager.parentWnd());

    windows.add("OpenHelmsman", [](const WindowRequest& r) {
        return openOrderTicket(blockOf<tagHelmsmanPrefill>(r));
    });
    windows.add("OpenStopTrigger", [](const WindowRequest& r) {
        return openStopTrigger(blockOf<tagOpenedPosition>(r), r.number, r.text);
    });
    windows.add("OpenLocalTrigger",
                [&manager](const WindowRequest&) { return manager.openLocalTrigger() ? 1 : 0; });
    windows.add("OpenRobotLauncher",
                [](const WindowRequest&) { return openRobotLauncher() ? 1 : 0; });
    windows.add("HelmsmanModifyOrder", [](const WindowRequest& r) {
        return openOrderModify(blockOf<tagBrokerOrder>(r));
    });
}

// The options page is a Qt widget: its two entry points live with the user interface.
extern "C" {

QWidget* HelmsmanCreateOptionPage(QWidget* parent) {
    try {
        return new CTradeOptionPage(parent);
    } catch (...) {
        return nullptr;
    }
}

int HelmsmanApplyOptionPage(QWidget* page) {
    try {
        auto* p = qobject_cast<CTradeOptionPage*>(page);
        return p && p->onApply() ? 1 : 0;
    } catch (...) {
        return 0;
    }
}

}  // extern "C"
