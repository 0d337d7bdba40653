#include "trigger/local_trigger.h"

#include <ctime>
#include <limits>

#include "app/helmsman_manage.h"
#include "host/codes.h"
#include "host/number_text.h"
#include "host/price.h"
#include "host/trading_session.h"
#include "trigger/trigger_strings.h"

namespace {

// Prices below this are absent for the evaluation.
constexpr double kMinPrice = 1e-6;

// How a record's trigger type and direction decide, worked out once when it is added.
constexpr std::int8_t kFiresAtOrBelow = 0;
constexpr std::int8_t kFiresAtOrAbove = 1;

std::int8_t triggerKind(std::int32_t direction, std::int32_t type) {
    if (direction != kDirBuy && direction != kDirSell) return kTriggerBadDirection;
    if (direction == kDirBuy) {
        if (type == kTriggerBuyDip) return kFiresAtOrBelow;
        if (type == kTriggerBuyChase) return kFiresAtOrAbove;
    } else {
        if (type == kTriggerSellRise) return kFiresAtOrAbove;
        if (type == kTriggerSellChase) return kFiresAtOrBelow;
    }
    return kTriggerBadType;
}

// Seconds since local midnight of calendar seconds t. The broken-down local time is worked
// out once per quarter hour: zones change their offset only on quarter hours, so within one
// the time of day moves with t.
std::int32_t secondOfDay(std::int64_t t) {
    constexpr std::int64_t kBlock = 900;
    thread_local std::int64_t blockStart = std::numeric_limits<std::int64_t>::min();
    thread_local std::int32_t blockSecOfDay = 0;
    const std::int64_t start = t - ((t % kBlock) + kBlock) % kBlock;
    if (start != blockStart) {
        const std::tm local = toLocalTm(start);
        blockStart = start;
        blockSecOfDay = local.tm_hour * 3600 + local.tm_min * 60 + local.tm_sec;
    }
    return blockSecOfDay + static_cast<std::int32_t>(t - start);
}

}  // namespace

const char* triggerResultText(int code) {
    switch (code) {
        case kTriggerBadDirection:
            return trigger_text::kBadDirection;
        case kTriggerBadType:
            return trigger_text::kBadTriggerType;
        case kTriggerNoLastPrice:
            return trigger_text::kNoLastPrice;
        case kTriggerNoQuote:
            return trigger_text::kNoQuote;
        case kTriggerNotTrading:
            return trigger_text::kNotTrading;
        case kTriggerExpired:
            return trigger_text::kExpired;
        case kTriggerNotStarted:
            return trigger_text::kNotStarted;
        case kTriggerNotEvaluated:
            return "";
        default:
            return trigger_text::kNormal;
    }
}

CLocalTrigger::CLocalTrigger(CHelmsmanManage& manager) : m_manager(manager) {
    m_hWnd = m_manager.createHandle(this, trigger_text::kDialogId);
    m_manager.registerWindow(m_hWnd);
    if (m_manager.initialised()) m_display = loadLocalTriggerDisplay(m_manager.profilePath());
}

CLocalTrigger::~CLocalTrigger() {
    close();
    m_manager.releaseHandle(m_hWnd);
}

void CLocalTrigger::close() {
    std::lock_guard quoteLock(m_quoteLock);
    if (m_closing) return;
    if (CSubscibeManage* facade = m_manager.facade()) {
        for (const Slot& slot : m_slots) {
            if (slot.symbol.empty()) continue;
            tagSubscribeBlock block{1, &slot.symbol};
            facade->QueryInterface(kQuerySubscribeQuote, m_hWnd, 0, &block);
        }
    }
    m_closing = true;
}

// ---- Adding --------------------------------------------------------------------------------

std::uint32_t CLocalTrigger::slotFor(const tagSymbol& symbol,
                                     std::vector<std::uint32_t>& newSlots) {
    for (std::uint32_t i = 0; i < m_slots.size(); ++i)
        if (m_slots[i].symbol == symbol) return i;
    m_slots.push_back(Slot{symbol, nullptr});
    const auto slot = static_cast<std::uint32_t>(m_slots.size() - 1);
    newSlots.push_back(slot);
    return slot;
}

bool CLocalTrigger::addLocked(const tagTriggerOrder& trigger, const tagAlgoSetting* options,
                              std::vector<std::uint32_t>& newSlots) {
    tagLocalTrigger rec;
    rec.symbol.wExchangeID = static_cast<std::uint16_t>(trigger.nExchangeID);
    rec.symbol.strCode = trigger.strCode;
    CSubscibeManage* facade = m_manager.facade();
    // An unknown contract is refused without a word: reporting it is the caller's business.
    if (!facade || rec.symbol.empty() || !facade->GetSymbolProperty(rec.symbol, rec.detail))
        return false;
    rec.trigger = trigger;
    if (options) {
        rec.bHasOptions = true;
        rec.options = *options;
    }
    rec.nPriceDecimals = price::decimals(rec.detail.nMinMove, rec.detail.fPriceUnit);

    std::lock_guard triggerLock(m_triggerLock);
    std::uint32_t slot;
    {
        std::lock_guard quoteLock(m_quoteLock);
        slot = slotFor(rec.symbol, newSlots);
    }
    Hot hot{};
    hot.tStart = trigger.tStart;
    hot.tExpiry = trigger.tExpiry;
    hot.dTriggerPrice = trigger.dTriggerPrice;
    hot.slot = slot;
    hot.kind = triggerKind(trigger.nDirection, trigger.nTriggerType);
    hot.status = static_cast<std::int8_t>(trigger.nStatus);
    hot.result = static_cast<std::int8_t>(kTriggerNotEvaluated);
    // A status outside the small range the step knows is kept out of the evaluation.
    if (trigger.nStatus < 0 || trigger.nStatus > 100) hot.status = 100;
    m_records.push_back(std::move(rec));
    m_hot.push_back(hot);
    return true;
}

void CLocalTrigger::subscribe(const std::vector<std::uint32_t>& newSlots) {
    CSubscibeManage* facade = m_manager.facade();
    if (!facade || newSlots.empty()) return;
    for (std::uint32_t slot : newSlots) {
        tagSymbol symbol;
        {
            std::lock_guard quoteLock(m_quoteLock);
            if (m_closing) return;  // everything was given back already
            symbol = m_slots[slot].symbol;
        }
        tagSubscribeBlock block{1, &symbol};
        facade->QueryInterface(kQuerySubscribeQuote, m_hWnd, 1, &block);
        // The quote as it stands, so a trigger does not wait for the market's next move.
        IModuleFutureTrader::ITickEx tick;
        if (facade->GetMarketQuote(symbol, tick)) {
            auto snapshot = std::make_shared<const IModuleFutureTrader::ITickEx>(std::move(tick));
            std::lock_guard quoteLock(m_quoteLock);
            if (!m_slots[slot].quote) m_slots[slot].quote = std::move(snapshot);
        }
    }
}

bool CLocalTrigger::addTrigger(const tagTriggerOrder& trigger, const tagAlgoSetting* options) {
    std::vector<std::uint32_t> newSlots;
    if (!addLocked(trigger, options, newSlots)) return false;
    subscribe(newSlots);
    notifyListChanged();
    return true;
}

bool CLocalTrigger::addTriggers(const std::vector<tagTriggerOrder>& triggers,
                                const tagAlgoSetting* options) {
    std::vector<std::uint32_t> newSlots;
    {
        std::lock_guard triggerLock(m_triggerLock);
        m_records.reserve(m_records.size() + triggers.size());
        m_hot.reserve(m_hot.size() + triggers.size());
        for (const tagTriggerOrder& t : triggers) addLocked(t, options, newSlots);
    }
    subscribe(newSlots);
    notifyListChanged();
    return true;
}

void CLocalTrigger::notifyListChanged() {
    if (m_listChanged) m_listChanged();
}

// ---- Events --------------------------------------------------------------------------------

int CLocalTrigger::dataChange(std::uint32_t code, std::uintptr_t data) {
    if (!data) return -1;
    std::lock_guard quoteLock(m_quoteLock);
    if (m_closing) return -1;
    if (eventKind(code) != kEventQuote) return 0;
    const auto& tick = *reinterpret_cast<const IModuleFutureTrader::ITickEx*>(data);
    for (Slot& slot : m_slots) {
        if (slot.symbol.wExchangeID == tick.wExchangeID && slot.symbol.strCode == tick.strCode) {
            slot.quote = std::make_shared<const IModuleFutureTrader::ITickEx>(tick);
            break;
        }
    }
    return 1;
}

std::intptr_t CLocalTrigger::onMessage(std::uint32_t msg, std::uintptr_t wParam,
                                       std::uintptr_t lParam) {
    if (msg == kMsgDataChange) return dataChange(static_cast<std::uint32_t>(wParam), lParam);
    return 0;
}

// ---- The step ------------------------------------------------------------------------------

bool CLocalTrigger::step() {
    const IClock& clock = m_manager.clock();
    const std::int64_t now = clock.now();
    const std::int32_t secOfDay = secondOfDay(now);
    {
        std::lock_guard triggerLock(m_triggerLock);
        std::lock_guard quoteLock(m_quoteLock);
        // A send can open a modal box whose event loop runs the timer again, on this thread
        // and inside these locks: that step is skipped, so the pass below keeps its arrays.
        if (m_inStep) return false;
        m_inStep = true;
        // Each symbol's period state and watched price, once per step.
        if (m_view.size() != m_slots.size()) m_view.resize(m_slots.size());
        for (std::size_t s = 0; s < m_slots.size(); ++s) {
            SlotView& v = m_view[s];
            v.state = session::localTriggerPeriod(m_slots[s].symbol.wExchangeID, secOfDay);
            const IModuleFutureTrader::ITickEx* q = m_slots[s].quote.get();
            v.hasQuote = q != nullptr;
            v.preOpenPrice = false;
            v.watched = v.bid = v.ask = 0;
            if (!q) continue;
            v.watched = q->dLast;
            if (v.watched < kMinPrice && v.state == session::kLocalPreOpen) {
                v.watched = q->dPreOpenPrice1 >= kMinPrice ? q->dPreOpenPrice1 : q->dPreOpenPrice2;
                v.preOpenPrice = true;
            }
            v.bid = q->dBid;
            v.ask = q->dAsk;
        }

        const std::size_t n = m_hot.size();
        Hot* hot = m_hot.data();
        const SlotView* views = m_view.data();
        for (std::size_t i = 0; i < n; ++i) {
            Hot& h = hot[i];  // not used after fire()
            if (h.status != kOrderWaitTrigger) continue;
            const SlotView& v = views[h.slot];
            std::int8_t result;
            if (h.tStart > now)
                result = kTriggerNotStarted;
            else if (h.tExpiry > 0 && h.tExpiry < now)
                result = kTriggerExpired;
            else if (v.state == session::kLocalClosed)
                result = kTriggerNotTrading;
            else if (!v.hasQuote)
                result = kTriggerNoQuote;
            else if (v.watched < kMinPrice)
                result = kTriggerNoLastPrice;
            else if (h.kind < 0)
                result = h.kind;
            else if (h.kind == 0 ? v.watched <= h.dTriggerPrice : v.watched >= h.dTriggerPrice)
                result = kTriggerFired;
            else
                result = kTriggerWaiting;
            h.result = result;
            if (result == kTriggerFired) {
                fire(i, v, now);
                // Triggers added meanwhile (from that modal loop) may have moved the array;
                // they are evaluated from the next step.
                hot = m_hot.data();
            }
        }
        m_inStep = false;
    }
    ++m_steps;
    return m_steps % kRebuildEvery == 0;
}

void CLocalTrigger::fire(std::size_t index, const SlotView& view, std::int64_t now) {
    tagLocalTrigger& rec = m_records[index];
    const tagTriggerOrder& t = rec.trigger;
    tagBrokerOrder order;
    order.strAccountID = t.strAccountID;
    order.strBrokerID = t.strBrokerID;
    order.nExchangeID = t.nExchangeID;
    order.strSymbolText = t.strSymbolText;
    order.strCode = t.strCode;
    order.nDirection = t.nDirection;
    order.tCreateTime = now;
    order.dVolume = t.dVolume;
    order.dPrice = t.dPrice;
    // At market: the touch of the quote that fired it.
    if (order.dPrice < kMinPrice) order.dPrice = t.nDirection == kDirBuy ? view.ask : view.bid;
    order.dStopLoss = t.dStopLoss;
    order.dTakeProfit = t.dTakeProfit;
    order.nOpenClose = t.nOpenClose;
    order.nHedge = t.nHedge;
    order.strRemark = trigger_text::kComment;
    // Marked first: a send that fails is not retried, and a send that comes back into the
    // centre must not find the record still waiting.
    setStatus(index, kOrderFilled);
    rec.trigger.tStart = now;
    m_hot[index].tStart = now;
    // The send may come back into the centre and add triggers, moving the records: keep the
    // options in hand and find the record again by its index afterwards.
    const bool hasOptions = rec.bHasOptions;
    const tagAlgoSetting options = rec.options;
    const int result = m_manager.submitOrder(order, false, trigger_text::kComment,
                                             hasOptions ? &options : nullptr,
                                             CHelmsmanManage::Recorder::Caller);
    recordFired(m_records[index], order, result, view);
}

void CLocalTrigger::recordFired(const tagLocalTrigger& rec, const tagBrokerOrder& order,
                                int result, const SlotView& view) {
    using namespace trigger_text;
    const tagTriggerOrder& t = rec.trigger;
    const bool fallsTo = triggerKind(t.nDirection, t.nTriggerType) == kFiresAtOrBelow;
    auto price = [&](double v) { return number_text::format(v, rec.nPriceDecimals); };
    JournalEntry e;
    e.timeMs = m_manager.clock().nowMs();
    e.tool = kJournalTool;
    e.window = kCaption;
    e.tag = order.strRemark;
    e.order = order;
    e.result = result;
    e.reason = std::string(codes::triggerTypeText(t.nTriggerType)) + "：" +
               (view.preOpenPrice ? kJournalPreOpenPrice : kJournalLastPrice) +
               price(view.watched) + (fallsTo ? kJournalFellTo : kJournalRoseTo) +
               kJournalTriggerPrice + price(t.dTriggerPrice);
    if (t.dPrice < kMinPrice) e.reason += kJournalAtMarket + price(order.dPrice) + kJournalSent;
    e.figures = {{kJournalFigWatched, view.watched},
                 {kJournalFigTrigger, t.dTriggerPrice},
                 {kJournalFigBid, view.bid},
                 {kJournalFigAsk, view.ask}};
    m_manager.journal().record(e);
}

void CLocalTrigger::setStatus(std::size_t index, std::int32_t status) {
    m_records[index].trigger.nStatus = status;
    m_hot[index].status = static_cast<std::int8_t>(status);
}

// ---- Reading -------------------------------------------------------------------------------

std::size_t CLocalTrigger::size() const {
    std::lock_guard triggerLock(m_triggerLock);
    return m_records.size();
}

tagLocalTrigger CLocalTrigger::record(std::size_t index) const {
    std::lock_guard triggerLock(m_triggerLock);
    tagLocalTrigger rec = m_records.at(index);
    rec.nResult = m_hot[index].result;
    return rec;
}

std::string CLocalTrigger::statusText(std::size_t index) const {
    std::lock_guard triggerLock(m_triggerLock);
    return triggerResultText(m_hot.at(index).result);
}

std::vector<tagSymbol> CLocalTrigger::cachedSymbols() const {
    std::lock_guard quoteLock(m_quoteLock);
    std::vector<tagSymbol> out;
    out.reserve(m_slots.size());
    for (const Slot& s : m_slots) out.push_back(s.symbol);
    return out;
}
