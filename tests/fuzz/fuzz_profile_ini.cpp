// Profile files come from users and other programs: any bytes load and save back unchanged,
// and a write reads back exactly as written (line breaks and NUL become blanks, text that is
// not valid UTF-8 is stored as the codec stores it) without adding more than its own key
// line and section line or changing any other key.
#include <fuzzer/FuzzedDataProvider.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>

#include "app/profile_ini.h"
#include "host/gbk_codec.h"

namespace fs = std::filesystem;

namespace {

fs::path scratchFile() {
    static const fs::path path =
        (fs::is_directory("/dev/shm") ? fs::path("/dev/shm") : fs::temp_directory_path()) /
        ("fuzz_profile_ini_" + std::to_string(getpid()) + ".ini");
    return path;
}

CProfileIni loadBytes(const std::string& bytes) {
    {
        std::ofstream out(scratchFile(), std::ios::binary | std::ios::trunc);
        out << bytes;
    }
    return CProfileIni(scratchFile());
}

std::string fold(std::string s) {
    for (char& c : s)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return s;
}

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\v' || c == '\f';
}

// A name or value as the write stores it: breaks and NUL blanked, through the codec.
std::string stored(std::string s, bool trimmed) {
    for (char& c : s)
        if (c == '\r' || c == '\n' || c == '\0') c = ' ';
    s = gbk::toUtf8(gbk::fromUtf8(s));
    if (trimmed) {
        while (!s.empty() && isBlank(s.back())) s.pop_back();
        while (!s.empty() && isBlank(s.front())) s.erase(0, 1);
    }
    return s;
}

constexpr std::size_t kWhole = 1 << 24;

using Snapshot = std::map<std::pair<std::string, std::string>, std::string>;

Snapshot snapshot(const CProfileIni& ini) {
    Snapshot values;
    for (const auto& section : ini.sectionNames())
        for (const auto& key : ini.keys(section))
            values[{fold(section), fold(key)}] = ini.getString(section, key, "", kWhole);
    return values;
}

std::size_t lineCount(const std::string& bytes) {
    std::size_t n = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i)
        n += bytes[i] == '\n' ||
             (bytes[i] == '\r' && (i + 1 == bytes.size() || bytes[i + 1] != '\n'));
    return n;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider in(data, size);
    const std::string section = in.ConsumeRandomLengthString(24);
    const std::string key = in.ConsumeRandomLengthString(24);
    const std::string value = in.ConsumeRandomLengthString(300);
    const std::string file = in.ConsumeRemainingBytesAsString();

    CProfileIni ini = loadBytes(file);
    if (ini.bytes() != file) std::abort();
    const Snapshot before = snapshot(ini);
    const std::size_t sectionsBefore = ini.sectionNames().size();

    if (!ini.writeString(section, key, value)) {
        if (ini.bytes() != file) std::abort();
        return 0;
    }
    const std::string written = ini.bytes();
    const CProfileIni back = loadBytes(written);
    if (back.bytes() != written) std::abort();

    const std::string sectionName = stored(section, true), keyName = stored(key, true);
    if (back.getString(sectionName, keyName, "<none>", kWhole) != stored(value, false))
        std::abort();
    // At most a key line and a section line more, with a line end for a last line that had
    // none.
    const std::size_t added = lineCount(written) - lineCount(file);
    if (lineCount(written) < lineCount(file) || added > 3) std::abort();
    const std::size_t sectionsAfter = back.sectionNames().size();
    if (sectionsAfter != sectionsBefore && sectionsAfter != sectionsBefore + 1) std::abort();

    Snapshot after = snapshot(back);
    after.erase({fold(sectionName), fold(keyName)});
    Snapshot expected = before;
    expected.erase({fold(sectionName), fold(keyName)});
    if (after.size() < expected.size()) std::abort();
    for (const auto& [name, v] : expected) {
        auto it = after.find(name);
        if (it == after.end() || it->second != v) std::abort();
    }
    return 0;
}
