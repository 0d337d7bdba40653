#include "order/hotkeys.h"

#include <cctype>

#include "app/profile_ini.h"
#include "host/records.h"
#include "order/order_strings.h"

namespace {

constexpr const char* kIniEnabled = "bEnableHotKey";
constexpr std::array<const char*, kHotkeyActionCount> kIniKeys{"strBuyAtTouch", "strSellAtTouch",
                                                               "strBuyAtPrice", "strSellAtPrice"};
constexpr std::array<const char*, kHotkeyActionCount> kLabels{
    order_text::kHotkeyBuyAtTouch, order_text::kHotkeySellAtTouch, order_text::kHotkeyBuyAtPrice,
    order_text::kHotkeySellAtPrice};

std::string folded(std::string_view s) {
    std::string out(s);
    for (char& c : out) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return out;
}

}  // namespace

int hotkeyDirection(HotkeyAction a) {
    return (a == HotkeyAction::BuyAtTouch || a == HotkeyAction::BuyAtPrice) ? kDirBuy : kDirSell;
}

bool hotkeyAtTouch(HotkeyAction a) {
    return a == HotkeyAction::BuyAtTouch || a == HotkeyAction::SellAtTouch;
}

const char* hotkeyLabel(HotkeyAction a) {
    return kLabels[static_cast<std::size_t>(a)];
}
const char* hotkeyIniKey(HotkeyAction a) {
    return kIniKeys[static_cast<std::size_t>(a)];
}

std::string duplicateHotkey(const HotkeySettings& s) {
    for (std::size_t i = 0; i < kHotkeyActionCount; ++i) {
        if (s.keys[i].empty()) continue;
        for (std::size_t j = i + 1; j < kHotkeyActionCount; ++j)
            if (folded(s.keys[i]) == folded(s.keys[j])) return s.keys[i];
    }
    return {};
}

HotkeySettings loadHotkeys(const std::filesystem::path& profileIni) {
    HotkeySettings s;
    CProfileIni ini(profileIni);
    s.bEnabled = ini.getInt(kHotkeySection, kIniEnabled, s.bEnabled) != 0 ? 1 : 0;
    for (std::size_t i = 0; i < kHotkeyActionCount; ++i)
        if (ini.hasKey(kHotkeySection, kIniKeys[i]))
            s.keys[i] = ini.getString(kHotkeySection, kIniKeys[i]);  // may be "" (no key)
    return s;
}

bool saveHotkeys(const std::filesystem::path& profileIni, const HotkeySettings& s) {
    CProfileIni ini(profileIni);
    ini.writeString(kHotkeySection, kIniEnabled, s.bEnabled ? "1" : "0");
    for (std::size_t i = 0; i < kHotkeyActionCount; ++i)
        ini.writeString(kHotkeySection, kIniKeys[i], s.keys[i]);
    return ini.save().ok;
}
