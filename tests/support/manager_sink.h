// The host's events from the simulated exchange straight into the add-in's manager, as the
// exports pass them.
#pragma once

#include "app/helmsman_manage.h"
#include "sim/sim_exchange.h"

struct ManagerSink final : ISimEventSink {
    explicit ManagerSink(CHelmsmanManage& m) : manager(m) {}
    void onDataChange(std::uint32_t code, std::uintptr_t data) override {
        manager.dataChange(code, data);
    }
    void onLogonStateChange(std::uint32_t code, std::uintptr_t data) override {
        manager.logonStateChange(code, data);
    }
    void onWindowMessage(std::uint32_t h, std::uint32_t msg, std::uintptr_t w,
                         std::uintptr_t l) override {
        manager.sendMessage(h, msg, w, l);
    }
    CHelmsmanManage& manager;
};
