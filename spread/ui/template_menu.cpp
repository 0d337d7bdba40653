#include "spread/ui/template_menu.h"

#include "spread/ui/template_manager_dialog.h"
#include "spread/ui/template_name_dialog.h"

namespace {
// The three commands and the separator stay; everything after them is rebuilt.
constexpr int kFixedActions = 4;

QAction* addCommand(QMenu* menu, int id, const char* text, const char* prompt = nullptr) {
    QAction* a = menu->addAction(QString::fromUtf8(text));
    a->setData(id);
    if (prompt) {
        // A string table entry: the status line's prompt, a line feed, the tooltip.
        const QStringList parts = QString::fromUtf8(prompt).split('\n');
        a->setStatusTip(parts.value(0));
        a->setToolTip(parts.value(1, parts.value(0)));
    }
    return a;
}
}  // namespace

TemplateMenu::TemplateMenu(ITemplateCommands& commands, QWidget* parent)
    : QMenu(parent), m_commands(commands) {
    addCommand(this, template_menu::kManager, spread_text::kMenuManager,
               spread_text::kStringManager);
    addCommand(this, template_menu::kSave, spread_text::kMenuSave, spread_text::kStringSave);
    addCommand(this, template_menu::kSetDefault, spread_text::kMenuSetDefault,
               spread_text::kStringSetDefault);
    addSeparator();
    addCommand(this, template_menu::kTemplateFirst, spread_text::kMenuPlaceholder);
    connect(this, &QMenu::aboutToShow, this, &TemplateMenu::refill);
    connect(this, &QMenu::triggered, this, [this](QAction* a) { run(commandId(a)); });
}

void TemplateMenu::refill() {
    fill(templateMenuItems(m_commands.names(), m_commands.currentName()));
}

void TemplateMenu::fill(const std::vector<TemplateMenuItem>& items) {
    const QList<QAction*> all = actions();
    for (int i = kFixedActions; i < all.size(); ++i) {
        removeAction(all[i]);
        delete all[i];
    }
    for (const TemplateMenuItem& item : items) {
        QAction* a = addCommand(this, item.id, item.text.c_str());
        a->setCheckable(item.checked);
        a->setChecked(item.checked);
    }
}

int TemplateMenu::commandId(const QAction* action) {
    return action ? action->data().toInt() : 0;
}

QAction* TemplateMenu::actionFor(int id) const {
    for (QAction* a : actions())
        if (!a->isSeparator() && commandId(a) == id) return a;
    return nullptr;
}

void TemplateMenu::run(int id) {
    QWidget* owner = parentWidget();
    switch (id) {
        case template_menu::kManager: {
            if (m_openManager) return m_openManager(owner);
            TemplateManagerDialog dialog(m_commands, owner);
            dialog.exec();
            return;
        }
        case template_menu::kSave: {
            TemplateNameDialog dialog(m_commands.prompter(), owner);
            if (dialog.exec() != QDialog::Accepted) return;
            if (m_commands.saveCurrent(dialog.name()) != TemplateSaveResult::NotOverwritten)
                emit templateChanged();
            return;
        }
        case template_menu::kSetDefault:
            m_commands.setAsDefault();
            return;
        default:
            if (id >= template_menu::kTemplateFirst &&
                m_commands.apply(static_cast<std::size_t>(id - template_menu::kTemplateFirst)))
                emit templateChanged();
    }
}
