// helmsman-replay: runs one tool over recorded ticks through the simulated exchange on
// virtual time and writes what it did. See README.md ("Replaying a past day").
#include <CLI/CLI.hpp>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <iostream>

#include "replay/recording_journal.h"
#include "replay/replay_output.h"
#include "replay/replay_runner.h"
#include "replay/replay_tool.h"
#ifdef HELMSMAN_REPLAY_JOURNAL_DB
#include "journal/sqlite_order_journal.h"
#endif

int main(int argc, char** argv) {
    CLI::App app{"Replays recorded ticks through the simulated exchange with one tool deciding."};
    replay::ReplayOptions options;
    std::string out = "replay-out";
    std::string tools;
    for (const auto& n : replay::toolNames()) tools += (tools.empty() ? "" : ", ") + n;
    app.add_option("--ticks", options.tickFiles, "recorded tick files (CSV), merged in time order")
        ->required()
        ->check(CLI::ExistingFile);
    app.add_option("--tool", options.tool, "the tool to run: " + tools)->required();
    app.add_option("--settings", options.settingsFile,
                   "ini file with the tool's Profile.ini section")
        ->required()
        ->check(CLI::ExistingFile);
    app.add_option("--account", options.account, "the account the tool trades")
        ->capture_default_str();
    app.add_option("--out", out,
                   "folder for orders.csv, fills.csv, journal.csv, journal.db, chart.svg")
        ->capture_default_str();
    CLI11_PARSE(app, argc, argv);

    std::error_code ec;
    std::filesystem::create_directories(out, ec);
    // The journal the tool records its orders in, written out as journal.csv; a journal file
    // in `out` is the further journal handed to it, started afresh so it holds this run only.
    IOrderJournal* further = nullptr;
#ifdef HELMSMAN_REPLAY_JOURNAL_DB
    const std::filesystem::path db = std::filesystem::path(out) / "journal.db";
    for (const char* suffix : {"", "-wal", "-shm"})
        std::filesystem::remove(db.string() + suffix, ec);
    std::string dbError;
    auto sqlite = SqliteOrderJournal::open(db, &dbError);
    if (!sqlite) {
        std::cerr << "helmsman-replay: " << dbError << "\n";
        return 1;
    }
    further = sqlite.get();
#endif
    replay::RecordingJournal journal(further);
    replay::ReplayRunner runner(options, &journal);
    std::string error;
    if (!runner.prepare(error)) {
        std::cerr << "helmsman-replay: " << error << "\n";
        return 1;
    }

    // A progress line for runs that take longer than a second.
    const auto started = std::chrono::steady_clock::now();
    bool shown = false;
    auto progress = [&](std::size_t done, std::size_t total) {
        if (!shown && std::chrono::steady_clock::now() - started < std::chrono::seconds(1)) return;
        shown = true;
        std::fprintf(stderr, "\rreplaying %zu / %zu ticks (%zu%%)", done, total,
                     total ? done * 100 / total : 100);
        if (done == total) std::fputc('\n', stderr);
    };
    const replay::ReplayResult result = runner.run(progress);

    for (const auto& note : result.fileNotes) std::cerr << "helmsman-replay: " << note << "\n";
    std::string title = options.tool;
    for (const auto& s : result.symbols) title += " " + s.strCode;
    if (!replay::writeOutputs(out, result, journal.entries(), title, error)) {
        std::cerr << "helmsman-replay: " << error << "\n";
        return 1;
    }
    std::cout << replay::summaryText(result, options);
    return 0;
}
