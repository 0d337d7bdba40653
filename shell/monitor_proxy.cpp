#include "shell/monitor_proxy.h"

MonitorProxy::MonitorProxy(RecordTableModel& source, bool liveOnly, QObject* parent)
    : QSortFilterProxyModel(parent), m_source(source), m_liveOnly(liveOnly) {
    setDynamicSortFilter(true);
    setSourceModel(&source);
}

const RecordRow* MonitorProxy::rowAt(int viewRow) const {
    if (viewRow < 0 || viewRow >= rowCount()) return nullptr;
    return m_source.rowAt(mapToSource(index(viewRow, 0)).row());
}

int MonitorProxy::rowOfKey(const QString& key) const {
    const int sourceRow = m_source.rowOfKey(key);
    if (sourceRow < 0) return -1;
    return mapFromSource(m_source.index(sourceRow, 0)).row();
}

bool MonitorProxy::filterAcceptsRow(int sourceRow, const QModelIndex&) const {
    if (!m_liveOnly) return true;
    const RecordRow* r = m_source.rowAt(sourceRow);
    return r && r->live;
}

bool recordCellLess(const RecordCell& a, const RecordCell& b) {
    const bool an = !std::isnan(a.number), bn = !std::isnan(b.number);
    if (an && bn) return a.number < b.number;
    if (an != bn) return an;
    return QString::compare(a.text, b.text, Qt::CaseSensitive) < 0;
}

bool MonitorProxy::lessThan(const QModelIndex& left, const QModelIndex& right) const {
    const RecordRow* l = m_source.rowAt(left.row());
    const RecordRow* r = m_source.rowAt(right.row());
    const auto c = static_cast<std::size_t>(left.column());
    if (l && r && c < l->cells.size() && c < r->cells.size()) {
        if (recordCellLess(l->cells[c], r->cells[c])) return true;
        if (recordCellLess(r->cells[c], l->cells[c])) return false;
    }
    // Ties keep arrival order (reversed with a descending sort: newest first).
    return left.row() < right.row();
}
