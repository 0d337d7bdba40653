#include "robots/robot_launcher.h"

#include <map>

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

namespace {

std::map<std::string, std::function<WndHandle(CHelmsmanManage&)>>& factories() {
    static std::map<std::string, std::function<WndHandle(CHelmsmanManage&)>> attached;
    return attached;
}

}  // namespace

void CRobotLauncher::attachFactory(const std::string& name,
                                   std::function<WndHandle(CHelmsmanManage&)> factory) {
    factories()[name] = std::move(factory);
}

std::vector<RobotEntry> CRobotLauncher::standardRobots() {
    std::vector<RobotEntry> robots = {
        {robot_text::kGridSpreadName, robot_text::kGridSpreadLine, {}},
        {robot_text::kBladerName, robot_text::kBladerLine, {}},
    };
    for (RobotEntry& r : robots)
        if (auto it = factories().find(r.name); it != factories().end()) r.open = it->second;
    return robots;
}
