#include "shell/monitor_prompter.h"

#include <QMessageBox>
#include <QPushButton>

#include "shell/shell_texts.h"

namespace {

QMessageBox::Icon boxIcon(PromptIcon icon) {
    switch (icon) {
        case PromptIcon::Information:
            return QMessageBox::Information;
        case PromptIcon::Question:
            return QMessageBox::Question;
        case PromptIcon::Warning:
        case PromptIcon::Exclamation:
            return QMessageBox::Warning;
        case PromptIcon::Error:
            return QMessageBox::Critical;
    }
    return QMessageBox::NoIcon;
}

}  // namespace

void DeskPrompter::inform(const std::string& caption, const std::string& text, PromptIcon icon) {
    QMessageBox box(boxIcon(icon), QString::fromStdString(caption), QString::fromStdString(text),
                    QMessageBox::NoButton, m_parent);
    box.addButton(QString::fromUtf8(shell_text::kOk), QMessageBox::AcceptRole);
    box.exec();
}

bool DeskPrompter::ask(const std::string& caption, const std::string& text, PromptIcon icon) {
    QMessageBox box(boxIcon(icon), QString::fromStdString(caption), QString::fromStdString(text),
                    QMessageBox::NoButton, m_parent);
    QPushButton* yes = box.addButton(QString::fromUtf8(shell_text::kYes), QMessageBox::YesRole);
    QPushButton* no = box.addButton(QString::fromUtf8(shell_text::kNo), QMessageBox::NoRole);
    box.setDefaultButton(yes);
    box.setEscapeButton(no);
    box.exec();
    return box.clickedButton() == yes;
}
