// CAlgoEngine: every algo order of the module and the one pass that steps them. It makes the
// host calls the orders ask for (quote, send, query, cancel), routes the host's order reports
// to the order whose slice they describe, records each slice in the audit journal and keeps
// the order list in the user directory's algoOrders.dat.
//
// The list is the manager's keyed map of shared entries: key "%d|%s" of the order number and
// its instrument code, the value a shared CAlgoOrder; the pass steps the orders in key order.
// The map belongs to the algo engine alone.
//
// How a report finds its order: every slice carries the tag "算法|<order>|<slice>" in its
// remark. A report (event 2) is taken by the order with that number when the slice number is
// the one now out and, once the host has named the slice, the identifier is the slice's. Late
// or duplicated reports of earlier slices are ignored; their outcome was already counted.
//
// A restart never doubles a slice: the list is written before a slice is sent (the slice
// marked out, its identifier unknown) and again after. A reloaded order whose slice was out
// asks the host first, by identifier or, without one, by searching the day's orders for the
// tag; a slice the host never saw is closed with nothing filled.
//
// Threads: pass() runs on the worker (algo_worker.h) or the caller; reports and commands come
// from the UI thread. The manager's recursive map mutex guards every access to the list and
// the orders; host calls are made under it (the host must be callable from both threads).
// Journal entries are queued and written by drainJournal() on the caller's thread, so the
// journal only ever sees the UI thread. Owned by the algo centre (or a test, or a driver).
#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <vector>

#include "algo/algo_order.h"
#include "app/file_replace.h"
#include "app/order_journal.h"
#include "host/window.h"

class CHelmsmanManage;
class CSubscibeManage;

class CAlgoEngine : public IWndTarget {
public:
    // `file` empty: algoOrders.dat in the manager's user directory.
    explicit CAlgoEngine(CHelmsmanManage& manager, std::filesystem::path file = {});
    ~CAlgoEngine() override;
    CAlgoEngine(const CAlgoEngine&) = delete;
    CAlgoEngine& operator=(const CAlgoEngine&) = delete;

    static constexpr const char* kFileName = "algoOrders.dat";
    static constexpr int kSaveEvery = 1000;  // passes between the worker's periodic saves

    std::recursive_mutex& mutex() const;
    WndHandle handle() const { return m_hWnd; }
    const std::filesystem::path& file() const { return m_file; }

    // ---- Adding -------------------------------------------------------------------------
    // A new order from a plain order record; null when its volume is below one lot or the
    // host knows no contract for it. Running orders take their base price now.
    std::shared_ptr<CAlgoOrder> add(const tagBrokerOrder& order, const tagAlgoSetting& setting,
                                    bool running);
    // Adds each order (one save for all); returns how many were taken.
    int addOrders(const std::vector<tagBrokerOrder>& orders, const tagAlgoSetting& setting,
                  bool running);

    // ---- The pass and the reports ---------------------------------------------------------
    // Steps every order once, in key order, at the clock's now.
    void pass();
    std::uint64_t passes() const { return m_passes.load(); }
    // An order report (event 2); 1 when it belonged to a slice of ours.
    int onOrderChanged(const tagBrokerOrder& record);
    std::intptr_t onMessage(std::uint32_t msg, std::uintptr_t wParam,
                            std::uintptr_t lParam) override;

    // ---- Commands (the centre) ----------------------------------------------------------
    bool start(int serial);
    bool pause(int serial);
    // Stops slicing; a slice working at the exchange is cancelled now.
    bool cancel(int serial);
    // Cancels as above and hides the order; it stays in the list for the session.
    bool remove(int serial);
    bool reset(int serial);
    bool setPacing(int serial, int pacing);

    // ---- Reading ------------------------------------------------------------------------
    std::shared_ptr<CAlgoOrder> find(int serial) const;
    // Every order, deleted ones included, in key order.
    std::vector<std::shared_ptr<CAlgoOrder>> orders() const;
    // Copies of the orders the centre shows (not deleted), in order of their numbers.
    std::vector<CAlgoOrder> snapshot() const;
    // Grows on every change the centre shows.
    std::uint64_t revision() const { return m_revision.load(); }

    // ---- Persistence --------------------------------------------------------------------
    FileWriteResult save();
    // Saves when a report changed something since the last save.
    void saveIfDirty();
    void periodicSave() { save(); }
    // Replaces the list with the file's; reloaded orders come back paused and a slice that
    // was out is looked up through the host. Returns how many orders were loaded.
    int load();

    // ---- Journal ------------------------------------------------------------------------
    // Records the queued entries in the manager's journal (call on the UI thread).
    void drainJournal();

private:
    std::shared_ptr<CAlgoOrder> addLocked(const tagBrokerOrder& order,
                                          const tagAlgoSetting& setting, bool running);
    void stepOrder(CAlgoOrder& o, std::uint64_t tick, std::int64_t nowMs);
    void sendSlice(CAlgoOrder& o, std::uint64_t tick, std::int64_t nowMs);
    // Asks the host about the slice (query or search); cancels when it should. `mayCancel`
    // false: only reads (a reload).
    void lookUp(CAlgoOrder& o, std::uint64_t tick, bool mayCancel);
    void requestCancel(CAlgoOrder& o, std::uint64_t tick);
    void insert(const std::shared_ptr<CAlgoOrder>& o);
    double basePrice(const CAlgoOrder& o);
    void changed() { m_revision.fetch_add(1); }
    FileWriteResult saveLocked();

    CHelmsmanManage& m_manager;
    CSubscibeManage* m_host;
    std::filesystem::path m_file;
    WndHandle m_hWnd = 0;
    int m_nextSerial = 1;
    // The orders this engine put in the map, by number.
    std::unordered_map<int, std::shared_ptr<CAlgoOrder>> m_bySerial;
    // The map's orders in key order, for the pass; rebuilt when the map changes.
    std::vector<CAlgoOrder*> m_stepList;
    void rebuildStepList();
    std::atomic<std::uint64_t> m_passes{0};
    std::atomic<std::uint64_t> m_revision{0};
    bool m_dirty = false;
    std::vector<JournalEntry> m_journal;
};
