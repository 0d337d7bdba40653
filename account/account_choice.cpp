#include "account/account_choice.h"

#include "account/close_plan.h"
#include "app/helmsman_manage.h"

void AccountChoice::reload(CHelmsmanManage& manage, bool checkNew) {
    std::vector<tagAccoutInfo> accounts;
    if (CSubscibeManage* f = manage.facade()) f->GetAvailableAccounts(accounts);
    std::vector<bool> checked;
    for (const tagAccoutInfo& a : accounts) {
        bool on = checkNew;
        for (std::size_t i = 0; i < m_accounts.size(); ++i)
            if (m_accounts[i].strAccountID == a.strAccountID &&
                m_accounts[i].strBrokerID == a.strBrokerID)
                on = m_checked[i];
        checked.push_back(on);
    }
    m_accounts = std::move(accounts);
    m_checked = std::move(checked);
}

bool AccountChoice::includes(const std::string& id, const std::string& broker) const {
    for (std::size_t i = 0; i < m_accounts.size(); ++i)
        if (m_accounts[i].strAccountID == id && m_accounts[i].strBrokerID == broker) return m_checked[i];
    return false;
}

std::string AccountChoice::textOf(const std::string& id, const std::string& broker) const {
    for (const tagAccoutInfo& a : m_accounts)
        if (a.strAccountID == id && a.strBrokerID == broker) return close_plan::accountText(a);
    return id;
}

