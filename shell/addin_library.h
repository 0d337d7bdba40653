// AddinLibrary: the Helmsman add-in loaded at run time by name, as the host platform loads
// it, with its exports resolved into typed function pointers.
//
// Owned by the shell's main(); the library stays loaded until the object dies (unloading
// while tool windows exist would pull their code away). UI thread only.
#pragma once

#include <QLibrary>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <vector>

#include "app/exports.h"

// One tool the host's menus offer, by the export that opens it.
struct AddinTool {
    const char* exportName;
    const char* menuText;   // shell_text constant
    // What the host must hand the export, so the desk knows what to collect first.
    enum class Needs { Nothing, Prefill, Position, Order, AlgoBlock } needs;
    bool onToolbar;
};

// Every tool export, in menu order.
const std::vector<AddinTool>& addinTools();
const AddinTool* findAddinTool(const QString& exportName);

class AddinLibrary {
public:
    using InitFn = decltype(&InitHelmsman);
    using EventFn = decltype(&HelmsmanDataChange);
    using SendMessageFn = decltype(&HelmsmanSendMessage);
    using EnumWindowsFn = decltype(&HelmsmanEnumWindows);
    using UseClockFn = decltype(&HelmsmanUseClock);
    using ToolAvailableFn = decltype(&HelmsmanToolAvailable);
    using PrefillFn = decltype(&OpenHelmsman);
    using NoArgFn = decltype(&OpenLocalTrigger);
    using ConfirmFn = decltype(&ShowConfirmOrder);
    using MultiConfirmFn = decltype(&ShowMultiConfirm);
    using SameConfirmFn = decltype(&ShowMultiConfirm_Same);
    using FastExitFn = decltype(&OpenFastExit);
    using StopTriggerFn = decltype(&OpenStopTrigger);
    using DeleteTriggersFn = decltype(&DeleteTriggerOrders);
    using AlgoSetFn = decltype(&OpenAlgoSet);
    using CreatePageFn = QWidget* (*)(QWidget*);
    using ApplyPageFn = int (*)(QWidget*);

    // The file names tried, in order: `explicitPath` alone when given; else the add-in's
    // name in `appDir`, then the bare name for the system's default search path.
    static QStringList candidates(const QString& appDir, const QString& explicitPath);

    // Loads the first candidate that loads and resolves the exports every host needs
    // (InitHelmsman, HelmsmanDataChange, HelmsmanLogonStateChange). On failure returns false
    // and errorString() tells every candidate's reason.
    bool load(const QString& appDir, const QString& explicitPath = {});
    QString errorString() const { return m_error; }
    QString fileName() const { return m_lib.fileName(); }

    // Required.
    InitFn init = nullptr;
    EventFn dataChange = nullptr;
    EventFn logonStateChange = nullptr;
    // Host stand-ins; absent ones leave the matching feature off.
    SendMessageFn sendMessage = nullptr;
    EnumWindowsFn enumWindows = nullptr;
    UseClockFn useClock = nullptr;
    ToolAvailableFn toolAvailable = nullptr;
    CreatePageFn createOptionPage = nullptr;
    ApplyPageFn applyOptionPage = nullptr;

    // A tool export's address (nullptr when the library lacks it).
    void* toolFunction(const char* exportName) const;
    // Resolved and, if the library says so, working in this build.
    bool isToolAvailable(const char* exportName) const;

private:
    QLibrary m_lib;
    QString m_error;
};
