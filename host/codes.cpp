#include "host/codes.h"

namespace codes {

std::string_view orderStatusText(std::int32_t status) {
    switch (status) {
        case 0: return "等待触发";
        case 1: return "已报";
        case 2: return "部分成交";
        case 3: return "全部成交";
        case 4: return "已撤单";
        case 5: return "已废除";
        case 6: return "部成部撤";
        case 7: return "撤单中...";
        case 8: return "过期";
        case 11: return "发送中...";
        default: return "未知";
    }
}

std::string_view openCloseText(std::int32_t flag) {
    switch (flag) {
        case 0: return "开仓";
        case 1: return "平仓";
        case 2: return "平今仓";
        default: return "-";
    }
}

std::string_view triggerTypeText(std::int32_t type) {
    switch (type) {
        case 0: return "吊买";
        case 1: return "吊卖";
        case 2: return "追买";
        case 3: return "追卖";
        default: return "-";
    }
}

std::string_view hedgeText(std::int32_t flag) { return flag == 1 ? "保值" : "投机"; }

std::string_view directionText(std::int32_t dir) {
    switch (dir) {
        case 1: return "买入";
        case 2: return "卖出";
        default: return "-";
    }
}

}  // namespace codes
