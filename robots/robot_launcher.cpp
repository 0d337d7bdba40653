#include "robots/robot_launcher.h"

#include "app/helmsman_manage.h"
#include "robots/robot_strings.h"

CRobotLauncher::CRobotLauncher(CHelmsmanManage& manager, std::vector<RobotEntry> robots)
    : m_manager(manager), m_robots(std::move(robots)) {}

WndHandle CRobotLauncher::open(std::size_t index) {
    if (index >= m_robots.size() || !m_robots[index].available()) return 0;
    const WndHandle h = m_robots[index].open(m_manager);
    if (h != 0) m_manager.registerWindow(h);
    return h;
}

std::vector<RobotEntry> CRobotLauncher::standardRobots() {
    return {
        {robot_text::kGridSpreadName, robot_text::kGridSpreadLine, {}},
        {robot_text::kBladerName, robot_text::kBladerLine, {}},
    };
}
