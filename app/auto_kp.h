// The automatic open/close choice the grid robots apply to each order they submit, switched
// on by bAutoKP and scaled by nMinAutoKPPos in the settings record.
//
// With bAutoKP off the order keeps its own flag. Otherwise the account's position in the
// order's symbol decides, through Q, the opposite side's quantity truncated to a whole
// number (short for a buy, long for a sell; 0 when the position cannot be read or the
// direction is neither buy nor sell):
//   Q <= nMinAutoKPPos   -> open  (kOpen)
//   Q != 1               -> close (kClose)
//   Q == 1 (only reachable with nMinAutoKPPos below 1): the working orders in the symbol are
//     read; a same-direction order already closing (flag 1 or 2) means that single lot is
//     taken, so the order opens; otherwise it closes.
//
// The caller then submits the order itself, without confirmation and without algorithmic
// routing, under the robot's name:
//     order.nOpenClose = chooseOpenClose(*manager.facade(), order, manager.settings());
//     manager.submitOrder(order, /*confirm=*/false, robotName, /*algo=*/nullptr);
//
// Free functions; they only call the facade's read operations, on the caller's thread.
#pragma once

#include <cstdint>

#include "app/settings.h"
#include "host/records.h"
#include "host/subscibe_manage.h"

// The open/close flag the order should carry. The position and working orders are read with
// the order's strAccountID and strBrokerID as account keys.
std::int32_t chooseOpenClose(CSubscibeManage& host, const tagBrokerOrder& order,
                             const HelmsmanSettings& s);

// Sets order.nOpenClose to chooseOpenClose(...) and returns it.
std::int32_t applyAutoOpenClose(CSubscibeManage& host, tagBrokerOrder& order,
                                const HelmsmanSettings& s);

// The flag of a robot's closing order: a plain close, or close-today on exchange 0 (where a
// plain close takes only yesterday's position) when today's position on the side it closes
// covers the whole order. A position that cannot be read gives a plain close.
std::int32_t robotCloseFlag(CSubscibeManage* host, const tagBrokerOrder& order);
