// RecordTableModel: a read-only table of text cells for the desk's monitors (accounts,
// working orders, all orders, fills, positions, trigger orders). Each row carries a key
// (the order or trigger identifier, the account...) so a refresh that keeps the same keys
// updates cells in place and the user's selection and scroll position survive.
//
// The row builders (monitor_rows.h) turn host records into rows; this model only shows them.
// Owned by the desk window; UI thread only.
#pragma once

#include <QAbstractTableModel>
#include <QColor>
#include <QString>
#include <QStringList>
#include <vector>

struct RecordCell {
    QString text;
    QColor color;          // invalid: the view's default
    bool alignLeft = false;
};

struct RecordRow {
    QString key;
    std::vector<RecordCell> cells;
    friend bool operator==(const RecordRow& a, const RecordRow& b) {
        if (a.key != b.key || a.cells.size() != b.cells.size()) return false;
        for (std::size_t i = 0; i < a.cells.size(); ++i) {
            if (a.cells[i].text != b.cells[i].text || a.cells[i].color != b.cells[i].color) {
                return false;
            }
        }
        return true;
    }
};

class RecordTableModel : public QAbstractTableModel {
public:
    explicit RecordTableModel(QStringList headers, QObject* parent = nullptr);

    // Same keys in the same order: changed rows are signalled in place. Otherwise the model
    // resets.
    void setRows(std::vector<RecordRow> rows);
    const RecordRow* rowAt(int row) const;
    int rowOfKey(const QString& key) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    QStringList m_headers;
    std::vector<RecordRow> m_rows;
};
