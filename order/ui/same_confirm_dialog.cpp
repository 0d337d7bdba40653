#include "order/ui/same_confirm_dialog.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/helmsman_manage.h"
#include "order/confirm_strings.h"
#include "order/ui/confirm_order_dialog.h"
#include "order/ui/multi_confirm_dialog.h"

SameConfirmDialog::SameConfirmDialog(std::vector<tagBrokerOrder> orders, const std::string& caller,
                                     CHelmsmanManage& manager, QWidget* parent)
    : QDialog(parent),
      m_core(std::move(orders), caller, nullptr, manager.facade(),
             CMultiConfirm::volumeCapFor(manager.settings())),
      m_manager(manager) {
    setAttribute(Qt::WA_DeleteOnClose);
    setModal(false);
    setWindowTitle(QString::fromStdString(m_core.title()));

    bool allBuy = !m_core.orders().empty(), allSell = allBuy;
    for (const auto& o : m_core.orders()) {
        allBuy = allBuy && o.nDirection == kDirBuy;
        allSell = allSell && o.nDirection != kDirBuy;
    }
    m_summary = new QLabel(QString::fromStdString(m_core.summary()), this);
    m_summary->setObjectName("summaryLabel");
    m_summary->setContentsMargins(10, 6, 10, 6);
    if (allBuy || allSell) {
        m_summary->setStyleSheet(
            QStringLiteral("QLabel { background: %1; color: white; font-size: 15px;"
                           " font-weight: bold; }")
                .arg(confirm_ui::directionColor(allBuy).name()));
    } else {
        m_summary->setStyleSheet("QLabel { font-size: 15px; font-weight: bold; }");
    }

    m_table = new BatchOrderTable(m_core, manager, confirm_lists::kLikeOrders, this);
    connect(m_table, &BatchOrderTable::edited, this,
            [this] { m_summary->setText(QString::fromStdString(m_core.summary())); });

    m_ok = new QPushButton(QString::fromUtf8(confirm_text::kOk), this);
    m_ok->setObjectName("okButton");
    m_ok->setDefault(true);
    m_ok->setMinimumWidth(90);
    if (allBuy || allSell) m_ok->setStyleSheet(confirm_ui::directionButtonStyle(allBuy));
    m_cancel = new QPushButton(QString::fromUtf8(confirm_text::kCancel), this);
    m_cancel->setObjectName("cancelButton");
    m_cancel->setAutoDefault(false);
    m_cancel->setMinimumWidth(90);
    connect(m_ok, &QPushButton::clicked, this, &QDialog::accept);
    connect(m_cancel, &QPushButton::clicked, this, &QDialog::reject);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(m_ok);
    buttons->addWidget(m_cancel);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_summary);
    layout->addWidget(m_table, 1);
    layout->addLayout(buttons);

    const int rows = std::min<int>(static_cast<int>(m_core.rowCount()), 12);
    resize(std::max(confirm_ui::tableWidth(m_table) + 24, 420),
           m_table->horizontalHeader()->sizeHint().height() +
               rows * m_table->verticalHeader()->defaultSectionSize() + 100);
    m_ok->setFocus();
}

void SameConfirmDialog::accept() {
    // Guard against a double click sending the batch twice: the core sends once, and the
    // button is gone from reach at once.
    m_ok->setEnabled(false);
    m_core.send(m_manager);
    QDialog::accept();  // hides; WA_DeleteOnClose does not fire on hide, so close too
    close();
}
