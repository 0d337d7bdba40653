#include "app/helmsman_manage.h"

#include <algorithm>
#include <cstdio>

#include "host/utf8_path.h"

namespace {

// The reasons the manager gives for what it sends on a tool's behalf.
constexpr const char* kJournalSent = "直接发出";
constexpr const char* kJournalConfirmedSent = "经下单确认后发出";
constexpr const char* kJournalToAlgo = "交给算法执行";
constexpr const char* kJournalConfirmedToAlgo = "经下单确认后交给算法执行";

}  // namespace

CHelmsmanManage::CHelmsmanManage()
    : m_clock(&SystemClock::instance()), m_prompter(&m_silentPrompter), m_ui(&m_nullUi) {}

CHelmsmanManage::~CHelmsmanManage() {
    std::lock_guard lock(m_mapMutex);
    m_entries.clear();
    m_registered.clear();
}

CHelmsmanManage& CHelmsmanManage::instance() {
    static CHelmsmanManage manager;
    return manager;
}

void CHelmsmanManage::init(WndHandle parent, CSubscibeManage* facade, const std::string& rootDir,
                           const std::string& userName, std::uint32_t hostValue) {
    m_parentWnd = parent;
    m_facade = facade;
    m_rootDir = rootDir;
    m_userName = userName;
    m_hostValue = hostValue;
    // The host's "%s\\user\\%s", built so it works on either system.
    m_userDir = pathUtf8(utf8Path(rootDir) / "user" / utf8Path(userName));
    loadSettings();
}

std::filesystem::path CHelmsmanManage::userFile(const std::string& name) const {
    return utf8Path(m_userDir) / utf8Path(name);
}

void CHelmsmanManage::setClock(IClock* clock) {
    m_clock = clock ? clock : &SystemClock::instance();
}

void CHelmsmanManage::setPrompter(IPrompter* prompter) {
    m_prompter = prompter ? prompter : &m_silentPrompter;
}

void CHelmsmanManage::setUi(IModuleUi* ui) { m_ui = ui ? ui : &m_nullUi; }

// ---- Window handles ----------------------------------------------------------------------

WndHandle CHelmsmanManage::createHandle(IWndTarget* target, int dialogId) {
    WndHandle h = ++m_nextHandle;
    if (h == 0) h = ++m_nextHandle;  // never hand out 0
    m_handles[h] = HandleEntry{target, dialogId};
    return h;
}

void CHelmsmanManage::releaseHandle(WndHandle h) {
    m_handles.erase(h);
    // A window that goes away must not be sent to any more.
    m_registered.erase(std::remove(m_registered.begin(), m_registered.end(), h),
                       m_registered.end());
}

IWndTarget* CHelmsmanManage::target(WndHandle h) const {
    auto it = m_handles.find(h);
    return it == m_handles.end() ? nullptr : it->second.target;
}

std::vector<WndHandle> CHelmsmanManage::handlesOf(int dialogId) const {
    std::vector<WndHandle> out;
    for (const auto& [h, e] : m_handles)
        if (dialogId == 0 || e.dialogId == dialogId) out.push_back(h);
    return out;
}

std::intptr_t CHelmsmanManage::sendMessage(WndHandle h, std::uint32_t msg, std::uintptr_t wParam,
                                           std::uintptr_t lParam) const {
    IWndTarget* t = target(h);
    return t ? t->onMessage(msg, wParam, lParam) : 0;
}

void CHelmsmanManage::registerWindow(WndHandle h) { m_registered.push_back(h); }

void CHelmsmanManage::unregisterWindow(WndHandle h) {
    auto it = std::find(m_registered.begin(), m_registered.end(), h);
    if (it != m_registered.end()) m_registered.erase(it);
}

// ---- Host events -------------------------------------------------------------------------

int CHelmsmanManage::dataChange(std::uint32_t code, std::uintptr_t data) {
    if (eventKind(code) == kEventNewFill) {
        // Fills go only to the single fill notice, and only when the user wants it.
        if (data != 0 && m_settings.bShowFilledOrder) {
            m_noticeFills.push_back(*reinterpret_cast<const tagBargainOrder*>(data));
            m_ui->showFillNotice(m_noticeFills);
        }
        return 0;
    }
    broadcast(kMsgDataChange, code, data);
    return 0;
}

int CHelmsmanManage::logonStateChange(std::uint32_t code, std::uintptr_t data) {
    broadcast(kMsgLogonState, code, data);
    return 0;
}

void CHelmsmanManage::broadcast(std::uint32_t msg, std::uintptr_t wParam, std::uintptr_t lParam) {
    // A handler may register or unregister windows (a robot closing itself), so iterate over
    // a snapshot; a window released meanwhile is skipped by sendMessage. The outermost
    // delivery reuses one buffer so a quote costs no allocation.
    std::vector<WndHandle> nested;
    std::vector<WndHandle>& targets = m_broadcastDepth == 0 ? m_broadcastScratch : nested;
    targets.assign(m_registered.begin(), m_registered.end());
    ++m_broadcastDepth;
    for (WndHandle h : targets) sendMessage(h, msg, wParam, lParam);
    --m_broadcastDepth;
}

// ---- Submission --------------------------------------------------------------------------

bool CHelmsmanManage::routesToAlgo(const tagBrokerOrder& order,
                                   const tagAlgoSetting* algo) const {
    return algo != nullptr && m_settings.bUseAlgoTrading != 0 && order.dVolume >= algo->minVolume();
}

int CHelmsmanManage::sendOrder(tagBrokerOrder& order, const tagAlgoSetting* algo,
                                const SendContext& how) {
    if (routesToAlgo(order, algo)) {
        const int r = handToAlgo({order}, *algo) ? 1 : 0;
        recordSent(order, r, true, how);
        return r;
    }
    const int r = m_facade ? m_facade->SendOrder(order) : 0;
    recordSent(order, r, false, how);
    return r;
}

void CHelmsmanManage::sendBatch(std::vector<tagBrokerOrder>& orders, const tagAlgoSetting* algo,
                                const SendContext& how) {
    std::vector<tagBrokerOrder> toAlgo;
    for (auto& order : orders) {
        if (routesToAlgo(order, algo)) {
            toAlgo.push_back(order);
        } else if (m_facade) {
            const int r = m_facade->SendOrder(order);
            recordSent(order, r, false, how);
        }
    }
    if (toAlgo.empty()) return;
    const int r = handToAlgo(toAlgo, *algo) ? 1 : 0;
    for (const auto& order : toAlgo) recordSent(order, r, true, how);
}

void CHelmsmanManage::recordSent(const tagBrokerOrder& order, int result, bool toAlgo,
                                 const SendContext& how) {
    if (how.recorder != Recorder::Manager) return;
    JournalEntry e;
    e.timeMs = m_clock->nowMs();
    // Without a name the remark tells who sent it (tools put their name there).
    e.tool = how.caller.empty() ? order.strRemark : how.caller;
    e.tag = order.strRemark;
    e.order = order;
    e.result = result;
    e.reason = toAlgo ? (how.confirmed ? kJournalConfirmedToAlgo : kJournalToAlgo)
                      : (how.confirmed ? kJournalConfirmedSent : kJournalSent);
    m_journal->record(e);
}

int CHelmsmanManage::submitOrder(tagBrokerOrder& order, bool confirm, const std::string& caller,
                                 const tagAlgoSetting* algo, Recorder recorder) {
    if (order.strRemark.empty()) order.strRemark = caller;
    const SendContext how{caller, confirm, recorder};
    if (confirm) {
        if (!m_ui->confirmOrder(order, caller, algo)) return 0;
        sendOrder(order, algo, how);
        return 1;
    }
    return sendOrder(order, algo, how);
}

int CHelmsmanManage::submitBatch(std::vector<tagBrokerOrder>& orders, bool confirm,
                                 const std::string& caller, const tagAlgoSetting* algo,
                                 Recorder recorder) {
    for (auto& order : orders)
        if (order.strRemark.empty()) order.strRemark = caller;
    const SendContext how{caller, confirm, recorder};
    if (confirm) {
        if (!m_ui->confirmBatch(orders, caller, algo)) return 0;
        sendBatch(orders, algo, how);
        return 1;
    }
    sendBatch(orders, algo, how);
    return 1;
}

// ---- The single algorithmic execution centre --------------------------------------------

void CHelmsmanManage::setAlgoCentreFactory(AlgoCentreFactory factory) {
    m_algoCentreFactory = std::move(factory);
}

IAlgoCentre* CHelmsmanManage::algoCentre() {
    if (!m_algoCentre && m_algoCentreFactory) m_algoCentre = m_algoCentreFactory();
    return m_algoCentre;
}

void CHelmsmanManage::algoCentreGone(IAlgoCentre* centre) {
    if (m_algoCentre == centre) m_algoCentre = nullptr;
}

bool CHelmsmanManage::openAlgoCentre() {
    IAlgoCentre* centre = algoCentre();
    if (!centre) return false;
    centre->showCentre();
    return true;
}

bool CHelmsmanManage::handToAlgo(const std::vector<tagBrokerOrder>& orders,
                                 const tagAlgoSetting& algo) {
    IAlgoCentre* centre = algoCentre();
    if (!centre) return m_ui->handToAlgoCentre(orders, algo);
    return centre->addAlgoOrders(orders, algo) == static_cast<int>(orders.size());
}

// ---- The single local trigger centre -----------------------------------------------------

void CHelmsmanManage::setLocalTriggerFactory(LocalTriggerFactory factory) {
    m_localTriggerFactory = std::move(factory);
}

ILocalTriggerCentre* CHelmsmanManage::localTriggerCentre() {
    if (!m_localTrigger && m_localTriggerFactory) m_localTrigger = m_localTriggerFactory();
    return m_localTrigger;
}

void CHelmsmanManage::localTriggerCentreGone(ILocalTriggerCentre* centre) {
    if (m_localTrigger == centre) m_localTrigger = nullptr;
}

bool CHelmsmanManage::addLocalTrigger(const tagTriggerOrder& trigger,
                                      const tagAlgoSetting* options) {
    ILocalTriggerCentre* centre = localTriggerCentre();
    return centre && centre->addTrigger(trigger, options);
}

bool CHelmsmanManage::addLocalTriggers(const std::vector<tagTriggerOrder>& triggers,
                                       const tagAlgoSetting* options) {
    ILocalTriggerCentre* centre = localTriggerCentre();
    return centre && centre->addTriggers(triggers, options);
}

bool CHelmsmanManage::openLocalTrigger() {
    ILocalTriggerCentre* centre = localTriggerCentre();
    if (!centre) return false;
    centre->showCentre();
    return true;
}

// ---- Symbol links ------------------------------------------------------------------------

bool CHelmsmanManage::claimLinkRefusal(const tagSymbol& symbol) {
    if (!m_linkRefused.empty() && m_linkRefused == symbol) return false;
    m_linkRefused = symbol;
    return true;
}

// ---- Settings ----------------------------------------------------------------------------

void CHelmsmanManage::loadSettings() { m_settings = ::loadSettings(profilePath()); }

FileWriteResult CHelmsmanManage::saveSettings(const HelmsmanSettings& s) {
    FileWriteResult result = ::saveSettings(profilePath(), s);
    const std::int32_t autoKP = m_settings.bAutoKP;
    const std::int32_t minAutoKPPos = m_settings.nMinAutoKPPos;
    m_settings = s;
    // Never written, so the in-memory values stay what was read.
    m_settings.bAutoKP = autoKP;
    m_settings.nMinAutoKPPos = minAutoKPPos;
    return result;
}

std::string CHelmsmanManage::mapKey(int n, const std::string& text) {
    char buf[32];
    std::snprintf(buf, sizeof buf, "%d|", n);
    return buf + text;
}
