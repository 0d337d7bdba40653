// The spread exit lists over any leg formats, weights, prices and marks: a format that is
// not one floating-point conversion is never handed to printf (the sanitizers would see
// it), every row has one cell per column, a leg cell is its formatted price with "(R)"
// after it exactly when the leg is marked, and a totals row is there exactly when some
// spread or profit was computed.
#include <fuzzer/FuzzedDataProvider.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "app/column_layout.h"
#include "spread/spread_exit.h"

namespace {

void check(bool ok) {
    if (!ok) std::abort();
}

CSpreadExitInfo::Prices prices(FuzzedDataProvider& in) {
    CSpreadExitInfo::Prices p{};
    for (double& v : p)
        v = in.ConsumeBool() ? in.ConsumeFloatingPointInRange<double>(-10, 10000)
                             : in.ConsumeFloatingPoint<double>();
    return p;
}

CSpreadExitInfo::Marks marks(FuzzedDataProvider& in) {
    CSpreadExitInfo::Marks m{};
    for (bool& b : m) b = in.ConsumeBool();
    return m;
}

void checkList(const SpreadExitList& list, bool anyValue) {
    const std::size_t columns = parseColumnLayout(list.layout).size();
    for (const auto& row : list.rows) check(row.size() == columns);
    check(list.totals.empty() != anyValue);
    if (anyValue) check(list.totals.size() == columns && list.totals[0] == "合计=>");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider in(data, size);
    CSpreadExitInfo info(in.ConsumeBool() ? CSpreadExitInfo::Kind::TwoLegs
                                          : CSpreadExitInfo::Kind::FourLegs);
    const int legs = info.legCount();
    for (int leg = 0; leg < legs; ++leg)
        info.setLeg(leg, in.ConsumeRandomLengthString(16), in.ConsumeIntegralInRange(-9, 9));
    info.setDirection(in.ConsumeIntegralInRange(0, 1));
    const int openCount = in.ConsumeIntegralInRange(0, 6);
    for (int i = 0; i < openCount; ++i) info.addOpen({prices(in), marks(in)});
    const int closedCount = in.ConsumeIntegralInRange(0, 6);
    for (int i = 0; i < closedCount; ++i)
        info.addClosed({prices(in), marks(in), prices(in), marks(in)});

    const SpreadExitList open = info.openList();
    bool anySpread = false;
    for (std::size_t r = 0; r < open.rows.size(); ++r) {
        const auto& entry = info.openEntries()[r];
        for (int leg = 0; leg < legs; ++leg) {
            const auto k = static_cast<std::size_t>(leg);
            check(open.rows[r][k] ==
                  info.formatPrice(leg, entry.price[k]) + (entry.mark[k] ? "(R)" : ""));
        }
        anySpread = anySpread || info.spread(entry.price).has_value();
    }
    checkList(open, anySpread);

    const SpreadExitList closed = info.closedList();
    bool anyProfit = false;
    for (const auto& entry : info.closedEntries())
        anyProfit = anyProfit || info.profit(entry).has_value();
    checkList(closed, anyProfit);
    return 0;
}
