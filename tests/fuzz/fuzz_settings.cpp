// The module's settings load from whatever Profile.ini holds; the save itself never fails on
// a writable file, and after one save, saving and loading again changes nothing (an unreadable
// GBK byte in a text is saved as "?": the first save may change a text, no later one does).
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
    const HelmsmanSettings saved = loadSettings(file);
    if (!saveSettings(file, saved)) std::abort();
    if (!(loadSettings(file) == saved)) std::abort();
    return 0;
}
