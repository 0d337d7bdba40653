// Texts of the spread exit information windows, in one place.
#pragma once

namespace spread_exit_text {

// Window titles: two-leg tools and four-leg (butterfly) tools.
inline constexpr const char* kTitleTwoLegs = "价差平仓信息";
inline constexpr const char* kTitleFourLegs = "鸢翼平仓信息";

// Column layouts of the lists of spreads still open and of round trips closed again.
inline constexpr const char* kOpenColumnsTwoLegs = "开仓A,70;开仓B,52;价差,48;";
inline constexpr const char* kClosedColumnsTwoLegs =
    "开仓A,70;开仓B,52;开价差,48;平仓A,66;平仓B,52;平价差,48;盈利,48;";
inline constexpr const char* kOpenColumnsFourLegs =
    "开仓A,70;开仓B,52;开仓C,52;开仓D,66;价差,48;";
inline constexpr const char* kClosedColumnsFourLegs =
    "开仓A,70;开仓B,52;开仓C,52;开仓D,66;开价差,48;平仓A,66;平仓B,52;平仓C,52;平仓D,66;平价差,48;"
    "盈利,48;";

// Cells.
inline constexpr const char* kMark = "(R)";           // after a marked leg's price
inline constexpr const char* kNotAvailable = "N/A";   // a spread or profit with a price missing
inline constexpr const char* kValueFormat = "%.1f";   // spreads, profits, averages, sums

// The totals rows.
inline constexpr const char* kTotals = "合计=>";
inline constexpr const char* kCount = "次数:";
inline constexpr const char* kCountFormat = "%d(%d)";  // rows counted, "(R)" marks shown
inline constexpr const char* kAverage = "平均:";
inline constexpr const char* kTotalProfit = "总盈利:";

}  // namespace spread_exit_text
