#include "app/ui/qt_prompter.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>

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

void QtPrompter::setChineseButtons(QMessageBox& box) {
    struct Text {
        QMessageBox::StandardButton button;
        const char* text;
        Qt::Key key;  // the Enter-free answer the platform's boxes take from the keyboard
    };
    static const Text texts[] = {
        {QMessageBox::Ok, prompter_text::kOk, Qt::Key_unknown},
        {QMessageBox::Cancel, prompter_text::kCancel, Qt::Key_unknown},
        {QMessageBox::Yes, prompter_text::kYes, Qt::Key_Y},
        {QMessageBox::No, prompter_text::kNo, Qt::Key_N},
    };
    for (const Text& t : texts) {
        if (QAbstractButton* b = box.button(t.button)) {
            b->setText(QString::fromUtf8(t.text));
            if (t.key != Qt::Key_unknown) b->setShortcut(QKeySequence(t.key));
        }
    }
}

void QtPrompter::inform(const std::string& caption, const std::string& text, PromptIcon icon) {
    QMessageBox box(toQt(icon), QString::fromStdString(caption), QString::fromStdString(text),
                    QMessageBox::Ok, QApplication::activeWindow());
    setChineseButtons(box);
    box.exec();
}

bool QtPrompter::ask(const std::string& caption, const std::string& text, PromptIcon icon) {
    QMessageBox box(toQt(icon), QString::fromStdString(caption), QString::fromStdString(text),
                    QMessageBox::Yes | QMessageBox::No, QApplication::activeWindow());
    setChineseButtons(box);
    box.setDefaultButton(QMessageBox::No);
    return box.exec() == QMessageBox::Yes;
}
