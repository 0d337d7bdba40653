// MonitorProxy: what one monitor view shows of a RecordTableModel: optionally only the live
// rows (working orders of the shared order list, positions still held), sorted by any column.
// Numbers and times sort by value, other cells by text; rows that compare equal keep arrival
// order, so the default sort (time, descending) lists the newest first.
//
// A source row that is appended or changed is placed by binary search, and a re-sort moves
// rows with layoutChanged: selections and the current row follow their records, never the
// row numbers. Owned by the monitors; UI thread only.
#pragma once

#include <QSortFilterProxyModel>

#include "shell/record_table_model.h"

class MonitorProxy : public QSortFilterProxyModel {
public:
    MonitorProxy(RecordTableModel& source, bool liveOnly, QObject* parent = nullptr);

    RecordTableModel& records() const { return m_source; }
    // The record shown at a view row (nullptr when out of range).
    const RecordRow* rowAt(int viewRow) const;
    // The view row of a key (-1 when it is not shown).
    int rowOfKey(const QString& key) const;

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const override;
    bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;

private:
    RecordTableModel& m_source;
    bool m_liveOnly;
};

// Whether cell a sorts before cell b: numbers (and times) by value before texts, texts by
// code point. Equal cells are neither.
bool recordCellLess(const RecordCell& a, const RecordCell& b);
