// AMTOrderWindow: moving parameters between the controls and the core, the choosers, the
// labels that follow the direction, and the commands.
#include <QCheckBox>
#include <QComboBox>
#include <QDateTime>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTimeEdit>
#include <QToolButton>
#include <cstdio>

#include "amt/amt_strings.h"
#include "amt/ui/amt_order_window.h"
#include "app/helmsman_manage.h"

namespace {

QString q(const char* s) {
    return QString::fromUtf8(s);
}
QString q(const std::string& s) {
    return QString::fromStdString(s);
}

QString priceText(double v, int decimals) {
    return isPricePresent(v) ? QString::number(v, 'f', decimals) : q(amt_text::kNoValue);
}

QTime timeOfDay(std::int64_t secs) {
    return QDateTime::fromSecsSinceEpoch(secs).time();
}

}  // namespace

std::int64_t AMTOrderWindow::todayAt(const QTimeEdit* edit) const {
    const QDate today = QDateTime::fromSecsSinceEpoch(m_manager.clock().now()).date();
    return QDateTime(today, edit->time()).toSecsSinceEpoch();
}

void AMTOrderWindow::fillAccounts() {
    m_account->clear();
    std::vector<tagAccoutInfo> accounts;
    if (CSubscibeManage* host = m_manager.facade()) host->GetAvailableAccounts(accounts);
    for (const auto& a : accounts)
        m_account->addItem(q(a.strAccountID + "(" + a.strAccountName + ")"),
                           QStringList{q(a.strAccountID), q(a.strBrokerID), q(a.strAccountName)});
}

void AMTOrderWindow::fillExchanges() {
    m_filling = true;
    m_exchange->clear();
    std::vector<tagExchangeInfo> exchanges;
    if (CSubscibeManage* host = m_manager.facade()) host->GetAllExchanges(exchanges);
    for (const auto& e : exchanges) m_exchange->addItem(q(e.strName), e.nExchangeID);
    m_filling = false;
    if (m_exchange->count() > 0) fillSymbols(m_exchange->currentData().toInt());
}

void AMTOrderWindow::fillSymbols(int exchangeId) {
    m_filling = true;
    m_symbol->clear();
    std::vector<tagSymbol> symbols;
    if (CSubscibeManage* host = m_manager.facade())
        host->GetExchangeSymbols(exchangeId, symbols, 1);
    for (const auto& s : symbols) m_symbol->addItem(q(s.strCode));
    m_filling = false;
}

void AMTOrderWindow::onSymbolChosen() {
    tagSymbol s{static_cast<std::uint16_t>(m_exchange->currentData().toInt()),
                m_symbol->currentText().toStdString()};
    m_core->selectSymbol(s);
    const int d = m_core->priceDecimals();
    for (QDoubleSpinBox* b : {m_entryPrice, m_entryRange, m_exitPrice}) {
        b->setDecimals(d);
        b->setSingleStep(m_core->point() > 0 ? m_core->point() : 1.0);
    }
    refresh();
}

tagAMTParams AMTOrderWindow::collect() const {
    tagAMTParams p;
    p.strName = m_core->templateName();
    const QStringList account = m_account->currentData().toStringList();
    p.strAccountID = account.value(0).toStdString();
    p.strBrokerID = account.value(1).toStdString();
    p.strAccountName = account.value(2).toStdString();
    p.wExchangeID = static_cast<std::uint16_t>(m_exchange->currentData().toInt());
    p.szSymbolCode = m_symbol->currentText().toStdString();
    p.bLong = m_long->isChecked() ? 1 : 0;
    p.bHedge = m_hedge->isChecked() ? 1 : 0;
    p.tStartTime = todayAt(m_startTime);
    p.nDelaySecs = m_delay->value();
    p.nEveryLots = m_everyLots->value();
    p.nMaxLots = m_maxLots->value();
    p.nOrderOffset = m_offset->value();
    p.bEntryPriceCon = m_entryPriceOn->isChecked();
    p.nEntryPriceCon = m_entryPriceCon->currentIndex();
    p.dEntryPrice = m_entryPrice->value();
    p.bEntryRangeFilter = m_entryRangeOn->isChecked();
    p.dEntryRangeFilter = m_entryRange->value();
    p.bEntryVolFilter = m_entryVolOn->isChecked();
    p.nEntryVolFilter = m_entryVol->value();
    p.bEntryFilterOR = m_entryOr->isChecked();
    auto filters = [](const std::array<FilterRow, 3>& rows, std::array<tagAMTFilter, 3>& out) {
        for (std::size_t i = 0; i < 3; ++i) {
            out[i].bEnabled = rows[i].enabled->isChecked();
            out[i].strKey = rows[i].key->text().toStdString();
            out[i].nType = rows[i].type->currentIndex();
            out[i].bUseKey = rows[i].useKey->isChecked();
            out[i].strCompareKey = rows[i].compareKey->text().toStdString();
            out[i].dValue = rows[i].value->value();
        }
    };
    filters(m_entryFilters, p.entryFilters);
    p.bExitPriceCon = m_exitPriceOn->isChecked();
    p.nExitPriceCon = m_exitPriceCon->currentIndex();
    p.dExitPrice = m_exitPrice->value();
    p.nStopBasePriceType = m_basePrice->currentData().toInt();
    p.bStopLoss = m_stopLossOn->isChecked();
    p.nStopLossPoint = m_stopLoss->value();
    p.bTakeProfit = m_takeProfitOn->isChecked();
    p.nTakeProfitPoint = m_takeProfit->value();
    p.bTrailingStop = m_trailOn->isChecked();
    p.nTrailingStart = m_trailStart->value();
    p.nTrailingStopType = m_trailType->currentIndex();
    p.nTrailingStopSet = m_trailSet->value();
    p.bExitAtTime = m_exitTimeOn->isChecked();
    p.tExitTime = todayAt(m_exitTime);
    p.bExitVolFilter = m_exitVolOn->isChecked();
    p.nExitVolFilter = m_exitVol->value();
    p.bExitFilterOR = m_exitOr->isChecked();
    filters(m_exitFilters, p.exitFilters);
    return p;
}

void AMTOrderWindow::showParams(const tagAMTParams& p) {
    m_filling = true;
    const int account = m_account->findText(q(p.strAccountID), Qt::MatchStartsWith);
    if (account >= 0) m_account->setCurrentIndex(account);
    const int exchange = m_exchange->findData(static_cast<int>(p.wExchangeID));
    if (exchange >= 0 && exchange != m_exchange->currentIndex()) {
        m_exchange->setCurrentIndex(exchange);
        fillSymbols(p.wExchangeID);
        m_filling = true;
    }
    const int symbol = m_symbol->findText(q(p.szSymbolCode));
    m_symbol->setCurrentIndex(symbol >= 0 ? symbol : 0);
    m_long->setChecked(p.bLong != 0);
    m_short->setChecked(p.bLong == 0);
    m_hedge->setChecked(p.bHedge != 0);
    m_startTime->setTime(timeOfDay(p.tStartTime));
    m_delay->setValue(p.nDelaySecs);
    m_everyLots->setValue(p.nEveryLots);
    m_maxLots->setValue(p.nMaxLots);
    m_offset->setValue(p.nOrderOffset);
    m_entryPriceOn->setChecked(p.bEntryPriceCon != 0);
    m_entryPriceCon->setCurrentIndex(p.nEntryPriceCon == 1 ? 1 : 0);
    m_entryPrice->setValue(p.dEntryPrice);
    m_entryRangeOn->setChecked(p.bEntryRangeFilter != 0);
    m_entryRange->setValue(p.dEntryRangeFilter);
    m_entryVolOn->setChecked(p.bEntryVolFilter != 0);
    m_entryVol->setValue(p.nEntryVolFilter);
    (p.bEntryFilterOR ? m_entryOr : m_entryAnd)->setChecked(true);
    auto filters = [](std::array<FilterRow, 3>& rows, const std::array<tagAMTFilter, 3>& in) {
        for (std::size_t i = 0; i < 3; ++i) {
            rows[i].enabled->setChecked(in[i].bEnabled != 0);
            rows[i].key->setText(q(in[i].strKey));
            rows[i].type->setCurrentIndex(in[i].nType >= 0 && in[i].nType < 6 ? in[i].nType : 0);
            rows[i].useKey->setChecked(in[i].bUseKey != 0);
            rows[i].compareKey->setText(q(in[i].strCompareKey));
            rows[i].value->setValue(in[i].dValue);
        }
    };
    filters(m_entryFilters, p.entryFilters);
    m_exitPriceOn->setChecked(p.bExitPriceCon != 0);
    m_exitPriceCon->setCurrentIndex(p.nExitPriceCon == 1 ? 1 : 0);
    m_exitPrice->setValue(p.dExitPrice);
    m_basePrice->setCurrentIndex(p.nStopBasePriceType == 1 ? 1 : 0);
    m_stopLossOn->setChecked(p.bStopLoss != 0);
    m_stopLoss->setValue(p.nStopLossPoint);
    m_takeProfitOn->setChecked(p.bTakeProfit != 0);
    m_takeProfit->setValue(p.nTakeProfitPoint);
    m_trailOn->setChecked(p.bTrailingStop != 0);
    m_trailStart->setValue(p.nTrailingStart);
    m_trailType->setCurrentIndex(p.nTrailingStopType == 1 ? 1 : 0);
    updateLabels();
    m_trailSet->setValue(p.nTrailingStopSet);
    m_exitTimeOn->setChecked(p.bExitAtTime != 0);
    m_exitTime->setTime(timeOfDay(p.tExitTime ? p.tExitTime : p.tStartTime));
    m_exitVolOn->setChecked(p.bExitVolFilter != 0);
    m_exitVol->setValue(p.nExitVolFilter);
    (p.bExitFilterOR ? m_exitOr : m_exitAnd)->setChecked(true);
    filters(m_exitFilters, p.exitFilters);
    m_filling = false;
    onSymbolChosen();
}

void AMTOrderWindow::updateLabels() {
    const bool isLong = m_long->isChecked();
    m_entryLabel->setText(q(CAMTOrder::entryLabel(isLong, m_entryPriceCon->currentIndex())));
    m_exitLabel->setText(q(CAMTOrder::exitLabel(isLong, m_exitPriceCon->currentIndex())));
    m_extremeCaption->setText(q(isLong ? amt_text::kLabelHighest : amt_text::kLabelLowest));
    // Points give back 0-9999, a percentage of the best profit 1-100.
    if (m_trailType->currentIndex() == 1)
        m_trailSet->setRange(1, 100);
    else
        m_trailSet->setRange(0, 9999);
}

void AMTOrderWindow::setParamsEnabled(bool on) {
    for (QWidget* w : std::initializer_list<QWidget*>{
             m_account, m_exchange, m_symbol, m_long, m_short, m_hedge, m_startTime, m_delay,
             m_everyLots, m_maxLots, m_offset, m_entryBox, m_exitBox, m_templateButton})
        w->setEnabled(on);
}

void AMTOrderWindow::refresh() {
    using namespace amt_text;
    const CAMTOrder::State& s = m_core->state();
    const CAMTOrder::Quote& t = m_core->quote();
    const int d = m_core->priceDecimals();
    auto px = [d](double v) { return priceText(v, d).toStdString(); };
    auto vol = [](double v) { return QString::number(v, 'f', 0).toStdString(); };
    char line[256];
    std::snprintf(line, sizeof line, kQuoteLine, px(t.last).c_str(), px(t.bid).c_str(),
                  vol(t.bidVol).c_str(), px(t.ask).c_str(), vol(t.askVol).c_str(),
                  px(t.upper).c_str(), px(t.lower).c_str());
    m_quote->setText(q(line));
    if (!m_position->hasFocus()) m_position->setValue(s.position);
    m_average->setText(priceText(s.avgPrice, d));
    m_first->setText(priceText(s.firstPrice, d));
    m_extreme->setText(priceText(s.extreme, d));
    char buf[64];
    std::snprintf(buf, sizeof buf, kCumulative, s.cumulative);
    m_cumulative->setText(q(buf));
    setWindowTitle(q(m_core->caption()));
    m_state->setText(q(!s.running ? kStopped : s.suspended ? kSuspended : kRunning));
    m_start->setEnabled(!s.running);
    m_stop->setEnabled(s.running);
    m_resume->setEnabled(s.suspended);
    setParamsEnabled(!s.running);
}

bool AMTOrderWindow::startStrategy() {
    if (m_core->state().running) return false;
    m_core->setPositionByHand(m_position->value());
    m_core->setParams(collect());
    const bool ok = m_core->start();
    // The checks may have taken the start time (now) or an account.
    if (ok) showParams(m_core->params());
    refresh();
    return ok;
}

void AMTOrderWindow::stopStrategy() {
    m_core->stop();
}

void AMTOrderWindow::resumeEntries() {
    m_core->resumeEntries();
}
