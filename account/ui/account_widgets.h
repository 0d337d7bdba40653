// Small pieces the exit and account windows share: UTF-8 text for Qt, a row of account check
// boxes bound to an AccountChoice, and how a new tool window is shown over the host.
#pragma once

#include <QHBoxLayout>
#include <QString>
#include <QWidget>
#include <functional>
#include <string>
#include <string_view>

#include "account/account_choice.h"

class CHelmsmanManage;

namespace account_ui {

inline QString u8(std::string_view s) { return QString::fromUtf8(s.data(), static_cast<int>(s.size())); }
inline QString u8(const char* s) { return QString::fromUtf8(s); }

// A row of check boxes, one per logged-on account, that writes into `choice` and calls
// `changed` after a toggle.
class AccountBoxes : public QWidget {
public:
    AccountBoxes(AccountChoice& choice, std::function<void()> changed, QWidget* parent);
    // Rebuilds the boxes from the choice (after it was reloaded).
    void rebuild();

private:
    AccountChoice& m_choice;
    std::function<void()> m_changed;
    QHBoxLayout* m_layout;
};

// Shows a new modeless tool window centred over the host, deleted when closed.
void showToolWindow(QWidget* w);

}  // namespace account_ui
