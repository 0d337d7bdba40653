// Pieces the order tests share: a local trigger centre that records what it is handed, a sink
// that hands the simulated exchange's events to a manager as the host would, and the ag2412
// position most tests hold.
#pragma once

#include <vector>

#include "app/helmsman_manage.h"
#include "app/local_trigger_centre.h"
#include "sim/sim_exchange.h"
#include "support/manager_sink.h"

struct RecordingCentre : ILocalTriggerCentre {
    bool accept = true;
    std::vector<tagTriggerOrder> added;
    std::vector<bool> withOptions;
    bool addTrigger(const tagTriggerOrder& t, const tagAlgoSetting* options) override {
        if (!accept) return false;
        added.push_back(t);
        withOptions.push_back(options != nullptr);
        return true;
    }
    bool addTriggers(const std::vector<tagTriggerOrder>&, const tagAlgoSetting*) override {
        return true;
    }
    void showCentre() override {}
};

using HostSink = ManagerSink;

// Account A1 on ag2412: long 3 (1 today), short 2 (both today).
inline tagOpenedPosition agPosition(const char* broker) {
    tagOpenedPosition p;
    p.strAccountID = "A1";
    p.strBrokerID = broker;
    p.nExchangeID = 1;
    p.strCode = "ag2412";
    p.dLong = 3;
    p.dLongToday = 1;
    p.dShort = 2;
    p.dShortToday = 2;
    p.dTotal = 5;
    return p;
}
