// The prompter of a tool under replay: nobody sits before the boxes, so it keeps their texts
// (the reason a tool refused to start is the last of them) and gives every question one fixed
// answer. Installed on the manager for the tool's lifetime by the adapter that owns it.
#pragma once

#include <string>
#include <vector>

#include "app/helmsman_manage.h"
#include "host/prompter.h"

namespace replay {

class ReplayPrompter final : public IPrompter {
public:
    explicit ReplayPrompter(bool answer) : m_answer(answer) {}
    void inform(const std::string&, const std::string& text, PromptIcon) override {
        m_texts.push_back(text);
    }
    bool ask(const std::string&, const std::string& text, PromptIcon) override {
        m_texts.push_back(text);
        return m_answer;
    }
    const std::vector<std::string>& texts() const { return m_texts; }
    std::string last() const { return m_texts.empty() ? std::string() : m_texts.back(); }

private:
    bool m_answer;
    std::vector<std::string> m_texts;
};

// Puts a prompter on the manager for as long as it lives. Declared after the prompter and
// before the tool in an adapter, so the tool is built on the prompter (its parts keep the
// one they are given) and gone before the manager falls back to its own.
class PrompterSeat {
public:
    PrompterSeat(CHelmsmanManage& manager, IPrompter& prompter) : m_manager(manager) {
        manager.setPrompter(&prompter);
    }
    ~PrompterSeat() { m_manager.setPrompter(nullptr); }
    PrompterSeat(const PrompterSeat&) = delete;
    PrompterSeat& operator=(const PrompterSeat&) = delete;

private:
    CHelmsmanManage& m_manager;
};

}  // namespace replay
