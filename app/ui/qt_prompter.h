// The prompter seam on Qt: information boxes and Yes/No questions as QMessageBox, modal to
// the active window.
#pragma once

#include "host/prompter.h"

class QtPrompter final : public IPrompter {
public:
    void inform(const std::string& caption, const std::string& text, PromptIcon icon) override;
    bool ask(const std::string& caption, const std::string& text, PromptIcon icon) override;
};
