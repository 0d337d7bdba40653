#include "order/normal_order.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <vector>

#include "app/helmsman_manage.h"
#include "host/number_text.h"
#include "host/price.h"
#include "order/master_dialog.h"
#include "order/order_strings.h"

CNormalOrder::CNormalOrder(CMasterDialog& master) : m_master(master) {}

void CNormalOrder::inform(const char* caption, const char* text) const {
    m_master.manage().prompter().inform(caption, text, PromptIcon::Information);
}

double CNormalOrder::parseVolume(const std::string& text) {
    return number_text::parseLeading(text).value_or(0);
}

std::string CNormalOrder::formatNumber(double v) {
    return number_text::format(v);
}

void CNormalOrder::readSettings(const HelmsmanSettings& s) {
    Controls& c = m_controls;
    const double volume = s.bSaveVolume ? s.dLastVolume : s.dDefaultVolume;
    c.volumeText = formatNumber(isPricePresent(volume) ? volume : 1.0);
    c.useBidAsk = s.bUseBidAskPrice != 0;
    c.useOffset = s.bUserBidAskOffset != 0;
    c.offsetPoints = s.nOffsetPoint;
    c.algo = s.bUseAlgoTrading != 0;
    c.stopLossAuto = s.bAutoFillStopLoss != 0;
    c.stopLoss = c.stopLossAuto;
    c.stopLossPoints = s.nAFStopLossPoint;
    c.takeProfitAuto = s.bAutoFillTakeProfit != 0;
    c.takeProfit = c.takeProfitAuto;
    c.takeProfitPoints = s.nAFTakeProfitPoint;
}

void CNormalOrder::writeSettings(HelmsmanSettings& s) const {
    const Controls& c = m_controls;
    if (s.bSaveVolume) s.dLastVolume = parseVolume(c.volumeText);
    s.bUseBidAskPrice = c.useBidAsk ? 1 : 0;
    s.bUserBidAskOffset = c.useOffset ? 1 : 0;
    s.nOffsetPoint = static_cast<std::int32_t>(c.offsetPoints);
    s.bUseAlgoTrading = c.algo ? 1 : 0;
    s.bAutoFillStopLoss = c.stopLossAuto ? 1 : 0;
    s.nAFStopLossPoint = c.stopLossPoints;
    s.bAutoFillTakeProfit = c.takeProfitAuto ? 1 : 0;
    s.nAFTakeProfitPoint = c.takeProfitPoints;
}

void CNormalOrder::toggleAutoStopLoss() {
    m_controls.stopLossAuto = !m_controls.stopLossAuto;
    if (m_controls.stopLossAuto) m_controls.stopLoss = true;
    m_master.notify(kTicketPage);
}

void CNormalOrder::toggleAutoTakeProfit() {
    m_controls.takeProfitAuto = !m_controls.takeProfitAuto;
    if (m_controls.takeProfitAuto) m_controls.takeProfit = true;
    m_master.notify(kTicketPage);
}

void CNormalOrder::onSymbolChanged() {
    m_controls.price = m_master.referencePrice();
}

CNormalOrder::SendResult CNormalOrder::send(std::int32_t direction) {
    return submit(direction, PriceSource::Page,
                  m_master.manage().settings().bShowNormalOrderConfirm != 0);
}

CNormalOrder::SendResult CNormalOrder::sendHotkey(HotkeyAction action) {
    return submit(hotkeyDirection(action),
                  hotkeyAtTouch(action) ? PriceSource::Quote : PriceSource::PriceBox,
                  m_master.manage().settings().bShowHotkeyOrderConfirm != 0);
}

CNormalOrder::SendResult CNormalOrder::submit(std::int32_t direction, PriceSource source,
                                              bool confirm) {
    using namespace order_text;
    CHelmsmanManage& manage = m_master.manage();
    const Controls& c = m_controls;
    const bool buy = direction == kDirBuy;

    // 1. The account shown, still logged on.
    const tagAccoutInfo* account = sendingAccount();
    if (!account) return SendResult::Refused;

    // 2. The symbol, and whether the host still trades it (it may stop while the ticket is
    // open, e.g. at expiry): the contract is read afresh.
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

    // 3. The order.
    tagBrokerOrder order;
    order.strAccountID = account->strAccountID;
    order.strBrokerID = account->strBrokerID;
    order.nExchangeID = symbol.wExchangeID;
    order.strSymbolText = m_master.symbolText();
    order.strCode = symbol.strCode;
    order.strAccountState = account->strAccountName;
    order.nPriceType = 0;
    order.nDirection = buy ? kDirBuy : kDirSell;
    order.dVolume = parseVolume(c.volumeText);

    // 4. Whole lots, and no more than can be closed.
    if (!(order.dVolume > 0)) {
        inform(kCaptionPrompt, kMsgVolumeNotPositive);
        return SendResult::Refused;
    }
    if (std::fabs(order.dVolume - std::round(order.dVolume)) > 1e-9) {
        inform(kCaptionPrompt, kMsgVolumeNotWhole);
        return SendResult::Refused;
    }
    if (!closable(order.nDirection, c.openClose, order.dVolume)) return SendResult::Refused;

    // 5. The point on the 1/10000 grid the rounding uses: the price unit is single precision
    // (0.2f is 0.2000000030), and that noise must not push an offset or a stop off the tick
    // (a sell at bid - 2 points would otherwise round down a whole tick).
    const double point = price::pointOnGrid(detail.nMinMove, detail.fPriceUnit);
    const double offset = std::trunc(c.offsetPoints) * point;

    // 6. The price.
    const bool fromQuote =
        source == PriceSource::Quote || (source == PriceSource::Page && c.useBidAsk);
    double px = 0;
    if (fromQuote) {
        const IModuleFutureTrader::ITickEx& t = m_master.tick();
        const bool valid = m_master.quoteValid();
        if (valid && buy && isPricePresent(t.dAsk))
            px = t.dAsk + (c.useOffset ? offset : 0.0);
        else if (valid && buy && isPricePresent(t.dBid))
            px = t.dBid;
        else if (valid && !buy && isPricePresent(t.dBid))
            px = t.dBid - (c.useOffset ? offset : 0.0);
        else if (valid && !buy && isPricePresent(t.dAsk))
            px = t.dAsk;
        else {
            inform(kCaptionPromptBlank, kMsgQuoteInvalid);
            return SendResult::Refused;
        }
    } else {
        px = c.price;
        if (!c.priceEntered) {
            inform(kCaptionPrompt, kMsgPriceEmpty);
            return SendResult::Refused;
        }
        if (!isPricePresent(px)) {
            inform(kCaptionPrompt, kMsgPriceNotPositive);
            return SendResult::Refused;
        }
    }

    // 7. The day's limit band.
    const IModuleFutureTrader::ITickEx& t = m_master.tick();
    const double lower = m_master.quoteValid() ? t.dLowerLimit : 0.0;
    const double upper = m_master.quoteValid() ? t.dUpperLimit : 0.0;
    const double clamped = price::clampToLimits(px, lower, upper);
    if (clamped != px && source == PriceSource::PriceBox) {
        // A keyboard order is not watched as it leaves: show the corrected price first.
        m_controls.price = clamped;
        m_master.notify(kTicketPage);
        inform(kCaptionPrompt, kMsgPriceLimitAdjusted);
        return SendResult::Refused;
    }
    px = clamped;

    // 8. Buys round up to the tick, sells down.
    px = price::roundForDirection(px, order.nDirection, detail.nMinMove, detail.fPriceUnit);
    order.dPrice = px;

    // 9.
    order.nOpenClose = c.openClose;
    order.nHedge = c.hedge;
    const bool opening = order.nOpenClose == kOpen;

    // 10, 11. Stops only protect an opening order.
    const bool hasStop = opening && c.stopLoss;
    const bool hasProfit = opening && c.takeProfit;
    if (hasStop)
        order.dStopLoss =
            c.stopLossAuto ? (buy ? px - c.stopLossPoints * point : px + c.stopLossPoints * point)
                           : c.stopLossPrice;
    if (hasProfit)
        order.dTakeProfit = c.takeProfitAuto ? (buy ? px + c.takeProfitPoints * point
                                                    : px - c.takeProfitPoints * point)
                                             : c.takeProfitPrice;

    // 12.
    if (hasStop && buy && order.dStopLoss >= px) {
        inform(kCaptionPrompt, kMsgBuyStopLoss);
        return SendResult::Refused;
    }
    if (hasProfit && buy && order.dTakeProfit <= px) {
        inform(kCaptionPrompt, kMsgBuyTakeProfit);
        return SendResult::Refused;
    }
    if (hasStop && !buy && order.dStopLoss <= px) {
        inform(kCaptionPrompt, kMsgSellStopLoss);
        return SendResult::Refused;
    }
    if (hasProfit && !buy && order.dTakeProfit >= px) {
        inform(kCaptionPrompt, kMsgSellTakeProfit);
        return SendResult::Refused;
    }

    // 13.
    order.tCreateTime = manage.clock().now();

    // 14. Submission, split by the single-order cap when it applies.
    const tagAlgoSetting* algo = c.algo ? &m_master.algoSetting() : nullptr;
    manage.setAlgoTrading(c.algo);
    const HelmsmanSettings& s = manage.settings();
    const double cap = s.dMaxSingleLimitVol;
    if (s.bUseSingleLimit && isPricePresent(cap) && order.dVolume > cap) {
        const double parts = std::ceil(order.dVolume / cap - 1e-9);
        if (parts > kMaxSplitOrders) {
            char text[256];
            std::snprintf(text, sizeof text, kMsgTooManySplitOrders, order.dVolume, cap,
                          static_cast<int>(std::min(parts, 1e9)), kMaxSplitOrders);
            inform(kCaptionPrompt, text);
            return SendResult::Refused;
        }
        std::vector<tagBrokerOrder> batch;
        batch.reserve(static_cast<std::size_t>(parts));
        double left = order.dVolume;
        while (left > kPriceEpsilon) {
            batch.push_back(order);
            batch.back().dVolume = std::min(cap, left);
            left -= batch.back().dVolume;
        }
        const int r = manage.submitBatch(batch, confirm, kCallerName, algo);
        if (confirm && r == 0) return SendResult::Cancelled;
        // One line for the batch: the first part the host refused, else the last part.
        std::size_t refused = batch.size();
        for (std::size_t i = 0; i < batch.size() && refused == batch.size(); ++i)
            if (batch[i].nStatus == kOrderRejected) refused = i;
        for (std::size_t i = 0; i < batch.size(); ++i)
            if (i != refused) m_master.reportSubmitted(batch[i]);
        if (refused == batch.size()) return SendResult::Sent;
        m_master.reportSubmitted(batch[refused]);
        return SendResult::Failed;
    }

    const int r = manage.submitOrder(order, confirm, kCallerName, algo);
    if (r != 0) {
        // A confirmed order the host then refused comes back marked so.
        m_master.reportSubmitted(order);
        return order.nStatus == kOrderRejected ? SendResult::Failed : SendResult::Sent;
    }
    if (confirm) return SendResult::Cancelled;
    // An order meant for the algo centre that could not take it: the centre has said so.
    if (manage.routesToAlgo(order, algo)) return SendResult::Failed;
    // Refused on the spot (the host marked it so), or not taken at all.
    if (order.nStatus == kOrderRejected)
        m_master.reportSubmitted(order);
    else
        m_master.reportNotSent(order);
    return SendResult::Failed;
}

const tagAccoutInfo* CNormalOrder::sendingAccount() {
    using namespace order_text;
    std::vector<tagAccoutInfo> loggedOn;
    if (CSubscibeManage* facade = m_master.manage().facade())
        facade->GetAvailableAccounts(loggedOn);
    const auto isLoggedOn = [&](const tagAccoutInfo& a) {
        return std::any_of(loggedOn.begin(), loggedOn.end(), [&](const tagAccoutInfo& b) {
            return a.strAccountID == b.strAccountID && a.strBrokerID == b.strBrokerID;
        });
    };
    const tagAccoutInfo* shown = m_master.account();
    if (shown && isLoggedOn(*shown)) return shown;
    // The logon notice may not have arrived yet: bring the box up to date first, so what
    // the message says is what the trader sees.
    const bool hadOne = shown || m_master.accountLoggedOff();
    const tagAccoutInfo gone = shown ? *shown : m_master.loggedOffAccount();
    m_master.reloadAccounts();
    m_master.notify(kTicketAccounts | kTicketPosition);
    char text[256];
    if (loggedOn.empty()) {
        inform(kCaptionPrompt, kMsgLogin);
    } else if (const tagAccoutInfo* now = m_master.account()) {
        // Nothing was shown and an account has logged on since (or the one shown before
        // is back): shown now, used only when the trader presses again.
        std::snprintf(text, sizeof text, kMsgAccountNowShown,
                      CMasterDialog::accountText(*now).c_str());
        inform(kCaptionPrompt, text);
    } else if (hadOne) {
        std::snprintf(text, sizeof text, kMsgAccountLoggedOff,
                      CMasterDialog::accountText(gone).c_str());
        inform(kCaptionPrompt, text);
    }
    return nullptr;
}

bool CNormalOrder::closable(std::int32_t direction, std::int32_t openClose, double volume) {
    using namespace order_text;
    if (openClose == kOpen) return true;
    m_master.refreshPosition();  // fills may have changed it since the last refresh
    const TicketClosable& c = m_master.closable();
    const double yd = c.yesterday(direction);
    const double td = c.today(direction);
    constexpr double eps = 1e-9;
    char text[512];
    if (openClose == kCloseToday) {
        if (volume <= td + eps) return true;
        std::snprintf(text, sizeof text, kMsgCloseTodayExceeds, volume, td);
    } else if (m_master.closesYesterdayOnly()) {
        if (volume <= yd + eps) return true;
        if (td > eps)
            std::snprintf(text, sizeof text, kMsgCloseYesterdayOnly, volume, yd, td);
        else
            std::snprintf(text, sizeof text, kMsgCloseExceeds, volume, yd, yd, td);
    } else {
        if (volume <= yd + td + eps) return true;
        std::snprintf(text, sizeof text, kMsgCloseExceeds, volume, yd + td, yd, td);
    }
    inform(kCaptionPrompt, text);
    return false;
}
