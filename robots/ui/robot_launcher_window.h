// RobotLauncherWindow ("策略机器人"): the module's list of robots. Each row names a robot and
// says in one line what it does; a robot that can be opened is picked and opened with "打开"
// or a double-click, which creates its window and registers it with the manager. Robots not
// built yet are listed greyed and cannot be picked.
//
// One launcher per process (openRobotLauncher shows the existing one); owned by the host's
// window and deleted on close. UI thread only.
#pragma once

#include <QWidget>

#include "robots/robot_launcher.h"

class QPushButton;
class QTreeWidget;

class RobotLauncherWindow : public QWidget {
    Q_OBJECT
public:
    explicit RobotLauncherWindow(CHelmsmanManage& manager, QWidget* parent = nullptr,
                                 std::vector<RobotEntry> robots = CRobotLauncher::standardRobots());

    CRobotLauncher& core() { return m_core; }
    QTreeWidget* list() const { return m_list; }
    QPushButton* openButton() const { return m_open; }
    // Opens the picked robot; its handle, or 0 when none could be opened.
    WndHandle openSelected();

private:
    void updateButton();

    CRobotLauncher m_core;
    QTreeWidget* m_list = nullptr;
    QPushButton* m_open = nullptr;
};

// Shows the launcher, creating it on first use, centred on the host's window.
RobotLauncherWindow* openRobotLauncher();
