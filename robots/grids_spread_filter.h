// CGridFilter: the grid spread's rolling volume-weighted price filter on leg A.
//
// It keeps the last `length` quotes of A, each with the volume traded since the quote before
// (the rise of the day's cumulative volume, never below 0), the last price and their product,
// and running sums of volume and turnover. After each quote, with volume in the window, the
// volume-weighted price W = turnover / volume and the band d decide the state:
//   last > W + d   rising  ("涨")   — steps that must not buy into a rise wait
//   last <= W - d  falling ("跌")   — steps that must not sell into a fall wait
//   otherwise      flat    ("平")
// The first quote only sets the baseline of the cumulative volume; with no volume in the
// window the state is flat.
//
// The window is allocated by reset(); feeding a quote never allocates. The sums are rebuilt
// from the window once per full turn, so a whole session's rounding never builds up.
//
// A value owned by the robot; UI thread only.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

enum class GridTrend : std::int8_t { Falling = -1, Flat = 0, Rising = 1 };

// "涨", "跌" or "平".
const char* trendText(GridTrend t);

class CGridFilter {
public:
    // A new, empty window of `length` quotes (at least 1) and band `band` (price units).
    void reset(int length, double band);
    // One quote of A: its cumulative volume and last price. Returns the new state.
    GridTrend feed(double cumulativeVolume, double last);

    GridTrend state() const { return m_state; }
    // The volume-weighted price of the window, or 0 when it holds no volume.
    double vwap() const { return m_sumVolume > 0 ? m_sumTurnover / m_sumVolume : 0; }
    std::size_t size() const { return m_count; }
    double band() const { return m_band; }

private:
    struct Slot {
        double volume = 0;
        double price = 0;
        double turnover = 0;
    };
    void resum();

    std::vector<Slot> m_ring;
    std::size_t m_head = 0;  // where the next quote goes
    std::size_t m_count = 0;
    std::size_t m_sinceResum = 0;
    double m_sumVolume = 0;
    double m_sumTurnover = 0;
    double m_band = 0;
    double m_lastCumulative = 0;
    bool m_seen = false;
    GridTrend m_state = GridTrend::Flat;
};
