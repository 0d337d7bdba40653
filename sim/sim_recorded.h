// The recorded market data's side of the simulated exchange: the contracts of the shared tick
// files that the demo catalogue does not list, learned when a file of theirs is replayed, and
// the calendar time of each recorded tick.
//
// A tick file holds one trading day. Its `date` column is the trading day on every row, and a
// product with a night session starts that day the evening before (21:00-23:30, or past
// midnight on the exchanges that trade late), so the file is in trading-day order: the night
// rows first, then the day session. Calendar time therefore follows from the trading day and
// the time of day together: a row from 18:00 on belongs to the evening of the previous
// weekday, a row before 06:00 to the small hours after that evening, every other row to the
// trading day itself. Ordering ticks by that time keeps a file's own order and merges several
// files (several days, several instruments) into one timeline.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/trading_session.h"
#include "sim/sim_types.h"
#include "sim/tick_file.h"

namespace sim {

// A contract of the recorded data that the catalogue does not list ("MA805", ...): its real
// exchange, tick, multiplier and a previous settlement near the day's first price (the files
// carry no limits, so the band is set around it). False for any other code.
bool recordedContract(const std::string& code, SimContract& out);

// True for a time of day that belongs to a night session (18:00 and later, before 06:00).
bool isNightTime(std::int32_t timeMs);

// Calendar milliseconds (local time) of each tick, its trading day taken from its own date
// column, or from `tradingDate` (YYYYMMDD) for every row when that is not 0.
std::vector<std::int64_t> tradingDayTimes(const std::vector<TickRecord>& ticks,
                                          std::int32_t tradingDate = 0);

// The trading day (YYYYMMDD) a clock at calendar seconds `now` replays a file on: today, or
// the next weekday in the evening when the file has night rows to play tonight.
std::int32_t replayTradingDate(std::int64_t now, bool fileHasNight);

// Where a contract is in its day at a time of day: its night session when it trades one,
// else its exchange's day sessions (a night that is over reads as before the day's open).
session::SessionState contractSession(const SimContract& contract, std::int32_t msOfDay);

}  // namespace sim
