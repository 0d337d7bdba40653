// MonitorSet's commands: cancelling, trigger deletion, logon, the context menu, copying and
// CSV export. Every command reads the keys of the records it acts on before it asks or acts,
// so rows that move or arrive meanwhile (a question's event loop keeps the monitors live)
// never redirect it to another order.
#include <QClipboard>
#include <QFile>
#include <QFileDialog>
#include <QGuiApplication>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QMenu>
#include <QTabWidget>
#include <QTableView>
#include <algorithm>
#include <set>

#include "host/gbk_codec.h"
#include "shell/monitor_set.h"
#include "shell/shell_texts.h"
#include "sim/sim_exchange.h"

namespace t = shell_text;

namespace {

std::string u8(const QString& s) {
    return s.toStdString();
}

QString csvCell(const QString& text) {
    if (!text.contains(',') && !text.contains('"') && !text.contains('\n') &&
        !text.contains('\r')) {
        return text;
    }
    QString quoted = text;
    quoted.replace('"', QStringLiteral("\"\""));
    return '"' + quoted + '"';
}

// Cancellable: working and not already being cancelled.
bool cancellable(const RecordRow& r) {
    return r.live && r.status != kOrderCancelling;
}

}  // namespace

// ---- Reading views -------------------------------------------------------------------------

std::vector<const RecordRow*> MonitorSet::selectedRecords(const QTableView* view) {
    std::vector<const RecordRow*> out;
    const auto* proxy = static_cast<const MonitorProxy*>(view->model());
    QModelIndexList rows = view->selectionModel()->selectedRows();
    std::sort(rows.begin(), rows.end(),
              [](const QModelIndex& a, const QModelIndex& b) { return a.row() < b.row(); });
    out.reserve(static_cast<std::size_t>(rows.size()));
    for (const QModelIndex& i : rows) {
        if (const RecordRow* r = proxy->rowAt(i.row())) out.push_back(r);
    }
    return out;
}

QStringList visibleTitles(const QTableView& view) {
    QStringList titles;
    const QHeaderView* h = view.horizontalHeader();
    for (int v = 0; v < h->count(); ++v) {
        const int c = h->logicalIndex(v);
        if (!h->isSectionHidden(c)) {
            titles << view.model()->headerData(c, Qt::Horizontal, Qt::DisplayRole).toString();
        }
    }
    return titles;
}

QStringList rowTexts(const QTableView& view, int viewRow) {
    QStringList cells;
    const QHeaderView* h = view.horizontalHeader();
    const QAbstractItemModel* m = view.model();
    for (int v = 0; v < h->count(); ++v) {
        const int c = h->logicalIndex(v);
        if (!h->isSectionHidden(c)) cells << m->data(m->index(viewRow, c)).toString();
    }
    return cells;
}

QString monitorCsv(const QTableView& view) {
    QString out;
    auto line = [&out](const QStringList& cells) {
        QStringList quoted;
        quoted.reserve(cells.size());
        for (const QString& c : cells) quoted << csvCell(c);
        out += quoted.join(',') + QStringLiteral("\r\n");
    };
    line(visibleTitles(view));
    for (int r = 0; r < view.model()->rowCount(); ++r) line(rowTexts(view, r));
    return out;
}

// ---- Orders and triggers -------------------------------------------------------------------

int MonitorSet::cancelOrder(const QString& key) {
    const RecordRow* r = m_orders->rowAt(m_orders->rowOfKey(key));
    if (!r || !cancellable(*r)) return 0;
    auto cell = [r](int c) { return r->cells.at(static_cast<std::size_t>(c)).text; };
    const QString question =
        QString::fromUtf8(t::kAskCancelOne)
            .arg(cell(kOrderColId), cell(kOrderColSymbol), cell(kOrderColDirection),
                 cell(kOrderColPrice), cell(kOrderColVolume));
    if (!m_prompter.ask(t::kConfirm, u8(question))) return 0;
    const QStringList k = splitRowKey(key);
    if (k.size() != 3) return 0;
    return m_exchange.DeleteOrder(u8(k[0]), u8(k[1]), u8(k[2])) ? 1 : 0;
}

int MonitorSet::deleteOrders(const QStringList& keys) {
    int sent = 0;
    for (const QString& key : keys) {
        const QStringList k = splitRowKey(key);
        if (k.size() == 3 && m_exchange.DeleteOrder(u8(k[0]), u8(k[1]), u8(k[2]))) ++sent;
    }
    return sent;
}

int MonitorSet::cancelSelected(QTableView* view) {
    QStringList keys;
    for (const RecordRow* r : selectedRecords(view)) {
        if (cancellable(*r)) keys << r->key;
    }
    if (keys.isEmpty()) {
        m_prompter.inform(t::kPrompt, t::kPickWorkingOrder);
        return 0;
    }
    if (keys.size() == 1) return cancelOrder(keys.front());
    if (!m_prompter.ask(t::kConfirm, u8(QString::fromUtf8(t::kAskCancelMany).arg(keys.size())))) {
        return 0;
    }
    return deleteOrders(keys);
}

bool MonitorSet::modifySelected(QTableView* view) {
    for (const RecordRow* r : selectedRecords(view)) {
        if (!cancellable(*r)) continue;
        const QStringList k = splitRowKey(r->key);
        tagBrokerOrder order;
        if (k.size() == 3 && m_exchange.GetOrder(order, u8(k[0]), u8(k[1]), u8(k[2])) &&
            m_hooks.modifyOrder) {
            m_hooks.modifyOrder(order);
            return true;
        }
    }
    m_prompter.inform(t::kPrompt, t::kPickOrderToModify);
    return false;
}

int MonitorSet::cancelAllWorking() {
    flush();  // count what the exchange has reported so far
    QStringList keys;
    for (int i = 0; i < m_orders->rowCount(); ++i) {
        const RecordRow* r = m_orders->rowAt(i);
        if (cancellable(*r)) keys << r->key;
    }
    if (keys.isEmpty()) {
        m_prompter.inform(t::kPrompt, t::kNothingToCancel);
        return 0;
    }
    if (!m_prompter.ask(t::kConfirm, u8(QString::fromUtf8(t::kAskCancelAll).arg(keys.size())))) {
        return 0;
    }
    return deleteOrders(keys);
}

void MonitorSet::deleteSelectedTriggers() {
    QStringList keys;
    for (const RecordRow* r : selectedRecords(m_triggerView)) keys << r->key;
    for (const QString& key : keys) {
        const QStringList k = splitRowKey(key);
        if (k.size() == 3) m_exchange.DeleteTriggerOrder(u8(k[0]), u8(k[1]), u8(k[2]));
    }
}

// ---- Accounts and positions ----------------------------------------------------------------

void MonitorSet::logonSelected(bool on) {
    std::set<QString> ids;
    for (const RecordRow* r : selectedRecords(m_accountView)) ids.insert(r->key);
    if (ids.empty()) {
        // No selection: act on the account under the cursor, else on all of them.
        const QModelIndex cur = m_accountView->currentIndex();
        if (const RecordRow* r =
                cur.isValid() ? proxyOf(m_accountView)->rowAt(cur.row()) : nullptr) {
            ids.insert(r->key);
        } else {
            for (int i = 0; i < m_accounts->rowCount(); ++i) ids.insert(m_accounts->rowAt(i)->key);
        }
    }
    for (const QString& id : ids) {
        if (on) {
            m_exchange.logon(u8(id));
        } else {
            m_exchange.logoff(u8(id));
        }
    }
    flush(true);
    if (m_hooks.accountsChanged) m_hooks.accountsChanged();
}

bool MonitorSet::selectedPosition(tagOpenedPosition& out) const {
    QString wanted;
    const QModelIndex cur = m_positionView->currentIndex();
    if (const RecordRow* r = cur.isValid() ? proxyOf(m_positionView)->rowAt(cur.row()) : nullptr) {
        wanted = r->key;
    }
    std::vector<tagOpenedPosition> positions;
    m_exchange.GetAllPositions(positions);
    for (const tagOpenedPosition& p : positions) {
        if (p.dLong < 0.5 && p.dShort < 0.5) continue;
        // Without a selection the first held position stands in.
        if (wanted.isEmpty() || positionKey(p) == wanted) {
            out = p;
            return true;
        }
    }
    return false;
}

// ---- Copy, export, context menu ------------------------------------------------------------

void MonitorSet::copySelected(QTableView* view) const {
    QModelIndexList rows = view->selectionModel()->selectedRows();
    std::sort(rows.begin(), rows.end(),
              [](const QModelIndex& a, const QModelIndex& b) { return a.row() < b.row(); });
    QStringList lines;
    for (const QModelIndex& i : rows) lines << rowTexts(*view, i.row()).join('\t');
    if (!lines.isEmpty()) QGuiApplication::clipboard()->setText(lines.join('\n') + '\n');
}

bool MonitorSet::exportCsv(QTableView* view, const QString& path) {
    const std::string bytes = gbk::fromUtf8(u8(monitorCsv(*view)));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) ||
        file.write(bytes.data(), static_cast<qint64>(bytes.size())) !=
            static_cast<qint64>(bytes.size())) {
        m_prompter.inform(t::kPrompt, u8(QString::fromUtf8(t::kExportFailed).arg(path)),
                          PromptIcon::Warning);
        return false;
    }
    return true;
}

QMenu* MonitorSet::contextMenu(QTableView* view, const QPoint& pos) {
    auto* menu = new QMenu(view);
    const std::vector<const RecordRow*> selected = selectedRecords(view);
    if (isOrderView(view)) {
        QAction* cancel =
            menu->addAction(t::kMenuCancel, this, [this, view] { cancelSelected(view); });
        cancel->setEnabled(std::any_of(selected.begin(), selected.end(),
                                       [](const RecordRow* r) { return cancellable(*r); }));
        if (m_hooks.modifyOrder &&
            (!m_hooks.toolAvailable || m_hooks.toolAvailable("HelmsmanModifyOrder"))) {
            QAction* modify =
                menu->addAction(t::kModifyOrder, this, [this, view] { modifySelected(view); });
            modify->setEnabled(std::any_of(selected.begin(), selected.end(),
                                           [](const RecordRow* r) { return cancellable(*r); }));
        }
    } else if (view == m_triggerView) {
        QAction* del =
            menu->addAction(t::kDeleteTrigger, this, [this] { deleteSelectedTriggers(); });
        del->setEnabled(!selected.empty());
    }
    QAction* copy = menu->addAction(t::kMenuCopy, this, [this, view] { copySelected(view); });
    copy->setShortcut(QKeySequence::Copy);
    copy->setEnabled(!selected.empty());
    const QModelIndex at = view->indexAt(pos);
    const RecordRow* row = at.isValid() ? proxyOf(view)->rowAt(at.row()) : nullptr;
    if (row && !row->symbol.empty() && m_hooks.openTicket) {
        const tagSymbol symbol = row->symbol;
        menu->addAction(
            QString::fromUtf8(t::kMenuOpenTicket).arg(QString::fromStdString(symbol.strCode)), this,
            [this, symbol] { m_hooks.openTicket(symbol); });
    }
    menu->addSeparator();
    menu->addAction(t::kMenuExport, this, [this, view] {
        int tab = m_tabs->indexOf(view);
        if (tab < 0) tab = m_tabs->indexOf(view->parentWidget());
        const QString name = view == m_accountView ? QString::fromUtf8(t::kAccounts)
                             : tab >= 0            ? m_tabs->tabText(tab)
                                                   : m_tabs->tabText(m_tabs->currentIndex());
        const QString path = QFileDialog::getSaveFileName(
            view, t::kExportTitle, name + QStringLiteral(".csv"), t::kExportFilter);
        if (!path.isEmpty()) exportCsv(view, path);
    });
    return menu;
}
