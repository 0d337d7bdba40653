// CHelmsmanManage: the one process-wide manager. It holds what the host handed over at
// InitHelmsman (parent window, facade, directories, the fifth value), the settings record,
// the window-handle table and the list of registered windows, the fill notice's fills, and
// the keyed map of shared entries the algo worker reads. It forwards host events to
// registered windows and submits orders for every tool.
//
// Thread contract: everything runs on the UI thread except the keyed map, which is guarded by
// a recursive mutex because the algo worker reads it. The manager never owns or destroys
// tool windows; it owns the seams' defaults (system clock, silent prompter, null UI).
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "algo/algo_setting.h"
#include "app/algo_centre.h"
#include "app/local_trigger_centre.h"
#include "app/module_ui.h"
#include "app/order_journal.h"
#include "app/settings.h"
#include "host/clock.h"
#include "host/prompter.h"
#include "host/subscibe_manage.h"
#include "host/window.h"

// Who records an order the manager sends in the journal.
enum class JournalRecorder { Manager, Caller };

// Who sent an order and how, for its journal entry.
struct SendContext {
    std::string caller;      // the tool's name
    bool confirmed = false;  // the trader accepted it in a confirmation first
    JournalRecorder recorder = JournalRecorder::Manager;
};

class CHelmsmanManage {
public:
    CHelmsmanManage();
    ~CHelmsmanManage();
    CHelmsmanManage(const CHelmsmanManage&) = delete;
    CHelmsmanManage& operator=(const CHelmsmanManage&) = delete;

    // The process-wide instance the exports use. Tests build their own managers.
    static CHelmsmanManage& instance();

    // InitHelmsman: stores the five values, forms the user directory, loads the settings.
    void init(WndHandle parent, CSubscibeManage* facade, const std::string& rootDir,
              const std::string& userName, std::uint32_t hostValue);
    bool initialised() const { return m_facade != nullptr; }

    const std::string& rootDir() const { return m_rootDir; }
    const std::string& userName() const { return m_userName; }
    const std::string& userDir() const { return m_userDir; }
    // A file of the user directory, e.g. userFile("Profile.ini").
    std::filesystem::path userFile(const std::string& name) const;
    CSubscibeManage* facade() const { return m_facade; }
    WndHandle parentWnd() const { return m_parentWnd; }
    std::uint32_t hostValue() const { return m_hostValue; }

    // Seams. Pointers are not owned; nullptr restores the default.
    void setClock(IClock* clock);
    IClock& clock() const { return *m_clock; }
    void setPrompter(IPrompter* prompter);
    IPrompter& prompter() const { return *m_prompter; }
    void setUi(IModuleUi* ui);
    IModuleUi& ui() const { return *m_ui; }
    // The audit journal every tool records its orders in (a null journal by default).
    void setJournal(IOrderJournal* journal) { m_journal = journal ? journal : &m_nullJournal; }
    IOrderJournal& journal() const { return *m_journal; }

    // ---- Window handles --------------------------------------------------------------
    // Issues a fresh non-zero handle for the core object behind a window.
    WndHandle createHandle(IWndTarget* target, int dialogId = 0);
    // Forgets a handle (and unregisters it). Safe for unknown handles.
    void releaseHandle(WndHandle h);
    IWndTarget* target(WndHandle h) const;
    // Live handles of one dialog template (0: all), in creation order.
    std::vector<WndHandle> handlesOf(int dialogId) const;
    // Synchronous delivery to the object behind a handle; 0 for an unknown handle.
    std::intptr_t sendMessage(WndHandle h, std::uint32_t msg, std::uintptr_t wParam,
                              std::uintptr_t lParam) const;

    // Append a handle (duplicates allowed); remove the first equal one.
    void registerWindow(WndHandle h);
    void unregisterWindow(WndHandle h);
    const std::vector<WndHandle>& registeredWindows() const { return m_registered; }

    // ---- Host events -----------------------------------------------------------------
    int dataChange(std::uint32_t code, std::uintptr_t data);
    int logonStateChange(std::uint32_t code, std::uintptr_t data);
    // Fills shown by the single fill notice so far, in arrival order.
    const std::vector<tagBargainOrder>& noticeFills() const { return m_noticeFills; }

    // ---- Submission ------------------------------------------------------------------
    // Every order sent here (or handed to the algo centre) is recorded in the journal once:
    // by the manager, with the caller's name as the tool and a plain reason, unless the
    // caller says it records the order itself, with its own reason and figures.
    using Recorder = JournalRecorder;
    // One order: an empty remark becomes `caller`; with `confirm` the modal confirmation
    // decides (returns 1 accepted, 0 cancelled); else sendOrder's result.
    int submitOrder(tagBrokerOrder& order, bool confirm, const std::string& caller,
                    const tagAlgoSetting* algo, Recorder recorder = Recorder::Manager);
    // A batch: empty remarks become `caller`; with `confirm` the modal batch confirmation
    // (1 accepted, 0 cancelled); else sendBatch and 1.
    int submitBatch(std::vector<tagBrokerOrder>& orders, bool confirm, const std::string& caller,
                    const tagAlgoSetting* algo, Recorder recorder = Recorder::Manager);
    // Routing without confirmation: with a threshold block and algo trading on, volume at or
    // above its minimum goes to the algo centre, the rest to SendOrder.
    int sendOrder(tagBrokerOrder& order, const tagAlgoSetting* algo, const SendContext& how = {});
    void sendBatch(std::vector<tagBrokerOrder>& orders, const tagAlgoSetting* algo,
                   const SendContext& how = {});
    // Whether an order goes to algorithmic execution: algo trading switched on
    // (bUseAlgoTrading), a threshold block given, and the volume at or above its minimum. A
    // block alone never routes: it is a threshold, not a switch.
    bool routesToAlgo(const tagBrokerOrder& order, const tagAlgoSetting* algo) const;
    // Switches algo trading in memory (the order ticket's algorithm box is this switch); the
    // next settings save writes it.
    void setAlgoTrading(bool on) { m_settings.bUseAlgoTrading = on ? 1 : 0; }

    // ---- Symbol links ----------------------------------------------------------------
    // A symbol link reaches every open ticket one after another. A link refused (an
    // untradable instrument) is announced by the first ticket that refuses it; the others
    // stay silent. True for the first refusal of `symbol` since a link was last accepted.
    bool claimLinkRefusal(const tagSymbol& symbol);
    // A ticket switched to a linked symbol: the next refusal is announced again.
    void linkAccepted() { m_linkRefused = tagSymbol{}; }

    // ---- The single local trigger centre ---------------------------------------------
    // Builds the centre when the first trigger arrives or the centre is opened. The centre
    // is not owned: it lives with its window and says so when it goes (localTriggerCentreGone).
    using LocalTriggerFactory = std::function<ILocalTriggerCentre*()>;
    void setLocalTriggerFactory(LocalTriggerFactory factory);
    // The centre, built hidden on first use; nullptr when no factory is installed.
    ILocalTriggerCentre* localTriggerCentre();
    ILocalTriggerCentre* existingLocalTriggerCentre() const { return m_localTrigger; }
    void localTriggerCentreGone(ILocalTriggerCentre* centre);
    // The creators' entry points: false when there is no centre or the contract is unknown.
    bool addLocalTrigger(const tagTriggerOrder& trigger, const tagAlgoSetting* options);
    bool addLocalTriggers(const std::vector<tagTriggerOrder>& triggers,
                          const tagAlgoSetting* options);
    // Shows the centre, building it first if needed. False when it cannot be built.
    bool openLocalTrigger();

    // ---- The single algorithmic execution centre --------------------------------------
    // Built on first use (an order routed to it, OpenAlgoSet mode 1, the menu) and kept for
    // the process: it lives with its window and says so when it goes (algoCentreGone).
    using AlgoCentreFactory = std::function<IAlgoCentre*()>;
    void setAlgoCentreFactory(AlgoCentreFactory factory);
    // The centre, built hidden on first use; nullptr when no factory is installed.
    IAlgoCentre* algoCentre();
    void algoCentreGone(IAlgoCentre* centre);
    // Shows the centre, building it first if needed. False when it cannot be built.
    bool openAlgoCentre();
    // Hands orders to the centre; without one the UI says that nothing was sent. True when
    // every order was taken.
    bool handToAlgo(const std::vector<tagBrokerOrder>& orders, const tagAlgoSetting& algo);
    // The modal algorithm settings dialog on `block` (true when the user confirmed and the
    // block was changed); false with no editor installed.
    using AlgoSettingEditor = std::function<bool(tagAlgoSetting&)>;
    void setAlgoSettingEditor(AlgoSettingEditor editor) { m_algoSettingEditor = std::move(editor); }
    bool editAlgoSetting(tagAlgoSetting& block) {
        return m_algoSettingEditor && m_algoSettingEditor(block);
    }

    // ---- Settings --------------------------------------------------------------------
    const HelmsmanSettings& settings() const { return m_settings; }
    std::filesystem::path profilePath() const { return userFile("Profile.ini"); }
    void loadSettings();
    // Writes the file, then replaces the in-memory record (bAutoKP/nMinAutoKPPos are kept
    // from memory, never written). The record is replaced even when the file could not be
    // written: the module reports no writing errors, the result is there for a log.
    FileWriteResult saveSettings(const HelmsmanSettings& s);

    // ---- Keyed map of shared entries (read by the algo worker) ----------------------
    static std::string mapKey(int n, const std::string& text);
    std::recursive_mutex& mapMutex() { return m_mapMutex; }
    std::map<std::string, std::shared_ptr<void>>& entries() { return m_entries; }

private:
    void broadcast(std::uint32_t msg, std::uintptr_t wParam, std::uintptr_t lParam);
    void recordSent(const tagBrokerOrder& order, int result, bool toAlgo, const SendContext& how);

    std::string m_rootDir;
    std::string m_userName;
    std::string m_userDir;
    CSubscibeManage* m_facade = nullptr;
    WndHandle m_parentWnd = 0;
    std::uint32_t m_hostValue = 0;
    std::vector<WndHandle> m_registered;
    std::vector<WndHandle> m_broadcastScratch;
    int m_broadcastDepth = 0;

    struct HandleEntry {
        IWndTarget* target;
        int dialogId;
    };
    std::map<WndHandle, HandleEntry> m_handles;
    WndHandle m_nextHandle = 0x10000;

    std::vector<tagBargainOrder> m_noticeFills;
    tagSymbol m_linkRefused;  // the symbol whose refused link was last announced

    LocalTriggerFactory m_localTriggerFactory;
    ILocalTriggerCentre* m_localTrigger = nullptr;
    AlgoCentreFactory m_algoCentreFactory;
    IAlgoCentre* m_algoCentre = nullptr;
    AlgoSettingEditor m_algoSettingEditor;

    std::recursive_mutex m_mapMutex;
    std::map<std::string, std::shared_ptr<void>> m_entries;

    HelmsmanSettings m_settings;

    IClock* m_clock;
    IPrompter* m_prompter;
    IModuleUi* m_ui;
    SilentPrompter m_silentPrompter;
    NullModuleUi m_nullUi;
    NullOrderJournal m_nullJournal;
    IOrderJournal* m_journal = &m_nullJournal;
};
