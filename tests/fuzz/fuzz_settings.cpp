// The module's settings load from whatever Profile.ini holds; saving them and loading again
// gives the same settings, and the save itself never fails on a writable file.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "app/settings.h"

namespace fs = std::filesystem;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fs::path file =
        (fs::is_directory("/dev/shm") ? fs::path("/dev/shm") : fs::temp_directory_path()) /
        ("fuzz_settings_" + std::to_string(getpid())) / "Profile.ini";
    fs::create_directories(file.parent_path());
    {
        std::ofstream out(file, std::ios::binary | std::ios::trunc);
        out.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    }
    const HelmsmanSettings loaded = loadSettings(file);
    if (!saveSettings(file, loaded)) std::abort();
    if (!(loadSettings(file) == loaded)) std::abort();
    return 0;
}
