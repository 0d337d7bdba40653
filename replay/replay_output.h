// What a replay leaves behind: the summary printed on stdout, the CSV files (orders.csv,
// fills.csv, journal.csv; GBK like every file Helmsman writes, a header line first, cells
// quoted only when they hold a comma, a quote or a line break) and the equity-and-position
// chart (chart.svg, drawn by hand). Every text is built from the result alone, with fixed
// number formats, so the same run gives the same bytes.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "app/order_journal.h"
#include "replay/replay_runner.h"

namespace replay {

// The summary lines (UTF-8), ending in a line break.
std::string summaryText(const ReplayResult& result, const ReplayOptions& options);

// The CSV texts in UTF-8; writeOutputs converts them to GBK.
std::string ordersCsv(const ReplayResult& result);
std::string fillsCsv(const ReplayResult& result);
std::string journalCsv(const ReplayResult& result, const std::vector<JournalEntry>& entries);

// Net P&L above, each instrument's position below, on trading time: quiet spells longer than
// a minute (lunch, the night) are squeezed to a minute and days are marked.
std::string chartSvg(const ReplayResult& result, const std::string& title);

// Writes orders.csv, fills.csv, journal.csv and chart.svg into `dir` (created if missing).
// False with the reason in `error`.
bool writeOutputs(const std::filesystem::path& dir, const ReplayResult& result,
                  const std::vector<JournalEntry>& entries, const std::string& title,
                  std::string& error);

}  // namespace replay
