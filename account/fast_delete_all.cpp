#include "account/fast_delete_all.h"

#include <algorithm>
#include <cstdio>
#include <set>

#include "account/account_journal.h"
#include "account/account_strings.h"
#include "account/close_plan.h"
#include "app/helmsman_manage.h"
#include "host/codes.h"
#include "host/number_text.h"
#include "host/price.h"

using namespace account_text;

namespace {

bool working(std::int32_t status) {
    return status == kOrderQueued || status == kOrderPartFilled || status == kOrderSending ||
           status == kOrderCancelling;
}

std::string sideText(std::int32_t direction) { return direction == kDirBuy ? kBuy : kSell; }

// The shared start of a result line: contract number, account, code, side, open/close,
// volume and price.
std::string describe(const char* format, const std::string& id, const std::string& account,
                     const std::string& code, std::int32_t direction, std::int32_t openClose,
                     double volume, const std::string& priceText) {
    char text[512];
    std::snprintf(text, sizeof text, format, id.c_str(), account.c_str(), code.c_str(),
                  sideText(direction).c_str(), std::string(codes::openCloseText(openClose)).c_str(),
                  number_text::format(volume).c_str(), priceText.c_str());
    return text;
}

}  // namespace

// ---- Cancel-all ------------------------------------------------------------------------------

CFastDeleteAll::CFastDeleteAll(CHelmsmanManage& manage) : m_manage(manage) { refresh(); }

bool CFastDeleteAll::shown(const tagBrokerOrder& o) const {
    return (m_code.empty() || o.strCode == m_code) && (m_side == 0 || o.nDirection == m_side);
}

std::vector<std::string> CFastDeleteAll::codes() const {
    std::set<std::string> set;
    for (const tagBrokerOrder& o : m_all) set.insert(o.strCode);
    return {set.begin(), set.end()};
}

void CFastDeleteAll::refresh() {
    m_accounts.reload(m_manage);
    m_all.clear();
    std::vector<tagBrokerOrder> orders;
    if (CSubscibeManage* f = m_manage.facade()) f->GetAllOrders(orders);
    for (tagBrokerOrder& o : orders)
        if (working(o.nStatus) && m_accounts.includes(o.strAccountID, o.strBrokerID))
            m_all.push_back(std::move(o));
    m_rows.clear();
    for (const tagBrokerOrder& o : m_all)
        if (shown(o)) m_rows.push_back(o);
}

void CFastDeleteAll::onOrderChanged(const tagBrokerOrder& order) {
    for (auto* list : {&m_all, &m_rows}) {
        for (auto it = list->begin(); it != list->end(); ++it) {
            if (it->strOrderID != order.strOrderID || it->strAccountID != order.strAccountID) continue;
            if (working(order.nStatus))
                *it = order;
            else
                list->erase(it);
            break;
        }
    }
}

std::string CFastDeleteAll::cell(std::size_t row, int column) const {
    const tagBrokerOrder& o = m_rows.at(row);
    switch (column) {
        case kColAccount: return m_accounts.textOf(o.strAccountID, o.strBrokerID);
        case kColSymbol: return o.strCode;
        case kColSide: return sideText(o.nDirection);
        case kColOpenClose: return std::string(codes::openCloseText(o.nOpenClose));
        case kColPrice: return number_text::format(o.dPrice);
        case kColVolume: return number_text::format(o.dVolume);
        case kColFilled: return number_text::format(o.dFilledVolume);
        case kColStatus: return std::string(codes::orderStatusText(o.nStatus));
        case kColOrderID: return o.strOrderID;
        default: return {};
    }
}

int CFastDeleteAll::cancelAll() {
    m_results.clear();
    m_summary.clear();
    refresh();
    CSubscibeManage* f = m_manage.facade();
    std::vector<tagBrokerOrder> todo;
    for (const tagBrokerOrder& o : m_rows)
        if (o.nStatus != kOrderCancelling) todo.push_back(o);
    if (!f || todo.empty()) {
        m_manage.prompter().inform(kCaptionPrompt, kMsgNothingToCancel);
        return 0;
    }
    char ask[128];
    std::snprintf(ask, sizeof ask, kAskDeleteAll, static_cast<int>(todo.size()));
    if (!m_manage.prompter().ask(kCaptionConfirm, ask, PromptIcon::Question)) return 0;
    int ok = 0;
    for (const tagBrokerOrder& o : todo) {
        const int r = f->DeleteOrder(o.strAccountID, o.strBrokerID, o.strOrderID);
        ok += r != 0;
        m_results.push_back(describe(r != 0 ? kResultCancelSent : kResultCancelFailed, o.strOrderID,
                                     m_accounts.textOf(o.strAccountID, o.strBrokerID), o.strCode,
                                     o.nDirection, o.nOpenClose, o.dVolume - o.dFilledVolume,
                                     number_text::format(o.dPrice)));
        account_journal::record(m_manage, kFastDeleteAllCaption, m_windowName, {o}, r, kReasonCancel,
                                {{"remaining", o.dVolume - o.dFilledVolume}});
    }
    char text[128];
    std::snprintf(text, sizeof text, kDeleteAllSummary, static_cast<int>(todo.size()), ok,
                  static_cast<int>(todo.size()) - ok);
    m_summary = text;
    refresh();
    return ok;
}

// ---- Multi-account trigger cancel ------------------------------------------------------------

CDeleteTriggerOrders::CDeleteTriggerOrders(CHelmsmanManage& manage, const tagAccoutInfo* preselect)
    : m_manage(manage) {
    m_accounts.reload(m_manage, preselect == nullptr || preselect->strAccountID.empty());
    if (preselect)
        for (std::size_t i = 0; i < m_accounts.accounts().size(); ++i)
            if (m_accounts.accounts()[i].strAccountID == preselect->strAccountID)
                m_accounts.setChecked(i, true);
    refresh();
}

void CDeleteTriggerOrders::refresh() {
    m_accounts.reload(m_manage);
    std::vector<tagTriggerOrder> all;
    if (CSubscibeManage* f = m_manage.facade()) f->GetAllTriggerOrders(all);
    std::vector<tagTriggerOrder> rows;
    std::vector<bool> checked;
    for (tagTriggerOrder& t : all) {
        if (t.nStatus != 0 || !m_accounts.includes(t.strAccountID, t.strBrokerID)) continue;
        bool on = false;
        for (std::size_t i = 0; i < m_rows.size(); ++i)
            if (m_rows[i].strOrderID == t.strOrderID && m_rows[i].strAccountID == t.strAccountID)
                on = m_checked[i];
        rows.push_back(std::move(t));
        checked.push_back(on);
    }
    m_rows = std::move(rows);
    m_checked = std::move(checked);
}

void CDeleteTriggerOrders::checkAll(bool on) { std::fill(m_checked.begin(), m_checked.end(), on); }

int CDeleteTriggerOrders::decimalsOf(const tagTriggerOrder& t) const {
    IModuleFutureTrader::ISpecDetailValue d;
    CSubscibeManage* f = m_manage.facade();
    if (f && f->GetSymbolProperty({static_cast<std::uint16_t>(t.nExchangeID), t.strCode}, d) != 0)
        return price::decimals(d.nMinMove, d.fPriceUnit);
    return -1;
}

std::string CDeleteTriggerOrders::cell(std::size_t row, int column) const {
    const tagTriggerOrder& t = m_rows.at(row);
    switch (column) {
        case kColAccount: return m_accounts.textOf(t.strAccountID, t.strBrokerID);
        case kColSymbol: return t.strCode;
        case kColType: return std::string(codes::triggerTypeText(t.nTriggerType));
        case kColSide: return sideText(t.nDirection);
        case kColOpenClose: return std::string(codes::openCloseText(t.nOpenClose));
        case kColTrigger: return number_text::format(t.dTriggerPrice, decimalsOf(t));
        case kColPrice: return isPricePresent(t.dPrice) ? number_text::format(t.dPrice, decimalsOf(t)) : kMarketPrice;
        case kColVolume: return number_text::format(t.dVolume);
        case kColOrderID: return t.strOrderID;
        default: return {};
    }
}

int CDeleteTriggerOrders::deleteChecked() {
    m_results.clear();
    m_summary.clear();
    std::vector<tagTriggerOrder> todo;
    for (std::size_t i = 0; i < m_rows.size(); ++i)
        if (m_checked[i]) todo.push_back(m_rows[i]);
    CSubscibeManage* f = m_manage.facade();
    if (!f || todo.empty()) {
        m_manage.prompter().inform(kCaptionPrompt, kMsgNothingChecked);
        return 0;
    }
    char ask[128];
    std::snprintf(ask, sizeof ask, kAskDeleteTriggers, static_cast<int>(todo.size()));
    if (!m_manage.prompter().ask(kCaptionConfirm, ask, PromptIcon::Question)) return 0;
    int ok = 0;
    for (const tagTriggerOrder& t : todo) {
        const int r = f->DeleteTriggerOrder(t.strAccountID, t.strBrokerID, t.strOrderID);
        ok += r != 0;
        m_results.push_back(describe(r != 0 ? kResultTriggerDeleted : kResultTriggerFailed,
                                     t.strOrderID, m_accounts.textOf(t.strAccountID, t.strBrokerID),
                                     t.strCode, t.nDirection, t.nOpenClose, t.dVolume,
                                     number_text::format(t.dTriggerPrice, decimalsOf(t))));
    }
    char text[128];
    std::snprintf(text, sizeof text, kDeleteTriggerSummary, static_cast<int>(todo.size()), ok,
                  static_cast<int>(todo.size()) - ok);
    m_summary = text;
    refresh();
    return ok;
}
