// The audit journal seam: every order a tool sends is recorded with why it was sent.
//
// A tool fills one JournalEntry right after the host took (or refused) the order: the time
// from its clock, the tool and the window that decided, the order's tag, the order as the
// host wrote it back, and the reason in words and in numbers (for a grid robot the level,
// the reference quote and the filter state; for a trigger the watched price and the
// crossing). The manager holds the journal; by default it is a null journal that forgets
// everything, so cores and tests need nothing to run. Strings are UTF-8.
//
// Recording happens per order, never per quote, so it may allocate.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/records.h"

// One number behind a decision, e.g. {"level", 3} or {"reference", 3921.4}.
struct JournalFigure {
    std::string name;
    double value = 0;
};

struct JournalEntry {
    std::int64_t timeMs = 0;     // the deciding tool's clock, ms since 1970 (UTC)
    std::string tool;            // the tool's own name, e.g. "价差格" or "本地触发"
    std::string window;          // which window of that tool: its caption or handle
    std::string tag;             // the order's tag or remark
    tagBrokerOrder order;        // as sent, with the host's identifier and status
    int result = 0;              // what SendOrder returned (1 taken, 0 refused)
    std::string reason;          // the decision in words
    std::vector<JournalFigure> figures;  // the decision in numbers
};

class IOrderJournal {
public:
    virtual ~IOrderJournal() = default;
    virtual void record(const JournalEntry& entry) = 0;
};

// Forgets everything: the manager's default.
class NullOrderJournal final : public IOrderJournal {
public:
    void record(const JournalEntry&) override {}
};
