#include "spread/ui/manual_spread_chart.h"

#include <QChart>
#include <QCursor>
#include <QLegendMarker>
#include <QLineSeries>
#include <QToolTip>
#include <QValueAxis>
#include <cmath>
#include <cstdio>

#include "spread/manual_spread_calc.h"
#include "spread/manual_spread_strings.h"

namespace {

QLineSeries* makeSeries(QChart* chart, const char* name, const QColor& color) {
    auto* s = new QLineSeries(chart);
    s->setName(QString::fromUtf8(name));
    QPen pen(color);
    pen.setWidthF(1.5);
    s->setPen(pen);
    chart->addSeries(s);
    return s;
}

}  // namespace

ManualSpreadChart::ManualSpreadChart(QWidget* parent) : QChartView(parent) {
    setObjectName("manualSpreadChart");
    auto* chart = new QChart;
    chart->setMargins(QMargins(2, 2, 2, 2));
    chart->setBackgroundRoundness(0);
    chart->legend()->setAlignment(Qt::AlignTop);
    m_bid = makeSeries(chart, manual_spread_text::kSeriesBid, QColor(0x1a, 0x9a, 0x3a));
    m_ask = makeSeries(chart, manual_spread_text::kSeriesAsk, QColor(0xd0, 0x21, 0x21));

    m_indexAxis = new QValueAxis(chart);
    m_indexAxis->setRange(0, CSpreadHistory::kMaxPoints - 1);
    m_indexAxis->setLabelsVisible(false);
    m_indexAxis->setTickCount(6);
    m_priceAxis = new QValueAxis(chart);
    m_priceAxis->setTickCount(6);
    QFont f = m_priceAxis->labelsFont();
    f.setPointSizeF(f.pointSizeF() * 0.85);
    m_priceAxis->setLabelsFont(f);
    chart->addAxis(m_indexAxis, Qt::AlignBottom);
    chart->addAxis(m_priceAxis, Qt::AlignRight);
    for (QLineSeries* s : {m_bid, m_ask}) {
        s->attachAxis(m_indexAxis);
        s->attachAxis(m_priceAxis);
        connect(s, &QLineSeries::hovered, this,
                [this, s](const QPointF& at, bool entered) { showTip(s, at, entered); });
    }

    // The view starts with a chart of its own and only lets go of it when given another.
    QChart* initial = this->chart();
    setChart(chart);
    delete initial;
    setRenderHint(QPainter::Antialiasing);
    setMinimumSize(320, 240);
}

void ManualSpreadChart::setHistory(const CSpreadHistory& history) {
    QList<QPointF> bid;
    QList<QPointF> ask;
    bid.reserve(static_cast<qsizetype>(history.size()));
    ask.reserve(static_cast<qsizetype>(history.size()));
    for (std::size_t i = 0; i < history.size(); ++i) {
        bid.append(QPointF(static_cast<qreal>(i), history.at(i).bid));
        ask.append(QPointF(static_cast<qreal>(i), history.at(i).ask));
    }
    m_bid->replace(bid);
    m_ask->replace(ask);
    const auto [low, high] = history.range();
    if (history.empty())
        m_priceAxis->setRange(-CSpreadHistory::kRangeMargin, CSpreadHistory::kRangeMargin);
    else
        m_priceAxis->setRange(low, high);
    // Every label with the same decimals, so none is cut to fit the axis.
    const double step = (m_priceAxis->max() - m_priceAxis->min()) / (m_priceAxis->tickCount() - 1);
    m_priceAxis->setLabelFormat(step >= 10 ? "%.0f" : step >= 1 ? "%.1f" : "%.2f");
}

QString ManualSpreadChart::tipAt(const QLineSeries* series, int index) const {
    if (index < 0 || index >= series->count()) return {};
    char buf[64];
    const bool isBid = series == m_bid;
    std::snprintf(buf, sizeof buf,
                  isBid ? manual_spread_text::kTipBid : manual_spread_text::kTipAsk,
                  series->at(index).y());
    return QString::fromUtf8(buf);
}

void ManualSpreadChart::showTip(const QLineSeries* series, const QPointF& at, bool entered) {
    if (!entered) {
        QToolTip::hideText();
        return;
    }
    QToolTip::showText(QCursor::pos(), tipAt(series, static_cast<int>(std::lround(at.x()))), this);
}
