// The tests' trading day, 2021-01-04 (a Monday), in local time.
#pragma once

#include <ctime>

#include "host/clock.h"

namespace testday {

// Calendar milliseconds of 2021-01-04 hh:mm:ss local time.
inline std::int64_t localMs(int hh, int mm, int ss = 0) {
    std::tm tm{};
    tm.tm_year = 121;
    tm.tm_mday = 4;
    tm.tm_hour = hh;
    tm.tm_min = mm;
    tm.tm_sec = ss;
    tm.tm_isdst = -1;
    return fromLocalTm(tm) * 1000;
}

}  // namespace testday
