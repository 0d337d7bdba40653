#include "host/trading_session.h"

#include <gtest/gtest.h>

namespace {

using session::hms;
using session::SessionState;

constexpr std::int32_t sec(int h, int m, int s) {
    return (h * 60 + m) * 60 + s;
}

// Every edge of the day on both kinds of exchange: the first millisecond of a window belongs
// to it, its end does not.
TEST(TradingSession, ExchangeDayAtEveryEdge) {
    const struct {
        int exchange;
        std::int32_t ms;
        SessionState want;
    } cases[] = {
        {0, hms(8, 55) - 1, SessionState::NotOpen},
        {0, hms(8, 55), SessionState::PreOpen},
        {0, hms(9, 0), SessionState::Trading},
        {1, hms(10, 15) - 1, SessionState::Trading},
        {1, hms(10, 15), SessionState::Break},  // mid-morning break
        {1, hms(10, 30), SessionState::Trading},
        {2, hms(11, 30), SessionState::Break},  // lunch
        {2, hms(13, 0), SessionState::Break},   // the financial exchange is back, not these
        {2, hms(13, 30), SessionState::Trading},
        {2, hms(15, 0), SessionState::Closed},
        {0, hms(21, 30), SessionState::Closed},  // no night session
        {3, hms(9, 10), SessionState::PreOpen},
        {3, hms(9, 15), SessionState::Trading},
        {3, hms(10, 20), SessionState::Trading},  // no mid-morning break
        {3, hms(11, 30), SessionState::Break},
        {3, hms(13, 0), SessionState::Trading},
        {3, hms(15, 15) - 1, SessionState::Trading},
        {3, hms(15, 15), SessionState::Closed},
        {7, hms(3, 0), SessionState::Trading},  // an id the table does not know
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << "exchange " << c.exchange << " ms " << c.ms);
        EXPECT_EQ(session::sessionState(c.exchange, c.ms), c.want);
        EXPECT_EQ(session::isTrading(c.exchange, c.ms), c.want == SessionState::Trading);
    }
}

// The local trigger table: open strictly inside each period, so its first three seconds
// and its last four are closed.
TEST(TradingSession, LocalTriggerPeriodsKeepTheirMargins) {
    using session::kLocalClosed;
    using session::kLocalPreOpen;
    using session::kLocalTrading;
    const struct {
        int exchange;
        std::int32_t secOfDay;
        int want;
    } cases[] = {
        {0, sec(8, 55, 3), kLocalClosed},  // start is exclusive
        {0, sec(8, 55, 4), kLocalPreOpen},
        {0, sec(8, 58, 56), kLocalClosed},  // end is exclusive
        {1, sec(9, 0, 3), kLocalClosed},
        {1, sec(9, 0, 4), kLocalTrading},
        {1, sec(10, 14, 55), kLocalTrading},
        {1, sec(10, 14, 56), kLocalClosed},
        {2, sec(10, 20, 0), kLocalClosed},  // the break
        {2, sec(10, 30, 4), kLocalTrading},
        {2, sec(11, 29, 56), kLocalClosed},
        {0, sec(13, 30, 4), kLocalTrading},
        {0, sec(14, 59, 55), kLocalTrading},
        {0, sec(14, 59, 56), kLocalClosed},
        {3, sec(9, 10, 4), kLocalPreOpen},
        {3, sec(9, 14, 56), kLocalClosed},
        {3, sec(9, 15, 3), kLocalClosed},
        {3, sec(9, 15, 4), kLocalTrading},
        {3, sec(10, 20, 0), kLocalTrading},
        {3, sec(11, 29, 56), kLocalClosed},
        {3, sec(13, 0, 4), kLocalTrading},
        {3, sec(15, 14, 55), kLocalTrading},
        {3, sec(15, 14, 56), kLocalClosed},
        {4, sec(2, 0, 0), kLocalTrading},  // any other id: always
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << "exchange " << c.exchange << " sec " << c.secOfDay);
        EXPECT_EQ(session::localTriggerPeriod(c.exchange, c.secOfDay), c.want);
    }
}

// The local table lies inside the exchange's own sessions: whatever it calls trading, the
// exchange trades too, and likewise for the pre-open.
TEST(TradingSession, LocalPeriodsLieInsideTheExchangeDay) {
    for (int ex = 0; ex < 4; ++ex) {
        for (const auto& p : session::localTriggerPeriods(ex)) {
            for (std::int32_t s : {p.startSec + 1, p.endSec - 1}) {
                const SessionState want = p.state == session::kLocalTrading
                                              ? SessionState::Trading
                                              : SessionState::PreOpen;
                EXPECT_EQ(session::sessionState(ex, s * 1000), want) << ex << " " << s;
            }
        }
    }
}

}  // namespace
