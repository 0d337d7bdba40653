// What a settings save costs: it locks, re-reads, writes a temporary, flushes it to disk and
// renames it, so the disk's flush dominates. Loading is what every tool window pays on open.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "app/profile_ini.h"
#include "app/settings.h"

namespace fs = std::filesystem;

namespace {

// A user folder with a Profile.ini of a few hundred lines, like one that has collected the
// sections of several tools; removed afterwards.
struct UserFolder {
    UserFolder() {
        fs::create_directories(folder);
        std::ofstream out(file, std::ios::binary);
        for (int s = 0; s < 20; ++s) {
            out << "[Tool" << s << "]\r\n";
            for (int k = 0; k < 20; ++k) out << "nKey" << k << "=" << k * 7 << "\r\n";
        }
        saveSettings(file, HelmsmanSettings{});
    }
    ~UserFolder() { fs::remove_all(folder); }
    fs::path folder = fs::temp_directory_path() / "helmsman_bench_profile";
    fs::path file = folder / "Profile.ini";
};

void BM_SaveSettings(benchmark::State& state) {
    UserFolder user;
    HelmsmanSettings s;
    for (auto _ : state) {
        s.dLastVolume += 1;
        benchmark::DoNotOptimize(saveSettings(user.file, s));
    }
}
BENCHMARK(BM_SaveSettings)->Unit(benchmark::kMillisecond);

void BM_LoadSettings(benchmark::State& state) {
    UserFolder user;
    for (auto _ : state) benchmark::DoNotOptimize(loadSettings(user.file));
}
BENCHMARK(BM_LoadSettings)->Unit(benchmark::kMicrosecond);

}  // namespace
