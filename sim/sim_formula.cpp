#include "sim/sim_formula.h"

#include <cctype>
#include <charconv>

#include "sim/sim_exchange_impl.h"

namespace sim {

namespace {

bool equalsNoCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (std::tolower(static_cast<unsigned char>(a[i])) !=
            std::tolower(static_cast<unsigned char>(b[i])))
            return false;
    return true;
}

}  // namespace

bool isFormulaTable(std::string_view file) {
    return equalsNoCase(file, kFormulaTable);
}

void FormulaState::onQuote(const IModuleFutureTrader::ITickEx& q) {
    m_last = q.dLast;
    m_bid = q.dBid;
    m_ask = q.dAsk;
    m_bidVol = q.dBidVol;
    m_askVol = q.dAskVol;
    m_volume = q.dVolume;
    m_reference = isPricePresent(q.dPreSettle) ? q.dPreSettle : q.dPreClose;
    m_second = q.tQuoteTime >= 0 ? q.tQuoteTime / 1000 : (q.tQuoteTime - 999) / 1000;
    if (isPricePresent(q.dLast)) m_prices[m_count++ % kPrices] = q.dLast;
    if (m_firstVolume < 0) m_firstVolume = q.dVolume;
    Mark& mark = m_marks[static_cast<std::size_t>(m_second) % kSeconds];
    mark.second = m_second;
    mark.volume = q.dVolume;
}

double FormulaState::movingAverage(std::size_t window) const {
    const std::size_t n = std::min({window, m_count, kPrices});
    if (n == 0) return 0;
    double sum = 0;
    for (std::size_t i = 0; i < n; ++i) sum += m_prices[(m_count - 1 - i) % kPrices];
    return sum / static_cast<double>(n);
}

double FormulaState::volumeLastMinute() const {
    // The latest mark at least 60 s old; the first round's volume when there is none.
    const std::int64_t cutoff = m_second - 60;
    double base = m_firstVolume;
    std::int64_t best = -1;
    for (const Mark& mark : m_marks)
        if (mark.second >= 0 && mark.second <= cutoff && mark.second > best) {
            best = mark.second;
            base = mark.volume;
        }
    return std::max(0.0, m_volume - base);
}

bool FormulaState::value(std::string_view key, double& out) const {
    const bool hasLast = isPricePresent(m_last);
    if (equalsNoCase(key, "LAST")) {
        out = m_last;
        return hasLast;
    }
    if (equalsNoCase(key, "CHGPCT")) {
        if (!hasLast || !isPricePresent(m_reference)) return false;
        out = (m_last - m_reference) / m_reference * 100.0;
        return true;
    }
    static constexpr std::pair<std::string_view, std::size_t> kAverages[] = {
        {"MA5", 5}, {"MA10", 10}, {"MA20", 20}, {"MA60", 60}};
    for (const auto& [name, window] : kAverages)
        if (equalsNoCase(key, name)) {
            if (m_count == 0) return false;
            out = movingAverage(window);
            return true;
        }
    if (equalsNoCase(key, "VOL1M")) {
        if (m_firstVolume < 0) return false;
        out = volumeLastMinute();
        return true;
    }
    if (equalsNoCase(key, "SPREAD")) {
        if (!isPricePresent(m_bid) || !isPricePresent(m_ask)) return false;
        out = m_ask - m_bid;
        return true;
    }
    if (equalsNoCase(key, "BIDVOL") || equalsNoCase(key, "ASKVOL")) {
        const bool bid = equalsNoCase(key, "BIDVOL");
        if (!isPricePresent(bid ? m_bid : m_ask)) return false;
        out = bid ? m_bidVol : m_askVol;
        return true;
    }
    return false;
}

void FormulaBook::onQuote(std::size_t market, const IModuleFutureTrader::ITickEx& q) {
    if (market >= m_states.size()) m_states.resize(market + 1);  // once per new contract
    m_states[market].onQuote(q);
}

bool FormulaBook::format(double v, std::string& out) {
    char buf[64];
    // Averages and percentages to ten decimals are plenty; shorter values stay short.
    auto r = std::to_chars(buf, buf + sizeof buf, v, std::chars_format::general, 12);
    if (r.ec != std::errc()) return false;
    out.assign(buf, r.ptr);
    return true;
}

}  // namespace sim

bool SimExchange::Impl::formulaValue(const std::string& file, const std::string& section,
                                     const std::string& key, std::string& value) const {
    if (!sim::isFormulaTable(file)) return false;
    std::size_t mi = npos;
    for (std::size_t i = 0; i < markets.size() && mi == npos; ++i)
        if (markets[i].c.symbol.strCode == section) mi = i;
    for (std::size_t i = 0; i < markets.size() && mi == npos; ++i)
        if (sim::equalsNoCase(markets[i].c.symbol.strCode, section)) mi = i;
    const sim::FormulaState* state = formulas.state(mi);
    double v = 0;
    return state && state->value(key, v) && sim::FormulaBook::format(v, value);
}
