#include "order/ui/hotkey_dialog.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QKeySequenceEdit>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>
#include <cstdio>

#include "app/helmsman_manage.h"
#include "order/order_strings.h"

namespace tx = order_text;

namespace {
QString q(const char* s) {
    return QString::fromUtf8(s);
}
}  // namespace

HotkeyDialog::HotkeyDialog(CHelmsmanManage& manage, const HotkeySettings& keys, QWidget* parent)
    : QDialog(parent), m_manage(manage), m_result(keys) {
    setObjectName("hotkeyDialog");
    setWindowTitle(q(tx::kHotkeyCaption));

    m_enabled = new QCheckBox(q(tx::kHotkeyEnable), this);
    m_enabled->setObjectName("hotkeyEnabled");
    m_enabled->setChecked(keys.bEnabled != 0);
    m_confirm = new QCheckBox(q(tx::kHotkeyConfirm), this);
    m_confirm->setObjectName("hotkeyConfirm");
    m_confirm->setChecked(manage.settings().bShowHotkeyOrderConfirm != 0);

    auto* grid = new QGridLayout;
    for (std::size_t i = 0; i < kHotkeyActionCount; ++i) {
        const auto action = static_cast<HotkeyAction>(i);
        auto* label = new QLabel(q(hotkeyLabel(action)), this);
        auto* edit =
            new QKeySequenceEdit(QKeySequence::fromString(QString::fromStdString(keys.key(action)),
                                                          QKeySequence::PortableText),
                                 this);
        edit->setObjectName(QString("hotkey%1").arg(i));
        // One key per action: keep only the first of a chord sequence.
        connect(edit, &QKeySequenceEdit::keySequenceChanged, edit, [edit](const QKeySequence& seq) {
            if (seq.count() > 1) edit->setKeySequence(QKeySequence(seq[0]));
        });
        auto* clear = new QToolButton(this);
        clear->setText(q(tx::kButtonClear));
        connect(clear, &QToolButton::clicked, edit, &QKeySequenceEdit::clear);
        label->setBuddy(edit);
        grid->addWidget(label, static_cast<int>(i), 0);
        grid->addWidget(edit, static_cast<int>(i), 1);
        grid->addWidget(clear, static_cast<int>(i), 2);
        m_edits[i] = edit;
    }
    auto setEditsEnabled = [this](bool on) {
        for (auto* e : m_edits) e->setEnabled(on);
    };
    setEditsEnabled(m_enabled->isChecked());
    connect(m_enabled, &QCheckBox::toggled, this, setEditsEnabled);

    auto* hint = new QLabel(q(tx::kHotkeyHint), this);
    hint->setWordWrap(true);
    hint->setStyleSheet("color: #606060;");

    auto* buttons = new QDialogButtonBox(this);
    buttons->addButton(q(tx::kButtonOk), QDialogButtonBox::AcceptRole);
    buttons->addButton(q(tx::kButtonCancel), QDialogButtonBox::RejectRole);
    connect(buttons, &QDialogButtonBox::accepted, this, &HotkeyDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &HotkeyDialog::reject);

    auto* root = new QVBoxLayout(this);
    root->addWidget(m_enabled);
    root->addLayout(grid);
    root->addWidget(m_confirm);
    root->addWidget(hint);
    root->addWidget(buttons);
    setMinimumWidth(340);
}

bool HotkeyDialog::confirmOrders() const {
    return m_confirm->isChecked();
}

void HotkeyDialog::accept() {
    HotkeySettings edited;
    edited.bEnabled = m_enabled->isChecked() ? 1 : 0;
    for (std::size_t i = 0; i < kHotkeyActionCount; ++i)
        edited.keys[i] =
            m_edits[i]->keySequence().toString(QKeySequence::PortableText).toStdString();
    const std::string dup = duplicateHotkey(edited);
    if (!dup.empty()) {
        char text[256];
        std::snprintf(text, sizeof text, tx::kMsgHotkeyDuplicate, dup.c_str());
        m_manage.prompter().inform(tx::kCaptionPrompt, text);
        return;
    }
    m_result = edited;
    saveHotkeys(m_manage.profilePath(), m_result);
    HelmsmanSettings s = m_manage.settings();
    s.bShowHotkeyOrderConfirm = confirmOrders() ? 1 : 0;
    if (!(s == m_manage.settings())) m_manage.saveSettings(s);
    QDialog::accept();
}
