// What stands in for the trader when a tool runs under replay: a prompter and a module UI
// that nobody sits before, and the seats that put them on the manager for a tool's lifetime.
#pragma once

#include <string>
#include <vector>

#include "app/helmsman_manage.h"
#include "app/module_ui.h"
#include "host/prompter.h"
#include "replay/replay_tool.h"

namespace replay {

// Keeps the texts of the boxes (the reason a tool refused to start is the last of them) and
// gives every question one fixed answer.
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

// Accepts every confirmation as shown, as a trader clicking OK would; no algorithmic centre.
class ConfirmingUi final : public IModuleUi {
public:
    bool confirmOrder(const tagBrokerOrder&, const std::string&, const tagAlgoSetting*) override {
        return true;
    }
    bool confirmBatch(std::vector<tagBrokerOrder>&, const std::string&,
                      const tagAlgoSetting*) override {
        return true;
    }
    bool confirmTriggerOrder(const tagTriggerOrder&, const std::string&) override { return true; }
    void showSameConfirm(const std::vector<tagBrokerOrder>&, const std::string&) override {}
    void showFillNotice(const std::vector<tagBargainOrder>&) override {}
    bool handToAlgoCentre(const std::vector<tagBrokerOrder>&, const tagAlgoSetting&) override {
        return false;
    }
};

// Puts a prompter (and a UI, when given) on the manager for as long as it lives. Declared
// after them and before the tool in an adapter, so the tool is built on them (its parts keep
// the prompter they are given) and gone before the manager falls back to its own.
class Seat {
public:
    Seat(CHelmsmanManage& manager, IPrompter& prompter, IModuleUi* ui = nullptr)
        : m_manager(manager) {
        manager.setPrompter(&prompter);
        if (ui) manager.setUi(ui);
    }
    ~Seat() {
        m_manager.setPrompter(nullptr);
        m_manager.setUi(nullptr);
    }
    Seat(const Seat&) = delete;
    Seat& operator=(const Seat&) = delete;

private:
    CHelmsmanManage& m_manager;
};

// The broker of a logged-on account; empty when the exchange does not list it.
inline std::string brokerOf(CSubscibeManage* host, const std::string& account) {
    std::vector<tagAccoutInfo> accounts;
    if (host) host->GetAvailableAccounts(accounts);
    for (const tagAccoutInfo& a : accounts)
        if (a.strAccountID == account) return a.strBrokerID;
    return {};
}

// Whether `code` is a replayed instrument; an exchange left at 0 takes the instrument's.
inline bool findReplayed(const ToolContext& ctx, const std::string& code, std::uint16_t& exchange) {
    for (const tagSymbol& s : ctx.symbols)
        if (s.strCode == code) {
            if (exchange == 0) exchange = s.wExchangeID;
            return exchange == s.wExchangeID;
        }
    return false;
}

}  // namespace replay
