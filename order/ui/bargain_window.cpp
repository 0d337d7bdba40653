#include "order/ui/bargain_window.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

#include "app/ui/window_placement.h"
#include "host/ui/sort_list_ctrl.h"
#include "order/confirm_dialog.h"
#include "order/confirm_strings.h"
#include "order/ui/confirm_order_dialog.h"
#include "order/ui/multi_confirm_dialog.h"

BargainWindow::BargainWindow(CSubscibeManage* facade, const std::string& userDir, QWidget* parent)
    : QWidget(parent ? parent : window_placement::hostWindow(), Qt::Window), m_core(facade) {
    setWindowTitle(QString::fromUtf8(confirm_text::kFillWindowTitle));
    // Shown, not activated: a fill must not steal the keyboard from the ticket. Above its
    // owner only, never above the trader's other applications; back where it was left.
    setAttribute(Qt::WA_ShowWithoutActivating);
    window_placement::rememberPlace(this, "FillNotice");

    auto* banner = new QWidget(this);
    banner->setObjectName("latestBanner");
    auto* bannerLayout = new QVBoxLayout(banner);
    bannerLayout->setContentsMargins(12, 8, 12, 8);
    bannerLayout->setSpacing(2);
    m_latestTitle = new QLabel(banner);
    m_latestTitle->setObjectName("latestTitle");
    m_latestBody = new QLabel(banner);
    m_latestBody->setObjectName("latestBody");
    m_latestBody->setTextInteractionFlags(Qt::TextSelectableByMouse);
    bannerLayout->addWidget(m_latestTitle);
    bannerLayout->addWidget(m_latestBody);

    m_list = new CSortListCtrl(this);
    m_list->setObjectName("fillList");
    m_list->SetHeadings(confirm_fmt::format("%s,60;%s,120;%s,200;", confirm_text::kFillTimeColumn,
                                            confirm_text::kFillTitleColumn,
                                            confirm_text::kFillBodyColumn));
    m_list->verticalHeader()->setDefaultSectionSize(m_list->fontMetrics().height() + 8);
    m_list->horizontalHeader()->setStretchLastSection(true);
    const QFontMetrics fm = m_list->fontMetrics();
    m_list->setColumnWidth(0, fm.horizontalAdvance("00:00:00") + 16);
    // Wide enough for the longest title and a typical body, measured from the real formats.
    const QString sampleTitle =
        QString::fromStdString(confirm_fmt::format(confirm_text::kFillCloseSell, "88888888"));
    const QString sampleBody = QString::fromStdString(
        confirm_fmt::format(confirm_text::kFillSellBody, "IF2406", 100.0, "100000") + "10000.00");
    m_list->setColumnWidth(1, fm.horizontalAdvance(sampleTitle) + 16);
    m_list->LoadColumnInfo(userDir, confirm_lists::kFills);

    auto* close = new QPushButton(QString::fromUtf8(confirm_text::kFillClose), this);
    close->setObjectName("closeButton");
    close->setMinimumWidth(90);
    connect(close, &QPushButton::clicked, this, &QWidget::hide);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(close);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(banner);
    layout->addWidget(m_list, 1);
    layout->addLayout(buttons);
    resize(m_list->columnWidth(0) + m_list->columnWidth(1) + fm.horizontalAdvance(sampleBody) + 60,
           300);
}

void BargainWindow::showFills(const std::vector<tagBargainOrder>& fills) {
    m_core.setFills(fills);
    redraw();
    if (!isVisible()) show();
    raise();
}

void BargainWindow::redraw() {
    const auto& entries = m_core.entries();
    m_list->DeleteAllItems();
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const auto& e = entries[i];
        const int r = m_list->AddItem({e.time, e.title, e.body});
        m_list->SetItemData(r, i);
        m_list->item(r, 1)->setForeground(confirm_ui::directionColor(e.buy));
    }
    if (m_list->sortColumn() >= 0)
        m_list->SortByColumn(m_list->sortColumn(), m_list->sortAscending());
    if (entries.empty()) {
        m_latestTitle->clear();
        m_latestBody->clear();
        return;
    }
    const auto& latest = entries.back();
    const QColor colour = confirm_ui::directionColor(latest.buy);
    m_latestTitle->setText(QString::fromStdString(latest.title));
    m_latestTitle->setStyleSheet(
        QStringLiteral("color: %1; font-size: 16px; font-weight: bold;").arg(colour.name()));
    m_latestBody->setText(QString::fromStdString(latest.body));
    m_latestBody->setStyleSheet("font-size: 14px;");
    const int last = m_list->FindItemData(entries.size() - 1);
    m_list->selectRow(last);
    m_list->scrollToItem(m_list->item(last, 0));
}
