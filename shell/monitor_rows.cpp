#include "shell/monitor_rows.h"

#include <algorithm>

#include "host/clock.h"
#include "host/codes.h"
#include "shell/quote_board_model.h"
#include "shell/shell_texts.h"

namespace {

namespace t = shell_text;

const QColor kMuted(0x90, 0x90, 0x90);
const QColor kBuy = QuoteBoardModel::kUp;
const QColor kSell = QuoteBoardModel::kDown;

QString q(const std::string& s) { return QString::fromStdString(s); }
QString q(std::string_view s) { return QString::fromUtf8(s.data(), static_cast<int>(s.size())); }

RecordCell left(QString text, QColor color = {}) { return {std::move(text), color, true}; }
RecordCell right(QString text, QColor color = {}) { return {std::move(text), color, false}; }

QString price(double v, int decimals) {
    return isPricePresent(v) ? QString::number(v, 'f', decimals) : QStringLiteral("—");
}
QString lots(double v) { return QString::number(v, 'f', 0); }
QString money(double v) { return QString::number(v, 'f', 2); }

// Time of day of calendar seconds (the last 8 characters of the full format).
QString timeOfDay(std::int64_t t) {
    if (t <= 0) return QStringLiteral("—");
    const std::string full = formatDateTime(t);
    return q(full.size() >= 8 ? full.substr(full.size() - 8) : full);
}

// Margin as a share of equity, "12.34%"; a dash when there is no equity to measure against.
QString riskRatio(const tagAccountSummary& s) {
    if (!(s.dBalance > 0)) return QStringLiteral("—");
    return QString::number(s.dMargin / s.dBalance * 100.0, 'f', 2) + QLatin1Char('%');
}

QColor directionColor(std::int32_t dir) {
    return dir == kDirBuy ? kBuy : dir == kDirSell ? kSell : QColor();
}

QColor profitColor(double v) {
    return v > 0.005 ? kBuy : v < -0.005 ? kSell : QColor();
}

QString symbolText(std::int32_t exchangeID, const std::string& code) {
    Q_UNUSED(exchangeID);
    return q(code);
}

QString key(std::initializer_list<QString> parts) { return QStringList(parts).join('|'); }

}  // namespace

bool isWorkingStatus(std::int32_t status) {
    return status == kOrderSending || status == kOrderQueued || status == kOrderPartFilled ||
           status == kOrderCancelling;
}

QStringList splitRowKey(const QString& k) { return k.split('|'); }

QStringList accountHeaders() {
    return {t::kColAccount,     t::kColAccountName,  t::kColState,
            t::kColBalance,     t::kColAvailable,    t::kColMargin,
            t::kColFrozen,      t::kColRiskRatio,    t::kColCloseProfit,
            t::kColPositionProfit, t::kColCommission};
}

std::vector<RecordRow> accountRows(const std::vector<AccountLine>& accounts) {
    std::vector<RecordRow> rows;
    rows.reserve(accounts.size());
    for (const AccountLine& a : accounts) {
        RecordRow r;
        r.key = q(a.info.strAccountID);
        r.cells.push_back(left(q(a.info.strAccountID)));
        r.cells.push_back(left(q(a.info.strAccountName)));
        if (!a.loggedOn) {
            r.cells.push_back(left(t::kLoggedOff, kMuted));
            for (int i = 0; i < 8; ++i) r.cells.push_back(right(QStringLiteral("—"), kMuted));
        } else {
            const tagAccountSummary& s = a.summary;
            r.cells.push_back(left(t::kLoggedOn, kSell));
            r.cells.push_back(right(money(s.dBalance)));
            r.cells.push_back(right(money(s.dAvailable)));
            r.cells.push_back(right(money(s.dMargin)));
            r.cells.push_back(right(money(s.dFrozen)));
            r.cells.push_back(right(riskRatio(s)));
            r.cells.push_back(right(money(s.dCloseProfit), profitColor(s.dCloseProfit)));
            r.cells.push_back(right(money(s.dPositionProfit), profitColor(s.dPositionProfit)));
            r.cells.push_back(right(money(s.dCommission)));
        }
        rows.push_back(std::move(r));
    }
    return rows;
}

QStringList orderHeaders() {
    return {t::kColOrderTime, t::kColOrderId, t::kColAccount,  t::kColSymbol,
            t::kColDirection, t::kColOpenClose, t::kColPrice,  t::kColVolumeLots,
            t::kColFilled,    t::kColStatus,  t::kColStatusMsg, t::kColRemark};
}

std::vector<RecordRow> orderRows(const std::vector<tagBrokerOrder>& orders, bool workingOnly,
                                 const DecimalsOf& decimals) {
    std::vector<RecordRow> rows;
    rows.reserve(orders.size());
    for (auto it = orders.rbegin(); it != orders.rend(); ++it) {
        const tagBrokerOrder& o = *it;
        if (workingOnly && !isWorkingStatus(o.nStatus)) continue;
        const int dec = decimals(o.nExchangeID, o.strCode);
        const QColor statusColor =
            o.nStatus == kOrderRejected ? QColor(0xff, 0x9a, 0x3c)
            : (o.nStatus == kOrderCancelled || o.nStatus == kOrderPartCancelled) ? kMuted
                                                                                : QColor();
        RecordRow r;
        r.key = key({q(o.strAccountID), q(o.strBrokerID), q(o.strOrderID)});
        r.cells.push_back(left(timeOfDay(o.tCreateTime)));
        r.cells.push_back(right(q(o.strOrderID)));
        r.cells.push_back(left(q(o.strAccountID)));
        r.cells.push_back(left(symbolText(o.nExchangeID, o.strCode)));
        r.cells.push_back(left(q(codes::directionText(o.nDirection)),
                               directionColor(o.nDirection)));
        r.cells.push_back(left(q(codes::openCloseText(o.nOpenClose))));
        r.cells.push_back(right(price(o.dPrice, dec)));
        r.cells.push_back(right(lots(o.dVolume)));
        r.cells.push_back(right(lots(o.dFilledVolume)));
        r.cells.push_back(left(q(codes::orderStatusText(o.nStatus)), statusColor));
        r.cells.push_back(left(q(o.strStatusMsg)));
        r.cells.push_back(left(q(o.strRemark)));
        rows.push_back(std::move(r));
    }
    return rows;
}

QStringList fillHeaders() {
    return {t::kColFillTime,   t::kColBargainNo, t::kColContractNo, t::kColAccount,
            t::kColSymbol,     t::kColDirection, t::kColOpenClose,  t::kColPrice,
            t::kColVolumeLots, t::kColRemark};
}

std::vector<RecordRow> fillRows(const std::vector<tagBargainOrder>& fills,
                                const DecimalsOf& decimals) {
    std::vector<RecordRow> rows;
    rows.reserve(fills.size());
    for (auto it = fills.rbegin(); it != fills.rend(); ++it) {
        const tagBargainOrder& f = *it;
        RecordRow r;
        r.key = key({q(f.strAccountID), q(f.strBargainNo), q(f.strContractNo)});
        r.cells.push_back(left(timeOfDay(f.tTime)));
        r.cells.push_back(right(q(f.strBargainNo)));
        r.cells.push_back(right(q(f.strContractNo)));
        r.cells.push_back(left(q(f.strAccountID)));
        r.cells.push_back(left(symbolText(f.nExchangeID, f.strCode)));
        r.cells.push_back(left(q(codes::directionText(f.nDirection)),
                               directionColor(f.nDirection)));
        r.cells.push_back(left(q(codes::openCloseText(f.nOpenClose))));
        r.cells.push_back(right(price(f.dPrice, decimals(f.nExchangeID, f.strCode))));
        r.cells.push_back(right(lots(f.dVolume)));
        r.cells.push_back(left(q(f.strRemark)));
        rows.push_back(std::move(r));
    }
    return rows;
}

QStringList positionHeaders() {
    return {t::kColAccount,  t::kColSymbol,     t::kColLong,       t::kColLongToday,
            t::kColLongAvg,  t::kColShort,      t::kColShortToday, t::kColShortAvg};
}

std::vector<RecordRow> positionRows(const std::vector<tagOpenedPosition>& positions,
                                    const DecimalsOf& decimals) {
    std::vector<RecordRow> rows;
    rows.reserve(positions.size());
    for (const tagOpenedPosition& p : positions) {
        if (p.dLong < 0.5 && p.dShort < 0.5) continue;
        const int dec = decimals(p.nExchangeID, p.strCode);
        RecordRow r;
        r.key = key({q(p.strAccountID), q(p.strBrokerID), QString::number(p.nExchangeID),
                     q(p.strCode)});
        r.cells.push_back(left(q(p.strAccountID)));
        r.cells.push_back(left(symbolText(p.nExchangeID, p.strCode)));
        r.cells.push_back(right(lots(p.dLong), p.dLong > 0.5 ? kBuy : QColor()));
        r.cells.push_back(right(lots(p.dLongToday)));
        r.cells.push_back(right(price(p.dLongAvgPrice, dec)));
        r.cells.push_back(right(lots(p.dShort), p.dShort > 0.5 ? kSell : QColor()));
        r.cells.push_back(right(lots(p.dShortToday)));
        r.cells.push_back(right(price(p.dShortAvgPrice, dec)));
        rows.push_back(std::move(r));
    }
    return rows;
}

QStringList triggerHeaders() {
    return {t::kColOrderTime,    t::kColOrderId,     t::kColAccount,   t::kColSymbol,
            t::kColDirection,    t::kColOpenClose,   t::kColTriggerType,
            t::kColTriggerPrice, t::kColOrderPrice,  t::kColVolumeLots, t::kColExpiry,
            t::kColStatus,       t::kColRemark};
}

std::vector<RecordRow> triggerRows(const std::vector<tagTriggerOrder>& triggers,
                                   const std::function<QString(std::int32_t)>& statusText,
                                   const DecimalsOf& decimals) {
    std::vector<RecordRow> rows;
    rows.reserve(triggers.size());
    for (auto it = triggers.rbegin(); it != triggers.rend(); ++it) {
        const tagTriggerOrder& o = *it;
        const int dec = decimals(o.nExchangeID, o.strCode);
        RecordRow r;
        r.key = key({q(o.strAccountID), q(o.strBrokerID), q(o.strOrderID)});
        r.cells.push_back(left(timeOfDay(o.tCreateTime)));
        r.cells.push_back(right(q(o.strOrderID)));
        r.cells.push_back(left(q(o.strAccountID)));
        r.cells.push_back(left(symbolText(o.nExchangeID, o.strCode)));
        r.cells.push_back(left(q(codes::directionText(o.nDirection)),
                               directionColor(o.nDirection)));
        r.cells.push_back(left(q(codes::openCloseText(o.nOpenClose))));
        r.cells.push_back(left(q(codes::triggerTypeText(o.nTriggerType))));
        r.cells.push_back(right(price(o.dTriggerPrice, dec)));
        r.cells.push_back(right(isPricePresent(o.dPrice) ? price(o.dPrice, dec)
                                                         : QString(t::kMarketPrice)));
        r.cells.push_back(right(lots(o.dVolume)));
        r.cells.push_back(left(o.tExpiry > 0 ? q(formatDateTime(o.tExpiry)).left(16)
                                             : QStringLiteral("—")));
        r.cells.push_back(left(statusText(o.nStatus)));
        r.cells.push_back(left(q(o.strRemark)));
        rows.push_back(std::move(r));
    }
    return rows;
}
