// CLocalTrigger: the local trigger centre's core. It holds trigger orders in memory, watches
// the market for them through a quote cache and sends each one's order, once, when the price
// crosses its trigger price inside a trading period. Records never leave the array: firing
// and cancelling only change their status; all of them vanish with the object.
//
// Ownership: one per process, built by the manager's factory (inside the centre window, or
// alone in headless drivers and tests); it registers a window handle with the manager for
// quote notices and gives it back when destroyed.
//
// Threads: the add operations, the evaluation step and the data-change notice may be called
// from any thread. Two recursive mutexes guard the state: the trigger lock (the records) and
// the quote lock (the cache); whoever needs both takes the trigger lock first. The view and
// command functions belong to the UI thread. Evaluation never shows a box.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "algo/algo_setting.h"
#include "host/records.h"
#include "host/window.h"

class CHelmsmanManage;

// Result codes of one evaluation.
enum : int {
    kTriggerBadDirection = -7,
    kTriggerBadType = -6,
    kTriggerNoLastPrice = -5,
    kTriggerNoQuote = -4,
    kTriggerNotTrading = -3,
    kTriggerExpired = -2,
    kTriggerNotStarted = -1,
    kTriggerWaiting = 0,
    kTriggerFired = 1,
    kTriggerNotEvaluated = 100,  // no evaluation yet: an empty status text
};
// The status text of a result code ("" before the first evaluation).
const char* triggerResultText(int code);

// One local trigger.
struct tagLocalTrigger {
    tagTriggerOrder trigger;  // the order to send and its condition
    bool bHasOptions = false;
    tagAlgoSetting options;  // sent with the order when bHasOptions
    tagSymbol symbol;        // the trigger's exchange and code
    IModuleFutureTrader::ISpecDetailValue detail;
    int nPriceDecimals = 0;  // how the contract's prices are shown
    int nResult = kTriggerNotEvaluated;
};

// What the list shows (section "LocalTrigger" of Profile.ini).
struct LocalTriggerDisplay {
    int nShowType = 1;  // 0 all, 1 waiting, 2 cancelled, 3 fired
    int bShowExpiredTime = 0;
    int bShowEntryFlag = 0;
    int bShowSpeculate = 0;
    int bShowComment = 0;
    friend bool operator==(const LocalTriggerDisplay&, const LocalTriggerDisplay&) = default;
};
LocalTriggerDisplay loadLocalTriggerDisplay(const std::filesystem::path& profile);
bool saveLocalTriggerDisplay(const std::filesystem::path& profile, const LocalTriggerDisplay& d);

// One row of the list: the record's index in the array and the cell texts.
struct LocalTriggerRow {
    int index = -1;
    std::vector<std::string> cells;
};

class CLocalTrigger : public IWndTarget {
public:
    explicit CLocalTrigger(CHelmsmanManage& manager);
    ~CLocalTrigger() override;
    CLocalTrigger(const CLocalTrigger&) = delete;
    CLocalTrigger& operator=(const CLocalTrigger&) = delete;

    WndHandle handle() const { return m_hWnd; }

    // ---- Adding ------------------------------------------------------------------------
    // False, and nothing added, when the host knows no contract for the trigger's symbol.
    bool addTrigger(const tagTriggerOrder& trigger, const tagAlgoSetting* options = nullptr);
    // Adds every trigger whose contract is known; always true.
    bool addTriggers(const std::vector<tagTriggerOrder>& triggers,
                     const tagAlgoSetting* options = nullptr);

    // ---- Events and the step -----------------------------------------------------------
    // A host event: a quote (1000) of a cached symbol replaces its snapshot (returns 1);
    // other events return 0; -1 for a missing payload or a centre being closed.
    int dataChange(std::uint32_t code, std::uintptr_t data);
    std::intptr_t onMessage(std::uint32_t msg, std::uintptr_t wParam,
                            std::uintptr_t lParam) override;
    // The 600 ms step: evaluates every waiting record against the clock's now and fires
    // what crossed. True when the list is due for a rebuild (every fifth step).
    bool step();
    static constexpr int kStepMs = 600;
    static constexpr int kRebuildEvery = 5;
    // Gives up every subscription and refuses further notices. Called by the destructor;
    // the window calls it earlier when it is destroyed.
    void close();

    // ---- Reading ------------------------------------------------------------------------
    std::size_t size() const;
    tagLocalTrigger record(std::size_t index) const;  // a copy; index < size()
    std::string statusText(std::size_t index) const;
    // Symbols in the quote cache, in the order they entered it.
    std::vector<tagSymbol> cachedSymbols() const;

    // ---- The list ----------------------------------------------------------------------
    const LocalTriggerDisplay& display() const { return m_display; }
    // Applies and writes the options (when they changed).
    void setDisplay(const LocalTriggerDisplay& display);
    // The column layout of the visible columns.
    std::string columnLayout() const;
    std::vector<LocalTriggerRow> rows() const;
    // The cells of one record (all columns, the optional ones by the display options).
    std::vector<std::string> rowCells(std::size_t index) const;
    bool isListed(std::size_t index) const;
    int selection() const { return m_selection; }
    void setSelection(int index) { m_selection = index; }
    // Called after something changed that the list shows (from the adding thread).
    void setListChanged(std::function<void()> callback) { m_listChanged = std::move(callback); }

    // ---- Commands (UI thread) -------------------------------------------------------------
    // Asks once per index, from the last upwards; returns the indices cancelled.
    std::vector<int> cancelSelected(const std::vector<int>& indices);
    // Asks once; true when any waiting record was cancelled.
    bool cancelAll();
    // Appends the header and the listed rows to `path` (GBK). A file that cannot be opened
    // is said in a box; the records are untouched either way.
    bool exportCsv(const std::filesystem::path& path);

private:
    // What the evaluation reads of a record, packed so a step walks a small array.
    struct Hot {
        std::int64_t tStart;
        std::int64_t tExpiry;
        double dTriggerPrice;
        std::uint32_t slot;  // quote cache entry
        std::int8_t kind;    // fires at or below (0), at or above (1), or a result code
        std::int8_t status;  // the record's status
        std::int8_t result;  // the last evaluation's code
        std::int8_t pad = 0;
    };
    // One symbol of the quote cache.
    struct Slot {
        tagSymbol symbol;
        std::shared_ptr<const IModuleFutureTrader::ITickEx> quote;  // null: none yet
    };
    // A slot as one step sees it.
    struct SlotView {
        int state;
        bool hasQuote;
        bool preOpenPrice;  // watched is the pre-open price, there being no last price
        double watched;
        double bid;
        double ask;
    };

    bool addLocked(const tagTriggerOrder& trigger, const tagAlgoSetting* options,
                   std::vector<std::uint32_t>& newSlots);
    std::uint32_t slotFor(const tagSymbol& symbol, std::vector<std::uint32_t>& newSlots);
    void subscribe(const std::vector<std::uint32_t>& newSlots);
    void fire(std::size_t index, const SlotView& view, std::int64_t now);
    void recordFired(const tagLocalTrigger& rec, const tagBrokerOrder& order, int result,
                     const SlotView& view);
    void setStatus(std::size_t index, std::int32_t status);
    void notifyListChanged();

    CHelmsmanManage& m_manager;
    WndHandle m_hWnd = 0;
    bool m_closing = false;

    mutable std::recursive_mutex m_triggerLock;  // m_records, m_hot, m_view
    mutable std::recursive_mutex m_quoteLock;    // m_slots
    std::vector<tagLocalTrigger> m_records;
    std::vector<Hot> m_hot;
    std::vector<SlotView> m_view;
    std::vector<Slot> m_slots;
    std::uint64_t m_steps = 0;
    bool m_inStep = false;  // under the trigger lock

    LocalTriggerDisplay m_display;
    int m_selection = -1;
    std::function<void()> m_listChanged;
};
