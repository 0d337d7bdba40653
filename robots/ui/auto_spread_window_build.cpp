// The auto spread window's controls and how they are laid out: the leg rows with the
// switches, the live spread, the four lines, the sizes and timing, and the state with the
// table of rounds.
#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QSpinBox>
#include <QTableWidget>
#include <QVBoxLayout>

#include "app/helmsman_manage.h"
#include "robots/ui/auto_spread_labels.h"
#include "robots/ui/auto_spread_window.h"
#include "spread/ui/spread_price_rows.h"

namespace {

namespace t = auto_spread_label;

QString q(const char* s) {
    return QString::fromUtf8(s);
}
QString q(const std::string& s) {
    return QString::fromStdString(s);
}

QSpinBox* countSpin(QWidget* parent, int low, int high) {
    auto* s = new QSpinBox(parent);
    s->setRange(low, high);
    s->setAlignment(Qt::AlignRight);
    return s;
}

// A switch that is down must be seen at a glance, in any theme.
QPushButton* toggle(QWidget* parent, const char* text) {
    auto* b = new QPushButton(q(text), parent);
    b->setCheckable(true);
    b->setStyleSheet(
        "QPushButton:checked{background:#ffd666;color:#202020;border:1px solid #b58900;"
        "border-radius:2px;padding:3px 6px}");
    b->setMinimumWidth(b->fontMetrics().horizontalAdvance(b->text()) + 24);
    return b;
}

// A real shown without trailing zeros (1, 1.6, -12.2): a multiplier or a spread price.
class RealSpin final : public QDoubleSpinBox {
public:
    RealSpin(QWidget* parent, double low, double high, double step) : QDoubleSpinBox(parent) {
        setLocale(QLocale::c());
        setDecimals(4);
        setRange(low, high);
        setSingleStep(step);
        setAlignment(Qt::AlignRight);
    }
    QString textFromValue(double v) const override { return q(spreadPriceText(v)); }
};

QLabel* valueLabel(QWidget* parent, int minChars) {
    auto* l = new QLabel(parent);
    l->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    l->setMinimumWidth(l->fontMetrics().horizontalAdvance(QString(minChars, QChar('8'))));
    return l;
}

// How each of the four lines compares the spread, in the order of m_lines.
constexpr SpreadAction kLineActions[4] = {SpreadAction::LongEntry, SpreadAction::LongExit,
                                          SpreadAction::ShortEntry, SpreadAction::ShortExit};

// A long entry and a short exit buy the spread at its ask when it is low enough; the other
// two sell it at its bid when it is high enough.
const char* comparisonText(SpreadAction a) {
    return spreadSide(a) > 0 ? t::kAtMost : t::kAtLeast;
}

}  // namespace

QWidget* AutoSpreadWindow::buildLegs() {
    auto* box = new QGroupBox(this);
    auto* grid = new QGridLayout(box);
    grid->setContentsMargins(8, 6, 8, 6);
    grid->setHorizontalSpacing(6);
    grid->setVerticalSpacing(4);
    const char* heads[] = {t::kAccount, t::kExchange, t::kSymbol, t::kUnit,
                           t::kLots,    t::kBid,      t::kAsk,    t::kLegState};
    for (int c = 0; c < 8; ++c) {
        auto* head = new QLabel(q(heads[c]), box);
        if (c >= 3 && c <= 6) head->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        grid->addWidget(head, 0, c + 1);
    }
    const char* titles[] = {t::kLegA, t::kLegB, t::kLegC};
    std::vector<tagExchangeInfo> exchanges;
    if (CSubscibeManage* host = m_manager.facade()) host->GetAllExchanges(exchanges);
    for (int i = 0; i < CAutoSpread::kLegs; ++i) {
        LegRow& row = m_legs[i];
        row.title = new QLabel(q(titles[i]), box);
        row.account = new QComboBox(box);
        row.account->setMinimumContentsLength(14);
        row.exchange = new QComboBox(box);
        for (const tagExchangeInfo& e : exchanges)
            row.exchange->addItem(q(e.strName), e.nExchangeID);
        row.symbol = new QComboBox(box);
        row.symbol->setMinimumContentsLength(8);
        row.unit = new RealSpin(box, -10000, 10000, 0.1);
        row.lots = countSpin(box, 0, 9999);
        row.bid = valueLabel(box, 9);
        row.ask = valueLabel(box, 9);
        row.state = new QLabel(box);
        row.state->setMinimumWidth(
            row.state->fontMetrics().horizontalAdvance(QString(14, QChar(0x6C49))));
        const int r = i + 1;
        QWidget* cells[] = {row.title, row.account, row.exchange, row.symbol, row.unit,
                            row.lots,  row.bid,     row.ask,      row.state};
        for (int c = 0; c < 9; ++c) grid->addWidget(cells[c], r, c);
    }
    grid->setColumnStretch(8, 1);

    m_butterfly = toggle(box, t::kButterfly);
    m_change = toggle(box, t::kChange);
    auto* switches = new QHBoxLayout;
    switches->addWidget(m_butterfly);
    switches->addWidget(m_change);
    switches->addStretch(1);
    grid->addLayout(switches, 4, 1, 1, 8);
    return box;
}

QWidget* AutoSpreadWindow::buildSpread() {
    auto* box = new QGroupBox(q(t::kSpreadBox), this);
    auto* grid = new QGridLayout(box);
    grid->setContentsMargins(8, 6, 8, 6);
    m_rows = addSpreadPriceRows(grid, box,
                                box->fontMetrics().horizontalAdvance(QString(14, QChar('8'))));
    grid->setRowStretch(3, 1);
    return box;
}

QWidget* AutoSpreadWindow::buildLines() {
    auto* box = new QGroupBox(q(t::kLinesBox), this);
    auto* grid = new QGridLayout(box);
    grid->setContentsMargins(8, 6, 8, 6);
    for (int i = 0; i < 4; ++i) {
        LineRow& line = m_lines[i];
        line.on = new QCheckBox(q(spreadActionText(kLineActions[i])), box);
        line.price = new RealSpin(box, -10000000, 10000000, 1);
        line.price->setMinimumWidth(line.price->fontMetrics().horizontalAdvance("-88888.8888") +
                                    30);
        grid->addWidget(line.on, i, 0);
        grid->addWidget(new QLabel(q(comparisonText(kLineActions[i])), box), i, 1);
        grid->addWidget(line.price, i, 2);
    }
    return box;
}

QWidget* AutoSpreadWindow::buildOrders() {
    auto* box = new QGroupBox(q(t::kOrderBox), this);
    auto* grid = new QGridLayout(box);
    grid->setContentsMargins(8, 6, 8, 6);
    grid->setVerticalSpacing(4);
    m_everyLots = countSpin(box, 0, 9999);
    m_maxLots = countSpin(box, 0, 99999);
    m_orderOffset = countSpin(box, 0, 999);
    m_unstayedOffset = countSpin(box, 0, 999);
    m_stay = countSpin(box, 0, 600000);
    m_stay->setSingleStep(100);
    m_delay = countSpin(box, 0, 86400);
    m_gridOffset = countSpin(box, 0, 9999);
    m_gridLots = countSpin(box, 0, 9999);
    m_stepTrade = new QCheckBox(q(t::kStepTrade), box);
    m_stepExit = new QCheckBox(q(t::kStepExit), box);
    m_confirm = new QCheckBox(q(t::kConfirmOrder), box);
    const std::pair<const char*, QSpinBox*> cells[] = {
        {t::kEveryLots, m_everyLots},
        {t::kMaxLots, m_maxLots},
        {t::kOrderOffset, m_orderOffset},
        {t::kUnstayedOffset, m_unstayedOffset},
        {t::kStay, m_stay},
        {t::kDelay, m_delay},
        {t::kGridOffset, m_gridOffset},
        {t::kGridLots, m_gridLots},
    };
    int i = 0;
    for (const auto& [label, spin] : cells) {
        // The step settings go below their switches.
        const int row = i / 2 + (i >= 6 ? 1 : 0), col = (i % 2) * 2;
        grid->addWidget(new QLabel(q(label), box), row, col);
        grid->addWidget(spin, row, col + 1);
        ++i;
    }
    grid->addWidget(m_stepTrade, 3, 0, 1, 2);
    grid->addWidget(m_stepExit, 3, 2, 1, 2);
    grid->addWidget(m_confirm, 5, 0, 1, 2);
    grid->setColumnStretch(1, 1);
    grid->setColumnStretch(3, 1);
    grid->setColumnMinimumWidth(2, 60);
    return box;
}

QWidget* AutoSpreadWindow::buildState() {
    auto* box = new QGroupBox(q(t::kStateBox), this);
    auto* layout = new QVBoxLayout(box);
    layout->setContentsMargins(8, 6, 8, 6);
    layout->setSpacing(4);
    m_position = countSpin(box, -99999, 99999);
    m_update = new QPushButton(q(t::kUpdate), box);
    m_average = valueLabel(box, 10);
    m_realised = valueLabel(box, 10);
    auto* figures = new QHBoxLayout;
    figures->addWidget(new QLabel(q(t::kPosition), box));
    figures->addWidget(m_position);
    figures->addWidget(m_update);
    figures->addSpacing(16);
    figures->addWidget(new QLabel(q(t::kAverage), box));
    figures->addWidget(m_average);
    figures->addSpacing(16);
    figures->addWidget(new QLabel(q(t::kRealised), box));
    figures->addWidget(m_realised);
    figures->addStretch(1);
    layout->addLayout(figures);

    m_status = new QLabel(box);
    QFont f = m_status->font();
    f.setBold(true);
    m_status->setFont(f);
    auto* status = new QHBoxLayout;
    status->addWidget(new QLabel(q(t::kStatus), box));
    status->addWidget(m_status, 1);
    layout->addLayout(status);

    m_roundTable = new QTableWidget(0, 7, box);
    QStringList heads;
    for (const char* h : t::kRoundHeads) heads << q(h);
    m_roundTable->setHorizontalHeaderLabels(heads);
    m_roundTable->verticalHeader()->hide();
    m_roundTable->verticalHeader()->setDefaultSectionSize(m_roundTable->fontMetrics().height() + 6);
    m_roundTable->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    m_roundTable->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_roundTable->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_roundTable->setMinimumHeight(m_roundTable->verticalHeader()->defaultSectionSize() * 5 + 28);
    layout->addWidget(m_roundTable, 1);
    return box;
}
