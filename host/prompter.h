// The prompter seam: information boxes and Yes/No questions. The Qt implementation shows
// QMessageBox; tests use ScriptedPrompter (tests/support) which records and answers.
#pragma once

#include <string>

enum class PromptIcon { Information, Warning, Question, Exclamation, Error };

class IPrompter {
public:
    virtual ~IPrompter() = default;
    // An information box with one OK button.
    virtual void inform(const std::string& caption, const std::string& text,
                        PromptIcon icon = PromptIcon::Information) = 0;
    // A Yes/No question; true for Yes.
    virtual bool ask(const std::string& caption, const std::string& text,
                     PromptIcon icon = PromptIcon::Question) = 0;
};

// Says nothing and answers No: the safe default before a UI is attached.
class SilentPrompter final : public IPrompter {
public:
    void inform(const std::string&, const std::string&, PromptIcon) override {}
    bool ask(const std::string&, const std::string&, PromptIcon) override { return false; }
};
