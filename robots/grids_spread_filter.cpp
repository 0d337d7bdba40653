#include "robots/grids_spread_filter.h"

#include <algorithm>

#include "robots/grids_spread_strings.h"

const char* trendText(GridTrend t) {
    switch (t) {
        case GridTrend::Rising:
            return grid_text::kRising;
        case GridTrend::Falling:
            return grid_text::kFalling;
        case GridTrend::Flat:
            break;
    }
    return grid_text::kFlat;
}

void CGridFilter::reset(int length, double band) {
    m_ring.assign(static_cast<std::size_t>(std::max(1, length)), Slot{});
    m_head = m_count = m_sinceResum = 0;
    m_sumVolume = m_sumTurnover = 0;
    m_band = band;
    m_lastCumulative = 0;
    m_seen = false;
    m_state = GridTrend::Flat;
}

GridTrend CGridFilter::feed(double cumulativeVolume, double last) {
    if (m_ring.empty()) reset(1, m_band);
    if (!m_seen) {
        m_seen = true;
        m_lastCumulative = cumulativeVolume;
        m_state = GridTrend::Flat;
        return m_state;
    }
    const double volume = std::max(0.0, cumulativeVolume - m_lastCumulative);
    m_lastCumulative = cumulativeVolume;

    Slot& slot = m_ring[m_head];
    if (m_count == m_ring.size()) {
        m_sumVolume -= slot.volume;
        m_sumTurnover -= slot.turnover;
    } else {
        ++m_count;
    }
    slot = {volume, last, volume * last};
    m_sumVolume += slot.volume;
    m_sumTurnover += slot.turnover;
    if (++m_head == m_ring.size()) m_head = 0;
    if (++m_sinceResum >= m_ring.size()) resum();

    m_state = GridTrend::Flat;
    if (m_sumVolume > 0) {
        const double w = m_sumTurnover / m_sumVolume;
        if (last > w + m_band)
            m_state = GridTrend::Rising;
        else if (last <= w - m_band)
            m_state = GridTrend::Falling;
    }
    return m_state;
}

void CGridFilter::resum() {
    m_sinceResum = 0;
    m_sumVolume = m_sumTurnover = 0;
    for (std::size_t i = 0; i < m_count; ++i) {
        m_sumVolume += m_ring[i].volume;
        m_sumTurnover += m_ring[i].turnover;
    }
}
