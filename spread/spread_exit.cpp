#include "spread/spread_exit.h"

#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "host/number_text.h"
#include "spread/spread_exit_strings.h"

namespace tx = spread_exit_text;

namespace {

bool isPresent(double price) {
    return std::isfinite(price) && price > 0;
}

// A spread, profit, average or sum: one decimal, and never "-0.0".
std::string formatValue(double v) {
    char buf[64];
    std::snprintf(buf, sizeof buf, tx::kValueFormat, v);
    std::string text(buf);
    if (text == "-0.0") text = "0.0";
    return text;
}

std::string formatCount(int rows, int marks) {
    char buf[32];
    std::snprintf(buf, sizeof buf, tx::kCountFormat, rows, marks);
    return buf;
}

}  // namespace

bool isPriceFormat(const std::string& format) {
    int conversions = 0;
    for (std::size_t i = 0; i < format.size(); ++i) {
        if (format[i] != '%') continue;
        if (++i >= format.size()) return false;
        if (format[i] == '%') continue;
        while (i < format.size() && std::strchr("-+ #0", format[i]) && format[i] != '\0') ++i;
        int digits = 0;
        while (i < format.size() && std::isdigit(static_cast<unsigned char>(format[i]))) {
            ++i;
            ++digits;
        }
        if (digits > 2) return false;
        if (i < format.size() && format[i] == '.') {
            ++i;
            digits = 0;
            while (i < format.size() && std::isdigit(static_cast<unsigned char>(format[i]))) {
                ++i;
                ++digits;
            }
            if (digits > 2) return false;
        }
        if (i >= format.size() || format[i] == '\0' || !std::strchr("fFeEgG", format[i]))
            return false;
        ++conversions;
    }
    return conversions == 1;
}

CSpreadExitInfo::CSpreadExitInfo(Kind kind) : m_kind(kind) {}

const char* CSpreadExitInfo::title() const {
    return m_kind == Kind::TwoLegs ? tx::kTitleTwoLegs : tx::kTitleFourLegs;
}

void CSpreadExitInfo::setLeg(int leg, std::string format, int weight) {
    if (leg < 0 || leg >= kMaxLegs) return;
    Leg& l = m_legs[static_cast<std::size_t>(leg)];
    l.formatUsable = isPriceFormat(format);
    l.format = std::move(format);
    l.weight = weight;
}

void CSpreadExitInfo::clear() {
    m_open.clear();
    m_closed.clear();
}

std::string CSpreadExitInfo::formatPrice(int leg, double price) const {
    const Leg& l = m_legs[static_cast<std::size_t>(leg)];
    if (!l.formatUsable || !std::isfinite(price)) return number_text::format(price);
    // A price the format would write out at length (a huge value with "%f") falls back too.
    char buf[128];
    const int n = std::snprintf(buf, sizeof buf, l.format.c_str(), price);
    if (n < 0 || n >= static_cast<int>(sizeof buf)) return number_text::format(price);
    return buf;
}

std::optional<double> CSpreadExitInfo::spread(const Prices& p) const {
    for (int i = 0; i < legCount(); ++i)
        if (!isPresent(p[static_cast<std::size_t>(i)])) return std::nullopt;
    auto term = [&](int i) {
        return static_cast<double>(m_legs[static_cast<std::size_t>(i)].weight) *
               p[static_cast<std::size_t>(i)];
    };
    // Four legs: B and C count against A, D with it.
    if (m_kind == Kind::TwoLegs) return term(0) - term(1);
    return term(0) - term(1) - term(2) + term(3);
}

std::optional<double> CSpreadExitInfo::profit(const ClosedEntry& entry) const {
    const auto open = spread(entry.openPrice);
    const auto exit = spread(entry.exitPrice);
    if (!open || !exit) return std::nullopt;
    return m_direction == 1 ? *exit - *open : *open - *exit;
}

int CSpreadExitInfo::appendLegs(std::vector<std::string>& row, const Prices& prices,
                                const Marks& marks) const {
    int shown = 0;
    for (int i = 0; i < legCount(); ++i) {
        const auto k = static_cast<std::size_t>(i);
        std::string cell = formatPrice(i, prices[k]);
        if (marks[k]) {
            cell += tx::kMark;
            ++shown;
        }
        row.push_back(std::move(cell));
    }
    return shown;
}

SpreadExitList CSpreadExitInfo::openList() const {
    SpreadExitList list;
    list.layout = m_kind == Kind::TwoLegs ? tx::kOpenColumnsTwoLegs : tx::kOpenColumnsFourLegs;
    const std::size_t columns = static_cast<std::size_t>(legCount()) + 1;
    int counted = 0;
    int marks = 0;
    double sum = 0;
    for (const OpenEntry& e : m_open) {
        std::vector<std::string> row;
        row.reserve(columns);
        marks += appendLegs(row, e.price, e.mark);
        const auto s = spread(e.price);
        row.push_back(s ? formatValue(*s) : tx::kNotAvailable);
        if (s) {
            ++counted;
            sum += *s;
        }
        list.rows.push_back(std::move(row));
    }
    if (counted == 0) return list;
    const std::string count = formatCount(counted, marks);
    const std::string average = formatValue(sum / counted);
    if (columns >= 5) {
        // Label and value each in a column of their own, the average under the spread.
        list.totals = {tx::kTotals, tx::kCount, count, tx::kAverage, average};
        list.totals.resize(columns);
    } else {
        // Three columns hold the three items with each label before its value.
        list.totals = {tx::kTotals, std::string(tx::kCount) + count,
                       std::string(tx::kAverage) + average};
    }
    return list;
}

SpreadExitList CSpreadExitInfo::closedList() const {
    SpreadExitList list;
    list.layout = m_kind == Kind::TwoLegs ? tx::kClosedColumnsTwoLegs : tx::kClosedColumnsFourLegs;
    const std::size_t columns = 2 * static_cast<std::size_t>(legCount()) + 3;
    int counted = 0;
    int marks = 0;
    double sum = 0;
    for (const ClosedEntry& e : m_closed) {
        std::vector<std::string> row;
        row.reserve(columns);
        marks += appendLegs(row, e.openPrice, e.openMark);
        const auto open = spread(e.openPrice);
        row.push_back(open ? formatValue(*open) : tx::kNotAvailable);
        marks += appendLegs(row, e.exitPrice, e.exitMark);
        const auto exit = spread(e.exitPrice);
        row.push_back(exit ? formatValue(*exit) : tx::kNotAvailable);
        const auto p = profit(e);
        row.push_back(p ? formatValue(*p) : tx::kNotAvailable);
        if (p) {
            ++counted;
            sum += *p;
        }
        list.rows.push_back(std::move(row));
    }
    if (counted == 0) return list;
    // The count and the total from the left; the average profit under the profit column.
    list.totals = {tx::kTotals, tx::kCount, formatCount(counted, marks), tx::kTotalProfit,
                   formatValue(sum)};
    list.totals.resize(columns);
    list.totals.back() = formatValue(sum / counted);
    return list;
}
