// The template records of the two spread tools, in their file layouts, and the manual spread
// tool's default template (its Profile.ini section).
//
// Instrument codes are held like the tools' fixed 32-byte text fields: at most 31 bytes of
// GBK, so a longer code in a file is cut when read.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "spread/archive.h"

class CProfileIni;

// Longest instrument code a record holds, in GBK bytes.
inline constexpr std::size_t kTemplateCodeBytes = 31;

// One leg's instrument: exchange id and code.
struct tagTemplateLeg {
    std::uint16_t wExchangeID = 0;
    std::string szSymbolCode;
};

// Manual spread template ("QXMS_1.2"), fields in file order.
struct tagManualSpreadTemplate {
    std::string strName;
    std::array<tagTemplateLeg, 3> legs;  // A, B, C (C only for a three-leg spread)
    std::array<double, 3> dSpreadUnit{1, 1, 1};
    std::array<std::int32_t, 3> nSpreadLots{1, 1, 1};
    std::int32_t nEveryLots = 1;
    std::int32_t nOrderOffset = 0;
    std::int32_t bButterfly = 0;
    std::int32_t bChange = 0;
    std::int32_t bExit = 0;
    std::int32_t bConfirmOrder = 0;
    std::int32_t bFirstLotsConfirm = 0;
    // Not in the file: kept in Profile.ini only, and applying a template leaves the window's
    // own chart state alone.
    std::int32_t bShowChart = 0;
};

void writeTemplate(CArchiveWriter& out, const tagManualSpreadTemplate& t);
void readTemplate(CArchiveReader& in, tagManualSpreadTemplate& t);

// The manual spread tool's Profile.ini section, which holds its default template.
inline constexpr const char* kManualSpreadSection = "ManualSpread";
// Writes every setting, bShowChart included, under the tool's key names (integers "%d",
// codes "%s", reals "%g"), in memory; the caller saves the file.
void writeManualSpreadDefault(CProfileIni& ini, const tagManualSpreadTemplate& t);
// Reads the section back; an absent key keeps the record's default. Reals are read as reals,
// so a multiplier of 0.5 survives; codes are cut like a record's.
tagManualSpreadTemplate readManualSpreadDefault(const CProfileIni& ini);

// The trading account a leg of the auto spread uses: its identifying texts in a fixed order
// and its account type.
struct tagTemplateAccount {
    std::string strAccountID;
    std::string strBrokerID;
    std::string strAccountName;
    std::string strAccountText;  // as the account lists show it, "%s(%s)" of id and name
    std::int32_t nAccountType = 1;
};

// Auto spread template ("QXSO_1.3"), fields in file order.
struct tagAutoSpreadTemplate {
    std::string strName;
    std::array<tagTemplateAccount, 3> accounts;
    std::array<tagTemplateLeg, 3> legs;
    std::array<double, 3> dSpreadUnit{1, 1, 1};
    std::array<std::int32_t, 3> nSpreadLots{1, 1, 1};
    std::int32_t nEveryLots = 1;
    std::int32_t nMaxLots = 1;
    std::int32_t nOrderOffset = 0;
    std::int32_t bButterfly = 0;
    std::int32_t bLongEntry = 0;
    std::int32_t bLongExit = 0;
    std::int32_t bShortEntry = 0;
    std::int32_t bShortExit = 0;
    std::int32_t bChange = 0;
    std::int32_t bStepTrade = 0;
    std::int32_t bStepExit = 0;
    std::int32_t nGridOffset = 0;
    std::int32_t nGridLots = 0;
    double dLongEntryPrice = -10000;
    double dLongExitPrice = 10000;
    double dShortEntryPrice = 0;
    double dShortExitPrice = 0;
    std::int32_t bConfirmOrder = 0;
    std::int32_t nOrderDelaySeconds = 0;
    std::int32_t nUnstayedOffset = 0;
    // Not in the file: kept in Profile.ini only, and applying a template leaves the window's
    // own value alone.
    std::int32_t nStayMilliSeconds = 1000;
};

void writeTemplate(CArchiveWriter& out, const tagAutoSpreadTemplate& t);
void readTemplate(CArchiveReader& in, tagAutoSpreadTemplate& t);

// The auto spread tool's Profile.ini section, which holds its default template: the legs'
// accounts (strAccountID1, strBrokerID1, strAccountName1, strAccountText1, nAccountType1, ...),
// then the record's fields under their own names in file order, then nStayMilliSeconds.
inline constexpr const char* kAutoSpreadSection = "SpreadOrder";
void writeAutoSpreadDefault(CProfileIni& ini, const tagAutoSpreadTemplate& t);
// An absent key keeps the record's default; reals are read as reals.
tagAutoSpreadTemplate readAutoSpreadDefault(const CProfileIni& ini);

// Row texts of the two spread managers: name, code and lots of A and B, then of C for a
// three-leg record, else "N/A" twice.
std::vector<std::string> spreadTemplateRow(const tagManualSpreadTemplate& t);
std::vector<std::string> spreadTemplateRow(const tagAutoSpreadTemplate& t);
