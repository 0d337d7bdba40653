// TemplateManagerDialog: one tool's template manager. A sortable list of the templates (one
// row per record, columns from the tool's column layout) and the buttons "上移(&U)",
// "下移(&D)", "删除(&R)", "确定(&O)", "取消(&C)". Deletes and moves work on a private copy;
// only "确定(&O)" writes it over the file, in the order shown.
//
// The list can be sorted by a click on a heading. What the user sees is what is saved: before
// each command the copy takes the order the rows are shown in, and after a delete or a move
// the rows show the copy's order (the sort indicator goes, since a move unsorts the list).
//
// Modal, owned by whoever shows it; UI thread only.
#pragma once

#include <QDialog>
#include <memory>

#include "spread/template_commands.h"

class CSortListCtrl;
class QPushButton;

class TemplateManagerDialog : public QDialog {
    Q_OBJECT
public:
    TemplateManagerDialog(ITemplateCommands& commands, QWidget* parent = nullptr);
    ~TemplateManagerDialog() override;

    CSortListCtrl* list() const { return m_list; }
    const CTemplateList& copy() const { return *m_copy; }
    // The buttons' actions, also callable directly.
    void removeSelected();
    void moveSelectedUp();
    void moveSelectedDown();
    void accept() override;

private:
    void refill(int select);
    void takeShownOrder();
    int firstSelectedRecord() const;

    std::unique_ptr<CTemplateList> m_copy;
    CSortListCtrl* m_list;
};
