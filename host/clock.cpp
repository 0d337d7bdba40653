#include "host/clock.h"

#include <chrono>

std::tm toLocalTm(std::int64_t t) {
    std::time_t tt = static_cast<std::time_t>(t);
    std::tm out{};
#ifdef _WIN32
    localtime_s(&out, &tt);
#else
    localtime_r(&tt, &out);
#endif
    return out;
}

std::int64_t fromLocalTm(std::tm tm) {
    tm.tm_isdst = -1;
    return static_cast<std::int64_t>(std::mktime(&tm));
}

std::string formatDateTime(std::int64_t t) {
    std::tm tm = toLocalTm(t);
    char buf[32];
    std::strftime(buf, sizeof buf, "%Y-%m-%d %H:%M:%S", &tm);
    return buf;
}

std::int64_t endOfDay(std::int64_t t) {
    std::tm tm = toLocalTm(t);
    tm.tm_hour = 23;
    tm.tm_min = 59;
    tm.tm_sec = 59;
    return fromLocalTm(tm);
}

std::tm IClock::localNow() const { return toLocalTm(now()); }

std::int64_t SystemClock::nowMs() const {
    using namespace std::chrono;
    return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count() +
           m_offsetMs.load();
}

std::uint64_t SystemClock::tickCount() const {
    using namespace std::chrono;
    return static_cast<std::uint64_t>(
        duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
}

SystemClock& SystemClock::instance() {
    static SystemClock clock;
    return clock;
}
