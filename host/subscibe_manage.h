// The host facade: every quote, contract, account, position, order, fill and trigger order
// Helmsman sees comes through one CSubscibeManage, and every order leaves through it.
//
// Owned by the host (the shell, or a test); the manager keeps a non-owning pointer for the
// module's life. Calls come from the UI thread, and from the algo worker thread; an
// implementation must tolerate both. Nothing here throws: int results are the host's status,
// non-zero meaning success unless an operation says otherwise.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/records.h"

// QueryInterface request codes.
inline constexpr std::uint32_t kQuerySubscribeQuote = 1000;

// The block QueryInterface(1000, hWnd, flag, &block) points at.
struct tagSubscribeBlock {
    std::uint32_t nCount = 1;
    const tagSymbol* pSymbol = nullptr;
};

class CSubscibeManage {
public:
    virtual ~CSubscibeManage() = default;

    virtual int GetMarketQuote(const tagSymbol& symbol, IModuleFutureTrader::ITickEx& tick) = 0;
    virtual int GetSymbolProperty(const tagSymbol& symbol,
                                  IModuleFutureTrader::ISpecDetailValue& detail) = 0;
    virtual int GetAllPositions(std::vector<tagOpenedPosition>& positions) = 0;
    virtual int GetPosition(tagOpenedPosition& position, const std::string& accountKey1,
                            const std::string& accountKey2, const tagSymbol& symbol) = 0;
    virtual int GetAllOrders(std::vector<tagBrokerOrder>& orders) = 0;
    virtual int GetOpenOrders(std::vector<tagBrokerOrder>& orders, const std::string& accountKey1,
                              const std::string& accountKey2, const tagSymbol& symbol) = 0;
    virtual int GetOrder(tagBrokerOrder& order, const std::string& accountKey1,
                         const std::string& accountKey2, const std::string& orderID) = 0;
    virtual int SendOrder(tagBrokerOrder& order) = 0;
    virtual int DeleteOrder(const std::string& accountKey1, const std::string& accountKey2,
                            const std::string& orderID) = 0;
    virtual int GetAllTriggerOrders(std::vector<tagTriggerOrder>& orders) = 0;
    virtual int GetTriggerOrdersBySymbol(std::vector<tagTriggerOrder>& orders,
                                         const tagSymbol& symbol) = 0;
    virtual int GetTriggerOrder(tagTriggerOrder& order, const std::string& accountKey1,
                                const std::string& accountKey2, const std::string& orderID) = 0;
    virtual int SendTriggerOrder(tagTriggerOrder& order) = 0;
    virtual int ModifyTriggerOrder(const std::string& orderID, const tagTriggerOrder& order) = 0;
    virtual int DeleteTriggerOrder(const std::string& accountKey1, const std::string& accountKey2,
                                   const std::string& orderID) = 0;
    virtual int GetAllBargains(std::vector<tagBargainOrder>& bargains) = 0;
    virtual int GetAccountSummary(tagAccountSummary& summary, const std::string& accountKey1,
                                  const std::string& accountKey2) = 0;
    virtual int GetAvailableAccounts(std::vector<tagAccoutInfo>& accounts) = 0;
    virtual int GetAllExchanges(std::vector<tagExchangeInfo>& exchanges) = 0;
    virtual int GetExchangeSymbols(int exchangeID, std::vector<tagSymbol>& symbols, int filter) = 0;
    virtual int GetBrokerByID(tagBrokerInfo& broker, const std::string& brokerID) = 0;
    virtual bool GetConfigFileProperty(const std::string& file, const std::string& section,
                                       const std::string& key, std::string& value) = 0;
    virtual int QueryInterface(std::uint32_t request, std::uint32_t arg, std::uint8_t flag,
                               void* data) = 0;
};
