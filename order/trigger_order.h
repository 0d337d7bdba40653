// CTriggerOrder: the ticket's trigger page ("触发单交易") without widgets: the values of its
// controls and the sending of one server trigger order (or a local trigger) from them. Owned
// by the ticket window beside its CMasterDialog, which gives it account, symbol, contract and
// quote; the Qt page writes the controls' values into controls() and calls send().
//
// Sending (buy or sell button), in this order; a refusal is announced and sends nothing:
//   1. the account shown and still logged on ("请先登录交易帐户！"), a symbol
//      ("请先选择要进行交易的商品！") the host still trades ("当前商品不能进行交易！"), a
//      volume above 0 ("输入错误，交易数量必须大于0！") in whole lots;
//   2. the reference price R (triggerReferencePrice): without one
//      "当前商品现价为0并且昨结算价为0，不能进行触发单交易！";
//   3. the trigger price T, rounded to the tick (buys up, sells down, like every price the
//      ticket sends). A T not above 0.000001 is refused with "触发价无效，请重新输入价格！"
//      (caption "提示 ") here already: the host cannot release a trigger at 0, and with an
//      automatic stop the same text would follow anyway. The automatic type from T and R
//      (autoTriggerType);
//   4. the type list (chosenTriggerType) and, when it differs from the automatic type, the
//      mismatch question (caption "确认", warning icon): No cancels;
//   5. the expiry (confirmExpiry): no expiry, or one past the end of today, asks the next-day
//      question; No sets today 23:59:59;
//   6. stop-loss and take-profit for an opening order with the box checked: automatic =
//      T ∓ points × point value (buy: stop below, profit above), else the box's price;
//   7. an opening order's stops against the execution price, or against each other when the
//      order executes at market (openingStopsError);
//   8. local variant (the ticket's local box): no stops, the local question, the expiry cut to
//      the end of today, handed to the local trigger centre through the manager with the
//      ticket's algorithm block when the algorithm-for-triggers box is checked
//      (confirmLocalTrigger does the first three);
//   9. otherwise confirmed when bShowTriggerOrderConfirm is on (caller "舵手", which also
//      fills an empty remark) and sent with SendTriggerOrder.
// The execution price is rounded to the tick like T; 0 means at market.
//
// The step helpers below are free functions so every trigger creator (the close-position
// trigger among them) applies the same rules with the same texts.
//
// Thread contract: UI thread only.
#pragma once

#include <cstdint>
#include <string>

#include "app/settings.h"
#include "host/prompter.h"
#include "host/records.h"

class CMasterDialog;

// ---- Shared step helpers -------------------------------------------------------------------

// The price a trigger is classified against: the last price when present, else the previous
// settlement price, else 0 (no trigger can be sent).
double triggerReferencePrice(const IModuleFutureTrader::ITickEx& tick);

// The type the prices imply: a buy at or below the reference is 吊买 (0), above it 追买 (2);
// a sell at or above it is 吊卖 (1), below it 追卖 (3). Equality is 吊 in both directions.
std::int32_t autoTriggerType(std::int32_t direction, double triggerPrice, double reference);

// The type list's entry: 0 automatic (autoType), 1 the 吊 and 2 the 追 type of `direction`.
// Any other entry counts as automatic.
std::int32_t chosenTriggerType(std::int32_t direction, int listIndex, std::int32_t autoType);

// The expiry to send: a negative value counts as none (0). None, or a time past today 23:59:59
// (local day of `now`), asks the next-day question (caption "提示"); No gives today 23:59:59,
// Yes keeps it. An expiry within today is returned without a question.
std::int64_t confirmExpiry(IPrompter& prompter, std::int64_t expiry, std::int64_t now);

// Automatic stop-loss / take-profit of a trigger: `points` points from the trigger price,
// on the losing side for the stop and the winning side for the profit.
double autoTriggerStop(std::int32_t direction, double triggerPrice, int points, double point);
double autoTriggerProfit(std::int32_t direction, double triggerPrice, int points, double point);

// An opening order's stop-loss and take-profit (0 = none) checked against the execution price
// when one is given, else against each other when both are set. The message text, or nullptr
// when they are consistent.
const char* openingStopsError(std::int32_t direction, double execPrice, double stopLoss,
                              double takeProfit);

// The local variant's checks: a stop-loss or take-profit is refused ("提示"), then the local
// question (caption "确认"); on Yes the expiry is cut to today 23:59:59 and true is returned.
bool confirmLocalTrigger(IPrompter& prompter, tagTriggerOrder& order, std::int64_t now);

// ---- The page ------------------------------------------------------------------------------

class CTriggerOrder {
public:
    struct Controls {
        std::string volumeText = "1";
        double triggerPrice = 0;
        double execPrice = 0;  // 0 = at market
        int typeIndex = 0;     // 0 automatic, 1 吊, 2 追
        std::int32_t openClose = kOpen;
        std::int32_t hedge = kSpeculation;
        std::int64_t expiry = 0;  // calendar seconds; 0 (or negative) = none
        bool stopLoss = false;
        double stopLossPrice = 0;
        bool stopLossAuto = false;
        std::int32_t stopLossPoints = 20;
        bool takeProfit = false;
        double takeProfitPrice = 0;
        bool takeProfitAuto = false;
        std::int32_t takeProfitPoints = 20;
        std::string remark;
    };

    enum class SendResult {
        Refused,    // a message said why; nothing sent
        Cancelled,  // the trader said No to a question or cancelled the confirmation
        Sent,       // the host took the trigger order, or the local centre took the trigger
        Failed,     // the host (or the local centre) did not take it
    };

    explicit CTriggerOrder(CMasterDialog& master);

    Controls& controls() { return m_controls; }
    const Controls& controls() const { return m_controls; }

    // The stop and profit boxes and their automatic buttons start as the immediate page's.
    void readSettings(const HelmsmanSettings& s);
    // The symbol changed: the trigger price starts at the reference price.
    void onSymbolChanged();

    SendResult send(std::int32_t direction);

    // What became of the last send, for the page's own status line ("" before the first).
    const std::string& statusText() const { return m_status; }
    bool statusIsError() const { return m_statusError; }
    // The trigger order of the last send that got as far as the host or the centre.
    const tagTriggerOrder& lastOrder() const { return m_last; }

private:
    bool loggedOnAccount();
    void inform(const char* caption, const char* text) const;
    void setStatus(const char* format, const tagTriggerOrder& order, bool error);

    CMasterDialog& m_master;
    Controls m_controls;
    std::string m_status;
    bool m_statusError = false;
    tagTriggerOrder m_last;
};
