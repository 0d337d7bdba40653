// Recorded tick files: any bytes parse without a crash, the counts add up, and every tick that
// is kept is a real day and time with prices that make sense.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "sim/tick_file.h"

namespace {

bool realDay(std::int32_t date) {
    const int y = date / 10000, m = date / 100 % 100, d = date % 100;
    static constexpr int kDays[] = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (y < 1990 || y > 2100 || m < 1 || m > 12 || d < 1 || d > kDays[m - 1]) return false;
    const bool leap = (y % 4 == 0 && y % 100 != 0) || y % 400 == 0;
    return !(m == 2 && d == 29 && !leap);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    std::vector<sim::TickRecord> out;
    sim::TickParseReport rep;
    sim::parseTickText(text, out, rep);

    if (rep.linesRead != rep.ticks + rep.skipped) std::abort();
    if (out.size() != rep.ticks) std::abort();
    const std::size_t errors = rep.skipped < sim::TickParseReport::kMaxErrors
                                   ? rep.skipped
                                   : sim::TickParseReport::kMaxErrors;
    if (rep.firstErrors.size() != errors) std::abort();
    if ((rep.skipped == 0) != sim::skippedSummary(rep).empty()) std::abort();

    for (const auto& t : out) {
        if (!realDay(t.date)) std::abort();
        if (t.timeMs < 0 || t.timeMs >= 86'400'000) std::abort();
        for (double v :
             {t.last, t.bid, t.bidVol, t.ask, t.askVol, t.volume, t.turnover, t.openInterest,
              t.open, t.high, t.low, t.upperLimit, t.lowerLimit, t.preClose, t.preSettle, t.settle})
            if (!(v >= 0 && v <= 1e15)) std::abort();  // also rejects NaN
        if (t.bid > 0 && t.ask > 0 && t.bid > t.ask) std::abort();
    }
    return 0;
}
