// A stand-in add-in for the shell's tests: logs every call it receives for StubLog. Built
// with STUB_INCOMPLETE it lacks HelmsmanLogonStateChange, which the shell must refuse.
#include <cstdint>
#include <cstring>
#include <string>

#include "app/exports.h"
#include "host/subscibe_manage.h"

#define STUB_API extern "C" __attribute__((visibility("default")))

namespace {
std::string g_log;
void note(const std::string& line) { g_log += line + '\n'; }
}  // namespace

STUB_API const char* StubLog() { return g_log.c_str(); }
STUB_API void StubClear() { g_log.clear(); }

STUB_API void InitHelmsman(std::uint32_t, CSubscibeManage* facade, const char* root,
                           const char* user, std::uint32_t) {
    note(std::string("init ") + (facade ? "facade " : "null ") + user);
}
STUB_API int HelmsmanDataChange(std::uint32_t code, std::uintptr_t) {
    note("data " + std::to_string(code & 0xFFFF));
    return 0;
}
#ifndef STUB_INCOMPLETE
STUB_API int HelmsmanLogonStateChange(std::uint32_t code, std::uintptr_t) {
    note("logon " + std::to_string(code));
    return 0;
}
#endif
STUB_API std::intptr_t HelmsmanSendMessage(std::uint32_t hWnd, std::uint32_t msg,
                                           std::uintptr_t wParam, std::uintptr_t lParam) {
    std::string line = "msg " + std::to_string(hWnd) + ' ' + std::to_string(msg) + ' ' +
                       std::to_string(wParam);
    if (msg == 2065 && lParam) line += ' ' + reinterpret_cast<const tagSymbol*>(lParam)->strCode;
    if (msg != 2070) note(line);  // quotes to windows would flood the log
    return 1;
}
STUB_API int HelmsmanEnumWindows(int dialogId, std::uint32_t* handles, int capacity) {
    // Two open tickets, no batch order windows.
    if (dialogId != 25001) return 0;
    const std::uint32_t open[] = {101, 102};
    for (int i = 0; i < 2 && i < capacity; ++i) handles[i] = open[i];
    return 2;
}
STUB_API void HelmsmanUseClock(IClock*) { note("clock"); }
STUB_API int HelmsmanToolAvailable(const char* name) {
    return std::strcmp(name, "OpenHelmsman") == 0 || std::strcmp(name, "OpenLocalTrigger") == 0
               ? 1
               : 0;
}
STUB_API int OpenHelmsman(const tagHelmsmanPrefill* block) {
    note(std::string("OpenHelmsman ") + (block ? block->symbol.strCode : "-"));
    return 1;
}
STUB_API int OpenLocalTrigger() {
    note("OpenLocalTrigger");
    return 1;
}
// Exported but reported unavailable: the shell must not call it.
STUB_API int OpenManualSpread() {
    note("OpenManualSpread");
    return 1;
}
