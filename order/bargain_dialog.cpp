#include "order/bargain_dialog.h"

#include <ctime>

#include "host/clock.h"
#include "order/confirm_dialog.h"
#include "order/confirm_strings.h"

using namespace confirm_text;

namespace {

bool sameFill(const tagBargainOrder& a, const tagBargainOrder& b) {
    return a.strAccountID == b.strAccountID && a.strBrokerID == b.strBrokerID &&
           a.nExchangeID == b.nExchangeID && a.strCode == b.strCode &&
           a.nDirection == b.nDirection && a.nOpenClose == b.nOpenClose && a.dVolume == b.dVolume &&
           a.dPrice == b.dPrice && a.strContractNo == b.strContractNo &&
           a.strBargainNo == b.strBargainNo && a.tTime == b.tTime;
}

}  // namespace

void CBargainDialog::setFills(const std::vector<tagBargainOrder>& fills) {
    std::size_t keep = 0;
    while (keep < m_fills.size() && keep < fills.size() && sameFill(m_fills[keep], fills[keep]))
        ++keep;
    m_fills.resize(keep);
    m_entries.resize(keep);
    for (std::size_t i = keep; i < fills.size(); ++i) append(fills[i]);
}

void CBargainDialog::append(const tagBargainOrder& fill) {
    m_fills.push_back(fill);
    m_entries.push_back(entryOf(fill));
}

std::string CBargainDialog::titleOf(const tagBargainOrder& fill) const {
    const bool buy = fill.nDirection == kDirBuy;
    const bool close = fill.nOpenClose != 0;
    const char* fmt =
        buy ? (close ? kFillCloseBuy : kFillOpenBuy) : (close ? kFillCloseSell : kFillOpenSell);
    return confirm_fmt::format(fmt, fill.strAccountID.c_str());
}

std::string CBargainDialog::bodyOf(const tagBargainOrder& fill) {
    const char* fmt = fill.nDirection == kDirBuy ? kFillBuyBody : kFillSellBody;
    std::string body =
        confirm_fmt::format(fmt, fill.strCode.c_str(), fill.dVolume, fill.strContractNo.c_str());
    body += confirm_fmt::price(fill.dPrice, decimalsOf(fill.nExchangeID, fill.strCode));
    return body;
}

CBargainDialog::Entry CBargainDialog::entryOf(const tagBargainOrder& fill) {
    Entry e;
    e.title = titleOf(fill);
    e.body = bodyOf(fill);
    e.buy = fill.nDirection == kDirBuy;
    if (fill.tTime > 0) {
        const std::tm tm = toLocalTm(fill.tTime);
        char buf[16];
        if (std::strftime(buf, sizeof buf, "%H:%M:%S", &tm)) e.time = buf;
    }
    return e;
}

int CBargainDialog::decimalsOf(std::int32_t exchangeID, const std::string& code) {
    auto key = std::make_pair(exchangeID, code);
    auto it = m_decimals.find(key);
    if (it != m_decimals.end()) return it->second;
    const int d = confirm_fmt::contractDecimals(m_facade, exchangeID, code);
    // Only a known precision is remembered: a contract the host could not describe yet may
    // be known by the next fill.
    if (d >= 0) m_decimals.emplace(std::move(key), d);
    return d;
}
