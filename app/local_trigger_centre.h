// What the manager asks of the single local trigger centre. The manager holds the centre by
// this interface only, so it needs no trigger headers; the library installs a factory that
// builds the real centre (its core object inside its window), tests install their own.
#pragma once

#include <vector>

#include "algo/algo_setting.h"
#include "host/records.h"

class ILocalTriggerCentre {
public:
    virtual ~ILocalTriggerCentre() = default;
    // Hands one trigger to the centre; false (and nothing added) for an unknown contract.
    // `options`, when given, are sent with the order when it fires.
    virtual bool addTrigger(const tagTriggerOrder& trigger, const tagAlgoSetting* options) = 0;
    // Hands several triggers over, sharing `options`; always true.
    virtual bool addTriggers(const std::vector<tagTriggerOrder>& triggers,
                             const tagAlgoSetting* options) = 0;
    // Shows the centre's window (a headless centre ignores this).
    virtual void showCentre() = 0;
};
