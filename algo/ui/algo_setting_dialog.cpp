#include "algo/ui/algo_setting_dialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include "algo/algo_strings.h"
#include "algo/algo_view.h"
#include "app/helmsman_manage.h"
#include "app/ui/window_placement.h"
#include "spread/ui/template_menu.h"

namespace {

using namespace algo_text;

QString qs(const char* s) {
    return QString::fromUtf8(s);
}

QComboBox* outCombo(QWidget* parent, const char* name) {
    auto* c = new QComboBox(parent);
    c->setObjectName(name);
    c->addItems({qs(kSetOutStop), qs(kSetOutFast)});
    return c;
}

}  // namespace

AlgoSettingDialog::AlgoSettingDialog(const tagAlgoSetting& setting, CHelmsmanManage& manager,
                                     QWidget* parent)
    : QDialog(parent ? parent : window_placement::hostWindow()), m_manager(manager) {
    setWindowTitle(qs(kSetCaption));
    setObjectName("AlgoSettingDialog");

    m_baseLine = spin(1, 100000, "baseLine");
    m_autoKP = new QCheckBox(qs(kSetAutoKP), this);
    m_autoKP->setObjectName("autoKP");
    m_lotFixed = new QRadioButton(qs(kSetLotFixed), this);
    m_lotRatio = new QRadioButton(qs(kSetLotRatio), this);
    m_lotSingle = spin(1, 10000, "lotSingle");
    m_lotRandom = spin(0, 100, "lotRandom");
    m_lotRatioPct = spin(0, 100, "lotRatio");
    m_lotRatioPct->setSuffix("%");
    m_priceType = spin(-10, 10, "priceType");
    m_timeFixed = new QRadioButton(qs(kSetTimeFixed), this);
    m_timeTotal = new QRadioButton(qs(kSetTimeTotal), this);
    m_timeInterval = spin(1, 86400, "timeInterval");
    m_timeRandom = spin(0, 100, "timeRandom");
    m_timeTotalSec = spin(1, 86400 * 5, "timeTotal");
    m_timeSession = new QCheckBox(qs(kSetTimeSession), this);
    m_timeSession->setObjectName("timeSession");
    m_stopRange = spin(0, 100000, "stopRange");
    m_outStop = outCombo(this, "outStop");
    m_limitRange = spin(0, 100000, "limitRange");
    m_outLimit = outCombo(this, "outLimit");

    auto* lots = new QGroupBox(qs(kSetGroupLots), this);
    auto* lg = new QGridLayout(lots);
    lg->addWidget(new QLabel(qs(kSetBaseLine), lots), 0, 0);
    lg->addWidget(m_baseLine, 0, 1);
    lg->addWidget(m_autoKP, 0, 2, 1, 2);
    lg->addWidget(m_lotFixed, 1, 0);
    lg->addWidget(m_lotSingle, 1, 1);
    lg->addWidget(new QLabel(qs(kSetLotRandom), lots), 1, 2);
    lg->addWidget(m_lotRandom, 1, 3);
    lg->addWidget(m_lotRatio, 2, 0);
    lg->addWidget(m_lotRatioPct, 2, 1);

    auto* priceBox = new QGroupBox(qs(kSetGroupPrice), this);
    auto* pg = new QGridLayout(priceBox);
    pg->addWidget(new QLabel(qs(kSetPriceType), priceBox), 0, 0);
    pg->addWidget(m_priceType, 0, 1);
    pg->setColumnStretch(2, 1);

    auto* timeBox = new QGroupBox(qs(kSetGroupTime), this);
    auto* tg = new QGridLayout(timeBox);
    tg->addWidget(m_timeFixed, 0, 0);
    tg->addWidget(m_timeInterval, 0, 1);
    tg->addWidget(new QLabel(qs(kSetTimeRandom), timeBox), 0, 2);
    tg->addWidget(m_timeRandom, 0, 3);
    tg->addWidget(m_timeTotal, 1, 0);
    tg->addWidget(m_timeTotalSec, 1, 1);
    tg->addWidget(m_timeSession, 1, 2, 1, 2);

    auto* rangeBox = new QGroupBox(qs(kSetGroupRange), this);
    auto* rg = new QGridLayout(rangeBox);
    rg->addWidget(new QLabel(qs(kSetStopRange), rangeBox), 0, 0);
    rg->addWidget(m_stopRange, 0, 1);
    rg->addWidget(m_outStop, 0, 2);
    rg->addWidget(new QLabel(qs(kSetLimitRange), rangeBox), 1, 0);
    rg->addWidget(m_limitRange, 1, 1);
    rg->addWidget(m_outLimit, 1, 2);

    TemplateToolHooks<AlgoSetTemplate> hooks;
    hooks.collect = [this] { return AlgoSetTemplate{m_templateName, this->setting()}; };
    hooks.apply = [this](const AlgoSetTemplate& t) {
        m_templateName = t.strName;
        showSetting(t.setting);
    };
    hooks.currentName = [this] { return m_templateName; };
    hooks.setName = [this](const std::string& n) { m_templateName = n; };
    hooks.writeDefault = [](CProfileIni& ini, const AlgoSetTemplate& t) {
        writeAlgoDefault(ini, t.setting);
    };
    hooks.row = algoTemplateRow;
    m_templates = std::make_unique<CToolTemplates<AlgoSetTemplate>>(
        std::filesystem::path(m_manager.userDir()), template_files::kAlgoSet,
        TemplateManagerLayout{kTemplateCaption, kTemplateColumns, kTemplateListName},
        std::move(hooks), m_manager.prompter());
    auto* templateButton = new QPushButton(qs(kSetTemplates), this);
    templateButton->setObjectName("templates");
    templateButton->setMenu(new TemplateMenu(*m_templates, templateButton));

    auto* buttons = new QDialogButtonBox(this);
    buttons->addButton(templateButton, QDialogButtonBox::ResetRole);
    buttons->addButton(qs(kOk), QDialogButtonBox::AcceptRole)->setObjectName("ok");
    buttons->addButton(qs(kCancel), QDialogButtonBox::RejectRole)->setObjectName("cancel");
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(lots);
    layout->addWidget(priceBox);
    layout->addWidget(timeBox);
    layout->addWidget(rangeBox);
    layout->addWidget(buttons);

    for (QRadioButton* r : {m_lotFixed, m_lotRatio, m_timeFixed, m_timeTotal})
        connect(r, &QRadioButton::toggled, this, [this] { enableByChoice(); });
    showSetting(setting);
}

AlgoSettingDialog::~AlgoSettingDialog() = default;

QSpinBox* AlgoSettingDialog::spin(int lo, int hi, const char* name) {
    auto* s = new QSpinBox(this);
    s->setRange(lo, hi);
    s->setObjectName(name);
    s->setMinimumWidth(80);
    return s;
}

void AlgoSettingDialog::showSetting(const tagAlgoSetting& in) {
    const tagAlgoSetting s = clampAlgoSetting(in);
    m_baseLine->setValue(s.nBaseLine);
    m_autoKP->setChecked(s.bAutoKP != 0);
    (s.nLotType == 1 ? m_lotRatio : m_lotFixed)->setChecked(true);
    m_lotSingle->setValue(s.nLotSingle);
    m_lotRandom->setValue(s.nLotRandom);
    m_lotRatioPct->setValue(s.nLotRatio);
    m_priceType->setValue(s.nPriceType);
    (s.nTimeType != 0 ? m_timeTotal : m_timeFixed)->setChecked(true);
    m_timeInterval->setValue(s.nTimeInterval);
    m_timeRandom->setValue(s.nTimeRadom);
    m_timeTotalSec->setValue(s.nTimeTotal);
    m_timeSession->setChecked(s.nTimeSession != 0);
    m_stopRange->setValue(s.nStopRange);
    m_outStop->setCurrentIndex(s.nOutStopRange);
    m_limitRange->setValue(s.nLimitRange);
    m_outLimit->setCurrentIndex(s.nOutLimitRange);
    enableByChoice();
}

tagAlgoSetting AlgoSettingDialog::setting() const {
    tagAlgoSetting s;
    s.nBaseLine = m_baseLine->value();
    s.bAutoKP = m_autoKP->isChecked() ? 1 : 0;
    s.nLotType = m_lotRatio->isChecked() ? 1 : 0;
    s.nLotSingle = m_lotSingle->value();
    s.nLotRandom = m_lotRandom->value();
    s.nLotRatio = m_lotRatioPct->value();
    s.nPriceType = m_priceType->value();
    s.nTimeType = m_timeTotal->isChecked() ? 1 : 0;
    s.nTimeInterval = m_timeInterval->value();
    s.nTimeRadom = m_timeRandom->value();
    s.nTimeTotal = m_timeTotalSec->value();
    s.nTimeSession = m_timeSession->isChecked() ? 1 : 0;
    s.nStopRange = m_stopRange->value();
    s.nOutStopRange = m_outStop->currentIndex();
    s.nLimitRange = m_limitRange->value();
    s.nOutLimitRange = m_outLimit->currentIndex();
    return clampAlgoSetting(s);
}

void AlgoSettingDialog::enableByChoice() {
    const bool fixed = m_lotFixed->isChecked();
    m_lotSingle->setEnabled(fixed);
    m_lotRandom->setEnabled(fixed);
    m_lotRatioPct->setEnabled(!fixed);
    const bool interval = m_timeFixed->isChecked();
    m_timeInterval->setEnabled(interval);
    m_timeRandom->setEnabled(interval);
    m_timeTotalSec->setEnabled(!interval);
    m_timeSession->setEnabled(!interval);
}

bool editAlgoSettingModal(tagAlgoSetting& block, CHelmsmanManage& manager, QWidget* parent) {
    AlgoSettingDialog dialog(block, manager, parent);
    if (dialog.exec() != QDialog::Accepted) return false;
    block = dialog.setting();
    return true;
}
