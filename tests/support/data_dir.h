// The recorded market data of tests and benchmarks (shared/data beside the project).
//
// Found at run time, never baked into the build: HELMSMAN_DATA_DIR when set, else the first
// folder above the working directory that holds shared/data (ctest runs inside the build
// folder, which sits in the project, which sits beside shared/). The same lookup works for
// a Windows build run under Wine.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

namespace testdata {

inline std::filesystem::path dataDir() {
    if (const char* env = std::getenv("HELMSMAN_DATA_DIR"); env && *env) return env;
    std::error_code ec;
    auto dir = std::filesystem::current_path(ec);
    for (; !ec && !dir.empty(); dir = dir.parent_path()) {
        std::error_code missing;
        const auto candidate = dir / "shared" / "data";
        if (std::filesystem::is_directory(candidate, missing)) return candidate;
        if (dir == dir.parent_path()) break;
    }
    return {};
}

// A file of the recorded data, e.g. file("ticks/IF2101_20210104.csv").
inline std::filesystem::path file(const std::string& relative) { return dataDir() / relative; }

// Why a data file is missing, for the failure message of a test that needs it.
inline std::string missing(const std::filesystem::path& p) {
    return "recorded data not found at \"" + p.string() +
           "\": put shared/ beside the project or set HELMSMAN_DATA_DIR";
}

}  // namespace testdata
