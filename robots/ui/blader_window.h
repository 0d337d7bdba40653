// BladerWindow: the ladder robot's window ("顺势锤[时间:…]"). It binds its controls to the
// core (CBlader): the account, the instrument and the five numbers of the settings, the
// template menu of the tool's template file, the count of entries held (which the trader may
// overtype), the two legs' status lines, the totals line, and start / pause.
//
// It drives the core's timer pass twice a second and redraws when the core says something
// changed (checked five times a second, so a busy market costs no drawing per quote). The
// settings are editable only while the robot is paused. Closing asks first while running.
//
// Opened from the robot launcher (openBladerWindow); owned by the host's window, deleted on
// close. UI thread only.
#pragma once

#include <QWidget>
#include <memory>

#include "robots/blader.h"
#include "spread/template_commands.h"

class QButtonGroup;
class QComboBox;
class QLabel;
class QPushButton;
class QRadioButton;
class QSpinBox;
class QTimer;
class TemplateMenu;

class BladerWindow : public QWidget {
    Q_OBJECT
public:
    explicit BladerWindow(CHelmsmanManage& manager, QWidget* parent = nullptr);
    ~BladerWindow() override;

    CBlader& core() { return m_core; }
    QPushButton* startButton() const { return m_start; }
    QPushButton* pauseButton() const { return m_pause; }
    QSpinBox* positionBox() const { return m_position; }
    QLabel* openStatus() const { return m_openStatus; }
    QLabel* closeStatus() const { return m_closeStatus; }
    QLabel* totals() const { return m_totals; }
    TemplateMenu* templateMenu() const { return m_menu; }

    // The settings the controls show (with the current template's name).
    tagBladerSetting collect() const;
    // Shows `s` in the controls and hands it to the core (it becomes the current template).
    void showSetting(const tagBladerSetting& s);
    // Redraws everything from the core.
    void refresh();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void fillAccounts();
    void fillSymbols(const std::string& select);
    void toCore();
    void startRobot();
    void typedPosition();

    CHelmsmanManage& m_manager;
    CBlader m_core;
    std::string m_templateName;
    std::unique_ptr<ITemplateCommands> m_templates;
    bool m_showing = false;  // controls are being set from a record: no echo to the core
    std::uint64_t m_drawn = ~0ull;

    QComboBox* m_account = nullptr;
    QComboBox* m_exchange = nullptr;
    QComboBox* m_code = nullptr;
    QRadioButton* m_long = nullptr;
    QRadioButton* m_short = nullptr;
    QSpinBox* m_maxPos = nullptr;
    QSpinBox* m_grid = nullptr;
    QSpinBox* m_win = nullptr;
    QSpinBox* m_timeExit = nullptr;
    QSpinBox* m_position = nullptr;
    QLabel* m_base = nullptr;
    QLabel* m_quote = nullptr;
    QLabel* m_openStatus = nullptr;
    QLabel* m_closeStatus = nullptr;
    QLabel* m_totals = nullptr;
    QLabel* m_state = nullptr;
    QPushButton* m_templateButton = nullptr;
    TemplateMenu* m_menu = nullptr;
    QPushButton* m_start = nullptr;
    QPushButton* m_pause = nullptr;
    QTimer* m_step = nullptr;
    QTimer* m_redraw = nullptr;
};

// Opens a new ladder robot window centred on the host's window; its handle (the launcher
// registers it).
WndHandle openBladerWindow(CHelmsmanManage& manager);
