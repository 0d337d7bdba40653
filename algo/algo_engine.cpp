#include "algo/algo_engine.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "algo/algo_file.h"
#include "algo/algo_strings.h"
#include "app/auto_kp.h"
#include "app/helmsman_manage.h"
#include "spread/template_store.h"

CAlgoEngine::CAlgoEngine(CHelmsmanManage& manager, std::filesystem::path file)
    : m_manager(manager),
      m_host(manager.facade()),
      m_file(file.empty() ? manager.userFile(kFileName) : std::move(file)) {
    m_hWnd = m_manager.createHandle(this);
    m_manager.registerWindow(m_hWnd);
}

CAlgoEngine::~CAlgoEngine() {
    m_manager.releaseHandle(m_hWnd);
    std::lock_guard lock(mutex());
    for (auto& [serial, o] : m_bySerial)
        m_manager.entries().erase(CHelmsmanManage::mapKey(serial, o->m_symbol.strCode));
}

std::recursive_mutex& CAlgoEngine::mutex() const {
    return m_manager.mapMutex();
}

// ---- Adding -------------------------------------------------------------------------------

std::shared_ptr<CAlgoOrder> CAlgoEngine::add(const tagBrokerOrder& order,
                                             const tagAlgoSetting& setting, bool running) {
    std::lock_guard lock(mutex());
    auto o = addLocked(order, setting, running);
    if (o) {
        changed();
        saveLocked();
    }
    return o;
}

std::shared_ptr<CAlgoOrder> CAlgoEngine::addLocked(const tagBrokerOrder& order,
                                                   const tagAlgoSetting& setting, bool running) {
    if (!m_host || !(order.dVolume >= 1 - 1e-9)) return nullptr;
    if (order.nDirection != kDirBuy && order.nDirection != kDirSell) return nullptr;
    IModuleFutureTrader::ISpecDetailValue detail;
    const tagSymbol symbol{static_cast<std::uint16_t>(order.nExchangeID), order.strCode};
    if (symbol.empty() || !m_host->GetSymbolProperty(symbol, detail)) return nullptr;
    auto o = std::make_shared<CAlgoOrder>(m_nextSerial++, order, setting, detail);
    o->m_nMinAutoKPPos = m_manager.settings().nMinAutoKPPos;
    insert(o);
    if (running) o->start(basePrice(*o), m_manager.clock().nowMs());
    return o;
}

int CAlgoEngine::addOrders(const std::vector<tagBrokerOrder>& orders,
                           const tagAlgoSetting& setting, bool running) {
    std::lock_guard lock(mutex());
    int n = 0;
    for (const auto& o : orders)
        if (addLocked(o, setting, running)) ++n;
    if (n > 0) {
        changed();
        saveLocked();
    }
    return n;
}

void CAlgoEngine::insert(const std::shared_ptr<CAlgoOrder>& o) {
    m_manager.entries()[CHelmsmanManage::mapKey(o->m_nSerial, o->m_symbol.strCode)] = o;
    m_bySerial[o->m_nSerial] = o;
    m_nextSerial = std::max(m_nextSerial, o->m_nSerial + 1);
    rebuildStepList();
}

void CAlgoEngine::rebuildStepList() {
    m_stepList.clear();
    for (auto& [key, entry] : m_manager.entries()) {
        auto* o = static_cast<CAlgoOrder*>(entry.get());
        const auto it = m_bySerial.find(o->m_nSerial);
        if (it != m_bySerial.end() && it->second.get() == o) m_stepList.push_back(o);
    }
}

double CAlgoEngine::basePrice(const CAlgoOrder& o) {
    IModuleFutureTrader::ITickEx q;
    if (m_host && m_host->GetMarketQuote(o.m_symbol, q)) {
        if (isPricePresent(q.dLast)) return q.dLast;
        if (isPricePresent(q.dBid) && isPricePresent(q.dAsk)) return (q.dBid + q.dAsk) / 2;
    }
    return o.m_dOrderPrice;
}

// ---- The pass -----------------------------------------------------------------------------

void CAlgoEngine::pass() {
    std::lock_guard lock(mutex());
    const std::uint64_t tick = m_manager.clock().tickCount();
    const std::int64_t nowMs = m_manager.clock().nowMs();
    for (CAlgoOrder* o : m_stepList) stepOrder(*o, tick, nowMs);
    m_passes.fetch_add(1);
}

void CAlgoEngine::stepOrder(CAlgoOrder& o, std::uint64_t tick, std::int64_t nowMs) {
    switch (o.step(tick)) {
        case AlgoAction::None:
            return;
        case AlgoAction::SendSlice:
            sendSlice(o, tick, nowMs);
            return;
        default:
            lookUp(o, tick, true);
            return;
    }
}

void CAlgoEngine::sendSlice(CAlgoOrder& o, std::uint64_t tick, std::int64_t nowMs) {
    IModuleFutureTrader::ITickEx q;
    if (!m_host || !m_host->GetMarketQuote(o.m_symbol, q)) {
        if (o.m_strMessage != algo_text::kMsgNoQuote) {
            o.m_strMessage = algo_text::kMsgNoQuote;
            changed();
        }
        return;
    }
    AlgoSlice s = o.planSlice(q, nowMs, tick);
    if (s.volume < 1) {
        const char* why = o.ranges(q.dLast).blocked && o.remaining() > 0 ? algo_text::kMsgBlocked
                          : o.remaining() > 0                             ? algo_text::kMsgNoQuote
                                                                          : nullptr;
        if (why && o.m_strMessage != why) {
            o.m_strMessage = why;
            changed();
        }
        return;
    }
    tagBrokerOrder slice = o.sliceOrder(s, nowMs / 1000);
    if (o.m_setting.bAutoKP != 0) {
        // The slice opens or closes by the account's position; a closing slice never closes
        // more than the opposite side holds.
        HelmsmanSettings rule;
        rule.bAutoKP = 1;
        rule.nMinAutoKPPos = o.m_nMinAutoKPPos;
        slice.nOpenClose = chooseOpenClose(*m_host, slice, rule);
        tagOpenedPosition pos;
        if (slice.nOpenClose != kOpen &&
            m_host->GetPosition(pos, slice.strAccountID, slice.strBrokerID, o.m_symbol)) {
            const double held = std::floor(o.m_nDirection == kDirBuy ? pos.dShort : pos.dLong);
            if (held >= 1 && held < s.volume) s.volume = static_cast<int>(held);
            slice.dVolume = s.volume;
        }
    }
    // Written before the send: a kill between the send and the next save leaves the slice
    // marked out with no identifier, and the reload searches the host for its tag.
    const int sliceNo = o.m_nSliceNo + 1;
    {
        CAlgoOrder ahead = o;
        ahead.m_nSliceNo = sliceNo;
        ahead.m_bSliceOpen = true;
        ahead.m_strSliceID.clear();
        ahead.m_dSliceVolume = s.volume;
        ahead.m_dSliceFilled = 0;
        ahead.m_nState = kAlgoSending;
        std::vector<const CAlgoOrder*> list;
        for (const CAlgoOrder* p : m_stepList) list.push_back(p == &o ? &ahead : p);
        // A slice that could not be recorded is not sent: a restart could send it twice.
        if (const FileWriteResult w =
                template_file_detail::writeFileBytes(m_file, algo_file::compose(list));
            !w) {
            const std::string message = algo_text::kMsgCannotSave + w.reason;
            if (o.m_strMessage != message) {
                o.m_strMessage = message;
                changed();
            }
            return;
        }
    }
    const double remainingBefore = o.remaining();
    slice.strOrderID.clear();
    const int result = m_host->SendOrder(slice);
    o.sliceSent(s, slice, result, tick);
    saveLocked();
    changed();

    JournalEntry e;
    e.timeMs = nowMs;
    e.tool = algo_text::kToolName;
    e.window = std::to_string(m_hWnd);
    e.tag = slice.strRemark;
    e.order = slice;
    e.result = result;
    char reason[160];
    std::snprintf(reason, sizeof reason, algo_text::kJournalReason, sliceNo,
                  static_cast<int>(remainingBefore), algo_text::kPacing[o.m_nPacing]);
    e.reason = reason;
    e.figures = {{"order", static_cast<double>(o.m_nSerial)},
                 {"slice", static_cast<double>(sliceNo)},
                 {"volume", static_cast<double>(s.volume)},
                 {"price", s.price},
                 {"intervalMs", static_cast<double>(s.intervalMs)},
                 {"remaining", remainingBefore},
                 {"basePrice", o.m_dBasePrice},
                 {"last", q.dLast},
                 {"bid", q.dBid},
                 {"ask", q.dAsk}};
    m_journal.push_back(std::move(e));
}

void CAlgoEngine::lookUp(CAlgoOrder& o, std::uint64_t tick, bool mayCancel) {
    if (!m_host) return;
    tagBrokerOrder record;
    bool found = false;
    if (!o.m_strSliceID.empty()) {
        found = m_host->GetOrder(record, o.m_strAccountID, o.m_strBrokerID, o.m_strSliceID) != 0;
    } else {
        std::vector<tagBrokerOrder> all;
        if (!m_host->GetAllOrders(all)) return;  // no answer: ask again next pass
        const std::string tag = o.tag();
        for (const auto& r : all)
            if (r.strRemark == tag && r.strAccountID == o.m_strAccountID) {
                record = r;
                found = true;
                break;
            }
    }
    if (o.lookupAnswered(found, record, tick)) {
        changed();
        m_dirty = true;
    }
    if (mayCancel && o.wantsCancel(tick)) requestCancel(o, tick);
}

void CAlgoEngine::requestCancel(CAlgoOrder& o, std::uint64_t tick) {
    m_host->DeleteOrder(o.m_strAccountID, o.m_strBrokerID, o.m_strSliceID);
    o.cancelRequested(tick);
    changed();
    m_dirty = true;
}

// ---- Reports ------------------------------------------------------------------------------

int CAlgoEngine::onOrderChanged(const tagBrokerOrder& record) {
    int serial = 0, sliceNo = 0;
    if (!CAlgoOrder::parseTag(record.strRemark, serial, sliceNo)) return 0;
    std::lock_guard lock(mutex());
    const auto o = find(serial);
    if (!o || !o->matches(record)) return 0;
    if (o->m_strSliceID.empty()) o->m_strSliceID = record.strOrderID;
    if (o->accept(record)) {
        changed();
        m_dirty = true;
    }
    return 1;
}

std::intptr_t CAlgoEngine::onMessage(std::uint32_t msg, std::uintptr_t wParam,
                                     std::uintptr_t lParam) {
    if (msg != kMsgDataChange || eventKind(static_cast<std::uint32_t>(wParam)) != kEventOrderChanged)
        return 1;
    if (lParam == 0) return -1;
    return onOrderChanged(*reinterpret_cast<const tagBrokerOrder*>(lParam));
}

// ---- Commands -----------------------------------------------------------------------------

bool CAlgoEngine::start(int serial) {
    std::lock_guard lock(mutex());
    const auto o = find(serial);
    if (!o || o->m_nRun != kRunPaused) return false;
    o->start(basePrice(*o), m_manager.clock().nowMs());
    changed();
    saveLocked();
    return true;
}

bool CAlgoEngine::pause(int serial) {
    std::lock_guard lock(mutex());
    const auto o = find(serial);
    if (!o || o->m_nRun != kRunRunning || o->finished()) return false;
    o->pause();
    changed();
    saveLocked();
    return true;
}

bool CAlgoEngine::cancel(int serial) {
    std::lock_guard lock(mutex());
    const auto o = find(serial);
    if (!o || (o->m_nRun != kRunRunning && o->m_nRun != kRunPaused)) return false;
    o->cancel();
    const std::uint64_t tick = m_manager.clock().tickCount();
    if (o->m_bSliceOpen && !o->m_strSliceID.empty() && o->m_nState != kAlgoCancelling &&
        o->m_nState != kAlgoError)
        requestCancel(*o, tick);
    changed();
    saveLocked();
    return true;
}

bool CAlgoEngine::remove(int serial) {
    std::lock_guard lock(mutex());
    const auto o = find(serial);
    if (!o || o->m_nRun == kRunDeleted) return false;
    cancel(serial);
    o->markDeleted();
    changed();
    saveLocked();
    return true;
}

bool CAlgoEngine::reset(int serial) {
    std::lock_guard lock(mutex());
    const auto o = find(serial);
    if (!o || o->m_nState != kAlgoError) return false;
    o->reset();
    changed();
    saveLocked();
    return true;
}

bool CAlgoEngine::setPacing(int serial, int pacing) {
    std::lock_guard lock(mutex());
    const auto o = find(serial);
    if (!o || pacing < kPaceNormal || pacing > kPaceImmediate) return false;
    o->setPacing(pacing);
    // A new pacing applies now: the wait granted under the old one is over.
    o->m_nIntervalMs = std::min<std::int64_t>(o->m_nIntervalMs, kFastestIntervalMs);
    changed();
    saveLocked();
    return true;
}

// ---- Reading ------------------------------------------------------------------------------

std::shared_ptr<CAlgoOrder> CAlgoEngine::find(int serial) const {
    std::lock_guard lock(mutex());
    const auto it = m_bySerial.find(serial);
    return it == m_bySerial.end() ? nullptr : it->second;
}

std::vector<std::shared_ptr<CAlgoOrder>> CAlgoEngine::orders() const {
    std::lock_guard lock(mutex());
    std::vector<std::shared_ptr<CAlgoOrder>> out;
    for (const CAlgoOrder* o : m_stepList) out.push_back(m_bySerial.at(o->m_nSerial));
    return out;
}

std::vector<CAlgoOrder> CAlgoEngine::snapshot() const {
    std::lock_guard lock(mutex());
    std::vector<CAlgoOrder> out;
    for (const CAlgoOrder* o : m_stepList)
        if (o->m_nRun != kRunDeleted) out.push_back(*o);
    std::sort(out.begin(), out.end(),
              [](const CAlgoOrder& a, const CAlgoOrder& b) { return a.m_nSerial < b.m_nSerial; });
    return out;
}

// ---- Persistence --------------------------------------------------------------------------

FileWriteResult CAlgoEngine::save() {
    std::lock_guard lock(mutex());
    return saveLocked();
}

FileWriteResult CAlgoEngine::saveLocked() {
    const std::vector<const CAlgoOrder*> list(m_stepList.begin(), m_stepList.end());
    m_dirty = false;
    return template_file_detail::writeFileBytes(m_file, algo_file::compose(list));
}

void CAlgoEngine::saveIfDirty() {
    std::lock_guard lock(mutex());
    if (m_dirty) saveLocked();
}

int CAlgoEngine::load() {
    std::vector<CAlgoOrder> loaded =
        algo_file::parse(template_file_detail::readFileBytes(m_file));
    std::lock_guard lock(mutex());
    for (auto& [serial, o] : m_bySerial)
        m_manager.entries().erase(CHelmsmanManage::mapKey(serial, o->m_symbol.strCode));
    m_bySerial.clear();
    m_stepList.clear();
    int n = 0;
    const std::uint64_t tick = m_manager.clock().tickCount();
    for (CAlgoOrder& o : loaded) {
        m_nextSerial = std::max(m_nextSerial, o.m_nSerial + 1);
        if (o.m_nRun == kRunDeleted) continue;  // kept for the session that deleted it only
        auto p = std::make_shared<CAlgoOrder>(std::move(o));
        p->restored();
        insert(p);
        if (p->m_bNeedsLookup) lookUp(*p, tick, false);
        ++n;
    }
    changed();
    return n;
}

// ---- Journal ------------------------------------------------------------------------------

void CAlgoEngine::drainJournal() {
    std::vector<JournalEntry> entries;
    {
        std::lock_guard lock(mutex());
        entries.swap(m_journal);
    }
    for (const auto& e : entries) m_manager.journal().record(e);
}
