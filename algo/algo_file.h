// The algo order file (algoOrders.dat in the user directory) and the algo settings on disk:
// the defaults in Profile.ini section "AlgoDefault" and the named settings of algoset.dat.
//
// algoOrders.dat, all integers little-endian, strings as archive strings (spread/archive.h):
//   magic "QXAO_1.0", int32 count, then per order:
//   int32 number, run condition, engine state, pacing; strings account, broker; uint16
//   exchange; strings code, symbol text; int32 minimum move; float64 price unit; int32
//   direction, open/close, hedge, auto open/close floor; float64 order price, total, filled by
//   closed slices, base price, start time (ms since 1970); int32 slice out (0/1), slice
//   number; string slice identifier; float64 slice volume, slice filled, slice price; string
//   last message; then the sixteen settings as int32 in the order of the "AlgoDefault" keys.
// A file cut short, a foreign magic or a record that breaks a rule (unknown state, a filled
// quantity beyond the total, a repeated number...) ends the list at the last good record;
// loading never fails hard. Written whole through app/file_replace.
//
// Free functions; no state.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "algo/algo_order.h"
#include "app/file_replace.h"

class CArchiveReader;
class CProfileIni;
class CArchiveWriter;

namespace algo_file {
inline constexpr const char* kMagic = "QXAO_1.0";

std::string compose(const std::vector<const CAlgoOrder*>& orders);
// The orders a file holds; `complete` says whether every counted record was good.
std::vector<CAlgoOrder> parse(std::string_view bytes, bool* complete = nullptr);
}  // namespace algo_file

// ---- Settings ---------------------------------------------------------------------------
inline constexpr const char* kAlgoDefaultSection = "AlgoDefault";
// The defaults new orders take (absent keys give the block's defaults).
tagAlgoSetting loadAlgoDefault(const std::filesystem::path& profile);
// Every key of the section, written with "%d".
void writeAlgoDefault(CProfileIni& ini, const tagAlgoSetting& s);
FileWriteResult saveAlgoDefault(const std::filesystem::path& profile, const tagAlgoSetting& s);
// Keeps each value in the range its control allows (the price offset -10..10, percentages
// 0..100, sizes and times at least their minimum).
tagAlgoSetting clampAlgoSetting(tagAlgoSetting s);

// A named settings record of algoset.dat: the name, then the sixteen values as int32.
struct AlgoSetTemplate {
    std::string strName;
    tagAlgoSetting setting;
};
void writeTemplate(CArchiveWriter& out, const AlgoSetTemplate& t);
void readTemplate(CArchiveReader& in, AlgoSetTemplate& t);
void writeAlgoSetting(CArchiveWriter& out, const tagAlgoSetting& s);
void readAlgoSetting(CArchiveReader& in, tagAlgoSetting& s);
