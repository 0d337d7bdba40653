#include "order/trigger_order.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <vector>

#include "app/helmsman_manage.h"
#include "host/clock.h"
#include "host/codes.h"
#include "host/number_text.h"
#include "host/price.h"
#include "order/master_dialog.h"
#include "order/normal_order.h"
#include "order/order_strings.h"

// ---- Shared step helpers -------------------------------------------------------------------

double triggerReferencePrice(const IModuleFutureTrader::ITickEx& tick) {
    if (isPricePresent(tick.dLast)) return tick.dLast;
    if (isPricePresent(tick.dPreSettle)) return tick.dPreSettle;
    return 0;
}

std::int32_t autoTriggerType(std::int32_t direction, double triggerPrice, double reference) {
    if (direction == kDirBuy) return triggerPrice <= reference ? kTriggerBuyDip : kTriggerBuyChase;
    return triggerPrice >= reference ? kTriggerSellRise : kTriggerSellChase;
}

std::int32_t chosenTriggerType(std::int32_t direction, int listIndex, std::int32_t autoType) {
    const bool buy = direction == kDirBuy;
    if (listIndex == 1) return buy ? kTriggerBuyDip : kTriggerSellRise;
    if (listIndex == 2) return buy ? kTriggerBuyChase : kTriggerSellChase;
    return autoType;
}

std::int64_t confirmExpiry(IPrompter& prompter, std::int64_t expiry, std::int64_t now) {
    using namespace order_text;
    if (expiry < 0) expiry = 0;
    const std::int64_t endOfToday = endOfDay(now);
    if (expiry != 0 && expiry <= endOfToday) return expiry;
    // No expiry is a next-day order too: it is asked about deliberately.
    if (prompter.ask(kCaptionPrompt, kMsgNextDayExpiry, PromptIcon::Question)) return expiry;
    return endOfToday;
}

double autoTriggerStop(std::int32_t direction, double triggerPrice, int points, double point) {
    return direction == kDirBuy ? triggerPrice - points * point : triggerPrice + points * point;
}

double autoTriggerProfit(std::int32_t direction, double triggerPrice, int points, double point) {
    return direction == kDirBuy ? triggerPrice + points * point : triggerPrice - points * point;
}

const char* openingStopsError(std::int32_t direction, double execPrice, double stopLoss,
                              double takeProfit) {
    using namespace order_text;
    const bool buy = direction == kDirBuy;
    const bool hasStop = isPricePresent(stopLoss);
    const bool hasProfit = isPricePresent(takeProfit);
    if (execPrice >= kPriceEpsilon) {
        if (buy && hasStop && stopLoss >= execPrice) return kMsgBuyStopLoss;
        if (buy && hasProfit && takeProfit <= execPrice) return kMsgBuyTakeProfit;
        if (!buy && hasStop && stopLoss <= execPrice) return kMsgSellStopLoss;
        if (!buy && hasProfit && takeProfit >= execPrice) return kMsgSellTakeProfit;
        return nullptr;
    }
    if (!hasStop || !hasProfit) return nullptr;
    if (buy && stopLoss >= takeProfit) return kMsgBuyStopBelowProfit;
    if (!buy && stopLoss <= takeProfit) return kMsgSellStopAboveProfit;
    return nullptr;
}

bool confirmLocalTrigger(IPrompter& prompter, tagTriggerOrder& order, std::int64_t now) {
    using namespace order_text;
    if (isPricePresent(order.dStopLoss) || isPricePresent(order.dTakeProfit)) {
        prompter.inform(kCaptionPrompt, kMsgLocalTriggerNoStops, PromptIcon::Information);
        return false;
    }
    if (!prompter.ask(kCaptionConfirm, kMsgLocalTriggerAsk, PromptIcon::Exclamation)) return false;
    const std::int64_t endOfToday = endOfDay(now);
    if (order.tExpiry <= 0 || order.tExpiry > endOfToday) order.tExpiry = endOfToday;
    return true;
}

// ---- The page ------------------------------------------------------------------------------

CTriggerOrder::CTriggerOrder(CMasterDialog& master) : m_master(master) {}

void CTriggerOrder::inform(const char* caption, const char* text) const {
    m_master.manage().prompter().inform(caption, text, PromptIcon::Information);
}

void CTriggerOrder::readSettings(const HelmsmanSettings& s) {
    Controls& c = m_controls;
    const double volume = s.bSaveVolume ? s.dLastVolume : s.dDefaultVolume;
    c.volumeText = CNormalOrder::formatNumber(isPricePresent(volume) ? volume : 1.0);
    c.stopLossAuto = s.bAutoFillStopLoss != 0;
    c.stopLoss = c.stopLossAuto;
    c.stopLossPoints = s.nAFStopLossPoint;
    c.takeProfitAuto = s.bAutoFillTakeProfit != 0;
    c.takeProfit = c.takeProfitAuto;
    c.takeProfitPoints = s.nAFTakeProfitPoint;
}

void CTriggerOrder::onSymbolChanged() {
    m_controls.triggerPrice = m_master.quoteValid() ? triggerReferencePrice(m_master.tick()) : 0;
}

bool CTriggerOrder::loggedOnAccount() {
    const tagAccoutInfo* shown = m_master.account();
    std::vector<tagAccoutInfo> loggedOn;
    if (CSubscibeManage* facade = m_master.manage().facade())
        facade->GetAvailableAccounts(loggedOn);
    const bool ok =
        shown && std::any_of(loggedOn.begin(), loggedOn.end(), [&](const auto& a) {
            return a.strAccountID == shown->strAccountID && a.strBrokerID == shown->strBrokerID;
        });
    if (ok) return true;
    // Bring the box up to date so the trader sees which account a second press would use.
    m_master.reloadAccounts();
    m_master.notify(kTicketAccounts | kTicketPosition);
    inform(order_text::kCaptionPrompt, order_text::kMsgLogin);
    return false;
}

void CTriggerOrder::setStatus(const char* format, const tagTriggerOrder& o, bool error) {
    const std::string dir(codes::directionText(o.nDirection));
    const std::string oc(codes::openCloseText(o.nOpenClose));
    const std::string type(codes::triggerTypeText(o.nTriggerType));
    const std::string vol = number_text::format(o.dVolume);
    const std::string trig = number_text::format(o.dTriggerPrice);
    char text[512];
    std::snprintf(text, sizeof text, format, type.c_str(), dir.c_str(), oc.c_str(),
                  o.strCode.c_str(), vol.c_str(), trig.c_str());
    m_status = text;
    m_statusError = error;
}

CTriggerOrder::SendResult CTriggerOrder::send(std::int32_t direction) {
    using namespace order_text;
    CHelmsmanManage& manage = m_master.manage();
    IPrompter& prompter = manage.prompter();
    const Controls& c = m_controls;
    const bool buy = direction == kDirBuy;

    // 1. Account, symbol, tradability, volume.
    if (!loggedOnAccount()) return SendResult::Refused;
    const tagAccoutInfo& account = *m_master.account();
    const tagSymbol& symbol = m_master.symbol();
    if (symbol.empty()) {
        inform(kCaptionPrompt, kMsgChooseSymbol);
        return SendResult::Refused;
    }
    IModuleFutureTrader::ISpecDetailValue detail;
    CSubscibeManage* facade = manage.facade();
    if (!facade || facade->GetSymbolProperty(symbol, detail) == 0 || !detail.bTradable) {
        inform(kCaptionPrompt, kMsgSymbolNotTradable);
        return SendResult::Refused;
    }
    tagTriggerOrder order;
    order.strAccountID = account.strAccountID;
    order.strBrokerID = account.strBrokerID;
    order.nExchangeID = symbol.wExchangeID;
    order.strSymbolText = m_master.symbolText();
    order.strCode = symbol.strCode;
    order.nDirection = buy ? kDirBuy : kDirSell;
    order.nOpenClose = c.openClose;
    order.nHedge = c.hedge;
    order.dVolume = CNormalOrder::parseVolume(c.volumeText);
    order.strRemark = c.remark;
    if (!(order.dVolume > 0)) {
        inform(kCaptionPrompt, kMsgVolumeNotPositive);
        return SendResult::Refused;
    }
    if (std::fabs(order.dVolume - std::round(order.dVolume)) > 1e-9) {
        inform(kCaptionPrompt, kMsgVolumeNotWhole);
        return SendResult::Refused;
    }

    // 2. Reference price.
    const double reference = m_master.quoteValid() ? triggerReferencePrice(m_master.tick()) : 0;
    if (!isPricePresent(reference)) {
        inform(kCaptionPrompt, kMsgNoReferencePrice);
        return SendResult::Refused;
    }

    // 3. Trigger price on the tick, and the type it implies.
    if (!isPricePresent(c.triggerPrice)) {
        inform(kCaptionPromptBlank, kMsgTriggerPriceInvalid);
        return SendResult::Refused;
    }
    order.dTriggerPrice = price::roundForDirection(c.triggerPrice, order.nDirection,
                                                   detail.nMinMove, detail.fPriceUnit);
    order.dPrice = isPricePresent(c.execPrice)
                       ? price::roundForDirection(c.execPrice, order.nDirection, detail.nMinMove,
                                                  detail.fPriceUnit)
                       : 0.0;
    const std::int32_t autoType = autoTriggerType(order.nDirection, order.dTriggerPrice, reference);

    // 4. The trader's type.
    order.nTriggerType = chosenTriggerType(order.nDirection, c.typeIndex, autoType);
    if (order.nTriggerType != autoType &&
        !prompter.ask(kCaptionConfirm, kMsgTypeMismatch, PromptIcon::Warning))
        return SendResult::Cancelled;

    // 5. Expiry.
    const std::int64_t now = manage.clock().now();
    order.tExpiry = confirmExpiry(prompter, c.expiry, now);

    // 6. Stops of an opening order, automatic ones measured from the trigger price.
    const bool opening = order.nOpenClose == kOpen;
    const double point = price::pointOnGrid(detail.nMinMove, detail.fPriceUnit);
    if (opening && c.stopLoss)
        order.dStopLoss = c.stopLossAuto ? autoTriggerStop(order.nDirection, order.dTriggerPrice,
                                                           c.stopLossPoints, point)
                                         : c.stopLossPrice;
    if (opening && c.takeProfit)
        order.dTakeProfit = c.takeProfitAuto
                                ? autoTriggerProfit(order.nDirection, order.dTriggerPrice,
                                                    c.takeProfitPoints, point)
                                : c.takeProfitPrice;

    // 7.
    if (opening) {
        if (const char* error = openingStopsError(order.nDirection, order.dPrice, order.dStopLoss,
                                                  order.dTakeProfit)) {
            inform(kCaptionPrompt, error);
            return SendResult::Refused;
        }
    }

    order.tCreateTime = now;

    // 8. Local variant.
    if (m_master.useLocalTrigger()) {
        if (isPricePresent(order.dStopLoss) || isPricePresent(order.dTakeProfit)) {
            inform(kCaptionPrompt, kMsgLocalTriggerNoStops);
            return SendResult::Refused;
        }
        if (!confirmLocalTrigger(prompter, order, now)) return SendResult::Cancelled;
        if (order.strRemark.empty()) order.strRemark = kCallerName;
        const tagAlgoSetting* algo = m_master.useAlgoTrigger() ? &m_master.algoSetting() : nullptr;
        if (!manage.addLocalTrigger(order, algo)) {
            char text[256];
            std::snprintf(text, sizeof text, kMsgLocalNoContract, order.strCode.c_str());
            inform(kCaptionPrompt, text);
            return SendResult::Failed;
        }
        m_last = order;
        setStatus(kLocalTriggerAdded, order, false);
        m_master.notify(kTicketPage);
        return SendResult::Sent;
    }

    // 9. Server trigger.
    if (order.strRemark.empty()) order.strRemark = kCallerName;
    if (manage.settings().bShowTriggerOrderConfirm &&
        !manage.ui().confirmTriggerOrder(order, kCallerName))
        return SendResult::Cancelled;
    const bool taken = facade->SendTriggerOrder(order) != 0;
    m_last = order;
    setStatus(taken ? kTriggerSentFormat : kTriggerNotSentFormat, order, !taken);
    m_master.notify(kTicketPage);
    return taken ? SendResult::Sent : SendResult::Failed;
}
