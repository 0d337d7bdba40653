// CNormalOrder: the ticket's immediate page ("即时执行") without widgets: the values of its
// controls and the sending of a plain limit order from them. Owned by its CMasterDialog, which
// gives it the account, the symbol, the contract and the quote; the Qt page writes the
// controls' values into controls() as the user edits them and calls send().
//
// Sending (buy or sell button) checks and builds in this order, and a refusal is announced
// and sends nothing:
//   1. an account ("请先登录交易帐户！"), and the one the box shows: the logged-on accounts
//      are read afresh, an account shown that has logged off is refused by name, and a box
//      that showed none while an account has logged on meanwhile is first filled in and the
//      trader asked to press again — an order never goes to an account the trader did not see;
//   2. a symbol ("请先选择要进行交易的商品！"), which the host still trades
//   ("当前商品不能进行交易！";
//      the contract is read afresh, a symbol without a readable contract counts as untradable);
//   3. the order from account, symbol and volume box (a leading decimal number; text that is
//      not a number counts as 0);
//   4. a volume above 0 ("输入错误，交易数量必须大于0！") in whole lots; a closing order no
//      larger than what can be closed (CMasterDialog's closable quantities, read afresh):
//      平今 against today's position, 平仓 against yesterday's and today's, and on exchange 0,
//      where 平仓 closes yesterday's position only, against yesterday's (pointing to 平今
//      when today's position is there);
//   5. point value = minimum move × price unit, taken on the 1/10000 rounding grid so the
//      single-precision price unit adds no noise; offset = truncated points × point value;
//   6. the price: from the best quote when the bid/ask box is checked (buy: the ask, plus the
//      offset when the offset box is checked, else the bid; sell: the bid, minus the offset,
//      else the ask; neither, or no quote yet: "买卖价无效，请手工输入价格！" captioned "提示 "),
//      else the price box (empty or not a number: "请输入委托价格！", never its last value;
//      not above 0.000001: "输入错误，委托价格必须大于0！", so it is never clamped up to a
//      limit price and sent);
//   7. the day's limit band clamps the price silently;
//   8. the price is rounded to the tick, buys up and sells down;
//   9. open/close and hedge flags from the two lists;
//  10/11. stop-loss and take-profit only for an opening order with the box checked: automatic
//      = price ∓ points × point value (buy: stop below, profit above), else the box's price;
//  12. an opening order's stop-loss must lie on the losing side of the price and its
//      take-profit on the winning side (the four "输入错误，..." messages);
//  13. creation time from the manager's clock;
//  14. submission through the manager with bShowNormalOrderConfirm, caller "舵手", and the
//      ticket's algorithm block when the algorithm box is checked. The box is the module's
//      algo trading switch (bUseAlgoTrading), set from it as the order leaves.
// What became of the order is the ticket's status line (CMasterDialog::reportSubmitted), not
// a box: a refusal by the host is shown there with the host's reason.
// Every message box has the caption "提示" except the invalid-quote one.
//
// Single-order cap (bUseSingleLimit with dMaxSingleLimitVol above 0): a larger volume is split
// into orders of the cap and one remainder (25 lots at a cap of 10 → 10, 10, 5), submitted
// together as one batch, so the batch confirmation shows every part and one acceptance sends
// them all. A trader who types 25 wants 25 lots in the market; the cap is the exchange's or
// the desk's per-order limit, not a reason to make them do the arithmetic in a fast market.
// A volume that would need more than kMaxSplitOrders parts is refused with a message instead:
// at that size a mistyped volume is likelier than intent.
//
// Keyboard orders (order/hotkeys.h) go through the same steps with the price source forced
// (the quote, or the price box), with bShowHotkeyOrderConfirm as the confirmation flag. At the
// typed price a price outside the limit band is not sent: the price box is set to the limit,
// "输入的委托价格不在涨跌停范围内，已自动修改为涨跌停价！" is shown, and the trader presses again.
//
// Thread contract: UI thread only.
#pragma once

#include <cstdint>
#include <string>

#include "app/settings.h"
#include "host/records.h"
#include "order/hotkeys.h"

class CMasterDialog;

class CNormalOrder {
public:
    // The values of the page's controls.
    struct Controls {
        std::string volumeText = "1";
        double price = 0;                // price spin
        bool priceEntered = true;        // the price spin holds a number (not empty)
        bool useBidAsk = false;          // "叫买/卖价": price from the best quote
        bool useOffset = false;          // apply the offset to the quote price
        double offsetPoints = 0;         // offset spin (truncated to whole points when used)
        std::int32_t openClose = kOpen;  // list index = open/close flag
        std::int32_t hedge = kSpeculation;
        bool stopLoss = false;  // stop-loss box
        double stopLossPrice = 0;
        bool stopLossAuto = false;  // automatic button down
        std::int32_t stopLossPoints = 20;
        bool takeProfit = false;
        double takeProfitPrice = 0;
        bool takeProfitAuto = false;
        std::int32_t takeProfitPoints = 20;
        bool algo = false;  // algorithm box
    };

    enum class SendResult {
        Refused,    // the ticket refused the input; a message said why; nothing sent
        Cancelled,  // the user cancelled the confirmation
        Sent,       // handed to the host (or to the algo centre)
        Failed,     // the host refused the order; the status line says why
    };

    // Where the price comes from.
    enum class PriceSource { Page, Quote, PriceBox };

    static constexpr int kMaxSplitOrders = 50;

    explicit CNormalOrder(CMasterDialog& master);

    Controls& controls() { return m_controls; }
    const Controls& controls() const { return m_controls; }

    // A new ticket's controls from the settings: volume by bSaveVolume (dLastVolume or
    // dDefaultVolume; a volume not above 0 starts as 1, the smallest order that can be sent,
    // so the box never opens on a value the ticket would refuse), the bid/ask and offset
    // boxes, the algorithm box, both automatic buttons and their points. A stop-loss or
    // take-profit box starts checked when its automatic fill is on.
    void readSettings(const HelmsmanSettings& s);
    // The page's part of what a closing ticket remembers.
    void writeSettings(HelmsmanSettings& s) const;

    // Menu entries: flip the automatic button; switching it on also checks the box, since an
    // automatic price in an unchecked box would do nothing.
    void toggleAutoStopLoss();
    void toggleAutoTakeProfit();

    // The symbol changed: the price box starts at the last price (else the ask for a buy
    // side, else the bid) of the snapshot, or 0 without one.
    void onSymbolChanged();

    // Buy (kDirBuy) or sell (kDirSell) button.
    SendResult send(std::int32_t direction);
    // A keyboard order.
    SendResult sendHotkey(HotkeyAction action);

    // The volume box's number: a leading decimal number, 0 when there is none.
    static double parseVolume(const std::string& text);
    // A volume or price for a box: no trailing zeros, at most 4 decimals.
    static std::string formatNumber(double v);

private:
    SendResult submit(std::int32_t direction, PriceSource source, bool confirm);
    // Step 1: the account the order goes to, or null after a message.
    const tagAccoutInfo* sendingAccount();
    // Step 4's closing check: true when `volume` can be closed, else a message and false.
    bool closable(std::int32_t direction, std::int32_t openClose, double volume);
    void inform(const char* caption, const char* text) const;

    CMasterDialog& m_master;
    Controls m_controls;
};
