#include "app/module_windows.h"

void CModuleWindows::add(std::string exportName, Opener open) {
    m_openers[std::move(exportName)] = std::move(open);
}

bool CModuleWindows::has(std::string_view exportName) const {
    return m_openers.find(exportName) != m_openers.end();
}

int CModuleWindows::open(std::string_view exportName, const WindowRequest& request) const {
    const auto it = m_openers.find(exportName);
    return it == m_openers.end() ? 0 : it->second(request);
}

CModuleWindows& moduleWindows() {
    static CModuleWindows windows;
    return windows;
}
