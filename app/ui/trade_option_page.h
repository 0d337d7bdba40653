// CTradeOptionPage: the "交易" property page the host embeds in its options dialog. It binds
// its widgets to a TradeOptionState (app/trade_option.h), where every rule lives, and saves
// through the manager when accepted. Created and owned by the host's dialog; UI thread only.
#pragma once

#include <QWidget>

#include "app/exports.h"
#include "app/trade_option.h"

class QCheckBox;
class QComboBox;
class QLineEdit;
class QRadioButton;
class CHelmsmanManage;

class HELMSMAN_API CTradeOptionPage : public QWidget {
    Q_OBJECT
public:
    static constexpr int kDialogId = 24009;

    // The page works on the process manager unless another is given (tests).
    explicit CTradeOptionPage(QWidget* parent = nullptr, CHelmsmanManage* manager = nullptr);

    // The page's caption in the host's dialog.
    static QString caption();
    // Fills the controls from the in-memory settings and the available accounts.
    void fillFromSettings();
    // Reads the controls into a state, as the page stands now.
    TradeOptionState state() const;
    // Accepts the page: saves the settings. Returns true; the host may close the page.
    bool onApply();

private:
    void applyEnabling();

    CHelmsmanManage& m_manager;
    QCheckBox* m_defaultAccount;
    QComboBox* m_accounts;
    QCheckBox* m_loadLastSymbol;
    QCheckBox* m_useBidAsk;
    QCheckBox* m_showChart;
    QCheckBox* m_showNormalConfirm;
    QCheckBox* m_showTriggerConfirm;
    QCheckBox* m_showHotkeyConfirm;
    QCheckBox* m_showFilled;
    QRadioButton* m_useDefaultVolume;
    QRadioButton* m_saveLastVolume;
    QLineEdit* m_defaultVolume;
    QCheckBox* m_useSingleLimit;
    QLineEdit* m_maxSingle;
    std::vector<std::string> m_accountItems;
};
