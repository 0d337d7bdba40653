#include "replay/replay_tool.h"

#include <algorithm>
#include <cctype>
#include <map>

namespace replay {
namespace {

std::string folded(std::string s) {
    for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return s;
}

// Built on first use, so registrations from other files' static initialisers find it.
std::map<std::string, std::pair<std::string, ToolFactory>>& registry() {
    static std::map<std::string, std::pair<std::string, ToolFactory>> tools;
    return tools;
}

}  // namespace

bool registerTool(const char* name, ToolFactory factory) {
    registry()[folded(name)] = {name, factory};
    return true;
}

ToolFactory findTool(const std::string& name) {
    auto it = registry().find(folded(name));
    return it == registry().end() ? nullptr : it->second.second;
}

std::vector<std::string> toolNames() {
    std::vector<std::string> out;
    for (const auto& [key, entry] : registry()) out.push_back(entry.first);
    return out;
}

}  // namespace replay
