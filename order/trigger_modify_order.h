// CTriggerModifyOrder: the ticket's page "修改或删除触发单" without widgets. It lists the
// waiting server trigger orders and stop/profit orders ("止损获利单") of the ticket's account,
// loads the chosen one into editable values, and modifies (ModifyTriggerOrder) or deletes
// (DeleteTriggerOrder) it, announcing every result in an information box (caption "提示").
//
// A stop/profit order is the host's trigger order that carries no trigger price of its own,
// only a stop-loss and/or take-profit price (isStopProfitOrder); every other trigger order is
// a trigger order ("触发单"). The host marks a waiting trigger order with status 0, the same
// code as the order status "等待触发"; only those can still be changed, so only those are
// listed.
//
// Modify checks, in order: the volume (above 0, "输入错误，交易数量必须大于0！"), for an
// opening order the stop-loss and take-profit against the execution price or each other
// (openingStopsError), then the next-day expiry question (confirmExpiry). Trigger and
// execution prices are rounded to the tick like the trigger page's.
//
// The list follows the host: the page holds a window handle registered with the manager, and
// every data-change notice other than a quote (an order changed, a trigger released, the
// host's own trigger notices) and every logon change reads the list again. A released,
// expired or deleted trigger therefore leaves the list as soon as the host says so. The
// window also calls refresh() when the ticket's account changes.
//
// Owned by the ticket window beside its CMasterDialog; UI thread only.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "host/records.h"
#include "host/window.h"

class CHelmsmanManage;
class CMasterDialog;

// A stop/profit order: no trigger price, a stop-loss or a take-profit price.
bool isStopProfitOrder(const tagTriggerOrder& order);

class CTriggerModifyOrder final : public IWndTarget {
public:
    // The editable values of the chosen order.
    struct Edit {
        double volume = 0;
        double triggerPrice = 0;
        double execPrice = 0;  // 0 = at market
        double stopLoss = 0;   // 0 = none
        double takeProfit = 0;
        std::int64_t expiry = 0;  // 0 = none
    };

    enum class Result { Refused, Cancelled, Done, Failed };

    explicit CTriggerModifyOrder(CMasterDialog& master);
    ~CTriggerModifyOrder() override;
    CTriggerModifyOrder(const CTriggerModifyOrder&) = delete;
    CTriggerModifyOrder& operator=(const CTriggerModifyOrder&) = delete;

    // Called after the list or the chosen order changed.
    void setListener(std::function<void()> listener) { m_listener = std::move(listener); }

    // Reads the account's waiting trigger orders again; the chosen order stays chosen while
    // it is listed.
    void refresh();
    const std::vector<tagTriggerOrder>& orders() const { return m_orders; }

    // Chooses a row (-1: none) and loads its values into edit().
    void select(int row);
    int selected() const { return m_selected; }
    const tagTriggerOrder* selectedOrder() const;
    Edit& edit() { return m_edit; }
    const Edit& edit() const { return m_edit; }

    Result modify();
    Result remove();

    // "舵手 - [触发单#%s]" or "舵手 - [止损获利单#%s]".
    static std::string title(const tagTriggerOrder& order);
    // The order described as the confirmation describes it; a stop/profit order as
    // "止损获利%s%s合约%.f张," (direction, symbol, volume) and its two prices. A direction
    // other than buy or sell reads "未知操作". `decimals` < 0: prices with up to 4 decimals.
    static std::vector<std::string> summary(const tagTriggerOrder& order, int decimals);

    std::intptr_t onMessage(std::uint32_t msg, std::uintptr_t wParam,
                            std::uintptr_t lParam) override;

private:
    void inform(const char* text) const;
    void changed() const {
        if (m_listener) m_listener();
    }

    CMasterDialog& m_master;
    CHelmsmanManage& m_manage;  // outlives the page; the handle is released through it
    WndHandle m_hWnd = 0;
    std::function<void()> m_listener;
    std::vector<tagTriggerOrder> m_orders;
    int m_selected = -1;
    Edit m_edit;
};
