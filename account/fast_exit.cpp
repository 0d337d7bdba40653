#include "account/fast_exit.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "account/account_journal.h"
#include "account/account_strings.h"
#include "algo/algo_setting.h"
#include "app/helmsman_manage.h"
#include "app/profile_ini.h"
#include "host/price.h"

namespace {

using namespace account_text;

// A threshold every order reaches: with the tool's algorithm option on, all of it goes.
tagAlgoSetting handOffBlock() {
    tagAlgoSetting block;
    block.nBaseLine = 0;
    return block;
}

}  // namespace

// ---- Options -----------------------------------------------------------------------------

FastExitOptions FastExitOptions::load(const std::filesystem::path& profile) {
    FastExitOptions o;
    CProfileIni ini;
    ini.load(profile);
    o.bUseBidAskPrice = ini.getInt(kFastExitSection, "bUseBidAskPrice", 1);
    o.bUserBidAskOffset = ini.getInt(kFastExitSection, "bUserBidAskOffset", 1);
    o.nOffsetPoint = ini.getInt(kFastExitSection, "nOffsetPoint", 1);
    o.bUseAlgoTrading = ini.getInt(kFastExitSection, "bUseAlgoTrading", 0);
    return o;
}

bool FastExitOptions::save(const std::filesystem::path& profile) const {
    CProfileIni ini;
    ini.load(profile);
    ini.writeString(kFastExitSection, "bUseBidAskPrice", std::to_string(bUseBidAskPrice));
    ini.writeString(kFastExitSection, "bUserBidAskOffset", std::to_string(bUserBidAskOffset));
    ini.writeString(kFastExitSection, "nOffsetPoint", std::to_string(nOffsetPoint));
    ini.writeString(kFastExitSection, "bUseAlgoTrading", std::to_string(bUseAlgoTrading));
    return static_cast<bool>(ini.save());
}

// ---- Account and instrument --------------------------------------------------------------

CFastExit::CFastExit(CHelmsmanManage& manage, const tagOpenedPosition* position,
                     const std::string& code)
    : m_manage(manage) {
    if (!m_manage.userDir().empty()) m_options = FastExitOptions::load(m_manage.profilePath());
    reloadAccounts();
    if (position) {
        // Only the position's own account: never another one by default.
        m_account = -1;
        for (std::size_t i = 0; i < m_accounts.size(); ++i)
            if (m_accounts[i].strAccountID == position->strAccountID &&
                m_accounts[i].strBrokerID == position->strBrokerID)
                m_account = static_cast<int>(i);
        selectAccount(m_account);
        tagSymbol s{static_cast<std::uint16_t>(position->nExchangeID),
                    position->strCode.empty() ? code : position->strCode};
        selectSymbol(s);
    } else {
        selectAccount(m_account);
    }
    // A new window offers the larger side whole.
    volume = std::max(m_position.dLong, m_position.dShort);
}

const tagAccoutInfo* CFastExit::account() const {
    if (m_account < 0 || m_account >= static_cast<int>(m_accounts.size())) return nullptr;
    return &m_accounts[m_account];
}

void CFastExit::reloadAccounts() {
    const tagAccoutInfo* current = account();
    const tagAccoutInfo keep = current ? *current : tagAccoutInfo{};
    m_accounts.clear();
    if (CSubscibeManage* f = m_manage.facade()) f->GetAvailableAccounts(m_accounts);
    m_account = m_accounts.empty() ? -1 : 0;
    for (std::size_t i = 0; i < m_accounts.size(); ++i)
        if (m_accounts[i].strAccountID == keep.strAccountID &&
            m_accounts[i].strBrokerID == keep.strBrokerID)
            m_account = static_cast<int>(i);
}

void CFastExit::selectAccount(int index) {
    m_account = index >= 0 && index < static_cast<int>(m_accounts.size()) ? index : -1;
    m_held.clear();
    CSubscibeManage* f = m_manage.facade();
    const tagAccoutInfo* a = account();
    if (f && a) {
        std::vector<tagOpenedPosition> all;
        f->GetAllPositions(all);
        for (const tagOpenedPosition& p : all) {
            if (p.strAccountID != a->strAccountID || p.strBrokerID != a->strBrokerID) continue;
            if (p.dLong < 0.5 && p.dShort < 0.5) continue;
            m_held.push_back({static_cast<std::uint16_t>(p.nExchangeID), p.strCode});
        }
    }
    // Keep the instrument when the account holds it too; else the account's first one.
    const bool keep = std::find(m_held.begin(), m_held.end(), m_symbol) != m_held.end();
    if (!keep) selectSymbol(m_held.empty() ? m_symbol : m_held.front());
    else refresh();
}

void CFastExit::selectSymbol(const tagSymbol& symbol) {
    m_symbol = symbol;
    m_hasDetail = false;
    m_detail = {};
    m_decimals = 2;
    if (CSubscibeManage* f = m_manage.facade(); f && !m_symbol.empty()) {
        m_hasDetail = f->GetSymbolProperty(m_symbol, m_detail) != 0;
        if (m_hasDetail) m_decimals = price::decimals(m_detail.nMinMove, m_detail.fPriceUnit);
    }
    refresh();
}

double CFastExit::point() const {
    return m_hasDetail ? price::pointOnGrid(m_detail.nMinMove, m_detail.fPriceUnit) : 0.0;
}

// ---- What the window shows -----------------------------------------------------------------

void CFastExit::readPosition() {
    m_position = tagOpenedPosition{};
    m_closable = {};
    CSubscibeManage* f = m_manage.facade();
    const tagAccoutInfo* a = account();
    if (!f || !a || m_symbol.empty()) return;
    if (f->GetPosition(m_position, a->strAccountID, a->strBrokerID, m_symbol) == 0) {
        m_position = tagOpenedPosition{};
        return;
    }
    m_position.strAccountID = a->strAccountID;
    m_position.strBrokerID = a->strBrokerID;
    m_position.nExchangeID = m_symbol.wExchangeID;
    m_position.strCode = m_symbol.strCode;
    std::vector<tagBrokerOrder> working;
    f->GetOpenOrders(working, a->strAccountID, a->strBrokerID, m_symbol);
    m_closable = close_plan::closable(m_position, working);
}

bool CFastExit::refresh() {
    m_quoteValid = false;
    m_tick = {};
    if (CSubscibeManage* f = m_manage.facade(); f && !m_symbol.empty()) {
        IModuleFutureTrader::ITickEx t;
        if (f->GetMarketQuote(m_symbol, t) != 0) {
            m_tick = t;
            m_quoteValid = true;
        }
    }
    readPosition();
    return m_quoteValid && (isPricePresent(m_tick.dBid) || isPricePresent(m_tick.dAsk));
}

std::string CFastExit::positionText() const {
    const close_plan::Closable h = close_plan::held(m_position);
    char text[256];
    std::snprintf(text, sizeof text, kPositionFormat, h.longSide.total(), h.longSide.yesterday,
                  h.longSide.today, h.shortSide.total(), h.shortSide.yesterday, h.shortSide.today);
    return text;
}

void CFastExit::saveOptions() const {
    if (!m_manage.userDir().empty()) m_options.save(m_manage.profilePath());
}

void CFastExit::inform(const char* caption, const char* text) const {
    m_manage.prompter().inform(caption, text, PromptIcon::Information);
}

// ---- Closing -------------------------------------------------------------------------------

CFastExit::Result CFastExit::close(std::int32_t direction) {
    m_last.clear();
    const bool sell = direction == kDirSell;
    CSubscibeManage* facade = m_manage.facade();

    // 1. A logged-on account and something to close.
    reloadAccounts();
    const tagAccoutInfo* a = account();
    if (!facade || !a) {
        inform(kCaptionPrompt, kMsgLogin);
        return Result::Stopped;
    }
    refresh();
    const double side = sell ? m_position.dLong : m_position.dShort;
    if (!(side > 0.01)) {
        inform(kCaptionPrompt, sell ? kMsgNoLong : kMsgNoShort);
        return Result::Stopped;
    }
    if (!(volume > 0)) {
        inform(kCaptionPrompt, kMsgVolumeNotPositive);
        return Result::Stopped;
    }

    // 2. The price.
    std::string reason = sell ? kReasonCloseLong : kReasonCloseShort;
    reason += "，";
    double px = manualPrice;
    if (m_options.bUseBidAskPrice != 0) {
        const close_plan::Touch t =
            m_quoteValid ? close_plan::touchPrice(direction, m_tick, m_options.bUserBidAskOffset != 0,
                                                  m_options.nOffsetPoint, point())
                         : close_plan::Touch{};
        if (!t.ok) {
            inform(kCaptionPromptBlank, kMsgNoTouchPrice);
            return Result::Stopped;
        }
        px = t.price;
        char text[128];
        std::snprintf(text, sizeof text, kReasonTouchOffset, m_options.nOffsetPoint);
        reason += t.opposite ? kReasonOppositeTouch
                             : (m_options.bUserBidAskOffset != 0 ? text : kReasonTouch);
    } else {
        reason += kReasonManual;
    }
    if (!isPricePresent(px)) {
        inform(kCaptionPromptBlank, kMsgNoTouchPrice);
        return Result::Stopped;
    }

    // 3. The limit band.
    const double lower = m_tick.dLowerLimit, upper = m_tick.dUpperLimit;
    if (lower > 0 && upper > 0 && lower < upper && (px > upper || px < lower)) {
        inform(kCaptionPrompt, kMsgOutOfLimits);
        px = std::clamp(px, lower, upper);
        reason += kReasonClamped;
    }

    // 4. The volume.
    double lots = volume;
    if (lots > side + 0.01) {
        inform(kCaptionPrompt, sell ? kMsgLongVolumeCut : kMsgShortVolumeCut);
        lots = side;
    }
    const close_plan::SideLots& free = m_closable.sideFor(direction);
    if (lots > free.total() + 0.01) {
        char text[256];
        std::snprintf(text, sizeof text, kMsgHeldByWorking, free.total());
        inform(kCaptionPrompt, text);
        lots = free.total();
        if (!(lots > 0)) return Result::Stopped;
    }

    // 5. The tick.
    if (m_hasDetail) px = price::roundForDirection(px, direction, m_detail.nMinMove, m_detail.fPriceUnit);

    // 6. The orders the exchange takes.
    for (const close_plan::Part& part : close_plan::split(m_symbol.wExchangeID, free, lots)) {
        tagBrokerOrder o;
        o.strAccountID = a->strAccountID;
        o.strBrokerID = a->strBrokerID;
        o.nExchangeID = m_symbol.wExchangeID;
        o.strSymbolText = m_symbol.strCode;
        o.strCode = m_symbol.strCode;
        o.nDirection = direction;
        o.tCreateTime = m_manage.clock().now();
        o.dVolume = part.volume;
        o.dPrice = px;
        o.nOpenClose = part.openClose;
        o.nHedge = kSpeculation;
        m_last.push_back(o);
    }

    // 7. Submission.
    const bool algoOn = m_options.bUseAlgoTrading != 0;
    const tagAlgoSetting block = handOffBlock();
    const bool confirm = m_manage.settings().bShowNormalOrderConfirm != 0;
    int r = 0;
    {
        account_journal::ScopedAlgoSwitch algo(m_manage, algoOn);
        const tagAlgoSetting* threshold = algoOn ? &block : nullptr;
        if (m_last.size() == 1)
            r = m_manage.submitOrder(m_last.front(), confirm, kFastExitCaption, threshold,
                                  CHelmsmanManage::Recorder::Caller);
        else
            r = m_manage.submitBatch(m_last, confirm, kFastExitCaption, threshold,
                                  CHelmsmanManage::Recorder::Caller);
    }
    if (r == 0 && confirm) {
        m_last.clear();
        return Result::Cancelled;
    }
    account_journal::record(m_manage, kFastExitCaption, m_windowName, m_last, r, reason,
                            {{"bid", m_tick.dBid},
                             {"ask", m_tick.dAsk},
                             {"offsetPoints", static_cast<double>(m_options.nOffsetPoint)},
                             {"side", side},
                             {"requested", volume}});
    refresh();
    const bool allTaken = std::all_of(m_last.begin(), m_last.end(), [&](const tagBrokerOrder& o) {
        return algoOn ? r != 0 : account_journal::taken(o);
    });
    return allTaken ? Result::Sent : Result::Failed;
}
