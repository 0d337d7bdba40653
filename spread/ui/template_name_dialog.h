// TemplateNameDialog: asks for the name a template is saved under ("请输入设置的名称"). An
// empty name is refused with a box and the dialog stays open; the name is taken as typed,
// blanks included.
//
// Modal, owned by whoever shows it; UI thread only.
#pragma once

#include <QDialog>
#include <string>

class IPrompter;
class QLineEdit;
class QPushButton;

class TemplateNameDialog : public QDialog {
    Q_OBJECT
public:
    TemplateNameDialog(IPrompter& prompter, QWidget* parent = nullptr);

    std::string name() const;
    QLineEdit* edit() const { return m_edit; }
    QPushButton* okButton() const { return m_ok; }

    void accept() override;

private:
    IPrompter& m_prompter;
    QLineEdit* m_edit;
    QPushButton* m_ok;
};
