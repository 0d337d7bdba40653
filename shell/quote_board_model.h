// QuoteBoardModel: the desk's quote board, one row per contract of the exchange's catalogue,
// holding the latest snapshot of each.
//
// Colours follow the convention of Chinese futures desks: a price above the previous
// settlement is red, below it green, equal white; volumes yellow, the code gold.
// Owned by the desk window; UI thread only. A quote updates its row in place (no allocation
// once the row exists) and signals only that row.
#pragma once

#include <QAbstractTableModel>
#include <QColor>
#include <QString>
#include <vector>

#include "host/records.h"

class QuoteBoardModel : public QAbstractTableModel {
public:
    enum Column {
        kCode,
        kName,
        kLast,
        kChange,
        kChangePct,
        kBid,
        kBidVol,
        kAsk,
        kAskVol,
        kVolume,
        kOpenInterest,
        kUpper,
        kLower,
        kPreSettle,
        kTime,
        kColumnCount
    };

    struct Row {
        tagSymbol symbol;
        QString name;
        QString exchangeName;
        int decimals = 2;
        IModuleFutureTrader::ITickEx tick;
        bool hasTick = false;
    };

    explicit QuoteBoardModel(QObject* parent = nullptr);

    // Replaces the rows (the catalogue changed).
    void setRows(std::vector<Row> rows);
    // Takes a quote; returns false when its contract is not on the board.
    bool applyQuote(const IModuleFutureTrader::ITickEx& tick);

    const Row* rowAt(int row) const;
    int rowOf(const tagSymbol& symbol) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    // The reference price the change is measured from: previous settlement, else previous
    // close (0 when neither is known).
    static double referencePrice(const IModuleFutureTrader::ITickEx& tick);
    // Red above the reference, green below, neutral otherwise (or when either is absent).
    static QColor priceColor(double price, double reference);

    static const QColor kUp;
    static const QColor kDown;
    static const QColor kFlat;
    static const QColor kVolumeColor;
    static const QColor kCodeColor;

private:
    QString cellText(const Row& r, int column) const;
    std::vector<Row> m_rows;
};
