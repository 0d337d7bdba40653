#include "account/account_journal.h"

#include "app/helmsman_manage.h"

namespace account_journal {

bool taken(const tagBrokerOrder& order) {
    return !order.strOrderID.empty() && order.nStatus != kOrderRejected;
}

void record(CHelmsmanManage& manage, const std::string& tool, const std::string& window,
            const std::vector<tagBrokerOrder>& orders, int result, const std::string& reason,
            const std::vector<JournalFigure>& figures) {
    for (const tagBrokerOrder& o : orders) {
        JournalEntry e;
        e.timeMs = manage.clock().nowMs();
        e.tool = tool;
        e.window = window;
        e.tag = o.strRemark;
        e.order = o;
        // An order handed to algorithmic execution has no identifier yet and counts as taken.
        e.result = taken(o) ? 1 : (o.nStatus == kOrderRejected ? 0 : result);
        e.reason = reason;
        e.figures = figures;
        manage.journal().record(e);
    }
}

ScopedAlgoSwitch::ScopedAlgoSwitch(CHelmsmanManage& manage, bool on)
    : m_manage(manage), m_previous(manage.settings().bUseAlgoTrading != 0), m_active(on) {
    if (m_active) m_manage.setAlgoTrading(true);
}

ScopedAlgoSwitch::~ScopedAlgoSwitch() {
    if (m_active) m_manage.setAlgoTrading(m_previous);
}

}  // namespace account_journal
