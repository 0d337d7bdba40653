// Window handles and messages.
//
// Every tool window is known to the rest of the module (and to robots' order tags) by a
// 32-bit handle the manager issues. Messages are delivered synchronously, on the UI thread,
// to the core object behind a handle; the Qt window only draws what that object holds.
#pragma once

#include <cstdint>

using WndHandle = std::uint32_t;

// Messages between the host and the module's windows.
inline constexpr std::uint32_t kMsgLogonState = 2069;  // wParam code, lParam data
inline constexpr std::uint32_t kMsgDataChange = 2070;  // wParam event code, lParam data
inline constexpr std::uint32_t kMsgSymbolLink = 2065;  // wParam 1, lParam -> tagSymbol

// Event codes of HelmsmanDataChange (low 16 bits).
inline constexpr std::uint32_t kEventOrderChanged = 2;  // data -> tagBrokerOrder
inline constexpr std::uint32_t kEventNewFill = 4;       // data -> tagBargainOrder
inline constexpr std::uint32_t kEventQuote = 1000;      // data -> IModuleFutureTrader::ITickEx

inline constexpr std::uint32_t eventKind(std::uint32_t code) { return code & 0xFFFFu; }

// The core object behind a window handle.
class IWndTarget {
public:
    virtual ~IWndTarget() = default;
    virtual std::intptr_t onMessage(std::uint32_t msg, std::uintptr_t wParam,
                                    std::uintptr_t lParam) = 0;
};
