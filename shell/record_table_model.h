// RecordTableModel: the rows of one desk monitor (accounts, orders, fills, positions, trigger
// orders) as read-only text cells, kept in arrival order. Each row carries a key (the order,
// fill, position or trigger identifier); a row is found by key in constant time, so an event
// updates or appends exactly one row and never disturbs the others. Sorting and hiding rows
// is the views' business (MonitorProxy), which keeps the user's selection and scroll
// position stable while rows arrive.
//
// The row builders (monitor_rows.h) turn host records into rows; this model only holds them.
// Owned by the desk's monitors; UI thread only.
#pragma once

#include <QAbstractTableModel>
#include <QColor>
#include <QHash>
#include <QString>
#include <QStringList>
#include <cmath>
#include <limits>
#include <vector>

#include "host/records.h"

struct RecordCell {
    QString text;
    QColor color;  // invalid: the view's default
    bool alignLeft = false;
    // What the cell sorts by when it is a number or a time (calendar seconds); NaN: by text.
    double number = std::numeric_limits<double>::quiet_NaN();

    friend bool operator==(const RecordCell& a, const RecordCell& b) {
        return a.text == b.text && a.color == b.color &&
               (a.number == b.number || (std::isnan(a.number) && std::isnan(b.number)));
    }
};

struct RecordRow {
    QString key;
    std::vector<RecordCell> cells;
    // Shown by views that list only live rows: working orders, positions held.
    bool live = true;
    std::int32_t status = 0;  // the record's host status code, where it has one
    tagSymbol symbol;         // the instrument the row is about (empty for accounts)
    QString tip;              // the row's tooltip (an order's whole status message)

    friend bool operator==(const RecordRow& a, const RecordRow& b) {
        return a.key == b.key && a.live == b.live && a.status == b.status && a.tip == b.tip &&
               a.cells == b.cells;
    }
};

class RecordTableModel : public QAbstractTableModel {
public:
    explicit RecordTableModel(QStringList headers, QObject* parent = nullptr);

    // Adds the row at the end, or replaces the row with its key (signalled only when it
    // changed). Returns the row's index.
    int upsert(RecordRow row);
    // Many rows at once: known keys update in place, new ones are appended in one insertion.
    void upsertAll(std::vector<RecordRow> rows);
    // A full list (start-up, logon): rows with known keys update in place and new ones are
    // appended, so selections survive. Only when a key is gone does the model reset.
    void setRows(std::vector<RecordRow> rows);

    const RecordRow* rowAt(int row) const;
    int rowOfKey(const QString& key) const;
    const QStringList& headers() const { return m_headers; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    QStringList m_headers;
    std::vector<RecordRow> m_rows;
    QHash<QString, int> m_rowOfKey;
};
