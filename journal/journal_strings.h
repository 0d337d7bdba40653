// Texts of the order journal and its viewer, in one place.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace journal_text {

// `pattern` with each "%s" replaced by the next of `args` (missing ones by nothing).
inline std::string fill(std::string_view pattern, std::initializer_list<std::string_view> args) {
    std::string out;
    auto next = args.begin();
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        if (pattern[i] == '%' && i + 1 < pattern.size() && pattern[i + 1] == 's') {
            if (next != args.end()) out += *next++;
            ++i;
        } else {
            out += pattern[i];
        }
    }
    return out;
}

// The file in the user directory (and in a replay's output folder).
inline constexpr const char* kFileName = "journal.db";

// Why a file was set aside (the first %s the file, the last the name it now has).
inline constexpr const char* kMsgNotDatabase =
    "委托日志文件%s无法识别（不是数据库文件，或文件头已损坏），已改名为%s保存，并新建了委托日志。";
inline constexpr const char* kMsgDamaged =
    "委托日志文件%s已损坏（%s），已改名为%s保存，并新建了委托日志。";
inline constexpr const char* kMsgForeign =
    "文件%s不是舵手的委托日志（是其他程序的数据库），已改名为%s保存，并新建了委托日志。";
inline constexpr const char* kMsgNewer =
    "委托日志文件%s由较新版本的舵手写成（格式版本%s），已改名为%s保存，并新建了委托日志。";
// The detail of kMsgDamaged for tables that are not the journal's.
inline constexpr const char* kSchemaMismatch = "表结构不符";
// No journal at all: the file and SQLite's reason.
inline constexpr const char* kMsgCannotOpen = "无法打开委托日志文件%s：%s。本次运行的委托不会记入日志。";
inline constexpr const char* kMsgCannotMove = "委托日志文件%s不能使用，也无法改名：%s。本次运行的委托不会记入日志。";
// A write that failed (SQLite's reason).
inline constexpr const char* kMsgWriteFailed = "委托日志写入失败：%s";

// ---- The viewer -------------------------------------------------------------------------
inline constexpr const char* kCaption = "委托日志";
inline constexpr const char* kDay = "日期：";
inline constexpr const char* kAllDays = "全部日期";
inline constexpr const char* kTool = "工具：";
inline constexpr const char* kAllTools = "全部";
inline constexpr const char* kAccount = "帐户：";
inline constexpr const char* kCode = "合约：";
inline constexpr const char* kTagText = "标记含：";
inline constexpr const char* kRefresh = "刷新";
inline constexpr const char* kMore = "更多";
inline constexpr const char* kReasonLabel = "下单原因：";
inline constexpr const char* kFiguresLabel = "依据数值：";
inline constexpr const char* kColumns =
    "时间,95;工具,66;帐户,45;合约,40;买卖,28;开平,30;数量,28;价格,40;结果,84;原因,200;标记,66;委托号,40;窗口,70;";
inline constexpr const char* kFigureColumns = "名称,100;数值,100;";
inline constexpr const char* kListName = "OrderJournal";
inline constexpr const char* kFigureListName = "OrderJournalFigures";
// The status line: entries shown, and whether older ones follow.
inline constexpr const char* kShown = "共显示%s条";
inline constexpr const char* kShownMore = "共显示%s条，还有更早的记录（点“更多”）";
inline constexpr const char* kNoJournal = "委托日志不可用";
// Results: SendOrder's return value.
inline constexpr const char* kResultTaken = "已发出";
inline constexpr const char* kResultRefused = "未发出";
inline constexpr const char* kNone = "-";

}  // namespace journal_text
