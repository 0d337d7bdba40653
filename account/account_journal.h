// Recording what the exit and account tools send in the manager's audit journal, and the
// outcome of a submission, for every tool of this folder alike.
#pragma once

#include <string>
#include <vector>

#include "app/order_journal.h"
#include "host/records.h"

class CHelmsmanManage;

namespace account_journal {

// Whether the host took an order it was handed: an identifier came back and it was not
// refused.
bool taken(const tagBrokerOrder& order);

// Records each order, right after it was sent, with the tool, its window, the reason in
// words and the figures behind it. `result` is what the submission returned.
void record(CHelmsmanManage& manage, const std::string& tool, const std::string& window,
            const std::vector<tagBrokerOrder>& orders, int result, const std::string& reason,
            const std::vector<JournalFigure>& figures);

// Switches the module's algo trading on for the length of one submission and restores the
// previous state afterwards: a tool's own algorithm option must not change other tools'.
class ScopedAlgoSwitch {
public:
    ScopedAlgoSwitch(CHelmsmanManage& manage, bool on);
    ~ScopedAlgoSwitch();
    ScopedAlgoSwitch(const ScopedAlgoSwitch&) = delete;
    ScopedAlgoSwitch& operator=(const ScopedAlgoSwitch&) = delete;

private:
    CHelmsmanManage& m_manage;
    bool m_previous;
    bool m_active;
};

}  // namespace account_journal
