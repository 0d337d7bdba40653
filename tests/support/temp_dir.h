// A throw-away folder for one test, and whole-file reads and writes in binary. The folder's
// name carries the running test's name, the process id and a counter, so tests running side
// by side (or the same test run twice in one process) never share one.
#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>
#include <system_error>

#include "host/utf8_path.h"

#ifdef _WIN32
#include <process.h>
#else
#include <unistd.h>
#endif

// Creates an empty folder under the system temporary folder; removes it and everything in it
// when it goes out of scope.
class TempDir {
public:
    explicit TempDir(std::string_view prefix = "helmsman") {
        m_path = std::filesystem::temp_directory_path() / uniqueName(prefix);
        std::filesystem::remove_all(m_path);
        std::filesystem::create_directories(m_path);
    }
    ~TempDir() {
        std::error_code ec;  // a failed clean-up must not throw out of a destructor
        std::filesystem::remove_all(m_path, ec);
    }
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    // UTF-8, as the module keeps names in memory.
    std::string string() const { return pathUtf8(m_path); }
    const std::filesystem::path& path() const { return m_path; }
    std::filesystem::path operator/(const std::filesystem::path& child) const {
        return m_path / child;
    }

private:
    static std::string uniqueName(std::string_view prefix) {
        static std::atomic<int> serial{0};
        std::string test = "no_test";
        if (const auto* info = ::testing::UnitTest::GetInstance()->current_test_info())
            test = std::string(info->test_suite_name()) + "_" + info->name();
        // Parameterised tests have '/' in their names: keep the name one path component.
        for (char& c : test)
            if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
#ifdef _WIN32
        const long pid = _getpid();
#else
        const long pid = static_cast<long>(getpid());
#endif
        return std::string(prefix) + "_" + test + "_" + std::to_string(pid) + "_" +
               std::to_string(serial++);
    }

    std::filesystem::path m_path;
};

// The bytes of a file, exactly as stored; empty when it cannot be opened (a missing file
// reads as empty).
inline std::string readFileBytes(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf();
    return bytes.str();
}

// Replaces a file's contents with `bytes`, creating the folders on the way. A write that
// fails fails the running test: what follows would otherwise check the wrong file.
inline void writeFileBytes(const std::filesystem::path& path, std::string_view bytes) {
    if (path.has_parent_path()) {
        std::error_code ec;
        std::filesystem::create_directories(path.parent_path(), ec);
    }
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!out) ADD_FAILURE() << "could not write " << path;
}
