#include "order/ui/tick_chart.h"

#include <QChart>
#include <QDateTime>
#include <QDateTimeAxis>
#include <QLineSeries>
#include <QValueAxis>
#include <algorithm>

#include "host/records.h"

TickChart::TickChart(QWidget* parent) : QChartView(parent) {
    setObjectName("tickChart");
    auto* chart = new QChart;
    chart->legend()->hide();
    chart->setMargins(QMargins(4, 4, 4, 4));
    chart->setBackgroundRoundness(0);
    QFont titleFont = chart->titleFont();
    titleFont.setPointSizeF(titleFont.pointSizeF() * 0.95);
    titleFont.setBold(true);
    chart->setTitleFont(titleFont);

    m_series = new QLineSeries(chart);
    QPen pen(QColor(0x1f, 0x5f, 0xbf));
    pen.setWidthF(1.5);
    m_series->setPen(pen);
    chart->addSeries(m_series);

    m_timeAxis = new QDateTimeAxis(chart);
    m_timeAxis->setFormat("HH:mm:ss");
    m_timeAxis->setTickCount(4);
    m_priceAxis = new QValueAxis(chart);
    m_priceAxis->setTickCount(6);
    for (QAbstractAxis* axis :
         {static_cast<QAbstractAxis*>(m_timeAxis), static_cast<QAbstractAxis*>(m_priceAxis)}) {
        QFont f = axis->labelsFont();
        f.setPointSizeF(f.pointSizeF() * 0.85);
        axis->setLabelsFont(f);
    }
    chart->addAxis(m_timeAxis, Qt::AlignBottom);
    chart->addAxis(m_priceAxis, Qt::AlignRight);
    m_series->attachAxis(m_timeAxis);
    m_series->attachAxis(m_priceAxis);

    // The view starts with a chart of its own and only lets go of it when given another.
    QChart* initial = this->chart();
    setChart(chart);
    delete initial;
    setRenderHint(QPainter::Antialiasing);
    setMinimumSize(360, 260);
}

void TickChart::setCode(const QString& code, int decimals) {
    m_code = code;
    m_series->clear();
    m_min = m_max = 0;
    m_priceAxis->setLabelFormat(QStringLiteral("%.") + QString::number(decimals) + "f");
    chart()->setTitle(code);
}

void TickChart::addTick(std::int64_t timeMs, double price) {
    if (!isPricePresent(price)) return;
    if (m_series->count() >= kMaxPoints)
        m_series->removePoints(0, m_series->count() - kMaxPoints + 1);
    m_series->append(static_cast<qreal>(timeMs), price);
    if (m_series->count() == 1) {
        m_min = m_max = price;
    } else {
        m_min = std::min(m_min, price);
        m_max = std::max(m_max, price);
    }
    rescale();
}

int TickChart::pointCount() const {
    return m_series->count();
}

void TickChart::rescale() {
    const auto points = m_series->points();
    if (points.isEmpty()) return;
    qint64 first = static_cast<qint64>(points.front().x());
    qint64 last = static_cast<qint64>(points.back().x());
    if (last - first < 60'000) first = last - 60'000;  // at least a minute wide
    m_timeAxis->setRange(QDateTime::fromMSecsSinceEpoch(first),
                         QDateTime::fromMSecsSinceEpoch(last));
    // Recompute the band from what is kept (old extremes drop out with their points).
    double lo = points.front().y(), hi = lo;
    for (const QPointF& p : points) {
        lo = std::min(lo, p.y());
        hi = std::max(hi, p.y());
    }
    m_min = lo;
    m_max = hi;
    const double pad = std::max((hi - lo) * 0.1, std::max(hi * 0.0005, 1e-4));
    m_priceAxis->setRange(lo - pad, hi + pad);
}
