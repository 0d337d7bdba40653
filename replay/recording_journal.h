// An audit journal that keeps every entry in memory, in recording order, so the replay can
// write them out as journal.csv when it ends. Owned by the runner's caller; one thread.
#pragma once

#include <vector>

#include "app/order_journal.h"

namespace replay {

class RecordingJournal final : public IOrderJournal {
public:
    void record(const JournalEntry& entry) override { m_entries.push_back(entry); }
    const std::vector<JournalEntry>& entries() const { return m_entries; }

private:
    std::vector<JournalEntry> m_entries;
};

}  // namespace replay
