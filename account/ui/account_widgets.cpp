#include "account/ui/account_widgets.h"

#include <QCheckBox>
#include <QLabel>

#include "account/account_strings.h"
#include "account/close_plan.h"
#include "app/ui/window_placement.h"

namespace account_ui {

AccountBoxes::AccountBoxes(AccountChoice& choice, std::function<void()> changed, QWidget* parent)
    : QWidget(parent), m_choice(choice), m_changed(std::move(changed)), m_layout(new QHBoxLayout(this)) {
    m_layout->setContentsMargins(0, 0, 0, 0);
    rebuild();
}

void AccountBoxes::rebuild() {
    while (QLayoutItem* item = m_layout->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    const auto& accounts = m_choice.accounts();
    if (accounts.empty()) m_layout->addWidget(new QLabel(u8(account_text::kMsgLogin), this));
    for (std::size_t i = 0; i < accounts.size(); ++i) {
        auto* box = new QCheckBox(u8(close_plan::accountText(accounts[i])), this);
        box->setObjectName(QString::fromStdString("account_" + accounts[i].strAccountID));
        box->setChecked(m_choice.checked(i));
        connect(box, &QCheckBox::toggled, this, [this, i](bool on) {
            if (i < m_choice.accounts().size()) m_choice.setChecked(i, on);
            if (m_changed) m_changed();
        });
        m_layout->addWidget(box);
    }
    m_layout->addStretch();
}

void showToolWindow(QWidget* w) {
    w->setAttribute(Qt::WA_DeleteOnClose);
    w->adjustSize();
    window_placement::placeCentred(w);
    w->show();
    w->raise();
    w->activateWindow();
}

}  // namespace account_ui
