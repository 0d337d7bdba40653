// Code-to-text tables of the host's enumerations, exactly as the module shows them.
#pragma once

#include <cstdint>
#include <string_view>

namespace codes {

std::string_view orderStatusText(std::int32_t status);  // "已报", ..., "未知"
std::string_view openCloseText(std::int32_t flag);      // "开仓" / "平仓" / "平今仓" / "-"
std::string_view triggerTypeText(std::int32_t type);    // "吊买" ... / "-"
std::string_view hedgeText(std::int32_t flag);          // "保值" / "投机"
std::string_view directionText(std::int32_t dir);       // "买入" / "卖出" / "-"

}  // namespace codes
