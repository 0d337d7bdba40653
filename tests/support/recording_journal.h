// An audit journal that keeps every entry it is given, for tests that check what a tool
// recorded.
#pragma once

#include <string>
#include <vector>

#include "app/order_journal.h"

struct RecordingJournal : IOrderJournal {
    std::vector<JournalEntry> entries;
    void record(const JournalEntry& e) override { entries.push_back(e); }
    // The value of entry i's figure `name`, or -1e300 when it has none of that name.
    double figure(std::size_t i, const std::string& name) const {
        for (const JournalFigure& f : entries.at(i).figures)
            if (f.name == name) return f.value;
        return -1e300;
    }
};
