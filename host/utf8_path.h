// Paths and the UTF-8 strings the module keeps in memory.
//
// Every name the module holds (the host's root folder and user name once converted, file
// names such as "本地触发单.csv") is UTF-8. A std::filesystem::path built from a narrow string
// reads it in the system's ANSI code page on Windows, so "舵手" would become another name
// there; these helpers go through char8_t, which both systems read as UTF-8, and open files
// by wide name on Windows.
#pragma once

#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>

std::filesystem::path utf8Path(std::string_view utf8);
std::string pathUtf8(const std::filesystem::path& p);
// std::fopen by path: _wfopen on Windows. Use binary modes: text mode would turn "\n" into
// "\r\n" on Windows and the files would differ between the two systems.
std::FILE* openFile(const std::filesystem::path& p, const char* mode);

// The host hands its folder and user name over in its ANSI code page (a Chinese Windows:
// code page 936). Converts such a string to UTF-8 once, where it enters the module; on other
// systems the host's strings are UTF-8 already and pass unchanged.
std::string hostTextToUtf8(std::string_view hostText);
