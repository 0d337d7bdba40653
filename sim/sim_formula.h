// Formula values of the simulated exchange: live numbers per contract that the host's
// configuration table "tblprofile" answers (GetConfigFileProperty with file "tblprofile",
// section the contract code, key the value's name, any letter case), so a trader's formula
// conditions have something to filter on. Computed from every quote round of a contract,
// random walk or replay alike:
//
//   LAST      last price
//   CHGPCT    the day's change in percent: (last - previous settlement) / previous
//             settlement x 100 (the previous close when there is no settlement)
//   MA5, MA10, MA20, MA60
//             moving averages of the last price over the last 5, 10, 20, 60 quote rounds
//             (over the rounds there are while fewer have been seen)
//   VOL1M     lots traded in the last minute: the day's volume now less the day's volume at
//             the last round at least 60 s before the latest round (since the first round
//             when the contract has not been watched that long)
//   SPREAD    ask - bid, when both are present
//   BIDVOL, ASKVOL   the volumes at the touch
//
// A value the contract does not have yet (no last price, no book) is not answered. Each
// round costs a few stores into fixed rings: nothing is allocated per tick.
//
// Plain state owned by the exchange's Impl, under its lock.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/records.h"

namespace sim {

inline constexpr const char* kFormulaTable = "tblprofile";

// The formula values of one contract.
class FormulaState {
public:
    static constexpr std::size_t kPrices = 64;   // ring of last prices (>= the longest window)
    static constexpr std::size_t kSeconds = 64;  // ring of per-second volume marks

    void onQuote(const IModuleFutureTrader::ITickEx& q);
    // The value of `key` (any letter case); false when unknown or not available yet.
    bool value(std::string_view key, double& out) const;
    // The moving average of the last `window` prices (fewer while fewer were seen).
    double movingAverage(std::size_t window) const;
    double volumeLastMinute() const;

private:
    std::array<double, kPrices> m_prices{};
    std::size_t m_count = 0;  // prices pushed in all
    struct Mark {
        std::int64_t second = -1;
        double volume = 0;  // the day's volume at the last round of that second
    };
    std::array<Mark, kSeconds> m_marks{};
    double m_firstVolume = -1;
    // The latest round's numbers.
    double m_last = 0, m_bid = 0, m_ask = 0, m_bidVol = 0, m_askVol = 0;
    double m_volume = 0, m_reference = 0;
    std::int64_t m_second = 0;
};

// The formula values of every contract, by market index.
class FormulaBook {
public:
    void onQuote(std::size_t market, const IModuleFutureTrader::ITickEx& q);
    const FormulaState* state(std::size_t market) const {
        return market < m_states.size() ? &m_states[market] : nullptr;
    }
    // The value's text ("" untouched when false).
    static bool format(double v, std::string& out);

private:
    std::vector<FormulaState> m_states;
};

// True when `file` names the formula table (any letter case).
bool isFormulaTable(std::string_view file);

}  // namespace sim
