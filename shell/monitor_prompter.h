// DeskPrompter: the desk's information boxes and Yes/No questions as message boxes with
// Chinese buttons ("确定"; "是" / "否", Escape answering No), modal to the desk.
// Owned by the desk window; UI thread only.
#pragma once

#include "host/prompter.h"

class QWidget;

class DeskPrompter final : public IPrompter {
public:
    explicit DeskPrompter(QWidget* parent) : m_parent(parent) {}
    void inform(const std::string& caption, const std::string& text, PromptIcon icon) override;
    bool ask(const std::string& caption, const std::string& text, PromptIcon icon) override;

private:
    QWidget* m_parent;
};
