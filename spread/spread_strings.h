// Texts and command ids of the shared template menu and dialogs, exactly as the user sees
// them. Every tool with templates uses these.
#pragma once

namespace spread_text {
inline constexpr const char* kInfo = "提示";

// Template menu.
inline constexpr const char* kMenuManager = "模板管理器";
inline constexpr const char* kMenuSave = "保存当前设置";
inline constexpr const char* kMenuSetDefault = "设为默认模板";
inline constexpr const char* kMenuPlaceholder = "设置0";
// String table entries (menu text and tooltip).
inline constexpr const char* kStringSave = "保存当前设置\n保存当前设置";
inline constexpr const char* kStringManager = "模板管理器\n模板管理器";
inline constexpr const char* kStringSetDefault = "设为默认模板\n设为默认模板";

// Name dialog.
inline constexpr const char* kNameCaption = "请输入设置的名称";
inline constexpr const char* kNameLabel = "名称:";
inline constexpr const char* kOk = "确定(&O)";
inline constexpr const char* kCancel = "取消(&C)";

// Manager dialog.
inline constexpr const char* kMoveUp = "上移(&U)";
inline constexpr const char* kMoveDown = "下移(&D)";
inline constexpr const char* kDelete = "删除(&R)";
inline constexpr const char* kNotApplicable = "N/A";

// Messages.
inline constexpr const char* kNameEmpty = "名称不能为空,请重新输入!";
inline constexpr const char* kAskOverwrite = "已经存在同样名称的模板，是否要覆盖原模板！";
inline constexpr const char* kSaved = "已将当前设置成功保存到模板中！";
inline constexpr const char* kSavedDefault = "已将当前设置成功保存到默认模板中！";

// Manager captions and column layouts of the tools.
inline constexpr const char* kManualSpreadManager = "价差下单模板管理器";
inline constexpr const char* kAutoSpreadManager = "价差舟模板管理器";
inline constexpr const char* kSpreadVipManager = "价差舟(VIP)模板管理器";
inline constexpr const char* kGridsSpreadManager = "价差格模板管理器";
inline constexpr const char* kInterlinkGridsManager = "环扣格模板管理器";
inline constexpr const char* kSingleGridManager = "独格模板管理器";
inline constexpr const char* kBladerManager = "快刃模板管理器";
inline constexpr const char* kAmtOrderManager = "条件通模板管理器";
inline constexpr const char* kAlgoSetManager = "算法交易模板管理器";
inline constexpr const char* kDualTrackManager = "双轨模板管理器";
inline constexpr const char* kVipArbitrageManager = "VIP套利模板管理器";
inline constexpr const char* kSpreadColumns =
    "名称,120;商品A,60;数量A,60;商品B,60;数量B,60;商品C,60;数量C,60;";
inline constexpr const char* kAmtOrderColumns =
    "名称,120;帐户,100;商品,60;单笔数量,60;最大仓位,60;";
inline constexpr const char* kAlgoSetColumns = "名称,120;数量,100;价格,80;时间,100;";
}  // namespace spread_text

// Command ids of the template menu. Template i (0-based, file order) is kTemplateFirst + i.
namespace template_menu {
inline constexpr int kSave = 26771;
inline constexpr int kManager = 26772;
inline constexpr int kSetDefault = 26774;
inline constexpr int kTemplateFirst = 26780;
}  // namespace template_menu
