#include "robots/blader.h"

#include <algorithm>
#include <cstdio>

#include "app/helmsman_manage.h"
#include "host/price.h"
#include "robots/blader_strings.h"

namespace t = blader_text;

namespace blader {

double Ladder::tick() const {
    return price::pointOnGrid(minMove, priceUnit);
}

double Ladder::entry(double base, std::int32_t k) const {
    const double d = static_cast<double>(grid) * k * tick();
    return isLong ? base - d : base + d;
}

double Ladder::openPrice(double base, std::int32_t k) const {
    const double p = entry(base, k);
    return isLong ? price::roundBuy(p, minMove, priceUnit)
                  : price::roundSell(p, minMove, priceUnit);
}

double Ladder::closePrice(double base, std::int32_t n) const {
    const double newest = entry(base, n - 1);
    const double w = static_cast<double>(win) * tick();
    return isLong ? price::roundSell(newest + w, minMove, priceUnit)
                  : price::roundBuy(newest - w, minMove, priceUnit);
}

bool Ladder::nearLimit(double last, double upper, double lower) const {
    const double band = kLimitGuardTicks * tick();
    return upper - band < last || lower + band >= last;
}

}  // namespace blader

namespace {

bool busy(std::int32_t legState) {
    return legState == 1 || legState == 3 || legState == 5 || legState == 7;
}

std::string printf1(const char* format, int value) {
    char text[128];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

}  // namespace

CBlader::CBlader(CHelmsmanManage& manager)
    : m_manager(manager),
      m_hWnd(manager.createHandle(this, kDialogId)),
      m_tags(m_hWnd, manager.clock()),
      m_open(LegMachine::SingleOpen, manager.prompter(), manager.clock()),
      m_close(LegMachine::SingleClose, manager.prompter(), manager.clock()) {
    m_subscription.bind(manager.facade(), m_hWnd);
    m_released.reserve(4);
}

CBlader::~CBlader() {
    close();
    m_manager.releaseHandle(m_hWnd);
}

blader::Ladder CBlader::ladder() const {
    return {m_setting.bLong != 0, m_setting.nGridInterval, m_setting.nWinPoint, m_minMove,
            m_priceUnit};
}

int CBlader::priceDecimals() const {
    return price::decimals(m_minMove, m_priceUnit);
}

// ---- Settings ------------------------------------------------------------------------------

bool CBlader::setSetting(const tagBladerSetting& setting) {
    if (m_running) return false;
    m_setting = setting;
    const tagSymbol symbol{setting.wExchangeID, setting.szSymbolCode};
    if (!(symbol == m_symbol) || !contractKnown()) {
        m_symbol = symbol;
        m_minMove = 0;
        m_priceUnit = 0;
        m_tickUnits = 0;
        m_last = m_bid = m_ask = m_upper = m_lower = m_volume = 0;
        m_quoteTime = 0;
        CSubscibeManage* host = m_manager.facade();
        IModuleFutureTrader::ISpecDetailValue detail;
        if (host && !symbol.empty() && host->GetSymbolProperty(symbol, detail) != 0) {
            m_minMove = detail.nMinMove;
            m_priceUnit = detail.fPriceUnit;
            m_tickUnits = price::stepUnits(m_minMove, m_priceUnit);
        }
        m_tick = contractKnown() ? price::pointOnGrid(m_minMove, m_priceUnit) : 0;
        if (!m_closing) m_subscription.switchTo(contractKnown() ? symbol : tagSymbol{});
        IModuleFutureTrader::ITickEx tick;
        if (host && contractKnown() && host->GetMarketQuote(symbol, tick) != 0) onQuote(tick);
    }
    ++m_revision;
    return true;
}

// ---- Running -------------------------------------------------------------------------------

bool CBlader::start() {
    if (m_running || m_closing) return m_running;
    std::vector<tagAccoutInfo> accounts;
    if (CSubscibeManage* host = m_manager.facade()) host->GetAvailableAccounts(accounts);
    const auto chosen = std::find_if(accounts.begin(), accounts.end(), [&](const auto& a) {
        return a.strAccountID == m_account.strAccountID && a.strBrokerID == m_account.strBrokerID;
    });
    if (accounts.empty() || (!m_account.strAccountID.empty() && chosen == accounts.end())) {
        m_manager.prompter().inform(t::kPrompt, t::kLogonFirst, PromptIcon::Exclamation);
        return false;
    }
    if (m_account.strAccountID.empty()) m_account = accounts.front();
    if (!contractKnown()) {
        m_manager.prompter().inform(t::kPrompt, t::kChooseSymbol, PromptIcon::Exclamation);
        return false;
    }
    m_open.intervene();
    m_close.intervene();
    m_timeUp = false;
    std::fill(std::begin(m_retryAt), std::end(m_retryAt), 0);
    std::fill(std::begin(m_retryDelay), std::end(m_retryDelay), 0);
    m_running = true;
    ++m_revision;
    decide();
    return true;
}

bool CBlader::pause() {
    if (!m_running) return true;
    if (busy(m_open.state()) || busy(m_close.state())) {
        m_manager.prompter().inform(t::kPrompt, t::kPauseBusy, PromptIcon::Exclamation);
        return false;
    }
    release(m_open, true);
    release(m_close, false);
    m_running = false;
    ++m_revision;
    return true;
}

void CBlader::release(CLeg& leg, bool opening) {
    CSubscibeManage* host = m_manager.facade();
    if (!host || !leg.cancel(*host)) return;
    m_released.push_back({leg.tag(), leg.orderId(), opening});
    leg = CLeg(opening ? LegMachine::SingleOpen : LegMachine::SingleClose, m_manager.prompter(),
               m_manager.clock());
}

void CBlader::setPosition(std::int32_t entries) {
    entries = std::max(0, entries);
    if (entries == m_held) return;
    m_manager.prompter().inform(t::kPrompt, t::kPositionTyped, PromptIcon::Exclamation);
    m_held = entries;
    if (m_held == 0) {
        m_firstEntry = 0;
    } else {
        if (m_firstEntry == 0)
            m_firstEntry = std::max<std::uint64_t>(1, m_manager.clock().tickCount());
        if (!isPricePresent(m_base)) m_base = m_last;
    }
    ++m_revision;
    decide();
}

bool CBlader::confirmClose() {
    if (m_closing) return true;
    if (m_running && !m_manager.prompter().ask(t::kConfirm, t::kAskClose)) return false;
    // Resting orders go with the robot: nothing would follow them any more.
    if (CSubscibeManage* host = m_manager.facade()) {
        m_open.cancel(*host);
        m_close.cancel(*host);
    }
    close();
    return true;
}

void CBlader::close() {
    m_closing = true;
    m_running = false;
    m_subscription.release();
}

void CBlader::finishTimeUp() {
    m_open.halt();
    m_close.halt();
    m_running = false;
    ++m_revision;
}

std::string CBlader::caption() const {
    if (m_held < 1 || m_firstEntry == 0) return t::kCaptionIdle;
    const std::uint64_t seconds = (m_manager.clock().tickCount() - m_firstEntry) / 1000;
    return printf1(t::kCaption, static_cast<int>(seconds));
}

std::string CBlader::totals() const {
    char text[64];
    std::snprintf(text, sizeof text, t::kTotals, m_opened, m_closed);
    return text;
}

// ---- Events --------------------------------------------------------------------------------

std::intptr_t CBlader::onMessage(std::uint32_t msg, std::uintptr_t wParam, std::uintptr_t lParam) {
    if (msg != kMsgDataChange) return 0;
    if (m_closing) return -1;
    const std::uint32_t kind = eventKind(static_cast<std::uint32_t>(wParam));
    if (kind == kEventQuote) {
        if (lParam) onQuote(*reinterpret_cast<const IModuleFutureTrader::ITickEx*>(lParam));
        return 1;
    }
    if (kind == kEventOrderChanged) return onOrder(reinterpret_cast<const tagBrokerOrder*>(lParam));
    return 1;
}

void CBlader::onQuote(const IModuleFutureTrader::ITickEx& q) {
    if (q.wExchangeID != m_symbol.wExchangeID || q.strCode != m_symbol.strCode) return;
    // A subscribed window that is also registered hears each quote twice; once is news.
    if (q.tQuoteTime == m_quoteTime && q.dLast == m_last && q.dBid == m_bid && q.dAsk == m_ask &&
        q.dVolume == m_volume)
        return;
    m_quoteTime = q.tQuoteTime;
    m_last = q.dLast;
    m_bid = q.dBid;
    m_ask = q.dAsk;
    m_volume = q.dVolume;
    m_upper = q.dUpperLimit;
    m_lower = q.dLowerLimit;
    ++m_revision;
    decide();
}

int CBlader::onOrder(const tagBrokerOrder* record) {
    const std::int32_t open = m_open.state(), close = m_close.state();
    CLeg* legs[] = {&m_open, &m_close};
    CLeg* matched = nullptr;
    const int result =
        routeOrderNotification(m_closing, kEventOrderChanged, record, legs, &matched);
    if (result != 1) return result;
    if (!matched) {
        if (m_released.empty() || !watchReleased(*record)) return 1;
    } else {
        noteStep(0, open, m_open.state());
        noteStep(1, close, m_close.state());
    }
    ++m_revision;
    settle();
    decide();
    return 1;
}

void CBlader::timerStep() {
    if (m_closing) return;
    if (CSubscibeManage* host = m_manager.facade()) {
        for (int l = 0; l < 2; ++l) {
            CLeg& leg = l == 0 ? m_open : m_close;
            if (!leg.overdue(kQuietMs)) continue;
            const LegStep step = leg.reconcile(*host);
            noteStep(l, step.from, step.to);
        }
        if (!m_released.empty()) reconcileReleased();
    }
    settle();
    ++m_revision;  // the caption's seconds
    decide();
}

// A refusal (the order went back from sent to idle) makes the leg wait before it tries
// again; an order the exchange took ends the waiting.
void CBlader::noteStep(int l, std::int32_t from, std::int32_t to) {
    const std::int32_t base = l == 0 ? 0 : 4;
    if (from == base + 1 && to == kLegIdle) {
        std::uint64_t& delay = m_retryDelay[l];
        delay = delay == 0 ? kFirstRetryMs : std::min(delay * 2, kLastRetryMs);
        m_retryAt[l] = m_manager.clock().tickCount() + delay;
    } else if (to == base + 2 || to == base + 4) {
        m_retryDelay[l] = 0;
    }
}

// Books what a leg finished: a filled entry adds one, a filled close takes one off.
void CBlader::settle() {
    if (m_open.state() == 4) {
        if (m_held++ == 0 && m_firstEntry == 0)
            m_firstEntry = std::max<std::uint64_t>(1, m_manager.clock().tickCount());
        ++m_opened;
        m_open.finishCycle();
        ++m_revision;
    }
    if (m_close.state() == 8) {
        if (m_held > 0) --m_held;
        if (m_held == 0) m_firstEntry = 0;
        ++m_closed;
        m_close.finishCycle();
        ++m_revision;
    }
}

bool CBlader::watchReleased(const tagBrokerOrder& record) {
    for (auto it = m_released.begin(); it != m_released.end(); ++it) {
        if (!tagMatches(record.strRemark, it->tag)) continue;
        switch (record.nStatus) {
            case kOrderFilled:
                if (it->opening) {
                    if (m_held++ == 0)
                        m_firstEntry = std::max<std::uint64_t>(1, m_manager.clock().tickCount());
                    ++m_opened;
                } else {
                    if (m_held > 0) --m_held;
                    if (m_held == 0) m_firstEntry = 0;
                    ++m_closed;
                }
                break;
            case kOrderCancelled:
            case kOrderRejected:
            case kOrderPartCancelled:
            case kOrderExpired:
                break;
            default:
                return false;  // still working: keep watching
        }
        m_released.erase(it);
        return true;
    }
    return false;
}

void CBlader::reconcileReleased() {
    CSubscibeManage* host = m_manager.facade();
    const std::vector<Released> watched = m_released;
    for (const Released& r : watched) {
        tagBrokerOrder record;
        if (r.orderId.empty() ||
            host->GetOrder(record, m_account.strAccountID, m_account.strBrokerID, r.orderId) != 1)
            continue;
        if (tagMatches(record.strRemark, r.tag)) watchReleased(record);
    }
}

// ---- Decisions -----------------------------------------------------------------------------

bool CBlader::quoteValid() const {
    return isPricePresent(m_last) && isPricePresent(m_bid) && isPricePresent(m_ask);
}

void CBlader::decide() {
    if (!m_running || m_closing || !m_manager.facade()) return;
    const std::uint64_t now = m_manager.clock().tickCount();
    // A typed figure with no ladder yet takes the market as its base.
    if (m_held >= 1 && !isPricePresent(m_base) && isPricePresent(m_last)) m_base = m_last;
    if (!m_timeUp && m_setting.nTimeExit > 0 && m_held >= 1 && m_firstEntry != 0 &&
        now - m_firstEntry >= static_cast<std::uint64_t>(m_setting.nTimeExit) * 1000) {
        m_timeUp = true;
        ++m_revision;
    }
    stepClose(now);
    stepOpen(now);
    const auto settled = [](std::int32_t s) { return s == kLegIdle || s == kLegParked; };
    if (m_timeUp && m_held == 0 && settled(m_open.state()) && settled(m_close.state()))
        finishTimeUp();
}

void CBlader::stepOpen(std::uint64_t now) {
    const std::int32_t state = m_open.state();
    if (state == 2) {
        if (m_timeUp || m_openIndex != m_held) m_open.cancel(*m_manager.facade());
        return;
    }
    if (state != kLegIdle || m_timeUp || m_held >= m_setting.nMaxPos || now < m_retryAt[0]) return;
    const blader::Ladder l = ladder();
    if (l.nearLimit(m_last, m_upper, m_lower)) return;
    if (!quoteValid()) return;
    if (m_held == 0) {
        m_base = m_last;
        m_firstEntry = std::max<std::uint64_t>(1, now);
    }
    sendOpen(l.openPrice(m_base, m_held));
}

void CBlader::stepClose(std::uint64_t now) {
    const std::int32_t state = m_close.state();
    const bool isLong = m_setting.bLong != 0;
    if (state == 6) {
        bool reprice = m_held < 1 || m_timeUp != m_closeAtMarket;
        if (!reprice && !m_timeUp) reprice = m_closeIndex != m_held;
        if (!reprice && m_timeUp) {
            // Following the quote: a sell above the bid, or a buy below the ask, waits in vain.
            const double half = m_tick / 2;
            reprice = isLong ? isPricePresent(m_bid) && m_closeSent > m_bid + half
                             : isPricePresent(m_ask) && m_closeSent < m_ask - half;
        }
        if (reprice) m_close.cancel(*m_manager.facade());
        return;
    }
    if (state != kLegIdle || m_held < 1 || now < m_retryAt[1]) return;
    double price = 0;
    if (m_timeUp) {
        // The opposite best with an allowance, so a market that moves on while the order
        // travels still fills it (the exchange fills at the best price there is), never
        // beyond the limit price.
        const double allowance = blader::kExitAllowanceTicks * m_tick;
        if (isLong) {
            if (!isPricePresent(m_bid)) return;
            price = price::roundSell(m_bid - allowance, m_minMove, m_priceUnit);
            if (isPricePresent(m_lower)) price = std::max(price, m_lower);
        } else {
            if (!isPricePresent(m_ask)) return;
            price = price::roundBuy(m_ask + allowance, m_minMove, m_priceUnit);
            if (isPricePresent(m_upper)) price = std::min(price, m_upper);
        }
    } else {
        if (!isPricePresent(m_base)) return;
        price = ladder().closePrice(m_base, m_held);
    }
    sendClose(price);
}

tagBrokerOrder CBlader::newOrder(std::int32_t direction, std::int32_t openClose,
                                 double price) const {
    tagBrokerOrder o;
    o.strAccountID = m_account.strAccountID;
    o.strBrokerID = m_account.strBrokerID;
    o.nExchangeID = m_symbol.wExchangeID;
    o.strSymbolText = m_symbol.strCode;
    o.strCode = m_symbol.strCode;
    o.nPriceType = 0;
    o.nDirection = direction;
    o.tCreateTime = m_manager.clock().now();
    o.dVolume = 1;
    o.dPrice = price;
    o.nOpenClose = openClose;
    o.nHedge = kSpeculation;
    return o;
}

// Entries are opened today: they close as today's position where the account holds one on
// that side (the exchanges that tell the two apart refuse a plain close of today's lots).
std::int32_t CBlader::closeFlag() const {
    tagOpenedPosition position;
    if (m_manager.facade()->GetPosition(position, m_account.strAccountID, m_account.strBrokerID,
                                        m_symbol) == 0)
        return kClose;
    const double today = m_setting.bLong ? position.dLongToday : position.dShortToday;
    return today >= 1 ? kCloseToday : kClose;
}

void CBlader::sendOpen(double price) {
    const bool first = m_held == 0;
    tagBrokerOrder order = newOrder(m_setting.bLong ? kDirBuy : kDirSell, kOpen, price);
    m_openIndex = m_held;
    send(m_open, 0, order, m_tags.make("te", first ? TagPrefix::Blader : TagPrefix::Dollar),
         printf1(t::kReasonEntry, m_held + 1).c_str(), price);
}

void CBlader::sendClose(double price) {
    tagBrokerOrder order = newOrder(m_setting.bLong ? kDirSell : kDirBuy, closeFlag(), price);
    m_closeIndex = m_held;
    m_closeAtMarket = m_timeUp;
    m_closeSent = price;
    send(m_close, 1, order, m_tags.make("tx", TagPrefix::Dollar),
         printf1(m_timeUp ? t::kReasonTimeUp : t::kReasonTarget, m_held).c_str(), price);
}

bool CBlader::send(CLeg& leg, int l, tagBrokerOrder& order, std::string tag, const char* reason,
                   double target) {
    int result = 0;
    const bool sent = leg.send(order, std::move(tag), [&](tagBrokerOrder& o) {
        // The robot records its own journal entry below, with its reason.
        return result = m_manager.sendOrder(o, nullptr, {{}, false, JournalRecorder::Caller});
    });
    if (!sent) return false;
    noteStep(l, l == 0 ? 1 : 5, leg.state());
    ++m_revision;

    JournalEntry entry;
    entry.timeMs = m_manager.clock().nowMs();
    entry.tool = t::kToolName;
    entry.window = std::to_string(m_hWnd);
    entry.tag = order.strRemark;
    entry.order = order;
    entry.result = result;
    entry.reason = reason;
    const double step = static_cast<double>(m_setting.nGridInterval) * m_tick;
    entry.figures = {{"entry", static_cast<double>(l == 0 ? m_openIndex + 1 : m_closeIndex)},
                     {"base", m_base},
                     {"grid", step},
                     {"target", target},
                     {"last", m_last}};
    m_manager.journal().record(entry);
    return true;
}
