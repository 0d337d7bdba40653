// The commands of the shared template menu, for any tool: the menu's lines, applying a
// template, saving the current settings under a name, writing the default template, and the
// working copy the template manager dialog edits. The windows (spread/ui/) only show what
// these decide, so every rule here runs without Qt.
//
// A tool plugs in with CToolTemplates<R> and a set of hooks; the windows see the
// type-erased ITemplateCommands. The list is never kept between commands: each one loads the
// file afresh and every change rewrites it whole.
//
// Owned by the tool's window; UI thread only.
#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "app/profile_ini.h"
#include "host/prompter.h"
#include "spread/spread_strings.h"
#include "spread/template_store.h"

// One line of the template menu after the fixed commands and the separator.
struct TemplateMenuItem {
    int id = 0;
    std::string text;
    bool checked = false;
};

// One item per template, in file order; the check mark goes to every name equal to the
// current template's name in exactly the same letters.
std::vector<TemplateMenuItem> templateMenuItems(const std::vector<std::string>& names,
                                                std::string_view currentName);

// The name dialog's check: an empty name is refused with a Yes/No box (either answer goes
// back to the dialog). Blanks are a name.
bool acceptTemplateName(const std::string& name, IPrompter& prompter);

enum class TemplateSaveResult { NotOverwritten, Overwritten, Added };

// How a tool's manager dialog looks.
struct TemplateManagerLayout {
    std::string caption;
    std::string columns;   // column layout text
    std::string listName;  // under which the list keeps the user's column layout
};

// The manager dialog's private copy of the list. Deletes and moves change only the copy;
// save() writes it, in its order, over the file.
class CTemplateList {
public:
    virtual ~CTemplateList() = default;
    virtual std::size_t size() const = 0;
    virtual std::string name(std::size_t i) const = 0;
    virtual std::vector<std::string> row(std::size_t i) const = 0;
    virtual FileWriteResult save() const = 0;

    // Removes, for each name in turn, the first record whose name equals it ignoring case.
    // Returns the index to select afterwards: the one above the last removed record, the new
    // first one when that was the first, or -1 when the list is empty or nothing was removed.
    int removeNamed(const std::vector<std::string>& names);
    // Exchanges record i with its neighbour; returns the moved record's new index, or i when
    // it is already at that edge (or out of range).
    int moveUp(int i);
    int moveDown(int i);
    // Puts the records in the given order: order[k] is the index of the record that goes to
    // place k (a permutation of 0..size()-1; anything else changes nothing).
    void arrange(const std::vector<std::size_t>& order);

protected:
    virtual void permute(const std::vector<std::size_t>& order) = 0;
    virtual void eraseAt(std::size_t i) = 0;
    virtual void swapAt(std::size_t i, std::size_t j) = 0;
    int findNoCase(std::string_view name) const;
};

// What the shared menu and dialogs need from a tool, whatever its record.
class ITemplateCommands {
public:
    virtual ~ITemplateCommands() = default;
    // Template names in file order, read afresh.
    virtual std::vector<std::string> names() const = 0;
    virtual std::string currentName() const = 0;
    // Applies template i as the file holds it now; false (and nothing done) when the file no
    // longer has it.
    virtual bool apply(std::size_t i) = 0;
    // Saves the current settings under a non-empty name, asking before it overwrites.
    virtual TemplateSaveResult saveCurrent(const std::string& name) = 0;
    // Writes the current settings to the tool's Profile.ini section and says so.
    virtual void setAsDefault() = 0;
    virtual std::unique_ptr<CTemplateList> workingCopy() const = 0;
    virtual const TemplateManagerLayout& managerLayout() const = 0;
    virtual const std::filesystem::path& userDir() const = 0;
    virtual IPrompter& prompter() const = 0;
};

// What a tool gives the commands about its record type R.
template <class R>
struct TemplateToolHooks {
    std::function<R()> collect;                       // current settings from the window
    std::function<void(const R&)> apply;              // take a template (its name too), show it
    std::function<std::string()> currentName;         // the current template's name
    std::function<void(const std::string&)> setName;  // a new current name (and caption)
    std::function<void(CProfileIni&, const R&)> writeDefault;  // every key of the section
    std::function<std::vector<std::string>(const R&)> row;     // the manager's row texts
};

template <class R>
class CTemplateListOf final : public CTemplateList {
public:
    CTemplateListOf(CTemplateStore<R> store, std::function<std::vector<std::string>(const R&)> row)
        : m_store(std::move(store)), m_row(std::move(row)), m_items(m_store.load()) {}

    std::size_t size() const override { return m_items.size(); }
    std::string name(std::size_t i) const override { return m_items[i].strName; }
    std::vector<std::string> row(std::size_t i) const override {
        return m_row ? m_row(m_items[i]) : std::vector<std::string>{m_items[i].strName};
    }
    FileWriteResult save() const override { return m_store.save(m_items); }
    const std::vector<R>& items() const { return m_items; }

protected:
    void eraseAt(std::size_t i) override { m_items.erase(m_items.begin() + i); }
    void swapAt(std::size_t i, std::size_t j) override { std::swap(m_items[i], m_items[j]); }
    void permute(const std::vector<std::size_t>& order) override {
        std::vector<R> arranged;
        arranged.reserve(order.size());
        for (std::size_t i : order) arranged.push_back(std::move(m_items[i]));
        m_items = std::move(arranged);
    }

private:
    CTemplateStore<R> m_store;
    std::function<std::vector<std::string>(const R&)> m_row;
    std::vector<R> m_items;
};

template <class R>
class CToolTemplates final : public ITemplateCommands {
public:
    CToolTemplates(std::filesystem::path userDir, const TemplateFile& file,
                   TemplateManagerLayout manager, TemplateToolHooks<R> hooks, IPrompter& prompter)
        : m_userDir(std::move(userDir)),
          m_store(m_userDir, file),
          m_manager(std::move(manager)),
          m_hooks(std::move(hooks)),
          m_prompter(&prompter) {}

    std::vector<std::string> names() const override {
        std::vector<std::string> out;
        for (const R& r : m_store.load()) out.push_back(r.strName);
        return out;
    }
    std::string currentName() const override {
        return m_hooks.currentName ? m_hooks.currentName() : std::string();
    }
    bool apply(std::size_t i) override {
        const std::vector<R> list = m_store.load();
        if (i >= list.size()) return false;
        m_hooks.apply(list[i]);
        return true;
    }
    TemplateSaveResult saveCurrent(const std::string& name) override {
        R current = m_hooks.collect();
        std::vector<R> list = m_store.load();
        const int found = findTemplate(list, name);
        current.strName = name;
        if (found >= 0) {
            if (!m_prompter->ask(spread_text::kInfo, spread_text::kAskOverwrite))
                return TemplateSaveResult::NotOverwritten;
            m_hooks.setName(name);
            list[static_cast<std::size_t>(found)] = std::move(current);
            m_store.save(list);
            return TemplateSaveResult::Overwritten;
        }
        m_hooks.setName(name);
        list.push_back(std::move(current));
        m_store.save(list);
        m_prompter->inform(spread_text::kInfo, spread_text::kSaved);
        return TemplateSaveResult::Added;
    }
    void setAsDefault() override {
        const R current = m_hooks.collect();
        CProfileIni ini(m_userDir / "Profile.ini");
        m_hooks.writeDefault(ini, current);
        ini.save();
        m_prompter->inform(spread_text::kInfo, spread_text::kSavedDefault);
    }
    std::unique_ptr<CTemplateList> workingCopy() const override {
        return std::make_unique<CTemplateListOf<R>>(m_store, m_hooks.row);
    }
    const TemplateManagerLayout& managerLayout() const override { return m_manager; }
    const std::filesystem::path& userDir() const override { return m_userDir; }
    IPrompter& prompter() const override { return *m_prompter; }
    const CTemplateStore<R>& store() const { return m_store; }

private:
    std::filesystem::path m_userDir;
    CTemplateStore<R> m_store;
    TemplateManagerLayout m_manager;
    TemplateToolHooks<R> m_hooks;
    IPrompter* m_prompter;
};
