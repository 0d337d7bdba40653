// An audit journal that keeps every entry in memory, in recording order, so the replay can
// write them out as journal.csv when it ends, and hands each one on to a further journal
// when given one (a journal file kept beside it). Owned by the runner's caller; one thread.
#pragma once

#include <vector>

#include "app/order_journal.h"

namespace replay {

class RecordingJournal final : public IOrderJournal {
public:
    explicit RecordingJournal(IOrderJournal* next = nullptr) : m_next(next) {}
    void record(const JournalEntry& entry) override {
        m_entries.push_back(entry);
        if (m_next) m_next->record(entry);
    }
    const std::vector<JournalEntry>& entries() const { return m_entries; }

private:
    IOrderJournal* m_next;
    std::vector<JournalEntry> m_entries;
};

}  // namespace replay
