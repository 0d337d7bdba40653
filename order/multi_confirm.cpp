#include "order/multi_confirm.h"

#include <algorithm>
#include <cmath>

#include "app/helmsman_manage.h"
#include "app/settings.h"
#include "host/codes.h"
#include "host/number_text.h"
#include "host/price.h"
#include "order/confirm_dialog.h"
#include "order/confirm_strings.h"

using namespace confirm_text;

namespace {

// Account names as the ticket shows them: "880001(模拟账户一)". The host's list of logged-on
// accounts names them; an order of an account that has logged off since keeps the name the
// ticket copied into it, and failing that the identifier stands alone.
class AccountNames {
public:
    explicit AccountNames(CSubscibeManage* facade) {
        if (facade) facade->GetAvailableAccounts(m_accounts);
    }
    template <class Order>
    std::string textOf(const Order& o, const std::string& copiedName) const {
        std::string name = copiedName;
        for (const auto& a : m_accounts) {
            if (a.strAccountID == o.strAccountID && a.strBrokerID == o.strBrokerID) {
                name = a.strAccountName;
                break;
            }
        }
        if (name.empty()) return o.strAccountID;
        return confirm_fmt::format(kAccountCell, o.strAccountID.c_str(), name.c_str());
    }

private:
    std::vector<tagAccoutInfo> m_accounts;
};

std::string symbolInfo(const std::string& code, const std::string& text, std::int32_t openClose,
                       std::int32_t direction) {
    std::string s = confirm_fmt::symbolOf(code, text);
    s += ' ';
    s += codes::openCloseText(openClose);
    s += codes::directionText(direction);
    return s;
}

}  // namespace

// ---- CMultiConfirm ---------------------------------------------------------------------

CMultiConfirm::CMultiConfirm(std::vector<tagBrokerOrder> orders, std::string caller,
                             const tagAlgoSetting* algo, CSubscibeManage* facade, double volumeCap)
    : m_orders(std::move(orders)), m_caller(std::move(caller)) {
    if (algo) m_algo = *algo;
    // A cap that is not a whole number of lots in the volume range is no cap the trader chose.
    m_volumeCap = volumeCap >= 1 && volumeCap <= number_text::kMaxVolume ? std::floor(volumeCap)
                                                                         : kDefaultVolumeCap;
    const AccountNames names(facade);
    m_accountTexts.reserve(m_orders.size());
    for (const auto& o : m_orders) m_accountTexts.push_back(names.textOf(o, o.strAccountState));
    for (const auto& o : m_orders) {
        auto key = std::make_pair(o.nExchangeID, o.strCode);
        if (m_contracts.count(key)) continue;
        Contract c;
        if (facade && !o.strCode.empty()) {
            const tagSymbol symbol{static_cast<std::uint16_t>(o.nExchangeID), o.strCode};
            c.hasDetail = facade->GetSymbolProperty(symbol, c.detail) != 0 &&
                          price::stepUnits(c.detail.nMinMove, c.detail.fPriceUnit) > 0;
            IModuleFutureTrader::ITickEx tick;
            if (facade->GetMarketQuote(symbol, tick) && isPricePresent(tick.dLowerLimit) &&
                isPricePresent(tick.dUpperLimit) && tick.dLowerLimit < tick.dUpperLimit) {
                c.lower = tick.dLowerLimit;
                c.upper = tick.dUpperLimit;
            }
        }
        m_contracts.emplace(std::move(key), c);
    }
}

double CMultiConfirm::volumeCapFor(const HelmsmanSettings& settings) {
    if (settings.bUseSingleLimit && settings.dMaxSingleLimitVol >= 1 &&
        settings.dMaxSingleLimitVol <= number_text::kMaxVolume)
        return std::floor(settings.dMaxSingleLimitVol);
    return kDefaultVolumeCap;
}

const CMultiConfirm::Contract& CMultiConfirm::contractOf(std::size_t row) const {
    const auto& o = m_orders.at(row);
    return m_contracts.at(std::make_pair(o.nExchangeID, o.strCode));
}

std::string CMultiConfirm::title() const {
    return confirm_fmt::format(kBatchTitle, m_caller.c_str());
}

const char* CMultiConfirm::columnLayout() {
    return kBatchColumns;
}

int CMultiConfirm::decimals(std::size_t row) const {
    const Contract& c = contractOf(row);
    return c.hasDetail ? price::decimals(c.detail.nMinMove, c.detail.fPriceUnit) : -1;
}

double CMultiConfirm::tick(std::size_t row) const {
    const Contract& c = contractOf(row);
    return c.hasDetail ? price::pointValue(c.detail) : 0;
}

std::pair<double, double> CMultiConfirm::limitBand(std::size_t row) const {
    const Contract& c = contractOf(row);
    return {c.lower, c.upper};
}

std::string CMultiConfirm::cell(std::size_t row, int column) const {
    const tagBrokerOrder& o = m_orders.at(row);
    switch (column) {
        case kColAccount:
            return m_accountTexts.at(row);
        case kColSymbol:
            return symbolInfo(o.strCode, o.strSymbolText, o.nOpenClose, o.nDirection);
        case kColPrice:
            return confirm_fmt::price(o.dPrice, decimals(row));
        case kColVolume:
            return confirm_fmt::format(kVolumeCell, o.dVolume);
        default:
            return {};
    }
}

double CMultiConfirm::totalVolume() const {
    double total = 0;
    for (const auto& o : m_orders) total += o.dVolume;
    return total;
}

std::string CMultiConfirm::summary() const {
    const int count = static_cast<int>(m_orders.size());
    bool alike = !m_orders.empty();
    for (const auto& o : m_orders) {
        const auto& f = m_orders.front();
        if (o.nExchangeID != f.nExchangeID || o.strCode != f.strCode ||
            o.nDirection != f.nDirection || o.nOpenClose != f.nOpenClose) {
            alike = false;
            break;
        }
    }
    if (!alike) return confirm_fmt::format(kSameSummaryMixed, count, totalVolume());
    const auto& f = m_orders.front();
    const std::string oc(codes::openCloseText(f.nOpenClose));
    const std::string dir(codes::directionText(f.nDirection));
    const std::string sym = confirm_fmt::symbolOf(f.strCode, f.strSymbolText);
    return confirm_fmt::format(kSameSummaryLike, oc.c_str(), dir.c_str(), sym.c_str(), count,
                               totalVolume());
}

EditResult CMultiConfirm::editPrice(std::size_t row, const std::string& text) {
    if (row >= m_orders.size()) return {false, kEditNotNumber};
    const auto value = number_text::parse(text);
    if (!value) return {false, kEditNotNumber};
    if (!isPricePresent(*value)) return {false, kEditPriceNotPositive};
    if (!number_text::isPriceInRange(*value)) return {false, number_text::kMsgPriceOutOfRange};
    const Contract& c = contractOf(row);
    const int dec = decimals(row);
    const auto outsideBand = [&] {
        return EditResult{false, confirm_fmt::format(kEditPriceOutsideLimits,
                                                     confirm_fmt::price(c.lower, dec).c_str(),
                                                     confirm_fmt::price(c.upper, dec).c_str())};
    };
    // Compare on the price grid's resolution so that a limit typed exactly is accepted.
    if (c.upper > 0 && (*value < c.lower - 1e-9 || *value > c.upper + 1e-9)) return outsideBand();
    tagBrokerOrder& o = m_orders[row];
    double p = *value;
    if (c.hasDetail) {
        const auto& d = c.detail;
        p = price::roundForDirection(p, o.nDirection, d.nMinMove, d.fPriceUnit);
        // A limit off the grid: the rounding may step past it, so take the grid price just
        // inside instead; a band narrower than one tick leaves none.
        if (c.upper > 0) {
            if (p > c.upper + 1e-9) p = price::roundSell(c.upper, d.nMinMove, d.fPriceUnit);
            if (p < c.lower - 1e-9) p = price::roundBuy(c.lower, d.nMinMove, d.fPriceUnit);
            if (p > c.upper + 1e-9) return outsideBand();
        }
    }
    // A sell below one tick rounds down to nothing; that is not a price. A buy at the top of
    // the range may round past it.
    if (!isPricePresent(p)) return {false, kEditPriceNotPositive};
    if (!number_text::isPriceInRange(p)) return {false, number_text::kMsgPriceOutOfRange};
    o.dPrice = p;
    return {true, {}};
}

EditResult CMultiConfirm::editVolume(std::size_t row, const std::string& text) {
    if (row >= m_orders.size()) return {false, kEditNotNumber};
    const auto value = number_text::parse(text);
    if (!value) return {false, kEditNotNumber};
    if (*value < 1 || std::fabs(*value - std::round(*value)) > 1e-9)
        return {false, kEditVolumeNotWhole};
    if (*value > m_volumeCap) return {false, confirm_fmt::format(kEditVolumeTooLarge, m_volumeCap)};
    m_orders[row].dVolume = std::round(*value);
    return {true, {}};
}

bool CMultiConfirm::send(CHelmsmanManage& manager) {
    if (m_sent) return false;
    m_sent = true;
    manager.sendBatch(m_orders, algoSetting(), {m_caller, true});
    return true;
}

// ---- CMultiTriggerConfirm --------------------------------------------------------------

CMultiTriggerConfirm::CMultiTriggerConfirm(std::vector<tagTriggerOrder> orders, std::string caller,
                                           CSubscibeManage* facade)
    : m_orders(std::move(orders)), m_caller(std::move(caller)) {
    const AccountNames names(facade);
    m_accountTexts.reserve(m_orders.size());
    for (const auto& o : m_orders) m_accountTexts.push_back(names.textOf(o, std::string()));
    std::map<std::pair<std::int32_t, std::string>, int> seen;
    m_decimals.reserve(m_orders.size());
    for (const auto& o : m_orders) {
        auto key = std::make_pair(o.nExchangeID, o.strCode);
        auto it = seen.find(key);
        if (it == seen.end())
            it = seen.emplace(key, confirm_fmt::contractDecimals(facade, o.nExchangeID, o.strCode))
                     .first;
        m_decimals.push_back(it->second);
    }
}

std::string CMultiTriggerConfirm::title() const {
    return confirm_fmt::format(kTriggerBatchTitle, m_caller.c_str());
}

const char* CMultiTriggerConfirm::columnLayout() {
    return kTriggerBatchColumns;
}

std::string CMultiTriggerConfirm::cell(std::size_t row, int column) const {
    const tagTriggerOrder& o = m_orders.at(row);
    const int dec = m_decimals.at(row);
    auto optionalPrice = [&](double p) {
        return isPricePresent(p) ? confirm_fmt::price(p, dec) : std::string(kNoneCell);
    };
    switch (column) {
        case kColAccount:
            return m_accountTexts.at(row);
        case kColSymbol: {
            std::string s = symbolInfo(o.strCode, o.strSymbolText, o.nOpenClose, o.nDirection);
            s += ' ';
            s += codes::triggerTypeText(o.nTriggerType);
            return s;
        }
        case kColTrigger:
            return confirm_fmt::price(o.dTriggerPrice, dec);
        case kColPrice:
            return isPricePresent(o.dPrice) ? confirm_fmt::price(o.dPrice, dec)
                                            : std::string(kMarketPrice);
        case kColVolume:
            return confirm_fmt::format(kVolumeCell, o.dVolume);
        case kColStop:
            return optionalPrice(o.dStopLoss);
        case kColProfit:
            return optionalPrice(o.dTakeProfit);
        default:
            return {};
    }
}

CMultiTriggerConfirm::SendResult CMultiTriggerConfirm::send(CSubscibeManage& facade) {
    SendResult result;
    if (m_sent) return result;
    m_sent = true;
    for (std::size_t i = 0; i < m_orders.size(); ++i) {
        if (facade.SendTriggerOrder(m_orders[i]))
            ++result.sent;
        else
            result.failed.push_back(i);
    }
    return result;
}

std::string CMultiTriggerConfirm::failureMessage(const SendResult& result) const {
    if (result.failed.empty()) return {};
    std::string rows;
    for (std::size_t i : result.failed) {
        if (!rows.empty()) rows += ',';
        const auto& o = m_orders[i];
        rows += confirm_fmt::symbolOf(o.strCode, o.strSymbolText);
        rows += '(' + o.strAccountID + ')';
    }
    return confirm_fmt::format(kTriggerSendFailed, static_cast<int>(result.failed.size()),
                               rows.c_str());
}
