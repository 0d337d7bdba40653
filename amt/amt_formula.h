// Formula conditions: named values of an instrument read from the host's configuration
// table "tblprofile" (file "tblprofile", section the instrument code, key the value's name)
// and compared with a constant or with a second named value.
//
// A value is the leading number of the host's text; an empty text, or a value the host does
// not have, makes the condition false. "Equal" means that (value - compare) x 1,000,000,
// truncated toward zero, lies within -4..4: equal to six decimals, whatever binary noise
// the texts carried.
//
// Combination: entry with condition 1 disabled is true, exit with it disabled false (no exit
// by formula). AND takes 1, then 2 when enabled, then 3 when enabled; OR takes 1, else 2
// when enabled, else 3 when enabled. Condition 3 is looked at only when condition 2 is
// enabled, in both modes.
//
// CAMTFormulaReader holds the strings of its lookups, so a read allocates nothing once the
// value buffer has grown to the host's longest text. Owned by its strategy; one thread.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "amt/amt_params.h"

class CSubscibeManage;

namespace amt_formula {

inline constexpr const char* kTable = "tblprofile";

// The comparison of nType (0 >, 1 >=, 2 <, 3 <=, 4 equal, 5 not equal); other types false.
bool compare(double value, double compare, std::int32_t type);
// The leading number of a host text; false for an empty text or one that is no number.
bool parseValue(const std::string& text, double& out);

}  // namespace amt_formula

class CAMTFormulaReader {
public:
    // The host to ask and the instrument whose values are read.
    void bind(CSubscibeManage* host, const std::string& symbolCode);
    // One named value; false when the host has none or its text is no number.
    bool read(const std::string& key, double& value);
    // One condition (enabled or not: the caller decides).
    bool evaluate(const tagAMTFilter& filter);
    // The three conditions combined for entry (true without condition 1) or exit (false).
    bool combine(const std::array<tagAMTFilter, 3>& filters, bool useOr, bool entry);

private:
    CSubscibeManage* m_host = nullptr;
    std::string m_file{amt_formula::kTable};
    std::string m_section;
    std::string m_value;
};
