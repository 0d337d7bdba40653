// Scripted seams for tests: a prompter that records every box and answers questions from a
// queue, a module UI that records confirmations and answers from flags, and a window target
// that records the messages it receives.
#pragma once

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "app/module_ui.h"
#include "host/prompter.h"
#include "host/window.h"

class ScriptedPrompter : public IPrompter {
public:
    struct Box {
        std::string caption;
        std::string text;
    };
    std::vector<Box> boxes;
    std::deque<bool> answers;  // consumed by ask(); No when empty

    void inform(const std::string& caption, const std::string& text, PromptIcon) override {
        boxes.push_back({caption, text});
    }
    bool ask(const std::string& caption, const std::string& text, PromptIcon) override {
        boxes.push_back({caption, text});
        if (answers.empty()) return false;
        bool a = answers.front();
        answers.pop_front();
        return a;
    }
    // The text of the last box, or "" when none was shown.
    std::string lastText() const { return boxes.empty() ? "" : boxes.back().text; }
    std::string lastCaption() const { return boxes.empty() ? "" : boxes.back().caption; }
};

class ScriptedUi : public IModuleUi {
public:
    bool acceptConfirm = true;
    bool algoCentreAvailable = true;
    std::vector<std::string> log;
    std::vector<tagBrokerOrder> confirmed;                  // orders shown in a confirmation
    std::vector<tagBrokerOrder> toAlgo;                     // orders handed to the algo centre
    std::vector<std::vector<tagBargainOrder>> noticeShows;  // list each time the notice showed
    // Applied to a batch inside confirmBatch, as a user's in-place edit would.
    std::function<void(std::vector<tagBrokerOrder>&)> editBatch;

    bool confirmOrder(const tagBrokerOrder& o, const std::string& caller,
                      const tagAlgoSetting*) override {
        log.push_back("confirmOrder " + caller);
        confirmed.push_back(o);
        return acceptConfirm;
    }
    bool confirmBatch(std::vector<tagBrokerOrder>& orders, const std::string& caller,
                      const tagAlgoSetting*) override {
        log.push_back("confirmBatch " + caller + " " + std::to_string(orders.size()));
        if (editBatch) editBatch(orders);
        confirmed.insert(confirmed.end(), orders.begin(), orders.end());
        return acceptConfirm;
    }
    bool confirmTriggerOrder(const tagTriggerOrder&, const std::string& caller) override {
        log.push_back("confirmTriggerOrder " + caller);
        return acceptConfirm;
    }
    void showSameConfirm(const std::vector<tagBrokerOrder>& orders,
                         const std::string& caller) override {
        log.push_back("showSameConfirm " + caller + " " + std::to_string(orders.size()));
    }
    void showFillNotice(const std::vector<tagBargainOrder>& fills) override {
        log.push_back("showFillNotice " + std::to_string(fills.size()));
        noticeShows.push_back(fills);
    }
    bool handToAlgoCentre(const std::vector<tagBrokerOrder>& orders,
                          const tagAlgoSetting&) override {
        log.push_back("handToAlgoCentre " + std::to_string(orders.size()));
        if (!algoCentreAvailable) return false;
        toAlgo.insert(toAlgo.end(), orders.begin(), orders.end());
        return true;
    }
};

class RecordingTarget : public IWndTarget {
public:
    struct Msg {
        std::uint32_t msg;
        std::uintptr_t w;
        std::uintptr_t l;
    };
    std::vector<Msg> received;
    std::vector<std::string>* sharedLog = nullptr;  // optional cross-window ordering log
    std::string name;
    std::intptr_t result = 1;

    std::intptr_t onMessage(std::uint32_t msg, std::uintptr_t w, std::uintptr_t l) override {
        received.push_back({msg, w, l});
        if (sharedLog) sharedLog->push_back(name + ":" + std::to_string(msg));
        return result;
    }
};
