#include "spread/template_commands.h"

std::vector<TemplateMenuItem> templateMenuItems(const std::vector<std::string>& names,
                                                std::string_view currentName) {
    std::vector<TemplateMenuItem> items;
    items.reserve(names.size());
    for (std::size_t i = 0; i < names.size(); ++i)
        items.push_back({template_menu::kTemplateFirst + static_cast<int>(i), names[i],
                         names[i] == currentName});
    return items;
}

bool acceptTemplateName(const std::string& name, IPrompter& prompter) {
    if (!name.empty()) return true;
    prompter.ask(spread_text::kInfo, spread_text::kNameEmpty);
    return false;
}

int CTemplateList::findNoCase(std::string_view wanted) const {
    for (std::size_t i = 0; i < size(); ++i)
        if (template_file_detail::equalsNoCase(name(i), wanted)) return static_cast<int>(i);
    return -1;
}

int CTemplateList::removeNamed(const std::vector<std::string>& names) {
    int select = -1;
    for (const std::string& n : names) {
        const int at = findNoCase(n);
        if (at < 0) continue;
        eraseAt(static_cast<std::size_t>(at));
        select = at > 0 ? at - 1 : (size() > 0 ? 0 : -1);
    }
    if (select >= static_cast<int>(size())) select = static_cast<int>(size()) - 1;
    return select;
}

int CTemplateList::moveUp(int i) {
    if (i <= 0 || i >= static_cast<int>(size())) return i;
    swapAt(static_cast<std::size_t>(i), static_cast<std::size_t>(i - 1));
    return i - 1;
}

int CTemplateList::moveDown(int i) {
    if (i < 0 || i + 1 >= static_cast<int>(size())) return i;
    swapAt(static_cast<std::size_t>(i), static_cast<std::size_t>(i + 1));
    return i + 1;
}

void CTemplateList::arrange(const std::vector<std::size_t>& order) {
    if (order.size() != size()) return;
    std::vector<bool> seen(order.size(), false);
    for (std::size_t i : order) {
        if (i >= order.size() || seen[i]) return;
        seen[i] = true;
    }
    permute(order);
}
