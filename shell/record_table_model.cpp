#include "shell/record_table_model.h"

RecordTableModel::RecordTableModel(QStringList headers, QObject* parent)
    : QAbstractTableModel(parent), m_headers(std::move(headers)) {}

void RecordTableModel::setRows(std::vector<RecordRow> rows) {
    bool sameKeys = rows.size() == m_rows.size();
    for (std::size_t i = 0; sameKeys && i < rows.size(); ++i) {
        sameKeys = rows[i].key == m_rows[i].key;
    }
    if (!sameKeys) {
        beginResetModel();
        m_rows = std::move(rows);
        endResetModel();
        return;
    }
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (rows[i] == m_rows[i]) continue;
        m_rows[i] = std::move(rows[i]);
        const int r = static_cast<int>(i);
        emit dataChanged(index(r, 0), index(r, columnCount() - 1));
    }
}

const RecordRow* RecordTableModel::rowAt(int row) const {
    if (row < 0 || row >= static_cast<int>(m_rows.size())) return nullptr;
    return &m_rows[static_cast<std::size_t>(row)];
}

int RecordTableModel::rowOfKey(const QString& key) const {
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        if (m_rows[i].key == key) return static_cast<int>(i);
    }
    return -1;
}

int RecordTableModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int RecordTableModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_headers.size());
}

QVariant RecordTableModel::data(const QModelIndex& index, int role) const {
    const RecordRow* r = rowAt(index.row());
    if (!r || index.column() < 0 || index.column() >= static_cast<int>(r->cells.size())) {
        return {};
    }
    const RecordCell& cell = r->cells[static_cast<std::size_t>(index.column())];
    switch (role) {
        case Qt::DisplayRole: return cell.text;
        case Qt::ForegroundRole: return cell.color.isValid() ? QVariant(cell.color) : QVariant();
        case Qt::TextAlignmentRole:
            return int((cell.alignLeft ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
        default: return {};
    }
}

QVariant RecordTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
    if (section < 0 || section >= m_headers.size()) return {};
    return m_headers[section];
}
