#include "shell/monitor_rows.h"

#include <algorithm>
#include <limits>

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
// A cell that sorts by value.
RecordCell num(QString text, double value, QColor color = {}, bool alignLeft = false) {
    return {std::move(text), color, alignLeft, value};
}
// An identifier sorts as a number when it is one ("10" after "9").
RecordCell idCell(const std::string& id) {
    bool ok = false;
    const QString text = q(id);
    const double v = text.toDouble(&ok);
    return ok ? num(text, v) : right(text);
}
double nanIfAbsent(double v) {
    return isPricePresent(v) ? v : std::numeric_limits<double>::quiet_NaN();
}

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

// The risk ratio sorts by its value; the dash after every number.
RecordCell riskCell(const tagAccountSummary& s) {
    if (!(s.dBalance > 0)) return right(riskRatio(s));
    return num(riskRatio(s), s.dMargin / s.dBalance * 100.0);
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

QString orderKey(const std::string& account, const std::string& broker, const std::string& id) {
    return key({q(account), q(broker), q(id)});
}

QString positionKey(const tagOpenedPosition& p) {
    return key({q(p.strAccountID), q(p.strBrokerID), QString::number(p.nExchangeID),
                q(p.strCode)});
}

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
            r.cells.push_back(num(money(s.dBalance), s.dBalance));
            r.cells.push_back(num(money(s.dAvailable), s.dAvailable));
            r.cells.push_back(num(money(s.dMargin), s.dMargin));
            r.cells.push_back(num(money(s.dFrozen), s.dFrozen));
            r.cells.push_back(riskCell(s));
            r.cells.push_back(num(money(s.dCloseProfit), s.dCloseProfit, profitColor(s.dCloseProfit)));
            r.cells.push_back(num(money(s.dPositionProfit), s.dPositionProfit, profitColor(s.dPositionProfit)));
            r.cells.push_back(num(money(s.dCommission), s.dCommission));
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

RecordRow orderRow(const tagBrokerOrder& o, const DecimalsOf& decimals) {
    const int dec = decimals(o.nExchangeID, o.strCode);
    const QColor statusColor =
        o.nStatus == kOrderRejected ? QColor(0xff, 0x9a, 0x3c)
        : (o.nStatus == kOrderCancelled || o.nStatus == kOrderPartCancelled) ? kMuted
                                                                            : QColor();
    RecordRow r;
    r.key = orderKey(o.strAccountID, o.strBrokerID, o.strOrderID);
    r.live = isWorkingStatus(o.nStatus);
    r.status = o.nStatus;
    r.symbol = {static_cast<std::uint16_t>(o.nExchangeID), o.strCode};
    const QString status = q(codes::orderStatusText(o.nStatus));
    const QString message = q(o.strStatusMsg);
    if (!message.isEmpty()) r.tip = status + QStringLiteral("：") + message;
    r.cells.reserve(12);
    r.cells.push_back(num(timeOfDay(o.tCreateTime), double(o.tCreateTime), {}, true));
    r.cells.push_back(idCell(o.strOrderID));
    r.cells.push_back(left(q(o.strAccountID)));
    r.cells.push_back(left(symbolText(o.nExchangeID, o.strCode)));
    r.cells.push_back(left(q(codes::directionText(o.nDirection)), directionColor(o.nDirection)));
    r.cells.push_back(left(q(codes::openCloseText(o.nOpenClose))));
    r.cells.push_back(num(price(o.dPrice, dec), nanIfAbsent(o.dPrice)));
    r.cells.push_back(num(lots(o.dVolume), o.dVolume));
    r.cells.push_back(num(lots(o.dFilledVolume), o.dFilledVolume));
    r.cells.push_back(left(status, statusColor));
    r.cells.push_back(left(message));
    r.cells.push_back(left(q(o.strRemark)));
    return r;
}

std::vector<RecordRow> orderRows(const std::vector<tagBrokerOrder>& orders,
                                 const DecimalsOf& decimals) {
    std::vector<RecordRow> rows;
    rows.reserve(orders.size());
    for (const tagBrokerOrder& o : orders) rows.push_back(orderRow(o, decimals));
    return rows;
}

QStringList fillHeaders() {
    return {t::kColFillTime,   t::kColBargainNo, t::kColContractNo, t::kColAccount,
            t::kColSymbol,     t::kColDirection, t::kColOpenClose,  t::kColPrice,
            t::kColVolumeLots, t::kColRemark};
}

RecordRow fillRow(const tagBargainOrder& f, const DecimalsOf& decimals) {
    RecordRow r;
    r.key = key({q(f.strAccountID), q(f.strBargainNo), q(f.strContractNo)});
    r.symbol = {static_cast<std::uint16_t>(f.nExchangeID), f.strCode};
    r.cells.reserve(10);
    r.cells.push_back(num(timeOfDay(f.tTime), double(f.tTime), {}, true));
    r.cells.push_back(idCell(f.strBargainNo));
    r.cells.push_back(idCell(f.strContractNo));
    r.cells.push_back(left(q(f.strAccountID)));
    r.cells.push_back(left(symbolText(f.nExchangeID, f.strCode)));
    r.cells.push_back(left(q(codes::directionText(f.nDirection)), directionColor(f.nDirection)));
    r.cells.push_back(left(q(codes::openCloseText(f.nOpenClose))));
    r.cells.push_back(
        num(price(f.dPrice, decimals(f.nExchangeID, f.strCode)), nanIfAbsent(f.dPrice)));
    r.cells.push_back(num(lots(f.dVolume), f.dVolume));
    r.cells.push_back(left(q(f.strRemark)));
    return r;
}

std::vector<RecordRow> fillRows(const std::vector<tagBargainOrder>& fills,
                                const DecimalsOf& decimals) {
    std::vector<RecordRow> rows;
    rows.reserve(fills.size());
    for (const tagBargainOrder& f : fills) rows.push_back(fillRow(f, decimals));
    return rows;
}

QStringList positionHeaders() {
    return {t::kColAccount,  t::kColSymbol,     t::kColLong,       t::kColLongToday,
            t::kColLongAvg,  t::kColShort,      t::kColShortToday, t::kColShortAvg};
}

RecordRow positionRow(const tagOpenedPosition& p, const DecimalsOf& decimals) {
    const int dec = decimals(p.nExchangeID, p.strCode);
    RecordRow r;
    r.key = positionKey(p);
    r.live = p.dLong >= 0.5 || p.dShort >= 0.5;
    r.symbol = {static_cast<std::uint16_t>(p.nExchangeID), p.strCode};
    r.cells.reserve(8);
    r.cells.push_back(left(q(p.strAccountID)));
    r.cells.push_back(left(symbolText(p.nExchangeID, p.strCode)));
    r.cells.push_back(num(lots(p.dLong), p.dLong, p.dLong > 0.5 ? kBuy : QColor()));
    r.cells.push_back(num(lots(p.dLongToday), p.dLongToday));
    r.cells.push_back(num(price(p.dLongAvgPrice, dec), nanIfAbsent(p.dLongAvgPrice)));
    r.cells.push_back(num(lots(p.dShort), p.dShort, p.dShort > 0.5 ? kSell : QColor()));
    r.cells.push_back(num(lots(p.dShortToday), p.dShortToday));
    r.cells.push_back(num(price(p.dShortAvgPrice, dec), nanIfAbsent(p.dShortAvgPrice)));
    return r;
}

std::vector<RecordRow> positionRows(const std::vector<tagOpenedPosition>& positions,
                                    const DecimalsOf& decimals) {
    std::vector<RecordRow> rows;
    rows.reserve(positions.size());
    for (const tagOpenedPosition& p : positions) rows.push_back(positionRow(p, decimals));
    return rows;
}

QStringList triggerHeaders() {
    return {t::kColOrderTime,    t::kColOrderId,     t::kColAccount,   t::kColSymbol,
            t::kColDirection,    t::kColOpenClose,   t::kColTriggerType,
            t::kColTriggerPrice, t::kColOrderPrice,  t::kColVolumeLots, t::kColExpiry,
            t::kColStatus,       t::kColRemark};
}

RecordRow triggerRow(const tagTriggerOrder& o,
                     const TriggerStatusText& statusText,
                     const DecimalsOf& decimals) {
    const int dec = decimals(o.nExchangeID, o.strCode);
    RecordRow r;
    r.key = orderKey(o.strAccountID, o.strBrokerID, o.strOrderID);
    r.status = o.nStatus;
    r.symbol = {static_cast<std::uint16_t>(o.nExchangeID), o.strCode};
    r.cells.reserve(13);
    r.cells.push_back(num(timeOfDay(o.tCreateTime), double(o.tCreateTime), {}, true));
    r.cells.push_back(right(q(o.strOrderID)));
    r.cells.push_back(left(q(o.strAccountID)));
    r.cells.push_back(left(symbolText(o.nExchangeID, o.strCode)));
    r.cells.push_back(left(q(codes::directionText(o.nDirection)), directionColor(o.nDirection)));
    r.cells.push_back(left(q(codes::openCloseText(o.nOpenClose))));
    r.cells.push_back(left(q(codes::triggerTypeText(o.nTriggerType))));
    r.cells.push_back(num(price(o.dTriggerPrice, dec), nanIfAbsent(o.dTriggerPrice)));
    r.cells.push_back(isPricePresent(o.dPrice) ? num(price(o.dPrice, dec), o.dPrice)
                                               : right(QString(t::kMarketPrice)));
    r.cells.push_back(num(lots(o.dVolume), o.dVolume));
    r.cells.push_back(o.tExpiry > 0 ? num(q(formatDateTime(o.tExpiry)).left(16),
                                          double(o.tExpiry), {}, true)
                                    : left(QStringLiteral("—")));
    r.cells.push_back(left(statusText(o.nStatus)));
    r.cells.push_back(left(q(o.strRemark)));
    return r;
}

std::vector<RecordRow> triggerRows(const std::vector<tagTriggerOrder>& triggers,
                                   const TriggerStatusText& statusText,
                                   const DecimalsOf& decimals) {
    std::vector<RecordRow> rows;
    rows.reserve(triggers.size());
    for (const tagTriggerOrder& o : triggers) rows.push_back(triggerRow(o, statusText, decimals));
    return rows;
}
