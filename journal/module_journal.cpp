#include "journal/module_journal.h"

#include <cstdio>

#include "app/helmsman_manage.h"
#include "journal/journal_strings.h"
#include "journal/sqlite_order_journal.h"

ModuleJournal::~ModuleJournal() { CHelmsmanManage::instance().setJournal(nullptr); }

ModuleJournal& moduleJournal() {
    static ModuleJournal j;
    return j;
}

void openModuleJournal(CHelmsmanManage& manager) {
    ModuleJournal& j = moduleJournal();
    const auto file = manager.userFile(journal_text::kFileName);
    if (!j.journal || j.journal->path() != file) {
        manager.setJournal(nullptr);
        j.journal = SqliteOrderJournal::open(file, &j.notice);
        if (!j.notice.empty()) std::fprintf(stderr, "%s\n", j.notice.c_str());
    }
    manager.setJournal(j.journal.get());
}
