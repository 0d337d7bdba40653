// What the manager asks of the single algorithmic execution centre. The manager holds the
// centre by this interface only, so it needs no algo headers; the library installs a factory
// that builds the real centre (its engine inside its window), tests install their own.
#pragma once

#include <vector>

#include "algo/algo_setting.h"
#include "host/records.h"

class IAlgoCentre {
public:
    virtual ~IAlgoCentre() = default;
    // Takes orders to work with `setting`; returns how many were taken (an order with no
    // known contract or less than one lot is not).
    virtual int addAlgoOrders(const std::vector<tagBrokerOrder>& orders,
                              const tagAlgoSetting& setting) = 0;
    // The block new orders of the centre's own form start from.
    virtual void setDefaultSetting(const tagAlgoSetting& setting) = 0;
    // Shows the centre's window (a headless centre ignores this).
    virtual void showCentre() = 0;
};
