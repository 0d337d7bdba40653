// AMTOrderWindow: the conditional strategy's window (dialog 25038, "条件通"), one new
// window per OpenAMTOrder. It holds the CAMTOrder core, shows its parameters in controls and
// its run state in labels, and forwards start, stop, resume, the hand-edited position and
// the template commands. The core is driven by its instrument's quotes (the host sends them
// to the core's window handle); the window only redraws when the core says something
// changed. While the strategy runs the parameters are locked; the position stays editable.
//
// Times are entered as times of day and taken on the day the clock shows, so a template or
// default saved yesterday starts today at the same time.
//
// CAMTManager is its template manager ("条件通模板管理器").
//
// Owns its core; deletes itself when closed. UI thread only.
#pragma once

#include <QDialog>
#include <QWidget>
#include <array>
#include <memory>

#include "amt/amt_order.h"
#include "spread/template_commands.h"
#include "spread/ui/template_manager_dialog.h"

class QButtonGroup;
class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QSpinBox;
class QTimeEdit;
class QToolButton;
class TemplateMenu;

// The conditional strategy's template manager: the shared manager layout with its caption
// and columns.
class CAMTManager : public TemplateManagerDialog {
    Q_OBJECT
public:
    CAMTManager(ITemplateCommands& commands, QWidget* parent = nullptr);
};

class AMTOrderWindow : public QWidget {
    Q_OBJECT
public:
    explicit AMTOrderWindow(CHelmsmanManage& manager, QWidget* parent = nullptr);
    ~AMTOrderWindow() override;

    CAMTOrder& core() { return *m_core; }
    ITemplateCommands& templates() { return *m_templates; }
    TemplateMenu* templateMenu() const { return m_menu; }

    // The controls' parameters (the current template name kept).
    tagAMTParams collect() const;
    // Shows parameters in the controls.
    void showParams(const tagAMTParams& p);
    // The buttons' commands.
    bool startStrategy();
    void stopStrategy();
    void resumeEntries();
    // Redraws quote, run state, caption and enabled states from the core.
    void refresh();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    struct FilterRow {
        QCheckBox* enabled;
        QLineEdit* key;
        QComboBox* type;
        QCheckBox* useKey;
        QLineEdit* compareKey;
        QDoubleSpinBox* value;
    };
    void build();
    QWidget* buildEntry();
    QWidget* buildExit();
    void addFilterRows(QGridLayout* grid, int firstRow, std::array<FilterRow, 3>& rows,
                       const char* prefix);
    void fillAccounts();
    void fillExchanges();
    void fillSymbols(int exchangeId);
    void onSymbolChosen();
    void updateLabels();
    void setParamsEnabled(bool on);
    std::int64_t todayAt(const QTimeEdit* edit) const;

    CHelmsmanManage& m_manager;
    std::unique_ptr<CAMTOrder> m_core;
    std::unique_ptr<ITemplateCommands> m_templates;
    TemplateMenu* m_menu = nullptr;
    bool m_filling = false;

    // Instrument, account, direction.
    QComboBox* m_account = nullptr;
    QComboBox* m_exchange = nullptr;
    QComboBox* m_symbol = nullptr;
    QRadioButton* m_long = nullptr;
    QRadioButton* m_short = nullptr;
    QCheckBox* m_hedge = nullptr;
    QLabel* m_quote = nullptr;
    // Order settings.
    QTimeEdit* m_startTime = nullptr;
    QSpinBox* m_delay = nullptr;
    QSpinBox* m_everyLots = nullptr;
    QSpinBox* m_maxLots = nullptr;
    QSpinBox* m_offset = nullptr;
    // Entry.
    QWidget* m_entryBox = nullptr;
    QCheckBox* m_entryPriceOn = nullptr;
    QComboBox* m_entryPriceCon = nullptr;
    QDoubleSpinBox* m_entryPrice = nullptr;
    QLabel* m_entryLabel = nullptr;
    QCheckBox* m_entryRangeOn = nullptr;
    QDoubleSpinBox* m_entryRange = nullptr;
    QCheckBox* m_entryVolOn = nullptr;
    QSpinBox* m_entryVol = nullptr;
    QRadioButton* m_entryAnd = nullptr;
    QRadioButton* m_entryOr = nullptr;
    std::array<FilterRow, 3> m_entryFilters{};
    // Exit.
    QWidget* m_exitBox = nullptr;
    QCheckBox* m_exitPriceOn = nullptr;
    QComboBox* m_exitPriceCon = nullptr;
    QDoubleSpinBox* m_exitPrice = nullptr;
    QLabel* m_exitLabel = nullptr;
    QComboBox* m_basePrice = nullptr;
    QCheckBox* m_stopLossOn = nullptr;
    QSpinBox* m_stopLoss = nullptr;
    QCheckBox* m_takeProfitOn = nullptr;
    QSpinBox* m_takeProfit = nullptr;
    QCheckBox* m_trailOn = nullptr;
    QSpinBox* m_trailStart = nullptr;
    QComboBox* m_trailType = nullptr;
    QSpinBox* m_trailSet = nullptr;
    QCheckBox* m_exitTimeOn = nullptr;
    QTimeEdit* m_exitTime = nullptr;
    QCheckBox* m_exitVolOn = nullptr;
    QSpinBox* m_exitVol = nullptr;
    QRadioButton* m_exitAnd = nullptr;
    QRadioButton* m_exitOr = nullptr;
    std::array<FilterRow, 3> m_exitFilters{};
    // Run state.
    QSpinBox* m_position = nullptr;
    QLabel* m_average = nullptr;
    QLabel* m_first = nullptr;
    QLabel* m_cumulative = nullptr;
    QLabel* m_extremeCaption = nullptr;
    QLabel* m_extreme = nullptr;
    QLabel* m_state = nullptr;
    QToolButton* m_templateButton = nullptr;
    QPushButton* m_start = nullptr;
    QPushButton* m_stop = nullptr;
    QPushButton* m_resume = nullptr;
};

// OpenAMTOrder: a new window, shown centred over the host.
int openAMTOrder();
