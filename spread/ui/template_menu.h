// TemplateMenu: the pop-up menu behind every tool's template button. Three commands
// ("模板管理器", "保存当前设置", "设为默认模板"), a separator, then one item per template with the
// command id 26780 + i. The template items are rebuilt from the file at every pop-up; the
// current template's item carries a check mark.
//
// run() carries out a command for the tool: the manager and name dialogs are modal.
//
// Owned by the tool's window; UI thread only.
#pragma once

#include <QMenu>
#include <functional>
#include <vector>

#include "spread/template_commands.h"

class TemplateMenu : public QMenu {
    Q_OBJECT
public:
    TemplateMenu(ITemplateCommands& commands, QWidget* parent = nullptr);

    // Rebuilds the template items from the file (done before every pop-up).
    void refill();
    // The command id an action stands for, or 0.
    static int commandId(const QAction* action);
    QAction* actionFor(int id) const;
    // Carries out a command: a fixed one, or applying template id - 26780.
    void run(int id);
    // A tool with a manager dialog of its own opens it here instead of the shared one.
    void setManagerOpener(std::function<void(QWidget* owner)> open) { m_openManager = std::move(open); }

signals:
    // After a template was applied or saved (the tool refreshes what it shows).
    void templateChanged();

private:
    void fill(const std::vector<TemplateMenuItem>& items);

    ITemplateCommands& m_commands;
    std::function<void(QWidget*)> m_openManager;
};
