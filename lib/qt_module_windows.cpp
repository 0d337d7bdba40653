// The Qt user interface of the add-in: installs the Qt prompter and module UI into the
// manager at InitHelmsman and registers the window of every export this build opens. The
// only file of the add-in library that includes window headers; the entry points themselves
// (lib/exports.cpp) stay free of Qt.
#include "account/ui/batch_trader_window.h"
#include "account/ui/fast_delete_all_window.h"
#include "account/ui/fast_exit_all_window.h"
#include "account/ui/fast_exit_window.h"
#include "account/ui/filled_statistics_window.h"
#include "algo/ui/algo_centre_window.h"
#include "algo/ui/algo_setting_dialog.h"
#include "amt/ui/amt_order_window.h"
#include "app/exports.h"
#include "app/helmsman_manage.h"
#include "app/module_windows.h"
#include "app/ui/qt_prompter.h"
#include "app/ui/trade_option_page.h"
#include "app/ui/window_placement.h"
#include "journal/module_journal.h"
#include "journal/ui/journal_window.h"
#include "order/ui/order_modify_dialog.h"
#include "order/ui/order_ticket_window.h"
#include "order/ui/qt_module_ui.h"
#include "order/ui/stop_trigger_dialog.h"
#include "robots/robot_strings.h"
#include "robots/ui/auto_spread_window.h"
#include "robots/ui/blader_window.h"
#include "robots/ui/robot_launcher_window.h"
#include "spread/ui/manual_spread_window.h"
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
    manager.setAlgoCentreFactory([&manager] { return new AlgoCentreWindow(manager); });
    manager.setAlgoSettingEditor(
        [&manager](tagAlgoSetting& block) { return editAlgoSettingModal(block, manager); });
    CRobotLauncher::attachFactory(robot_text::kBladerName, openBladerWindow);
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
    windows.add("OpenFastExit", [](const WindowRequest& r) {
        return openFastExit(blockOf<tagOpenedPosition>(r), r.text);
    });
    windows.add("OpenFastExitAll", [](const WindowRequest&) { return openFastExitAll(); });
    windows.add("OpenFastDeleteAll", [](const WindowRequest&) { return openFastDeleteAll(); });
    windows.add("DeleteTriggerOrders", [](const WindowRequest& r) {
        return openDeleteTriggerOrders(blockOf<tagAccoutInfo>(r));
    });
    windows.add("FilledOrderStatistics",
                [](const WindowRequest&) { return openFilledOrderStatistics(); });
    windows.add("OpenBatchTrader", [](const WindowRequest& r) {
        const auto* block = blockOf<tagHelmsmanPrefill>(r);
        return openBatchTrader(block ? &block->symbol : nullptr);
    });
    windows.add("OpenManualSpread", [](const WindowRequest&) { return openManualSpread(); });
    windows.add("OpenSpreadTrader", [&manager](const WindowRequest&) {
        return openAutoSpread(manager) != 0 ? 1 : 0;
    });
    windows.add("OpenAMTOrder", [](const WindowRequest&) { return openAMTOrder(); });
    windows.add("OpenOrderJournal", [&manager](const WindowRequest&) {
        const ModuleJournal& j = moduleJournal();
        return openOrderJournal(j.journal.get(), j.notice, manager.userDir()) ? 1 : 0;
    });
    windows.add("OpenAlgoCentre",
                [&manager](const WindowRequest&) { return manager.openAlgoCentre() ? 1 : 0; });
    // Mode 0 edits a copy of the block in the settings dialog and copies it back on OK;
    // mode 1 hands the block to the algo centre and shows it.
    windows.add("OpenAlgoSet", [&manager](const WindowRequest& r) {
        auto* block = const_cast<tagAlgoSetting*>(blockOf<tagAlgoSetting>(r));
        if (!block) return 0;
        if (r.number == 0) {
            tagAlgoSetting copy = *block;
            if (!manager.editAlgoSetting(copy)) return 0;
            *block = copy;
            return 1;
        }
        if (r.number != 1) return 0;
        IAlgoCentre* centre = manager.algoCentre();
        if (!centre) return 0;
        centre->setDefaultSetting(*block);
        centre->showCentre();
        return 1;
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
