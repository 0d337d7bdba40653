// The options page's rules without a window: what the page shows for a settings record and
// the accounts the host offers, how the live enabling works, and the record it produces when
// accepted. CTradeOptionPage (app/ui) only binds widgets to a TradeOptionState.
#pragma once

#include <string>
#include <vector>

#include "app/settings.h"
#include "host/subscibe_manage.h"

// Texts of the page.
namespace trade_option_text {
inline constexpr const char* kCaption = "交易";
inline constexpr const char* kDefaultAccount = "默认帐户";
inline constexpr const char* kLoadLastSymbol = "自动保存舵手最后使用商品";
inline constexpr const char* kUseBidAsk = "默认使用叫买/卖价下单";
inline constexpr const char* kShowChart = "默认显示舵手图表窗";
inline constexpr const char* kShowNormalConfirm = "默认显示舵手普通单确认页面";
inline constexpr const char* kShowTriggerConfirm = "默认显示舵手触发单确认页面";
inline constexpr const char* kShowHotkeyConfirm = "默认显示预埋单之一键下单确认页面";
inline constexpr const char* kShowFilled = "默认显示成交回报页面";
inline constexpr const char* kUseDefaultVolume = "使用默认数量";
inline constexpr const char* kSaveLastVolume = "保存舵手最后使用数量";
inline constexpr const char* kUseSingleLimit = "使用单笔上限，每笔上限:";
inline constexpr const char* kLots = "手";
}  // namespace trade_option_text

// Everything the page's controls hold.
struct TradeOptionState {
    bool defaultAccount = false;
    std::vector<std::string> accountItems;  // "%s(%s)" of id and name, host order
    int accountIndex = -1;                  // selected entry, -1 none
    bool loadLastSymbol = false;
    bool useBidAsk = false;
    bool showChart = false;
    bool showNormalConfirm = false;
    bool showTriggerConfirm = false;
    bool showHotkeyConfirm = false;
    bool showFilled = false;
    bool useDefaultVolume = true;  // the radio pair: true "使用默认数量", false "保存..."
    std::string defaultVolumeText;
    bool useSingleLimit = false;
    std::string maxSingleText;

    // Live enabling.
    bool accountListEnabled() const { return defaultAccount; }
    bool defaultVolumeEnabled() const { return useDefaultVolume; }
    bool maxSingleEnabled() const { return useSingleLimit; }
    std::string accountText() const {
        return accountIndex >= 0 && accountIndex < static_cast<int>(accountItems.size())
                   ? accountItems[static_cast<size_t>(accountIndex)]
                   : std::string();
    }
};

class CTradeOption {
public:
    // "%s(%s)" of an account's identifier and name: the text of its list entry.
    static std::string accountItemText(const std::string& id, const std::string& name);
    // The page's state for the in-memory record and the host's available accounts.
    static TradeOptionState fill(const HelmsmanSettings& current, CSubscibeManage* host);
    // The record the accepted page produces, starting from the in-memory one.
    static HelmsmanSettings accept(const TradeOptionState& page, const HelmsmanSettings& current,
                                   CSubscibeManage* host);
    // A number box's text read as its leading decimal number. The boxes hold volumes: a text
    // that is not a number, or a number that is not finite or outside 0..kMaxVolume, reads 0.
    static double readNumber(const std::string& text);
    // "%.f" of a value, as the page shows numbers (locale-free, never empty).
    static std::string formatWhole(double v);
};
