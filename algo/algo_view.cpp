#include "algo/algo_view.h"

#include <cmath>
#include <cstdio>

#include "algo/algo_strings.h"
#include "app/profile_ini.h"
#include "host/codes.h"
#include "host/number_text.h"

namespace {

std::string fmt(const char* format, int a, int b = 0, int c = 0) {
    char buf[128];
    std::snprintf(buf, sizeof buf, format, a, b, c);
    return buf;
}

std::string lots(double v) {
    return number_text::format(v, 0);
}

}  // namespace

std::vector<std::string> algoOrderRow(const CAlgoOrder& o) {
    const double pct = o.m_dTotal > 0 ? std::floor(o.filled() * 100 / o.m_dTotal) : 0;
    const std::string slice =
        o.sliceOut() ? fmt(algo_text::kSliceOut, o.m_nSliceNo,
                           static_cast<int>(o.m_dSliceFilled), static_cast<int>(o.m_dSliceVolume))
                     : std::string();
    return {std::to_string(o.m_nSerial),
            o.m_strAccountID,
            o.m_symbol.strCode,
            o.m_nDirection == kDirBuy ? "买" : "卖",
            std::string(codes::openCloseText(o.m_nOpenClose)),
            lots(o.m_dTotal),
            lots(o.filled()),
            lots(pct) + "%",
            algo_text::kPacing[o.m_nPacing < 0 || o.m_nPacing > 3 ? 0 : o.m_nPacing],
            o.stateText(),
            o.runText(),
            slice,
            o.m_strMessage};
}

std::vector<std::string> algoTemplateRow(const AlgoSetTemplate& t) {
    const tagAlgoSetting& s = t.setting;
    return {t.strName,
            s.nLotType == 1 ? fmt(algo_text::kRowLotRatio, s.nLotRatio)
                            : fmt(algo_text::kRowLotFixed, s.nLotSingle),
            fmt(algo_text::kRowPrice, s.nPriceType),
            s.nTimeType != 0 ? fmt(algo_text::kRowTimeTotal, s.nTimeTotal)
                             : fmt(algo_text::kRowTimeFixed, s.nTimeInterval)};
}
