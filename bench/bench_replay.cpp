// Replay speed: the three recorded IF2101 days through the simulated exchange (matching every
// tick) with the local trigger centre deciding on its 600 ms timer, ~one pass per tick. The
// centre holds 20 waiting triggers that never cross and 3 that fire and trade. Reported as
// ticks per second for one, two and three days: equal rates mean the cost grows linearly.
// Reading and parsing the files is outside the timing (a run's prepare step).
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "host/gbk_codec.h"
#include "replay/recording_journal.h"
#include "replay/replay_runner.h"
#include "support/data_dir.h"

namespace {

std::filesystem::path dataDir() { return testdata::dataDir(); }

std::string settingsFile() {
    static const std::string path = [] {
        auto p = std::filesystem::temp_directory_path() / "helmsman_bench_replay.ini";
        std::string ini = "[LocalTrigger]\n";
        int n = 1;
        for (const char* line : {"IF2101,买,吊买,5200,0,1", "IF2101,卖,吊卖,5350,0,1,平仓",
                                 "IF2101,卖,吊卖,5430,0,1"})
            ini += "Trigger" + std::to_string(n++) + "=" + line + "\n";
        for (int i = 0; i < 20; ++i)  // far from the market: evaluated on every pass, never fire
            ini += "Trigger" + std::to_string(n++) + "=IF2101,买,吊买," + std::to_string(4000 + i) +
                   ",0,1\n";
        std::ofstream(p, std::ios::binary) << gbk::fromUtf8(ini);
        return p.string();
    }();
    return path;
}

// Times run() only: reading and parsing the files (prepare) and tearing down are outside.
void timeRuns(benchmark::State& state, const replay::ReplayOptions& o) {
    std::size_t ticks = 0;
    for (auto _ : state) {
        state.PauseTiming();
        replay::RecordingJournal journal;
        auto runner = std::make_unique<replay::ReplayRunner>(o, &journal);
        std::string error;
        if (!runner->prepare(error)) {
            state.SkipWithError(error.c_str());
            return;
        }
        state.ResumeTiming();
        const auto r = runner->run();
        ticks = r.ticks;
        benchmark::DoNotOptimize(r.netPnl);
        state.PauseTiming();
        runner.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(ticks * state.iterations()));
    state.counters["ticks"] = static_cast<double>(ticks);
}

void BM_ReplayDays(benchmark::State& state) {
    const char* days[] = {"IF2101_20210104.csv", "IF2101_20210105.csv", "IF2101_20210106.csv"};
    replay::ReplayOptions o;
    for (int i = 0; i < state.range(0); ++i)
        o.tickFiles.push_back((dataDir() / "ticks" / days[i]).string());
    if (!std::filesystem::exists(o.tickFiles.back())) {
        state.SkipWithError("no shared data");
        return;
    }
    o.tool = "LocalTrigger";
    o.settingsFile = settingsFile();
    timeRuns(state, o);
}
BENCHMARK(BM_ReplayDays)->DenseRange(1, 3)->Unit(benchmark::kMillisecond);

// The grid spread robot over two instruments of one day (MA805 against SR805, 60,267 ticks,
// night session first), deciding on every quote of either leg and on its 500 ms timer, with
// the example's four levels.
void BM_ReplayGrid(benchmark::State& state) {
    replay::ReplayOptions o;
    for (const char* f : {"MA805_20180201.csv", "SR805_20180201.csv"})
        o.tickFiles.push_back((dataDir() / "ticks" / f).string());
    if (!std::filesystem::exists(o.tickFiles.back())) {
        state.SkipWithError("no shared data");
        return;
    }
    const auto ini = std::filesystem::temp_directory_path() / "helmsman_bench_grid.ini";
    std::ofstream(ini, std::ios::binary)
        << "[GridsSpread]\nszSymbolCode1=MA805\nszSymbolCode2=SR805\nnSpreadLots1=1\n"
           "nSpreadLots2=1\nbLong=0\nnEveryLots=1\nnMaxLots=4\nnGridLots=1\ndFirstGrid=-2990\n"
           "dGridInterval=5\ndWinGrid=5\nnMonitorEdge=10\nnMonitorThreshold=1\nnFixupOffset=1\n"
           "nFilterLength=300\nnFilterOffset=4\n";
    o.tool = "GridsSpread";
    o.settingsFile = ini.string();
    timeRuns(state, o);
}
BENCHMARK(BM_ReplayGrid)->Unit(benchmark::kMillisecond);

}  // namespace
