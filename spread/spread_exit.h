// CSpreadExitInfo: what the spread exit information windows show — the round trips of a
// spread robot, as rows of text.
//
// The owning robot hands over plain data (per leg a price format and a weight, its
// direction, the entries still open and those closed again); this class works out each
// side's spread, each round trip's profit and the totals, and formats every cell. It never
// trades and keeps nothing beyond what it was given.
//
//   CSpreadExitInfo info(CSpreadExitInfo::Kind::TwoLegs);
//   info.setLeg(0, "%.1f", 1);
//   info.setLeg(1, "%.1f", 1);
//   info.setDirection(1);
//   info.addOpen({{3512.0, 3498.0}, {false, true}});
//   info.addClosed({{3510.0, 3500.0}, {}, {3521.0, 3508.5}, {}});
//   SpreadExitList open = info.openList();      // rows, then the totals row if any
//
// Spread of one side, with leg weights wA..wD:
//   two legs   wA*A - wB*B
//   four legs  wA*A - wB*B - wC*C + wD*D
// computed only when every leg price of that side is present (finite and above 0). The
// profit of a round trip is open spread - exit spread for direction 0 and exit spread -
// open spread for direction 1, in price units (not money).
//
// A value type; safe to use from any thread, one thread at a time.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

// One list of a spread exit window: its column layout, its rows and the totals row (empty
// when nothing could be counted).
struct SpreadExitList {
    std::string layout;
    std::vector<std::vector<std::string>> rows;
    std::vector<std::string> totals;
};

class CSpreadExitInfo {
public:
    enum class Kind { TwoLegs, FourLegs };
    static constexpr int kMaxLegs = 4;

    using Prices = std::array<double, kMaxLegs>;  // legs A, B, C, D; unused legs ignored
    using Marks = std::array<bool, kMaxLegs>;

    // An entry still open: each leg's open price and whether the leg is marked "(R)".
    struct OpenEntry {
        Prices price{};
        Marks mark{};
    };
    // A round trip: each leg's open and exit price, with the marks of both sides.
    struct ClosedEntry {
        Prices openPrice{};
        Marks openMark{};
        Prices exitPrice{};
        Marks exitMark{};
    };

    explicit CSpreadExitInfo(Kind kind = Kind::TwoLegs);

    Kind kind() const { return m_kind; }
    int legCount() const { return m_kind == Kind::TwoLegs ? 2 : 4; }
    // "价差平仓信息" or "鸢翼平仓信息".
    const char* title() const;

    // A leg's price format (a printf format taking one double, e.g. "%.2f") and weight.
    // A format that is not exactly one floating-point conversion prints the price plainly.
    void setLeg(int leg, std::string format, int weight);
    // 0 or 1: which way a widening spread counts as profit (1: widening gains).
    void setDirection(int direction) { m_direction = direction; }
    int direction() const { return m_direction; }

    void addOpen(const OpenEntry& entry) { m_open.push_back(entry); }
    void addClosed(const ClosedEntry& entry) { m_closed.push_back(entry); }
    void clear();
    const std::vector<OpenEntry>& openEntries() const { return m_open; }
    const std::vector<ClosedEntry>& closedEntries() const { return m_closed; }

    // The spread of one side, or nullopt when a leg price is missing.
    std::optional<double> spread(const Prices& prices) const;
    // The profit of a round trip, or nullopt when any of its prices is missing.
    std::optional<double> profit(const ClosedEntry& entry) const;

    // The lists as the windows show them.
    SpreadExitList openList() const;
    SpreadExitList closedList() const;

    // A leg's price as its format prints it.
    std::string formatPrice(int leg, double price) const;

private:
    struct Leg {
        std::string format;
        bool formatUsable = false;
        int weight = 1;
    };

    // Appends one side's leg cells (price and mark) to `row`; returns the marks shown.
    int appendLegs(std::vector<std::string>& row, const Prices& prices, const Marks& marks) const;

    Kind m_kind;
    std::array<Leg, kMaxLegs> m_legs{};
    int m_direction = 0;
    std::vector<OpenEntry> m_open;
    std::vector<ClosedEntry> m_closed;
};

// True when `format` holds exactly one floating-point conversion (flags, a width and a
// precision of at most two digits allowed; no '*', no length modifier) besides any "%%".
bool isPriceFormat(const std::string& format);
