// FilledStatisticsWindow: the window of CFilledOrderStatistics (dialog 25032, "成交统计"), a
// new one per call of FilledOrderStatistics: the grouped fills in a sortable list (total rows
// in bold), a bar chart of each instrument's turnover, and CSV export (GBK) into the user
// directory.
//
// Owns its core; deletes itself when closed. UI thread only.
#pragma once

#include <QDialog>

#include "account/filled_statistics.h"

class CSortListCtrl;
class QChartView;
class QLabel;

class FilledStatisticsWindow : public QDialog {
public:
    explicit FilledStatisticsWindow(CHelmsmanManage& manage, QWidget* parent = nullptr);
    CFilledOrderStatistics& core() { return m_core; }
    // Writes the CSV into the user directory; the path written, empty on failure.
    std::string exportCsv();

private:
    void fill();
    void fillChart();

    CHelmsmanManage& m_manage;
    CFilledOrderStatistics m_core;
    CSortListCtrl* m_list = nullptr;
    QChartView* m_chart = nullptr;
    QLabel* m_status = nullptr;
};

int openFilledOrderStatistics();
