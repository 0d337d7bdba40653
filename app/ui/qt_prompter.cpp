#include "app/ui/qt_prompter.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>

namespace {
QMessageBox::Icon toQt(PromptIcon icon) {
    switch (icon) {
        case PromptIcon::Information: return QMessageBox::Information;
        case PromptIcon::Question: return QMessageBox::Question;
        case PromptIcon::Warning:
        case PromptIcon::Exclamation: return QMessageBox::Warning;
        case PromptIcon::Error: return QMessageBox::Critical;
    }
    return QMessageBox::NoIcon;
}
}  // namespace

void QtPrompter::inform(const std::string& caption, const std::string& text, PromptIcon icon) {
    QMessageBox box(toQt(icon), QString::fromStdString(caption), QString::fromStdString(text),
                    QMessageBox::Ok, QApplication::activeWindow());
    box.exec();
}

bool QtPrompter::ask(const std::string& caption, const std::string& text, PromptIcon icon) {
    QMessageBox box(toQt(icon), QString::fromStdString(caption), QString::fromStdString(text),
                    QMessageBox::Yes | QMessageBox::No, QApplication::activeWindow());
    box.button(QMessageBox::Yes)->setText(QStringLiteral("是(&Y)"));
    box.button(QMessageBox::No)->setText(QStringLiteral("否(&N)"));
    box.setDefaultButton(QMessageBox::No);
    return box.exec() == QMessageBox::Yes;
}
