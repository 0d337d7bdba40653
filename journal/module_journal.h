// The add-in's own audit journal: journal.db in the user directory, opened at InitHelmsman
// and handed to the manager, kept open while the same user stays logged in.
#pragma once

#include <memory>
#include <string>

class CHelmsmanManage;
class SqliteOrderJournal;

struct ModuleJournal {
    std::unique_ptr<SqliteOrderJournal> journal;
    std::string notice;  // what became of the file at start-up ("" when all was well)
    ~ModuleJournal();
};

// The process-wide holder.
ModuleJournal& moduleJournal();

// Opens the journal of the manager's user directory (unless it is the one already open) and
// sets it on the manager.
void openModuleJournal(CHelmsmanManage& manager);
