#include "order/ui/confirm_order_dialog.h"

#include <QColor>
#include <QDialogButtonBox>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "host/codes.h"
#include "order/confirm_strings.h"

namespace confirm_ui {

QColor directionColor(bool buy) {
    return buy ? QColor(0xC6, 0x28, 0x28) : QColor(0x1B, 0x7F, 0x3B);
}

QString directionButtonStyle(bool buy) {
    const QColor c = directionColor(buy);
    return QStringLiteral(
               "QPushButton { background: %1; color: white; font-weight: bold; border: none;"
               " border-radius: 3px; padding: 6px 18px; }"
               "QPushButton:hover { background: %2; }"
               "QPushButton:focus { outline: none; border: 2px solid #222; }")
        .arg(c.name(), c.lighter(115).name());
}

}  // namespace confirm_ui

ConfirmOrderDialog::ConfirmOrderDialog(const CConfirmDialog& core, QWidget* parent)
    : QDialog(parent), m_core(core) {
    setWindowTitle(QString::fromStdString(m_core.title()));
    setModal(true);
    const bool buy = m_core.direction() == kDirBuy;
    const QColor colour = confirm_ui::directionColor(buy);

    // The band: direction in large type, so a buy can never be taken for a sell.
    auto* band = new QFrame(this);
    band->setObjectName("directionBand");
    band->setStyleSheet(QStringLiteral("#directionBand { background: %1; }").arg(colour.name()));
    auto* bandLayout = new QHBoxLayout(band);
    bandLayout->setContentsMargins(16, 8, 16, 8);
    // "开仓买入" / "平仓卖出" as the text block says it (any close flag reads 平仓).
    const std::string action =
        std::string(codes::openCloseText(m_core.openClose() == kOpen ? kOpen : kClose)) +
        std::string(codes::directionText(m_core.direction()));
    auto* dir = new QLabel(QString::fromStdString(action), band);
    dir->setObjectName("directionLabel");
    dir->setStyleSheet("color: white; font-size: 20px; font-weight: bold;");
    auto* sym = new QLabel(QString::fromStdString(m_core.symbol()), band);
    sym->setObjectName("symbolLabel");
    sym->setStyleSheet("color: white; font-size: 20px; font-weight: bold;");
    bandLayout->addWidget(dir);
    bandLayout->addStretch();
    bandLayout->addWidget(sym);

    auto* text = new QLabel(QString::fromStdString(m_core.text()), this);
    text->setObjectName("confirmText");
    text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    text->setStyleSheet("font-size: 14px; line-height: 150%;");
    text->setContentsMargins(16, 12, 16, 12);

    m_ok = new QPushButton(QString::fromUtf8(confirm_text::kOk), this);
    m_ok->setObjectName("okButton");
    m_ok->setDefault(true);
    m_ok->setAutoDefault(true);
    m_ok->setStyleSheet(confirm_ui::directionButtonStyle(buy));
    m_cancel = new QPushButton(QString::fromUtf8(confirm_text::kCancel), this);
    m_cancel->setObjectName("cancelButton");
    m_cancel->setAutoDefault(false);
    m_cancel->setMinimumWidth(m_ok->sizeHint().width());
    connect(m_ok, &QPushButton::clicked, this, &QDialog::accept);
    connect(m_cancel, &QPushButton::clicked, this, &QDialog::reject);

    auto* buttons = new QHBoxLayout;
    buttons->setContentsMargins(16, 0, 16, 14);
    buttons->addStretch();
    buttons->addWidget(m_ok);
    buttons->addWidget(m_cancel);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(band);
    layout->addWidget(text);
    layout->addLayout(buttons);
    setMinimumWidth(340);
    m_ok->setFocus();
}
