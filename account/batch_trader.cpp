#include "account/batch_trader.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <set>

#include "account/account_journal.h"
#include "account/account_strings.h"
#include "app/helmsman_manage.h"
#include "host/price.h"

using namespace account_text;

namespace {

constexpr int kBatchDialogId = 25009;

bool matches(const std::string& id, const std::string& broker, const tagAccoutInfo& a) {
    return id == a.strAccountID && (broker.empty() || broker == a.strBrokerID);
}

}  // namespace

CBatchTrader::CBatchTrader(CHelmsmanManage& manage, const tagSymbol* symbol) : m_manage(manage) {
    m_handle = m_manage.createHandle(this, kBatchDialogId);
    m_accounts.reload(m_manage);
    if (symbol && !symbol->empty()) selectSymbol(*symbol);
}

CBatchTrader::~CBatchTrader() { m_manage.releaseHandle(m_handle); }

std::intptr_t CBatchTrader::onMessage(std::uint32_t msg, std::uintptr_t wParam, std::uintptr_t lParam) {
    if (msg == kMsgSymbolLink) {
        if (wParam != 1 || lParam == 0) return 0;
        const auto* s = reinterpret_cast<const tagSymbol*>(lParam);
        if (*s == m_symbol) return 0;
        if (!selectSymbol(*s)) return 0;
        if (m_onSymbol) m_onSymbol();
        return 1;
    }
    if (msg == kMsgDataChange && eventKind(static_cast<std::uint32_t>(wParam)) == kEventQuote) refreshQuote();
    return 1;
}

bool CBatchTrader::selectSymbol(const tagSymbol& symbol) {
    CSubscibeManage* f = m_manage.facade();
    IModuleFutureTrader::ISpecDetailValue d;
    if (!f || symbol.empty() || f->GetSymbolProperty(symbol, d) == 0) return false;
    m_symbol = symbol;
    m_detail = d;
    m_hasDetail = true;
    m_decimals = price::decimals(d.nMinMove, d.fPriceUnit);
    refreshQuote();
    price = 0;
    return true;
}

void CBatchTrader::refreshQuote() {
    m_tick = {};
    if (CSubscibeManage* f = m_manage.facade(); f && !m_symbol.empty()) f->GetMarketQuote(m_symbol, m_tick);
}

double CBatchTrader::tickSize() const {
    return m_hasDetail ? price::pointOnGrid(m_detail.nMinMove, m_detail.fPriceUnit) : 0.0;
}

void CBatchTrader::reloadAccounts() { m_accounts.reload(m_manage); }

double CBatchTrader::factorOf(const tagAccoutInfo& a) const {
    if (mode == Mode::Multiple) {
        for (const batch_csv::MultipleRow& r : m_multiples.rows)
            if (matches(r.account, r.broker, a)) return r.multiple;
        return 1;
    }
    for (const batch_csv::CustomVolRow& r : m_custom.rows)
        if (r.set == set && matches(r.account, r.broker, a)) return r.volume;
    return 0;
}

double CBatchTrader::volumeOf(const tagAccoutInfo& a) const {
    const double f = factorOf(a);
    if (mode == Mode::CustomSet) return std::floor(f + 1e-9);
    return std::floor(std::max(0.0, baseVolume) * f + 1e-9);
}

void CBatchTrader::setMultiple(const tagAccoutInfo& a, double multiple) {
    for (batch_csv::MultipleRow& r : m_multiples.rows)
        if (matches(r.account, r.broker, a)) {
            r.multiple = multiple;
            return;
        }
    m_multiples.rows.push_back({a.strAccountID, a.strBrokerID, multiple});
}

void CBatchTrader::setSetVolume(const tagAccoutInfo& a, double volume) {
    for (batch_csv::CustomVolRow& r : m_custom.rows)
        if (r.set == set && matches(r.account, r.broker, a)) {
            r.volume = volume;
            return;
        }
    m_custom.rows.push_back({set, a.strAccountID, a.strBrokerID, volume});
}

std::vector<std::string> CBatchTrader::setNames() const {
    std::vector<std::string> names;
    for (const batch_csv::CustomVolRow& r : m_custom.rows)
        if (std::find(names.begin(), names.end(), r.set) == names.end()) names.push_back(r.set);
    return names;
}

std::vector<std::string> CBatchTrader::loadFiles() {
    std::vector<std::string> messages;
    if (m_manage.userDir().empty()) return messages;
    m_multiples = batch_csv::loadMultiple(m_manage.userFile(kMultipleFile));
    m_custom = batch_csv::loadCustomVol(m_manage.userFile(kCustomVolFile));
    for (const std::string& m : {batch_csv::loadMessage(kMultipleFile, m_multiples),
                                 batch_csv::loadMessage(kCustomVolFile, m_custom)})
        if (!m.empty()) messages.push_back(m);
    const std::vector<std::string> names = setNames();
    if (set.empty() && !names.empty()) set = names.front();
    return messages;
}

std::vector<std::string> CBatchTrader::saveFiles() const {
    std::vector<std::string> messages;
    if (m_manage.userDir().empty()) return messages;
    const FileWriteResult a = batch_csv::saveMultiple(m_manage.userFile(kMultipleFile), m_multiples);
    const FileWriteResult b = batch_csv::saveCustomVol(m_manage.userFile(kCustomVolFile), m_custom);
    for (const auto* r : {&a, &b})
        if (!r->ok) {
            char text[512];
            std::snprintf(text, sizeof text, kMsgCsvNotSaved, r->file.filename().string().c_str(),
                          r->reason.c_str());
            messages.push_back(text);
        }
    return messages;
}

double CBatchTrader::orderPrice(std::int32_t direction) const {
    double px = price;
    if (touchPrice) px = direction == kDirBuy ? m_tick.dAsk : m_tick.dBid;
    if (!isPricePresent(px)) return 0;
    px = price::clampToLimits(px, m_tick.dLowerLimit, m_tick.dUpperLimit);
    if (m_hasDetail) px = price::roundForDirection(px, direction, m_detail.nMinMove, m_detail.fPriceUnit);
    return px;
}

CBatchTrader::Result CBatchTrader::send(std::int32_t direction) {
    m_last.clear();
    m_accounts.reload(m_manage);
    if (m_accounts.accounts().empty()) {
        m_manage.prompter().inform(kCaptionPrompt, kMsgLogin);
        return Result::Refused;
    }
    if (m_symbol.empty()) {
        m_manage.prompter().inform(kCaptionPrompt, kMsgNoSymbol);
        return Result::Refused;
    }
    refreshQuote();
    const double px = orderPrice(direction);
    if (!isPricePresent(px)) {
        m_manage.prompter().inform(kCaptionPromptBlank, kMsgBatchPrice);
        return Result::Refused;
    }
    for (std::size_t i = 0; i < m_accounts.accounts().size(); ++i) {
        const tagAccoutInfo& a = m_accounts.accounts()[i];
        const double lots = volumeOf(a);
        if (!m_accounts.checked(i) || lots < 1) continue;
        tagBrokerOrder o;
        o.strAccountID = a.strAccountID;
        o.strBrokerID = a.strBrokerID;
        o.nExchangeID = m_symbol.wExchangeID;
        o.strSymbolText = m_symbol.strCode;
        o.strCode = m_symbol.strCode;
        o.nDirection = direction;
        o.tCreateTime = m_manage.clock().now();
        o.dVolume = lots;
        o.dPrice = px;
        o.nOpenClose = openClose;
        o.nHedge = kSpeculation;
        m_last.push_back(o);
    }
    if (m_last.empty()) {
        m_manage.prompter().inform(kCaptionPrompt, kMsgNoBatchAccount);
        return Result::Refused;
    }
    const int r = m_manage.submitBatch(m_last, true, kBatchCaller, nullptr,
                                  CHelmsmanManage::Recorder::Caller);
    if (r == 0) {
        m_last.clear();
        return Result::Cancelled;
    }
    char reason[256];
    std::snprintf(reason, sizeof reason, kReasonBatch,
                  mode == Mode::Multiple ? kModeMultiple : (kModeCustom + std::string("[") + set + "]").c_str());
    account_journal::record(m_manage, kBatchCaption, std::to_string(m_handle), m_last, r, reason,
                            {{"baseVolume", baseVolume}, {"bid", m_tick.dBid}, {"ask", m_tick.dAsk}});
    return Result::Sent;
}
