#include "account/fast_exit_all.h"

#include <algorithm>
#include <cstdio>

#include "account/account_journal.h"
#include "account/account_strings.h"
#include "app/helmsman_manage.h"
#include "app/profile_ini.h"
#include "host/codes.h"
#include "host/number_text.h"
#include "host/price.h"

using namespace account_text;

namespace {

bool sameAccount(const tagAccoutInfo& a, const std::string& id, const std::string& broker) {
    return a.strAccountID == id && a.strBrokerID == broker;
}

}  // namespace

CFastExitAll::CFastExitAll(CHelmsmanManage& manage) : m_manage(manage) {
    if (!m_manage.userDir().empty())
        m_offset = std::max(0, profileGetInt(m_manage.profilePath(), kFastExitAllSection,
                                             "nOffsetPoint", 1));
    refresh();
}

void CFastExitAll::setOffsetPoints(int points) {
    m_offset = std::max(0, points);
    reprice();
}

void CFastExitAll::saveOptions() const {
    if (!m_manage.userDir().empty())
        profileWriteString(m_manage.profilePath(), kFastExitAllSection, "nOffsetPoint",
                           std::to_string(m_offset));
}

const CFastExitAll::Contract& CFastExitAll::contractOf(const tagSymbol& symbol) {
    for (const auto& [s, c] : m_contracts)
        if (s == symbol) return c;
    Contract c;
    if (CSubscibeManage* f = m_manage.facade())
        c.known = f->GetSymbolProperty(symbol, c.detail) != 0;
    m_contracts.emplace_back(symbol, c);
    return m_contracts.back().second;
}

double CFastExitAll::priceOf(const Row& row, const IModuleFutureTrader::ITickEx& t) {
    const Contract& c = contractOf(row.symbol);
    const double point = c.known ? price::pointOnGrid(c.detail.nMinMove, c.detail.fPriceUnit) : 0;
    const close_plan::Touch touch = close_plan::touchPrice(row.direction, t, true, m_offset, point);
    if (!touch.ok) return 0;
    double px = price::clampToLimits(touch.price, t.dLowerLimit, t.dUpperLimit);
    if (c.known) px = price::roundForDirection(px, row.direction, c.detail.nMinMove, c.detail.fPriceUnit);
    return px;
}

void CFastExitAll::refresh() {
    CSubscibeManage* f = m_manage.facade();
    m_accounts.reload(m_manage);

    std::vector<Row> rows;
    std::vector<tagOpenedPosition> positions;
    std::vector<tagBrokerOrder> orders;
    if (f) {
        f->GetAllPositions(positions);
        f->GetAllOrders(orders);
    }
    std::vector<tagBrokerOrder> working;
    for (const tagBrokerOrder& o : orders)
        if (o.nStatus == kOrderQueued || o.nStatus == kOrderPartFilled ||
            o.nStatus == kOrderCancelling || o.nStatus == kOrderSending)
            working.push_back(o);
    for (const tagOpenedPosition& p : positions) {
        const auto& list = m_accounts.accounts();
        const auto a = std::find_if(list.begin(), list.end(), [&](const tagAccoutInfo& x) {
            return sameAccount(x, p.strAccountID, p.strBrokerID);
        });
        if (a == list.end() || !m_accounts.includes(p.strAccountID, p.strBrokerID)) continue;
        const close_plan::Closable held = close_plan::held(p);
        const close_plan::Closable free = close_plan::closable(p, working);
        const tagSymbol symbol{static_cast<std::uint16_t>(p.nExchangeID), p.strCode};
        const Contract& c = contractOf(symbol);
        for (std::int32_t dir : {kDirSell, kDirBuy}) {
            const close_plan::SideLots& h = held.sideFor(dir);
            if (!(h.total() > 0.5)) continue;
            Row r;
            r.account = *a;
            r.symbol = symbol;
            r.direction = dir;
            r.held = h;
            r.free = free.sideFor(dir);
            r.decimals = c.known ? price::decimals(c.detail.nMinMove, c.detail.fPriceUnit) : 2;
            for (const Row& old : m_rows)
                if (sameAccount(old.account, p.strAccountID, p.strBrokerID) && old.symbol == symbol &&
                    old.direction == dir)
                    r.checked = old.checked;
            rows.push_back(r);
        }
    }
    m_rows = std::move(rows);
    reprice();
}

void CFastExitAll::reprice() {
    CSubscibeManage* f = m_manage.facade();
    for (Row& r : m_rows) {
        IModuleFutureTrader::ITickEx t;
        r.price = f && f->GetMarketQuote(r.symbol, t) != 0 ? priceOf(r, t) : 0;
    }
}

std::string CFastExitAll::summary() const {
    int checked = 0;
    double lots = 0;
    for (const Row& r : m_rows)
        if (r.checked) {
            ++checked;
            lots += r.free.total();
        }
    char text[128];
    std::snprintf(text, sizeof text, kExitAllSummary, static_cast<int>(m_rows.size()), checked, lots);
    return text;
}

std::string CFastExitAll::cell(std::size_t row, int column) const {
    const Row& r = m_rows.at(row);
    switch (column) {
        case 0: return close_plan::accountText(r.account);
        case 1: return r.symbol.strCode;
        case 2: return r.direction == kDirSell ? kLong : kShort;
        case 3: return number_text::format(r.held.total());
        case 4: return number_text::format(r.held.yesterday);
        case 5: return number_text::format(r.held.today);
        case 6: return number_text::format(r.free.total());
        case 7: return isPricePresent(r.price) ? number_text::format(r.price, r.decimals) : kNoValue;
        default: return {};
    }
}

CFastExitAll::Result CFastExitAll::closeChecked() {
    m_last.clear();
    refresh();
    std::string unpriced;
    for (const Row& r : m_rows) {
        if (!r.checked || !(r.free.total() > 0.5)) continue;
        if (!isPricePresent(r.price)) {
            unpriced += close_plan::accountText(r.account) + " " + r.symbol.strCode + " " +
                        (r.direction == kDirSell ? kLong : kShort) + "\n";
            continue;
        }
        for (const close_plan::Part& part : close_plan::split(r.symbol.wExchangeID, r.free, r.free.total())) {
            tagBrokerOrder o;
            o.strAccountID = r.account.strAccountID;
            o.strBrokerID = r.account.strBrokerID;
            o.nExchangeID = r.symbol.wExchangeID;
            o.strSymbolText = r.symbol.strCode;
            o.strCode = r.symbol.strCode;
            o.nDirection = r.direction;
            o.tCreateTime = m_manage.clock().now();
            o.dVolume = part.volume;
            o.dPrice = r.price;
            o.nOpenClose = part.openClose;
            o.nHedge = kSpeculation;
            m_last.push_back(o);
        }
    }
    if (!unpriced.empty()) {
        char text[2048];
        std::snprintf(text, sizeof text, kMsgRowsWithoutPrice, unpriced.c_str());
        m_manage.prompter().inform(kCaptionPrompt, text, PromptIcon::Warning);
    }
    if (m_last.empty()) {
        if (unpriced.empty()) m_manage.prompter().inform(kCaptionPrompt, kMsgNothingToClose);
        return Result::Nothing;
    }
    const int r = m_manage.submitBatch(m_last, true, kFastExitAllCaption, nullptr,
                                  CHelmsmanManage::Recorder::Caller);
    if (r == 0) {
        m_last.clear();
        return Result::Cancelled;
    }
    char reason[128];
    std::snprintf(reason, sizeof reason, kReasonExitAll, m_offset);
    account_journal::record(m_manage, kFastExitAllCaption, m_windowName, m_last, r, reason,
                            {{"offsetPoints", static_cast<double>(m_offset)},
                             {"orders", static_cast<double>(m_last.size())}});
    refresh();
    return Result::Sent;
}
