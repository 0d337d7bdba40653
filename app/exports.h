// The module's exported entry points, as the host calls them. C linkage, never throwing.
//
// Handles and event data are pointer-sized here (the host passes a pointer to a record as
// the data of an event); window handles are the manager's 32-bit handles.
#pragma once

#include <cstdint>
#include <string>

#include "algo/algo_setting.h"
#include "host/records.h"
#include "host/subscibe_manage.h"

#if defined(_WIN32)
#if defined(HELMSMAN_BUILDING_LIBRARY)
#define HELMSMAN_API __declspec(dllexport)
#else
#define HELMSMAN_API __declspec(dllimport)
#endif
#else
#define HELMSMAN_API __attribute__((visibility("default")))
#endif

class IClock;
class QWidget;

// Pre-fill block of OpenHelmsman: the ticket starts on this account and symbol, with these
// prices (0 = leave the box as it is).
struct tagHelmsmanPrefill {
    tagAccoutInfo account;  // empty strAccountID: keep the ticket's own choice
    tagSymbol symbol;       // empty code: no symbol
    double dPrice = 0;
    double dStopLoss = 0;
    double dTakeProfit = 0;
    double dVolume = 0;
    std::int32_t nDirection = 0;  // 0: not given
};

extern "C" {

HELMSMAN_API void InitHelmsman(std::uint32_t hParent, CSubscibeManage* facade, const char* rootDir,
                               const char* userName, std::uint32_t hostValue);
HELMSMAN_API int HelmsmanDataChange(std::uint32_t code, std::uintptr_t data);
HELMSMAN_API int HelmsmanLogonStateChange(std::uint32_t code, std::uintptr_t data);

HELMSMAN_API int OpenHelmsman(const tagHelmsmanPrefill* block);
HELMSMAN_API int OpenBatchTrader(const tagHelmsmanPrefill* block);
HELMSMAN_API int ShowConfirmOrder(tagBrokerOrder* order, int bShowConfirm, const char* caller,
                                  const tagAlgoSetting* algo);
HELMSMAN_API int ShowMultiConfirm(tagBrokerOrder* orders, int count, int bShowConfirm,
                                  const char* caller, const tagAlgoSetting* algo);
HELMSMAN_API int ShowMultiConfirm_Same(tagBrokerOrder* orders, int count, const char* caller);
HELMSMAN_API int OpenFastExit(const tagOpenedPosition* position, const char* text);
HELMSMAN_API int OpenStopTrigger(const tagOpenedPosition* position, int number, const char* text);
HELMSMAN_API int OpenSpreadTrader();
HELMSMAN_API int OpenManualSpread();
HELMSMAN_API int OpenLocalTrigger();
// `block`: null, or a tagAccoutInfo naming the account whose trigger orders are shown checked.
HELMSMAN_API int DeleteTriggerOrders(const void* block);
HELMSMAN_API int OpenAMTOrder();
HELMSMAN_API int FilledOrderStatistics();
HELMSMAN_API int OpenFastExitAll();
HELMSMAN_API int OpenFastDeleteAll();
HELMSMAN_API int OpenAlgoSet(tagAlgoSetting* block, int mode);
// Shows the single algorithmic execution centre (built on first use).
HELMSMAN_API int OpenAlgoCentre();
// The robot launcher, from which the strategy robots are opened (one launcher; a second
// call shows it).
HELMSMAN_API int OpenRobotLauncher();
// The viewer of the audit journal, in which every order the module sent is recorded with
// the tool that sent it and why (one viewer; a second call shows and refreshes it).
HELMSMAN_API int OpenOrderJournal();

// Stand-ins for what the operating system gives a real host: sending a window message to
// one of the module's window handles (as SendMessage would), listing the module's windows
// of one dialog template (as EnumWindows would), and sharing the host process's clock.
HELMSMAN_API std::intptr_t HelmsmanSendMessage(std::uint32_t hWnd, std::uint32_t msg,
                                               std::uintptr_t wParam, std::uintptr_t lParam);
HELMSMAN_API int HelmsmanEnumWindows(int dialogId, std::uint32_t* handles, int capacity);
HELMSMAN_API void HelmsmanUseClock(IClock* clock);
// 1 when the named export opens a working tool in this build (the host greys out the rest).
HELMSMAN_API int HelmsmanToolAvailable(const char* exportName);
// Opens the change of one working plain order (a new window each call); 0 when the order has
// no identifier. The host reaches the window only through this export.
HELMSMAN_API int HelmsmanModifyOrder(const tagBrokerOrder* order);
// The options page for a host that loads the library by name and cannot construct the
// exported class itself: create it under `parent`, and accept it (returns 1).
HELMSMAN_API QWidget* HelmsmanCreateOptionPage(QWidget* parent);
HELMSMAN_API int HelmsmanApplyOptionPage(QWidget* page);

}  // extern "C"
