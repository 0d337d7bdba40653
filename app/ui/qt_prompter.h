// The prompter seam on Qt: information boxes and Yes/No questions as QMessageBox, modal to
// the active window. The buttons read "确定", "是" and "否" whatever language Qt itself was
// built or started in; "是" and "否" also answer to the Y and N keys.
#pragma once

#include "host/prompter.h"

class QMessageBox;

namespace prompter_text {
inline constexpr const char* kOk = "确定";
inline constexpr const char* kCancel = "取消";
inline constexpr const char* kYes = "是";
inline constexpr const char* kNo = "否";
}  // namespace prompter_text

class QtPrompter final : public IPrompter {
public:
    void inform(const std::string& caption, const std::string& text, PromptIcon icon) override;
    bool ask(const std::string& caption, const std::string& text, PromptIcon icon) override;

    // Gives the standard buttons a box has (OK, Cancel, Yes, No) their Chinese texts; every
    // message box of the module goes through here.
    static void setChineseButtons(QMessageBox& box);
};
