#include "account/close_plan.h"

#include <algorithm>
#include <cstdio>

#include "account/account_strings.h"

namespace close_plan {

Closable held(const tagOpenedPosition& p) {
    Closable c;
    c.longSide.today = std::max(0.0, p.dLongToday);
    c.longSide.yesterday = std::max(0.0, p.dLong - c.longSide.today);
    c.shortSide.today = std::max(0.0, p.dShortToday);
    c.shortSide.yesterday = std::max(0.0, p.dShort - c.shortSide.today);
    return c;
}

Closable closable(const tagOpenedPosition& p, const std::vector<tagBrokerOrder>& working) {
    Closable c = held(p);
    for (const tagBrokerOrder& o : working) {
        if (o.nOpenClose == kOpen || o.strCode != p.strCode || o.nExchangeID != p.nExchangeID ||
            o.strAccountID != p.strAccountID || o.strBrokerID != p.strBrokerID)
            continue;
        SideLots& side = o.nDirection == kDirSell ? c.longSide : c.shortSide;
        const double left = std::max(0.0, o.dVolume - o.dFilledVolume);
        double fromYd = 0, fromTd = 0;
        if (o.nOpenClose == kCloseToday) {
            fromTd = left;
        } else if (closesYesterdayOnly(p.nExchangeID)) {
            fromYd = left;
        } else {
            fromYd = std::min(left, side.yesterday);
            fromTd = left - fromYd;
        }
        side.yesterday = std::max(0.0, side.yesterday - fromYd);
        side.today = std::max(0.0, side.today - fromTd);
    }
    return c;
}

std::vector<Part> split(std::int32_t exchangeID, const SideLots& free, double volume) {
    constexpr double eps = 1e-9;
    std::vector<Part> parts;
    volume = std::min(volume, free.total());
    if (!(volume > eps)) return parts;
    if (!closesYesterdayOnly(exchangeID)) {
        parts.push_back({kClose, volume});
        return parts;
    }
    const double yd = std::min(volume, free.yesterday);
    if (yd > eps) parts.push_back({kClose, yd});
    const double td = volume - yd;
    if (td > eps) parts.push_back({kCloseToday, td});
    return parts;
}

Touch touchPrice(std::int32_t direction, const IModuleFutureTrader::ITickEx& tick, bool useOffset,
                 int offsetPoints, double point) {
    const bool sell = direction == kDirSell;
    const double own = sell ? tick.dBid : tick.dAsk;
    const double other = sell ? tick.dAsk : tick.dBid;
    Touch t;
    if (isPricePresent(own)) {
        const double offset = useOffset ? offsetPoints * point : 0.0;
        t.ok = true;
        t.price = sell ? own - offset : own + offset;
    } else if (isPricePresent(other)) {
        t.ok = true;
        t.price = other;
        t.opposite = true;
    }
    return t;
}

std::string accountText(const std::string& id, const std::string& name) {
    char text[256];
    std::snprintf(text, sizeof text, account_text::kAccountFormat, id.c_str(), name.c_str());
    return text;
}

std::string accountText(const tagAccoutInfo& a) { return accountText(a.strAccountID, a.strAccountName); }

}  // namespace close_plan
