// The "我的键盘" key settings: a few keyboard shortcuts that send the ticket's order without
// touching the mouse, and whether they are on at all.
//
// A shortcut acts exactly like the buy or sell button of the immediate page (same volume,
// open/close, hedge, stop-loss and take-profit, same checks), with two differences:
// - "at the touch" actions price from the opposite best quote (ask for a buy, bid for a sell,
//   with the page's offset when its offset box is checked) whatever the bid/ask box says;
//   "at the price" actions take the price box whatever the bid/ask box says;
// - the order is confirmed according to bShowHotkeyOrderConfirm, not the plain-order flag.
//
// Keys are kept as Qt's portable key-sequence text ("F2", "Shift+F2"); the core treats them
// as opaque names and only compares them (case-insensitively) to refuse duplicates.
//
// Shortcuts start switched off: a trader turns them on deliberately in "我的键盘", because a
// stray key press must never send an order nobody meant.
//
// Stored in Profile.ini, section "HotKey" (the module section is left alone). Plain values,
// no threads of their own.
#pragma once

#include <array>
#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

inline constexpr const char* kHotkeySection = "HotKey";

enum class HotkeyAction : int { BuyAtTouch = 0, SellAtTouch, BuyAtPrice, SellAtPrice };
inline constexpr std::size_t kHotkeyActionCount = 4;

struct HotkeySettings {
    std::int32_t bEnabled = 0;
    // By HotkeyAction; an empty text means no key.
    std::array<std::string, kHotkeyActionCount> keys{"F2", "F3", "Shift+F2", "Shift+F3"};

    const std::string& key(HotkeyAction a) const { return keys[static_cast<std::size_t>(a)]; }
    std::string& key(HotkeyAction a) { return keys[static_cast<std::size_t>(a)]; }
    friend bool operator==(const HotkeySettings&, const HotkeySettings&) = default;
};

// Direction of an action: kDirBuy or kDirSell.
int hotkeyDirection(HotkeyAction a);
bool hotkeyAtTouch(HotkeyAction a);
// The label shown in "我的键盘" and the Profile.ini key of an action.
const char* hotkeyLabel(HotkeyAction a);
const char* hotkeyIniKey(HotkeyAction a);

// The first key (non-empty) given to two actions, compared case-insensitively; "" when none.
std::string duplicateHotkey(const HotkeySettings& s);

// Reads section "HotKey"; absent keys take the defaults above. Never throws.
HotkeySettings loadHotkeys(const std::filesystem::path& profileIni);
// Writes the section's keys, leaving every other line of the file as it was. False when the
// file could not be written.
bool saveHotkeys(const std::filesystem::path& profileIni, const HotkeySettings& s);
