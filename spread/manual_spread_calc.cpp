#include "spread/manual_spread_calc.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "host/clock.h"
#include "host/number_text.h"
#include "host/price.h"
#include "spread/manual_spread_strings.h"

using IModuleFutureTrader::ITickEx;

SpreadPrices computeSpreadPrices(std::span<const ITickEx* const> legs,
                                 const std::array<double, 3>& units) {
    SpreadPrices out;
    const std::size_t n = std::min<std::size_t>(legs.size(), 3);
    if (n < 2) return out;

    // Ask of the spread: A's ask against the others' bids; bid of the spread the other way.
    bool askOk = isPricePresent(legs[0]->dAsk);
    bool bidOk = isPricePresent(legs[0]->dBid);
    bool lastOk = isPricePresent(legs[0]->dLast);
    double ask = units[0] * legs[0]->dAsk;
    double bid = units[0] * legs[0]->dBid;
    double last = units[0] * legs[0]->dLast;
    double askVol = legs[0]->dAskVol;
    double bidVol = legs[0]->dBidVol;
    for (std::size_t i = 1; i < n; ++i) {
        const ITickEx& q = *legs[i];
        askOk = askOk && isPricePresent(q.dBid);
        bidOk = bidOk && isPricePresent(q.dAsk);
        lastOk = lastOk && isPricePresent(q.dLast);
        ask -= units[i] * q.dBid;
        bid -= units[i] * q.dAsk;
        last -= units[i] * q.dLast;
        askVol = std::min(askVol, q.dBidVol);
        bidVol = std::min(bidVol, q.dAskVol);
    }
    if (askOk) {
        out.ask = ask;
        out.askVol = askVol;
    }
    if (bidOk) {
        out.bid = bid;
        out.bidVol = bidVol;
    }
    if (!lastOk) {
        out.last = -1;
        out.ratio = -1;
    } else {
        out.last = last;
        if (n == 2) {
            const double divisor = units[1] * legs[1]->dLast;
            out.ratio = divisor != 0 ? units[0] * legs[0]->dLast / divisor : 0;
        }
    }
    return out;
}

void CSpreadHistory::add(const SpreadPoint& p) {
    if (m_size < kMaxPoints) {
        m_points[(m_first + m_size) % kMaxPoints] = p;
        ++m_size;
    } else {
        m_points[m_first] = p;
        m_first = (m_first + 1) % kMaxPoints;
    }
}

std::pair<double, double> CSpreadHistory::range() const {
    if (m_size == 0) return {0, 0};
    double low = at(0).bid;
    double high = at(0).ask;
    for (std::size_t i = 1; i < m_size; ++i) {
        low = std::min(low, at(i).bid);
        high = std::max(high, at(i).ask);
    }
    return {low - kRangeMargin, high + kRangeMargin};
}

double spreadLegOrderPrice(std::int32_t direction, const ITickEx& quote, std::int32_t offset,
                           const SpreadLegStep& step, SpreadLimitBound bound) {
    const double move = offset * price::pointOnGrid(step.count, step.unit);
    const bool buy = direction == kDirBuy;
    const double p = buy ? price::roundBuy(quote.dAsk + move, step.count, step.unit)
                         : price::roundSell(quote.dBid - move, step.count, step.unit);
    // The bound that applies: the upper limit caps from above, the lower limit from below.
    const bool capByUpper = (bound == SpreadLimitBound::Own) == buy;
    if (capByUpper)
        return isPricePresent(quote.dUpperLimit) && p > quote.dUpperLimit ? quote.dUpperLimit : p;
    return isPricePresent(quote.dLowerLimit) && p < quote.dLowerLimit ? quote.dLowerLimit : p;
}

bool spreadLegTradable(const ITickEx& quote) {
    if (!isPricePresent(quote.dBid) || !isPricePresent(quote.dAsk)) return false;
    // A leg locked at a limit trades one way only; the spread would be left open.
    if (std::fabs(quote.dBid - quote.dUpperLimit) < kPriceEpsilon) return false;
    if (std::fabs(quote.dAsk - quote.dLowerLimit) < kPriceEpsilon) return false;
    return true;
}

std::string spreadPriceText(double price) {
    return number_text::format(price, -1);
}

std::string spreadRowText(const SpreadPrices& prices, SpreadRow row) {
    namespace t = manual_spread_text;
    char buf[128];
    switch (row) {
        case SpreadRow::Ask:
            std::snprintf(buf, sizeof buf, t::kPriceVolume, spreadPriceText(prices.ask).c_str(),
                          prices.askVol);
            break;
        case SpreadRow::Bid:
            std::snprintf(buf, sizeof buf, t::kPriceVolume, spreadPriceText(prices.bid).c_str(),
                          prices.bidVol);
            break;
        case SpreadRow::Last:
            if (!(prices.ratio > 0)) return spreadPriceText(prices.last);
            std::snprintf(buf, sizeof buf, t::kLastRatio, spreadPriceText(prices.last).c_str(),
                          prices.ratio);
            break;
    }
    return buf;
}

namespace {

// The time of day of a quote: its local "%Y-%m-%d %H:%M:%S" cut to the last 8 characters.
std::string timeOfDay(std::int64_t quoteMs) {
    const std::string full = formatDateTime(quoteMs / 1000);
    return full.size() > 8 ? full.substr(full.size() - 8) : full;
}

}  // namespace

std::string manualSpreadCaption(const std::string& templateName, bool hasA, std::int64_t timeA,
                                bool hasB, std::int64_t timeB) {
    const std::string name = templateName.empty() ? std::string() : templateName + '@';
    const std::string a = hasA ? timeOfDay(timeA) : std::string();
    const std::string b = hasB ? timeOfDay(timeB) : std::string();
    char buf[512];
    std::snprintf(buf, sizeof buf, manual_spread_text::kCaption, name.c_str(), a.c_str(),
                  b.c_str());
    return buf;
}
