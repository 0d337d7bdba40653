// The exported entry points. Each one catches everything: nothing may throw into the host.
//
// This file is free of Qt: the windows are reached through the table the user interface
// registers at InitHelmsman (app/module_windows.h), so the export table and its non-window
// entry points build and are tested without Qt, on Linux and for Windows. The manager in
// app/ knows tools only through narrow interfaces, never the reverse.
#include "app/exports.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <vector>

#include "app/helmsman_manage.h"
#include "app/module_windows.h"
#include "host/utf8_path.h"
#ifdef HELMSMAN_JOURNAL
#include "journal/module_journal.h"
#endif

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

// Opens the window of `exportName` when the module is initialised and the build has it.
int openWindow(std::string_view exportName, const WindowRequest& request = {}) {
    return guarded(
        [&] { return manager().initialised() ? moduleWindows().open(exportName, request) : 0; },
        0);
}

// Entry points that work without any window.
constexpr std::string_view kHeadless[] = {
    "InitHelmsman",     "HelmsmanDataChange", "HelmsmanLogonStateChange",
    "ShowConfirmOrder", "ShowMultiConfirm",   "ShowMultiConfirm_Same",
};

}  // namespace

extern "C" {

void InitHelmsman(std::uint32_t hParent, CSubscibeManage* facade, const char* rootDir,
                  const char* userName, std::uint32_t hostValue) {
    guarded(
        [&] {
            // The host's names arrive in its ANSI code page; the module keeps UTF-8.
            manager().init(hParent, facade, hostTextToUtf8(text(rootDir)),
                           hostTextToUtf8(text(userName)), hostValue);
#ifdef HELMSMAN_JOURNAL
            openModuleJournal(manager());
#endif
            installModuleUi(manager(), moduleWindows());
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
    return openWindow("OpenHelmsman", {block});
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
    return openWindow("OpenBatchTrader", {block});
}
int OpenFastExit(const tagOpenedPosition* position, const char* text) {
    return openWindow("OpenFastExit", {position, 0, text});
}
int OpenSpreadTrader() { return openWindow("OpenSpreadTrader"); }
int OpenManualSpread() { return openWindow("OpenManualSpread"); }
int OpenStopTrigger(const tagOpenedPosition* position, int number, const char* text) {
    return openWindow("OpenStopTrigger", {position, number, text});
}
int OpenLocalTrigger() { return openWindow("OpenLocalTrigger"); }
int DeleteTriggerOrders(const void* block) { return openWindow("DeleteTriggerOrders", {block}); }
int OpenAMTOrder() { return openWindow("OpenAMTOrder"); }
int FilledOrderStatistics() { return openWindow("FilledOrderStatistics"); }
int OpenFastExitAll() { return openWindow("OpenFastExitAll"); }
int OpenFastDeleteAll() { return openWindow("OpenFastDeleteAll"); }
int OpenAlgoSet(tagAlgoSetting* block, int mode) { return openWindow("OpenAlgoSet", {block, mode}); }
int OpenRobotLauncher() { return openWindow("OpenRobotLauncher"); }
int OpenAlgoCentre() { return openWindow("OpenAlgoCentre"); }
int OpenOrderJournal() { return openWindow("OpenOrderJournal"); }

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
    return openWindow("HelmsmanModifyOrder", {order});
}

int HelmsmanToolAvailable(const char* exportName) {
    if (!exportName) return 0;
    for (std::string_view name : kHeadless)
        if (name == exportName) return 1;
    return moduleWindows().has(exportName) ? 1 : 0;
}

}  // extern "C"
