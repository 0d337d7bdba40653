// The journal file lies in the user directory, where anything may have put anything: opening
// any bytes as the journal never crashes and always ends with a journal that works (the file
// set aside when it cannot serve), which records an entry and reads it back, newest first.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "journal/sqlite_order_journal.h"

namespace {

namespace fs = std::filesystem;

const fs::path& folder() {
    static const fs::path dir =
        fs::temp_directory_path() / ("fuzz_journal_" + std::to_string(getpid()));
    return dir;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::error_code ec;
    fs::remove_all(folder(), ec);
    fs::create_directories(folder(), ec);
    const fs::path file = folder() / "journal.db";
    {
        std::ofstream out(file, std::ios::binary);
        out.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    }

    std::string message;
    auto journal = SqliteOrderJournal::open(file, &message);
    if (!journal) std::abort();  // the folder is writable: a journal must always result
    journal->query({}, 5);       // whatever an accepted file holds reads without harm

    JournalEntry e;
    e.timeMs = 1609725600000;
    e.tool = "舵手";
    e.tag = "fuzz-entry";
    e.figures = {{"价", 1.5}};
    journal->record(e);
    JournalFilter mine;
    mine.tagText = e.tag;
    bool found = false;
    for (const JournalRecord& r : journal->query(mine, SqliteOrderJournal::kMaxPageSize))
        found = found || (r.entry.tag == e.tag && r.entry.figures.size() == 1 &&
                          r.entry.figures[0].value == 1.5);
    if (!found) std::abort();
    return 0;
}
