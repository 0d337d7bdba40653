#include "order/trigger_modify_order.h"

#include <cstdio>

#include "app/helmsman_manage.h"
#include "host/codes.h"
#include "host/price.h"
#include "order/confirm_dialog.h"
#include "order/confirm_strings.h"
#include "order/master_dialog.h"
#include "order/order_strings.h"
#include "order/trigger_order.h"

bool isStopProfitOrder(const tagTriggerOrder& order) {
    return !isPricePresent(order.dTriggerPrice) &&
           (isPricePresent(order.dStopLoss) || isPricePresent(order.dTakeProfit));
}

CTriggerModifyOrder::CTriggerModifyOrder(CMasterDialog& master)
    : m_master(master), m_manage(master.manage()), m_hWnd(m_manage.createHandle(this)) {
    m_manage.registerWindow(m_hWnd);
}

CTriggerModifyOrder::~CTriggerModifyOrder() {
    m_manage.releaseHandle(m_hWnd);
}

void CTriggerModifyOrder::inform(const char* text) const {
    m_master.manage().prompter().inform(order_text::kCaptionPrompt, text, PromptIcon::Information);
}

void CTriggerModifyOrder::refresh() {
    const std::string chosen = m_selected >= 0 ? m_orders[m_selected].strOrderID : std::string();
    std::vector<tagTriggerOrder> all;
    m_orders.clear();
    const tagAccoutInfo* account = m_master.account();
    CSubscibeManage* facade = m_master.manage().facade();
    if (account && facade && facade->GetAllTriggerOrders(all) != 0) {
        for (auto& t : all)
            if (t.nStatus == 0 && t.strAccountID == account->strAccountID &&
                t.strBrokerID == account->strBrokerID)
                m_orders.push_back(std::move(t));
    }
    int row = -1;
    for (std::size_t i = 0; i < m_orders.size() && !chosen.empty(); ++i)
        if (m_orders[i].strOrderID == chosen) row = static_cast<int>(i);
    // The trader's edits of an order still listed are kept; a vanished one is dropped.
    if (row < 0 || m_selected < 0)
        select(row);
    else
        m_selected = row;
    changed();
}

void CTriggerModifyOrder::select(int row) {
    if (row < 0 || row >= static_cast<int>(m_orders.size())) row = -1;
    m_selected = row;
    m_edit = Edit{};
    if (const tagTriggerOrder* t = selectedOrder()) {
        m_edit.volume = t->dVolume;
        m_edit.triggerPrice = t->dTriggerPrice;
        m_edit.execPrice = t->dPrice;
        m_edit.stopLoss = t->dStopLoss;
        m_edit.takeProfit = t->dTakeProfit;
        m_edit.expiry = t->tExpiry;
    }
    changed();
}

const tagTriggerOrder* CTriggerModifyOrder::selectedOrder() const {
    return m_selected >= 0 ? &m_orders[m_selected] : nullptr;
}

CTriggerModifyOrder::Result CTriggerModifyOrder::modify() {
    using namespace order_text;
    const tagTriggerOrder* chosen = selectedOrder();
    if (!chosen) {
        inform(kMsgChooseTrigger);
        return Result::Refused;
    }
    CHelmsmanManage& manage = m_master.manage();
    tagTriggerOrder order = *chosen;
    const bool stopProfit = isStopProfitOrder(order);
    if (!(m_edit.volume > 0)) {
        inform(kMsgVolumeNotPositive);
        return Result::Refused;
    }
    order.dVolume = m_edit.volume;
    order.dStopLoss = isPricePresent(m_edit.stopLoss) ? m_edit.stopLoss : 0.0;
    order.dTakeProfit = isPricePresent(m_edit.takeProfit) ? m_edit.takeProfit : 0.0;
    order.dTriggerPrice = isPricePresent(m_edit.triggerPrice) ? m_edit.triggerPrice : 0.0;
    order.dPrice = isPricePresent(m_edit.execPrice) ? m_edit.execPrice : 0.0;
    CSubscibeManage* facade = manage.facade();
    IModuleFutureTrader::ISpecDetailValue detail;
    const tagSymbol symbol{static_cast<std::uint16_t>(order.nExchangeID), order.strCode};
    if (facade && facade->GetSymbolProperty(symbol, detail) != 0 && detail.nMinMove > 0) {
        if (isPricePresent(order.dTriggerPrice))
            order.dTriggerPrice = price::roundForDirection(order.dTriggerPrice, order.nDirection,
                                                           detail.nMinMove, detail.fPriceUnit);
        if (isPricePresent(order.dPrice))
            order.dPrice = price::roundForDirection(order.dPrice, order.nDirection, detail.nMinMove,
                                                    detail.fPriceUnit);
    }
    if (order.nOpenClose == kOpen) {
        if (const char* error = openingStopsError(order.nDirection, order.dPrice, order.dStopLoss,
                                                  order.dTakeProfit)) {
            inform(error);
            return Result::Refused;
        }
    }
    order.tExpiry = confirmExpiry(manage.prompter(), m_edit.expiry, manage.clock().now());

    const bool ok = facade && facade->ModifyTriggerOrder(order.strOrderID, order) != 0;
    if (ok)
        inform(stopProfit ? kMsgModifiedStopProfit : kMsgModifiedTrigger);
    else
        inform(stopProfit ? kMsgModifyStopProfitFailed : kMsgModifyTriggerFailed);
    refresh();
    return ok ? Result::Done : Result::Failed;
}

CTriggerModifyOrder::Result CTriggerModifyOrder::remove() {
    using namespace order_text;
    const tagTriggerOrder* chosen = selectedOrder();
    if (!chosen) {
        inform(kMsgChooseTrigger);
        return Result::Refused;
    }
    const tagTriggerOrder order = *chosen;
    const bool stopProfit = isStopProfitOrder(order);
    CSubscibeManage* facade = m_master.manage().facade();
    const bool ok = facade && facade->DeleteTriggerOrder(order.strAccountID, order.strBrokerID,
                                                         order.strOrderID) != 0;
    if (ok)
        inform(stopProfit ? kMsgDeletedStopProfit : kMsgDeletedTrigger);
    else
        inform(stopProfit ? kMsgDeleteStopProfitFailed : kMsgDeleteTriggerFailed);
    refresh();
    return ok ? Result::Done : Result::Failed;
}

std::string CTriggerModifyOrder::title(const tagTriggerOrder& order) {
    return confirm_fmt::format(isStopProfitOrder(order) ? order_text::kTitleStopProfitOrder
                                                        : order_text::kTitleTriggerOrder,
                               order.strOrderID.c_str());
}

std::vector<std::string> CTriggerModifyOrder::summary(const tagTriggerOrder& order, int decimals) {
    namespace ct = confirm_text;
    const std::string symbol = confirm_fmt::symbolOf(order.strCode, order.strSymbolText);
    const std::string dir(order.nDirection == kDirBuy || order.nDirection == kDirSell
                              ? codes::directionText(order.nDirection)
                              : std::string_view(order_text::kUnknownOperation));
    const auto px = [&](double p) { return confirm_fmt::price(p, decimals); };
    std::vector<std::string> lines;
    if (isStopProfitOrder(order)) {
        lines.push_back(confirm_fmt::format(order_text::kStopProfitLine, dir.c_str(),
                                            symbol.c_str(), order.dVolume));
    } else {
        lines.push_back(confirm_fmt::format(ct::kTriggerAccount, order.strAccountID.c_str()));
        lines.push_back(
            confirm_fmt::format(order.nOpenClose == kOpen ? ct::kOpenLine : ct::kCloseLine,
                                dir.c_str(), symbol.c_str(), order.dVolume) +
            (isPricePresent(order.dPrice) ? px(order.dPrice) : ct::kMarketPrice) +
            ct::kTriggerPrice + px(order.dTriggerPrice));
    }
    lines.push_back(isPricePresent(order.dStopLoss) ? ct::kStopLoss + px(order.dStopLoss)
                                                    : ct::kStopLossNone);
    lines.push_back(isPricePresent(order.dTakeProfit) ? ct::kTakeProfit + px(order.dTakeProfit)
                                                      : ct::kTakeProfitNone);
    return lines;
}

std::intptr_t CTriggerModifyOrder::onMessage(std::uint32_t msg, std::uintptr_t wParam,
                                             std::uintptr_t) {
    if (msg == kMsgDataChange && wParam != kEventQuote) {
        refresh();
        return 1;
    }
    if (msg == kMsgLogonState) {
        refresh();
        return 1;
    }
    return 0;
}
