#include "shell/record_table_model.h"

#include <QSet>

RecordTableModel::RecordTableModel(QStringList headers, QObject* parent)
    : QAbstractTableModel(parent), m_headers(std::move(headers)) {}

int RecordTableModel::upsert(RecordRow row) {
    const auto found = m_rowOfKey.constFind(row.key);
    if (found != m_rowOfKey.constEnd()) {
        const int r = *found;
        RecordRow& old = m_rows[static_cast<std::size_t>(r)];
        if (!(old == row)) {
            old = std::move(row);
            emit dataChanged(index(r, 0), index(r, columnCount() - 1));
        }
        return r;
    }
    const int r = static_cast<int>(m_rows.size());
    beginInsertRows({}, r, r);
    m_rowOfKey.insert(row.key, r);
    m_rows.push_back(std::move(row));
    endInsertRows();
    return r;
}

void RecordTableModel::setRows(std::vector<RecordRow> rows) {
    QSet<QString> keys;
    keys.reserve(static_cast<qsizetype>(rows.size()));
    for (const RecordRow& r : rows) keys.insert(r.key);
    bool someGone = false;
    for (const RecordRow& r : m_rows) {
        if (!keys.contains(r.key)) {
            someGone = true;
            break;
        }
    }
    if (someGone) {
        beginResetModel();
        m_rows = std::move(rows);
        m_rowOfKey.clear();
        for (std::size_t i = 0; i < m_rows.size(); ++i) {
            m_rowOfKey.insert(m_rows[i].key, static_cast<int>(i));
        }
        endResetModel();
        return;
    }
    upsertAll(std::move(rows));
}

void RecordTableModel::upsertAll(std::vector<RecordRow> rows) {
    // Known keys update in place; the new ones arrive in one insertion, which views and
    // proxies take in one step however many rows it holds.
    std::vector<RecordRow> added;
    QHash<QString, std::size_t> addedAt;
    for (RecordRow& r : rows) {
        if (m_rowOfKey.contains(r.key)) {
            upsert(std::move(r));
        } else if (const auto it = addedAt.constFind(r.key); it != addedAt.constEnd()) {
            added[*it] = std::move(r);  // the same record twice: the later one counts
        } else {
            addedAt.insert(r.key, added.size());
            added.push_back(std::move(r));
        }
    }
    if (added.empty()) return;
    const int first = static_cast<int>(m_rows.size());
    beginInsertRows({}, first, first + static_cast<int>(added.size()) - 1);
    for (RecordRow& r : added) {
        m_rowOfKey.insert(r.key, static_cast<int>(m_rows.size()));
        m_rows.push_back(std::move(r));
    }
    endInsertRows();
}

const RecordRow* RecordTableModel::rowAt(int row) const {
    if (row < 0 || row >= static_cast<int>(m_rows.size())) return nullptr;
    return &m_rows[static_cast<std::size_t>(row)];
}

int RecordTableModel::rowOfKey(const QString& key) const {
    return m_rowOfKey.value(key, -1);
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
        case Qt::DisplayRole:
            return cell.text;
        case Qt::ForegroundRole:
            return cell.color.isValid() ? QVariant(cell.color) : QVariant();
        case Qt::TextAlignmentRole:
            return int((cell.alignLeft ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
        case Qt::ToolTipRole:
            return r->tip.isEmpty() ? QVariant() : QVariant(r->tip);
        default:
            return {};
    }
}

QVariant RecordTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
    if (section < 0 || section >= m_headers.size()) return {};
    return m_headers[section];
}
