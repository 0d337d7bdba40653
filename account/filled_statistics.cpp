#include "account/filled_statistics.h"

#include <algorithm>
#include <deque>
#include <fstream>
#include <map>
#include <tuple>

#include "account/account_strings.h"
#include "account/close_plan.h"
#include "app/helmsman_manage.h"
#include "host/gbk_codec.h"
#include "host/number_text.h"
#include "host/price.h"

using namespace account_text;

namespace {

using Key = std::tuple<std::string, std::string, std::int32_t, std::string>;  // account, broker, exchange, code

struct Lot {
    double volume;
    double price;
};

// One side of a group while the fills are walked: yesterday's lots and today's, in order.
struct SideBook {
    double yesterday = 0;
    std::deque<Lot> today;

    // Takes `qty` lots, returns the profit per unit of multiplier for a close at `px`.
    double close(double qty, double px, double preSettle, bool todayOnly, bool isLong) {
        double profit = 0;
        auto gain = [&](double ref, double q) { profit += (isLong ? px - ref : ref - px) * q; };
        if (!todayOnly) {
            const double y = std::min(qty, yesterday);
            yesterday -= y;
            gain(preSettle, y);
            qty -= y;
        }
        while (qty > 1e-9 && !today.empty()) {
            Lot& l = today.front();
            const double q = std::min(qty, l.volume);
            gain(l.price, q);
            l.volume -= q;
            qty -= q;
            if (l.volume <= 1e-9) today.pop_front();
        }
        if (qty > 1e-9) {  // more than the books know of: mark it like yesterday's
            yesterday = std::max(0.0, yesterday - qty);
            gain(preSettle, qty);
        }
        return profit;
    }
};

}  // namespace

CFilledOrderStatistics::CFilledOrderStatistics(CHelmsmanManage& manage) : m_manage(manage) { refresh(); }

void CFilledOrderStatistics::refresh() {
    m_rows.clear();
    CSubscibeManage* f = m_manage.facade();
    if (!f) return;
    std::vector<tagBargainOrder> fills;
    std::vector<tagOpenedPosition> positions;
    std::vector<tagAccoutInfo> accounts;
    f->GetAllBargains(fills);
    f->GetAllPositions(positions);
    f->GetAvailableAccounts(accounts);
    std::stable_sort(fills.begin(), fills.end(),
                     [](const tagBargainOrder& a, const tagBargainOrder& b) { return a.tTime < b.tTime; });

    std::map<Key, std::vector<const tagBargainOrder*>> groups;
    for (const tagBargainOrder& b : fills)
        groups[{b.strAccountID, b.strBrokerID, b.nExchangeID, b.strCode}].push_back(&b);

    Row grand;
    grand.kind = Kind::GrandTotal;
    grand.account = kGrandTotal;
    grand.hasCommission = true;
    Row total;
    auto flushAccount = [&] {
        if (total.accountID.empty()) return;
        tagAccountSummary s;
        if (f->GetAccountSummary(s, total.accountID, total.brokerID) != 0) {
            total.commission = s.dCommission;
            total.hasCommission = true;
            grand.commission += s.dCommission;
        }
        m_rows.push_back(total);
    };
    for (const auto& [key, list] : groups) {
        const auto& [id, broker, exchange, code] = key;
        if (id != total.accountID || broker != total.brokerID) {
            flushAccount();
            total = Row{};
            total.kind = Kind::AccountTotal;
            total.accountID = id;
            total.brokerID = broker;
            total.account = kAccountTotal;
        }
        Row r;
        r.accountID = id;
        r.brokerID = broker;
        r.account = id;
        for (const tagAccoutInfo& a : accounts)
            if (a.strAccountID == id && a.strBrokerID == broker) r.account = close_plan::accountText(a);
        r.symbol = {static_cast<std::uint16_t>(exchange), code};
        IModuleFutureTrader::ISpecDetailValue d;
        double mult = 1;
        if (f->GetSymbolProperty(r.symbol, d) != 0) {
            r.decimals = price::decimals(d.nMinMove, d.fPriceUnit);
            if (d.dMultiplier > 0) mult = d.dMultiplier;
        }
        IModuleFutureTrader::ITickEx t;
        const double preSettle = f->GetMarketQuote(r.symbol, t) != 0 ? t.dPreSettle : 0;

        // Yesterday's lots at the start of the day, per side, from the position now.
        tagOpenedPosition now;
        for (const tagOpenedPosition& p : positions)
            if (p.strAccountID == id && p.strBrokerID == broker && p.nExchangeID == exchange && p.strCode == code)
                now = p;
        const close_plan::Closable held = close_plan::held(now);
        double opensLong = 0, opensShort = 0, closesLong = 0, closesShort = 0;
        for (const tagBargainOrder* b : list) {
            const bool buy = b->nDirection == kDirBuy;
            if (b->nOpenClose == kOpen)
                (buy ? opensLong : opensShort) += b->dVolume;
            else
                (buy ? closesShort : closesLong) += b->dVolume;
        }
        SideBook longBook, shortBook;
        longBook.yesterday = held.longSide.yesterday +
                             std::max(0.0, closesLong - std::max(0.0, opensLong - held.longSide.today));
        shortBook.yesterday = held.shortSide.yesterday +
                              std::max(0.0, closesShort - std::max(0.0, opensShort - held.shortSide.today));

        for (const tagBargainOrder* b : list) {
            const bool buy = b->nDirection == kDirBuy;
            if (buy) {
                r.buyLots += b->dVolume;
                r.buyAmount += b->dPrice * b->dVolume;
            } else {
                r.sellLots += b->dVolume;
                r.sellAmount += b->dPrice * b->dVolume;
            }
            if (b->nOpenClose == kOpen) {
                (buy ? longBook : shortBook).today.push_back({b->dVolume, b->dPrice});
                continue;
            }
            SideBook& book = buy ? shortBook : longBook;
            // 平今 takes today's lots; 平仓 yesterday's first (on exchange 0 only yesterday's,
            // which the exchange has already enforced).
            r.profit += mult * book.close(b->dVolume, b->dPrice, preSettle,
                                          b->nOpenClose == kCloseToday, !buy);
        }
        r.turnover = (r.buyAmount + r.sellAmount) * mult;
        for (Row* sum : {&total, &grand}) {
            sum->buyLots += r.buyLots;
            sum->sellLots += r.sellLots;
            sum->turnover += r.turnover;
            sum->profit += r.profit;
        }
        m_rows.push_back(std::move(r));
    }
    flushAccount();
    if (!groups.empty()) m_rows.push_back(grand);
}

std::string CFilledOrderStatistics::cell(std::size_t row, int column) const {
    const Row& r = m_rows.at(row);
    const bool group = r.kind == Kind::Group;
    auto money = [](double v) { return number_text::format(v, 2); };
    switch (column) {
        case kColAccount: return r.account;
        case kColSymbol: return group ? r.symbol.strCode : std::string();
        case kColBuyLots: return number_text::format(r.buyLots);
        case kColBuyAvg: return group && r.buyLots > 0 ? number_text::format(r.buyAvg(), r.decimals + 2) : kNoValue;
        case kColSellLots: return number_text::format(r.sellLots);
        case kColSellAvg: return group && r.sellLots > 0 ? number_text::format(r.sellAvg(), r.decimals + 2) : kNoValue;
        case kColTurnover: return money(r.turnover);
        case kColCommission: return r.hasCommission ? money(r.commission) : kNoValue;
        case kColProfit: return money(r.profit);
        default: return {};
    }
}

double CFilledOrderStatistics::sortValue(std::size_t row, int column) const {
    const Row& r = m_rows.at(row);
    switch (column) {
        case kColBuyLots: return r.buyLots;
        case kColBuyAvg: return r.buyAvg();
        case kColSellLots: return r.sellLots;
        case kColSellAvg: return r.sellAvg();
        case kColTurnover: return r.turnover;
        case kColCommission: return r.commission;
        case kColProfit: return r.profit;
        default: return 0;
    }
}

std::string CFilledOrderStatistics::csv() const {
    std::string out;
    std::string headings = kStatisticsColumns;
    // Titles only: "帐户,120;商品,70;..." -> "帐户,商品,...".
    std::size_t pos = 0;
    bool first = true;
    while (pos < headings.size()) {
        const std::size_t comma = headings.find(',', pos);
        const std::size_t semi = headings.find(';', pos);
        if (comma == std::string::npos) break;
        out += (first ? "" : ",") + headings.substr(pos, comma - pos);
        first = false;
        pos = semi == std::string::npos ? headings.size() : semi + 1;
    }
    out += "\r\n";
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        for (int c = 0; c < kColCount; ++c) {
            std::string v = cell(i, c);
            if (v.find_first_of(",\"") != std::string::npos) {
                std::string q = "\"";
                for (char ch : v) q += ch == '"' ? std::string("\"\"") : std::string(1, ch);
                v = q + "\"";
            }
            out += (c ? "," : "") + v;
        }
        out += "\r\n";
    }
    return out;
}

bool CFilledOrderStatistics::exportCsv(const std::filesystem::path& path) const {
    std::ofstream outFile(path, std::ios::binary | std::ios::trunc);
    if (!outFile) return false;
    const std::string bytes = gbk::fromUtf8(csv());
    outFile.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return static_cast<bool>(outFile);
}
