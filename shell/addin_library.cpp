#include "shell/addin_library.h"

#include <QDir>
#include <QFileInfo>

#include "shell/shell_texts.h"

const std::vector<AddinTool>& addinTools() {
    using N = AddinTool::Needs;
    namespace t = shell_text;
    static const std::vector<AddinTool> tools = {
        {"OpenHelmsman", t::kToolOpenHelmsman, N::Prefill, true},
        {"OpenBatchTrader", t::kToolOpenBatchTrader, N::Prefill, true},
        {"ShowConfirmOrder", t::kToolShowConfirmOrder, N::Order, false},
        {"ShowMultiConfirm", t::kToolShowMultiConfirm, N::Order, false},
        {"ShowMultiConfirm_Same", t::kToolShowMultiConfirmSame, N::Order, false},
        {"OpenFastExit", t::kToolOpenFastExit, N::Position, true},
        {"OpenStopTrigger", t::kToolOpenStopTrigger, N::Position, false},
        {"OpenFastExitAll", t::kToolOpenFastExitAll, N::Nothing, true},
        {"OpenFastDeleteAll", t::kToolOpenFastDeleteAll, N::Nothing, true},
        {"DeleteTriggerOrders", t::kToolDeleteTriggerOrders, N::Nothing, false},
        {"OpenLocalTrigger", t::kToolOpenLocalTrigger, N::Nothing, true},
        {"OpenManualSpread", t::kToolOpenManualSpread, N::Nothing, true},
        {"OpenSpreadTrader", t::kToolOpenSpreadTrader, N::Nothing, true},
        {"OpenRobotLauncher", t::kToolOpenRobotLauncher, N::Nothing, true},
        {"OpenOrderJournal", t::kToolOpenOrderJournal, N::Nothing, false},
        {"OpenAMTOrder", t::kToolOpenAMTOrder, N::Nothing, true},
        {"FilledOrderStatistics", t::kToolFilledOrderStatistics, N::Nothing, false},
        {"OpenAlgoSet", t::kToolOpenAlgoSet, N::AlgoBlock, false},
        {"OpenAlgoCentre", t::kToolOpenAlgoCentre, N::Nothing, true},
    };
    return tools;
}

const AddinTool* findAddinTool(const QString& exportName) {
    for (const AddinTool& tool : addinTools()) {
        if (exportName == QLatin1String(tool.exportName)) return &tool;
    }
    return nullptr;
}

QStringList AddinLibrary::candidates(const QString& appDir, const QString& explicitPath) {
    if (!explicitPath.isEmpty()) return {explicitPath};
    QStringList out;
    // QLibrary adds the platform's prefix and suffix (libHelmsman.so, Helmsman.dll).
    if (!appDir.isEmpty()) out << QDir(appDir).filePath("Helmsman");
    out << "Helmsman";
    return out;
}

bool AddinLibrary::load(const QString& appDir, const QString& explicitPath) {
    QStringList reasons;
    for (const QString& name : candidates(appDir, explicitPath)) {
        if (m_lib.isLoaded()) m_lib.unload();
        m_lib.setFileName(name);
        if (!m_lib.load()) {
            reasons << QString("%1: %2").arg(name, m_lib.errorString());
            continue;
        }
        init = reinterpret_cast<InitFn>(m_lib.resolve("InitHelmsman"));
        dataChange = reinterpret_cast<EventFn>(m_lib.resolve("HelmsmanDataChange"));
        logonStateChange = reinterpret_cast<EventFn>(m_lib.resolve("HelmsmanLogonStateChange"));
        QStringList missing;
        if (!init) missing << "InitHelmsman";
        if (!dataChange) missing << "HelmsmanDataChange";
        if (!logonStateChange) missing << "HelmsmanLogonStateChange";
        if (!missing.isEmpty()) {
            reasons << QString("%1: %2").arg(m_lib.fileName(),
                                             QString(shell_text::kMissingExport)
                                                 .arg(missing.join(", ")));
            m_lib.unload();
            init = nullptr;
            dataChange = logonStateChange = nullptr;
            continue;
        }
        sendMessage = reinterpret_cast<SendMessageFn>(m_lib.resolve("HelmsmanSendMessage"));
        enumWindows = reinterpret_cast<EnumWindowsFn>(m_lib.resolve("HelmsmanEnumWindows"));
        useClock = reinterpret_cast<UseClockFn>(m_lib.resolve("HelmsmanUseClock"));
        toolAvailable =
            reinterpret_cast<ToolAvailableFn>(m_lib.resolve("HelmsmanToolAvailable"));
        createOptionPage =
            reinterpret_cast<CreatePageFn>(m_lib.resolve("HelmsmanCreateOptionPage"));
        applyOptionPage = reinterpret_cast<ApplyPageFn>(m_lib.resolve("HelmsmanApplyOptionPage"));
        m_error.clear();
        return true;
    }
    m_error = reasons.join('\n');
    return false;
}

void* AddinLibrary::toolFunction(const char* exportName) const {
    if (!m_lib.isLoaded()) return nullptr;
    // QLibrary::resolve is non-const only because it may load; the library is loaded here.
    return reinterpret_cast<void*>(const_cast<QLibrary&>(m_lib).resolve(exportName));
}

bool AddinLibrary::isToolAvailable(const char* exportName) const {
    if (!toolFunction(exportName)) return false;
    // A library without the query offers whatever it exports.
    return toolAvailable ? toolAvailable(exportName) != 0 : true;
}
