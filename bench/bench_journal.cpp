// The audit journal on disk: what one recorded order costs the thread that sends it (a
// robot's burst runs on the UI thread), what a page of the viewer costs, and what opening a
// grown journal costs at start-up.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>
#include <unistd.h>

#include "journal/sqlite_order_journal.h"

namespace {

namespace fs = std::filesystem;

// A folder of its own for one benchmark, removed afterwards.
struct BenchDir {
    fs::path path;
    explicit BenchDir(const char* name)
        : path(fs::temp_directory_path() /
               (std::string("bench_journal_") + name + "_" + std::to_string(getpid()))) {
        fs::remove_all(path);
        fs::create_directories(path);
    }
    ~BenchDir() {
        std::error_code ec;
        fs::remove_all(path, ec);
    }
};

const char* const kTools[] = {"舵手", "本地触发", "价差格", "刀锋", "条件策略"};

// An entry as a robot writes it: a tag, a sentence of reason and five figures.
JournalEntry robotEntry(std::int64_t i) {
    JournalEntry e;
    e.timeMs = 1609725600000 + i * 1500;  // ~57,600 a day
    e.tool = kTools[i % 5];
    e.window = "价差格 IF2101-IF2102";
    e.tag = "h|65537|te|" + std::to_string(i);
    e.order.strAccountID = i % 3 ? "880001" : "880002";
    e.order.strBrokerID = "9999";
    e.order.strCode = i % 2 ? "IF2101" : "cu2102";
    e.order.nDirection = 1 + static_cast<int>(i % 2);
    e.order.dVolume = 1;
    e.order.dPrice = 5228.2;
    e.order.strOrderID = std::to_string(100000 + i);
    e.result = 1;
    e.reason = "第3格：价差回到3.4，低于进场线3.6，行情过滤通过";
    e.figures = {{"格", 3}, {"参考价差", 3.4}, {"进场线", 3.6}, {"买一价", 5228.0}, {"卖一价", 5228.2}};
    return e;
}

void BM_RecordOrder(benchmark::State& state) {
    BenchDir dir("record");
    auto journal = SqliteOrderJournal::open(dir.path / "journal.db", nullptr);
    std::int64_t i = 0;
    for (auto _ : state) journal->record(robotEntry(i++));
    state.SetItemsProcessed(state.iterations());
    state.counters["failed"] = journal->failedWrites();
}
BENCHMARK(BM_RecordOrder)->Unit(benchmark::kMicrosecond);

// A journal of 100,000 orders over about two days, shared by the reading benchmarks.
struct GrownJournal {
    BenchDir dir{"grown"};
    fs::path file = dir.path / "journal.db";
    std::unique_ptr<SqliteOrderJournal> journal;
    static constexpr std::int64_t kEntries = 100000;
    GrownJournal() {
        journal = SqliteOrderJournal::open(file, nullptr);
        for (std::int64_t i = 0; i < kEntries; ++i) journal->record(robotEntry(i));
    }
    static GrownJournal& instance() {
        static GrownJournal grown;
        return grown;
    }
};

// The viewer's first page (200 rows and their figures) under a filter: 0 newest of all,
// 1 one tool, 2 an account on one day, 3 a tag text that only the oldest entry has (a scan).
void BM_QueryPage(benchmark::State& state) {
    SqliteOrderJournal& journal = *GrownJournal::instance().journal;
    JournalFilter f;
    switch (state.range(0)) {
        case 1:
            f.tool = "价差格";
            break;
        case 2:
            f.account = "880002";
            f.fromMs = 1609725600000;
            f.toMs = f.fromMs + 86400000;
            break;
        case 3:
            f.tagText = "|te|0";
            break;
    }
    std::size_t rows = 0;
    for (auto _ : state) {
        rows = journal.query(f, 200).size();
        benchmark::DoNotOptimize(rows);
    }
    state.counters["rows"] = static_cast<double>(rows);
}
BENCHMARK(BM_QueryPage)->DenseRange(0, 3)->Unit(benchmark::kMicrosecond);

// Opening the grown journal (its check included), as the desk does at start-up.
void BM_OpenGrown(benchmark::State& state) {
    GrownJournal& grown = GrownJournal::instance();
    grown.journal.reset();
    for (auto _ : state) benchmark::DoNotOptimize(SqliteOrderJournal::open(grown.file, nullptr));
    grown.journal = SqliteOrderJournal::open(grown.file, nullptr);
}
BENCHMARK(BM_OpenGrown)->Unit(benchmark::kMillisecond);

}  // namespace
