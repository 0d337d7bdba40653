// What the algo centre and the settings templates show, as texts: one list row per order
// (columns algo_text::kCentreColumns) and one template manager row per named setting.
#pragma once

#include <string>
#include <vector>

#include "algo/algo_file.h"
#include "algo/algo_order.h"

std::vector<std::string> algoOrderRow(const CAlgoOrder& o);
std::vector<std::string> algoTemplateRow(const AlgoSetTemplate& t);
