// The batch confirmations.
//
// CMultiConfirm: a batch of plain orders awaiting the trader's confirmation. It holds a copy
// of the orders, the caller name and the algorithm threshold block, gives the list's title,
// column layout and cell texts (the account as "880001(模拟账户一)", identifier and name, as
// the ticket names it), and takes the trader's in-place edits of a row's price
// and volume under these limits (a refused edit changes nothing and says why):
//   - price: a finite number above 0 and within number_text::kMaxPrice, inside the day's
//     limit band when the quote has one, then rounded to the contract's tick for the order's
//     direction (buys up, sells down) exactly as the ticket rounds, so an edited order is
//     never off the price grid nor outside the band;
//   - volume: a whole number of lots from 1 to a cap — the user's single-order limit when it
//     is switched on, otherwise kDefaultVolumeCap (a fat-finger guard: no exchange accepts a
//     larger single limit order for the contracts traded here).
// It sends nothing on its own: the modal confirmation hands the edited orders back to the
// manager; the modeless like-orders confirmation calls send(), which goes through the
// manager's batch submission (threshold routing included).
//
// CMultiTriggerConfirm: a batch of server trigger orders; send() passes each one to
// SendTriggerOrder in list order.
//
// Both are owned by the window that shows them (or a test); UI thread only.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "algo/algo_setting.h"
#include "host/records.h"
#include "host/subscibe_manage.h"

class CHelmsmanManage;
struct HelmsmanSettings;

// The result of an in-place edit: ok, or the message that explains the refusal.
struct EditResult {
    bool ok = false;
    std::string message;
};

class CMultiConfirm {
public:
    enum Column { kColAccount = 0, kColSymbol = 1, kColPrice = 2, kColVolume = 3, kColCount = 4 };
    static constexpr double kDefaultVolumeCap = 1000;

    // `algo` may be null (copied otherwise); `facade` (may be null) is asked once per symbol
    // for the contract and the day's limits, and once for the accounts' names. A `volumeCap`
    // outside 1..number_text::kMaxVolume means kDefaultVolumeCap.
    CMultiConfirm(std::vector<tagBrokerOrder> orders, std::string caller,
                  const tagAlgoSetting* algo, CSubscibeManage* facade,
                  double volumeCap = kDefaultVolumeCap);

    // The cap the settings ask for: dMaxSingleLimitVol when bUseSingleLimit is on and it is
    // positive, else kDefaultVolumeCap.
    static double volumeCapFor(const HelmsmanSettings& settings);

    std::string title() const;
    static const char* columnLayout();
    std::size_t rowCount() const { return m_orders.size(); }
    std::string cell(std::size_t row, int column) const;
    // "开仓买入IF2406,共3笔,合计6张" when every order is alike, else "共3笔,合计6张".
    std::string summary() const;
    double totalVolume() const;

    // Edits from the text the trader typed; a refusal leaves the order as it was.
    EditResult editPrice(std::size_t row, const std::string& text);
    EditResult editVolume(std::size_t row, const std::string& text);

    // What the editors need to offer sensible values.
    int decimals(std::size_t row) const;                         // -1: contract unknown
    double tick(std::size_t row) const;                          // 0: contract unknown
    std::pair<double, double> limitBand(std::size_t row) const;  // (0, 0): none known
    double volumeCap() const { return m_volumeCap; }

    const std::vector<tagBrokerOrder>& orders() const { return m_orders; }
    const std::string& caller() const { return m_caller; }
    const tagAlgoSetting* algoSetting() const { return m_algo ? &*m_algo : nullptr; }

    // Submits the (edited) batch through the manager's batch submission, once; later calls
    // do nothing and return false.
    bool send(CHelmsmanManage& manager);
    bool sent() const { return m_sent; }

private:
    struct Contract {
        IModuleFutureTrader::ISpecDetailValue detail;
        bool hasDetail = false;
        double lower = 0;
        double upper = 0;
    };
    const Contract& contractOf(std::size_t row) const;

    std::vector<tagBrokerOrder> m_orders;
    std::string m_caller;
    std::optional<tagAlgoSetting> m_algo;
    std::vector<std::string> m_accountTexts;  // per row
    double m_volumeCap;
    std::map<std::pair<std::int32_t, std::string>, Contract> m_contracts;
    bool m_sent = false;
};

class CMultiTriggerConfirm {
public:
    enum Column {
        kColAccount = 0,
        kColSymbol,
        kColTrigger,
        kColPrice,
        kColVolume,
        kColStop,
        kColProfit,
        kColCount
    };

    CMultiTriggerConfirm(std::vector<tagTriggerOrder> orders, std::string caller,
                         CSubscibeManage* facade);

    std::string title() const;
    static const char* columnLayout();
    std::size_t rowCount() const { return m_orders.size(); }
    std::string cell(std::size_t row, int column) const;
    const std::vector<tagTriggerOrder>& orders() const { return m_orders; }

    struct SendResult {
        int sent = 0;
        std::vector<std::size_t> failed;  // rows the host refused
    };
    // Sends every trigger order with SendTriggerOrder in list order (once; a second call
    // sends nothing). A refusal does not stop the rest: each order stands on its own.
    SendResult send(CSubscibeManage& facade);
    // The message for refused rows, or "" when none was refused.
    std::string failureMessage(const SendResult& result) const;

private:
    std::vector<tagTriggerOrder> m_orders;
    std::string m_caller;
    std::vector<std::string> m_accountTexts;  // per row
    std::vector<int> m_decimals;              // per row
    bool m_sent = false;
};
