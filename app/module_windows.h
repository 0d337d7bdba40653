// The module's windows as the exported entry points see them: a table from an export's name
// to the function that opens its window.
//
// The entry points (lib/exports.cpp) are free of Qt: they include no window header. The user
// interface library fills this table when the module is initialised (installModuleUi), so
// the same entry points build without Qt, for tests and for Windows, where every window
// export then answers 0 and the desk shows it as unavailable.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>

class CHelmsmanManage;

// What an export hands its window: its block (a prefill, a position, a settings block…),
// a number and a text, as the export's own signature has them.
struct WindowRequest {
    const void* block = nullptr;
    int number = 0;
    const char* text = nullptr;
};

class CModuleWindows {
public:
    using Opener = std::function<int(const WindowRequest&)>;

    // Registers the opener of one export (replacing an earlier one).
    void add(std::string exportName, Opener open);
    bool has(std::string_view exportName) const;
    // The opener's result; 0 when the export has no window in this build.
    int open(std::string_view exportName, const WindowRequest& request = {}) const;
    void clear() { m_openers.clear(); }

private:
    std::map<std::string, Opener, std::less<>> m_openers;
};

// The process-wide table the exports use.
CModuleWindows& moduleWindows();

// Installs the user interface into the manager (prompter, module UI, tool factories) and
// registers its windows. Defined by the linked user interface: the Qt library, or the
// headless stand-in (lib/headless_module.cpp) that installs nothing.
void installModuleUi(CHelmsmanManage& manager, CModuleWindows& windows);
