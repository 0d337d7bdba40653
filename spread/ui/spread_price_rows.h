// The three rows of a spread's live prices that the spread windows show: "卖盘价/量",
// "买盘价/量" and "最新价/比值", titles in one column and bold values in the next, the ask in
// red, the bid in green and the last in the theme's own colour.
#pragma once

#include <array>

class QGridLayout;
class QLabel;
class QWidget;

// Adds the rows at rows 0-2, columns 0 and 1, of `grid`; the values are right-aligned and at
// least `minWidth` pixels wide. Returns the value labels, ask, bid and last.
std::array<QLabel*, 3> addSpreadPriceRows(QGridLayout* grid, QWidget* parent, int minWidth);
