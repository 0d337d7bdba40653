// CRobotLauncher: the catalogue of the module's robots and the one way a robot window is
// opened. Opening a robot creates its window through the entry's factory and at once
// registers the window's handle with the manager, so host events reach the robot from its
// first moment; the robot unregisters itself when it closes.
//
// A robot whose window is not built yet has no factory: it is listed (name and a line of
// what it does) but cannot be opened.
//
// Owned by the launcher window; UI thread only.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "host/window.h"

class CHelmsmanManage;

struct RobotEntry {
    std::string name;
    std::string description;
    // Creates the robot's window and returns its handle (0 when it could not be built).
    std::function<WndHandle(CHelmsmanManage&)> open;

    bool available() const { return static_cast<bool>(open); }
};

class CRobotLauncher {
public:
    explicit CRobotLauncher(CHelmsmanManage& manager,
                            std::vector<RobotEntry> robots = standardRobots());

    const std::vector<RobotEntry>& robots() const { return m_robots; }
    // Opens robot `index` and registers its window. 0 when the index is out of range, the
    // robot is not available or its window could not be built.
    WndHandle open(std::size_t index);

    // The module's robots, in the launcher's order, with the factories attached so far.
    static std::vector<RobotEntry> standardRobots();
    // Makes the robot named `name` openable from launchers built from now on: the windows
    // library attaches each robot's window factory once, at start-up.
    static void attachFactory(const std::string& name,
                              std::function<WndHandle(CHelmsmanManage&)> factory);

private:
    CHelmsmanManage& m_manager;
    std::vector<RobotEntry> m_robots;
};
