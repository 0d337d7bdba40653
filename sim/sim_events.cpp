// The event queue: everything the exchange reports is queued under the lock and delivered
// later, outside it, by deliverPending.
#include <iterator>

#include "sim/sim_exchange_impl.h"

using namespace simdetail;

void SimExchange::Impl::push(Event&& e) {
    ++st.eventsQueued;
    queue.push_back(std::move(e));
}

void SimExchange::Impl::queueOrder(std::size_t oi) {
    const Order& o = orders[oi];
    if (!accounts[o.account].on) return;
    queueTrade(kEventOrderChanged, Payload(o.o));
}

void SimExchange::Impl::queueTrade(std::uint32_t code, Payload&& p) {
    if (!sink && !desk) return;
    if (dropN > 0) {
        --dropN;
        ++st.eventsDropped;
        return;
    }
    Event e;
    e.code = code;
    e.payload = std::move(p);
    e.toMain = sink != nullptr;
    e.toDesk = desk != nullptr;
    if (dupN > 0) {
        --dupN;
        e.copies = 2;
    }
    if (delayCalls > 0) e.dueCall = deliverCalls + static_cast<std::uint64_t>(delayCalls) + 1;
    if (delayMs > 0) e.dueMs = clock.nowMs() + delayMs;
    push(std::move(e));
}

void SimExchange::Impl::queueTrigger(std::size_t ti) {
    if (!desk && !sink) return;
    Event e;
    e.code = kSimEventTriggerChanged;
    e.payload = triggers[ti].t;
    e.toMain = sink != nullptr;
    e.toDesk = desk != nullptr;
    push(std::move(e));
}

void SimExchange::Impl::queueQuote(std::size_t mi) {
    const Market& m = markets[mi];
    bool main = sink && !m.subs->empty();
    if (!main && !desk) return;
    Event e;
    e.code = kEventQuote;
    e.payload.emplace<ITickEx>(m.q);
    if (main) e.handles = m.subs;
    e.toMain = main;
    e.toDesk = desk != nullptr;
    push(std::move(e));
}

void SimExchange::Impl::queueLogon(std::uint32_t code, const tagAccoutInfo& info) {
    if (!sink && !desk) return;
    Event e;
    e.logon = true;
    e.code = code;
    e.payload = info;
    e.toMain = sink != nullptr;
    e.toDesk = desk != nullptr;
    push(std::move(e));
}

void SimExchange::setEventSink(ISimEventSink* sink) {
    SIM_LOCK;
    d.sink = sink;
}

void SimExchange::setDeskSink(ISimEventSink* sink) {
    SIM_LOCK;
    d.desk = sink;
}

std::size_t SimExchange::deliverPending() {
    Impl& d = *m_impl;
    std::vector<Impl::Event> batch;
    ISimEventSink* sink = nullptr;
    ISimEventSink* desk = nullptr;
    {
        std::lock_guard<std::recursive_mutex> lock(d.mu);
        if (d.delivering || d.queue.empty()) {
            if (!d.delivering) ++d.deliverCalls;
            return 0;
        }
        d.delivering = true;
        ++d.deliverCalls;
        const std::int64_t now = d.clock.nowMs();
        auto due = [&](const Impl::Event& e) {
            return e.dueCall <= d.deliverCalls && (e.dueMs <= 0 || e.dueMs <= now);
        };
        batch.swap(d.batchScratch);  // the buffer of an earlier delivery
        batch.reserve(d.queue.size());
        if (std::all_of(d.queue.begin(), d.queue.end(), due)) {
            // The usual case: everything is due and the queue keeps its storage.
            std::move(d.queue.begin(), d.queue.end(), std::back_inserter(batch));
            d.queue.clear();
        } else {
            std::deque<Impl::Event> held;
            for (auto& e : d.queue) {
                if (due(e))
                    batch.push_back(std::move(e));
                else
                    held.push_back(std::move(e));
            }
            d.queue.swap(held);
        }
        sink = d.sink;
        desk = d.desk;
    }
    struct Reset {
        Impl& d;
        ~Reset() {
            std::lock_guard<std::recursive_mutex> lock(d.mu);
            d.delivering = false;
        }
    } reset{d};

    std::size_t delivered = 0;
    for (auto& e : batch) {
        std::uintptr_t data = std::visit(
            [](auto& v) -> std::uintptr_t {
                if constexpr (std::is_same_v<std::decay_t<decltype(v)>, std::monostate>)
                    return 0;
                else
                    return reinterpret_cast<std::uintptr_t>(&v);
            },
            e.payload);
        for (int c = 0; c < e.copies; ++c) {
            if (e.logon) {
                if (e.toMain && sink) sink->onLogonStateChange(e.code, data);
                if (e.toDesk && desk) desk->onLogonStateChange(e.code, data);
            } else {
                if (e.toMain && sink) {
                    sink->onDataChange(e.code, data);
                    if (e.handles)
                        for (std::uint32_t h : *e.handles)
                            sink->onWindowMessage(h, kMsgDataChange, e.code, data);
                }
                if (e.toDesk && desk) desk->onDataChange(e.code, data);
            }
            ++delivered;
        }
    }
    batch.clear();
    {
        std::lock_guard<std::recursive_mutex> lock(d.mu);
        d.st.eventsDelivered += delivered;
        if (batch.capacity() > d.batchScratch.capacity()) d.batchScratch.swap(batch);
    }
    return delivered;
}

std::size_t SimExchange::pendingEventCount() const {
    SIM_LOCK;
    return d.queue.size();
}

void SimExchange::setNotificationDelay(int calls, std::int64_t ms) {
    SIM_LOCK;
    d.delayCalls = std::max(0, calls);
    d.delayMs = std::max<std::int64_t>(0, ms);
}

void SimExchange::dropNextNotifications(int n) {
    SIM_LOCK;
    d.dropN = std::max(0, n);
}

void SimExchange::duplicateNextNotifications(int n) {
    SIM_LOCK;
    d.dupN = std::max(0, n);
}

SimStats SimExchange::stats() const {
    SIM_LOCK;
    SimStats s = d.st;
    s.pendingEvents = d.queue.size();
    return s;
}
