#include "app/auto_kp.h"

#include <cmath>
#include <vector>

namespace {

// The quantity on the side an order of this direction would close, as a whole number.
double oppositeQuantity(CSubscibeManage& host, const tagBrokerOrder& order, const tagSymbol& sym) {
    if (order.nDirection != kDirBuy && order.nDirection != kDirSell) return 0;
    tagOpenedPosition position;
    if (!host.GetPosition(position, order.strAccountID, order.strBrokerID, sym)) return 0;
    const double q = order.nDirection == kDirBuy ? position.dShort : position.dLong;
    // A host handing back NaN or infinity has nothing usable; treat it like a failed read.
    return std::isfinite(q) ? std::trunc(q) : 0;
}

}  // namespace

std::int32_t chooseOpenClose(CSubscibeManage& host, const tagBrokerOrder& order,
                             const HelmsmanSettings& s) {
    if (!s.bAutoKP) return order.nOpenClose;

    const tagSymbol sym{static_cast<std::uint16_t>(order.nExchangeID), order.strCode};
    const double q = oppositeQuantity(host, order, sym);
    if (q <= s.nMinAutoKPPos) return kOpen;
    if (q != 1) return kClose;

    // One opposite lot: if a working order of ours in the same direction is already closing
    // it, closing again would be refused for want of a position, so this one opens instead.
    std::vector<tagBrokerOrder> working;
    if (!host.GetOpenOrders(working, order.strAccountID, order.strBrokerID, sym)) working.clear();
    for (const auto& w : working)
        if (w.nDirection == order.nDirection &&
            (w.nOpenClose == kClose || w.nOpenClose == kCloseToday))
            return kOpen;
    return kClose;
}

std::int32_t applyAutoOpenClose(CSubscibeManage& host, tagBrokerOrder& order,
                                const HelmsmanSettings& s) {
    order.nOpenClose = chooseOpenClose(host, order, s);
    return order.nOpenClose;
}

std::int32_t robotCloseFlag(CSubscibeManage* host, const tagBrokerOrder& order) {
    if (order.nExchangeID != 0 || !host) return kClose;
    tagOpenedPosition pos;
    if (host->GetPosition(pos, order.strAccountID, order.strBrokerID,
                          {static_cast<std::uint16_t>(order.nExchangeID), order.strCode}) != 1)
        return kClose;
    const double today = order.nDirection == kDirSell ? pos.dLongToday : pos.dShortToday;
    return today >= order.dVolume ? kCloseToday : kClose;
}
