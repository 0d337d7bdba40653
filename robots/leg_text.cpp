// The status texts of a leg's states.
#include <cstdio>

#include "robots/leg.h"
#include "robots/robot_strings.h"

namespace t = robot_text;

namespace {

std::string printf2(const char* format, double a, double b) {
    char text[128];
    std::snprintf(text, sizeof text, format, a, b);
    return text;
}

std::string fixed(double v, int decimals) {
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", decimals, v);
    return text;
}

std::string printfText(const char* format, const std::string& a, const std::string& b) {
    char text[160];
    std::snprintf(text, sizeof text, format, a.c_str(), b.c_str());
    return text;
}

}  // namespace

std::string CLeg::statusText(double bestBid, double bestAsk, int decimals,
                             LegWording wording) const {
    const bool buy = m_direction == kDirBuy;
    const double quote = buy ? bestBid : bestAsk;
    const bool hasQuote = quote >= kPriceEpsilon;
    const double distance = buy ? m_price - quote : quote - m_price;
    const bool resting = wording == LegWording::Resting;

    if (m_state == kLegIdle) return t::kInitial;
    if (!single()) {
        switch (m_state) {
            case 1:
                return t::kGridBSending;
            case 2:
                if (!hasQuote) return buy ? t::kGridBQueuedDownLimit : t::kGridBQueuedUpLimit;
                return printfText(t::kGridBQueued, fixed(m_price, decimals < 0 ? 0 : decimals),
                                  fixed(distance, decimals < 0 ? 0 : decimals));
            case 3:
                return t::kGridBCancelling;
            case 4:
                return t::kGridBFilled;
            case 5:
                return t::kGridASending;
            case 6:
                return t::kGridAQueued;
            default:
                return t::kUnknownState;
        }
    }

    const char* numbers = nullptr;  // the queued text with numbers
    const char* fmtNumbers = nullptr;
    const char* noQuote = nullptr;
    switch (m_state) {
        case 1:
            return resting ? t::kRestOpenSending : t::kOpenSending;
        case 3:
            return resting ? t::kRestOpenCancelling : t::kOpenCancelling;
        case 4:
            return resting ? t::kRestOpenFilled : t::kOpenFilled;
        case 5:
            return resting ? t::kRestCloseSending : t::kCloseSending;
        case 7:
            return resting ? t::kRestCloseCancelling : t::kCloseCancelling;
        case 8:
            return resting ? t::kRestCloseFilled : t::kCloseFilled;
        case kLegParked:
            return t::kErrorOrTimeUp;
        case 2:
            numbers = buy ? t::kOpenBuyQueued : t::kOpenSellQueued;
            fmtNumbers = buy ? t::kOpenBuyQueuedFmt : t::kOpenSellQueuedFmt;
            noQuote = buy ? t::kOpenBuyQueuedNoQuote : t::kOpenSellQueuedNoQuote;
            break;
        case 6:
            numbers = buy ? t::kCloseBuyQueued : t::kCloseSellQueued;
            fmtNumbers = buy ? t::kCloseBuyQueuedFmt : t::kCloseSellQueuedFmt;
            noQuote = buy ? t::kCloseBuyQueuedNoQuote : t::kCloseSellQueuedNoQuote;
            // The scalper says plainly that a selling close has no ask to sell to.
            if (resting && !buy) noQuote = t::kRestCloseSellQueuedNoAsk;
            break;
        default:
            return t::kUnknownState;
    }
    if (!hasQuote) return noQuote;
    if (decimals < 0) return printf2(numbers, m_price, distance);
    return printfText(fmtNumbers, fixed(m_price, decimals), fixed(distance, decimals));
}
