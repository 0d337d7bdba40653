#include "spread/ui/template_name_dialog.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "spread/spread_strings.h"
#include "spread/template_commands.h"

TemplateNameDialog::TemplateNameDialog(IPrompter& prompter, QWidget* parent)
    : QDialog(parent), m_prompter(prompter) {
    setWindowTitle(QString::fromUtf8(spread_text::kNameCaption));
    m_edit = new QLineEdit(this);
    m_edit->setMinimumWidth(200);
    m_ok = new QPushButton(QString::fromUtf8(spread_text::kOk), this);
    m_ok->setDefault(true);
    auto* cancel = new QPushButton(QString::fromUtf8(spread_text::kCancel), this);
    connect(m_ok, &QPushButton::clicked, this, &QDialog::accept);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);

    auto* row = new QHBoxLayout;
    row->addWidget(new QLabel(QString::fromUtf8(spread_text::kNameLabel), this));
    row->addWidget(m_edit, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(m_ok);
    buttons->addWidget(cancel);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(row);
    layout->addLayout(buttons);
    setFixedSize(sizeHint());
}

std::string TemplateNameDialog::name() const {
    return m_edit->text().toStdString();
}

void TemplateNameDialog::accept() {
    if (!acceptTemplateName(name(), m_prompter)) {
        m_edit->setFocus();
        return;
    }
    QDialog::accept();
}
