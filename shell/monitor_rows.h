// Row builders of the desk's monitors: host records in, table rows out. Plain functions, so
// what each monitor shows (and which rows count as working) is testable without a window.
#pragma once

#include <QStringList>
#include <functional>
#include <string>
#include <vector>

#include "host/records.h"
#include "shell/record_table_model.h"

// Decimal places of a contract's prices (from its tick); the builders format with it.
using DecimalsOf = std::function<int(std::int32_t exchangeID, const std::string& code)>;

// One row of the accounts monitor.
struct AccountLine {
    tagAccoutInfo info;
    bool loggedOn = false;
    tagAccountSummary summary;  // meaningful only when logged on
};

// Working orders: sending, queued, partly filled, cancelling.
bool isWorkingStatus(std::int32_t status);

QStringList accountHeaders();
std::vector<RecordRow> accountRows(const std::vector<AccountLine>& accounts);

// Key: account|order id. workingOnly keeps the orders isWorkingStatus accepts. Newest first.
QStringList orderHeaders();
std::vector<RecordRow> orderRows(const std::vector<tagBrokerOrder>& orders, bool workingOnly,
                                 const DecimalsOf& decimals);

// Newest first.
QStringList fillHeaders();
std::vector<RecordRow> fillRows(const std::vector<tagBargainOrder>& fills,
                                const DecimalsOf& decimals);

// Positions with nothing held are left out. Key: account|exchange|code.
QStringList positionHeaders();
std::vector<RecordRow> positionRows(const std::vector<tagOpenedPosition>& positions,
                                    const DecimalsOf& decimals);

// Key: account|trigger id. statusText names the host's trigger status codes.
QStringList triggerHeaders();
std::vector<RecordRow> triggerRows(const std::vector<tagTriggerOrder>& triggers,
                                   const std::function<QString(std::int32_t)>& statusText,
                                   const DecimalsOf& decimals);

// The key's parts, as put together by the builders.
QStringList splitRowKey(const QString& key);
