// A hand-written host facade for tests: answers from the tables a test fills in and records
// every call it receives, in order, as a line of text (plus the orders themselves).
#pragma once

#include <map>
#include <string>
#include <vector>

#include "host/subscibe_manage.h"

class FakeHost : public CSubscibeManage {
public:
    // ---- What the fake answers with -------------------------------------------------
    std::vector<tagAccoutInfo> accounts;
    std::vector<tagExchangeInfo> exchanges;
    std::map<int, std::vector<tagSymbol>> symbolsByExchange;
    std::map<std::string, IModuleFutureTrader::ITickEx> quotes;  // by code
    std::map<std::string, IModuleFutureTrader::ISpecDetailValue> details;
    std::vector<tagOpenedPosition> positions;
    std::vector<tagBrokerOrder> orders;  // every order of the day (sent ones are appended)
    std::vector<tagTriggerOrder> triggerOrders;
    std::map<std::string, tagAccountSummary> summaries;  // by account id
    int sendOrderResult = 1;
    std::string sentReason;  // written into a refused order's status message
    int sendTriggerResult = 1;
    int modifyTriggerResult = 1;
    int deleteTriggerResult = 1;
    int positionResult = 1;

    // ---- What the fake saw ----------------------------------------------------------
    std::vector<std::string> calls;
    std::vector<tagBrokerOrder> sent;
    std::vector<tagTriggerOrder> sentTriggers;
    std::vector<tagTriggerOrder> modifiedTriggers;  // as ModifyTriggerOrder received them
    struct Subscription {
        std::uint32_t hWnd;
        bool subscribe;
        tagSymbol symbol;
    };
    std::vector<Subscription> subscriptions;

    static tagAccoutInfo account(std::string id, std::string broker, std::string name,
                                 int type = 1) {
        return tagAccoutInfo{std::move(id), std::move(broker), std::move(name), type};
    }

    int GetMarketQuote(const tagSymbol& s, IModuleFutureTrader::ITickEx& t) override {
        calls.push_back("GetMarketQuote " + s.strCode);
        auto it = quotes.find(s.strCode);
        if (it == quotes.end()) return 0;
        t = it->second;
        return 1;
    }
    int GetSymbolProperty(const tagSymbol& s, IModuleFutureTrader::ISpecDetailValue& v) override {
        calls.push_back("GetSymbolProperty " + s.strCode);
        auto it = details.find(s.strCode);
        if (it == details.end()) return 0;
        v = it->second;
        return 1;
    }
    int GetAllPositions(std::vector<tagOpenedPosition>& out) override {
        calls.push_back("GetAllPositions");
        out = positions;
        return 1;
    }
    int GetPosition(tagOpenedPosition& p, const std::string& k1, const std::string& k2,
                    const tagSymbol& s) override {
        calls.push_back("GetPosition " + k1 + " " + s.strCode);
        if (!positionResult) return 0;
        for (const auto& q : positions)
            if (q.strAccountID == k1 && q.strBrokerID == k2 && q.strCode == s.strCode) {
                p = q;
                return 1;
            }
        p = tagOpenedPosition{};
        return 0;
    }
    int GetAllOrders(std::vector<tagBrokerOrder>& out) override {
        calls.push_back("GetAllOrders");
        out = orders;
        return 1;
    }
    int GetOpenOrders(std::vector<tagBrokerOrder>& out, const std::string& k1,
                      const std::string& k2, const tagSymbol& s) override {
        calls.push_back("GetOpenOrders " + k1 + " " + s.strCode);
        out.clear();
        for (const auto& o : orders)
            if (o.strAccountID == k1 && o.strBrokerID == k2 && o.strCode == s.strCode &&
                (o.nStatus == kOrderQueued || o.nStatus == kOrderPartFilled ||
                 o.nStatus == kOrderSending || o.nStatus == kOrderCancelling))
                out.push_back(o);
        return 1;
    }
    int GetOrder(tagBrokerOrder& o, const std::string& k1, const std::string& k2,
                 const std::string& id) override {
        calls.push_back("GetOrder " + id);
        for (const auto& q : orders)
            if (q.strOrderID == id) {
                o = q;
                return 1;
            }
        return 0;
    }
    int SendOrder(tagBrokerOrder& o) override {
        calls.push_back("SendOrder " + o.strCode);
        if (sendOrderResult) {
            o.strOrderID = std::to_string(1000 + sent.size());
            o.nStatus = kOrderQueued;
        } else if (!sentReason.empty()) {
            o.strStatusMsg = sentReason;
        }
        sent.push_back(o);
        orders.push_back(o);
        return sendOrderResult;
    }
    int DeleteOrder(const std::string& k1, const std::string& k2, const std::string& id) override {
        calls.push_back("DeleteOrder " + id);
        return 1;
    }
    int GetAllTriggerOrders(std::vector<tagTriggerOrder>& out) override {
        calls.push_back("GetAllTriggerOrders");
        out = triggerOrders;
        return 1;
    }
    int GetTriggerOrdersBySymbol(std::vector<tagTriggerOrder>& out, const tagSymbol& s) override {
        calls.push_back("GetTriggerOrdersBySymbol " + s.strCode);
        out.clear();
        for (const auto& t : triggerOrders)
            if (t.strCode == s.strCode) out.push_back(t);
        return 1;
    }
    int GetTriggerOrder(tagTriggerOrder& o, const std::string&, const std::string&,
                        const std::string& id) override {
        calls.push_back("GetTriggerOrder " + id);
        for (const auto& t : triggerOrders)
            if (t.strOrderID == id) {
                o = t;
                return 1;
            }
        return 0;
    }
    int SendTriggerOrder(tagTriggerOrder& o) override {
        calls.push_back("SendTriggerOrder " + o.strCode);
        if (sendTriggerResult) o.strOrderID = "T" + std::to_string(sentTriggers.size() + 1);
        sentTriggers.push_back(o);
        if (sendTriggerResult) triggerOrders.push_back(o);
        return sendTriggerResult;
    }
    int ModifyTriggerOrder(const std::string& id, const tagTriggerOrder& o) override {
        calls.push_back("ModifyTriggerOrder " + id);
        modifiedTriggers.push_back(o);
        return modifyTriggerResult;
    }
    int DeleteTriggerOrder(const std::string&, const std::string&, const std::string& id) override {
        calls.push_back("DeleteTriggerOrder " + id);
        return deleteTriggerResult;
    }
    int GetAllBargains(std::vector<tagBargainOrder>& out) override {
        calls.push_back("GetAllBargains");
        out.clear();
        return 1;
    }
    int GetAccountSummary(tagAccountSummary& s, const std::string& k1,
                          const std::string& k2) override {
        calls.push_back("GetAccountSummary " + k1);
        auto it = summaries.find(k1);
        if (it == summaries.end()) return 0;
        s = it->second;
        return 1;
    }
    int GetAvailableAccounts(std::vector<tagAccoutInfo>& out) override {
        calls.push_back("GetAvailableAccounts");
        out = accounts;
        return 1;
    }
    int GetAllExchanges(std::vector<tagExchangeInfo>& out) override {
        calls.push_back("GetAllExchanges");
        out = exchanges;
        return 1;
    }
    int GetExchangeSymbols(int ex, std::vector<tagSymbol>& out, int) override {
        calls.push_back("GetExchangeSymbols " + std::to_string(ex));
        out = symbolsByExchange[ex];
        return 1;
    }
    int GetBrokerByID(tagBrokerInfo& b, const std::string& id) override {
        calls.push_back("GetBrokerByID " + id);
        b.strBrokerID = id;
        b.strName = "Broker " + id;
        return 1;
    }
    bool GetConfigFileProperty(const std::string&, const std::string&, const std::string& key,
                               std::string&) override {
        calls.push_back("GetConfigFileProperty " + key);
        return false;
    }
    int QueryInterface(std::uint32_t req, std::uint32_t arg, std::uint8_t flag,
                       void* data) override {
        if (req == kQuerySubscribeQuote && data) {
            auto* block = static_cast<tagSubscribeBlock*>(data);
            tagSymbol s = block->pSymbol ? *block->pSymbol : tagSymbol{};
            calls.push_back(std::string(flag ? "Subscribe " : "Unsubscribe ") +
                            std::to_string(arg) + " " + s.strCode);
            subscriptions.push_back({arg, flag != 0, s});
            return 1;
        }
        calls.push_back("QueryInterface " + std::to_string(req));
        return 0;
    }

    // Calls whose text starts with `prefix`.
    std::vector<std::string> callsStartingWith(const std::string& prefix) const {
        std::vector<std::string> out;
        for (const auto& c : calls)
            if (c.rfind(prefix, 0) == 0) out.push_back(c);
        return out;
    }
};
