// AccountChoice: the accounts a multi-account tool works on.
//
// Owned by its tool. UI thread only.
#pragma once

#include <string>
#include <vector>

#include "host/records.h"

class CHelmsmanManage;

// The accounts a multi-account tool works on: the logged-on ones, each with a check box.
class AccountChoice {
public:
    // Reads the logged-on accounts again; accounts keep their check box, new ones come in
    // as `checkNew`.
    void reload(CHelmsmanManage& manage, bool checkNew = true);
    const std::vector<tagAccoutInfo>& accounts() const { return m_accounts; }
    bool checked(std::size_t i) const { return m_checked.at(i); }
    void setChecked(std::size_t i, bool on) { m_checked.at(i) = on; }
    bool includes(const std::string& id, const std::string& broker) const;
    // The display text of the account behind a row; its identifier when not logged on.
    std::string textOf(const std::string& id, const std::string& broker) const;

private:
    std::vector<tagAccoutInfo> m_accounts;
    std::vector<bool> m_checked;
};
