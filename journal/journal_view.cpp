#include "journal/journal_view.h"

#include <charconv>
#include <cmath>

#include "host/clock.h"
#include "host/codes.h"
#include "host/number_text.h"
#include "journal/journal_strings.h"

namespace journal_view {

namespace {

std::string orNone(const std::string& s) { return s.empty() ? journal_text::kNone : s; }

// Whole seconds, rounding towards the past also before 1970.
std::int64_t secondsOf(std::int64_t ms) { return ms >= 0 ? ms / 1000 : -((999 - ms) / 1000); }

}  // namespace

std::vector<std::string> rowCells(const JournalEntry& e) {
    const tagBrokerOrder& o = e.order;
    std::string result = e.result ? journal_text::kResultTaken : journal_text::kResultRefused;
    if (!o.strStatusMsg.empty()) result += "：" + o.strStatusMsg;
    std::vector<std::string> cells(kColumnCount);
    cells[kColTime] = formatDateTime(secondsOf(e.timeMs));
    cells[kColTool] = orNone(e.tool);
    cells[kColWindow] = orNone(e.window);
    cells[kColAccount] = orNone(o.strAccountID);
    cells[kColCode] = orNone(o.strCode);
    cells[kColDirection] = std::string(codes::directionText(o.nDirection));
    cells[kColOpenClose] = std::string(codes::openCloseText(o.nOpenClose));
    cells[kColVolume] = number_text::format(o.dVolume);
    cells[kColPrice] = number_text::format(o.dPrice);
    cells[kColResult] = result;
    cells[kColOrderId] = orNone(o.strOrderID);
    cells[kColTag] = orNone(e.tag);
    cells[kColReason] = orNone(e.reason);
    return cells;
}

std::string figureText(double value) {
    if (std::isnan(value)) return journal_text::kNone;
    char buf[32];
    const auto r = std::to_chars(buf, buf + sizeof buf, value);
    return std::string(buf, r.ptr);
}

}  // namespace journal_view
