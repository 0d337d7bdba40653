// GridsSpreadWindow ("价差格[公式:%dA-%dB]"): the grid spread robot's window. It binds the
// controls to a CGridsSpread — accounts "户A:"/"户B:", the two instruments with their
// ratios, every setting, the direction button, start/pause, the position figure with "更新",
// both pairs' status texts, the filter's state, the closed count and "查看详情" — and drives
// the robot's timer pass. It holds no trading rule.
//
// It opens with the default template (Profile.ini section "GridsSpread"); the template
// button offers the shared template menu. While the robot runs every setting is read-only.
// Closing while running asks first; the window is deleted on close and its robot goes with
// it, which gives the handle back to the manager (and so unregisters it).
//
// Created by the robot launcher (openGridsSpread), which registers the handle. UI thread
// only.
#pragma once

#include <QWidget>
#include <memory>

#include "robots/grids_spread.h"

class QComboBox;
class QDoubleSpinBox;
class QLabel;
class QPushButton;
class QSpinBox;
class QTimer;
class TemplateMenu;
class ITemplateCommands;

class GridsSpreadWindow : public QWidget {
    Q_OBJECT
public:
    explicit GridsSpreadWindow(CHelmsmanManage& manager, QWidget* parent = nullptr);
    ~GridsSpreadWindow() override;

    CGridsSpread& core() { return *m_core; }
    WndHandle handle() const { return m_core->handle(); }

    // The buttons' commands, also callable directly.
    void startOrPause();
    void updatePosition();
    void showDetails();
    void toggleDirection();

    // The settings as the controls show them, and showing settings in the controls.
    GridsSpreadSettings collect() const;
    void display(const GridsSpreadSettings& s);

    QPushButton* startButton() const { return m_start; }
    QLabel* openStatus() const { return m_openStatus; }
    QLabel* closeStatus() const { return m_closeStatus; }
    QLabel* filterState() const { return m_filterState; }
    QLabel* closedCount() const { return m_closedCount; }
    QSpinBox* position() const { return m_position; }

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void buildControls();
    void fillLists();
    void refresh(unsigned what);
    void setEditable(bool on);

    CHelmsmanManage& m_manager;
    std::unique_ptr<CGridsSpread> m_core;
    std::unique_ptr<ITemplateCommands> m_templates;
    std::string m_templateName;
    int m_bLong = 1;

    QComboBox* m_accountA = nullptr;
    QComboBox* m_accountB = nullptr;
    QComboBox* m_symbolA = nullptr;
    QComboBox* m_symbolB = nullptr;
    QSpinBox* m_lotsA = nullptr;
    QSpinBox* m_lotsB = nullptr;
    QSpinBox* m_everyLots = nullptr;
    QSpinBox* m_maxLots = nullptr;
    QSpinBox* m_gridLots = nullptr;
    QDoubleSpinBox* m_firstGrid = nullptr;
    QDoubleSpinBox* m_interval = nullptr;
    QDoubleSpinBox* m_winGrid = nullptr;
    QSpinBox* m_edge = nullptr;
    QSpinBox* m_threshold = nullptr;
    QSpinBox* m_fixup = nullptr;
    QSpinBox* m_filterLength = nullptr;
    QSpinBox* m_filterOffset = nullptr;
    QPushButton* m_direction = nullptr;
    QPushButton* m_start = nullptr;
    QPushButton* m_template = nullptr;
    TemplateMenu* m_templateMenu = nullptr;
    QSpinBox* m_position = nullptr;
    QPushButton* m_update = nullptr;
    QLabel* m_openStatus = nullptr;
    QLabel* m_closeStatus = nullptr;
    QLabel* m_filterState = nullptr;
    QLabel* m_closedCount = nullptr;
    QPushButton* m_details = nullptr;
    QTimer* m_timer = nullptr;
    bool m_positionEdited = false;
};

// Creates a grid spread window on the host's window, shows it and returns its handle.
WndHandle openGridsSpread(CHelmsmanManage& manager);
