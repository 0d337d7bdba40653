// AlgoSettingDialog (dialog 25050, "算法交易设置"): edits one algo settings block — slice size,
// price offset, timing and the stop and limit ranges — with the shared template menu over
// algoset.dat ("设为默认模板" writes section "AlgoDefault"). It works on its own copy: the
// caller reads setting() after exec() returned Accepted.
//
// Owned by its caller (modal); UI thread only.
#pragma once

#include <QDialog>
#include <memory>

#include "algo/algo_file.h"
#include "spread/template_commands.h"

class QCheckBox;
class QComboBox;
class QRadioButton;
class QSpinBox;
class CHelmsmanManage;

class AlgoSettingDialog : public QDialog {
    Q_OBJECT
public:
    AlgoSettingDialog(const tagAlgoSetting& setting, CHelmsmanManage& manager,
                      QWidget* parent = nullptr);
    ~AlgoSettingDialog() override;

    // The values shown, each kept in its control's range.
    tagAlgoSetting setting() const;
    void showSetting(const tagAlgoSetting& s);

private:
    QSpinBox* spin(int lo, int hi, const char* name);
    void enableByChoice();

    CHelmsmanManage& m_manager;
    std::string m_templateName;
    std::unique_ptr<CToolTemplates<AlgoSetTemplate>> m_templates;
    QSpinBox* m_baseLine;
    QCheckBox* m_autoKP;
    QRadioButton* m_lotFixed;
    QRadioButton* m_lotRatio;
    QSpinBox* m_lotSingle;
    QSpinBox* m_lotRandom;
    QSpinBox* m_lotRatioPct;
    QSpinBox* m_priceType;
    QRadioButton* m_timeFixed;
    QRadioButton* m_timeTotal;
    QSpinBox* m_timeInterval;
    QSpinBox* m_timeRandom;
    QSpinBox* m_timeTotalSec;
    QCheckBox* m_timeSession;
    QSpinBox* m_stopRange;
    QComboBox* m_outStop;
    QSpinBox* m_limitRange;
    QComboBox* m_outLimit;
};

// Shows the dialog modally on `block`; true (and the block replaced) when the user confirmed.
bool editAlgoSettingModal(tagAlgoSetting& block, CHelmsmanManage& manager,
                          QWidget* parent = nullptr);
