// The seam between the replay runner and the tools it can drive: one small adapter per tool,
// registered by name, that builds the tool's core object on the manager the runner set up,
// configures it from the tool's own Profile.ini section, and runs the tool's timer pass.
//
// An adapter is one file in replay/tools/ that registers itself at start-up:
//
//   const bool kRegistered = replay::registerTool("LocalTrigger", &makeLocalTrigger);
//
// Quotes, order changes and fills reach the tool the way they reach it in the desk: the
// runner forwards the exchange's events to the manager, which delivers them to the tool's
// window handle. The adapter only has to drive the timer.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "app/profile_ini.h"
#include "host/records.h"

class CHelmsmanManage;

namespace replay {

// What an adapter is given to build its tool.
struct ToolContext {
    CHelmsmanManage& manager;      // initialised on the simulated exchange, virtual clock
    const CProfileIni& settings;   // the --settings file: the tool's Profile.ini section
    std::string account;           // the account the tool trades
    std::vector<tagSymbol> symbols;  // the replayed instruments, in the order given
    std::int64_t startMs = 0;      // calendar ms of the first tick
};

// What a tool holds at the end by its own books: signed lots per instrument code (long
// positive), to be set against the exchange's position, and one line per open item for the
// summary.
struct ToolHoldings {
    std::map<std::string, double> positions;
    std::vector<std::string> lines;
};

// A tool being replayed. Built and used on the runner's thread only.
class IReplayTool {
public:
    virtual ~IReplayTool() = default;
    // The period of the tool's timer in ms (0: it has none).
    virtual int timerPeriodMs() const = 0;
    // One timer pass at the clock's current time.
    virtual void onTimer() = 0;
    // What it holds by its own books (nothing for a tool that keeps none).
    virtual ToolHoldings holdings() const { return {}; }
};

// Builds the tool, or returns null with the reason in `error` (a bad settings line...).
using ToolFactory = std::unique_ptr<IReplayTool> (*)(ToolContext& context, std::string& error);

// Registers a factory under a name (the tool's Profile.ini section name); returns true so it
// can initialise a namespace-scope constant.
bool registerTool(const char* name, ToolFactory factory);
// The factory of a name, compared case-insensitively; null when none is registered.
ToolFactory findTool(const std::string& name);
// Registered names, sorted.
std::vector<std::string> toolNames();

}  // namespace replay
