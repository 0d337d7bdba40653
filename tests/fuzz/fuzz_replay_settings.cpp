// The replay command's settings file: any bytes as the [LocalTrigger] section's file are
// either refused with a reason or replayed over a short day, never a crash; a run plays every
// tick and trades only what the file asked for.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "replay/replay_runner.h"

namespace {

const std::filesystem::path& folder() {
    static const std::filesystem::path dir = [] {
        auto d = std::filesystem::temp_directory_path() /
                 ("helmsman_fuzz_replay_" + std::to_string(::getpid()));
        std::filesystem::create_directories(d);
        std::ofstream(d / "IF2101_20210104.csv", std::ios::binary)
            << "date,time,last,bid,bid_vol,ask,ask_vol,volume,turnover,open_interest,open,high,"
               "low,upper_limit,lower_limit,pre_close,pre_settle,settle\n"
               "20210104,10:00:00.000,5000.0,4999.8,5,5000.0,5,0,0,0,0,0,0,0,0,0,0,0\n"
               "20210104,10:00:01.000,4990.0,4989.8,5,4990.0,5,0,0,0,0,0,0,0,0,0,0,0\n"
               "20210104,10:00:02.000,5010.0,5009.8,5,5010.2,5,0,0,0,0,0,0,0,0,0,0,0\n";
        return d;
    }();
    return dir;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto settings = folder() / "settings.ini";
    std::ofstream(settings, std::ios::binary | std::ios::trunc)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    replay::ReplayOptions o;
    o.tickFiles = {(folder() / "IF2101_20210104.csv").string()};
    o.tool = "LocalTrigger";
    o.settingsFile = settings.string();
    replay::ReplayRunner runner(o, nullptr);
    std::string error;
    if (!runner.prepare(error)) {
        if (error.empty()) std::abort();
        return 0;
    }
    const auto r = runner.run();
    if (r.ticks != 3 || r.fills.size() > r.orders.size()) std::abort();
    return 0;
}
