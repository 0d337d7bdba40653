// ManualSpreadChart: the manual spread's chart pane, the spread bid ("SpreadBid", green) and
// the spread ask ("SpreadAsk", red) over the tool's recent history, oldest point on the left.
// The vertical axis runs from the smallest bid to the largest ask, widened by the history's
// fixed margin. Hovering a line shows the point's tip, "买盘:%g" or "卖盘:%g".
//
// Owned by the manual spread window; UI thread only.
#pragma once

#include <QChartView>
#include <QString>

class CSpreadHistory;
class QLineSeries;
class QValueAxis;

class ManualSpreadChart final : public QChartView {
    Q_OBJECT
public:
    explicit ManualSpreadChart(QWidget* parent = nullptr);

    // Redraws both lines from the history.
    void setHistory(const CSpreadHistory& history);

    QLineSeries* bidSeries() const { return m_bid; }
    QLineSeries* askSeries() const { return m_ask; }
    QValueAxis* priceAxis() const { return m_priceAxis; }
    // The tip of point `index` of a series ("" outside it).
    QString tipAt(const QLineSeries* series, int index) const;

private:
    void showTip(const QLineSeries* series, const QPointF& at, bool entered);

    QLineSeries* m_bid = nullptr;
    QLineSeries* m_ask = nullptr;
    QValueAxis* m_indexAxis = nullptr;
    QValueAxis* m_priceAxis = nullptr;
};
