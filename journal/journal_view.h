// What the journal viewer shows of an entry, as text: the list's cells (in the order of
// journal_text::kColumns) and a figure's value. Free functions, no Qt, any thread.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "app/order_journal.h"

namespace journal_view {

enum Column {
    kColTime, kColTool, kColAccount, kColCode, kColDirection, kColOpenClose, kColVolume,
    kColPrice, kColResult, kColReason, kColTag, kColOrderId, kColWindow, kColumnCount
};

std::vector<std::string> rowCells(const JournalEntry& e);
// A figure as recorded: the shortest text that reads back as the same double ("-" for NaN).
std::string figureText(double value);

}  // namespace journal_view
