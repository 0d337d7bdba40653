// ReplayRunner: runs one tool over recorded ticks through the simulated exchange on virtual
// time, headless. It owns the whole little world the tool lives in: a manual clock, the
// exchange replaying the files, a manager initialised on them (journal, clock and a silent
// prompter set), the event pump that plays the host, and the tool's adapter.
//
// Time: the clock jumps from one tick time to the next. Between two ticks the tool's timer
// fires at its own period, counted from the first tick (a pass at 13:00:03.6 runs even when
// no tick falls then). A timer pass due at the very time of a tick runs after the tick, so it
// sees that quote. After every tick round and every timer pass the exchange's events are
// delivered before time moves on, as a host's message loop would.
//
// What it measures, from the fills of the account: orders, fills, round trips (a position
// that goes back to flat, or flips), gross and net P&L (net after the exchange's
// commission), maximum drawdown of net P&L marked at every tick, and the largest position.
//
// One thread. Deterministic: the same files, tool and settings give the same result.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "app/order_journal.h"
#include "host/records.h"
#include "replay/replay_tool.h"
#include "sim/tick_file.h"

namespace replay {

struct ReplayOptions {
    std::vector<std::string> tickFiles;  // one instrument and trading day each
    std::string tool;                    // a registered tool name
    std::string settingsFile;            // the tool's Profile.ini section
    std::string account = "880001";      // a demo account of the exchange
};

// One sample of the curves: net P&L and each instrument's signed position (long positive).
struct CurvePoint {
    std::int64_t timeMs = 0;
    double netPnl = 0;
    std::vector<double> positions;  // in the order of ReplayResult::symbols
};

struct ReplayResult {
    std::vector<tagSymbol> symbols;           // replayed instruments, first appearance order
    std::map<std::string, int> priceDecimals;  // by code, how its prices are written
    std::size_t ticks = 0;                     // ticks replayed
    std::size_t skippedLines = 0;              // malformed lines left out of the files
    std::vector<std::string> fileNotes;        // one per file that had skipped lines
    std::int64_t firstMs = 0, lastMs = 0;      // calendar ms of the first and last tick

    std::vector<tagBrokerOrder> orders;    // every order of the account, in sending order
    std::vector<tagBargainOrder> fills;    // every fill of the account, in order
    std::size_t roundTrips = 0;
    double grossPnl = 0;
    double commission = 0;
    double netPnl = 0;
    double maxDrawdown = 0;  // largest fall of net P&L from an earlier high (>= 0)
    double maxPosition = 0;  // largest absolute position of any instrument, lots
    std::vector<CurvePoint> curve;
    ToolHoldings holdings;  // the tool's own books at the end
};

class ReplayRunner {
public:
    // `journal` receives every order the tool records (not owned; null: none kept).
    ReplayRunner(ReplayOptions options, IOrderJournal* journal);
    ~ReplayRunner();
    ReplayRunner(const ReplayRunner&) = delete;
    ReplayRunner& operator=(const ReplayRunner&) = delete;

    // Reads the files and the settings and builds the tool. False with the reason in `error`
    // (a file that cannot be read, an unknown contract, no usable tick, an unknown tool...).
    bool prepare(std::string& error);
    // Plays every tick. `progress(done, total)` is called every few thousand ticks.
    ReplayResult run(const std::function<void(std::size_t, std::size_t)>& progress = {});

private:
    struct World;
    std::unique_ptr<World> m_world;
};

}  // namespace replay
