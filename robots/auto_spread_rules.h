// The auto spread's decision rules, free of orders and windows: which of its four price lines
// the live spread meets, how many spread units the next round trades, and whether settings
// may start the robot.
//
// The spread is u1 x A - u2 x B [- u3 x C] (spread/manual_spread_calc.h): its ask is what
// buying it costs at the touch, its bid what selling it fetches. One spread unit is
// nSpreadLots1 lots of A against nSpreadLots2 of B (and nSpreadLots3 of C). The robot holds
// a signed count of units: above 0 long (A bought, B and C sold), below 0 short.
//
// The four lines, each with its own switch:
//   long entry   buy the spread when its ask <= dLongEntryPrice      (held >= 0)
//   long exit    sell it back when its bid >= dLongExitPrice          (held > 0)
//   short entry  sell the spread when its bid >= dShortEntryPrice    (held <= 0)
//   short exit   buy it back when its ask <= dShortExitPrice          (held < 0)
// Exits come before entries; flat, the long entry is looked at before the short one. A round
// trades nEveryLots units, fewer when nMaxLots (entries) or the units held (exits) leave less.
//
// Steps (bStepTrade): entries come in steps of nGridLots units, each nGridOffset ticks of
// leg A beyond the last: with n units held the entry line is the step's, dLongEntryPrice -
// (n / nGridLots) x step (short: +), and a round fills at most the rest of the step. Step
// exits (bStepExit) take the newest step off at its own line, dLongExitPrice - k x step (short:
// +) for step k = (n - 1) / nGridLots, so every step earns the distance between the two lines;
// without them every unit leaves at the exit line.
//
// A calendar roll (bChange, two legs) trades the same lines, but an entry closes A and opens
// B (an exit opens A and closes B).
#pragma once

#include <cstdint>

#include "spread/manual_spread_calc.h"
#include "spread/spread_templates.h"

enum class SpreadAction : std::uint8_t { None, LongEntry, LongExit, ShortEntry, ShortExit };

// +1 when the round buys the spread (buys A), -1 when it sells it.
int spreadSide(SpreadAction a);
bool isEntry(SpreadAction a);
// "多头开仓", "多头平仓", "空头开仓", "空头平仓", "" for None.
const char* spreadActionText(SpreadAction a);

// What the next round does.
struct AutoSpreadPlan {
    SpreadAction action = SpreadAction::None;
    std::int32_t units = 0;  // spread units to trade
    double level = 0;        // the line it met
    double spread = 0;       // the spread price that met it (ask to buy, bid to sell)
    bool send() const { return action != SpreadAction::None && units > 0; }
};

// The line of the next entry or exit on one side with |held| units held; `step` is the
// price distance of one step (nGridOffset ticks of A).
double autoSpreadEntryLevel(const tagAutoSpreadTemplate& s, bool isLong, std::int32_t held,
                            double step);
double autoSpreadExitLevel(const tagAutoSpreadTemplate& s, bool isLong, std::int32_t held,
                           double step);

// The round to start now, or none. `held` is signed. A side of the spread without volume
// (a leg without that price) meets no line.
AutoSpreadPlan planAutoSpread(const tagAutoSpreadTemplate& s, std::int32_t held,
                              const SpreadPrices& prices, double step);

// Whether the spread still meets `level` for the action (used to withdraw a resting A).
bool autoSpreadLineHolds(SpreadAction action, double level, const SpreadPrices& prices);

// The message refusing a start with these settings, or nullptr. Accounts and quotes are
// checked by the robot.
const char* autoSpreadSettingsError(const tagAutoSpreadTemplate& s);
