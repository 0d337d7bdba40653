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

// Rows come in the order of the records given (arrival order); the views sort them.

// Orders: live while working. Key: account|broker|order id. The tooltip carries the status
// with the host's whole status message.
QStringList orderHeaders();
enum OrderColumn {
    kOrderColTime,
    kOrderColId,
    kOrderColAccount,
    kOrderColSymbol,
    kOrderColDirection,
    kOrderColOpenClose,
    kOrderColPrice,
    kOrderColVolume,
    kOrderColFilled,
    kOrderColStatus,
    kOrderColStatusMsg,
    kOrderColRemark
};
RecordRow orderRow(const tagBrokerOrder& order, const DecimalsOf& decimals);
std::vector<RecordRow> orderRows(const std::vector<tagBrokerOrder>& orders,
                                 const DecimalsOf& decimals);

QStringList fillHeaders();
RecordRow fillRow(const tagBargainOrder& fill, const DecimalsOf& decimals);
std::vector<RecordRow> fillRows(const std::vector<tagBargainOrder>& fills,
                                const DecimalsOf& decimals);

// Positions: live while something is held. Key: account|broker|exchange|code.
QStringList positionHeaders();
RecordRow positionRow(const tagOpenedPosition& position, const DecimalsOf& decimals);
std::vector<RecordRow> positionRows(const std::vector<tagOpenedPosition>& positions,
                                    const DecimalsOf& decimals);

// Key: account|broker|trigger id. statusText names the host's trigger status codes.
using TriggerStatusText = std::function<QString(std::int32_t)>;
QStringList triggerHeaders();
RecordRow triggerRow(const tagTriggerOrder& trigger, const TriggerStatusText& statusText,
                     const DecimalsOf& decimals);
std::vector<RecordRow> triggerRows(const std::vector<tagTriggerOrder>& triggers,
                                   const TriggerStatusText& statusText, const DecimalsOf& decimals);

// Keys as the builders put them together, and their parts.
QString orderKey(const std::string& account, const std::string& broker, const std::string& id);
QString positionKey(const tagOpenedPosition& position);
QStringList splitRowKey(const QString& key);
