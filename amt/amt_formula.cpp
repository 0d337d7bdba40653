#include "amt/amt_formula.h"

#include <cmath>

#include "host/number_text.h"
#include "host/subscibe_manage.h"

namespace amt_formula {

bool compare(double value, double compareTo, std::int32_t type) {
    switch (type) {
        case 0:
            return value > compareTo;
        case 1:
            return value >= compareTo;
        case 2:
            return value < compareTo;
        case 3:
            return value <= compareTo;
        case 4:
        case 5: {
            // Truncated millionths of the difference; NaN and huge differences are unequal.
            const double t = std::trunc((value - compareTo) * 1e6);
            const bool equal = t >= -4 && t <= 4;
            return type == 4 ? equal : !equal;
        }
        default:
            return false;
    }
}

bool parseValue(const std::string& text, double& out) {
    if (text.empty()) return false;
    const auto v = number_text::parseLeading(text);
    if (!v) return false;
    out = *v;
    return true;
}

}  // namespace amt_formula

void CAMTFormulaReader::bind(CSubscibeManage* host, const std::string& symbolCode) {
    m_host = host;
    m_section = symbolCode;
}

bool CAMTFormulaReader::read(const std::string& key, double& value) {
    if (!m_host || key.empty()) return false;
    m_value.clear();
    if (!m_host->GetConfigFileProperty(m_file, m_section, key, m_value)) return false;
    return amt_formula::parseValue(m_value, value);
}

bool CAMTFormulaReader::evaluate(const tagAMTFilter& f) {
    double value = 0;
    if (!read(f.strKey, value)) return false;
    double against = f.dValue;
    if (f.bUseKey && !read(f.strCompareKey, against)) return false;
    return amt_formula::compare(value, against, f.nType);
}

bool CAMTFormulaReader::combine(const std::array<tagAMTFilter, 3>& f, bool useOr, bool entry) {
    if (!f[0].bEnabled) return entry;
    if (useOr) {
        if (evaluate(f[0])) return true;
        if (!f[1].bEnabled) return false;
        if (evaluate(f[1])) return true;
        return f[2].bEnabled && evaluate(f[2]);
    }
    if (!evaluate(f[0])) return false;
    if (!f[1].bEnabled) return true;
    if (!evaluate(f[1])) return false;
    return !f[2].bEnabled || evaluate(f[2]);
}
