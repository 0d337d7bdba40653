#include "shell/quote_board_model.h"

#include <QDateTime>

#include "shell/shell_texts.h"

const QColor QuoteBoardModel::kUp(0xff, 0x3b, 0x3b);
const QColor QuoteBoardModel::kDown(0x00, 0xd0, 0x5a);
const QColor QuoteBoardModel::kFlat(0xe8, 0xe8, 0xe8);
const QColor QuoteBoardModel::kVolumeColor(0xf0, 0xd0, 0x40);
const QColor QuoteBoardModel::kCodeColor(0xff, 0xc8, 0x5a);

QuoteBoardModel::QuoteBoardModel(QObject* parent) : QAbstractTableModel(parent) {}

void QuoteBoardModel::setRows(std::vector<Row> rows) {
    beginResetModel();
    m_rows = std::move(rows);
    endResetModel();
}

bool QuoteBoardModel::applyQuote(const IModuleFutureTrader::ITickEx& tick) {
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        Row& r = m_rows[i];
        if (r.symbol.wExchangeID != tick.wExchangeID || r.symbol.strCode != tick.strCode) {
            continue;
        }
        r.tick = tick;
        r.hasTick = true;
        const int row = static_cast<int>(i);
        emit dataChanged(index(row, kLast), index(row, kColumnCount - 1));
        return true;
    }
    return false;
}

const QuoteBoardModel::Row* QuoteBoardModel::rowAt(int row) const {
    if (row < 0 || row >= static_cast<int>(m_rows.size())) return nullptr;
    return &m_rows[static_cast<std::size_t>(row)];
}

int QuoteBoardModel::rowOf(const tagSymbol& symbol) const {
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        if (m_rows[i].symbol == symbol) return static_cast<int>(i);
    }
    return -1;
}

int QuoteBoardModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int QuoteBoardModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : kColumnCount;
}

double QuoteBoardModel::referencePrice(const IModuleFutureTrader::ITickEx& tick) {
    if (isPricePresent(tick.dPreSettle)) return tick.dPreSettle;
    if (isPricePresent(tick.dPreClose)) return tick.dPreClose;
    return 0;
}

QColor QuoteBoardModel::priceColor(double price, double reference) {
    if (!isPricePresent(price) || !isPricePresent(reference)) return kFlat;
    // Compare on a grid far finer than any tick so float noise never flips the colour.
    const double diff = price - reference;
    if (diff > 1e-7) return kUp;
    if (diff < -1e-7) return kDown;
    return kFlat;
}

namespace {

const int kAlignLeft = int(Qt::AlignLeft | Qt::AlignVCenter);
const int kAlignRight = int(Qt::AlignRight | Qt::AlignVCenter);

QString priceText(double v, int decimals) {
    return isPricePresent(v) ? QString::number(v, 'f', decimals) : QStringLiteral("—");
}

QString volumeText(double v) {
    return v > 0.5 ? QString::number(v, 'f', 0) : QStringLiteral("—");
}

}  // namespace

QString QuoteBoardModel::cellText(const Row& r, int column) const {
    const auto& t = r.tick;
    const double ref = referencePrice(t);
    const bool change = r.hasTick && isPricePresent(t.dLast) && isPricePresent(ref);
    switch (column) {
        case kCode: return QString::fromStdString(r.symbol.strCode);
        case kName: return r.name;
        default: break;
    }
    if (!r.hasTick) return QStringLiteral("—");
    switch (column) {
        case kLast: return priceText(t.dLast, r.decimals);
        case kChange: {
            if (!change) return QStringLiteral("—");
            const double d = t.dLast - ref;
            return (d > 0 ? QStringLiteral("+") : QString()) + QString::number(d, 'f', r.decimals);
        }
        case kChangePct: {
            if (!change) return QStringLiteral("—");
            const double p = (t.dLast - ref) / ref * 100.0;
            return (p > 0 ? QStringLiteral("+") : QString()) + QString::number(p, 'f', 2) + '%';
        }
        case kBid: return priceText(t.dBid, r.decimals);
        case kBidVol: return volumeText(t.dBidVol);
        case kAsk: return priceText(t.dAsk, r.decimals);
        case kAskVol: return volumeText(t.dAskVol);
        case kVolume: return volumeText(t.dVolume);
        case kOpenInterest: return volumeText(t.dOpenInterest);
        case kUpper: return priceText(t.dUpperLimit, r.decimals);
        case kLower: return priceText(t.dLowerLimit, r.decimals);
        case kPreSettle: return priceText(t.dPreSettle, r.decimals);
        case kTime:
            return t.tQuoteTime > 0
                       ? QDateTime::fromMSecsSinceEpoch(t.tQuoteTime).toString("HH:mm:ss")
                       : QStringLiteral("—");
        default: return {};
    }
}

QVariant QuoteBoardModel::data(const QModelIndex& index, int role) const {
    const Row* r = rowAt(index.row());
    if (!r || index.column() < 0 || index.column() >= kColumnCount) return {};
    const int c = index.column();
    switch (role) {
        case Qt::DisplayRole: return cellText(*r, c);
        case Qt::TextAlignmentRole:
            return c == kCode || c == kName ? kAlignLeft : kAlignRight;
        case Qt::ForegroundRole: {
            const auto& t = r->tick;
            const double ref = referencePrice(t);
            switch (c) {
                case kCode: return kCodeColor;
                case kName: return kFlat;
                case kLast:
                case kChange:
                case kChangePct: return priceColor(t.dLast, ref);
                case kBid: return priceColor(t.dBid, ref);
                case kAsk: return priceColor(t.dAsk, ref);
                case kUpper: return kUp;
                case kLower: return kDown;
                case kBidVol:
                case kAskVol:
                case kVolume:
                case kOpenInterest: return kVolumeColor;
                default: return kFlat;
            }
        }
        case Qt::ToolTipRole:
            if (c == kCode || c == kName) {
                return QString("%1 %2 (%3)").arg(QString::fromStdString(r->symbol.strCode),
                                                 r->name, r->exchangeName);
            }
            return {};
        default: return {};
    }
}

QVariant QuoteBoardModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal) return {};
    if (role == Qt::TextAlignmentRole) {
        return section == kCode || section == kName ? kAlignLeft : kAlignRight;
    }
    if (role != Qt::DisplayRole) return {};
    namespace t = shell_text;
    static const char* const titles[kColumnCount] = {
        t::kColCode, t::kColName,   t::kColLast,         t::kColChange, t::kColChangePct,
        t::kColBid,  t::kColBidVol, t::kColAsk,          t::kColAskVol, t::kColVolume,
        t::kColOpenInterest,        t::kColUpper,        t::kColLower,  t::kColPreSettle,
        t::kColTime};
    if (section < 0 || section >= kColumnCount) return {};
    return QString::fromUtf8(titles[section]);
}
