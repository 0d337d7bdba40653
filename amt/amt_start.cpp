// The start checks of CAMTOrder, made in a fixed order; the first that fails says why and
// the strategy stays stopped. Questions (start time passed, a condition that would act at
// once) go on with Yes.
#include <cstdio>
#include <vector>

#include "amt/amt_order.h"
#include "amt/amt_strings.h"
#include "app/helmsman_manage.h"

namespace {

// The account list must hold the chosen account; with none chosen the first is taken.
bool pickAccount(tagAMTParams& p, const std::vector<tagAccoutInfo>& accounts) {
    if (accounts.empty()) return false;
    if (p.strAccountID.empty()) {
        p.strAccountID = accounts.front().strAccountID;
        p.strBrokerID = accounts.front().strBrokerID;
        p.strAccountName = accounts.front().strAccountName;
        return true;
    }
    for (const auto& a : accounts)
        if (a.strAccountID == p.strAccountID &&
            (p.strBrokerID.empty() || a.strBrokerID == p.strBrokerID))
            return true;
    return false;
}

// The formula conditions' key checks of one side; the message of the first refusal or null.
const char* filterKeyProblem(const std::array<tagAMTFilter, 3>& filters, const char* keyEmpty,
                             const char* compareEmpty, char (&buf)[256]) {
    for (int i = 0; i < 3; ++i) {
        const tagAMTFilter& f = filters[static_cast<std::size_t>(i)];
        if (!f.bEnabled) continue;
        if (f.strKey.empty()) {
            std::snprintf(buf, sizeof buf, keyEmpty, i + 1);
            return buf;
        }
        if (f.bUseKey && f.strCompareKey.empty()) {
            std::snprintf(buf, sizeof buf, compareEmpty, i + 1);
            return buf;
        }
    }
    return nullptr;
}

}  // namespace

bool CAMTOrder::start() {
    using namespace amt_text;
    IPrompter& box = m_manager.prompter();
    auto refuse = [&](const char* text) {
        box.inform(kInfo, text);
        return false;
    };
    tagAMTParams& p = m_params;
    std::vector<tagAccoutInfo> accounts;
    if (CSubscibeManage* host = m_manager.facade()) host->GetAvailableAccounts(accounts);
    if (!pickAccount(p, accounts)) return refuse(kNoAccount);
    if (p.nEveryLots < 1 || p.nMaxLots < 1) return refuse(kLotsBelowOne);
    if (p.nMaxLots % p.nEveryLots != 0) return refuse(kMaxNotMultiple);
    if ((p.nMaxLots - m_state.position) % p.nEveryLots != 0) return refuse(kRestNotMultiple);
    if (m_state.position > p.nMaxLots) return refuse(kPositionAboveMax);
    if (p.nDelaySecs < 1) return refuse(kDelayBelowOne);

    const std::int64_t now = m_manager.clock().now();
    if (now > p.tStartTime) {
        if (!box.ask(kInfo, kStartPassed)) return false;
        p.tStartTime = now;
    }
    refreshQuote();
    const double last = m_quote.last;
    const bool isLong = p.bLong != 0;
    if (p.bEntryPriceCon) {
        const bool up = p.nEntryPriceCon == 0;
        // Condition 0 acts when the line is at or below the last price, 1 at or above it.
        const bool met = up ? p.dEntryPrice <= last : p.dEntryPrice >= last;
        if (isPricePresent(last) && met) {
            const char* text = isLong ? (up ? kEntryMetChaseBuy : kEntryMetDipBuy)
                                      : (up ? kEntryMetDipSell : kEntryMetChaseSell);
            if (!box.ask(kConfirm, text)) return false;
        }
        if (p.bEntryRangeFilter &&
            (up ? !(p.dEntryRangeFilter > p.dEntryPrice) : !(p.dEntryRangeFilter < p.dEntryPrice)))
            return refuse(isLong ? (up ? kRangeChaseBuy : kRangeDipBuy)
                                 : (up ? kRangeDipSell : kRangeChaseSell));
    }
    if (p.bEntryVolFilter && p.nEntryVolFilter < 1) return refuse(kEntryVolBelowOne);
    char buf[256];
    if (const char* why =
            filterKeyProblem(p.entryFilters, kEntryKeyEmpty, kEntryCompareKeyEmpty, buf))
        return refuse(why);
    if (p.bStopLoss && p.nStopLossPoint < 1) return refuse(kStopLossBelowOne);
    if (p.bTakeProfit && p.nTakeProfitPoint < 1) return refuse(kTakeProfitBelowOne);
    if (p.bTrailingStop && p.nTrailingStart < 0) return refuse(kTrailStartBelowZero);
    if (p.bTrailingStop && p.nTrailingStopType == 0 && p.nTrailingStopSet < 1)
        return refuse(kTrailPointsBelowOne);
    if (p.bExitAtTime && now >= p.tExitTime) return refuse(kExitTimePassed);
    if (p.bTrailingStop && p.nTrailingStopType == 1) {
        if (p.nTrailingStopSet < 1) return refuse(kTrailPercentBelowOne);
        if (p.nTrailingStopSet > 100) return refuse(kTrailPercentAbove100);
    }
    if (p.bExitPriceCon) {
        const bool up = p.nExitPriceCon == 0;
        const bool met = up ? p.dExitPrice <= last : p.dExitPrice >= last;
        if (isPricePresent(last) && met) {
            // A long leaves by selling (吊卖 above, 追卖 below), a short by buying.
            const char* text = isLong ? (up ? kExitMetDipSell : kExitMetChaseSell)
                                      : (up ? kExitMetChaseBuy : kExitMetDipBuy);
            if (!box.ask(kConfirm, text)) return false;
        }
    }
    if (p.bExitVolFilter && p.nExitVolFilter < 1) return refuse(kExitVolBelowOne);
    if (const char* why = filterKeyProblem(p.exitFilters, kExitKeyEmpty, kExitCompareKeyEmpty, buf))
        return refuse(why);

    m_state.running = true;
    notify();
    return true;
}
