// TickChart: the ticket's chart, a live line of the chosen symbol's last prices, docked
// beside the ticket. It stands in for the host's chart window: setCode() switches it to
// another symbol (dropping the old line), addTick() appends a price as quotes arrive.
//
// Owned by its OrderTicketWindow; UI thread only. Keeps the most recent kMaxPoints prices so
// a ticket left open all day stays light.
#pragma once

#include <QChartView>
#include <QString>
#include <cstdint>

class QLineSeries;
class QDateTimeAxis;
class QValueAxis;

class TickChart final : public QChartView {
    Q_OBJECT
public:
    static constexpr int kMaxPoints = 600;

    explicit TickChart(QWidget* parent = nullptr);

    // Switches to a symbol: clears the line and shows the code in the title.
    void setCode(const QString& code, int decimals);
    // Appends one last price at a calendar time in milliseconds; absent prices are skipped.
    void addTick(std::int64_t timeMs, double price);
    int pointCount() const;
    const QString& code() const { return m_code; }

private:
    void rescale();

    QLineSeries* m_series = nullptr;
    QDateTimeAxis* m_timeAxis = nullptr;
    QValueAxis* m_priceAxis = nullptr;
    QString m_code;
    double m_min = 0;
    double m_max = 0;
};
