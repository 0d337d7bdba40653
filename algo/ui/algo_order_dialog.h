// AlgoOrderDialog ("新建算法单"): the centre's form for a new algo order — account, contract,
// side, open/close, total and the settings block (edited with the settings dialog). The
// caller reads order(), setting() and startNow() after exec() returned Accepted; the form
// only accepts with an account and a contract the host knows.
//
// Owned by its caller (modal); UI thread only.
#pragma once

#include <QDialog>

#include "algo/algo_setting.h"
#include "host/records.h"

class QCheckBox;
class QComboBox;
class QLineEdit;
class QSpinBox;
class CHelmsmanManage;

class AlgoOrderDialog : public QDialog {
    Q_OBJECT
public:
    AlgoOrderDialog(CHelmsmanManage& manager, const tagAlgoSetting& setting,
                    QWidget* parent = nullptr);

    const tagBrokerOrder& order() const { return m_order; }
    const tagAlgoSetting& setting() const { return m_setting; }
    bool startNow() const;
    // Builds the order from the fields; false (with the reason said) when it cannot.
    bool collect();

    QLineEdit* symbolEdit() const { return m_symbol; }
    QSpinBox* volumeSpin() const { return m_volume; }

private:
    CHelmsmanManage& m_manager;
    tagAlgoSetting m_setting;
    tagBrokerOrder m_order;
    std::vector<tagAccoutInfo> m_accounts;
    QComboBox* m_account;
    QLineEdit* m_symbol;
    QComboBox* m_side;
    QComboBox* m_openClose;
    QSpinBox* m_volume;
    QCheckBox* m_startNow;
};
