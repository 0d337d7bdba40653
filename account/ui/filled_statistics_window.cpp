#include "account/ui/filled_statistics_window.h"

#include <QBarCategoryAxis>
#include <QBarSeries>
#include <QBarSet>
#include <QChart>
#include <QChartView>
#include <QDateTime>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QValueAxis>
#include <QVBoxLayout>
#include <cstdio>
#include <map>

#include "account/account_strings.h"
#include "account/ui/account_widgets.h"
#include "app/helmsman_manage.h"
#include "app/ui/window_placement.h"
#include "host/ui/sort_list_ctrl.h"

using namespace account_text;
using account_ui::u8;

FilledStatisticsWindow::FilledStatisticsWindow(CHelmsmanManage& manage, QWidget* parent)
    : QDialog(parent), m_manage(manage), m_core(manage) {
    setWindowTitle(u8(kStatisticsCaption));
    m_list = new CSortListCtrl(this);
    m_list->setObjectName("statistics");
    m_list->SetHeadings(kStatisticsColumns);
    m_list->LoadColumnInfo(manage.userDir(), "FilledOrderStatistics");
    m_list->setMinimumSize(990, 200);
    m_chart = new QChartView(this);
    m_chart->setObjectName("chart");
    m_chart->setRenderHint(QPainter::Antialiasing);
    m_chart->setMinimumHeight(200);
    m_status = new QLabel(this);
    m_status->setObjectName("statusLine");

    auto* refresh = new QPushButton(u8(kButtonRefresh), this);
    refresh->setAutoDefault(false);
    connect(refresh, &QPushButton::clicked, this, [this] {
        m_core.refresh();
        fill();
    });
    auto* exportButton = new QPushButton(u8(kButtonExportCsv), this);
    exportButton->setObjectName("exportCsv");
    exportButton->setAutoDefault(false);
    connect(exportButton, &QPushButton::clicked, this, [this] { exportCsv(); });
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_status, 1);
    buttons->addWidget(refresh);
    buttons->addWidget(exportButton);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_list, 3);
    layout->addWidget(m_chart, 2);
    layout->addLayout(buttons);
    fill();
}

void FilledStatisticsWindow::fill() {
    m_list->DeleteAllItems();
    for (std::size_t i = 0; i < m_core.rows().size(); ++i) {
        std::vector<std::string> cells;
        for (int c = 0; c < CFilledOrderStatistics::kColCount; ++c) cells.push_back(m_core.cell(i, c));
        const int row = m_list->AddItem(cells);
        m_list->SetItemData(row, i + 1);
        if (m_core.rows()[i].kind != CFilledOrderStatistics::Kind::Group) {
            for (int c = 0; c < CFilledOrderStatistics::kColCount; ++c)
                if (QTableWidgetItem* item = m_list->item(row, c)) {
                    QFont f = item->font();
                    f.setBold(true);
                    item->setFont(f);
                }
        }
    }
    fillChart();
}

void FilledStatisticsWindow::fillChart() {
    // Turnover per instrument, every account together, in ten thousands.
    std::map<std::string, double> turnover;
    for (const auto& r : m_core.rows())
        if (r.kind == CFilledOrderStatistics::Kind::Group) turnover[r.symbol.strCode] += r.turnover / 10000.0;
    auto* set = new QBarSet(u8(kChartTitle));
    QStringList names;
    double top = 0;
    for (const auto& [code, v] : turnover) {
        *set << v;
        names << QString::fromStdString(code);
        top = std::max(top, v);
    }
    auto* series = new QBarSeries;
    series->append(set);
    series->setLabelsVisible(true);
    series->setLabelsFormat(QStringLiteral("@value"));
    series->setLabelsPrecision(6);
    auto* chart = new QChart;
    chart->addSeries(series);
    chart->setTitle(u8(kChartTitle));
    chart->legend()->hide();
    auto* x = new QBarCategoryAxis;
    x->append(names);
    chart->addAxis(x, Qt::AlignBottom);
    series->attachAxis(x);
    auto* y = new QValueAxis;
    y->setRange(0, top > 0 ? top * 1.15 : 1);
    y->setLabelFormat(QStringLiteral("%g"));
    chart->addAxis(y, Qt::AlignLeft);
    series->attachAxis(y);
    chart->setMargins(QMargins(4, 4, 4, 4));
    QChart* old = m_chart->chart();
    m_chart->setChart(chart);
    delete old;
}

std::string FilledStatisticsWindow::exportCsv() {
    const std::string name =
        "FilledStatistics_" + QDateTime::fromSecsSinceEpoch(m_manage.clock().now()).toString("yyyyMMdd_HHmmss").toStdString() + ".csv";
    const std::filesystem::path path = m_manage.userFile(name);
    std::error_code ec;
    std::filesystem::create_directories(path.parent_path(), ec);
    char text[1024];
    const bool ok = m_core.exportCsv(path);
    std::snprintf(text, sizeof text, ok ? kMsgExported : kMsgExportFailed, path.string().c_str());
    m_status->setText(u8(text));
    return ok ? path.string() : std::string();
}

int openFilledOrderStatistics() {
    account_ui::showToolWindow(
        new FilledStatisticsWindow(CHelmsmanManage::instance(), window_placement::hostWindow()));
    return 1;
}
